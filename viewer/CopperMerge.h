// The copper of one net on a set of layers, united into polygons with holes.
//
// What counts as the net's copper on a layer: the pads of its pins that lie on the
// layer (through-hole pads on every copper layer, others on the outer layer of their
// component's side, none of an unplaced component; polygon pads with their holes),
// its tracks and track arcs on the layer with their width and round ends, its vias that reach the layer, and its copper areas on
// the layer with their holes. Drill holes are not cut out: the result is the extent
// of the copper. The shapes of all the named layers are united into one result, as
// seen from above.
//
// Round outlines (round pads, vias, the ends of tracks and oblong pads, arcs) become
// polygons whose corners lie on the circle; a full circle has SegmentsPerCircle
// corners. All shapes are united in one operation of the Clipper library, on a grid
// of 10 picometres (CopperOutlines.h): corners come back within 5 picometres.
#pragma once

#include <string>
#include <vector>

#include "CPdb.h"

namespace viewer {

// One piece of merged copper: a clockwise outline (y upwards) and the
// counter-clockwise holes inside it. Rings are open: the first point is not repeated
// at the end.
struct CopperPolygon {
    std::vector<CPointD> outline;
    std::vector<std::vector<CPointD>> holes;
};

struct CopperMergeResult {
    enum { kUnknownNet = -201, kNoCopperLayer = -202, kNotMerged = -203 };
    int error = 0;
    // Ordered by the lower left corner of their extent: smallest x first, then
    // smallest y; the holes of each the same way.
    std::vector<CopperPolygon> polygons;
    int layers = 0;         // copper layers merged
    int shapes = 0;         // shapes united
    int skippedAreas = 0;   // areas whose outline crosses itself: left out
};

constexpr int kDefaultSegmentsPerCircle = 32;
constexpr int kMinSegmentsPerCircle = 8;
constexpr int kMaxSegmentsPerCircle = 1024;

// Division is the number of segments of a full circle, rounded to a whole number
// and held within kMinSegmentsPerCircle..kMaxSegmentsPerCircle; 0, a negative value
// or not-a-number gives kDefaultSegmentsPerCircle.
int SegmentsPerCircle(double division);

// Index of a layer named by its viewer name or, failing that, by its ECAD name (the
// upper layer of that ECAD name); -1 when neither.
int FindLayerByEitherName(const CPdb& pdb, const std::string& name);

// The merge. error: kNoCopperLayer when no name in layers is a copper layer of the
// board (checked first), kUnknownNet for a net that is not on the board, kNotMerged
// when a coordinate is out of range or the union fails; polygons are then empty. A net
// without copper on those layers gives no polygon and error 0.
CopperMergeResult MergeNetCopper(const CPdb& pdb, const std::string& net, const std::vector<std::string>& layers,
                                 double division);

}  // namespace viewer
