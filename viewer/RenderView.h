// Rendering the viewer's current view of the board into a picture, as the bitmap
// capture writes it. docs/rendering.md describes the picture: size, view transform,
// palette, drawing order and what each view setting does.
#pragma once

#include "Bitmap.h"
#include "CPdb.h"
#include "RenderRaster.h"
#include "ViewerState.h"

namespace viewer {

// Picture sides are clamped to this range; the window placement gives them.
constexpr int kMinPictureSide = 16;
constexpr int kMaxPictureSide = 8192;
// Each zoom step scales by this factor about the picture's centre; steps beyond the
// limit count as the limit.
constexpr double kZoomStepFactor = 1.25;
constexpr int kMaxZoomSteps = 30;
// The fitted board leaves this fraction of the picture free on each side.
constexpr double kFitMargin = 0.05;

// Fixed colours of the picture.
namespace palette {
constexpr Rgb kBackground{20, 20, 28};
constexpr Rgb kBoard{0, 56, 32};
constexpr Rgb kOutline{230, 220, 110};
constexpr Rgb kDrill{0, 0, 0};
constexpr Rgb kCopperTop{220, 80, 60};
constexpr Rgb kCopperBottom{60, 110, 230};
constexpr Rgb kCopperInner[4] = {{80, 180, 90}, {210, 170, 50}, {170, 100, 210}, {60, 190, 190}};
constexpr Rgb kSilkTop{240, 240, 240};
constexpr Rgb kSilkBottom{230, 200, 140};
constexpr Rgb kSilkOther{200, 200, 200};
constexpr Rgb kMaskTop{110, 170, 120};
constexpr Rgb kMaskBottom{110, 140, 180};
constexpr Rgb kMaskOther{130, 150, 150};
constexpr Rgb kPasteTop{190, 190, 200};
constexpr Rgb kPasteBottom{160, 160, 190};
constexpr Rgb kPasteOther{175, 175, 185};
constexpr Rgb kDrillLayer{250, 250, 160};
constexpr Rgb kDocument{190, 140, 200};
constexpr Rgb kOther{160, 160, 160};
constexpr Rgb kMergeFill{90, 60, 20};
constexpr Rgb kMergeOutline{255, 190, 40};
constexpr Rgb kMergeHole{80, 230, 255};
}  // namespace palette

// Copper areas are drawn in a dimmed colour: two fifths of each channel.
inline Rgb Dim(Rgb c) {
    return Rgb{static_cast<std::uint8_t>(c.r * 2 / 5), static_cast<std::uint8_t>(c.g * 2 / 5),
               static_cast<std::uint8_t>(c.b * 2 / 5)};
}

// The colour of a layer of the board's stack.
Rgb LayerColor(const CPDBLayerManager& layers, int index);

// Board millimetres (y upwards) to picture pixels (y downwards) for one view: the
// view's centre point goes to the picture's centre; the board is mirrored about the
// vertical line through it (when mirrored), then turned counter-clockwise by the
// rotation, then scaled.
class ViewTransform {
public:
    ViewTransform(const CPdb& board, const ViewState& view);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    double Scale() const { return m_scale; }  // pixels per millimetre
    const CPointD& Centre() const { return m_centre; }
    PixelPoint ToPixel(const CPointD& p) const {
        const double dx = p.x - m_centre.x, dy = p.y - m_centre.y;
        return PixelPoint{m_width / 2.0 + m_scale * (m_a * dx + m_b * dy),
                          m_height / 2.0 - m_scale * (m_c * dx + m_d * dy)};
    }

private:
    // Width and height of the rectangle's box once mirrored and turned.
    void TurnedExtent(const CRectD& r, double& w, double& h) const;

    int m_width, m_height;
    CPointD m_centre;
    double m_scale = 1;
    double m_a = 1, m_b = 0, m_c = 0, m_d = 1;  // mirror, then rotation
};

Bitmap RenderView(const CPdb& board, const ViewState& view);

}  // namespace viewer
