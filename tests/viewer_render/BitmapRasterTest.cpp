// The viewer's picture file and its shape filling, without a viewer process.
#include <gtest/gtest.h>

#include <cmath>

#include "Bitmap.h"
#include "BmpReader.h"
#include "RenderRaster.h"
#include "TestPaths.h"

using render_test::Bmp;
using viewer::Bitmap;
using viewer::PixelPoint;
using viewer::Raster;
using viewer::Rgb;

namespace {

constexpr Rgb kInk{10, 200, 30};
constexpr Rgb kPaper{0, 0, 0};

int Painted(const Bitmap& b) {
    int n = 0;
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x) n += b.Get(x, y) == kInk ? 1 : 0;
    return n;
}

}  // namespace

TEST(BitmapFile, HeadersAndRowsAreLaidOutAsTheFormatWants) {
    Bitmap b(2, 2, Rgb{1, 2, 3});
    b.Set(0, 0, Rgb{0xFF, 0x00, 0x00});  // top left
    b.Set(1, 1, Rgb{0x00, 0x00, 0xFF});  // bottom right
    const std::vector<std::uint8_t> bytes = b.EncodeBmp();
    // 54 header bytes, then two rows of 2 * 3 bytes padded to 8.
    ASSERT_EQ(bytes.size(), 54u + 16u);
    EXPECT_EQ(bytes[0], 'B');
    EXPECT_EQ(bytes[1], 'M');
    EXPECT_EQ(bytes[2], 70);   // file size
    EXPECT_EQ(bytes[10], 54);  // pixel data offset
    EXPECT_EQ(bytes[14], 40);  // information header size
    EXPECT_EQ(bytes[18], 2);   // width
    EXPECT_EQ(bytes[22], 2);   // height, positive: bottom row first
    EXPECT_EQ(bytes[26], 1);   // planes
    EXPECT_EQ(bytes[28], 24);  // bits per pixel
    EXPECT_EQ(bytes[30], 0);   // no compression
    EXPECT_EQ(bytes[34], 16);  // pixel data size
    // First row in the file is the bottom one: fill colour, then the blue pixel, as B G R.
    const std::vector<std::uint8_t> bottom{3, 2, 1, 0xFF, 0, 0, 0, 0};
    const std::vector<std::uint8_t> top{0, 0, 0xFF, 3, 2, 1, 0, 0};
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin() + 54, bytes.begin() + 62), bottom);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin() + 62, bytes.end()), top);
}

TEST(BitmapFile, WrittenFileReadsBackAndAnUnwritablePathSaysWhy) {
    testing_support::TempDir dir;
    Bitmap b(5, 3, Rgb{9, 8, 7});
    b.Set(4, 0, Rgb{200, 100, 50});
    std::string why;
    ASSERT_TRUE(b.WriteBmp(dir / "p.bmp", why)) << why;
    const Bmp read = Bmp::Read(dir / "p.bmp");
    ASSERT_EQ(read.problem, "");
    EXPECT_EQ(read.width, 5);
    EXPECT_EQ(read.height, 3);
    EXPECT_EQ(read.At(4, 0), (render_test::Color{200, 100, 50}));
    EXPECT_EQ(read.At(0, 2), (render_test::Color{9, 8, 7}));

    EXPECT_FALSE(b.WriteBmp(dir / "no-such-folder/p.bmp", why));
    EXPECT_FALSE(why.empty());
}

TEST(RasterFill, PolygonWithHoleLeavesTheHoleAndCountsPixelCentres) {
    Bitmap b(40, 40, kPaper);
    Raster r(b);
    // A 20 x 20 square with a 10 x 10 hole, corners on pixel boundaries: exact counts.
    r.FillPolygon({{{5, 5}, {25, 5}, {25, 25}, {5, 25}}, {{10, 10}, {10, 20}, {20, 20}, {20, 10}}}, kInk);
    EXPECT_EQ(Painted(b), 400 - 100);
    EXPECT_EQ(b.Get(15, 15), kPaper);
    EXPECT_EQ(b.Get(5, 5), kInk);
    EXPECT_EQ(b.Get(24, 24), kInk);
    EXPECT_EQ(b.Get(25, 24), kPaper);
    EXPECT_EQ(b.Get(4, 5), kPaper);
}

TEST(RasterFill, PolygonsReachingFarOutsideAreClipped) {
    Bitmap b(30, 20, kPaper);
    Raster r(b);
    r.FillPolygon({{-1e9, -1e9}, {1e9, -1e9}, {1e9, 1e9}, {-1e9, 1e9}}, kInk);
    EXPECT_EQ(Painted(b), 30 * 20);
    Bitmap d(30, 20, kPaper);
    Raster(d).FillCircle({15, 1e11}, 1e12, kInk);  // a pad at an absurd zoom
    EXPECT_EQ(Painted(d), 30 * 20);

    Bitmap c(30, 20, kPaper);
    Raster rc(c);
    rc.FillPolygon({{100, 100}, {200, 100}, {200, 200}}, kInk);
    rc.FillCircle({-50, 10}, 20, kInk);
    rc.FillCapsule({-10, -10}, {-5, -50}, 3, kInk);
    const double nan = std::nan("");
    rc.FillPolygon({{1, 1}, {nan, 5}, {20, 10}}, kInk);  // a board with a broken coordinate
    rc.FillCircle({nan, 5}, 3, kInk);
    rc.FillCapsule({1, 1}, {10, nan}, 2, kInk);
    rc.Line({1, 1}, {nan, nan}, kInk);
    EXPECT_EQ(Painted(c), 0);
}

TEST(RasterFill, CirclesAndTracksHaveTheirSize) {
    Bitmap b(100, 100, kPaper);
    Raster r(b);
    r.FillCircle({50, 50}, 10, kInk);
    EXPECT_NEAR(Painted(b), 3.14159265 * 100, 10);
    EXPECT_EQ(b.Get(50, 41), kInk);
    EXPECT_EQ(b.Get(50, 39), kPaper);

    Bitmap t(100, 40, kPaper);
    Raster rt(t);
    rt.FillCapsule({20, 20}, {80, 20}, 4, kInk);  // 8 wide, 60 long, round ends: rows 16 to 23
    EXPECT_NEAR(Painted(t), 60 * 8 + 3.14159265 * 16, 12);
    EXPECT_EQ(t.Get(50, 16), kInk);
    EXPECT_EQ(t.Get(50, 23), kInk);
    EXPECT_EQ(t.Get(50, 15), kPaper);
    EXPECT_EQ(t.Get(50, 24), kPaper);
    EXPECT_EQ(t.Get(83, 20), kInk);  // the round end reaches past the end point
    EXPECT_EQ(t.Get(83, 16), kPaper);  // but not its corners
}

TEST(RasterFill, ShapesSmallerThanAPixelStillShowAsOne) {
    Bitmap b(20, 20, kPaper);
    Raster r(b);
    r.FillPolygon({{3.1, 3.1}, {3.3, 3.1}, {3.3, 3.3}}, kInk);
    r.FillCircle({10.9, 10.1}, 0.2, kInk);
    r.FillCapsule({15.2, 5.2}, {15.3, 5.3}, 0.1, kInk);
    EXPECT_EQ(Painted(b), 3);
    EXPECT_EQ(b.Get(3, 3), kInk);
    EXPECT_EQ(b.Get(10, 10), kInk);
    EXPECT_EQ(b.Get(15, 5), kInk);
}

TEST(RasterFill, ThinLinesAreUnbrokenAndClipped) {
    Bitmap b(50, 50, kPaper);
    Raster r(b);
    r.Line({-1e7 + 0.5, -1e7 + 0.5}, {1e7 + 0.5, 1e7 + 0.5}, kInk);  // the diagonal, from far outside
    for (int i = 0; i < 50; ++i) EXPECT_EQ(b.Get(i, i), kInk) << i;
    EXPECT_EQ(Painted(b), 50);

    Bitmap o(30, 30, kPaper);
    Raster ro(o);
    ro.Outline({{5.5, 5.5}, {20.5, 5.5}, {20.5, 15.5}, {5.5, 15.5}}, kInk);
    EXPECT_EQ(Painted(o), 2 * 16 + 2 * 9);  // a 16 x 11 frame, one pixel wide
    EXPECT_EQ(o.Get(10, 10), kPaper);
}
