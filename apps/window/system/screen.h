// How large and in which colours the system wants windows drawn.
#ifndef QV8_WINDOW_SYSTEM_SCREEN_H
#define QV8_WINDOW_SYSTEM_SCREEN_H

#include <qv8platform.h>

#include "system/handles.h"

// Lengths are in 96ths of an inch until they meet a window.
class Dots {
public:
    explicit Dots(HWND window); // of the screen that the window is on
    explicit Dots(int perInch) : perInch_(perInch) {}

    int operator()(int length) const {
        return MulDiv(length, perInch_, 96);
    }
    int PerInch() const {
        return perInch_;
    }

private:
    int perInch_;
};

// The font of messages at that resolution.
GdiObject<HFONT> MessageFont(const Dots& dots);

// Where the system has dark titles and its user wants them.
void UseDarkTitle(HWND window);

// Newer systems are told by the manifest; those between are asked to tell each screen's resolution here.
void BecomeAwareOfDots();

#endif
