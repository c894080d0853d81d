// The table of all effects. A new effect is one entry here.
#include "catalogue/effect.h"

#include <algorithm>

#include "catalogue/export_call.h"
#include "catalogue/parameters.h"

#define QV8_EFFECT(function, ...) Describe<function>(#function, Effect __VA_ARGS__)
#define QV8_EFFECT_WITH_TWIN(function, twin, ...) Describe<function, twin>(#function, #twin, Effect __VA_ARGS__)

namespace catalogue {

namespace {

constexpr Parameter kMirror = Flag("mirror", "exchange left and right before");
constexpr Parameter kFlip = Flag("flip", "exchange top and bottom before");

constexpr std::array kEffects{
    QV8_EFFECT(QV8RGBGamma, {.name = "rgb-gamma",
                             .family = Family::kTone,
                             .help = "lighten or darken red, green and blue by a curve",
                             .source = Source::kPictureInArea,
                             .parameters = {Real("red", "below 0 lightens, above 0 darkens"),
                                            Real("green", "below 0 lightens, above 0 darkens"),
                                            Real("blue", "below 0 lightens, above 0 darkens")}}),
    QV8_EFFECT(QV8RGBLevel, {.name = "rgb-level",
                             .family = Family::kTone,
                             .help = "add a level to red, green and blue",
                             .source = Source::kPictureInArea,
                             .parameters = {Integer("red", "added to red", kAnyInteger, 0),
                                            Integer("green", "added to green", kAnyInteger, 0),
                                            Integer("blue", "added to blue", kAnyInteger, 0)}}),
    QV8_EFFECT(QV8RGBRev, {.name = "rgb-rev",
                           .family = Family::kTone,
                           .help = "invert red, green and blue, or those that are named",
                           .source = Source::kPictureInArea,
                           .parameters = {Plain(Kind::kChannel, "red", "invert red"),
                                          Plain(Kind::kChannel, "green", "invert green"),
                                          Plain(Kind::kChannel, "blue", "invert blue")}}),
    QV8_EFFECT(QV8YCCGamma,
               {.name = "ycc-gamma",
                .family = Family::kTone,
                .help = "lighten or darken luminance and colour differences by a curve",
                .source = Source::kPictureInArea,
                .parameters = {Real("y", "luminance: below 0 lightens, above 0 darkens"),
                               Real("cr", "red difference, likewise"), Real("cb", "blue difference, likewise")}}),
    QV8_EFFECT(QV8YCCLevel, {.name = "ycc-level",
                             .family = Family::kTone,
                             .help = "add a level to luminance and colour differences",
                             .source = Source::kPictureInArea,
                             .parameters = {Integer("y", "added to luminance", kAnyInteger, 0),
                                            Integer("cr", "added to red difference", kAnyInteger, 0),
                                            Integer("cb", "added to blue difference", kAnyInteger, 0)}}),
    QV8_EFFECT(QV8YCCRev, {.name = "ycc-rev",
                           .family = Family::kTone,
                           .help = "invert luminance and colour differences, or those that are named",
                           .source = Source::kPictureInArea,
                           .parameters = {Plain(Kind::kChannel, "y", "invert luminance"),
                                          Plain(Kind::kChannel, "cr", "invert red difference"),
                                          Plain(Kind::kChannel, "cb", "invert blue difference")}}),
    QV8_EFFECT(QV8Chroma, {.name = "chroma",
                           .family = Family::kTone,
                           .help = "strengthen or weaken colour",
                           .source = Source::kPictureInArea,
                           .parameters = {Integer("amount", "change, -100 being grey", {-100, 1000}, 0, "percent")}}),
    QV8_EFFECT(QV8SetGray,
               {.name = "set-gray", .family = Family::kTone, .help = "turn the picture grey at its own depth"}),
    QV8_EFFECT(
        QV8ConvertColor,
        {.name = "convert-color",
         .family = Family::kDepth,
         .help = "convert to another depth",
         .parameters =
             {Needed(OneOf(
                  "depth",
                  "of the result, grey being 8 bits with a grey ramp",
                  {{{"1", 1}, {"4", 4}, {"8", 8}, {"grey", QV8_DEPTH_GREY}, {"16", 16}, {"24", 24}, {"32", 32}}})),
              Flag("fixed-palette", "reduce to a fixed table, not one made from the picture"),
              Flag("dither", "spread the error of each pixel over its neighbours"),
              Integer("threshold", "mean from which on a 1-bit result is white", kByte, 128)},
         .refusal = "the picture has this depth already",
         .refusalMeansUnneeded = true}),
    QV8_EFFECT(
        QV8CustomFilter,
        {.name = "custom-filter",
         .family = Family::kFilter,
         .help = "convolve with a kernel of up to 9 x 9 weights",
         .source = Source::kPictureInArea,
         .depths = Depths::kGreyOrTrueColour,
         .parameters = {Needed(Plain(Kind::kKernel, "kernel", "a name or a text file with rows of weights")),
                        Plain(Kind::kChannel, "red", "filter red"), Plain(Kind::kChannel, "green", "filter green"),
                        Plain(Kind::kChannel, "blue", "filter blue")}}),
    QV8_EFFECT(QV8Sharp, {.name = "sharp",
                          .family = Family::kFilter,
                          .help = "sharpen the luminance",
                          .source = Source::kPictureInArea,
                          .depths = Depths::kGreyOrTrueColour,
                          .parameters = {Integer("strength", "how much", {0, 100}, 30)}}),
    QV8_EFFECT(QV8Emboss, {.name = "emboss",
                           .family = Family::kFilter,
                           .help = "turn the picture into a relief",
                           .source = Source::kPictureInArea,
                           .depths = Depths::kGreyOrTrueColour,
                           .parameters = {Integer("direction", "side that is lit: 0 right, then clockwise", {0, 7}, 1),
                                          Integer("depth", "flat to deep", {1, 5}, 3),
                                          Integer("base", "level of even surfaces", kByte, 128)}}),
    QV8_EFFECT(QV8Shade, {.name = "shade",
                          .family = Family::kFilter,
                          .help = "soften with the mean of a square",
                          .source = Source::kPictureInArea,
                          .depths = Depths::kGreyOrTrueColour,
                          .parameters = {Integer("radius", "of the square that is averaged", {1, 20}, 2, "pixels")}}),
    QV8_EFFECT(QV8RemoveNoise,
               {.name = "remove-noise",
                .family = Family::kFilter,
                .help = "replace pixels by a median of their neighbourhood",
                .source = Source::kPictureInArea,
                .depths = Depths::kGreyOrTrueColour,
                .parameters = {OneOf("mode", "the pixel of middle luminance, or the median of each channel",
                                     {{{"luminance", 0}, {"channels", 1}}}),
                               Integer("sensitivity",
                                       "for channels: 255 less the difference from a neighbour that is left alone",
                                       kByte, 255)}}),
    QV8_EFFECT(QV8AntiAlias, {.name = "anti-alias",
                              .family = Family::kFilter,
                              .help = "average each pixel with its left and right neighbours",
                              .source = Source::kPictureInArea,
                              .depths = Depths::kGreyOrTrueColour}),
    QV8_EFFECT(QV8Mosaic,
               {.name = "mosaic",
                .family = Family::kFilter,
                .help = "paint blocks with their mean colour",
                .source = Source::kPictureInArea,
                .parameters = {Integer("width", "of a block; 1 makes upright stripes", kAnyInteger, 8, "pixels"),
                               Integer("height", "of a block", kAnyInteger, 8, "pixels")},
                .refusal = "width and height of a block cannot both be below 2"}),
    QV8_EFFECT(QV8Outline, {.name = "outline",
                            .family = Family::kFilter,
                            .help = "draw the edges as grey levels",
                            .source = Source::kPictureInArea,
                            .depths = Depths::kGreyOrTrueColour,
                            .parameters = {OneOf("channel", "in which edges are found",
                                                 {{{"luminance", 0}, {"red", 1}, {"green", 2}, {"blue", 3}}}),
                                           OneOf("operator", "that finds them",
                                                 {{{"difference", 0}, {"roberts", 1}, {"sobel", 2}}}, 2),
                                           Integer("gain", "factor on the strength of edges", {0, 100}, 1)}}),
    QV8_EFFECT_WITH_TWIN(QV8SelectImage, QV8SelectImageEx,
                         {.name = "select-image",
                          .family = Family::kSelection,
                          .help = "cut an area out, over a background",
                          .source = Source::kPictureInShape,
                          .parameters = {Plain(Kind::kColour, "background", "outside of the area")}}),
    QV8_EFFECT_WITH_TWIN(
        QV8AutoSelectImage, QV8AutoSelectImageEx,
        {.name = "auto-select-image",
         .family = Family::kSelection,
         .help = "cut an area out and mark what is close to a colour",
         .source = Source::kPictureInShape,
         .parameters = {Plain(Kind::kColour, "colour", "that is looked for"),
                        OneOf("match", "what has to be close: all, the colour whatever its brightness, or that",
                              {{{"rgb", 0}, {"colour", 1}, {"brightness", 2}}}),
                        Integer("tolerance", "mean difference that still matches", kByte, 32)}}),
    QV8_EFFECT(QV8Layer,
               {.name = "layer",
                .family = Family::kComposition,
                .help = "lay another picture over the picture",
                .parameters = {Needed(Plain(Kind::kPicture, "layer", "picture to lay over it")),
                               Integer("opacity", "of the layer", kByte, 255),
                               Plain(Kind::kColour, "transparent", "of the layer, that lets the picture show"),
                               Plain(Kind::kColour, "background", "where neither picture lies"),
                               Integer("x", "left edge of the layer in the picture", kAnyInteger, 0, "pixels"),
                               Integer("y", "top edge of the layer in the picture", kAnyInteger, 0, "pixels"),
                               Flag("clip", "keep the size of the picture")}}),
    QV8_EFFECT(
        QV8PasteImage,
        {.name = "paste-image",
         .family = Family::kComposition,
         .help = "paste another picture, turned and through a mask",
         .parameters = {Needed(Plain(Kind::kMaskedPicture, "pasted", "picture to paste onto the picture")),
                        Plain(Kind::kMask, "mask", "marks what is pasted of it"), Angle(), kMirror, kFlip,
                        Integer("opacity", "of what is pasted", kByte, 255),
                        Plain(Kind::kOptionalColour, "transparent", "of what is pasted, that lets the picture show"),
                        Needed(Integer("x", "column where its middle lies", kAnyInteger, 0, "pixels")),
                        Needed(Integer("y", "row where its middle lies", kAnyInteger, 0, "pixels")),
                        Flag("nearest", "take the nearest pixel instead of blending neighbours")}}),
    QV8_EFFECT(
        QV8Panorama,
        {.name = "panorama",
         .family = Family::kComposition,
         .help = "join another picture by two points marked in both",
         .depths = Depths::kTrueColour24,
         .parameters = {Needed(Plain(Kind::kPicture, "added", "picture to join to the picture")),
                        OneOf("seam", "add only what lies on that side of the way from first to second point",
                              {{{"none", 0}, {"left", 1}, {"right", 2}}}),
                        Points("a1", "first point in the picture", 1), Points("a2", "second point in the picture", 1),
                        Points("b1", "first point in the added picture", 1),
                        Points("b2", "second point in the added picture", 1),
                        Plain(Kind::kOptionalColour, "transparent",
                              "of the added picture, that lets the picture show")},
         .refusal = "two points are equal, or the added picture would be scaled to less than a pixel"}),
    QV8_EFFECT_WITH_TWIN(
        QV8Rotation, QV8RotationEx,
        {.name = "rotation",
         .family = Family::kGeometry,
         .help = "mirror, flip and turn",
         .source = Source::kMaskedPicture,
         .parameters = {Angle(), kMirror, kFlip, Flag("smooth", "blend neighbouring pixels"),
                        Plain(Kind::kColour, "background", "of what the turned picture does not cover"),
                        Flag("keep-size", "cut the turned picture to the size of the source"),
                        Plain(Kind::kMask, "mask", "is turned along")}}),
    QV8_EFFECT_WITH_TWIN(QV8Resize, QV8ResizeEx,
                         {.name = "resize",
                          .family = Family::kGeometry,
                          .help = "scale to a new size",
                          .source = Source::kMaskedPicture,
                          .parameters = {Side(Kind::kWidth, "width"), Side(Kind::kHeight, "height"),
                                         Flag("smooth", "blend pixels instead of repeating or dropping them"),
                                         Plain(Kind::kScale, "scale", "factor for both sides"),
                                         Plain(Kind::kMask, "mask", "is scaled along")}}),
    QV8_EFFECT(QV8Affine, {.name = "affine",
                           .family = Family::kGeometry,
                           .help = "make a four-cornered area upright",
                           .parameters = {Points("corners", "of the area that becomes upright, in any order", 4)},
                           .refusal = "the corners leave no area"}),
    QV8_EFFECT(QV8CreateImage,
               {.name = "create-image",
                .family = Family::kCreation,
                .help = "make a picture of one colour",
                .source = Source::kNothing,
                .parameters = {Needed(Side(Kind::kWidth, "width")), Needed(Side(Kind::kHeight, "height")),
                               OneOf("depth", "in bits",
                                     {{{"1", 1}, {"4", 4}, {"8", 8}, {"16", 16}, {"24", 24}, {"32", 32}}}, 24),
                               Plain(Kind::kColour, "colour", "of every pixel")}}),
    QV8_EFFECT(QV8CopyImage, {.name = "copy-image", .family = Family::kCreation, .help = "copy the picture unchanged"}),
    QV8_EFFECT(
        QV8SetSecretImage,
        {.name = "set-secret-image",
         .family = Family::kHidden,
         .help = "hide a picture or a text in the luminance",
         .depths = Depths::kTrueColour24,
         .parameters =
             {Needed(Plain(Kind::kPattern, "picture", "hide the set bits of this 1-bit picture"), Need::kOneOf),
              Needed(Plain(Kind::kText, "text", "hide this text; \\n breaks a line"), Need::kOneOf),
              Plain(Kind::kText, "font", "name of the font"), Integer("size", "of the font", {1, 0xFFFF}, 24, "points"),
              Flag("bold", ""), Flag("italic", ""), Flag("underline", ""), Flag("strike-out", ""),
              Flag("vertical", "characters below one another", 2),
              OneOf("angle", "of the text, degrees to the left", {{{"0", 0}, {"90", 90}, {"180", 180}, {"270", 270}}}),
              Integer("strength", "change of luminance", kAnyInteger, 3),
              Plain(Kind::kRectangle, "rect", "where the text is; a picture is at its upper left corner")},
         .refusal = "a text has at most 128 characters and the name of a font 32"}),
    QV8_EFFECT(QV8CheckSecretImage,
               {.name = "check-secret-image",
                .family = Family::kHidden,
                .help = "show what is hidden, as black and white",
                .depths = Depths::kTrueColour24,
                .parameters = {Needed(Plain(Kind::kPicture, "marked", "the marked picture, the other being unmarked")),
                               Integer("threshold", "least rise of luminance that is shown", kAnyInteger, 2)}}),
    QV8_EFFECT(QV8SetToClipBrd, {.name = "set-to-clip-brd",
                                 .family = Family::kClipboard,
                                 .help = "put the picture on the clipboard",
                                 .source = Source::kPictureForClipboard}),
    QV8_EFFECT(QV8GetFromClipBrd, {.name = "get-from-clip-brd",
                                   .family = Family::kClipboard,
                                   .help = "take the picture that is on the clipboard",
                                   .source = Source::kClipboard}),
    QV8_EFFECT(QV8IsClipBrdData, {.name = "is-clip-brd-data",
                                  .family = Family::kClipboard,
                                  .help = "tell whether the clipboard holds a picture",
                                  .source = Source::kClipboard}),
    QV8_EFFECT(QV8ClearClipBrd, {.name = "clear-clip-brd",
                                 .family = Family::kClipboard,
                                 .help = "take everything off the clipboard",
                                 .source = Source::kClipboard}),
};

} // namespace

std::span<const Choice> Parameter::Choices() const {
    const auto* const end =
        std::find_if(choices.begin(), choices.end(), [](const Choice& c) { return c.name == nullptr; });
    return {choices.begin(), end};
}

std::span<const Parameter> Effect::Parameters() const {
    const auto* const end =
        std::find_if(parameters.begin(), parameters.end(), [](const Parameter& p) { return p.name == nullptr; });
    return {parameters.begin(), end};
}

std::span<const Parameter> AreaParameters(const Effect& effect) {
    static constexpr std::array kParameters{Plain(Kind::kMask, "mask", "marks the area"),
                                            Parameter{.name = "polygon",
                                                      .help = "corners of the area, at least two",
                                                      .kind = Kind::kPoints,
                                                      .range = {2, kPositive.most},
                                                      .unit = "pixels"},
                                            Plain(Kind::kRectangle, "ellipse", "rectangle around the area"),
                                            Flag("outside", "everything but that area")};
    return std::span(kParameters)
        .subspan(effect.source == Source::kPictureInArea    ? 0
                 : effect.source == Source::kPictureInShape ? 1
                                                            : kParameters.size());
}

std::span<const Effect> AllEffects() {
    return kEffects;
}

const Effect* FindEffect(std::string_view name) {
    const auto* const found =
        std::find_if(kEffects.begin(), kEffects.end(), [name](const Effect& e) { return e.name == name; });
    return found == kEffects.end() ? nullptr : found;
}

const char* FamilyName(Family family) {
    constexpr std::array kNames{"Tone and colour", "Depth",        "Filters",  "Selection", "Geometry",
                                "Composition",     "Hidden marks", "Creation", "Clipboard"};
    return kNames[static_cast<std::size_t>(family)];
}

} // namespace catalogue
