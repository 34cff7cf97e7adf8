// The copper merge on small boards, without a viewer process: each pad shape, track
// and via against its geometry, and how areas, holes and islands come out.
#include <gtest/gtest.h>

#include <cmath>

#include "CopperMerge.h"
#include "PdbText.h"
#include "TextBoard.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
// The merge works on a grid of 10 picometres: corners move by up to half of it.
constexpr double kGrid = 1e-8;

std::unique_ptr<CPdb> Board(const std::string& body) {
    const std::string text = "PDBBA 1\nBOARD shapes\nLAYER TOP L1 COPPER\nLAYER INNER L2 COPPER\n"
                             "LAYER BOTTOM L3 COPPER\nPART P PKG\nNET N\nNET M\n" +
                             body + "END\n";
    CString error;
    std::unique_ptr<CPdb> pdb = CPdbText::Read(CString(text.c_str()), error);
    EXPECT_TRUE(pdb) << error.str();
    return pdb;
}

std::vector<text_board::Pt> Ring(const std::vector<CPointD>& points) {
    std::vector<text_board::Pt> out;
    for (const CPointD& p : points) out.push_back({p.x, p.y});
    return out;
}

double Area(const std::vector<CPointD>& ring) { return std::fabs(text_board::SignedArea(Ring(ring))); }

// Areas agree to a millionth of themselves.
::testing::AssertionResult AreaIs(const std::vector<CPointD>& ring, double expected) {
    const double area = Area(ring);
    if (std::fabs(area - expected) <= 1e-6 * expected) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "area " << area << ", expected " << expected;
}

// Area of n corners on a circle of radius r, n per full circle.
double PolygonCircleArea(double r, int n) { return n * r * r * std::sin(2 * kPi / n) / 2; }

const CPointD& Highest(const std::vector<CPointD>& ring) {
    const CPointD* top = &ring[0];
    for (const CPointD& p : ring)
        if (p.y > top->y) top = &p;
    return *top;
}

viewer::CopperMergeResult MergeOne(const CPdb& pdb, const std::string& layer, double division = 32) {
    viewer::CopperMergeResult r = viewer::MergeNetCopper(pdb, "N", {layer}, division);
    EXPECT_EQ(r.error, 0);
    return r;
}

}  // namespace

TEST(CopperShapes, PadShapesFollowTheirSizeAndCounterClockwiseAngle) {
    // A 4 x 2 rectangle turned 30 degrees counter-clockwise: its highest corner is the
    // turned (2, 1).
    auto pdb = Board("COMP U1 P TOP 0 0 0\nPIN 1 0 0 RECT 4 2 30 0 N\n");
    auto r = MergeOne(*pdb, "TOP");
    ASSERT_EQ(r.polygons.size(), 1u);
    EXPECT_TRUE(AreaIs(r.polygons[0].outline, 8));
    const double a = 30 * kPi / 180;
    EXPECT_NEAR(Highest(r.polygons[0].outline).x, 2 * std::cos(a) - std::sin(a), kGrid);
    EXPECT_NEAR(Highest(r.polygons[0].outline).y, 2 * std::sin(a) + std::cos(a), kGrid);

    // Oblong 3 x 1: a 2 x 1 rectangle and two half circles of radius 0.5, 16 corners
    // each at 32 per circle; SizeX lies along the angle, so at 90 degrees it stands up,
    // as does a 1 x 3 oblong at 0 degrees.
    const double oblongArea = 2 * 1 + PolygonCircleArea(0.5, 32);
    for (const char* pin : {"PIN 1 5 5 OBLONG 3 1 90 0 N\n", "PIN 1 5 5 OBLONG 1 3 0 0 N\n"}) {
        pdb = Board(std::string("COMP U1 P TOP 0 0 0\n") + pin);
        r = MergeOne(*pdb, "TOP");
        ASSERT_EQ(r.polygons.size(), 1u) << pin;
        EXPECT_TRUE(AreaIs(r.polygons[0].outline, oblongArea)) << pin;
        const text_board::Extent e = text_board::ExtentOf(Ring(r.polygons[0].outline));
        EXPECT_NEAR(e.minX, 4.5, kGrid) << pin;
        EXPECT_NEAR(e.maxX, 5.5, kGrid) << pin;
        EXPECT_NEAR(e.minY, 3.5, kGrid) << pin;
        EXPECT_NEAR(e.maxY, 6.5, kGrid) << pin;
    }

}

TEST(CopperShapes, TracksHaveRoundEndsAndViasReachTheirLayersOnly) {
    auto pdb = Board("SEG N TOP 0.5 0 0 3 4\nVIA N 20 0 1 0.5 TOP INNER\nSEG N BOTTOM 0.2 0 10 0 10\n");
    auto r = MergeOne(*pdb, "TOP", 24);
    ASSERT_EQ(r.polygons.size(), 2u);
    // A track of length 5 and width 0.5: the rectangle and two half circles.
    EXPECT_TRUE(AreaIs(r.polygons[0].outline, 5 * 0.5 + PolygonCircleArea(0.25, 24)));
    EXPECT_TRUE(AreaIs(r.polygons[1].outline, PolygonCircleArea(0.5, 24))) << "the via's pad diameter";

    r = MergeOne(*pdb, "INNER", 24);
    ASSERT_EQ(r.polygons.size(), 1u) << "only the via";
    r = MergeOne(*pdb, "BOTTOM", 24);
    ASSERT_EQ(r.polygons.size(), 1u) << "only the zero-length track, a dot of its width";
    EXPECT_TRUE(AreaIs(r.polygons[0].outline, PolygonCircleArea(0.1, 24)));
}

TEST(CopperShapes, IslandsBecomeOutlinesAndTracksSplitHoles) {
    // A 10 x 10 area with a 4 x 4 hole; a through-hole pad of the same net sits inside
    // the hole; another net's copper and an outline that crosses itself are left out.
    const std::string area = "AREA N INNER 4 0 0 10 0 10 10 0 10\nHOLE 4 3 3 3 7 7 7 7 3\n"
                             "COMP U1 P TOP 0 0 0\nPIN 1 5 5 ROUND 1 1 0 0.5 N\n"
                             "AREA M INNER 4 20 20 30 20 30 30 20 30\nAREA N INNER 4 0 0 10 10 10 0 0 10\n";
    auto pdb = Board(area);
    auto r = MergeOne(*pdb, "INNER");
    EXPECT_EQ(r.skippedAreas, 1);
    ASSERT_EQ(r.polygons.size(), 2u);
    ASSERT_EQ(r.polygons[0].holes.size(), 1u);
    EXPECT_TRUE(r.polygons[1].holes.empty());
    EXPECT_TRUE(AreaIs(r.polygons[0].outline, 100));
    EXPECT_TRUE(AreaIs(r.polygons[1].outline, PolygonCircleArea(0.5, 32))) << "the island";

    // A track across the hole splits it in two.
    pdb = Board(area + "SEG N INNER 1 5 1 5 9\n");
    r = MergeOne(*pdb, "INNER");
    ASSERT_EQ(r.polygons.size(), 1u) << "the island joins the track";
    ASSERT_EQ(r.polygons[0].holes.size(), 2u);
    EXPECT_LT(r.polygons[0].holes[0][0].x, 5) << "holes are ordered from the left";
    EXPECT_GT(r.polygons[0].holes[1][0].x, 5);
    for (const auto& hole : r.polygons[0].holes) EXPECT_TRUE(AreaIs(hole, 1.5 * 4));
    EXPECT_EQ(viewer::MergeNetCopper(*pdb, "N", {"inner"}, 0).error, -202) << "names are case-sensitive";
}

TEST(CopperShapes, PolygonPadsKeepTheirHolesAndArcsBendTheRightWay) {
    // A donut pad: a 4 x 4 square and a 2 x 2 square inside it, both turning the same
    // way, filled even-odd.
    auto pdb = Board("COMP U1 P TOP 0 0 0\nPIN 1 10 10 RECT 1 1 0 0 N\n");
    pdb->FindNet("N")->GetPin(0)->SetPadOutline(
        {CArrayPointD{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}, CArrayPointD{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}});
    auto r = MergeOne(*pdb, "TOP");
    ASSERT_EQ(r.polygons.size(), 1u);
    ASSERT_EQ(r.polygons[0].holes.size(), 1u);
    EXPECT_LT(text_board::SignedArea(Ring(r.polygons[0].outline)), 0);
    EXPECT_GT(text_board::SignedArea(Ring(r.polygons[0].holes[0])), 0);
    EXPECT_TRUE(AreaIs(r.polygons[0].outline, 16));
    EXPECT_TRUE(AreaIs(r.polygons[0].holes[0], 4));
    EXPECT_NEAR(text_board::ExtentOf(Ring(r.polygons[0].holes[0])).minX, 9, kGrid) << "relative to the pin";

    // Half a ring of radius 5 and width 1 from (5, 0) to (-5, 0): counter-clockwise
    // over the top, clockwise under the bottom; round ends. Its area is the band's
    // and two half discs, as polygons of 1024 corners per circle.
    for (const bool clockwise : {false, true}) {
        pdb = Board("");
        pdb->FindNet("N")->GetRoute().AddArc(0, 1, C2PointD({5, 0}, {-5, 0}), {0, 0}, clockwise);
        r = MergeOne(*pdb, "TOP", 1024);
        ASSERT_EQ(r.polygons.size(), 1u) << clockwise;
        EXPECT_TRUE(r.polygons[0].holes.empty());
        EXPECT_NEAR(Area(r.polygons[0].outline), kPi * (5.5 * 5.5 - 4.5 * 4.5) / 2 + kPi * 0.25, 1e-3);
        const text_board::Extent e = text_board::ExtentOf(Ring(r.polygons[0].outline));
        EXPECT_NEAR(clockwise ? -e.minY : e.maxY, 5.5, 1e-4) << clockwise;
        EXPECT_NEAR(clockwise ? e.maxY : -e.minY, 0.5, 1e-4) << clockwise;
    }
    // The full ring: equal ends.
    pdb = Board("");
    pdb->FindNet("N")->GetRoute().AddArc(0, 1, C2PointD({5, 0}, {5, 0}), {0, 0}, false);
    r = MergeOne(*pdb, "TOP");
    ASSERT_EQ(r.polygons.size(), 1u);
    EXPECT_EQ(r.polygons[0].holes.size(), 1u);
}
