#include "info.h"

#include <qv8com.h>
#include <qv8platform.h>

#include "catalogue/picture_header.h"
#include "chains/json.h"
#include "message.h"

namespace {

const char* Layout16(int layout) {
    return layout == 1 || layout == 3 ? "red, green, blue of 5, 5, 5 bits"
           : layout == 2              ? "red, green, blue of 5, 6, 5 bits"
                                      : "channel masks that the effects do not accept";
}

std::string Layout(const LockedPicture& picture, HGLOBAL block) {
    switch (picture.Header().biBitCount) {
    case 1:
    case 4:
        return "indices into a colour table";
    case 8:
        return catalogue::HasGreyRamp(block) ? "indices into a grey ramp" : "indices into a colour table";
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
    return OneLine(name) + "\n" +                                                                                  //
           "  format       " + FormatName(loaded.format) + "\n" +                                                  //
           "  size         " + std::to_string(picture.Width()) + " x " + std::to_string(picture.Height()) + "\n" + //
           "  depth        " + std::to_string(picture.Header().biBitCount) + " bits\n" +                           //
           "  layout       " + Layout(picture, loaded.picture.Handle()) + "\n" +                                   //
           "  table        " + std::to_string(picture.TableEntries()) + " entries\n" +                             //
           "  compression  " + (masks ? "none, with channel masks\n" : "none\n");
}

std::string DescribeAsJson(const std::string& name, const LoadedPicture& loaded) {
    const LockedPicture picture(loaded.picture);
    return JsonLine({{"name", name},
                     {"format", std::string(FormatName(loaded.format))},
                     {"width", static_cast<std::int64_t>(picture.Width())},
                     {"height", static_cast<std::int64_t>(picture.Height())},
                     {"depth", std::int64_t{picture.Header().biBitCount}},
                     {"layout", Layout(picture, loaded.picture.Handle())},
                     {"table", static_cast<std::int64_t>(picture.TableEntries())}});
}
