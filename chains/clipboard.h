// Pictures exchanged with other programs over the clipboard.
#ifndef QV8_CHAINS_CLIPBOARD_H
#define QV8_CHAINS_CLIPBOARD_H

#include <cstdint>
#include <string>

#include "chains/progress.h"
#include "pictures/picture.h"

// Puts a picture on the clipboard, which the window owns then; 0 for a program without windows. `name` stands for the
// picture in the words of a Failure.
void CopyToClipboard(const Picture& picture, const std::string& name, const Report& report, HWND window = nullptr);

// The picture on the clipboard, with a 40-byte header. Throws a Failure with kExitInput where there is none, or none
// that is known and of at most `maxPixels` pixels.
Picture PictureFromClipboard(std::uint64_t maxPixels, const Report& report, HWND window = nullptr);

#endif
