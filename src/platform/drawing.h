// Stand-ins for the drawing calls of the platform: bitmaps of the screen's format in memory, drawn on with a pen one
// pixel wide and a solid brush. Only what the library draws with is here; results equal the platform's bit for bit.
#pragma once

#include "qv8platform.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Qv8DeviceContext* HDC;
typedef void* HGDIOBJ;
typedef struct Qv8Bitmap* HBITMAP;

typedef struct tagBITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
} BITMAPINFO;

enum { WHITE_BRUSH = 0, WHITE_PEN = 6, BLACK_PEN = 7 };
enum { R2_COPYPEN = 13 };
enum { DIB_RGB_COLORS = 0 };

/* The screen's context is not drawn on; one from CreateCompatibleDC draws into the bitmap selected into it, at first
   with a black pen and a white brush. ReleaseDC returns 1 for a context from GetDC, else 0. */
QV8_PLATFORM_EXPORT HDC GetDC(HWND window);
QV8_PLATFORM_EXPORT int ReleaseDC(HWND window, HDC context);
QV8_PLATFORM_EXPORT HDC CreateCompatibleDC(HDC context);
QV8_PLATFORM_EXPORT BOOL DeleteDC(HDC context);

/* A black bitmap; 0 without a context, when a side is below 1 or above 2^29, or when memory is short or more than
   0x7FFFFFFF bytes of it were needed. */
QV8_PLATFORM_EXPORT HBITMAP CreateCompatibleBitmap(HDC context, int width, int height);
/* Deletes a bitmap, but not while it is selected. Stock objects stay. */
QV8_PLATFORM_EXPORT BOOL DeleteObject(HGDIOBJ object);

/* Selects a bitmap, pen or brush and returns the one that was selected before; 0 for a bitmap that is selected into
   another context. */
QV8_PLATFORM_EXPORT HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
QV8_PLATFORM_EXPORT HGDIOBJ GetStockObject(int index);
/* Returns the mode that was set before. R2_COPYPEN is the only mode; others give 0. */
QV8_PLATFORM_EXPORT int SetROP2(HDC context, int mode);

/* Copy rows between a bitmap and a 1-bit picture of its size, whose rows go bottom-up; `bits` is the picture's row
   `startRow`. Return the number of rows copied, 0 for any other kind of picture. A colour of the table becomes black or
   white, whichever is nearer; reading sets the table to black and white. */
QV8_PLATFORM_EXPORT int SetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits,
                                  const BITMAPINFO* info, UINT usage);
QV8_PLATFORM_EXPORT int GetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info,
                                  UINT usage);

/* Fill a shape with the selected brush (alternate fill) and draw its outline with the selected pen. Coordinates count
   from the top left corner; right and bottom of the ellipse are excluded. Return FALSE, with nothing drawn, without a
   bitmap to draw on, for fewer than two points, when a coordinate is beyond 2^29 or memory is short. */
QV8_PLATFORM_EXPORT BOOL Polygon(HDC context, const POINT* points, int count);
QV8_PLATFORM_EXPORT BOOL Ellipse(HDC context, int left, int top, int right, int bottom);

#ifdef __cplusplus
}
#endif
