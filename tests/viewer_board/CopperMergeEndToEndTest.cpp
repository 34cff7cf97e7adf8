// Polygon merge against the real viewer: the sample's ground plane with its
// keep-out, a net of two pads and a track, a board of the test's own with
// overlapping pads, and Division. Expected shapes are worked out here from the
// board's text form.
#include <chrono>
#include <cmath>

#include "ViewerSession.h"

using namespace viewer_board_test;
using text_board::Pt;

namespace {
// The merge works on a grid of 10 picometres: corners move by up to half of it.
constexpr double kGrid = 1e-8;

struct Merged {
    std::vector<Pt> outline;
    std::vector<std::vector<Pt>> holes;
};

std::vector<Pt> Ring(const CArrayD& xs, const CArrayD& ys) {
    std::vector<Pt> out;
    EXPECT_EQ(xs.GetSize(), ys.GetSize());
    for (INT_PTR i = 0; i < xs.GetSize() && i < ys.GetSize(); ++i) out.push_back({xs[i], ys[i]});
    return out;
}

// Runs the merge and reads the whole result back through the array reads.
int MergeRun(int pid, const std::vector<std::wstring>& layers, const wchar_t* net, double division,
        std::vector<Merged>& result) {
    std::vector<const wchar_t*> names;
    for (const std::wstring& l : layers) names.push_back(l.c_str());
    const int status = KPCB_PolygonMergeRun(pid, names.data(), static_cast<int>(names.size()), net, division);
    result.clear();
    const int outlines = KPCB_GetCWPolygonCount(pid);
    for (int cw = 0; cw < outlines; ++cw) {
        Merged m;
        CArrayD xs, ys;
        EXPECT_EQ(KPCB_GetCWPolygonPointDataArray(pid, cw, &xs, &ys), 0);
        m.outline = Ring(xs, ys);
        EXPECT_EQ(KPCB_GetCWPolygonPointCount(pid, cw), static_cast<int>(m.outline.size()));
        const int holes = KPCB_GetCCWPolygonCount(pid, cw);
        for (int ccw = 0; ccw < holes; ++ccw) {
            EXPECT_EQ(KPCB_GetCCWPolygonPointDataArray(pid, cw, ccw, &xs, &ys), 0);
            m.holes.push_back(Ring(xs, ys));
            EXPECT_EQ(KPCB_GetCCWPolygonPointCount(pid, cw, ccw), static_cast<int>(m.holes.back().size()));
        }
        result.push_back(m);
    }
    return status;
}

// Outlines clockwise and holes counter-clockwise, with y upwards.
void ExpectOrientation(const std::vector<Merged>& merged) {
    for (const Merged& m : merged) {
        EXPECT_LT(text_board::SignedArea(m.outline), 0) << "outline not clockwise";
        for (const auto& hole : m.holes) EXPECT_GT(text_board::SignedArea(hole), 0) << "hole not counter-clockwise";
    }
}

void ExpectExtent(const std::vector<Pt>& ring, double minX, double minY, double maxX, double maxY) {
    const text_board::Extent e = text_board::ExtentOf(ring);
    EXPECT_NEAR(e.minX, minX, kGrid);
    EXPECT_NEAR(e.minY, minY, kGrid);
    EXPECT_NEAR(e.maxX, maxX, kGrid);
    EXPECT_NEAR(e.maxY, maxY, kGrid);
}

}  // namespace

TEST_F(BoardTest, GroundPlaneWithItsKeepOutIsOneOutlineWithOneHole) {
    UseSample();
    const text_board::Area* plane = nullptr;
    for (const auto& area : text.areas)
        if (area.net == "GND" && area.layer == "GND") plane = &area;
    ASSERT_TRUE(plane);
    ASSERT_EQ(plane->holes.size(), 1u);
    // No through-hole pad of GND (on every layer, so also on this one) stands in the
    // keep-out: it stays one hole of the plane's size.
    const text_board::Extent keepOut = text_board::ExtentOf(plane->holes[0]);
    for (const auto& comp : text.comps) {
        for (const auto& pin : comp.pins) {
            if (pin.net == "GND" && pin.drill > 0) {
                ASSERT_FALSE(pin.at.x > keepOut.minX && pin.at.x < keepOut.maxX && pin.at.y > keepOut.minY &&
                             pin.at.y < keepOut.maxY);
            }
        }
    }

    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    ASSERT_EQ(KPCB_PolygonMergeCreate(viewer.pid), 0);
    std::vector<Merged> merged;
    ASSERT_EQ(MergeRun(viewer.pid, {L"GND"}, L"GND", 0, merged), 0);
    ASSERT_EQ(merged.size(), 1u);
    ASSERT_EQ(merged[0].holes.size(), 1u);
    ExpectOrientation(merged);
    const text_board::Extent outer = text_board::ExtentOf(plane->outline);
    ExpectExtent(merged[0].outline, outer.minX, outer.minY, outer.maxX, outer.maxY);
    ExpectExtent(merged[0].holes[0], keepOut.minX, keepOut.minY, keepOut.maxX, keepOut.maxY);
    EXPECT_NEAR(text_board::SignedArea(merged[0].holes[0]), std::fabs(text_board::SignedArea(plane->holes[0])), kGrid);

    // The ECAD name of the layer gives the same result.
    std::vector<Merged> byEcad;
    ASSERT_EQ(MergeRun(viewer.pid, {L"NO_SUCH_LAYER", Wide(text.ecadName["GND"])}, L"GND", 0, byEcad), 0);
    ASSERT_EQ(byEcad.size(), 1u);
    ASSERT_EQ(byEcad[0].holes.size(), 1u);
    EXPECT_EQ(byEcad[0].outline.size(), merged[0].outline.size());
    EXPECT_NEAR(text_board::SignedArea(byEcad[0].holes[0]), text_board::SignedArea(merged[0].holes[0]), 1e-12);
    EXPECT_EQ(KPCB_PolygonMergeDestroy(viewer.pid), 0);
}

TEST_F(BoardTest, TwoPadsAndTheirTrackAreOneOutline) {
    UseSample();
    // LED_A: two rectangular pads on the top joined by one track thinner than the pads.
    text_board::Extent expected;
    int pads = 0;
    for (const auto& comp : text.comps)
        for (const auto& pin : comp.pins)
            if (pin.net == "LED_A") {
                ASSERT_EQ(pin.shape, "RECT");
                ASSERT_EQ(pin.angle, 0);
                expected.Include({pin.at.x - pin.sizeX / 2, pin.at.y - pin.sizeY / 2});
                expected.Include({pin.at.x + pin.sizeX / 2, pin.at.y + pin.sizeY / 2});
                ++pads;
            }
    ASSERT_EQ(pads, 2);
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    ASSERT_EQ(KPCB_PolygonMergeCreate(viewer.pid), 0);
    std::vector<Merged> merged;
    ASSERT_EQ(MergeRun(viewer.pid, {L"TOP"}, L"LED_A", 16, merged), 0);
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_TRUE(merged[0].holes.empty());
    ExpectOrientation(merged);
    ExpectExtent(merged[0].outline, expected.minX, expected.minY, expected.maxX, expected.maxY);

    ASSERT_EQ(MergeRun(viewer.pid, {L"BOTTOM"}, L"LED_A", 16, merged), 0);
    EXPECT_TRUE(merged.empty()) << "no copper of LED_A on the bottom";
    EXPECT_EQ(KPCB_PolygonMergeDestroy(viewer.pid), 0);
}

TEST_F(BoardTest, BiggestNetOnEveryLayerReadsBackConsistently) {
    UseSample();
    std::vector<std::wstring> copper;
    for (const std::string& layer : text.layers)
        if (text.layerKind[layer] == "COPPER") copper.push_back(Wide(layer));
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    ASSERT_EQ(KPCB_PolygonMergeCreate(viewer.pid), 0);
    std::vector<Merged> merged;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(MergeRun(viewer.pid, copper, L"GND", 64, merged), 0);
    const double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    RecordProperty("merge_and_read_ms", std::to_string(ms));
    ASSERT_FALSE(merged.empty());
    ExpectOrientation(merged);

    // Point reads agree with the array reads, also after other requests came between.
    EXPECT_EQ(KPCB_SetMainTitle(viewer.pid, "between"), 0);
    ASSERT_EQ(KPCB_GetCWPolygonCount(viewer.pid), static_cast<int>(merged.size()));
    for (int cw = 0; cw < static_cast<int>(merged.size()); ++cw) {
        const std::vector<Pt>& ring = merged[static_cast<size_t>(cw)].outline;
        for (int p : {0, static_cast<int>(ring.size()) - 1}) {
            double x = -1, y = -1;
            EXPECT_EQ(KPCB_GetCWPolygonPointData(viewer.pid, cw, p, &x, &y), 0);
            EXPECT_EQ(x, ring[static_cast<size_t>(p)].x);
            EXPECT_EQ(y, ring[static_cast<size_t>(p)].y);
        }
        const auto& holes = merged[static_cast<size_t>(cw)].holes;
        for (int ccw = 0; ccw < static_cast<int>(holes.size()); ++ccw) {
            double x = -1, y = -1;
            EXPECT_EQ(KPCB_GetCCWPolygonPointData(viewer.pid, cw, ccw, 0, &x, &y), 0);
            EXPECT_EQ(x, holes[static_cast<size_t>(ccw)][0].x);
            EXPECT_EQ(y, holes[static_cast<size_t>(ccw)][0].y);
        }
    }
    // Reads outside the result answer zeros (the library does not look at the error).
    double x = -1, y = -1;
    EXPECT_EQ(KPCB_GetCWPolygonPointData(viewer.pid, static_cast<int>(merged.size()), 0, &x, &y), 0);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(KPCB_GetCWPolygonPointCount(viewer.pid, -1), 0);

    // A failed run leaves no result.
    EXPECT_EQ(MergeRun(viewer.pid, copper, L"NO_SUCH_NET", 0, merged), -201);
    EXPECT_TRUE(merged.empty());
    EXPECT_EQ(MergeRun(viewer.pid, {L"NO_SUCH_LAYER", L"SILK_TOP"}, L"GND", 0, merged), -202)
        << "no copper layer named";
    EXPECT_EQ(MergeRun(viewer.pid, {L"NO_SUCH_LAYER"}, L"NO_SUCH_NET", 0, merged), -202) << "layers are judged first";
    EXPECT_EQ(KPCB_PolygonMergeDestroy(viewer.pid), 0);
}

// Overlapping pads of one net, a round pad to count Division by, and which layers
// a pad is on.
TEST_F(BoardTest, OverlappingPadsDivisionAndPadLayers) {
    UseText(R"(PDBBA 1
BOARD merge
LAYER TOP L1 COPPER
LAYER INNER L2 COPPER
LAYER BOTTOM L3 COPPER
LAYER SILK S SILK
PART P PKG
NET CHAIN
NET SOLO
NET THRU
COMP U1 P TOP 10 10 0
PIN 1 10 10 RECT 2 1 0 0 CHAIN
PIN 2 11.5 10 RECT 2 1 0 0 CHAIN
PIN 3 12.5 10 RECT 1 3 0 0 CHAIN
PIN 4 12.5 10 RECT 3 1 90 0 CHAIN
COMP U2 P TOP 30 10 0
PIN 1 30 10 ROUND 2 2 0 0 SOLO
COMP U3 P BOTTOM 30 20 0
PIN 1 30 20 ROUND 2 2 0 0.8 THRU
PIN 2 34 20 ROUND 2 2 0 0 THRU
COMP U4 P UNPLACED 0 0 0
PIN 1 40 20 ROUND 2 2 0 0.8 THRU
END
)");
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    ASSERT_EQ(KPCB_PolygonMergeCreate(viewer.pid), 0);
    std::vector<Merged> merged;

    // 2 x 1 at 10 and 11.5 overlap by 0.5 x 1; the 1 x 3 at 12.5 overlaps the second
    // by 0.5 x 1; pin 4 is the same rectangle turned a quarter: area 2 + 2 + 3 - 1.
    ASSERT_EQ(MergeRun(viewer.pid, {L"TOP"}, L"CHAIN", 0, merged), 0);
    ASSERT_EQ(merged.size(), 1u);
    EXPECT_TRUE(merged[0].holes.empty());
    ExpectOrientation(merged);
    ExpectExtent(merged[0].outline, 9, 8.5, 13, 11.5);
    EXPECT_NEAR(-text_board::SignedArea(merged[0].outline), 6, kGrid);

    // Division: corners of a full circle, 0 for the default, held within 8..1024.
    const std::pair<double, size_t> divisions[] = {{12, 12}, {12.4, 12}, {0, 32}, {-5, 32}, {3, 8}, {5000, 1024}};
    for (const auto& d : divisions) {
        ASSERT_EQ(MergeRun(viewer.pid, {L"TOP"}, L"SOLO", d.first, merged), 0);
        ASSERT_EQ(merged.size(), 1u);
        EXPECT_EQ(merged[0].outline.size(), d.second) << "division " << d.first;
        for (const Pt& p : merged[0].outline) EXPECT_NEAR(std::hypot(p.x - 30, p.y - 10), 1, kGrid);
    }

    // A bottom component: its through-hole pad is on every copper layer, its surface
    // pad on the bottom only; an unplaced component has no copper.
    ASSERT_EQ(MergeRun(viewer.pid, {L"L2"}, L"THRU", 8, merged), 0);
    ASSERT_EQ(merged.size(), 1u);
    ExpectExtent(merged[0].outline, 29, 19, 31, 21);
    ASSERT_EQ(MergeRun(viewer.pid, {L"TOP"}, L"THRU", 8, merged), 0);
    EXPECT_EQ(merged.size(), 1u);
    ASSERT_EQ(MergeRun(viewer.pid, {L"BOTTOM", L"SILK"}, L"THRU", 8, merged), 0);
    ASSERT_EQ(merged.size(), 2u);
    ExpectExtent(merged[0].outline, 29, 19, 31, 21);
    ExpectExtent(merged[1].outline, 33, 19, 35, 21);
    EXPECT_EQ(KPCB_PolygonMergeDestroy(viewer.pid), 0);
    EXPECT_EQ(KPCB_GetCWPolygonCount(viewer.pid), 0) << "nothing after destroy";
}
