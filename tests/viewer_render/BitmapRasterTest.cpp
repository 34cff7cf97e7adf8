// The viewer's shape filling, without a viewer process: what each shape paints,
// counted in pixels whose centre it covers, and probed pixel by pixel. (The picture
// file's layout is checked on every capture by the strict reader of BmpReader.h.)
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "Bitmap.h"
#include "RenderRaster.h"

using viewer::Bitmap;
using viewer::Raster;
using viewer::Rgb;

namespace {

constexpr Rgb kInk{10, 200, 30};
constexpr Rgb kPaper{0, 0, 0};
constexpr double kPi = 3.14159265358979323846;

using Pixels = std::vector<std::pair<int, int>>;

Pixels Diagonal(int n) {
    Pixels out;
    for (int i = 0; i < n; ++i) out.push_back({i, i});
    return out;
}

TEST(RasterFill, ShapesPaintWhatTheyCover) {
    const double nan = std::nan("");
    struct Case {
        const char* what;
        int width, height;
        std::function<void(Raster&)> draw;
        double painted, tolerance;
        Pixels ink, paper;
    };
    const Case cases[] = {
        {"a 20 x 20 square with a 10 x 10 hole, corners on pixel boundaries", 40, 40,
         [](Raster& r) {
             r.FillPolygon({{{5, 5}, {25, 5}, {25, 25}, {5, 25}}, {{10, 10}, {10, 20}, {20, 20}, {20, 10}}}, kInk);
         },
         300, 0, {{5, 5}, {24, 24}}, {{15, 15}, {25, 24}, {4, 5}}},
        {"a circle of radius 10", 100, 100, [](Raster& r) { r.FillCircle({50, 50}, 10, kInk); }, kPi * 100, 10,
         {{50, 41}}, {{50, 39}}},
        // 8 wide, 60 long, round ends: rows 16 to 23; the round end reaches past the
        // end point, but not its corners.
        {"a track", 100, 40, [](Raster& r) { r.FillCapsule({20, 20}, {80, 20}, 4, kInk); }, 60 * 8 + kPi * 16, 12,
         {{50, 16}, {50, 23}, {83, 20}}, {{50, 15}, {50, 24}, {83, 16}}},
        {"shapes smaller than a pixel still show as one", 20, 20,
         [](Raster& r) {
             r.FillPolygon({{3.1, 3.1}, {3.3, 3.1}, {3.3, 3.3}}, kInk);
             r.FillCircle({10.9, 10.1}, 0.2, kInk);
             r.FillCapsule({15.2, 5.2}, {15.3, 5.3}, 0.1, kInk);
         },
         3, 0, {{3, 3}, {10, 10}, {15, 5}}, {}},
        {"a polygon reaching far outside is clipped", 30, 20,
         [](Raster& r) { r.FillPolygon({{-1e9, -1e9}, {1e9, -1e9}, {1e9, 1e9}, {-1e9, 1e9}}, kInk); }, 600, 0, {}, {}},
        {"a pad at an absurd zoom", 30, 20, [](Raster& r) { r.FillCircle({15, 1e11}, 1e12, kInk); }, 600, 0, {}, {}},
        {"shapes wholly outside, and a board with a broken coordinate", 30, 20,
         [nan](Raster& r) {
             r.FillPolygon({{100, 100}, {200, 100}, {200, 200}}, kInk);
             r.FillCircle({-50, 10}, 20, kInk);
             r.FillCapsule({-10, -10}, {-5, -50}, 3, kInk);
             r.FillPolygon({{1, 1}, {nan, 5}, {20, 10}}, kInk);
             r.FillCircle({nan, 5}, 3, kInk);
             r.FillCapsule({1, 1}, {10, nan}, 2, kInk);
             r.Line({1, 1}, {nan, nan}, kInk);
         },
         0, 0, {}, {}},
        {"a thin diagonal from far outside, unbroken", 50, 50,
         [](Raster& r) { r.Line({-1e7 + 0.5, -1e7 + 0.5}, {1e7 + 0.5, 1e7 + 0.5}, kInk); }, 50, 0, Diagonal(50), {}},
        {"a one-pixel frame of 16 x 11", 30, 30,
         [](Raster& r) { r.Outline({{5.5, 5.5}, {20.5, 5.5}, {20.5, 15.5}, {5.5, 15.5}}, kInk); }, 2 * 16 + 2 * 9, 0,
         {{5, 5}, {20, 15}}, {{10, 10}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bitmap b(c.width, c.height, kPaper);
        Raster r(b);
        c.draw(r);
        int painted = 0;
        for (int y = 0; y < b.Height(); ++y)
            for (int x = 0; x < b.Width(); ++x) painted += b.Get(x, y) == kInk ? 1 : 0;
        EXPECT_NEAR(painted, c.painted, c.tolerance);
        for (const auto& p : c.ink) EXPECT_EQ(b.Get(p.first, p.second), kInk) << p.first << "," << p.second;
        for (const auto& p : c.paper) EXPECT_EQ(b.Get(p.first, p.second), kPaper) << p.first << "," << p.second;
    }
}

}  // namespace
