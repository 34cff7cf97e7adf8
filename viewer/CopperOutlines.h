// The outlines of copper shapes as integer contours for the Clipper library, which
// unites them (CopperMerge). One unit is 10 picometres: board millimetres times
// kUnitsPerMillimetre, rounded, so a corner moves by at most 5 picometres and the
// area of a 0.2 mm dot by less than a millionth of itself. Clipper works in 64-bit
// integers, with 128-bit products once a coordinate passes 2^30 units (10.7 mm); the
// limit of a coordinate is then 2^62 units, far beyond any board.
//
// Every contour is added with a winding of +1 for copper (counter-clockwise, y
// upwards) and -1 for a hole in it (clockwise), so that the union is the region of
// positive winding: a hole stays open unless other copper covers it, and a hole
// that reaches past its outline cuts nothing outside it.
//
// Round outlines (round pads, vias, track ends, oblong ends, arcs) become polygons
// whose corners lie on the circle; a full circle has `segments` corners, the first
// at angle 0.
#pragma once

#include <clipper.hpp>

#include "CPdb.h"

namespace viewer {

constexpr double kUnitsPerMillimetre = 1e8;

class CopperOutlines {
public:
    explicit CopperOutlines(int segmentsPerCircle) : m_segments(segmentsPerCircle) {}

    void Circle(const CPointD& centre, double radius);
    // Every point within radius of the segment a-b.
    void Capsule(const CPointD& a, const CPointD& b, double radius);
    // The pad of a pin, of any shape.
    void Pad(const CPRefPin& pin);
    // A track segment or arc with its width and round ends, or a via's pad.
    void Route(const CPRouteDObj& object);
    // An area and its holes; false, and nothing added, when one of its contours
    // crosses itself.
    bool Area(const CPArea& area);

    // The contours added so far, and how many shapes they make.
    ClipperLib::Paths& Paths() { return m_paths; }
    int ShapeCount() const { return m_shapes; }

private:
    ClipperLib::IntPoint At(double x, double y) const;
    void Rect(const CPointD& centre, double w, double h, double angle);
    void Oblong(const CPointD& centre, double w, double h, double angle);
    void Arc(const CPRouteDObj& arc);
    void PolygonPad(const CPRefPin& pin);
    // Appends the corners of a circle's arc from angle `from` through `sweep`
    // (radians, negative for clockwise), both ends included.
    void ArcCorners(ClipperLib::Path& path, const CPointD& centre, double radius, double from, double sweep) const;
    void Add(ClipperLib::Path path);

    int m_segments;
    int m_shapes = 0;
    ClipperLib::Paths m_paths;
};

}  // namespace viewer
