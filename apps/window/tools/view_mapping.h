// Where a picture lies in the part of the window that shows it: positions, zoom and scrolling, without a window.
#ifndef QV8_WINDOW_TOOLS_VIEW_MAPPING_H
#define QV8_WINDOW_TOOLS_VIEW_MAPPING_H

// A position between pixels: the pixel (0, 0) of a picture covers 0..1 in both directions, y counts from the top.
struct Position {
    double x = 0;
    double y = 0;
};

struct Extent {
    double width = 0;
    double height = 0;
};

struct ViewMapping {
    double scale = 1; // pixels of the client area for one of the picture
    double left = 0;  // where the upper left corner of the picture is in the client area
    double top = 0;

    Position ToClient(Position inPicture) const {
        return {left + inPicture.x * scale, top + inPicture.y * scale};
    }
    Position ToPicture(Position inClient) const {
        return {(inClient.x - left) / scale, (inClient.y - top) / scale};
    }
};

// As much as fits of the picture, in the middle; a small one as it is and no larger.
ViewMapping Fit(Extent picture, Extent client);

// The same picture at another scale; what is at the point of the client area stays there.
ViewMapping ZoomAround(const ViewMapping& mapping, Position inClient, double scale);

// Moves what is smaller than the client area into its middle, and keeps the edges of what is larger out of it.
ViewMapping Clamp(const ViewMapping& mapping, Extent picture, Extent client);

// The scale after some clicks of the wheel, up being larger: three clicks double it. Whole multiples and their inverses
// are met exactly, and the result is kept between a 64th and 32.
double ScaleAfter(double scale, int clicks);

#endif
