#include "CopperMerge.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <set>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

namespace viewer {
namespace {

namespace bg = boost::geometry;
using Point = bg::model::d2::point_xy<double>;
using Polygon = bg::model::polygon<Point>;  // clockwise outer ring, closed
using Ring = Polygon::ring_type;
using MultiPolygon = bg::model::multi_polygon<Polygon>;
using Box = bg::model::box<Point>;

constexpr double kPi = 3.14159265358979323846;

// Shapes are built counter-clockwise, then corrected to the library's orientation.
class ShapeBuilder {
public:
    explicit ShapeBuilder(int segmentsPerCircle) : m_segments(segmentsPerCircle) {}

    void Circle(const CPointD& c, double radius) {
        if (!(radius > 0)) return;
        Ring ring;
        for (int k = 0; k < m_segments; ++k) {
            const double a = 2 * kPi * k / m_segments;
            ring.push_back(Point(c.x + radius * std::cos(a), c.y + radius * std::sin(a)));
        }
        Add(std::move(ring));
    }

    // A track: every point within radius of the segment a-b.
    void Capsule(const CPointD& a, const CPointD& b, double radius) {
        if (!(radius > 0)) return;
        const double length = a.Distance(b);
        if (length < 1e-9) return Circle(a, radius);
        const double along = std::atan2(b.y - a.y, b.x - a.x);
        const int half = std::max(2, (m_segments + 1) / 2);
        Ring ring;
        for (int end = 0; end < 2; ++end) {
            const CPointD& c = end == 0 ? b : a;
            const double start = along - kPi / 2 + end * kPi;
            for (int i = 0; i <= half; ++i) {
                const double t = start + kPi * i / half;
                ring.push_back(Point(c.x + radius * std::cos(t), c.y + radius * std::sin(t)));
            }
        }
        Add(std::move(ring));
    }

    void Rect(const CPointD& c, double w, double h, double angle) {
        if (!(w > 0 && h > 0)) return;
        const double a = angle * kPi / 180, cs = std::cos(a), sn = std::sin(a);
        const double corners[4][2] = {{-w / 2, -h / 2}, {w / 2, -h / 2}, {w / 2, h / 2}, {-w / 2, h / 2}};
        Ring ring;
        for (const auto& k : corners) ring.push_back(Point(c.x + k[0] * cs - k[1] * sn, c.y + k[0] * sn + k[1] * cs));
        Add(std::move(ring));
    }

    // SizeX along the pad's angle, SizeY across; the short ends are half circles.
    void Oblong(const CPointD& c, double w, double h, double angle) {
        if (!(w > 0 && h > 0)) return;
        const double a = angle * kPi / 180;
        CPointD axis(std::cos(a), std::sin(a));
        double offset = (w - h) / 2;
        if (w < h) {
            axis = CPointD(-axis.y, axis.x);
            offset = (h - w) / 2;
        }
        const CPointD d(axis.x * offset, axis.y * offset);
        Capsule(c - d, c + d, std::min(w, h) / 2);
    }

    void Pad(const CPRefPin& pin) {
        switch (pin.GetShape()) {
        case PadShape::Round:
            return Circle(pin.GetPosition(), pin.GetSizeX() / 2);
        case PadShape::Rect:
            return Rect(pin.GetPosition(), pin.GetSizeX(), pin.GetSizeY(), pin.GetPadAngle());
        case PadShape::Oblong:
            return Oblong(pin.GetPosition(), pin.GetSizeX(), pin.GetSizeY(), pin.GetPadAngle());
        }
    }

    // false when the area's outline or holes cross themselves: it is left out.
    bool Area(const CPArea& area) {
        Polygon polygon;
        for (const CPointD& p : Points(area.GetOutline())) polygon.outer().push_back(Point(p.x, p.y));
        if (polygon.outer().size() < 3) return true;
        for (int i = 0; i < area.GetHoleCount(); ++i) {
            const std::vector<CPointD> hole = Points(*area.GetHole(i));
            if (hole.size() < 3) continue;
            polygon.inners().emplace_back();
            for (const CPointD& p : hole) polygon.inners().back().push_back(Point(p.x, p.y));
        }
        bg::correct(polygon);
        if (!bg::is_valid(polygon)) return false;
        Keep(std::move(polygon));
        return true;
    }

    std::vector<MultiPolygon>& Shapes() { return m_shapes; }

private:
    static std::vector<CPointD> Points(const CArrayPointD& points) {
        std::vector<CPointD> out;
        for (INT_PTR i = 0; i < points.GetSize(); ++i) out.push_back(points[i]);
        return out;
    }

    void Add(Ring ring) {
        Polygon polygon;
        polygon.outer() = std::move(ring);
        bg::correct(polygon);
        Keep(std::move(polygon));
    }

    void Keep(Polygon polygon) {
        m_shapes.emplace_back();
        m_shapes.back().push_back(std::move(polygon));
    }

    int m_segments;
    std::vector<MultiPolygon> m_shapes;
};

// Unites the shapes pairwise, neighbours first, so that each union stays small.
MultiPolygon Unite(std::vector<MultiPolygon> shapes) {
    if (shapes.empty()) return MultiPolygon();
    std::vector<std::pair<double, size_t>> order;
    for (size_t i = 0; i < shapes.size(); ++i) {
        const Box box = bg::return_envelope<Box>(shapes[i]);
        order.emplace_back(box.min_corner().x() + box.max_corner().x(), i);
    }
    std::sort(order.begin(), order.end());
    std::vector<MultiPolygon> level;
    level.reserve(shapes.size());
    for (const auto& o : order) level.push_back(std::move(shapes[o.second]));
    while (level.size() > 1) {
        std::vector<MultiPolygon> next;
        next.reserve(level.size() / 2 + 1);
        for (size_t i = 0; i < level.size(); i += 2) {
            if (i + 1 == level.size()) {
                next.push_back(std::move(level[i]));
                continue;
            }
            MultiPolygon united;
            bg::union_(level[i], level[i + 1], united);
            next.push_back(std::move(united));
        }
        level.swap(next);
    }
    return std::move(level.front());
}

std::vector<CPointD> OpenRing(const Ring& ring) {
    std::vector<CPointD> out;
    for (const Point& p : ring) out.emplace_back(p.x(), p.y());
    if (out.size() > 1 && out.front() == out.back()) out.pop_back();
    return out;
}

bool LowerLeftFirst(const std::vector<CPointD>& a, const std::vector<CPointD>& b) {
    auto corner = [](const std::vector<CPointD>& ring) {
        CPointD low(ring.empty() ? 0 : ring[0].x, ring.empty() ? 0 : ring[0].y);
        for (const CPointD& p : ring) {
            low.x = std::min(low.x, p.x);
            low.y = std::min(low.y, p.y);
        }
        return low;
    };
    const CPointD ca = corner(a), cb = corner(b);
    return ca.x != cb.x ? ca.x < cb.x : ca.y < cb.y;
}

}  // namespace

int SegmentsPerCircle(double division) {
    if (!(division > 0)) return kDefaultSegmentsPerCircle;
    if (division >= kMaxSegmentsPerCircle) return kMaxSegmentsPerCircle;
    return std::max(kMinSegmentsPerCircle, static_cast<int>(std::lround(division)));
}

int FindLayerByEitherName(const CPdb& pdb, const std::string& name) {
    const CPDBLayerManager& layers = pdb.GetLayerManager();
    const int index = layers.FindLayerIndex(CString(name.c_str()));
    if (index >= 0) return index;
    const CPLay* byEcad = layers.FindLayerByEcadName(CString(name.c_str()));
    return byEcad ? byEcad->GetIndex() : -1;
}

CopperMergeResult MergeNetCopper(const CPdb& pdb, const std::string& netName,
                                 const std::vector<std::string>& layerNames, double division) {
    CopperMergeResult result;
    std::set<int> layers;
    for (const std::string& name : layerNames) {
        const int index = FindLayerByEitherName(pdb, name);
        if (pdb.GetLayerManager().IsCopperLayer(index)) layers.insert(index);
    }
    if (layers.empty()) {
        result.error = CopperMergeResult::kNoCopperLayer;
        return result;
    }
    const CPNet* net = pdb.FindNet(CString(netName.c_str()));
    if (!net) {
        result.error = CopperMergeResult::kUnknownNet;
        return result;
    }
    result.layers = static_cast<int>(layers.size());
    auto onAnyLayer = [&](auto&& test) {
        for (int layer : layers)
            if (test(layer)) return true;
        return false;
    };

    ShapeBuilder shapes(SegmentsPerCircle(division));
    for (int i = 0; i < net->GetPinCount(); ++i) {
        const CPRefPin& pin = *net->GetPin(i);
        if (onAnyLayer([&](int layer) { return pdb.IsPadOnLayer(pin, layer); })) shapes.Pad(pin);
    }
    const CPRouteNet& route = net->GetRoute();
    for (int i = 0; i < route.GetCount(); ++i) {
        const CPRouteDObj& object = *route.GetAt(i);
        if (!onAnyLayer([&](int layer) { return object.IsOnLayer(layer); })) continue;
        if (object.IsVia())
            shapes.Circle(object.GetPosition(), object.GetWidth() / 2);
        else
            shapes.Capsule(object.GetLine().p1, object.GetLine().p2, object.GetWidth() / 2);
    }
    for (INT_PTR i = 0; i < net->GetAreas().GetSize(); ++i) {
        const CPArea& area = *net->GetAreas().GetAt(i);
        if (layers.count(area.GetLayer()) && !shapes.Area(area)) ++result.skippedAreas;
    }
    result.shapes = static_cast<int>(shapes.Shapes().size());

    MultiPolygon united;
    try {
        united = Unite(std::move(shapes.Shapes()));
    } catch (const std::exception&) {
        result.error = CopperMergeResult::kNotMerged;
        return result;
    }
    for (const Polygon& polygon : united) {
        CopperPolygon piece;
        piece.outline = OpenRing(polygon.outer());
        for (const Ring& inner : polygon.inners()) piece.holes.push_back(OpenRing(inner));
        std::sort(piece.holes.begin(), piece.holes.end(), LowerLeftFirst);
        result.polygons.push_back(std::move(piece));
    }
    std::sort(result.polygons.begin(), result.polygons.end(),
              [](const CopperPolygon& a, const CopperPolygon& b) { return LowerLeftFirst(a.outline, b.outline); });
    return result;
}

}  // namespace viewer
