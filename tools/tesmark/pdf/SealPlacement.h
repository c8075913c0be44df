// SealPlacement.h - from millimetres on the page that a reader sees to the page's own space.
#pragma once

#include <string>

// A page's measures in its own space: units of 1/72 inch times `userUnit`, y up.
struct PageGeometry {
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;  // of what is visible: the crop box within the media box
    int rotate = 0;  // clockwise, for showing: 0, 90, 180, 270
    double userUnit = 1;
};

double VisibleWidthMm(const PageGeometry& page);
double VisibleHeightMm(const PageGeometry& page);

struct SealPlacement {
    // The annotation's /Rect.
    double left = 0;
    double bottom = 0;
    double right = 0;
    double top = 0;
    // The appearance's /BBox is [0 0 width height]; `matrix` turns it so that it stands upright
    // for the reader.
    double width = 0;
    double height = 0;
    std::string matrix;
};

// `xMm` and `yMm` go right and down from the visible upper left corner to the seal's. Throws
// CPdfFailure kBadPlace for a size that is not positive and a seal that can't be seen at all.
SealPlacement PlaceSeal(const PageGeometry& page, double xMm, double yMm, double widthMm,
                        double heightMm);
