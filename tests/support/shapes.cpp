#include "support/shapes.h"

#include <cstdlib>
#include <sstream>
#include <utility>

#include "support/random.h"

namespace test {
namespace {

class Generator {
public:
    std::vector<Shape> Make() {
        Repeat(850, [this] { SizedPolygon(1, 20, 0); });
        Repeat(250, [this] { SizedPolygon(20, 100, 0); });
        Repeat(60, [this] { ScatteredPolygon(300, 5, 0); });
        Repeat(30, [this] { ScatteredPolygon(3, 150, 0); });
        Repeat(80, [this] { SizedPolygon(5, 30, 40); });
        Repeat(300, [this] { LatticePolygon(random_.Between(1, 4)); });
        Repeat(150, [this] { LatticePolygon(14); }); // corners on the border or in the middle
        Repeat(20, [this] { SinglePointPolygon(); });
        Repeat(100, [this] { StraightPolygon(); });
        AllDirections();
        SmallEllipses();
        Repeat(330, [this] { ScatteredEllipse(100, 100, 0); });
        Repeat(60, [this] { ScatteredEllipse(300, 6, 0); });
        Repeat(60, [this] { ScatteredEllipse(40, 40, 30); });
        Ellipse(65536, 10, {0, 0}, {65536, 10});
        AllSeams();
        Repeat(150, [this] { SizedSeam(1, 40, 40); });
        Repeat(4, [this] { SizedSeam(100, 300, 200); });
        return std::move(shapes_);
    }

private:
    template <typename Function>
    void Repeat(int times, Function make) {
        for (int i = 0; i < times; ++i) {
            make();
        }
    }

    void Add(Shape::Kind kind, int width, int height, std::vector<POINT> points) {
        Shape shape;
        shape.kind = kind;
        shape.width = width;
        shape.height = height;
        shape.points = std::move(points);
        shapes_.push_back(std::move(shape));
    }

    // Corners anywhere in the bitmap and up to `beyond` pixels around it.
    POINT Anywhere(int width, int height, int beyond) {
        const LONG x = random_.Between(-beyond, width - 1 + beyond);
        return {x, random_.Between(-beyond, height - 1 + beyond)};
    }
    void ScatteredPolygon(int width, int height, int beyond) {
        std::vector<POINT> points;
        Repeat(random_.Between(2, 12), [&] { points.push_back(Anywhere(width, height, beyond)); });
        Add(Shape::kPolygon, width, height, std::move(points));
    }

    // Sizes from `least` on. They are drawn in statements, for the order of arguments is the compiler's affair.
    void SizedPolygon(int least, int most, int beyond) {
        const int height = random_.Between(least, most);
        const int width = random_.Between(least, most);
        ScatteredPolygon(width, height, beyond);
    }
    void SizedSeam(int least, int widest, int highest) {
        const int height = random_.Between(least, highest);
        const int width = random_.Between(least, widest);
        ScatteredSeam(width, height);
    }

    // Corners on a lattice of three by three, so that many coincide, lie in one line or end horizontally.
    void LatticePolygon(int step) {
        std::vector<POINT> points;
        Repeat(random_.Between(2, 12), [&] {
            const LONG x = step * random_.Between(0, 2);
            points.push_back({x, step * random_.Between(0, 2)});
        });
        Add(Shape::kPolygon, 2 * step + 1, 2 * step + 1, std::move(points));
    }
    void SinglePointPolygon() {
        const POINT point = Anywhere(9, 5, 0);
        Add(Shape::kPolygon, 9, 5, std::vector<POINT>(static_cast<std::size_t>(random_.Between(2, 5)), point));
    }
    void StraightPolygon() {
        const int dx = random_.Between(-5, 5);
        const int dy = random_.Between(-5, 5);
        std::vector<POINT> points;
        Repeat(random_.Between(3, 6), [&] {
            const int distance = random_.Between(-5, 5);
            points.push_back({25 + distance * dx, 25 + distance * dy});
        });
        Add(Shape::kPolygon, 51, 51, std::move(points));
    }

    // From one point in every direction: each slope of a line and each way to break a tie.
    void AllDirections() {
        for (int dy = -8; dy <= 8; ++dy) {
            for (int dx = -8; dx <= 8; ++dx) {
                Add(Shape::kPolygon, 17, 17, {{8, 8}, {8 + dx, 8 + dy}});
            }
        }
    }

    void Ellipse(int width, int height, POINT corner, POINT opposite) {
        const int shapeWidth = std::abs(opposite.x - corner.x);
        const int shapeHeight = std::abs(opposite.y - corner.y);
        if (IsDefinedEllipse(shapeWidth, shapeHeight)) {
            Add(Shape::kEllipse, width, height, {corner, opposite});
        }
    }
    void SmallEllipses() {
        for (int height = 0; height <= 20; ++height) {
            for (int width = 0; width <= 20; ++width) {
                const LONG x = random_.Between(0, 2);
                const LONG y = random_.Between(0, 2);
                Ellipse(width + 3, height + 3, {x, y}, {x + width, y + height});
            }
        }
    }
    void ScatteredEllipse(int width, int height, int beyond) {
        const POINT corner = Anywhere(width, height, beyond);
        Ellipse(width, height, corner, Anywhere(width, height, beyond));
    }

    // A line in every direction, beyond the bitmap at one end or both, or ending inside, and each side of it filled.
    void Seam(int width, int height, POINT from, POINT to) {
        for (const LONG x : {0, width - 1}) {
            for (const LONG y : {0, height - 1}) {
                Add(Shape::kSeam, width, height, {from, to, {x, y}});
            }
        }
    }
    void AllSeams() {
        for (int dy = -8; dy <= 8; ++dy) {
            for (int dx = -8; dx <= 8; ++dx) {
                const int reach = random_.Between(1, 3);
                const POINT from = {8 - dx * random_.Between(1, 3), 7 - dy * reach};
                Seam(17, 15, from, {8 + dx * reach, 7 + dy * reach});
            }
        }
    }
    void ScatteredSeam(int width, int height) {
        const POINT to = Anywhere(width, height, 10);
        const POINT from = Anywhere(width, height, 10);
        Seam(width, height, from, to);
        const POINT bottom = {random_.Between(-10, width + 9), height + 9};
        Seam(width, height, bottom, {random_.Between(-10, width + 9), -10});
        const LONG left = random_.Between(-1000, 1000);
        Seam(width, height, {-10, left}, {width + 9, random_.Between(-1000, 1000)});
    }

    Random random_{1};
    std::vector<Shape> shapes_;
};

} // namespace

bool Shape::IsSet(int x, int y) const {
    const std::size_t byte = static_cast<std::size_t>(height - 1 - y) * Stride() + static_cast<std::size_t>(x) / 8;
    return (mask[byte] & 0x80U >> (static_cast<unsigned>(x) % 8)) != 0;
}

bool IsDefinedEllipse(std::int64_t width, std::int64_t height) {
    const std::int64_t square = width * width;
    return width < 3 || (width % 2 != 0 ? 9 * height < 8 * square : 16 * height < 7 * square);
}

std::string Describe(const Shape& shape) {
    std::ostringstream text;
    static constexpr const char* kNames[] = {"polygon", "ellipse", "seam"};
    text << kNames[shape.kind] << " in " << shape.width << " x " << shape.height;
    for (const POINT& point : shape.points) {
        text << " (" << point.x << ", " << point.y << ")";
    }
    return text.str();
}

std::vector<Shape> GenerateShapes() {
    return Generator().Make();
}

} // namespace test
