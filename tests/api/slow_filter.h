// Neighbourhood filters the slow obvious way: a function of one pixel, applied to every pixel of an area.
#pragma once

#include <functional>

#include "api/export_table.h"

namespace test {

// The new colour of a pixel; of grey ramps the blue channel is the new grey level.
using SlowPixel = std::function<Colour(const Picture& source, int x, int row)>;

// Calls the export and compares what it returns with the slow function. `call` makes the result.
void CheckFilter(const Scene& scene, const std::function<HGLOBAL(const Call&)>& call, const SlowPixel& pixel);

// The same for a function that writes the pixel itself, at any depth.
using SetPixel = std::function<void(const Picture& source, int x, int row, Picture& expected)>;
void CheckPixels(const Scene& scene, const std::function<HGLOBAL(const Call&)>& call, const SetPixel& set);

// The pixel of the picture that is nearest to a place.
Colour Repeated(const Picture& source, int x, int row);

// Its luminance, or grey level.
int LuminanceAt(const Picture& source, int x, int row);

// Scenes of every layout that filters take, in every form of area, with sizes of all kinds: use(scene).
void ForEachFilterScene(Random& random, int rounds, const std::function<void(const Scene&)>& use,
                        unsigned accepted = kAccept8Grey | kAccept16 | kAccept24 | kAccept32);

template <class Use>
Colour EachChannel(Use use) {
    return {static_cast<BYTE>(use(&Colour::blue)), static_cast<BYTE>(use(&Colour::green)),
            static_cast<BYTE>(use(&Colour::red))};
}

} // namespace test
