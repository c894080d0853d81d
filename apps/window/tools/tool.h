// What the mouse and the keyboard draw and drag on a picture. Tools know positions in the picture and values of
// parameters; windows and drawing are left to tools/paint.h, so that all of them can be tried without a window.
#ifndef QV8_WINDOW_TOOLS_TOOL_H
#define QV8_WINDOW_TOOLS_TOOL_H

#include <memory>
#include <string>
#include <vector>

#include "catalogue/effect.h"
#include "tools/view_mapping.h"

struct MouseEvent {
    enum class Kind { kPress, kMove, kRelease, kDoubleClick };

    Kind kind = Kind::kMove; // moves come with the button down and without
    Position at;             // in the picture, or outside of it
    double reach = 0;        // how far from a handle still takes hold of it, in pixels of the picture
    bool shift = false;      // keeps sides equal, angles to steps
};

// The keys that tools know, by the system's virtual key codes.
namespace tool_key {
inline constexpr int kBack = 0x08;
inline constexpr int kReturn = 0x0D;
inline constexpr int kEscape = 0x1B;
inline constexpr int kLeft = 0x25;
inline constexpr int kUp = 0x26;
inline constexpr int kRight = 0x27;
inline constexpr int kDown = 0x28;
inline constexpr int kDelete = 0x2E;
} // namespace tool_key

// How far an arrow key moves something; not at all for other keys.
Position StepOf(int virtualKey);

enum class ToolCursor { kArrow, kCross, kMove, kTurn, kSizeUpright, kSizeAcross, kSizeFalling, kSizeRising };

// What a tool shows, in positions of the picture.
struct Outline {
    std::vector<Position> points;
    bool closed = true;
};
struct NumberedPoint {
    Position at;
    int number = 0;
};
struct PlacedPicture {
    HGLOBAL picture = nullptr; // the caller's
    Position corner;           // upper left
    Extent size;
};
struct Figure {
    std::vector<PlacedPicture> pictures;
    std::vector<Outline> area;  // edges of an area, which move
    std::vector<Outline> lines; // frames and ways
    std::vector<Position> handles;
    std::vector<NumberedPoint> points;
};

// A value that was drawn, for the parameter of that name in the catalogue: of an effect or of its area.
struct DrawnValue {
    std::string name;
    catalogue::Value value;
};
using DrawnValues = std::vector<DrawnValue>;

class Tool {
public:
    Tool() = default;
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;
    virtual ~Tool() = default;

    // Returns whether what is drawn has changed, and so what Values() and Shown() say.
    virtual bool Mouse(const MouseEvent& event) = 0;
    virtual bool Key(int virtualKey);
    // For the pointer at a position with no button down.
    virtual ToolCursor CursorAt(Position at, double reach) const = 0;
    virtual Figure Shown() const = 0;

    // What was drawn so far; nothing as long as something is missing.
    virtual DrawnValues Values() const = 0;
    // Takes values that were changed elsewhere, as in the parameter panel. Others than the tool's own are ignored.
    virtual void Follow(const DrawnValues& values) = 0;

    // What there is to see besides the picture: the panorama has its second picture on the right.
    virtual Extent Room(Extent picture) const {
        return picture;
    }
};

enum class AreaForm { kRectangle, kEllipse, kPolygon, kColour };

// Draws a selection: Values() are those of AreaParameters(). With kColour a click chooses a pixel, whose position is
// the point of the value "pixel": tools/selection.h makes a mask of the colours like it.
std::unique_ptr<Tool> MakeAreaTool(AreaForm form, Extent picture);

// What the tool of an effect works on.
struct ToolSubject {
    Extent picture;
    HGLOBAL second = nullptr; // the other picture, the caller's, for as long as the tool lives; 0 when none is chosen
    Extent secondSize;
};

// The tool for the parameters of an effect that can be drawn: its points, rectangle, size, angle or the place of a
// second picture. Null when there are none, or the second picture is missing.
std::unique_ptr<Tool> MakeEffectTool(const catalogue::Effect& effect, const ToolSubject& subject);

#endif
