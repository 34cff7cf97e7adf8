// A track arc's extent: its ends and the axis points its sweep passes, nothing more.
#include <gtest/gtest.h>

#include <memory>

#include "PdbObjects.h"

namespace {

TEST(ArcExtent, CoversExactlyWhatTheSweepPasses) {
    struct Case {
        CPointD from, to;
        bool clockwise;
        CRectD extent;  // of the centre line, about a centre at (0, 0), radius 1
    };
    const Case cases[] = {
        {{1, 0}, {0, 1}, false, CRectD(0, 0, 1, 1)},     // a quarter, counter-clockwise
        {{1, 0}, {0, 1}, true, CRectD(-1, -1, 1, 1)},    // three quarters the other way
        {{0, 1}, {1, 0}, true, CRectD(0, 0, 1, 1)},      // the first quarter, walked back
        {{0, -1}, {0, 1}, false, CRectD(0, -1, 1, 1)},   // the right half
        {{0, -1}, {0, 1}, true, CRectD(-1, -1, 0, 1)},   // the left half
        {{-1, 0}, {-1, 0}, false, CRectD(-1, -1, 1, 1)}, // equal ends: a full circle
    };
    for (const Case& c : cases) {
        const std::unique_ptr<CPRouteDObj> arc(CPRouteDObj::MakeArc(0, 0, C2PointD(c.from, c.to), CPointD(), c.clockwise));
        const CRectD box = arc->GetBoundingRect();
        EXPECT_NEAR(c.extent.minX, box.minX, 1e-12) << c.from.x << "," << c.from.y << " cw " << c.clockwise;
        EXPECT_NEAR(c.extent.minY, box.minY, 1e-12) << c.from.x << "," << c.from.y << " cw " << c.clockwise;
        EXPECT_NEAR(c.extent.maxX, box.maxX, 1e-12) << c.from.x << "," << c.from.y << " cw " << c.clockwise;
        EXPECT_NEAR(c.extent.maxY, box.maxY, 1e-12) << c.from.x << "," << c.from.y << " cw " << c.clockwise;
    }
}

}  // namespace
