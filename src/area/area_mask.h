// Masks of polygons and ellipses, drawn by the platform into 1-bit pictures.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// Header and the two colours of a mask.
constexpr std::size_t kMaskHeaderBytes = 48;

// An empty 1-bit picture, black (0) and white (1), of zeros. Sets status 3 when it fails.
NewPicture NewMask(int width, int height);

// Draw into a mask that is not locked. False when it could not be drawn. The ellipse leaves status 9 when the platform
// could not draw it, 0 else.
bool DrawPolygonMask(HGLOBAL mask, const POINT* points, int pointCount);
bool DrawEllipseMask(HGLOBAL mask, const RECT& rect);

// Complements the rows of a mask, padding included. False when it cannot be locked.
bool InvertMask(HGLOBAL mask, std::size_t stride);

} // namespace qv8
