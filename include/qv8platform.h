/**
 * @file
 * The platform types, the movable global memory that pictures live in, and the clipboard.
 *
 * On Windows this is <windows.h> and nothing else. On other systems it declares the same types and the same functions
 * under the platform's own names; libQv8Platform carries them out. Programs written against this header
 * compile unchanged on both.
 */
#ifndef QV8PLATFORM_H
#define QV8PLATFORM_H

/* For functions that others call back, in front of their type: on 32-bit x86 callers may align the stack to 4 bytes
   only, while the code that GCC and Clang make relies on 16. Nothing elsewhere. */
#if defined(__i386__)
#define QV8_REALIGN __attribute__((force_align_arg_pointer))
#else
#define QV8_REALIGN
#endif

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#define QV8API __stdcall

typedef BOOL QV8BOOL;

#else

#include <stddef.h>
#include <stdint.h>

#define QV8API
#define QV8_PLATFORM_EXPORT __attribute__((visibility("default")))
/* The platform's names are for the source only: in libQv8Platform each begins with qv8_, so that a program may have an
   Ellipse or a GlobalAlloc of its own. A program that defines a function under its name there, and exports it, stands
   between the library and the platform. */
#define QV8_PLATFORM_NAME(name) __asm__("qv8_" #name)

/* What the platform calls BOOL. Only Windows has that name here: X11's protocol headers give it to a byte. */
typedef int QV8BOOL;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int32_t LONG;
typedef unsigned int UINT;
typedef size_t SIZE_T;
typedef uintptr_t DWORD_PTR;
typedef const char* LPCSTR;

typedef void* HGLOBAL;
typedef void* HWND;

#ifndef FALSE
#define FALSE 0
#define TRUE 1
#endif

typedef struct tagPOINT {
    LONG x;
    LONG y;
} POINT;

typedef struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
} RECT;

typedef struct tagRGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
} RGBQUAD;

typedef struct tagBITMAPINFOHEADER {
    DWORD biSize;
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
} BITMAPINFOHEADER;

enum { BI_RGB = 0, BI_RLE8 = 1, BI_RLE4 = 2, BI_BITFIELDS = 3 };

enum { CF_DIB = 8 };

enum { GMEM_FIXED = 0x0000, GMEM_MOVEABLE = 0x0002, GMEM_ZEROINIT = 0x0040, GHND = 0x0042 };

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Makes a block, unlocked. The caller frees it with GlobalFree.
 * @param flags [GMEM values] must hold GMEM_MOVEABLE; with GMEM_ZEROINIT every byte is 0, without it the contents are
 *   unspecified.
 * @param bytes [bytes, at most 0x7FFFFFFF] size of the block.
 * @return its handle, which is never its address, or 0 when memory is short, `bytes` is above 0x7FFFFFFF or a fixed
 *   block is asked for.
 */
QV8_PLATFORM_EXPORT HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) QV8_PLATFORM_NAME(GlobalAlloc);

/**
 * Adds one lock to the block.
 * @param block [handle] of the block.
 * @return its address, or 0 when `block` is not the handle of a live block or the block is empty.
 */
QV8_PLATFORM_EXPORT void* GlobalLock(HGLOBAL block) QV8_PLATFORM_NAME(GlobalLock);

/**
 * Takes one lock off.
 * @param block [handle] of the block.
 * @return non-zero while locks are left, else 0 (also for a block that is not locked).
 */
QV8_PLATFORM_EXPORT QV8BOOL GlobalUnlock(HGLOBAL block) QV8_PLATFORM_NAME(GlobalUnlock);

/**
 * Frees the block, locked or not.
 * @param block [handle] of the block.
 * @return 0, or `block` itself when it is not the handle of a live block.
 */
QV8_PLATFORM_EXPORT HGLOBAL GlobalFree(HGLOBAL block) QV8_PLATFORM_NAME(GlobalFree);

/**
 * The size of the block in bytes; 0 when `block` is not the handle of a live block.
 * @param block [handle] of the block.
 */
QV8_PLATFORM_EXPORT SIZE_T GlobalSize(HGLOBAL block) QV8_PLATFORM_NAME(GlobalSize);

/**
 * The handle of the block that begins at an address; 0 when there is none.
 * @param address [address] as GlobalLock returned it.
 */
QV8_PLATFORM_EXPORT HGLOBAL GlobalHandle(const void* address) QV8_PLATFORM_NAME(GlobalHandle);

/**
 * The lock count of the block in the low byte; 0x8000 when `block` is not the handle of a live block.
 * @param block [handle] of the block.
 */
QV8_PLATFORM_EXPORT UINT GlobalFlags(HGLOBAL block) QV8_PLATFORM_NAME(GlobalFlags);

/**
 * Opens the clipboard, which is one for all threads of this process and holds at most one block.
 * @param window [window] may be anything.
 * @return non-zero, or 0 while another thread has it open, or this one for another window.
 */
QV8_PLATFORM_EXPORT QV8BOOL OpenClipboard(HWND window) QV8_PLATFORM_NAME(OpenClipboard);

/** Closes the clipboard. Returns 0 when the calling thread does not have it open. */
QV8_PLATFORM_EXPORT QV8BOOL CloseClipboard(void) QV8_PLATFORM_NAME(CloseClipboard);

/** Frees what the clipboard holds. Returns 0 when the calling thread does not have it open. */
QV8_PLATFORM_EXPORT QV8BOOL EmptyClipboard(void) QV8_PLATFORM_NAME(EmptyClipboard);

/**
 * Puts a block on the clipboard, in place of what it holds.
 * @param format [CF_DIB] the only one there is.
 * @param data [handle] of the block, which the clipboard owns from then on: the caller neither frees nor changes it.
 * @return `data`, or 0, and the caller keeps it, when the calling thread does not have the clipboard open, `format` is
 *   not CF_DIB or `data` is not the handle of a live block.
 */
QV8_PLATFORM_EXPORT HGLOBAL SetClipboardData(UINT format, HGLOBAL data) QV8_PLATFORM_NAME(SetClipboardData);

/**
 * The block on the clipboard, which stays the clipboard's: it is good until the clipboard is closed or emptied.
 * @param format [CF_DIB] the only one there is.
 * @return 0 when there is none, `format` is not CF_DIB or the calling thread does not have the clipboard open.
 */
QV8_PLATFORM_EXPORT HGLOBAL GetClipboardData(UINT format) QV8_PLATFORM_NAME(GetClipboardData);

#ifdef __cplusplus
}
#endif

#endif /* _WIN32 */

#endif /* QV8PLATFORM_H */
