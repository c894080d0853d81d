// What files say about their pictures besides the pixels, in forms that several formats share.
#ifndef QV8_PICTURES_METADATA_H
#define QV8_PICTURES_METADATA_H

#include <array>
#include <span>

#include "pictures/formats.h"

// The orientation in an EXIF block, 1 to 8 as in TIFF; 1, upright, when there is none or the block is damaged.
unsigned ExifOrientation(std::span<const BYTE> exif);

// Makes an EXIF block fit a picture that stands upright and may have been changed: the orientation becomes 1, and the
// small picture is taken out, which would show the picture as it was before.
void RefreshExif(std::span<BYTE> exif);

// What stands in front of the block in JPEG files, and in some WebP files.
inline constexpr std::array<BYTE, 6> kExifPrefix{'E', 'x', 'i', 'f', 0, 0};
bool HasExifPrefix(std::span<const BYTE> bytes);

// Whether a colour profile is one for grey levels, or one for red, green and blue. It must be the kind that the file's
// pixels are.
bool IsGreyProfile(std::span<const BYTE> profile);
bool IsColourProfile(std::span<const BYTE> profile);

// Turns and mirrors a picture, so that it stands upright: 1 does nothing, 2 to 8 as in EXIF and TIFF. All bytes of a
// pixel are kept.
Picture Upright(Picture picture, unsigned orientation);

// Sets what the file's orientation asks for: picture, resolution and EXIF.
void ApplyOrientation(LoadedPicture& loaded, unsigned orientation);

// Dots per inch, the nearest whole number where that was meant.
double DotsPerInch(std::uint32_t perMetre);
std::uint32_t PerMetre(double dotsPerInch);

#endif
