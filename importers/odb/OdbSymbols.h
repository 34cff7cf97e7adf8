// The standard symbols of ODB++ (r, s, rect, oval, donut_r, thermals, ...) as shapes.
#pragma once

#include <string_view>

#include "PdbObjects.h"

namespace odb {

// A symbol's shape about its origin, unrotated, in millimetres. kind is Round, Rect
// or Oblong where the symbol is one (width and height then say all); outline holds
// the closed contours of every shape (even-odd filled), those three included.
struct SymbolShape {
    PadShape kind = PadShape::Polygon;
    double width = 0;
    double height = 0;
    CPadOutline outline;
};

// Reads a standard symbol name whose sizes are in units of unitMM millimetres. false
// when the name is no standard symbol (it may then be a user symbol). "null" symbols
// give an empty outline.
bool StandardSymbol(std::string_view name, double unitMM, SymbolShape& shape);

}  // namespace odb
