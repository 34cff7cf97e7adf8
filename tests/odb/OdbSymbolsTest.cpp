// The standard symbols: kind, extent and filled area of each shape.
#include <gtest/gtest.h>

#include <cmath>

#include "OdbSymbols.h"

namespace {

// The even-odd filled area of an outline, counted on a fine grid.
double FilledArea(const CPadOutline& outline) {
    CRectD box;
    for (const CArrayPointD& contour : outline) box.Include(contour.GetBoundingRect());
    const int n = 400;
    int inside = 0;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const CPointD p(box.minX + (i + 0.5) * box.Width() / n, box.minY + (j + 0.5) * box.Height() / n);
            bool in = false;
            for (const CArrayPointD& contour : outline) in ^= contour.ContainsPoint(p);
            inside += in;
        }
    }
    return box.Width() * box.Height() * inside / (double(n) * n);
}

TEST(OdbSymbols, StandardNamesGiveTheirShapes) {
    const double pi = 3.14159265358979;
    const double micron = 0.001;
    const struct {
        const char* name;
        double unit;
        PadShape kind;
        double width, height, area;
    } cases[] = {
        {"r1000", micron, PadShape::Round, 1, 1, pi / 4},
        {"s500", micron, PadShape::Rect, 0.5, 0.5, 0.25},
        {"rect2000x1000", micron, PadShape::Rect, 2, 1, 2},
        {"rect2050.0x600.0xr150.0", micron, PadShape::Polygon, 2.05, 0.6, 1.23 - (4 - pi) * 0.0225},
        {"rect2000x1000xr500", micron, PadShape::Oblong, 2, 1, 2 - (4 - pi) * 0.25},
        {"rect1000x1000xc200x14", micron, PadShape::Polygon, 1, 1, 0.96},
        {"oval1000x2000", micron, PadShape::Oblong, 1, 2, 2 - (4 - pi) * 0.25},
        {"di1000x2000", micron, PadShape::Polygon, 1, 2, 1},
        {"oct1000x1000x200", micron, PadShape::Polygon, 1, 1, 0.92},
        {"donut_r1000x500", micron, PadShape::Polygon, 1, 1, pi / 4 * 0.75},
        {"donut_s1000x500", micron, PadShape::Polygon, 1, 1, 0.75},
        {"hex_l2000x1000x300", micron, PadShape::Polygon, 2, 1, 1.7},
        {"hex_s1000x2000x300", micron, PadShape::Polygon, 1, 2, 1.7},
        {"tri1000x1000", micron, PadShape::Polygon, 1, 1, 0.5},
        {"el2000x1000", micron, PadShape::Polygon, 2, 1, pi / 2},
        {"bfs1000", micron, PadShape::Polygon, 1, 1, 0.5},
        {"s_ths1000x600x0x4x100", micron, PadShape::Polygon, 1, 1, 0.64 - 0.08},
        {"thr1000x600x45x4x100", micron, PadShape::Polygon, 1, 1, pi / 4 * 0.64 - 0.08},
    };
    for (const auto& c : cases) {
        odb::SymbolShape shape;
        ASSERT_TRUE(odb::StandardSymbol(c.name, c.unit, shape)) << c.name;
        EXPECT_EQ(shape.kind, c.kind) << c.name;
        EXPECT_NEAR(shape.width, c.width, 0.005) << c.name;
        EXPECT_NEAR(shape.height, c.height, 0.005) << c.name;
        EXPECT_NEAR(FilledArea(shape.outline), c.area, c.area * 0.02) << c.name;
    }
    odb::SymbolShape shape;
    for (const char* notStandard : {"foo12", "rect10", "r", "rectAxB", "moire1x2x3x4x5x6"}) {
        EXPECT_FALSE(odb::StandardSymbol(notStandard, micron, shape)) << notStandard;
    }
    EXPECT_TRUE(odb::StandardSymbol("null", micron, shape));
    EXPECT_TRUE(shape.outline.empty());
}

}  // namespace
