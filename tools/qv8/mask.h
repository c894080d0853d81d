// Pictures that mark the area of an effect.
#ifndef QV8_TOOL_MASK_H
#define QV8_TOOL_MASK_H

#include <string>

#include "effects.h"
#include "pictures/picture.h"

// Reads a picture as a mask for the one in `request`. A 1-bit picture marks with its set bits, whatever their colours;
// any other marks where its luminance is 128 or more. `inverted` exchanges the two. Throws a Failure with kExitInput
// when the file cannot be read or has another size.
Picture LoadMask(const std::string& name, bool inverted, const EffectRequest& request);

// The mask that a picture of another depth stands for. `name` is for messages.
Picture MaskFromLuminance(const Picture& picture, const std::string& name);

#endif
