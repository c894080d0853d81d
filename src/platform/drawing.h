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

enum { WHITE_BRUSH = 0, BLACK_PEN = 7, WHITE_PEN = 6 };
enum { R2_COPYPEN = 13 };
enum { DIB_RGB_COLORS = 0 };

/* The screen's context for a null window; one from CreateCompatibleDC draws into the bitmap selected into it. */
QV8_PLATFORM_EXPORT HDC GetDC(HWND window);
QV8_PLATFORM_EXPORT int ReleaseDC(HWND window, HDC context);
QV8_PLATFORM_EXPORT HDC CreateCompatibleDC(HDC context);
QV8_PLATFORM_EXPORT BOOL DeleteDC(HDC context);

/* A bitmap with the screen's pixels; 0 when a side is below 1 or memory is short. */
QV8_PLATFORM_EXPORT HBITMAP CreateCompatibleBitmap(HDC context, int width, int height);
QV8_PLATFORM_EXPORT BOOL DeleteObject(HGDIOBJ object);

/* Selects a bitmap, pen or brush and returns the one that was selected before. */
QV8_PLATFORM_EXPORT HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
QV8_PLATFORM_EXPORT HGDIOBJ GetStockObject(int index);
QV8_PLATFORM_EXPORT int SetROP2(HDC context, int mode);

/* Copy rows between a bitmap and a packed 1-bit picture (rows bottom-up); return the number of rows copied. Reading
   turns each pixel into the nearer of the two colours in the table of `info`. */
QV8_PLATFORM_EXPORT int SetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits,
                                  const BITMAPINFO* info, UINT usage);
QV8_PLATFORM_EXPORT int GetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info,
                                  UINT usage);

/* Fill a shape with the selected brush (alternate fill) and draw its outline with the selected pen. Coordinates count
   from the top left corner; right and bottom of the ellipse are excluded. */
QV8_PLATFORM_EXPORT BOOL Polygon(HDC context, const POINT* points, int count);
QV8_PLATFORM_EXPORT BOOL Ellipse(HDC context, int left, int top, int right, int bottom);

#ifdef __cplusplus
}
#endif
