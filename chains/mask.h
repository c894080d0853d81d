// Pictures that mark the area of an effect.
#ifndef QV8_CHAINS_MASK_H
#define QV8_CHAINS_MASK_H

#include <string>

#include "pictures/picture.h"

// The picture as a mask: a 1-bit picture as it is, marking with its set bits, whatever their colours; any other marks
// where its luminance is 128 or more. `name` is for messages.
Picture AsMask(Picture picture, const std::string& name);

// Throws a Failure with kExitInput when a mask has another size than the picture it is for.
void CheckMaskSize(HGLOBAL mask, const std::string& maskName, HGLOBAL image, const std::string& imageName);

// Exchanges what is marked and what is not.
void InvertMask(const Picture& mask);

#endif
