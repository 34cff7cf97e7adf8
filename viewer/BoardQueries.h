// Questions about the loaded board, answered from the board database: pin counts,
// pin pitch, placement, the pins of a net, and whether named objects exist. The
// query and highlight handlers, the explorer and the renderer share these rules.
#pragma once

#include <string>
#include <vector>

#include "CPdb.h"

namespace viewer {
namespace board {

// Error codes of the viewer's answers. Where a caller sees only a value (the
// library copies the value and not the error code), the value carries the code.
constexpr int kUnknownName = -200;   // no such reference, part, net or pin
constexpr int kNotApplicable = -201; // the object exists, the question has no answer for it
constexpr int kBadArgument = -202;   // unknown unit or function code

// Kinds of named objects, shared by the named highlight and the explorer list.
enum ObjectKind { Nets = 0, Components = 1, Pins = 2 };

// "REF-PIN", the way the viewer names a pin in lists.
std::string RefPinName(const CPRefPin& pin);
// The pin named "REF-PIN". The text is split at a hyphen whose left part names a
// component that has a pin of the right part's name; hyphens are tried from the
// left, so "R-1-2" is pin "1-2" of "R" when R has one, else pin "2" of "R-1".
CPRefPin* FindRefPin(const CPdb& pdb, const std::string& refPin);
// Whether an object of that kind and name is on the board; false for other kinds.
bool ObjectExists(const CPdb& pdb, int kind, const std::string& name);

// Pins of the component, or kUnknownName.
int PinCountOfReference(const CPdb& pdb, const std::string& reference);
// Pins of the part's first component (the components of a part share its
// footprint); kNotApplicable for a part without components, kUnknownName.
int PinCountOfPart(const CPdb& pdb, const std::string& part);

// Millimetres per unit: 0 mm, 1 mil, 2 inch, 3 micrometre; 0 for another code.
double MillimetresPerUnit(int unit);

// Pin pitch of a component in the unit asked for, or a negative code.
//   function 0: the smallest centre distance between two pins of the component
//               (pins at the same place are not a pair); kNotApplicable when it has
//               no two pins at different places.
//   function 1: the centre distance of the two pins of a two-pin component;
//               kNotApplicable when it has another number of pins.
// kUnknownName for an unknown reference; kBadArgument for another function or an
// unknown unit. Distances are rounded to the nanometre before conversion.
double PinPitch(const CPdb& pdb, int function, const std::string& reference, int unit);

// Placement of one component.
constexpr int kNotPlaced = 0;
constexpr int kPlacedTop = 1;
constexpr int kPlacedBottom = 2;
int PlaceStatus(const CPdb& pdb, const std::string& reference);  // or kUnknownName

struct PlaceCounts {
    int top = 0, bottom = 0, other = 0;
    int unknown = 0;                  // names not on the board (counted in other)
    std::vector<std::string> placed;  // references counted top or bottom, for highlighting
};
// Every entry of the list counts once: top, bottom, or other (not placed, or not a
// reference of the board). A repeated name counts each time.
PlaceCounts CountReferences(const CPdb& pdb, const std::vector<std::string>& references);
// Every component of every named part counts once per naming of its part; a name
// that is not a part of the board counts once as other.
PlaceCounts CountPartComponents(const CPdb& pdb, const std::vector<std::string>& parts);

// The net of a pin and every pin of that net as "REF-PIN", in the net's order.
// 0; kUnknownName when there is no such pin; kNotApplicable for an unconnected pin
// (net and pins then empty).
int NetPinsOfPin(const CPdb& pdb, const std::string& reference, const std::string& pin, std::string& net,
                 std::vector<std::string>& refPins);

// Route object number index of a net, as the segment highlight counts them: the
// net's tracks and vias together, in the board's order. Null outside the range.
const CPRouteDObj* NetSegment(const CPNet& net, int index);

}  // namespace board
}  // namespace viewer
