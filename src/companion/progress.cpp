// Progress of a call: how far it is, and who is told.
#include <algorithm>
#include <cstdint>
#include <memory>

#include "companion/dialog.h"
#include "companion/loading.h"
#include "companion/owner_list.h"
#include "companion/thread_slot.h"
#include "companion/without_throwing.h"

namespace qv8 {
namespace {

OwnerList owners;

struct OpenDialog : NullWhenMemoryIsShort {
    ProgressDialogPtr dialog;
    OpenDialog* covered = nullptr; // the dialog below
    int reports = 0;               // reports under way; messages served meanwhile must not close it
};

const ThreadSlot<OpenDialog> topDialog;

// Never overflows: the product of a 33-bit and a 32-bit number, and the sum, fit 64 bits. Nearly all reports do with
// 32 bits, in which a division takes much less; there is one after each row.
int PercentOf(int current, int last, int fromPercent, int toPercent) {
    constexpr int kSmall = 0x7FFFFFFF / 100;
    if (current >= 0 && current <= last && last <= kSmall && last != 0 && fromPercent >= 0 &&
        fromPercent <= toPercent && toPercent <= 100) {
        return fromPercent + (toPercent - fromPercent) * current / last;
    }
    std::int64_t percent = toPercent;
    if (last > 0) {
        percent = fromPercent + (std::int64_t{toPercent} - fromPercent) * current / last;
    }
    return static_cast<int>(std::clamp<std::int64_t>(percent, 0, 100));
}

bool ReportToDialog(int percent) {
    OpenDialog* const open = topDialog.Get();
    if (open == nullptr) {
        return true;
    }
    ++open->reports;
    const bool goesOn = ShowProgress(*open->dialog, percent);
    --open->reports;
    return goesOn;
}

// The callback runs unlocked, for it may add and remove owners itself.
bool ReportToOwner(DWORD number, int percent) {
    const ProgressOwner owner = owners.Find(number);
    if (owner.callback != nullptr) {
        return owner.callback(percent, owner.context) != 0;
    }
    return TellWindow(number, percent);
}

bool PushDialog(HWND owner, LPCSTR title) {
    std::unique_ptr<OpenDialog> open(new OpenDialog);
    if (!open) {
        return false;
    }
    open->dialog = MakeProgressDialog(owner, title);
    open->covered = topDialog.Get();
    if (!open->dialog || !topDialog.Set(open.get())) {
        return false;
    }
    static_cast<void>(open.release());
    return true;
}

// Windows that hear of the end may call the library, whose calls have a status of their own.
void PopDialog() {
    OpenDialog* const top = topDialog.Get();
    if (top == nullptr || top->reports != 0) {
        return;
    }
    const int status = GetErrorStatus();
    std::unique_ptr<OpenDialog> closed(top);
    topDialog.Set(closed->covered);
    closed.reset();
    SetErrorStatus(status);
}

} // namespace

bool ProgressIsUsable() {
    return topDialog.IsUsable() && owners.IsUsable();
}

} // namespace qv8

extern "C" {

QV8_REALIGN int QV8API PercentDlgOpen(DWORD_PTR owner, DWORD_PTR title, DWORD_PTR) {
    return qv8::PushDialog(reinterpret_cast<HWND>(owner), reinterpret_cast<LPCSTR>(title)) ? 1 : 0;
}

QV8_REALIGN int QV8API PercentProgress(int current, int last, int fromPercent, int toPercent, DWORD progressOwner) {
    const int percent = qv8::PercentOf(current, last, fromPercent, toPercent);
    const bool goesOn = progressOwner == 0 ? qv8::ReportToDialog(percent) : qv8::ReportToOwner(progressOwner, percent);
    return goesOn ? 1 : 0;
}

QV8_REALIGN void QV8API PercentDlgClose(void) {
    qv8::PopDialog();
}

QV8_REALIGN DWORD QV8API AddProgressOwner(Qv8ProgressCallback callback, void* context) {
    return callback != nullptr ? qv8::owners.Add({callback, context}) : 0;
}

QV8_REALIGN void QV8API RemoveProgressOwner(DWORD progressOwner) {
    qv8::owners.Remove(progressOwner);
}

} // extern "C"
