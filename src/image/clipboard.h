// Pictures to and from the clipboard, which holds them as CF_DIB.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// Puts a copy of the picture on the clipboard, in place of what it holds.
BOOL SetToClipboard(HWND window, HGLOBAL image, const Progress& progress);

// A new picture with what the clipboard holds.
HGLOBAL GetFromClipboard(HWND window, const Progress& progress);

BOOL HasClipboardData(HWND window);

BOOL ClearClipboard(HWND window);

} // namespace qv8
