// The landscape, in pixels of a picture of 640 x 480.
#ifndef QV8_SAMPLE_SCENE_H
#define QV8_SAMPLE_SCENE_H

#include "colour.h"

inline constexpr int kWidth = 640;
inline constexpr int kHeight = 480;

// Sky, mountains, far shore and lake at a point.
Colour BackdropAt(double x, double y);

// Shore, grass, flowers and trees, drawn over a canvas that is `scale` times as large.
void DrawForeground(Canvas& canvas, double scale);

#endif
