#include "CopperMerge.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <set>
#include <stdexcept>

#include "CopperOutlines.h"

namespace viewer {
namespace {

std::vector<CPointD> Ring(const ClipperLib::Path& path) {
    std::vector<CPointD> out;
    out.reserve(path.size());
    for (const ClipperLib::IntPoint& p : path)
        out.emplace_back(p.X / kUnitsPerMillimetre, p.Y / kUnitsPerMillimetre);
    return out;
}

struct Box {
    ClipperLib::cInt minX, minY, maxX, maxY;
    bool Holds(const Box& o) const { return minX <= o.minX && minY <= o.minY && maxX >= o.maxX && maxY >= o.maxY; }
};

Box BoxOf(const ClipperLib::Path& path) {
    Box b{path[0].X, path[0].Y, path[0].X, path[0].Y};
    for (const ClipperLib::IntPoint& p : path) {
        b.minX = std::min(b.minX, p.X);
        b.minY = std::min(b.minY, p.Y);
        b.maxX = std::max(b.maxX, p.X);
        b.maxY = std::max(b.maxY, p.Y);
    }
    return b;
}

// 1 when the hole lies inside the outline, 0 when outside; a hole touches its
// outline at corners at most, so one corner off the outline decides.
int HoleInside(const ClipperLib::Path& hole, const ClipperLib::Path& outline) {
    for (const ClipperLib::IntPoint& p : hole) {
        const int inside = ClipperLib::PointInPolygon(p, outline);
        if (inside >= 0) return inside;
    }
    return 0;
}

// Gives each hole of the union to its outline: the smallest outline around it.
// Clipper could nest them itself (its PolyTree), but does so in time that grows
// with the square of the number of holes; this costs a box test per outline and
// hole, and a point test only where boxes nest.
std::vector<CopperPolygon> Nest(const ClipperLib::Paths& rings) {
    std::vector<size_t> outlines, holes;
    std::vector<Box> boxes;
    std::vector<double> areas;
    for (size_t i = 0; i < rings.size(); ++i) {
        boxes.push_back(BoxOf(rings[i]));
        areas.push_back(std::fabs(ClipperLib::Area(rings[i])));
        (ClipperLib::Orientation(rings[i]) ? holes : outlines).push_back(i);
    }
    // Smallest first, so that the first outline found around a hole is its own.
    std::sort(outlines.begin(), outlines.end(), [&](size_t a, size_t b) { return areas[a] < areas[b]; });
    std::vector<CopperPolygon> polygons(outlines.size());
    for (size_t i = 0; i < outlines.size(); ++i) polygons[i].outline = Ring(rings[outlines[i]]);
    for (size_t hole : holes) {
        size_t owner = outlines.size(), candidates = 0;
        for (size_t i = 0; i < outlines.size(); ++i) {
            if (!boxes[outlines[i]].Holds(boxes[hole])) continue;
            ++candidates;
            if (owner == outlines.size()) owner = i;
        }
        if (candidates > 1) {
            owner = outlines.size();
            for (size_t i = 0; i < outlines.size() && owner == outlines.size(); ++i)
                if (boxes[outlines[i]].Holds(boxes[hole]) && HoleInside(rings[hole], rings[outlines[i]])) owner = i;
        }
        if (owner < outlines.size()) polygons[owner].holes.push_back(Ring(rings[hole]));
    }
    return polygons;
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

    ClipperLib::Paths united;
    try {
        CopperOutlines shapes(SegmentsPerCircle(division));
        for (int i = 0; i < net->GetPinCount(); ++i) {
            const CPRefPin& pin = *net->GetPin(i);
            if (onAnyLayer([&](int layer) { return pdb.IsPadOnLayer(pin, layer); })) shapes.Pad(pin);
        }
        const CPRouteNet& route = net->GetRoute();
        for (int i = 0; i < route.GetCount(); ++i) {
            const CPRouteDObj& object = *route.GetAt(i);
            if (onAnyLayer([&](int layer) { return object.IsOnLayer(layer); })) shapes.Route(object);
        }
        for (INT_PTR i = 0; i < net->GetAreas().GetSize(); ++i) {
            const CPArea& area = *net->GetAreas().GetAt(i);
            if (layers.count(area.GetLayer()) && !shapes.Area(area)) ++result.skippedAreas;
        }
        result.shapes = shapes.ShapeCount();

        // All shapes in one union; the solution reversed gives clockwise outlines.
        ClipperLib::Clipper clipper;
        clipper.ReverseSolution(true);
        clipper.AddPaths(shapes.Paths(), ClipperLib::ptSubject, true);
        // Clipper reports an empty input as a failure.
        if (!shapes.Paths().empty() &&
            !clipper.Execute(ClipperLib::ctUnion, united, ClipperLib::pftPositive, ClipperLib::pftPositive))
            throw std::runtime_error("union refused");
    } catch (const std::exception&) {
        result.error = CopperMergeResult::kNotMerged;
        result.shapes = 0;
        return result;
    }
    result.polygons = Nest(united);
    for (CopperPolygon& piece : result.polygons) std::sort(piece.holes.begin(), piece.holes.end(), LowerLeftFirst);
    std::sort(result.polygons.begin(), result.polygons.end(),
              [](const CopperPolygon& a, const CopperPolygon& b) { return LowerLeftFirst(a.outline, b.outline); });
    return result;
}

}  // namespace viewer
