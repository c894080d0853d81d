// Pictures exchanged with other programs over the clipboard.
#ifndef QV8_APP_CLIPBOARD_H
#define QV8_APP_CLIPBOARD_H

#include <cstdint>
#include <string>

#include "pictures/picture.h"

// Puts a picture on the clipboard. `name` stands for it in the words of a Failure.
void CopyToClipboard(const Picture& picture, const std::string& name);

// The picture on the clipboard, with a 40-byte header. Throws a Failure with kExitInput where there is none, or none
// that is known and of at most `maxPixels` pixels.
Picture PictureFromClipboard(std::uint64_t maxPixels);

#endif
