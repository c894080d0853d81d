#include <qv8com.h>

#include "catalogue/picture_header.h"
#include "catalogue/run.h"

namespace catalogue {

namespace {

const char* DepthWords(Depths depths) {
    return depths == Depths::kTrueColour24 ? "24 bits" : "16, 24, 32 bits or a grey table of 8 bits";
}

// The first picture of a call that the effect does not take at its depth, or null.
HGLOBAL WrongDepth(const Effect& effect, const Request& request) {
    std::vector<HGLOBAL> pictures{request.image};
    const auto parameters = effect.Parameters();
    for (std::size_t i = 0; i != parameters.size() && i < request.values.size(); ++i) {
        const auto* const picture = std::get_if<HGLOBAL>(&request.values[i]);
        if (picture != nullptr && parameters[i].kind == Kind::kPicture) {
            pictures.push_back(*picture);
        }
    }
    for (HGLOBAL picture : pictures) {
        if (picture != nullptr && !IsAmong(effect.depths, picture)) {
            return picture;
        }
    }
    return nullptr;
}

std::string ExplainPicture(const Effect& effect, const Request& request) {
    if (effect.source == Source::kClipboard) {
        return "the clipboard holds no picture that can be read";
    }
    if (!HasKnownLayout(request.image)) {
        return "the picture has channel masks that effects do not take; save it with 24 or 32 bits first";
    }
    if (auto* const picture = WrongDepth(effect, request); picture != nullptr) {
        const std::string subject = picture == request.image ? "the picture" : "the second picture";
        return "it needs " + std::string(DepthWords(effect.depths)) + " and " + subject + " has " +
               std::to_string(HeaderOf(picture)->biBitCount) + "; convert-color --depth 24 makes it so";
    }
    if (request.area.type == QV8_AREA_MASK) {
        return "the mask is not a 1-bit picture of the size of the picture";
    }
    return "the pictures do not fit each other or one of them is damaged";
}

} // namespace

std::string Explain(const Effect& effect, const Request& request, int status) {
    switch (status) {
    case QV8_STATUS_SUCCESS:
    case QV8_STATUS_PARAMETER:
        return effect.refusal != nullptr ? effect.refusal : "a value is out of range";
    case QV8_STATUS_DIALOG:
        return "there is no pixel to draw on, or the area could not be drawn";
    case QV8_STATUS_MEMORY:
        return "out of memory, or the result would be larger than 2 GiB";
    case QV8_STATUS_DEPTH:
    case QV8_STATUS_PICTURE:
        return ExplainPicture(effect, request);
    case QV8_STATUS_DRAWING:
        return "there is no such font, or the text could not be drawn";
    default:
        return GetErrorStatusText(status);
    }
}

} // namespace catalogue
