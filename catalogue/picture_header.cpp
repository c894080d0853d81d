#include "catalogue/picture_header.h"

#include <algorithm>
#include <cstring>

#include <qv8com.h>

namespace catalogue {

namespace {

// What `look` makes of a locked picture, or `otherwise` when the block cannot be one.
template <class Look, class Answer>
Answer LookAt(HGLOBAL picture, Answer otherwise, Look look) {
    if (picture == nullptr || GlobalSize(picture) < sizeof(BITMAPINFOHEADER)) {
        return otherwise;
    }
    const auto* const bytes = static_cast<const BYTE*>(GlobalLock(picture));
    if (bytes == nullptr) {
        return otherwise;
    }
    Answer answer = look(bytes);
    GlobalUnlock(picture);
    return answer;
}

WORD DepthOf(const BYTE* bytes) {
    return reinterpret_cast<const BITMAPINFOHEADER*>(bytes)->biBitCount;
}

} // namespace

std::optional<BITMAPINFOHEADER> HeaderOf(HGLOBAL picture) {
    return LookAt(picture, std::optional<BITMAPINFOHEADER>(), [](const BYTE* bytes) {
        BITMAPINFOHEADER header;
        std::memcpy(&header, bytes, sizeof header);
        return std::optional(header);
    });
}

bool HasKnownLayout(HGLOBAL picture) {
    return LookAt(picture, false, [](const BYTE* bytes) {
        const WORD bits = DepthOf(bytes);
        return bits == 16 ? GetBmp16Info(bytes) != -1 : bits != 32 || GetBmp32Info(bytes) != -1;
    });
}

bool HasGreyRamp(HGLOBAL picture) {
    return LookAt(picture, false, [picture](const BYTE* bytes) {
        constexpr std::size_t kLevels = 256;
        const bool fits = DepthOf(bytes) == 8 && DibNumColors(bytes) == static_cast<int>(kLevels) &&
                          GlobalSize(picture) >= sizeof(BITMAPINFOHEADER) + kLevels * sizeof(RGBQUAD);
        std::array<bool, kLevels> seen{};
        const auto* const table = reinterpret_cast<const RGBQUAD*>(bytes + sizeof(BITMAPINFOHEADER));
        const auto noteGrey = [&seen](const RGBQUAD& entry) {
            seen[entry.rgbRed] = true;
            return entry.rgbRed == entry.rgbGreen && entry.rgbGreen == entry.rgbBlue;
        };
        return fits && std::all_of(table, table + kLevels, noteGrey) &&
               std::all_of(seen.begin(), seen.end(), [](bool level) { return level; });
    });
}

bool IsAmong(Depths depths, HGLOBAL picture) {
    const WORD bits = LookAt(picture, WORD{0}, DepthOf);
    switch (depths) {
    case Depths::kAny:
        return true;
    case Depths::kTrueColour24:
        return bits == 24;
    default:
        return bits >= 16 || HasGreyRamp(picture);
    }
}

} // namespace catalogue
