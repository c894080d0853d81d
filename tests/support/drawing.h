// The drawing calls of the platform, for programs that are no part of the library. Off Windows they are not public, but
// they are there under names that qv8platform.h explains.
#pragma once

#include "qv8platform.h"

#ifndef _WIN32

using BOOL = int;
using HDC = void*;
using HGDIOBJ = void*;
using HBITMAP = void*;
using HBRUSH = void*;
using HFONT = void*;
using COLORREF = DWORD;
struct BITMAPINFO;
struct LOGFONTA;
struct SIZE;

constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

enum { WHITE_BRUSH = 0, WHITE_PEN = 6, DIB_RGB_COLORS = 0 };

extern "C" {
QV8_PLATFORM_EXPORT HDC GetDC(HWND window) QV8_PLATFORM_NAME(GetDC);
QV8_PLATFORM_EXPORT int ReleaseDC(HWND window, HDC context) QV8_PLATFORM_NAME(ReleaseDC);
QV8_PLATFORM_EXPORT HDC CreateCompatibleDC(HDC context) QV8_PLATFORM_NAME(CreateCompatibleDC);
QV8_PLATFORM_EXPORT BOOL DeleteDC(HDC context) QV8_PLATFORM_NAME(DeleteDC);
QV8_PLATFORM_EXPORT HBITMAP CreateCompatibleBitmap(HDC context, int width, int height)
    QV8_PLATFORM_NAME(CreateCompatibleBitmap);
QV8_PLATFORM_EXPORT BOOL DeleteObject(HGDIOBJ object) QV8_PLATFORM_NAME(DeleteObject);
QV8_PLATFORM_EXPORT HGDIOBJ SelectObject(HDC context, HGDIOBJ object) QV8_PLATFORM_NAME(SelectObject);
QV8_PLATFORM_EXPORT HGDIOBJ GetStockObject(int index) QV8_PLATFORM_NAME(GetStockObject);
QV8_PLATFORM_EXPORT int SetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, const void* bits,
                                  const BITMAPINFO* info, UINT usage) QV8_PLATFORM_NAME(SetDIBits);
QV8_PLATFORM_EXPORT int GetDIBits(HDC context, HBITMAP bitmap, UINT startRow, UINT rows, void* bits, BITMAPINFO* info,
                                  UINT usage) QV8_PLATFORM_NAME(GetDIBits);
QV8_PLATFORM_EXPORT BOOL Polygon(HDC context, const POINT* points, int count) QV8_PLATFORM_NAME(Polygon);
QV8_PLATFORM_EXPORT BOOL Ellipse(HDC context, int left, int top, int right, int bottom) QV8_PLATFORM_NAME(Ellipse);
QV8_PLATFORM_EXPORT BOOL MoveToEx(HDC context, int x, int y, POINT* previous) QV8_PLATFORM_NAME(MoveToEx);
QV8_PLATFORM_EXPORT BOOL LineTo(HDC context, int x, int y) QV8_PLATFORM_NAME(LineTo);
QV8_PLATFORM_EXPORT HBRUSH CreateSolidBrush(COLORREF colour) QV8_PLATFORM_NAME(CreateSolidBrush);
QV8_PLATFORM_EXPORT BOOL ExtFloodFill(HDC context, int x, int y, COLORREF colour, UINT mode)
    QV8_PLATFORM_NAME(ExtFloodFill);
QV8_PLATFORM_EXPORT HFONT CreateFontIndirectA(const LOGFONTA* description) QV8_PLATFORM_NAME(CreateFontIndirectA);
QV8_PLATFORM_EXPORT COLORREF SetTextColor(HDC context, COLORREF colour) QV8_PLATFORM_NAME(SetTextColor);
QV8_PLATFORM_EXPORT COLORREF SetBkColor(HDC context, COLORREF colour) QV8_PLATFORM_NAME(SetBkColor);
QV8_PLATFORM_EXPORT int SetBkMode(HDC context, int mode) QV8_PLATFORM_NAME(SetBkMode);
QV8_PLATFORM_EXPORT BOOL GetTextExtentPoint32A(HDC context, LPCSTR text, int bytes, SIZE* extent)
    QV8_PLATFORM_NAME(GetTextExtentPoint32A);
QV8_PLATFORM_EXPORT int DrawTextA(HDC context, LPCSTR text, int bytes, RECT* rect, UINT format)
    QV8_PLATFORM_NAME(DrawTextA);
}

#endif
