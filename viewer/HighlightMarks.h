// What the highlights mark on the board: every object a highlight request covers,
// with the colour it is drawn in, and the extent a zooming highlight brings into view.
// docs/rendering.md describes which objects each kind of highlight covers.
#pragma once

#include <set>
#include <string>
#include <unordered_map>

#include "Bitmap.h"
#include "CPdb.h"
#include "ViewerState.h"

namespace viewer {

// Whether the layer is one of the names, by its viewer name or its ECAD name.
bool NamesLayer(const std::set<std::string>& names, const CPLay& layer);

// Everything highlighted, with the colour each object is drawn in.
struct Marks {
    std::unordered_map<const CPRefPin*, Rgb> pads;
    std::unordered_map<const CPRouteDObj*, Rgb> routes;
    std::unordered_map<const CPArea*, Rgb> areas;
    std::unordered_map<const CPComp*, Rgb> bodies;

    template <class Map, class Key>
    static const Rgb* Find(const Map& map, Key key) {
        if (map.empty()) return nullptr;
        const auto found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    }
};

// Adds the objects of one highlight to marks (a later highlight recolours an object).
void CollectMarks(const CPdb& board, const Highlight& highlight, Marks& marks);

// The box of the copper that the highlight marks: pads, tracks and vias, areas, and
// component bodies as their pads' box. Empty when it marks nothing.
CRectD MarkedExtent(const CPdb& board, const Highlight& highlight);

// The zoom area that brings the box into view: the box with a margin on every side of
// a quarter of its longer side, at least kZoomToMargin millimetres.
constexpr double kZoomToMargin = 1.0;
CRectD ZoomAreaAround(const CRectD& box);

}  // namespace viewer
