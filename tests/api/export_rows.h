// The rows of the table of exports, one file per family. Each row: name, layouts accepted, use of the area, status of a
// zero handle and of a depth that does not exist, typical call.
#pragma once

#include "api/export_table.h"

namespace test {

constexpr int kBadPicture = QV8_STATUS_PICTURE;
constexpr int kBadParameter = QV8_STATUS_PARAMETER;
constexpr int kBadDepth = QV8_STATUS_DEPTH;

inline Result Single(HGLOBAL image) {
    return {image, nullptr, image != nullptr};
}

std::span<const Export> ToneRows();
std::span<const Export> ConvertRows();
std::span<const Export> FilterRows();
std::span<const Export> SelectRows();
std::span<const Export> ComposeRows();
std::span<const Export> SpecialFilterRows();
std::span<const Export> AffineRows();
std::span<const Export> RotationRows();
std::span<const Export> ResizeRows();
std::span<const Export> ImageRows();
std::span<const Export> ClipboardRows();
std::span<const Export> HiddenRows();
std::span<const Export> PanoramaRows();
std::span<const Export> TextRows(); // beside the table

} // namespace test
