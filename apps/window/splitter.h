// The bar between the picture and the effects, which the mouse and the arrow keys move.
#ifndef QV8_WINDOW_SPLITTER_H
#define QV8_WINDOW_SPLITTER_H

#include <qv8platform.h>

class SplitterOwner {
public:
    virtual ~SplitterOwner() = default;
    virtual void SplitterMoved(int by) = 0; // it is to be placed so many pixels further to the right
};

class Splitter {
public:
    Splitter(HWND parent, SplitterOwner& owner);
    Splitter(const Splitter&) = delete;
    Splitter& operator=(const Splitter&) = delete;

    HWND Window() const {
        return window_;
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    void Paint() const;

    SplitterOwner& owner_;
    HWND window_ = nullptr;
    int grabbedAt_ = 0; // where the mouse took hold of it
};

#endif
