// Filling shapes into a bitmap. Coordinates are pixels as real numbers: x to the
// right, y downwards, pixel (i, j) covering [i, i+1) x [j, j+1). A pixel is painted
// when its centre lies inside the shape; shapes too small to cover any centre still
// paint the pixel under their middle, so nothing on the board vanishes when zoomed out.
#pragma once

#include <utility>
#include <vector>

#include "Bitmap.h"

namespace viewer {

struct PixelPoint {
    double x = 0, y = 0;
};

class Raster {
public:
    explicit Raster(Bitmap& target) : m_target(target) {}

    // Rings: an outline and its holes (even-odd rule: what lies in an odd number of
    // rings is inside). Rings are closed implicitly.
    void FillPolygon(const std::vector<std::vector<PixelPoint>>& rings, Rgb c);
    void FillPolygon(const std::vector<PixelPoint>& ring, Rgb c);
    void FillCircle(PixelPoint centre, double radius, Rgb c);
    // A line of that half-width with round ends (a track); thinner than a pixel it is
    // drawn as a one-pixel line.
    void FillCapsule(PixelPoint a, PixelPoint b, double halfWidth, Rgb c);
    // A one-pixel line, both ends included.
    void Line(PixelPoint a, PixelPoint b, Rgb c);
    // A closed one-pixel outline.
    void Outline(const std::vector<PixelPoint>& ring, Rgb c);
    void Dot(PixelPoint p, Rgb c);

    // Whether a box (in pixels) touches the picture.
    bool Touches(double minX, double minY, double maxX, double maxY) const {
        return maxX >= 0 && maxY >= 0 && minX < m_target.Width() && minY < m_target.Height();
    }

private:
    Bitmap& m_target;
    // Reused between fills: crossings of edges with rows, then grouped by row.
    std::vector<std::pair<int, double>> m_crossings;
    std::vector<int> m_rowStart, m_rowNext;
    std::vector<double> m_rowXs;
};

}  // namespace viewer
