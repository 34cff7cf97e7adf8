// Polygon pads and track arcs as the viewer draws them, without a viewer process.
#include <gtest/gtest.h>

#include "CPdb.h"
#include "RenderView.h"

using viewer::Rgb;

namespace {

// A 20 x 20 mm board drawn at 10 pixels per millimetre, one copper layer: a donut pad
// (a 4 mm square with a 2 mm square hole) at (5, 5), and a quarter arc of radius 4 on
// a centre at (12, 12) from (16, 12) to (12, 16), clockwise or not.
std::unique_ptr<CPdb> Board(bool clockwise) {
    std::unique_ptr<CPdb> pdb(new CPdb);
    pdb->GetOutline() = CArrayPointD{{0, 0}, {20, 0}, {20, 20}, {0, 20}};
    pdb->GetLayerManager().AddLayer("TOP", "L1", LayerKind::Copper);
    CPNet* net = pdb->AddNet("N");
    CPComp* comp = pdb->AddComp("U1", nullptr, CompSide::Top, CPointD(5, 5), 0);
    CPRefPin* pin = comp->AddPin("1", CPointD(5, 5), PadShape::Polygon, 0, 0, 0, 0);
    pin->SetPadOutline({CArrayPointD{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}, CArrayPointD{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}});
    net->AddPin(pin);
    net->GetRoute().AddArc(0, 0.6, C2PointD(CPointD(16, 12), CPointD(12, 16)), CPointD(12, 12), clockwise);
    return pdb;
}

TEST(RenderNewObjects, PolygonPadsFillEvenOddAndArcsFollowTheirDirection) {
    viewer::ViewState view;
    view.window.width = view.window.height = 222;  // the fit leaves 5 % free: 10 pixels per mm
    for (const bool clockwise : {false, true}) {
        const viewer::Bitmap picture = viewer::RenderView(*Board(clockwise), view);
        const viewer::ViewTransform t(*Board(clockwise), view);
        const auto at = [&](double x, double y) {
            const viewer::PixelPoint p = t.ToPixel(CPointD(x, y));
            return picture.Get(static_cast<int>(p.x), static_cast<int>(p.y));
        };
        const Rgb copper = viewer::palette::kCopperTop, board = viewer::palette::kBoard;
        EXPECT_EQ(copper, at(3.5, 5)) << "the donut's ring";
        EXPECT_EQ(board, at(5, 5)) << "the donut's hole";
        EXPECT_EQ(board, at(7.5, 5)) << "beside the donut";
        // Counter-clockwise the arc is the short quarter through (14.83, 14.83); clockwise
        // it goes the long way round, through (8, 12) and (12, 8).
        EXPECT_EQ(clockwise ? board : copper, at(14.83, 14.83)) << clockwise;
        EXPECT_EQ(clockwise ? copper : board, at(8, 12)) << clockwise;
        EXPECT_EQ(clockwise ? copper : board, at(12, 8)) << clockwise;
        EXPECT_EQ(board, at(12, 12)) << "the arc's centre";
    }
}

}  // namespace
