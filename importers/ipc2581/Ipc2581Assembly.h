// What the walk over an IPC-2581 document gathers for the end, when everything a
// component needs is known: packages, placements, the copper pads of pins, holes.
// Finish turns it into components with their pins, and vias.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "CPdb.h"
#include "Ipc2581Geometry.h"
#include "Ipc2581Names.h"

// A copper pad that names its pin.
struct FeaturePad {
    std::string net;
    std::string padstack;  // its padstackDefRef, and its layer where the padstack lists it not
    const Primitive* primitive = nullptr;
    Xform placement;  // absolute: offset is the pad's position
    double drill = 0;
};

struct PackagePin {
    std::string name;
    Xform placement;  // within the package
    const Primitive* primitive = nullptr;
};

struct ComponentRecord {
    std::string reference, package, part, layer;
    Xform placement;
};

struct Hole {
    CPointD position;
    double diameter = 0;
    bool plated = true;
    bool atPin = false;
    std::string net;
    int fromLayer = -1, toLayer = -1;  // -1: the outer copper layers
};

// A place on a 1 nm grid, for finding the holes and pads at a point.
long long PlaceKey(const CPointD& p);
// The key of a component's pin.
std::string PinKey(const std::string& reference, const std::string& pin);
// The board's net of that name, added when new; null for an empty name.
CPNet* NetNamed(CPdb& board, const std::string& name);

class BoardAssembly {
public:
    std::unordered_map<std::string, std::vector<PackagePin>> packages;
    std::vector<ComponentRecord> components;
    std::unordered_map<std::string, std::string> pinNets;                       // by pin key
    std::unordered_map<std::string, std::vector<FeaturePad>> featurePads;       // by pin key, each place once
    std::unordered_map<std::string, std::vector<std::string>> padPins;          // pin names by component
    std::unordered_map<long long, double> viaPads;                              // largest pad by place
    std::vector<Hole> holes;
    std::unordered_map<long long, size_t> holeAt;                               // index in holes by place
    std::unordered_map<std::string, int> layerIndex;                            // board layer by name
    std::unordered_map<std::string, std::string> layerSide;                     // side attribute by name
    bool namesFromOnePool = false;  // the writer suffixes names another kind took (PoolSuffixedNames)

    // Adds the components with their pins to board, then a via for each plated hole
    // at no pin; warnings gets a line for each thing left out.
    void Finish(CPdb& board, std::vector<std::string>& warnings);

private:
    void RestorePoolNames();
    const std::string& Shown(const std::unordered_map<std::string, std::string>& names, const std::string& name) const;
    void AddComponent(const ComponentRecord& record, const CPDBLayerManager& layers);
    Xform MirroredPlacement(const ComponentRecord& record, const std::vector<PackagePin>& pins) const;
    const FeaturePad* FeaturePadAt(const std::string& reference, const std::string& pin, const CPointD& at,
                                   const std::vector<const FeaturePad*>& used = {}) const;
    const FeaturePad* FirstFeaturePad(const std::string& reference, const std::string& pin,
                                      const std::vector<const FeaturePad*>& used) const;
    const FeaturePad* OtherNamedPadAt(const std::string& reference, const CPointD& at, const NameSet& packagePins,
                                      const std::vector<const FeaturePad*>& used, std::string& pin) const;
    void AddPin(CPComp& comp, const std::string& reference, const std::string& pin, const Primitive& shape,
                const Xform& placement, const FeaturePad* pad, const std::string& padPin);
    void WarnUnplacedPads();

    std::unordered_map<std::string, std::string> m_ShownReferences, m_ShownPins;  // by the file's name
    CPdb* m_Board = nullptr;
    std::vector<std::string>* m_Warnings = nullptr;
};
