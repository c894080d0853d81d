// Empty pictures that are otherwise like another one.
#pragma once

#include "support/picture.h"

namespace test {

// The picture's header and table at another size, all pixels 0.
inline Picture Emptied(const Picture& source, int width, int height) {
    Picture result = source;
    BITMAPINFOHEADER header = source.Header();
    header.biWidth = width;
    header.biHeight = height;
    header.biSizeImage = static_cast<DWORD>(RowBytesOf(source.Bits(), width)) * static_cast<DWORD>(height);
    result.bytes.resize(source.PixelOffset());
    result.SetHeader(header);
    result.bytes.resize(result.bytes.size() + header.biSizeImage);
    return result;
}

} // namespace test
