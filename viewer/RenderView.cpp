#include "RenderView.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "BoardQueries.h"
#include "HighlightMarks.h"
#include "RenderFont.h"

namespace viewer {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kBodyMargin = 0.25;        // mm around a component's pads
constexpr double kBodyWithoutPins = 0.5;    // mm, half side of a pinless component's box
constexpr double kReferenceHeight = 1.0;    // mm, largest reference text
constexpr double kSmallestTextPixels = 3;   // texts lower than this are left out

int ClampSide(int v) { return std::min(std::max(v, kMinPictureSide), kMaxPictureSide); }

double Finite(double v) { return std::isfinite(v) ? v : 0; }

// Layer visibility as the layer commands left it; a layer is named by its viewer name
// or its ECAD name.
bool LayerSwitchedOn(const LayerVisibility& v, const CPLay& layer) {
    if (v.only) return NamesLayer(v.onlyNames, layer);
    auto found = v.switched.find(layer.GetName().str());
    if (found == v.switched.end()) found = v.switched.find(layer.GetEcadName().str());
    return found == v.switched.end() || found->second != 0;
}

class Renderer {
public:
    Renderer(const CPdb& board, const ViewState& view)
        : m_board(board), m_view(view), m_layers(board.GetLayerManager()), m_t(board, view),
          m_picture(m_t.Width(), m_t.Height(), palette::kBackground), m_raster(m_picture) {}

    Bitmap Run() {
        PrepareLayers();
        for (const Highlight& h : m_view.highlights) CollectMarks(m_board, h, m_marks);
        DrawBoard();
        DrawAreas();
        DrawCopper();
        DrawHoles();
        DrawTexts();
        DrawBodies(false);
        m_raster.Outline(Ring(m_board.GetOutline()), palette::kOutline);
        DrawHighlights();
        DrawMerge();
        return std::move(m_picture);
    }

private:
    // ---- Layers ----
    void PrepareLayers() {
        const int count = m_layers.GetLayerCount();
        m_shown.assign(static_cast<size_t>(count), false);
        m_color.resize(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) {
            m_shown[static_cast<size_t>(i)] = OnViewedSide(i) && LayerSwitchedOn(m_view.layers, *m_layers.GetLayer(i));
            m_color[static_cast<size_t>(i)] = LayerColor(m_layers, i);
        }
        // Seen from the top the bottom of the stack is farthest; seen from the bottom the top.
        for (int k = 0; k < count; ++k) m_farToNear.push_back(m_view.side == Side::Bottom ? k : count - 1 - k);
        for (auto it = m_farToNear.rbegin(); it != m_farToNear.rend(); ++it)
            if (m_layers.IsCopperLayer(*it) && Shown(*it)) m_copperNearToFar.push_back(*it);
        m_silkTop = SilkOf(BoardSide::Top);
        m_silkBottom = SilkOf(BoardSide::Bottom);
    }

    // Layers that belong to neither side (other and drill layers, documents between
    // the copper) show in every view.
    bool OnViewedSide(int index) const {
        const LayerKind kind = m_layers.GetLayer(index)->GetKind();
        const BoardSide side = m_layers.GetLayerSide(index);
        if (m_view.side == Side::All || kind == LayerKind::Other || kind == LayerKind::Drill) return true;
        if (kind == LayerKind::Document && side == BoardSide::None) return true;
        return side == (m_view.side == Side::Top ? BoardSide::Top : BoardSide::Bottom);
    }

    bool Shown(int layer) const {
        return layer >= 0 && layer < static_cast<int>(m_shown.size()) && m_shown[static_cast<size_t>(layer)];
    }

    // The outermost silk layer of a side, or -1.
    int SilkOf(BoardSide side) const {
        int found = -1;
        for (int i = 0; i < m_layers.GetLayerCount(); ++i) {
            if (m_layers.GetLayer(i)->GetKind() != LayerKind::Silk || m_layers.GetLayerSide(i) != side) continue;
            if (found < 0 || side == BoardSide::Bottom) found = i;
        }
        return found;
    }

    // The nearest shown copper layer that the pad lies on, or -1.
    int PadLayer(const CPRefPin& pin) const {
        if (!m_view.componentsOn || !pin.GetComp()->IsPlaced()) return -1;
        for (int layer : m_copperNearToFar)
            if (m_board.IsPadOnLayer(pin, layer)) return layer;
        return -1;
    }

    int ViaLayer(const CPRouteDObj& via) const {
        if (!m_view.routesOn) return -1;
        for (int layer : m_copperNearToFar)
            if (via.IsOnLayer(layer)) return layer;
        return -1;
    }

    bool TrackShown(const CPRouteDObj& track) const { return m_view.routesOn && Shown(track.GetLayer()); }

    // ---- Geometry ----
    std::vector<PixelPoint> Ring(const CArrayPointD& points) const {
        std::vector<PixelPoint> ring;
        ring.reserve(static_cast<size_t>(points.GetSize()));
        for (INT_PTR i = 0; i < points.GetSize(); ++i) ring.push_back(m_t.ToPixel(points[i]));
        return ring;
    }

    bool NearPicture(const CPointD& centre, double reachMm) const {
        const PixelPoint p = m_t.ToPixel(centre);
        const double r = reachMm * m_t.Scale() + 1;
        return m_raster.Touches(p.x - r, p.y - r, p.x + r, p.y + r);
    }

    // ---- Drawing ----
    void DrawBoard() {
        if (m_board.GetOutline().GetSize() >= 3) m_raster.FillPolygon(Ring(m_board.GetOutline()), palette::kBoard);
    }

    void DrawArea(const CPArea& area, Rgb c) {
        std::vector<std::vector<PixelPoint>> rings{Ring(area.GetOutline())};
        for (int h = 0; h < area.GetHoleCount(); ++h) rings.push_back(Ring(*area.GetHole(h)));
        m_raster.FillPolygon(rings, Dim(c));
    }

    void DrawAreas() {
        for (int layer : m_farToNear) {
            if (!Shown(layer)) continue;
            for (int i = 0; i < m_board.GetAreaCount(); ++i) {
                const CPArea* area = m_board.GetArea(i);
                if (area->GetLayer() != layer) continue;
                const Rgb* marked = Marks::Find(m_marks.areas, area);
                DrawArea(*area, marked ? *marked : m_color[static_cast<size_t>(layer)]);
            }
        }
    }

    void DrawTrack(const CPRouteDObj& track, Rgb c) {
        const C2PointD& line = track.GetLine();
        const double halfWidth = track.GetWidth() / 2 * m_t.Scale();
        if (!track.IsArc()) {
            m_raster.FillCapsule(m_t.ToPixel(line.p1), m_t.ToPixel(line.p2), halfWidth, c);
            return;
        }
        // An arc is stroked as a chain of round-ended pieces, short enough that no piece
        // strays more than a quarter pixel from the arc.
        const CPointD& centre = track.GetCenter();
        const double radius = centre.Distance(line.p1);
        const CRectD box = track.GetBoundingRect();
        if (!NearPicture(box.Center(), std::max(box.Width(), box.Height()))) return;
        const double sweep = ArcSweep(centre, line.p1, line.p2, track.IsClockwise());
        const double radiusPixels = radius * m_t.Scale();
        const double step = radiusPixels > 0.25 ? 2 * std::acos(1 - 0.25 / radiusPixels) : kPi;
        const int pieces = std::min(std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / step))), 4096);
        const double start = std::atan2(line.p1.y - centre.y, line.p1.x - centre.x);
        PixelPoint from = m_t.ToPixel(line.p1);
        for (int k = 1; k <= pieces; ++k) {
            const double a = start + sweep * k / pieces;
            const PixelPoint to =
                k == pieces ? m_t.ToPixel(line.p2)
                            : m_t.ToPixel(CPointD(centre.x + radius * std::cos(a), centre.y + radius * std::sin(a)));
            m_raster.FillCapsule(from, to, halfWidth, c);
            from = to;
        }
    }

    void DrawVia(const CPRouteDObj& via, Rgb c) {
        if (!NearPicture(via.GetPosition(), via.GetWidth())) return;
        m_raster.FillCircle(m_t.ToPixel(via.GetPosition()), via.GetWidth() / 2 * m_t.Scale(), c);
    }

    void DrawPad(const CPRefPin& pin, Rgb c) {
        const CPointD& at = pin.GetPosition();
        const double sx = pin.GetSizeX(), sy = pin.GetSizeY();
        if (pin.GetShape() == PadShape::Polygon) {
            // The outline may lie off the pin's position: cull by its own extent.
            const CRectD box = pin.GetPadRect();
            if (!NearPicture(box.Center(), std::max(box.Width(), box.Height()))) return;
            std::vector<std::vector<PixelPoint>> rings;
            for (const CArrayPointD& contour : pin.GetPadOutline()) {
                std::vector<PixelPoint>& ring = rings.emplace_back();
                ring.reserve(static_cast<size_t>(contour.GetSize()));
                for (INT_PTR i = 0; i < contour.GetSize(); ++i) ring.push_back(m_t.ToPixel(at + contour[i]));
            }
            m_raster.FillPolygon(rings, c);
            return;
        }
        if (!NearPicture(at, std::max(sx, sy))) return;
        const double a = pin.GetPadAngle() * kPi / 180;
        const CPointD u(std::cos(a), std::sin(a)), v(-std::sin(a), std::cos(a));
        auto along = [&](double du, double dv) { return CPointD(at.x + du * u.x + dv * v.x, at.y + du * u.y + dv * v.y); };
        switch (pin.GetShape()) {
        case PadShape::Round:
            m_raster.FillCircle(m_t.ToPixel(at), sx / 2 * m_t.Scale(), c);
            break;
        case PadShape::Rect: {
            const std::vector<PixelPoint> corners{
                m_t.ToPixel(along(-sx / 2, -sy / 2)), m_t.ToPixel(along(sx / 2, -sy / 2)),
                m_t.ToPixel(along(sx / 2, sy / 2)), m_t.ToPixel(along(-sx / 2, sy / 2))};
            m_raster.FillPolygon(corners, c);
            break;
        }
        case PadShape::Oblong:
            if (sx >= sy)
                m_raster.FillCapsule(m_t.ToPixel(along(-(sx - sy) / 2, 0)), m_t.ToPixel(along((sx - sy) / 2, 0)),
                                     sy / 2 * m_t.Scale(), c);
            else
                m_raster.FillCapsule(m_t.ToPixel(along(0, -(sy - sx) / 2)), m_t.ToPixel(along(0, (sy - sx) / 2)),
                                     sx / 2 * m_t.Scale(), c);
            break;
        case PadShape::Polygon:
            break;  // drawn above
        }
    }

    void KeepHole(const CPointD& at, double drill) {
        const double r = drill / 2 * m_t.Scale();
        if (r >= 1) m_holes.emplace_back(m_t.ToPixel(at), r);  // a hole under a pixel would hide its pad
    }

    // Tracks, then pads and vias, layer by layer from the farthest; pads and vias on
    // several layers are drawn on the nearest shown one.
    void DrawCopper() {
        std::unordered_map<int, std::vector<const CPRefPin*>> padsOf;
        std::unordered_map<int, std::vector<const CPRouteDObj*>> viasOf;
        for (int i = 0; i < m_board.GetCompCount(); ++i) {
            const CPComp* comp = m_board.GetComp(i);
            for (int k = 0; k < comp->GetPinCount(); ++k) {
                const CPRefPin* pin = comp->GetPin(k);
                const int layer = PadLayer(*pin);
                if (layer >= 0) padsOf[layer].push_back(pin);
            }
        }
        for (int n = 0; n < m_board.GetNetCount(); ++n) {
            const CPRouteNet& route = m_board.GetNet(n)->GetRoute();
            for (int i = 0; i < route.GetCount(); ++i) {
                const CPRouteDObj* object = route.GetAt(i);
                if (!object->IsVia()) continue;
                const int layer = ViaLayer(*object);
                if (layer >= 0) viasOf[layer].push_back(object);
            }
        }
        for (auto layer = m_copperNearToFar.rbegin(); layer != m_copperNearToFar.rend(); ++layer) {
            const Rgb c = m_color[static_cast<size_t>(*layer)];
            if (m_view.routesOn) {
                for (int n = 0; n < m_board.GetNetCount(); ++n) {
                    const CPRouteNet& route = m_board.GetNet(n)->GetRoute();
                    for (int i = 0; i < route.GetCount(); ++i) {
                        const CPRouteDObj* object = route.GetAt(i);
                        if (!object->IsVia() && object->GetLayer() == *layer && !Marks::Find(m_marks.routes, object))
                            DrawTrack(*object, c);
                    }
                }
            }
            for (const CPRouteDObj* via : viasOf[*layer]) {
                if (Marks::Find(m_marks.routes, via)) continue;
                DrawVia(*via, c);
                KeepHole(via->GetPosition(), via->GetDrill());
            }
            for (const CPRefPin* pin : padsOf[*layer]) {
                if (Marks::Find(m_marks.pads, pin)) continue;
                DrawPad(*pin, c);
                if (pin->IsThroughHole()) KeepHole(pin->GetPosition(), pin->GetDrill());
            }
        }
    }

    void DrawHoles() {
        for (const auto& [centre, radius] : m_holes) m_raster.FillCircle(centre, radius, palette::kDrill);
    }

    // Text from its anchor (the left end of its base line), turned by rotation degrees.
    // Mirrored text runs from its anchor the other way, each glyph flipped, as a text
    // on the far side of the board is seen through it.
    void DrawText(const std::string& text, const CPointD& anchor, double height, double rotation, Rgb c,
                  bool mirrored = false) {
        if (text.empty() || !(height * m_t.Scale() >= kSmallestTextPixels)) return;
        const double length = height * (kGlyphAdvance * static_cast<double>(text.size()));
        if (!NearPicture(anchor, length + height)) return;
        const double a = rotation * kPi / 180, cs = std::cos(a), sn = std::sin(a);
        const double unit = height * kGlyphUnit;
        const double halfStroke = std::max(height * kGlyphStroke * m_t.Scale() / 2, 0.0);
        for (size_t k = 0; k < text.size(); ++k) {
            const double origin = static_cast<double>(k) * kGlyphAdvance * height;
            for (const std::vector<GlyphPoint>& stroke : Glyph(text[k])) {
                std::vector<PixelPoint> points;
                for (const GlyphPoint& g : stroke) {
                    const double x = (mirrored ? -1 : 1) * (origin + g.x * unit), y = g.y * unit;
                    points.push_back(m_t.ToPixel(CPointD(anchor.x + x * cs - y * sn, anchor.y + x * sn + y * cs)));
                }
                if (points.size() == 1) points.push_back(points[0]);
                for (size_t i = 0; i + 1 < points.size(); ++i) m_raster.FillCapsule(points[i], points[i + 1], halfStroke, c);
            }
        }
    }

    void DrawTexts() {
        for (int layer : m_farToNear) {
            if (!Shown(layer)) continue;
            for (int i = 0; i < m_board.GetTextCount(); ++i) {
                const CPText* text = m_board.GetText(i);
                if (text->GetLayer() == layer)
                    DrawText(text->GetText().str(), text->GetPosition(), text->GetHeight(), text->GetRotation(),
                             m_color[static_cast<size_t>(layer)]);
            }
        }
    }

    // A component's body: a box around its pads with its reference inside, on the silk
    // of its side. Without a silk layer on that side it is drawn in the side's silk
    // colour whenever that side is viewed.
    bool BodyShown(const CPComp& comp, Rgb& c) const {
        if (!m_view.componentsOn || !comp.IsPlaced()) return false;
        const bool top = comp.GetSide() == CompSide::Top;
        const int silk = top ? m_silkTop : m_silkBottom;
        if (silk >= 0) {
            c = m_color[static_cast<size_t>(silk)];
            return Shown(silk);
        }
        c = top ? palette::kSilkTop : palette::kSilkBottom;
        return m_view.side == Side::All || (m_view.side == Side::Top) == top;
    }

    void DrawBody(const CPComp& comp, Rgb c) {
        CRectD box = comp.GetBoundingRect();
        if (box.IsEmpty()) {
            box = CRectD(comp.GetPosition().x, comp.GetPosition().y, comp.GetPosition().x, comp.GetPosition().y);
            box.Inflate(kBodyWithoutPins);
        } else {
            box.Inflate(kBodyMargin);
        }
        if (!NearPicture(box.Center(), std::max(box.Width(), box.Height()))) return;
        m_raster.Outline({m_t.ToPixel(CPointD(box.minX, box.minY)), m_t.ToPixel(CPointD(box.maxX, box.minY)),
                          m_t.ToPixel(CPointD(box.maxX, box.maxY)), m_t.ToPixel(CPointD(box.minX, box.maxY))},
                         c);
        // The reference runs along the longer side, centred, as large as fits.
        const std::string reference = comp.GetReference().str();
        if (reference.empty()) return;
        const bool upright = box.Height() > box.Width();
        const double along = upright ? box.Height() : box.Width(), across = upright ? box.Width() : box.Height();
        const double glyphs = kGlyphAdvance * static_cast<double>(reference.size() - 1) + 4 * kGlyphUnit;
        const double height = std::min({kReferenceHeight, 0.6 * across, 0.9 * along / glyphs});
        const double half = glyphs * height / 2;
        const CPointD mid = box.Center();
        const double from = comp.IsMirrored() ? half : -half;  // mirrored text runs back from its anchor
        const CPointD anchor =
            upright ? CPointD(mid.x + height / 2, mid.y + from) : CPointD(mid.x + from, mid.y - height / 2);
        DrawText(reference, anchor, height, upright ? 90 : 0, c, comp.IsMirrored());
    }

    void DrawBodies(bool marked) {
        for (int i = 0; i < m_board.GetCompCount(); ++i) {
            const CPComp* comp = m_board.GetComp(i);
            Rgb c;
            if (!BodyShown(*comp, c)) continue;
            const Rgb* mark = Marks::Find(m_marks.bodies, comp);
            if (marked != (mark != nullptr)) continue;
            DrawBody(*comp, mark ? *mark : c);
        }
    }

    // Highlighted tracks, vias, pads and bodies over everything else; highlighted
    // areas took their colour in their place among the areas.
    void DrawHighlights() {
        for (const auto& [object, c] : m_marks.routes) {
            if (object->IsVia()) continue;
            if (TrackShown(*object)) DrawTrack(*object, c);
        }
        for (const auto& [object, c] : m_marks.routes)
            if (object->IsVia() && ViaLayer(*object) >= 0) DrawVia(*object, c);
        for (const auto& [pin, c] : m_marks.pads)
            if (PadLayer(*pin) >= 0) DrawPad(*pin, c);
        DrawBodies(true);
    }

    // The result of the last polygon merge, while its session lasts: each outline
    // filled with its holes open, then the outline and the holes traced.
    void DrawMerge() {
        if (!m_view.merge.ran) return;
        auto ring = [&](const CArrayD& xs, const CArrayD& ys) {
            std::vector<PixelPoint> out;
            out.reserve(static_cast<size_t>(xs.GetSize()));
            for (INT_PTR i = 0; i < xs.GetSize() && i < ys.GetSize(); ++i)
                out.push_back(m_t.ToPixel(CPointD(xs[i], ys[i])));
            return out;
        };
        for (const MergeSession::Outline& outline : m_view.merge.outlines) {
            std::vector<std::vector<PixelPoint>> rings{ring(outline.xs, outline.ys)};
            for (size_t h = 0; h < outline.holeXs.size() && h < outline.holeYs.size(); ++h)
                rings.push_back(ring(outline.holeXs[h], outline.holeYs[h]));
            m_raster.FillPolygon(rings, palette::kMergeFill);
            m_raster.Outline(rings[0], palette::kMergeOutline);
            for (size_t h = 1; h < rings.size(); ++h) m_raster.Outline(rings[h], palette::kMergeHole);
        }
    }

    const CPdb& m_board;
    const ViewState& m_view;
    const CPDBLayerManager& m_layers;
    ViewTransform m_t;
    Bitmap m_picture;
    Raster m_raster;
    Marks m_marks;
    std::vector<bool> m_shown;
    std::vector<Rgb> m_color;
    std::vector<int> m_farToNear;
    std::vector<int> m_copperNearToFar;
    int m_silkTop = -1, m_silkBottom = -1;
    std::vector<std::pair<PixelPoint, double>> m_holes;
};

}  // namespace

Rgb LayerColor(const CPDBLayerManager& layers, int index) {
    const CPLay* layer = layers.GetLayer(index);
    if (!layer) return palette::kOther;
    const BoardSide side = layers.GetLayerSide(index);
    switch (layer->GetKind()) {
    case LayerKind::Copper: {
        if (index == layers.GetTopCopperIndex()) return palette::kCopperTop;
        if (index == layers.GetBottomCopperIndex()) return palette::kCopperBottom;
        int inner = 0;  // position among the inner copper layers, from the top
        for (int i = layers.GetTopCopperIndex() + 1; i < index; ++i) inner += layers.IsCopperLayer(i) ? 1 : 0;
        return palette::kCopperInner[inner % 4];
    }
    case LayerKind::Silk:
        return side == BoardSide::Top ? palette::kSilkTop : side == BoardSide::Bottom ? palette::kSilkBottom : palette::kSilkOther;
    case LayerKind::Mask:
        return side == BoardSide::Top ? palette::kMaskTop : side == BoardSide::Bottom ? palette::kMaskBottom : palette::kMaskOther;
    case LayerKind::Paste:
        return side == BoardSide::Top ? palette::kPasteTop : side == BoardSide::Bottom ? palette::kPasteBottom : palette::kPasteOther;
    case LayerKind::Drill:
        return palette::kDrillLayer;
    case LayerKind::Document:
        return palette::kDocument;
    case LayerKind::Other:
        break;
    }
    return palette::kOther;
}

ViewTransform::ViewTransform(const CPdb& board, const ViewState& view)
    : m_width(ClampSide(view.window.width)), m_height(ClampSide(view.window.height)) {
    const double turn = Finite(view.rotation) * kPi / 180;
    const double m = view.mirrored ? -1 : 1;
    m_a = m * std::cos(turn);
    m_b = -std::sin(turn);
    m_c = m * std::sin(turn);
    m_d = std::cos(turn);

    // The scale at which a rectangle's turned box just fills the picture (0: no extent).
    auto filling = [&](const CRectD& r) {
        double w = 0, h = 0;
        TurnedExtent(r, w, h);
        if (w <= 0 && h <= 0) return 0.0;
        if (w <= 0) return m_height / h;
        if (h <= 0) return m_width / w;
        return std::min(m_width / w, m_height / h);
    };
    const CRectD bounds = board.GetBoundingRect();
    const double fit = bounds.IsEmpty() ? 0 : filling(bounds) * (1 - 2 * kFitMargin);
    m_centre = bounds.IsEmpty() ? CPointD() : bounds.Center();
    m_scale = fit > 0 ? fit : 1;

    const bool areaUsable = view.hasZoomArea && std::isfinite(view.area[0]) && std::isfinite(view.area[1]) &&
                            std::isfinite(view.area[2]) && std::isfinite(view.area[3]);
    if (areaUsable) {
        const CRectD area(std::min(view.area[0], view.area[2]), std::min(view.area[1], view.area[3]),
                          std::max(view.area[0], view.area[2]), std::max(view.area[1], view.area[3]));
        m_centre = area.Center();
        const double s = filling(area);
        if (s > 0) m_scale = s;
    }
    const int steps = std::min(std::max(view.zoomSteps, -kMaxZoomSteps), kMaxZoomSteps);
    m_scale *= std::pow(kZoomStepFactor, steps);
}

void ViewTransform::TurnedExtent(const CRectD& r, double& w, double& h) const {
    const double hw = r.Width() / 2, hh = r.Height() / 2;
    // The box of the four corners about the centre: symmetric, so twice the largest reach.
    w = 2 * (std::fabs(m_a) * hw + std::fabs(m_b) * hh);
    h = 2 * (std::fabs(m_c) * hw + std::fabs(m_d) * hh);
}

Bitmap RenderView(const CPdb& board, const ViewState& view) { return Renderer(board, view).Run(); }

}  // namespace viewer
