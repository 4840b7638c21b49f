// A map sheet in pixels: paper, neat line, graticule, labels and scale round an image, and a north arrow
// where it is a map.
#pragma once

#include <tov310/dib.h>

namespace survey {

// What the edges of an image stand for.
struct MapExtent {
    double west = 0;
    double north = 0;
    double perColumn = 1;  // from one pixel to the next, to the right and downwards
    double perRow = 1;
    bool isInDegrees = false;  // longitude and latitude; otherwise pixels
};

struct MapStyle {
    double angle = 0;   // of the image round its centre, counterclockwise in radians
    int opacity = 255;  // of the image over the paper, 0 to 255
};

// Draws the sheet, with rows that run top-down, and makes it as large as the image needs. The image must run
// top-down too; its alpha bytes are changed. False where the sheet would be larger than an image can be.
bool DrawMapSheet(tov::CTovDib& sheet, tov::CTovDib& image, MapExtent const& extent, MapStyle const& style);

}  // namespace survey
