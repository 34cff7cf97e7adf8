#include "BoardQueries.h"

#include <cmath>
#include <limits>

namespace viewer {
namespace board {
namespace {

CString Text(const std::string& s) { return CString(s.c_str()); }

CPComp* FindComp(const CPdb& pdb, const std::string& reference) { return pdb.FindComp(Text(reference)); }

// Distances are rounded to the nanometre: board coordinates are millimetres with a
// few decimals, and their differences should not show binary noise.
double RoundToNanometre(double mm) { return std::round(mm * 1e6) / 1e6; }

}  // namespace

std::string RefPinName(const CPRefPin& pin) { return pin.GetComp()->GetReference().str() + "-" + pin.GetName().str(); }

CPRefPin* FindRefPin(const CPdb& pdb, const std::string& refPin) {
    for (size_t dash = refPin.find('-'); dash != std::string::npos; dash = refPin.find('-', dash + 1)) {
        if (CPRefPin* pin = pdb.FindPin(Text(refPin.substr(0, dash)), Text(refPin.substr(dash + 1)))) return pin;
    }
    return nullptr;
}

bool ObjectExists(const CPdb& pdb, int kind, const std::string& name) {
    switch (kind) {
    case Nets:
        return pdb.FindNet(Text(name)) != nullptr;
    case Components:
        return FindComp(pdb, name) != nullptr;
    case Pins:
        return FindRefPin(pdb, name) != nullptr;
    default:
        return false;
    }
}

int PinCountOfReference(const CPdb& pdb, const std::string& reference) {
    const CPComp* comp = FindComp(pdb, reference);
    return comp ? comp->GetPinCount() : kUnknownName;
}

int PinCountOfPart(const CPdb& pdb, const std::string& part) {
    const CPPart* found = pdb.FindPart(Text(part));
    if (!found) return kUnknownName;
    if (found->GetComps().GetSize() == 0) return kNotApplicable;
    return found->GetComps().GetAt(0)->GetPinCount();
}

double MillimetresPerUnit(int unit) {
    switch (unit) {
    case 0:
        return 1;
    case 1:
        return 0.0254;
    case 2:
        return 25.4;
    case 3:
        return 0.001;
    default:
        return 0;
    }
}

double PinPitch(const CPdb& pdb, int function, const std::string& reference, int unit) {
    const CPComp* comp = FindComp(pdb, reference);
    if (!comp) return kUnknownName;
    const double perUnit = MillimetresPerUnit(unit);
    if (perUnit == 0 || (function != 0 && function != 1)) return kBadArgument;
    const int pins = comp->GetPinCount();
    double pitch = std::numeric_limits<double>::infinity();
    if (function == 1) {
        if (pins != 2) return kNotApplicable;
        pitch = comp->GetPin(0)->GetPosition().Distance(comp->GetPin(1)->GetPosition());
    } else {
        for (int i = 0; i < pins; ++i) {
            const CPointD& a = comp->GetPin(i)->GetPosition();
            for (int j = i + 1; j < pins; ++j) {
                const double d = RoundToNanometre(a.Distance(comp->GetPin(j)->GetPosition()));
                if (d > 0 && d < pitch) pitch = d;
            }
        }
        if (std::isinf(pitch)) return kNotApplicable;
    }
    return RoundToNanometre(pitch) / perUnit;
}

int PlaceStatus(const CPdb& pdb, const std::string& reference) {
    const CPComp* comp = FindComp(pdb, reference);
    if (!comp) return kUnknownName;
    switch (comp->GetSide()) {
    case CompSide::Top:
        return kPlacedTop;
    case CompSide::Bottom:
        return kPlacedBottom;
    case CompSide::NotPlaced:
        break;
    }
    return kNotPlaced;
}

namespace {
void Count(const CPComp& comp, PlaceCounts& counts) {
    switch (comp.GetSide()) {
    case CompSide::Top:
        ++counts.top;
        break;
    case CompSide::Bottom:
        ++counts.bottom;
        break;
    case CompSide::NotPlaced:
        ++counts.other;
        return;
    }
    counts.placed.push_back(comp.GetReference().str());
}
}  // namespace

PlaceCounts CountReferences(const CPdb& pdb, const std::vector<std::string>& references) {
    PlaceCounts counts;
    for (const std::string& reference : references) {
        if (const CPComp* comp = FindComp(pdb, reference)) {
            Count(*comp, counts);
        } else {
            ++counts.other;
            ++counts.unknown;
        }
    }
    return counts;
}

PlaceCounts CountPartComponents(const CPdb& pdb, const std::vector<std::string>& parts) {
    PlaceCounts counts;
    for (const std::string& name : parts) {
        const CPPart* part = pdb.FindPart(Text(name));
        if (!part) {
            ++counts.other;
            ++counts.unknown;
            continue;
        }
        const auto& comps = part->GetComps();
        for (INT_PTR i = 0; i < comps.GetSize(); ++i) Count(*comps.GetAt(i), counts);
    }
    return counts;
}

int NetPinsOfPin(const CPdb& pdb, const std::string& reference, const std::string& pin, std::string& net,
                 std::vector<std::string>& refPins) {
    net.clear();
    refPins.clear();
    const CPRefPin* found = pdb.FindPin(Text(reference), Text(pin));
    if (!found) return kUnknownName;
    const CPNet* onNet = found->GetNet();
    if (!onNet) return kNotApplicable;
    net = onNet->GetName().str();
    for (int i = 0; i < onNet->GetPinCount(); ++i) refPins.push_back(RefPinName(*onNet->GetPin(i)));
    return 0;
}

const CPRouteDObj* NetSegment(const CPNet& net, int index) {
    const CPRouteNet& route = net.GetRoute();
    return index >= 0 && index < route.GetCount() ? route.GetAt(index) : nullptr;
}

}  // namespace board
}  // namespace viewer
