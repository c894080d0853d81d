/*
 * Makes a picture lighter, in C:
 *
 *   lighter IN.bmp OUT.bmp            tells how far it is
 *   lighter IN.bmp OUT.bmp PERCENT    cancels the work when it is that far, and writes nothing
 *
 * Linux:        cc lighter.c $(pkg-config --cflags --libs qv8effect) -o lighter
 * MinGW:        i686-w64-mingw32-gcc lighter.c -I../x86/include -L../x86/lib -lQv8Effect -lQv8Com -o lighter.exe
 * Visual C++:   cl lighter.c /I..\x86\include ..\x86\lib\Qv8Effect.lib ..\x86\lib\Qv8Com.lib
 *               and the same with x86_64-w64-mingw32-gcc and x64 for 64 bits
 *
 * Built and run like this with GCC, with MinGW, and with Clang's cl and lld-link in place of Visual C++, whose own
 * compiler was not at hand.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "qv8com.h"
#include "qv8effect.h"

enum { FILE_HEADER = 14, PICTURE_HEADER = 40 };

static unsigned long ReadNumber(const unsigned char* bytes) {
    return bytes[0] | (unsigned long)bytes[1] << 8 | (unsigned long)bytes[2] << 16 | (unsigned long)bytes[3] << 24;
}

static void WriteNumber(unsigned char* bytes, unsigned long number) {
    int i;
    for (i = 0; i < 4; ++i)
        bytes[i] = (unsigned char)(number >> 8 * i);
}

/* What follows the 14 bytes of a BMP file's own header is a picture, as the library wants it. Returns 0 for a file that
   is not such a one. The library checks the picture itself. */
static HGLOBAL ReadPicture(const char* name) {
    unsigned char header[FILE_HEADER];
    HGLOBAL picture = 0;
    void* bytes;
    long size;
    int whole = 0;
    FILE* file = fopen(name, "rb");
    if (!file)
        return 0;
    fseek(file, 0, SEEK_END);
    size = ftell(file) - FILE_HEADER;
    rewind(file);
    if (size > PICTURE_HEADER && fread(header, FILE_HEADER, 1, file) == 1 && header[0] == 'B' && header[1] == 'M')
        picture = GlobalAlloc(GMEM_MOVEABLE, (size_t)size);
    if (picture) {
        bytes = GlobalLock(picture);
        whole = fread(bytes, (size_t)size, 1, file) == 1 && ReadNumber(bytes) == PICTURE_HEADER &&
                ReadNumber(header + 10) == (unsigned long)(FILE_HEADER + PICTURE_HEADER + GetDibPalSize(bytes));
        GlobalUnlock(picture);
    }
    fclose(file);
    if (picture && !whole) {
        GlobalFree(picture);
        return 0;
    }
    return picture;
}

static int WritePicture(const char* name, HGLOBAL picture) {
    const unsigned long size = (unsigned long)GlobalSize(picture);
    const void* bytes = GlobalLock(picture);
    unsigned char header[FILE_HEADER] = {'B', 'M'};
    FILE* file = fopen(name, "wb");
    int written = 0;
    WriteNumber(header + 2, FILE_HEADER + size);
    WriteNumber(header + 10, (unsigned long)(FILE_HEADER + PICTURE_HEADER + GetDibPalSize(bytes)));
    if (file) {
        written = fwrite(header, FILE_HEADER, 1, file) == 1 && fwrite(bytes, size, 1, file) == 1;
        written = fclose(file) == 0 && written;
    }
    GlobalUnlock(picture);
    return written;
}

/* Is called at every report; `context` is what AddProgressOwner was given. */
static int QV8API OnProgress(int percent, void* context) {
    static int told = -1;
    const int cancelAt = *(const int*)context;
    if (percent / 25 != told) {
        told = percent / 25;
        printf("%d %%\n", percent);
    }
    return percent < cancelAt; /* 0 cancels */
}

int main(int count, char** words) {
    int cancelAt = count > 3 ? atoi(words[3]) : 101;
    ImageSet target = {0, 0};
    HGLOBAL lighter;
    DWORD owner;
    int failed = 1;
    if (count < 3) {
        fprintf(stderr, "usage: lighter IN.bmp OUT.bmp [PERCENT]\n");
        return 2;
    }
    target.hImage = ReadPicture(words[1]);
    if (!target.hImage) {
        fprintf(stderr, "%s cannot be read\n", words[1]);
        return 2;
    }
    owner = AddProgressOwner(OnProgress, &cancelAt);
    lighter = QV8RGBGamma(&target, QV8_AREA_WHOLE, 0, 0, 0, 1, -0.5, -0.5, -0.5, owner, 0, 0, 0);
    RemoveProgressOwner(owner);
    printf("%s\n", GetErrorStatusText(GetErrorStatus()));
    if (lighter) {
        failed = !WritePicture(words[2], lighter);
        GlobalFree(lighter);
    }
    GlobalFree(target.hImage);
    return failed;
}
