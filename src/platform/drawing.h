// Stand-ins for the drawing calls of the platform: bitmaps in memory, drawn on with a pen one pixel wide, a solid brush
// and fonts. Only what the library draws with is here. Shapes equal the platform's bit for bit; characters look as this
// system's fonts have them.
#pragma once

#include "qv8platform.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef QV8BOOL BOOL;
typedef struct Qv8DeviceContext* HDC;
typedef void* HGDIOBJ;
typedef struct Qv8Bitmap* HBITMAP;
typedef struct Qv8Brush* HBRUSH;
typedef struct Qv8Font* HFONT;
typedef DWORD COLORREF;

typedef struct tagBITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
} BITMAPINFO;

typedef struct tagSIZE {
    LONG cx;
    LONG cy;
} SIZE;

enum { LF_FACESIZE = 32 };

typedef struct tagLOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char lfFaceName[LF_FACESIZE];
} LOGFONTA;

#define RGB(red, green, blue) ((COLORREF)((red) | (green) << 8 | (blue) << 16))
#define CLR_INVALID 0xFFFFFFFFU

enum { FW_NORMAL = 400, FW_BOLD = 700, SHIFTJIS_CHARSET = 128 };
enum { OUT_STROKE_PRECIS = 3, CLIP_STROKE_PRECIS = 2, DEFAULT_QUALITY = 0, DEFAULT_PITCH = 0, FF_DONTCARE = 0 };
enum { LOGPIXELSY = 90 };
enum { OPAQUE = 2 };
enum { DT_SINGLELINE = 0x0020, DT_NOCLIP = 0x0100 };
enum { WHITE_BRUSH = 0, WHITE_PEN = 6, BLACK_PEN = 7 };
enum { R2_COPYPEN = 13 };
enum { DIB_RGB_COLORS = 0 };
enum { FLOODFILLSURFACE = 1 };

/* The screen's context is not drawn on; one from CreateCompatibleDC draws into the bitmap selected into it, at first
   with a black pen and a white brush. ReleaseDC returns 1 for a context from GetDC, else 0. */
QV8_PLATFORM_EXPORT HDC GetDC(HWND window) QV8_PLATFORM_NAME(GetDC);
QV8_PLATFORM_EXPORT int ReleaseDC(HWND window, HDC context) QV8_PLATFORM_NAME(ReleaseDC);
QV8_PLATFORM_EXPORT HDC CreateCompatibleDC(HDC context) QV8_PLATFORM_NAME(CreateCompatibleDC);
QV8_PLATFORM_EXPORT BOOL DeleteDC(HDC context) QV8_PLATFORM_NAME(DeleteDC);

/* A black bitmap; 0 without a context, when a side is below 1 or above 2^29, or when memory is short or more than
   0x7FFFFFFF bytes of it were needed. */
QV8_PLATFORM_EXPORT HBITMAP CreateCompatibleBitmap(HDC context, int width, int height)
    QV8_PLATFORM_NAME(CreateCompatibleBitmap);
/* Deletes a bitmap, but not while it is selected, or a brush or font that is selected no more. Stock objects stay. */
QV8_PLATFORM_EXPORT BOOL DeleteObject(HGDIOBJ object) QV8_PLATFORM_NAME(DeleteObject);

/* Selects a bitmap, pen or brush and returns the one that was selected before; 0 for a bitmap that is selected into
   another context. */
QV8_PLATFORM_EXPORT HGDIOBJ SelectObject(HDC context, HGDIOBJ object) QV8_PLATFORM_NAME(SelectObject);
QV8_PLATFORM_EXPORT HGDIOBJ GetStockObject(int index) QV8_PLATFORM_NAME(GetStockObject);
/* Returns the mode that was set before. R2_COPYPEN is the only mode; others give 0. */
QV8_PLATFORM_EXPORT int SetROP2(HDC context, int mode) QV8_PLATFORM_NAME(SetROP2);

/* Copy rows between a bitmap and a 1-bit picture of its size, whose rows go bottom-up; `bits` is the picture's row
   `startRow`. Return the number of rows copied, 0 for any other kind of picture. A colour of the table becomes black or
   white, whichever is nearer; reading sets the table to black and white. */
QV8_PLATFORM_EXPORT int SetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits,
                                  const BITMAPINFO* info, UINT usage) QV8_PLATFORM_NAME(SetDIBits);
QV8_PLATFORM_EXPORT int GetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info,
                                  UINT usage) QV8_PLATFORM_NAME(GetDIBits);

/* Fill a shape with the selected brush (alternate fill) and draw its outline with the selected pen. Coordinates count
   from the top left corner; right and bottom of the ellipse are excluded. Return FALSE, with nothing drawn, without a
   bitmap to draw on, for fewer than two points, when a coordinate is beyond 2^29 or memory is short. */
QV8_PLATFORM_EXPORT BOOL Polygon(HDC context, const POINT* points, int count) QV8_PLATFORM_NAME(Polygon);
QV8_PLATFORM_EXPORT BOOL Ellipse(HDC context, int left, int top, int right, int bottom) QV8_PLATFORM_NAME(Ellipse);

/* A line goes from the position, (0, 0) at first, up to and not including the place given, which is the position then.
   Return FALSE without a context, a bitmap to draw on, or when a coordinate of the line is beyond 2^29. */
QV8_PLATFORM_EXPORT BOOL MoveToEx(HDC context, int x, int y, POINT* previous) QV8_PLATFORM_NAME(MoveToEx);
QV8_PLATFORM_EXPORT BOOL LineTo(HDC context, int x, int y) QV8_PLATFORM_NAME(LineTo);

/* A brush in black or white, whichever is nearer. */
QV8_PLATFORM_EXPORT HBRUSH CreateSolidBrush(COLORREF colour) QV8_PLATFORM_NAME(CreateSolidBrush);
/* Fills the pixels of black or white, whichever is nearer to `colour`, that are connected with a place, sideways or up
   and down. FLOODFILLSURFACE is the only mode. Returns FALSE for another mode, for a place that is outside the bitmap
   or of the other colour, and when memory is short; then a part may be filled. */
QV8_PLATFORM_EXPORT BOOL ExtFloodFill(HDC context, int x, int y, COLORREF colour, UINT mode)
    QV8_PLATFORM_NAME(ExtFloodFill);

/* The resolution of the screen, 96 dots per inch, for LOGPIXELSY; 0 for any other value. */
QV8_PLATFORM_EXPORT int GetDeviceCaps(HDC context, int index) QV8_PLATFORM_NAME(GetDeviceCaps);
/* number * numerator / denominator, rounded to the nearest, halves away from zero; -1 when that does not fit. */
QV8_PLATFORM_EXPORT int MulDiv(int number, int numerator, int denominator) QV8_PLATFORM_NAME(MulDiv);

/* The installed font that is nearest to the face name, size, weight and slant; 0 when there is none that scales. The
   height is that of the characters, as a negative number, or 0 for 12 points; the escapement a whole number of quarter
   turns. Character set and qualities are not looked at: text is in Shift-JIS, whose first half is ASCII. */
QV8_PLATFORM_EXPORT HFONT CreateFontIndirectA(const LOGFONTA* description) QV8_PLATFORM_NAME(CreateFontIndirectA);
/* Colours are black or white, whichever is nearer. Return what was set before; CLR_INVALID or 0 without a context. */
QV8_PLATFORM_EXPORT COLORREF SetTextColor(HDC context, COLORREF colour) QV8_PLATFORM_NAME(SetTextColor);
QV8_PLATFORM_EXPORT COLORREF SetBkColor(HDC context, COLORREF colour) QV8_PLATFORM_NAME(SetBkColor);
/* OPAQUE is the only mode; others give 0. */
QV8_PLATFORM_EXPORT int SetBkMode(HDC context, int mode) QV8_PLATFORM_NAME(SetBkMode);
/* The space that a line of text takes before it is turned. Control characters have no width. */
QV8_PLATFORM_EXPORT BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int bytes, SIZE* extent)
    QV8_PLATFORM_NAME(GetTextExtentPoint32A);
/* Draws one line, whether DT_SINGLELINE is given or not, with its upper left corner, as one reads it, at the upper left
   corner of the rectangle. DT_NOCLIP has to be given. Two ampersands draw one, a single one nothing. Returns the height
   of the line; 0 without a bitmap or font, for other formats, and when memory is short or a character too large. */
QV8_PLATFORM_EXPORT int DrawTextA(HDC context, LPCSTR text, int bytes, RECT* rect, UINT format)
    QV8_PLATFORM_NAME(DrawTextA);

#ifdef __cplusplus
}
#endif
