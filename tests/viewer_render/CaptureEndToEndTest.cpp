// The bitmap capture and the text export of the real viewer process, against the
// sample board. Expected positions are worked out here from the board's text form
// and the view transform of docs/rendering.md; expected colours are that document's
// palette.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "BmpReader.h"
#include "PdbText.h"
#include "ViewerSession.h"

using render_test::Bmp;
using render_test::Color;
using testing_support::Viewer;

namespace {

constexpr double kPi = 3.14159265358979323846;

// The documented palette.
const Color kCopperTop{220, 80, 60};
const Color kCopperBottom{60, 110, 230};
const Color kFirstInner{80, 180, 90};  // GND, the first inner copper layer of the sample
const Color kBoard{0, 56, 32};
Color Dim(Color c) { return Color{c.r * 2 / 5, c.g * 2 / 5, c.b * 2 / 5}; }

struct Point {
    double x = 0, y = 0;
};

// The view as the commands leave it, and the documented transform from board
// millimetres to pixel positions.
struct View {
    int width = 1024, height = 768;
    double rotation = 0;
    bool mirrored = false;
    int zoomSteps = 0;
    bool area = false;
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;

    // Mirror first (x negated about the centre), then the counter-clockwise turn.
    Point Turn(double dx, double dy) const {
        const double m = mirrored ? -dx : dx, a = rotation * kPi / 180;
        return Point{m * std::cos(a) - dy * std::sin(a), m * std::sin(a) + dy * std::cos(a)};
    }
    // The box of a w x h rectangle once turned.
    Point TurnedBox(double w, double h) const {
        double maxX = 0, maxY = 0;
        for (int sx : {-1, 1})
            for (int sy : {-1, 1}) {
                const Point p = Turn(sx * w / 2, sy * h / 2);
                maxX = std::max(maxX, std::fabs(p.x));
                maxY = std::max(maxY, std::fabs(p.y));
            }
        return Point{2 * maxX, 2 * maxY};
    }

    Point ToPixel(const CPdb& board, Point p) const {
        double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
        const CArrayPointD& outline = board.GetOutline();
        for (INT_PTR i = 0; i < outline.GetSize(); ++i) {
            minX = std::min(minX, outline[i].x);
            maxX = std::max(maxX, outline[i].x);
            minY = std::min(minY, outline[i].y);
            maxY = std::max(maxY, outline[i].y);
        }
        Point centre{(minX + maxX) / 2, (minY + maxY) / 2};
        Point box = TurnedBox(maxX - minX, maxY - minY);
        double scale = 0.9 * std::min(width / box.x, height / box.y);
        if (area) {
            centre = Point{(x1 + x2) / 2, (y1 + y2) / 2};
            box = TurnedBox(std::fabs(x2 - x1), std::fabs(y2 - y1));
            scale = std::min(width / box.x, height / box.y);
        }
        scale *= std::pow(1.25, zoomSteps);
        const Point v = Turn(p.x - centre.x, p.y - centre.y);
        return Point{width / 2.0 + scale * v.x, height / 2.0 - scale * v.y};
    }
};

class Capture : public viewer_board_test::BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        UseSample();
        CString error;
        board = CPdbText::ReadFile(CString(boardFile), error);
        ASSERT_TRUE(board) << error.str();
    }

    // The picture of the viewer's current view; the title request that follows the
    // one-way capture returns once the viewer has served the capture.
    Bmp Take(int pid) {
        const std::string path = dir / ("view" + std::to_string(++taken) + ".bmp");
        EXPECT_EQ(KPCB_ExportBitmap_CurrentImage(pid, path.c_str()), 0);
        EXPECT_EQ(KPCB_SetMainTitle(pid, "captured"), 0);
        Bmp bmp = Bmp::Read(path);
        EXPECT_EQ(bmp.problem, "") << path;
        return bmp;
    }

    Point PinAt(const char* ref, const char* pin) const {
        const CPRefPin* p = board->FindPin(CString(ref), CString(pin));
        EXPECT_NE(p, nullptr) << ref << "-" << pin;
        return p ? Point{p->GetPosition().x, p->GetPosition().y} : Point{};
    }

    Color ColorAt(const Bmp& bmp, const View& view, Point boardPoint) const {
        const Point p = view.ToPixel(*board, boardPoint);
        return bmp.At(static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y)));
    }

    std::unique_ptr<CPdb> board;
    int taken = 0;
};

// Where the pixels of one colour are: their count, the mean of their centres, and the
// smallest box that holds them all (empty: min > max).
struct Blob {
    int count = 0;
    Point centre;
    int minX = 1 << 30, minY = 1 << 30, maxX = -1, maxY = -1;
    int Width() const { return maxX >= minX ? maxX - minX + 1 : 0; }
    int Height() const { return maxY >= minY ? maxY - minY + 1 : 0; }
};

Blob Find(const Bmp& bmp, const Color& c) {
    Blob blob;
    for (int y = 0; y < bmp.height; ++y)
        for (int x = 0; x < bmp.width; ++x)
            if (bmp.At(x, y) == c) {
                ++blob.count;
                blob.centre.x += x + 0.5;
                blob.centre.y += y + 0.5;
                blob.minX = std::min(blob.minX, x);
                blob.minY = std::min(blob.minY, y);
                blob.maxX = std::max(blob.maxX, x);
                blob.maxY = std::max(blob.maxY, y);
            }
    if (blob.count) {
        blob.centre.x /= blob.count;
        blob.centre.y /= blob.count;
    }
    return blob;
}

}  // namespace

TEST_F(Capture, PictureHasTheWindowSizeWithinItsLimits) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    Bmp bmp = Take(viewer.pid);
    EXPECT_EQ(bmp.width, 1024);
    EXPECT_EQ(bmp.height, 768);

    struct Case {
        int width, height, expectWidth, expectHeight;
    } cases[] = {{333, 77, 333, 77}, {3, 0, 16, 16}, {-50, 20, 16, 20}, {9000, 16, 8192, 16}};
    for (const Case& c : cases) {
        EXPECT_EQ(KPCB_SetWindowPosition(viewer.pid, 100, 50, c.width, c.height), 0);
        bmp = Take(viewer.pid);
        EXPECT_EQ(bmp.width, c.expectWidth) << c.width << " x " << c.height;
        EXPECT_EQ(bmp.height, c.expectHeight) << c.width << " x " << c.height;
    }
}

TEST_F(Capture, HighlightedObjectsCarryTheirColours) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const View view;
    const Color pinColor{255, 0, 255}, netColor{255, 255, 0}, compColor{0, 255, 255}, refPinColor{250, 140, 0};
    const Color areaColor{200, 0, 100};

    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, "U1", "1", ",", 255, 0, 255, 0), 0);
    EXPECT_EQ(KPCB_Highlight_DependentColor(viewer.pid, 0, "SDA", ",", 255, 255, 0, 0, 1), 0);
    EXPECT_EQ(KPCB_Highlight_DependentColor(viewer.pid, 1, "R4", ",", 0, 255, 255, 0, 1), 0);
    EXPECT_EQ(KPCB_Highlight_DependentColor(viewer.pid, 2, "D1-K", ",", 250, 140, 0, 0, 1), 0);
    Bmp bmp = Take(viewer.pid);

    EXPECT_EQ(ColorAt(bmp, view, PinAt("U1", "1")), pinColor);
    EXPECT_EQ(ColorAt(bmp, view, PinAt("U1", "2")), kCopperTop) << "a pin that was not named";
    EXPECT_EQ(ColorAt(bmp, view, PinAt("U3", "5")), netColor) << "a pad of the net, on the bottom";
    EXPECT_EQ(ColorAt(bmp, view, PinAt("J1", "3")), netColor) << "a through-hole pad of the net";
    EXPECT_EQ(ColorAt(bmp, view, Point{18, 31}), netColor) << "a track of the net";
    EXPECT_EQ(ColorAt(bmp, view, Point{34, 26}), netColor) << "a via of the net";
    EXPECT_EQ(ColorAt(bmp, view, Point{16, 28}), kCopperTop) << "a track of another net";
    EXPECT_EQ(ColorAt(bmp, view, PinAt("R4", "1")), compColor);
    EXPECT_EQ(ColorAt(bmp, view, PinAt("R4", "2")), compColor);
    EXPECT_EQ(ColorAt(bmp, view, PinAt("D1", "K")), refPinColor);
    EXPECT_EQ(ColorAt(bmp, view, PinAt("D1", "A")), kCopperTop);

    // A net's copper area keeps its place under the tracks, dimmed like every area.
    const Point planeOnly{70, 8};
    EXPECT_EQ(ColorAt(bmp, view, planeOnly), Dim(kFirstInner));
    EXPECT_EQ(KPCB_Highlight_DependentColor(viewer.pid, 0, "GND", ",", 200, 0, 100, 0, 1), 0);
    bmp = Take(viewer.pid);
    EXPECT_EQ(ColorAt(bmp, view, planeOnly), Dim(areaColor));
    EXPECT_EQ(ColorAt(bmp, view, Point{18, 31}), netColor) << "tracks stay over the highlighted area";

    EXPECT_EQ(KPCB_Highlight_Clear(viewer.pid), 0);
    bmp = Take(viewer.pid);
    for (const Color& c : {pinColor, netColor, compColor, refPinColor, Dim(areaColor)})
        EXPECT_EQ(bmp.Count(c), 0) << c;
    EXPECT_EQ(ColorAt(bmp, view, PinAt("U1", "1")), kCopperTop);
}

TEST_F(Capture, SectionHighlightFollowsTheNetsRouting) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const View view;
    // SCL from J1-4 to U1-9: along x = 16 down to y = 22, then to x = 44.5 and up.
    // The section zooms to itself; back in the fitted view it is still highlighted.
    EXPECT_EQ(KPCB_Highlight_SetCurrentColor(viewer.pid, 10, 250, 120), 0);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, "SCL", "J1", "4", "U1", "9"), 0);
    const Color section{10, 250, 120};
    const Blob zoomed = Find(Take(viewer.pid), section);
    EXPECT_EQ(KPCB_ZoomFitSize(viewer.pid), 0);
    Bmp bmp = Take(viewer.pid);
    EXPECT_EQ(ColorAt(bmp, view, Point{16, 28}), section);
    EXPECT_EQ(ColorAt(bmp, view, Point{44.5, 26}), section);
    EXPECT_EQ(ColorAt(bmp, view, PinAt("U1", "9")), section);
    EXPECT_NE(ColorAt(bmp, view, Point{30.8, 21}), section) << "the branch to R3 is not on the way";
    EXPECT_NE(ColorAt(bmp, view, PinAt("U3", "6")), section) << "nor is the bottom run to U3";

    // Zoomed, the section sat in the middle of the picture, larger than when fitted.
    const Blob fitted = Find(bmp, section);
    ASSERT_GT(zoomed.Width(), 0);
    EXPECT_NEAR((zoomed.minX + zoomed.maxX) / 2.0, 512, 2);
    EXPECT_NEAR((zoomed.minY + zoomed.maxY) / 2.0, 384, 2);
    EXPECT_GT(zoomed.Width(), 1.5 * fitted.Width());
    EXPECT_GT(zoomed.Height(), 1.5 * fitted.Height());
}

TEST_F(Capture, ZoomingHighlightsShowWhatTheyMarkWithAMargin) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    // The documented zoom area: the marked box with a quarter of its longer side, at
    // least 1 mm, added on every side.
    auto zoomedTo = [](CRectD box) {
        const double margin = std::max(std::max(box.Width(), box.Height()) / 4, 1.0);
        View view;
        view.area = true;
        view.x1 = box.minX - margin, view.y1 = box.minY - margin;
        view.x2 = box.maxX + margin, view.y2 = box.maxY + margin;
        return view;
    };
    // Where the box lies in the picture of that view.
    auto expectedBox = [&](const View& view, const CRectD& box) {
        const Point a = view.ToPixel(*board, Point{box.minX, box.maxY});
        const Point b = view.ToPixel(*board, Point{box.maxX, box.minY});
        Blob expected;
        expected.minX = static_cast<int>(std::floor(a.x));
        expected.minY = static_cast<int>(std::floor(a.y));
        expected.maxX = static_cast<int>(std::ceil(b.x)) - 1;
        expected.maxY = static_cast<int>(std::ceil(b.y)) - 1;
        return expected;
    };
    auto expectNear = [](const Blob& got, const Blob& want, const char* what) {
        EXPECT_NEAR(got.minX, want.minX, 2) << what;
        EXPECT_NEAR(got.minY, want.minY, 2) << what;
        EXPECT_NEAR(got.maxX, want.maxX, 2) << what;
        EXPECT_NEAR(got.maxY, want.maxY, 2) << what;
    };

    // One pin: a 1.7 mm square pad, so the 1 mm margin applies.
    const Color mark{255, 0, 255};
    const CRectD pad = board->FindPin(CString("J1"), CString("1"))->GetPadRect();
    EXPECT_EQ(KPCB_Highlight_RefPin_Zoom(viewer.pid, "J1", "1", ",", 255, 0, 255, 0), 0);
    const Blob padBox = Find(Take(viewer.pid), mark);
    expectNear(padBox, expectedBox(zoomedTo(pad), pad), "zoomed to a pin");

    // Neither a pins highlight without zoom nor a zooming one whose names are wrong
    // moves the view.
    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, "U1", "1", ",", 0, 255, 0, 0), 0);
    EXPECT_EQ(KPCB_Highlight_RefPin_Zoom(viewer.pid, "J1", "99", ",", 0, 255, 0, 0), -201);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, "SCL", "J1", "4", "U1", "99"), -200);
    expectNear(Find(Take(viewer.pid), mark), padBox, "the view stays");

    // One track: the box of its round-ended stroke, a quarter of its length around it.
    EXPECT_EQ(KPCB_Highlight_Clear(viewer.pid), 0);
    const CPNet* net = board->FindNet(CString("LED_A"));
    ASSERT_NE(net, nullptr);
    const CRectD track = net->GetRoute().GetAt(0)->GetBoundingRect();
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("LED_A"), CArrayN{0}, 0x00336699), 0);
    expectNear(Find(Take(viewer.pid), Color{0x99, 0x66, 0x33}), expectedBox(zoomedTo(track), track),
               "zoomed to a track");
}

TEST_F(Capture, MirrorRotationAndZoomMoveAPadWhereTheTransformSays) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const Point pad = PinAt("J1", "1");  // a 1.7 mm square through-hole pad, off the board's centre
    const Color mark{255, 0, 255};
    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, "J1", "1", ",", 255, 0, 255, 0), 0);

    auto check = [&](const View& view, const char* what) {
        const Bmp bmp = Take(viewer.pid);
        const Blob blob = Find(bmp, mark);
        const Point expected = view.ToPixel(*board, pad);
        // Scale of this view in pixels per millimetre, from two points 1 mm apart.
        const Point a = view.ToPixel(*board, Point{0, 0}), b = view.ToPixel(*board, Point{1, 0});
        const double side = 1.7 * std::hypot(b.x - a.x, b.y - a.y);
        EXPECT_NEAR(blob.centre.x, expected.x, 1.0) << what;
        EXPECT_NEAR(blob.centre.y, expected.y, 1.0) << what;
        EXPECT_NEAR(blob.count, side * side, side * side * 0.25) << what;
    };

    View view;
    check(view, "fitted");
    EXPECT_EQ(KPCB_ViewMirror(viewer.pid), 0);
    view.mirrored = true;
    double angle = 30;
    EXPECT_EQ(KPCB_RotateBoard(viewer.pid, &angle), 0);
    view.rotation = 30;
    check(view, "mirrored and turned by 30 degrees");
    EXPECT_EQ(KPCB_ViewMirror_Clear(viewer.pid), 0);
    angle = 90;
    EXPECT_EQ(KPCB_RotateBoard(viewer.pid, &angle), 0);
    view.mirrored = false;
    view.rotation = 90;
    check(view, "turned by 90 degrees");

    angle = 0;
    EXPECT_EQ(KPCB_RotateBoard(viewer.pid, &angle), 0);
    view.rotation = 0;
    EXPECT_EQ(KPCB_ZoomIn(viewer.pid), 0);
    EXPECT_EQ(KPCB_ZoomOut(viewer.pid), 0);
    EXPECT_EQ(KPCB_ZoomOut(viewer.pid), 0);
    EXPECT_EQ(KPCB_ZoomOut(viewer.pid), 0);
    view.zoomSteps = -2;
    check(view, "two steps out");

    // An area given corner by corner in either order.
    double x1 = 20, y1 = 50, x2 = 2, y2 = 30;
    EXPECT_EQ(KPCB_ZoomArea(viewer.pid, &x1, &y1, &x2, &y2), 0);
    view.zoomSteps = 0;
    view.area = true;
    view.x1 = x1, view.y1 = y1, view.x2 = x2, view.y2 = y2;
    check(view, "zoom area");

    EXPECT_EQ(KPCB_ZoomFitSize(viewer.pid), 0);
    EXPECT_EQ(KPCB_SetWindowPosition(viewer.pid, 0, 0, 500, 900), 0);
    view = View();
    view.width = 500;
    view.height = 900;
    check(view, "fitted into a tall window");

    EXPECT_EQ(KPCB_ViewLayer_Btm(viewer.pid), 0);
    check(view, "the bottom side, seen through the board from the top");
}

TEST_F(Capture, HiddenLayersAndTheViewedSideLeaveTheirColoursOut) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    Bmp bmp = Take(viewer.pid);
    ASSERT_GT(bmp.Count(kCopperTop), 0);
    ASSERT_GT(bmp.Count(kCopperBottom), 0);
    ASSERT_GT(bmp.Count(Dim(kFirstInner)), 0);

    EXPECT_EQ(KPCB_Visible_Layers(viewer.pid, "TOP", ",", 0), 0);
    bmp = Take(viewer.pid);
    EXPECT_EQ(bmp.Count(kCopperTop), 0);
    EXPECT_GT(bmp.Count(kCopperBottom), 0);

    EXPECT_EQ(KPCB_Visible_Layers(viewer.pid, "TOP", ",", 1), 0);
    EXPECT_EQ(KPCB_Visible_ECAD_Layers(viewer.pid, "L4_BOTTOM", ",", 0), 0);  // BOTTOM by its ECAD name
    bmp = Take(viewer.pid);
    EXPECT_GT(bmp.Count(kCopperTop), 0);
    EXPECT_EQ(bmp.Count(kCopperBottom), 0);

    EXPECT_EQ(KPCB_Visible_Layers_Only(viewer.pid, "GND", ","), 0);
    bmp = Take(viewer.pid);
    EXPECT_EQ(bmp.Count(kCopperTop), 0);
    EXPECT_EQ(bmp.Count(kCopperBottom), 0);
    EXPECT_GT(bmp.Count(Dim(kFirstInner)), 0);
    EXPECT_GT(bmp.Count(kFirstInner), 0) << "vias and through-hole pads on GND take its colour";

    EXPECT_EQ(KPCB_Visible_Layers(viewer.pid, "TOP,BOTTOM,GND,PWR", ",", 1), 0);
    EXPECT_EQ(KPCB_ViewLayer_Top(viewer.pid), 0);
    bmp = Take(viewer.pid);
    EXPECT_GT(bmp.Count(kCopperTop), 0);
    EXPECT_EQ(bmp.Count(kCopperBottom), 0);
    EXPECT_EQ(bmp.Count(Dim(kFirstInner)), 0) << "inner layers are on neither side";
    EXPECT_GT(bmp.Count(kBoard), 0);

    EXPECT_EQ(KPCB_ViewLayer_Btm(viewer.pid), 0);
    bmp = Take(viewer.pid);
    EXPECT_EQ(bmp.Count(kCopperTop), 0);
    EXPECT_GT(bmp.Count(kCopperBottom), 0);
}

TEST_F(Capture, ComponentAndRouteSwitches) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const View view;
    const Point track{56, 30};                 // LED_A's track between R4 and D1, on TOP
    const Point freePad = PinAt("U1", "8");  // an unconnected pad, no track on it
    Bmp bmp = Take(viewer.pid);
    EXPECT_EQ(ColorAt(bmp, view, track), kCopperTop);
    EXPECT_EQ(ColorAt(bmp, view, freePad), kCopperTop);

    EXPECT_EQ(KPCB_Route_OnOff(viewer.pid, 0), 0);
    bmp = Take(viewer.pid);
    EXPECT_NE(ColorAt(bmp, view, track), kCopperTop);
    EXPECT_EQ(ColorAt(bmp, view, freePad), kCopperTop);

    EXPECT_EQ(KPCB_Route_OnOff(viewer.pid, 7), 0);  // any non-zero value is on
    EXPECT_EQ(KPCB_Component_OnOff(viewer.pid, 0), 0);
    bmp = Take(viewer.pid);
    EXPECT_EQ(ColorAt(bmp, view, track), kCopperTop);
    EXPECT_NE(ColorAt(bmp, view, freePad), kCopperTop);
}

TEST_F(Capture, UnwritablePathsLeaveANoteAndTheViewerServesOn) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const std::string nowhere = dir / "no-such-folder/view.bmp";
    EXPECT_EQ(KPCB_ExportBitmap_CurrentImage(viewer.pid, nowhere.c_str()), 0);
    EXPECT_EQ(KPCB_ExportPDBAscii(viewer.pid, (dir / "no-such-folder/board.pdbba").c_str()), 0);
    EXPECT_EQ(KPCB_SetMainTitle(viewer.pid, "still here"), 0);
    EXPECT_FALSE(std::filesystem::exists(nowhere));
    std::string notes;
    for (const std::string& line : JournalLines()) notes += line + "\n";
    EXPECT_NE(notes.find("bitmap 1024x768 NOT written to " + nowhere), std::string::npos) << notes;
    EXPECT_NE(notes.find("text export NOT written to " + (dir / "no-such-folder/board.pdbba")), std::string::npos)
        << notes;
    EXPECT_EQ(Take(viewer.pid).width, 1024);
}

TEST_F(Capture, TextExportReadsBackToTheSameBoard) {
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const std::string path = dir / "exported.pdbba";
    EXPECT_EQ(KPCB_ExportPDBAscii(viewer.pid, path.c_str()), 0);  // waits for the viewer's reply
    CString error;
    const std::unique_ptr<CPdb> exported = CPdbText::ReadFile(CString(path), error);
    ASSERT_TRUE(exported) << error.str();
    EXPECT_EQ(CPdbText::Write(*exported).str(), CPdbText::Write(*board).str());
}
