// The control in which the picture is: drawing it, its preview and what tools draw; zooming and moving it.
#ifndef QV8_WINDOW_CANVAS_H
#define QV8_WINDOW_CANVAS_H

#include <optional>

#include "model/effect_run.h"
#include "system/handles.h"
#include "tools/box.h"
#include "tools/paint.h"

// Told what happens in the canvas.
class CanvasOwner {
public:
    virtual ~CanvasOwner() = default;
    virtual void ViewChanged() = 0;                           // another part, or another zoom
    virtual void PointerMoved(const Position* inPicture) = 0; // null: it has left the picture
    virtual void ToolChanged() = 0;                           // something else is drawn
    virtual void PreviewPainted() = 0;                        // for the first time
};

class Canvas {
public:
    Canvas(HWND parent, CanvasOwner& owner);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HWND Window() const {
        return window_;
    }

    // Shows a picture in a view of it, or none.
    void Show(SharedLevels levels, const ViewMapping& view, bool fits);
    // More levels of the same picture.
    void ImproveLevels(SharedLevels levels);
    void SetPreview(std::optional<Preview> preview);
    void SetSelection(const Selection& selection);
    void SetTool(Tool* tool);

    // The divider has the picture as it is on its left and the preview on its right.
    void ShowDivider(bool shown);
    void ShowBefore(bool shown);
    bool ShowsBefore() const {
        return before_;
    }
    void Fit();
    void Zoom(double scale); // around the middle
    void ZoomBy(int clicks);
    void Wheel(WPARAM wParam, LPARAM lParam); // from wherever the focus is

    const ViewMapping& View() const {
        return view_;
    }
    bool Fits() const {
        return fits_;
    }
    bool HasPreview() const {
        return preview_.has_value();
    }
    PreviewView Visible() const;
    void Redraw();

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint();
    void MoveAnts();
    void PaintScene(HDC device, const RECT& client);
    void PaintPicture(HDC device, const RECT& clip, const Preview& shown) const;
    void PaintOverlay(HDC device, const RECT& client);
    void Mouse(UINT message, WPARAM wParam, LPARAM lParam);
    bool DragDivider(UINT message, Position at);
    bool DragPicture(UINT message, Position at);
    void ToTool(UINT message, WPARAM wParam, Position at);
    void Track(Position at);
    bool SetCursorShape() const;
    bool Key(WPARAM key);
    void SetView(const ViewMapping& view, bool fits);
    Extent Client() const;
    Box Room() const;
    ViewMapping Fitted() const;
    ViewMapping Clamped(ViewMapping view) const;
    void Refit();
    Preview Whole() const;
    double Reach() const;
    int DividerColumn() const;

    CanvasOwner& owner_;
    HWND window_ = nullptr;
    SharedLevels levels_;
    Extent size_; // of the picture
    std::optional<Preview> preview_;
    bool previewIsNew_ = false;
    Selection selection_;
    std::optional<SelectionEdges> edges_; // in this view
    Tool* tool_ = nullptr;
    ViewMapping view_;
    bool fits_ = true;
    bool divider_ = false;
    bool before_ = false;
    double dividerAt_ = 0.5; // of the width
    enum class Drag { kNone, kPicture, kDivider, kTool };
    Drag drag_ = Drag::kNone;
    Position dragFrom_;
    ViewMapping dragView_;
    bool isTracked_ = false;
    bool sceneIsOld_ = true;
    int antStep_ = 0;
    DWORD painted_ = 0;   // when painting ended the last time
    DWORD paintTook_ = 0; // milliseconds
    int wheelRest_ = 0;
    Surface scene_;
    Surface shown_;
};

#endif
