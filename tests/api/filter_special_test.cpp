// Noise removal, anti-aliasing, mosaic and outline against their definitions, pixel by pixel.
#include <algorithm>
#include <cmath>
#include <vector>

#include "api/slow_filter.h"
#include "qv8com.h"

namespace test {
namespace {

struct Place {
    int x, row;
};

// The places of the 3 x 3 neighbourhood that are in the picture, from the lower left.
std::vector<Place> PlacesAround(const Picture& source, int x, int row) {
    std::vector<Place> places;
    for (int v = std::max(row - 1, 0); v <= std::min(row + 1, source.Height() - 1); ++v) {
        for (int u = std::max(x - 1, 0); u <= std::min(x + 1, source.Width() - 1); ++u) {
            places.push_back({u, v});
        }
    }
    return places;
}

// Few levels, so that many samples are equal.
Scene Posterised(const Scene& scene) {
    Picture picture = scene.picture.Content();
    for (std::size_t i = picture.PixelOffset(); i != picture.bytes.size(); ++i) {
        picture.bytes[i] &= 0xC1;
    }
    return {Source(picture), Source(scene.mask.Content()), Source(scene.second.Content()), scene.area};
}

void CopyPixel(const Picture& source, Place from, int x, int row, Picture& expected) {
    if (source.Bits() == 16) {
        std::copy_n(&source.bytes[source.PixelAddress(from.x, from.row)], 2,
                    &expected.bytes[source.PixelAddress(x, row)]);
    } else {
        expected.SetColour(x, row, source.ColourAt(from.x, from.row));
    }
}

void CheckByLuminance(const Scene& scene) {
    CheckPixels(
        scene, [](const Call& call) { return CallWithArea(QV8RemoveNoise, call, 0xF00U, 0x77U); },
        [](const Picture& source, int x, int row, Picture& expected) {
            std::vector<Place> places = PlacesAround(source, x, row);
            std::stable_sort(places.begin(), places.end(), [&](Place a, Place b) {
                return LuminanceAt(source, a.x, a.row) < LuminanceAt(source, b.x, b.row);
            });
            const Place chosen = places[places.size() / 2];
            if (source.Bits() == 8) {
                expected.SetIndex(x, row, source.ColourAt(chosen.x, chosen.row).blue); // the level, as an index
            } else {
                CopyPixel(source, chosen, x, row, expected);
            }
        });
}

TEST(RemoveNoise, ChoosesThePixelOfMiddleLuminance) {
    Random random(60);
    ForEachFilterScene(random, 8, [](const Scene& scene) {
        CheckByLuminance(scene);
        CheckByLuminance(Posterised(scene));
    });
}

void CheckByChannel(const Scene& scene, int sensitivity) {
    CheckFilter(
        scene,
        [&](const Call& call) { return CallWithArea(QV8RemoveNoise, call, 1U, static_cast<DWORD>(sensitivity)); },
        [&](const Picture& source, int x, int row) {
            return EachChannel([&](BYTE Colour::*channel) {
                const BYTE centre = source.ColourAt(x, row).*channel;
                std::vector<BYTE> neighbours;
                bool differs = false;
                for (const Place place : PlacesAround(source, x, row)) {
                    if (place.x != x || place.row != row) {
                        neighbours.push_back(source.ColourAt(place.x, place.row).*channel);
                        differs = differs || std::abs(neighbours.back() - centre) > 255 - (sensitivity & 255);
                    }
                }
                std::sort(neighbours.begin(), neighbours.end());
                return differs ? neighbours[neighbours.size() / 2] : centre;
            });
        });
}

TEST(RemoveNoise, ReplacesChannelsThatStandOut) {
    Random random(61);
    ForEachFilterScene(random, 8, [&](const Scene& scene) {
        const int sensitivity = random.Chance(4) ? 0xFF * random.Between(0, 1) : random.Between(0, 511);
        CheckByChannel(scene, sensitivity);
        CheckByChannel(Posterised(scene), sensitivity);
    });
}

TEST(RemoveNoise, CopiesExactlyInOtherModes) {
    Random random(62);
    ForEachFilterScene(random, 1, [](const Scene& scene) {
        CheckPixels(
            scene, [](const Call& call) { return CallWithArea(QV8RemoveNoise, call, 2U, 255U); },
            [](const Picture&, int, int, Picture&) {});
    });
}

TEST(AntiAlias, IsTheMeanOfThreeInARow) {
    Random random(63);
    ForEachFilterScene(random, 8, [](const Scene& scene) {
        CheckFilter(
            scene, [](const Call& call) { return CallWithArea(QV8AntiAlias, call); },
            [](const Picture& source, int x, int row) {
                return EachChannel([&](BYTE Colour::*channel) {
                    int sum = 0;
                    int count = 0;
                    for (const Place place : PlacesAround(source, x, row)) {
                        if (place.row == row) {
                            sum += source.ColourAt(place.x, place.row).*channel;
                            ++count;
                        }
                    }
                    return sum / count;
                });
            });
    });
}

// --- Mosaic ----------------------------------------------------------------------------------------------------------

// Where the blocks of an area begin, rows from the bottom.
Place CornerOf(const Area& area, int width, int height) {
    if (area.inside == 0 || area.type == QV8_AREA_WHOLE || area.type == QV8_AREA_MASK) {
        return {0, 0};
    }
    std::vector<POINT> points = area.points;
    if (area.type == QV8_AREA_ELLIPSE) {
        points = {{area.rect.left, area.rect.top}, {area.rect.right, area.rect.bottom}};
    }
    Place corner = {width - 1, height - 1};
    for (const POINT& point : points) {
        corner.x = std::min(corner.x, static_cast<int>(std::clamp<LONG>(point.x, 0, width - 1)));
        corner.row = std::min(corner.row, height - 1 - static_cast<int>(std::clamp<LONG>(point.y, 0, height - 1)));
    }
    return corner;
}

// The mean of the pixels `first` up to but not `end` along each side, cut at the border.
Colour MeanOf(const Picture& source, Place first, std::int64_t endX, std::int64_t endRow) {
    return EachChannel([&](BYTE Colour::*channel) {
        unsigned sum = 0;
        unsigned count = 0;
        for (int row = first.row; row < std::min<std::int64_t>(endRow, source.Height()); ++row) {
            for (int x = first.x; x < std::min<std::int64_t>(endX, source.Width()); ++x, ++count) {
                sum += source.ColourAt(x, row).*channel;
            }
        }
        return sum / count;
    });
}

void CheckMosaic(const Scene& scene, int width, int height) {
    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
    const Picture& content = scene.picture.Content();
    const Place corner = CornerOf(scene.area, content.Width(), content.Height());
    const int blockWidth = std::max(width, 1);
    const int blockHeight = std::max(height, 1);
    CheckPixels(
        scene, [&](const Call& call) { return CallWithArea(QV8Mosaic, call, width, height); },
        [&](const Picture& source, int x, int row, Picture& expected) {
            const Place first = {x - (x - corner.x) % blockWidth, row - (row - corner.row) % blockHeight};
            const Colour mean =
                MeanOf(source, first, std::int64_t{first.x} + blockWidth, std::int64_t{first.row} + blockHeight);
            if (source.Bits() <= 8) {
                expected.SetIndex(x, row, source.NearestIndex(mean));
            } else {
                expected.SetColour(x, row, mean);
            }
        });
}

TEST(Mosaic, PaintsBlocksWithTheirMean) {
    Random random(64);
    const auto size = [&] { return random.Chance(8) ? 0x7FFFFFFF : random.Between(-1, 12); };
    ForEachFilterScene(
        random, 8,
        [&](const Scene& scene) {
            const int width = size();
            CheckMosaic(scene, width, width < 2 ? random.Between(2, 9) : size());
        },
        kAcceptAll);
}

// More rows in a block than one pass sums, in the lightest colour, and more means than the table of searches begins
// with.
TEST(Mosaic, SumsTallBlocksAndFindsManyMeans) {
    Random random(65);
    Picture white = BlankPicture(24, 3, 700);
    std::fill(white.bytes.begin() + static_cast<std::ptrdiff_t>(white.PixelOffset()), white.bytes.end(), 255);
    const Source one(BlankPicture(1, 1, 1));
    CheckMosaic({Source(white), Source(one.Content()), Source(white), {}}, 1, 600);
    CheckMosaic(RandomScene(LayoutNamed("8"), AreaForm::kWhole, 90, 60, random), 2, 1);
}

TEST(Mosaic, ReportsRowsOfBlocksAndRefusesSinglePixels) {
    Random random(66);
    const Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kWhole, 5, 10, random);
    Block result;
    const hooks::Report report = hooks::Watch({}, [&] { result.reset(CallWithArea(QV8Mosaic, scene.AsCall(), 0, 4)); });
    std::vector<int> rows;
    for (const auto& progress : report.progress) {
        rows.push_back(progress.current);
        EXPECT_EQ(progress.last, 9);
    }
    EXPECT_EQ(rows, (std::vector<int>{0, 4, 8}));

    Picture strange = scene.picture.Content();
    BITMAPINFOHEADER header = strange.Header();
    header.biBitCount = 7;
    strange.SetHeader(header);
    const Source refused(strange);
    Call call = scene.AsCall();
    call.target.hImage = refused.Handle();
    EXPECT_EQ(CallWithArea(QV8Mosaic, call, 1, 1), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    EXPECT_EQ(CallWithArea(QV8Mosaic, call, 1, 2), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
}

// --- Outline ---------------------------------------------------------------------------------------------------------

constexpr int kFirstKernels[3][9] = {
    {0, 0, 0, 0, 1, -1, 0, 0, 0}, {0, 0, 0, 0, 1, 0, 0, 0, -1}, {-1, 0, 1, -2, 0, 2, -1, 0, 1}};
constexpr int kSecondKernels[3][9] = {
    {0, 0, 0, 0, 1, 0, 0, -1, 0}, {0, 0, 0, 0, 0, 1, 0, -1, 0}, {-1, -2, -1, 0, 0, 0, 1, 2, 1}};

int ValueAt(const Picture& source, int x, int row, int channel) {
    const int u = std::clamp(x, 0, source.Width() - 1);
    const int v = std::clamp(row, 0, source.Height() - 1);
    const Colour colour = source.ColourAt(u, v);
    const int values[4] = {LuminanceAt(source, u, v), colour.red, colour.green, colour.blue};
    return values[channel];
}

void CheckOutline(const Scene& scene, int channel, int edgeOperator, int gain) {
    SCOPED_TRACE("channel " + std::to_string(channel) + ", operator " + std::to_string(edgeOperator) + ", gain " +
                 std::to_string(gain));
    const int kernels = edgeOperator > 2 ? 1 : edgeOperator;
    CheckFilter(
        scene,
        [&](const Call& call) {
            return CallWithArea(QV8Outline, call, static_cast<DWORD>(0x500 | channel),
                                static_cast<DWORD>(0x300 | edgeOperator), static_cast<DWORD>(0x900 | gain));
        },
        [&](const Picture& source, int x, int row) {
            int first = 0;
            int second = 0;
            for (int i = 0; i != 9; ++i) {
                const int value = ValueAt(source, x + i % 3 - 1, row + 1 - i / 3, channel);
                first += kFirstKernels[kernels][i] * value;
                second += kSecondKernels[kernels][i] * value;
            }
            const double length = std::sqrt(static_cast<double>(first * first + second * second));
            const auto grey = static_cast<BYTE>(std::min(length * std::min(gain, 100), 255.0));
            return Colour{grey, grey, grey};
        });
}

TEST(Outline, IsTheLengthOfTheGradient) {
    Random random(67);
    ForEachFilterScene(random, 12, [&](const Scene& scene) {
        const int gain = random.Chance(5) ? random.Between(0, 1) : random.Between(0, 255);
        CheckOutline(scene, random.Between(0, 3), random.Between(0, 4), gain);
    });
}

TEST(Outline, RefusesOtherChannelsBeforeItsArea) {
    Random random(68);
    for (const char* const layout : {"8-grey", "24"}) {
        const Scene scene = RandomScene(LayoutNamed(layout), AreaForm::kWhole, 5, 5, random);
        Call call = scene.AsCall();
        call.area.type = QV8_AREA_MASK; // without a mask
        call.target.hMask = nullptr;
        EXPECT_EQ(CallWithArea(QV8Outline, call, 4U, 0U, 1U), nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
        EXPECT_EQ(CallWithArea(QV8Outline, call, 3U, 0U, 1U), nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
    }
}

} // namespace
} // namespace test
