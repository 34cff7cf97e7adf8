// Geometry helpers of the ODB++ reader: arcs broken into points, and the placement of
// a shape by the format's rule (mirror in x first, then rotate clockwise).
#pragma once

#include "PdbGeometry.h"

namespace odb {

// The largest distance, in millimetres, between an arc and the chords that stand in for it.
constexpr double kArcTolerance = 0.002;

// Appends the points of the arc from start to end about center (start itself is not
// appended, end is). Equal start and end make a full circle.
void AppendArc(CArrayPointD& points, const CPointD& start, const CPointD& end, const CPointD& center, bool clockwise);

// A circle of that radius about center, counter-clockwise.
CArrayPointD Circle(const CPointD& center, double radius);

// p mirrored in x when mirror, then rotated clockwise by angle degrees.
CPointD Place(const CPointD& p, double angleCW, bool mirror);

}  // namespace odb
