#include "info.h"

#include <algorithm>
#include <array>

#include <qv8com.h>
#include <qv8platform.h>

namespace {

bool IsGreyRamp(const LockedPicture& picture) {
    std::array<bool, 256> seen{};
    for (std::size_t i = 0; i < picture.TableEntries(); ++i) {
        const RGBQUAD& entry = picture.Table()[i];
        if (entry.rgbRed != entry.rgbGreen || entry.rgbGreen != entry.rgbBlue) {
            return false;
        }
        seen[entry.rgbRed] = true;
    }
    return picture.TableEntries() == 256 && std::all_of(seen.begin(), seen.end(), [](bool level) { return level; });
}

const char* Layout16(int layout) {
    return layout == 1 || layout == 3 ? "red, green, blue of 5, 5, 5 bits"
           : layout == 2              ? "red, green, blue of 5, 6, 5 bits"
                                      : "channel masks that the effects do not accept";
}

std::string Layout(const LockedPicture& picture) {
    switch (picture.Header().biBitCount) {
    case 1:
    case 4:
        return "indices into a colour table";
    case 8:
        return IsGreyRamp(picture) ? "indices into a grey ramp" : "indices into a colour table";
    case 16:
        return Layout16(GetBmp16Info(picture.Bytes()));
    case 24:
        return "blue, green, red";
    default:
        return GetBmp32Info(picture.Bytes()) != -1 ? "blue, green, red, fourth byte"
                                                   : "channel masks that the effects do not accept";
    }
}

} // namespace

std::string DescribePicture(const std::string& name, const LoadedPicture& loaded) {
    const LockedPicture picture(loaded.picture);
    const bool masks = picture.Header().biCompression == BI_BITFIELDS;
    return name + "\n" +                                                                                           //
           "  format       " + FormatName(loaded.format) + "\n" +                                                  //
           "  size         " + std::to_string(picture.Width()) + " x " + std::to_string(picture.Height()) + "\n" + //
           "  depth        " + std::to_string(picture.Header().biBitCount) + " bits\n" +                           //
           "  layout       " + Layout(picture) + "\n" +                                                            //
           "  table        " + std::to_string(picture.TableEntries()) + " entries\n" +                             //
           "  compression  " + (masks ? "none, with channel masks\n" : "none\n");
}
