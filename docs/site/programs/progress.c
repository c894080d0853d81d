/* Progress of a call, and how it is cancelled. */
#include <qv8com.h>
#include <qv8effect.h>
#include <stdio.h>

/* Counts the reports, and cancels when half of the work is done. */
static int QV8API Watch(int percent, void* context) {
    ++*(int*)context;
    return percent < 50;
}

int main(void) {
    int reports = 0;
    DWORD owner = AddProgressOwner(Watch, &reports);
    HGLOBAL picture = QV8CreateImage(400, 300, 24, 200, 120, 40, owner, 0, 0, 0);
    if (picture == NULL && GetErrorStatus() == QV8_STATUS_CANCELLED)
        printf("%s\n", reports > 0 ? "cancelled half way" : "cancelled before it began");
    RemoveProgressOwner(owner);
    GlobalFree(picture);
    return 0;
}
