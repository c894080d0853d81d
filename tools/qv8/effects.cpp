#include "effects.h"

#include <array>

#include "effect_families.h"

namespace {

constexpr std::array kEffects{
    Effect{"rgb-gamma", "lighten or darken red, green and blue by a curve", AddRgbGamma},
    Effect{"rgb-level", "add a level to red, green and blue", AddRgbLevel},
    Effect{"rgb-rev", "invert red, green and blue, or those that are named", AddRgbRev},
    Effect{"ycc-gamma", "lighten or darken luminance and colour differences by a curve", AddYccGamma},
    Effect{"ycc-level", "add a level to luminance and colour differences", AddYccLevel},
    Effect{"ycc-rev", "invert luminance and colour differences, or those that are named", AddYccRev},
    Effect{"chroma", "strengthen or weaken colour", AddChroma},
    Effect{"set-gray", "turn the picture grey at its own depth", AddSetGray},
    Effect{"convert-color", "convert to another depth", AddConvertColor},
    Effect{"custom-filter", "convolve with a kernel of up to 9 x 9 weights", AddCustomFilter},
    Effect{"sharp", "sharpen the luminance", AddSharp},
    Effect{"emboss", "turn the picture into a relief", AddEmboss},
    Effect{"shade", "soften with the mean of a square", AddShade},
    Effect{"remove-noise", "replace pixels by a median of their neighbourhood", AddRemoveNoise},
    Effect{"anti-alias", "average each pixel with its left and right neighbours", AddAntiAlias},
    Effect{"mosaic", "paint blocks with their mean colour", AddMosaic},
    Effect{"outline", "draw the edges as grey levels", AddOutline},
    Effect{"select-image", "cut an area out, over a background", AddSelectImage, Source::kPicture,
           Gives::kPictureAndMask},
    Effect{"auto-select-image", "cut an area out and mark what is close to a colour", AddAutoSelectImage,
           Source::kPicture, Gives::kPictureAndMask},
    Effect{"layer", "lay another picture over the picture", AddLayer},
    Effect{"paste-image", "paste another picture, turned and through a mask", AddPasteImage},
    Effect{"panorama", "join another picture by two points marked in both", AddPanorama},
    Effect{"rotation", "mirror, flip and turn", AddRotation},
    Effect{"resize", "scale to a new size", AddResize, Source::kPicture, Gives::kPictureAndMask},
    Effect{"affine", "make a four-cornered area upright", AddAffine},
    Effect{"create-image", "make a picture of one colour", AddCreateImage, Source::kNone},
    Effect{"copy-image", "copy the picture unchanged", AddCopyImage},
    Effect{"set-secret-image", "hide a picture or a text in the luminance", AddSetSecretImage},
    Effect{"check-secret-image", "show what is hidden, as black and white", AddCheckSecretImage},
};

} // namespace

std::span<const Effect> AllEffects() {
    return kEffects;
}
