// The plane geometry of IPC-2581 shapes: placements, arcs and the outlines of the
// standard primitives, in millimetres.
#pragma once

#include "PdbGeometry.h"
#include "PdbObjects.h"

// A placement: the point is scaled, mirrored in the y axis, rotated counter-clockwise
// by rotation degrees, then moved by offset.
struct Xform {
    double rotation = 0;
    bool mirror = false;
    double scale = 1;
    CPointD offset;
};
CPointD ApplyXform(const Xform& xform, const CPointD& point);
// The placement of inner then outer: outer applied after inner.
Xform Compose(const Xform& outer, const Xform& inner);

// Appends the points of the arc from `from` (not appended) to `to` about center.
// Equal ends make a full circle.
void AppendArc(CArrayPointD& points, const CPointD& from, const CPointD& to, const CPointD& center, bool clockwise);
// Drops a last point that repeats the first (files often close their polygons).
void DropClosingPoint(CArrayPointD& points);

// A pad shape: Round (diameter sizeX), Rect or Oblong (sizeX by sizeY), or Polygon
// with its contours (even-odd), centred on the origin and not rotated.
struct Primitive {
    PadShape shape = PadShape::Round;
    double sizeX = 0;
    double sizeY = 0;
    CPadOutline outline;
};
Primitive MakeSimple(PadShape shape, double sizeX, double sizeY);
Primitive MakeOutline(CPadOutline outline);
// The primitive's contours, whatever its shape.
CPadOutline PrimitiveContours(const Primitive& primitive);
// Scales every length of the primitive.
void ScalePrimitive(Primitive& primitive, double factor);

// Contours of the standard shapes, centred on the origin.
CArrayPointD EllipseContour(double width, double height);
// corners: upper right, upper left, lower left, lower right; chamfered or rounded.
CArrayPointD RectContour(double width, double height, double cut, const bool corners[4], bool chamfer);
// A regular polygon: n corners on a circle of that radius, the first at startDegrees.
CArrayPointD RegularContour(int corners, double radius, double startDegrees);
// The ring pieces of a round thermal relief between its spokes.
CPadOutline ThermalContours(double outerDiameter, double innerDiameter, int spokes, double gap, double startDegrees);
