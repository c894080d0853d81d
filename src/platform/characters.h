// Texts in the character set of the fonts: one or two bytes a character.
#pragma once

#include "platform/platform.h"

namespace qv8 {

// Whether the byte begins a character of two bytes.
constexpr bool IsLeadByte(char byte) {
    const auto value = static_cast<BYTE>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

} // namespace qv8
