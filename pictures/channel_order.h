// Pixels with red first and pixels with blue first.
#ifndef QV8_PICTURES_CHANNEL_ORDER_H
#define QV8_PICTURES_CHANNEL_ORDER_H

#include <cstddef>

#include <qv8platform.h>

// Copies `width` pixels and exchanges the first and the third of their three or four bytes. `to` may be `from`.
void SwapRedAndBlue(const BYTE* from, BYTE* to, std::size_t width, std::size_t pixelBytes);

#endif
