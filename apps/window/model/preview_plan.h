// Which part of a picture a preview is made from, at which scale, and with which values.
#ifndef QV8_WINDOW_PREVIEW_PLAN_H
#define QV8_WINDOW_PREVIEW_PLAN_H

#include "model/parameter_values.h"
#include "tools/view_mapping.h"

struct PreviewPlan {
    double scale = 1;    // that is enough; the level may be larger
    bool partly = false; // the visible part will do
    LONG margin = 0;     // pixels around the part that its pixels depend on
};

// For an effect at that zoom.
PreviewPlan PlanPreview(const catalogue::Effect& effect, double zoom);

// The visible part with its margin, inside the picture, and at least a pixel of it.
RECT PartFor(const RECT& visible, LONG margin, LONG width, LONG height);

// The values for a picture whose pixel (0, 0) was at `origin` of the whole, scaled by `scale` (across and down).
ParameterValues MappedValues(const ParameterValues& values, POINT origin, Extent scale);

// Where the upper left corner of the result lies in the picture, for results of another size than the picture's.
Position CornerOfResult(const ParameterValues& values, Extent picture, Extent result);

#endif
