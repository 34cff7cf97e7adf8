// Reading the shapes of an IPC-2581 document: polygons, contours, placements and the
// primitives of the dictionaries. Lengths are multiplied by the caller's unit scale.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "Ipc2581Geometry.h"
#include "XmlStream.h"

// Primitives by dictionary id.
using PrimitiveMap = std::unordered_map<std::string, Primitive>;

// The current element (Polygon, Cutout or any element of PolyBegin/PolyStep* children)
// as a closed polygon, curves made polygonal.
CArrayPointD ReadPolygon(XmlStream& xml, double scale);
// The current Contour: its Polygon, then its Cutouts.
CPadOutline ReadContour(XmlStream& xml, double scale);
// The current Xform element.
Xform ReadXform(XmlStream& xml, double scale);
// Whether the current element names a standard primitive.
bool IsStandardPrimitive(const char* name);
// The current standard primitive element; nullopt (with why set) for one that cannot
// be used.
std::optional<Primitive> ReadStandardPrimitive(XmlStream& xml, double scale, std::string& why);
// The current UserSpecial as a pad shape: its filled contours and standard primitives;
// nullopt when it holds none.
std::optional<Primitive> ReadUserSpecial(XmlStream& xml, double scale, const PrimitiveMap& standard);
