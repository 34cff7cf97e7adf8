#include "Ipc2581Assembly.h"

#include <algorithm>
#include <cmath>

namespace {

double NormalDegrees(double degrees) {
    degrees = std::fmod(degrees, 360);
    return degrees < 0 ? degrees + 360 : degrees;
}

bool IsUsed(const std::vector<const FeaturePad*>& used, const FeaturePad& pad) {
    return std::find(used.begin(), used.end(), &pad) != used.end();
}

}  // namespace

long long PlaceKey(const CPointD& p) {
    const long long x = std::llround(p.x * 1e6), y = std::llround(p.y * 1e6);
    return x * 1000003LL ^ y;
}

std::string PinKey(const std::string& reference, const std::string& pin) { return reference + '\x1f' + pin; }

CPNet* NetNamed(CPdb& board, const std::string& name) {
    if (name.empty()) return nullptr;
    const CString key(name.c_str());
    CPNet* net = board.FindNet(key);
    return net ? net : board.AddNet(key);
}

void BoardAssembly::Finish(CPdb& board, std::vector<std::string>& warnings) {
    m_Board = &board;
    m_Warnings = &warnings;
    size_t unnamedVias = 0;
    const CPDBLayerManager& layers = m_Board->GetLayerManager();
    if (namesFromOnePool) RestorePoolNames();
    for (const ComponentRecord& record : components) AddComponent(record, layers);
    WarnUnplacedPads();
    for (Hole& hole : holes) {
        if (hole.atPin || !hole.plated) continue;
        CPNet* net = NetNamed(*m_Board, hole.net);
        if (!net) {
            ++unnamedVias;
            continue;
        }
        int from = hole.fromLayer >= 0 ? hole.fromLayer : layers.GetTopCopperIndex();
        int to = hole.toLayer >= 0 ? hole.toLayer : layers.GetBottomCopperIndex();
        if (from > to) std::swap(from, to);
        const auto pad = viaPads.find(PlaceKey(hole.position));
        const double size = pad != viaPads.end() ? pad->second : hole.diameter;
        net->GetRoute().AddVia(hole.position, size, hole.diameter, from, to);
    }
    if (unnamedVias) m_Warnings->push_back(std::to_string(unnamedVias) + " vias without a net skipped");
}

void BoardAssembly::AddComponent(const ComponentRecord& record, const CPDBLayerManager& layers) {
    const CString partName((record.part.empty() ? record.package : record.part).c_str());
    CPPart* part = m_Board->FindPart(partName);
    if (!part) part = m_Board->AddPart(partName, CString(record.package.c_str()));
    const auto index = layerIndex.find(record.layer);
    const int layer = index == layerIndex.end() ? -1 : index->second;
    const auto side = layerSide.find(record.layer);
    const bool bottom = (layer >= 0 && layer == layers.GetBottomCopperIndex() && layer != layers.GetTopCopperIndex()) ||
                        (side != layerSide.end() && side->second == "BOTTOM") ||
                        (layer < 0 && record.placement.mirror);
    const auto package = packages.find(record.package);
    const std::vector<PackagePin> none;
    const std::vector<PackagePin>& pins = package != packages.end() ? package->second : none;
    // A mirrored component's rotation is counted, as the ODB++ reader counts it, after a
    // flip top to bottom: a mirror across X turned by r is that flip turned by r + 180.
    const Xform placement = MirroredPlacement(record, pins);
    CPComp* comp = m_Board->AddComp(CString(Shown(m_ShownReferences, record.reference).c_str()), part,
                                    bottom ? CompSide::Bottom : CompSide::Top, record.placement.offset,
                                    NormalDegrees(placement.rotation + (placement.mirror ? 180 : 0)));
    if (!comp) {
        m_Warnings->push_back("component " + record.reference + " given twice: the second skipped");
        return;
    }
    comp->SetMirrored(record.placement.mirror);
    const std::string& ref = record.reference;
    NameSet packagePins;
    for (const PackagePin& pin : pins) packagePins.insert(pin.name);
    std::vector<const FeaturePad*> used;
    for (const PackagePin& pin : pins) {
        const Xform pinPlacement = Compose(placement, pin.placement);
        std::string padPin = pin.name;
        const FeaturePad* pad = FeaturePadAt(ref, pin.name, pinPlacement.offset, used);
        if (!pad) pad = OtherNamedPadAt(ref, pinPlacement.offset, packagePins, used, padPin);
        if (!pad) pad = FirstFeaturePad(ref, pin.name, used);
        if (pin.primitive) {
            AddPin(*comp, ref, pin.name, *pin.primitive, pinPlacement, pad, padPin);
        } else if (pad) {
            AddPin(*comp, ref, pin.name, *pad->primitive, pad->placement, pad, padPin);
        } else {
            m_Warnings->push_back("pin " + ref + "-" + pin.name + " has no pad shape: skipped");
        }
        if (pad) used.push_back(pad);
    }
    // Copper pads of the component that its package does not list (a package may give
    // a pin once whose number several pads share, or no pins at all).
    const auto names = padPins.find(ref);
    if (names != padPins.end()) {
        for (const std::string& name : names->second)
            for (const FeaturePad& pad : featurePads[PinKey(ref, name)])
                if (!IsUsed(used, pad)) AddPin(*comp, ref, name, *pad.primitive, pad.placement, &pad, name);
    }
    if (package == packages.end() && !record.package.empty())
        m_Warnings->push_back("component " + record.reference + ": no package " + record.package);
}

// Writers differ on how a mirrored component turns: rotate then flip top to bottom
// (KiCad), mirror then rotate, or rotate then mirror. The copper pads, placed
// absolutely, tell which reading holds; when they cannot (no pads, or one round pad
// at the origin), the first one does.
Xform BoardAssembly::MirroredPlacement(const ComponentRecord& record, const std::vector<PackagePin>& pins) const {
    if (!record.placement.mirror) return record.placement;
    const double r = record.placement.rotation;
    Xform best = record.placement;
    int bestMatches = -1;
    for (double rotation : {180 - r, r, -r}) {
        Xform candidate = record.placement;
        candidate.rotation = rotation;
        int matches = 0;
        for (const PackagePin& pin : pins) {
            matches += FeaturePadAt(record.reference, pin.name, ApplyXform(candidate, pin.placement.offset)) != nullptr;
        }
        if (matches > bestMatches) {
            best = candidate;
            bestMatches = matches;
        }
    }
    return best;
}

// The copper pad of that pin at that place not used yet, or null.
const FeaturePad* BoardAssembly::FeaturePadAt(const std::string& reference, const std::string& pin, const CPointD& at,
                                              const std::vector<const FeaturePad*>& used) const {
    const auto found = featurePads.find(PinKey(reference, pin));
    if (found == featurePads.end()) return nullptr;
    for (const FeaturePad& pad : found->second)
        if (pad.placement.offset.Distance(at) < 1e-3 && !IsUsed(used, pad)) return &pad;
    return nullptr;
}

// A pad at that place that names a pin the package does not list (writers may name a
// pin otherwise than its package does); its name into pin.
const FeaturePad* BoardAssembly::OtherNamedPadAt(const std::string& reference, const CPointD& at,
                                                 const NameSet& packagePins, const std::vector<const FeaturePad*>& used,
                                                 std::string& pin) const {
    const auto names = padPins.find(reference);
    if (names == padPins.end()) return nullptr;
    for (const std::string& name : names->second) {
        if (packagePins.count(name)) continue;
        if (const FeaturePad* pad = FeaturePadAt(reference, name, at, used)) {
            pin = name;
            return pad;
        }
    }
    return nullptr;
}

const FeaturePad* BoardAssembly::FirstFeaturePad(const std::string& reference, const std::string& pin,
                                                 const std::vector<const FeaturePad*>& used) const {
    const auto found = featurePads.find(PinKey(reference, pin));
    if (found == featurePads.end()) return nullptr;
    for (const FeaturePad& pad : found->second)
        if (!IsUsed(used, pad)) return &pad;
    return nullptr;
}

// Adds pin of reference, named as the writer meant it; its net is the one the logical
// nets give pin (or padPin, the name its copper pad gives it), else the pad's.
void BoardAssembly::AddPin(CPComp& comp, const std::string& reference, const std::string& pin, const Primitive& shape,
                           const Xform& placement, const FeaturePad* pad, const std::string& padPin) {
    const CPointD position = placement.offset;
    double drill = 0;
    const auto hole = holeAt.find(PlaceKey(position));
    if (hole != holeAt.end()) {
        holes[hole->second].atPin = true;
        drill = holes[hole->second].diameter;
    } else if (pad) {
        drill = pad->drill;
    }
    const double s = placement.scale;
    CPRefPin* added = comp.AddPin(CString(Shown(m_ShownPins, pin).c_str()), position, shape.shape, shape.sizeX * s,
                                  shape.sizeY * s, NormalDegrees(placement.rotation), drill);
    if (shape.shape == PadShape::Polygon) {
        Xform linear = placement;
        linear.offset = CPointD();
        CPadOutline outline = shape.outline;
        for (CArrayPointD& contour : outline)
            for (INT_PTR i = 0; i < contour.GetSize(); ++i) contour[i] = ApplyXform(linear, contour[i]);
        added->SetPadOutline(std::move(outline));
    }
    auto logical = pinNets.find(PinKey(reference, pin));
    if (logical == pinNets.end()) logical = pinNets.find(PinKey(reference, padPin));
    const std::string& netName = logical != pinNets.end() ? logical->second : pad ? pad->net : std::string();
    if (CPNet* net = NetNamed(*m_Board, netName)) net->AddPin(added);
}

void BoardAssembly::RestorePoolNames() {
    NameSet references, pins;
    for (const ComponentRecord& record : components) references.insert(record.reference);
    for (const auto& package : packages)
        for (const PackagePin& pin : package.second) pins.insert(pin.name);
    for (const auto& names : padPins) pins.insert(names.second.begin(), names.second.end());
    m_ShownReferences = PoolSuffixedNames(references, pins);
    m_ShownPins = PoolSuffixedNames(pins, references);
}

const std::string& BoardAssembly::Shown(const std::unordered_map<std::string, std::string>& names,
                                        const std::string& name) const {
    const auto found = names.find(name);
    return found == names.end() ? name : found->second;
}

// Pads that name a component the file does not place are left out, said once per name.
void BoardAssembly::WarnUnplacedPads() {
    NameSet placed;
    for (const ComponentRecord& record : components) placed.insert(record.reference);
    std::vector<std::string> unplaced;
    for (const auto& names : padPins)
        if (!placed.count(names.first)) unplaced.push_back(names.first);
    std::sort(unplaced.begin(), unplaced.end());
    for (const std::string& name : unplaced)
        m_Warnings->push_back("pads of pins of component \"" + name + "\", which is not placed: skipped");
}
