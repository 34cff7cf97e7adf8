#include "Ipc2581Reader.h"

#include <cmath>
#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "Ipc2581Assembly.h"
#include "Ipc2581Shapes.h"

namespace {

struct PinRefRecord {
    std::string reference, pin;
};

bool Is(const char* a, const char* b) { return std::strcmp(a, b) == 0; }

// Past this many, warnings are counted, not listed.
constexpr size_t kMaxWarnings = 500;

struct LayerRecord {
    std::string name, function, side;
    std::string spanFrom, spanTo;
};

double UnitScale(XmlStream& xml, const std::string& units) {
    if (units == "MILLIMETER") return 1;
    if (units == "MICRON") return 0.001;
    if (units == "INCH") return 25.4;
    throw xml.Fail("unknown units " + units);
}

LayerKind KindOfFunction(const std::string& function, bool& dielectric) {
    dielectric = function.compare(0, 4, "DIEL") == 0;
    static const char* const kCopper[] = {"CONDUCTOR", "SIGNAL", "PLANE", "MIXED", "CONDFILM", "CONDFOIL"};
    for (const char* f : kCopper)
        if (function == f) return LayerKind::Copper;
    if (function == "SILKSCREEN" || function == "LEGEND") return LayerKind::Silk;
    if (function == "SOLDERMASK") return LayerKind::Mask;
    if (function == "SOLDERPASTE" || function == "PASTEMASK") return LayerKind::Paste;
    if (function == "DRILL") return LayerKind::Drill;
    static const char* const kDocument[] = {"DOCUMENT", "ASSEMBLY", "COURTYARD", "BOARD_OUTLINE",
                                            "COMPONENT_TOP", "COMPONENT_BOTTOM", "GRAPHIC", "BOARDFAB"};
    for (const char* f : kDocument)
        if (function == f) return LayerKind::Document;
    return LayerKind::Other;
}

class Reader {
public:
    Reader(XmlStream& xml, const Ipc2581ImportOptions& options, std::vector<std::string>& warnings)
        : m_Xml(xml), m_Options(options), m_Warnings(warnings), m_Board(new CPdb) {}

    std::unique_ptr<CPdb> Run() {
        if (!m_Xml.NextRoot()) throw Ipc2581Error("line 1: the document has no root element");
        if (!Is(m_Xml.Name(), "IPC-2581")) throw m_Xml.Fail("not an IPC-2581 document");
        const std::string revision = m_Xml.Attr("revision");
        if (revision.empty() || (revision[0] != 'B' && revision[0] != 'C'))
            throw m_Xml.Fail("revision \"" + revision + "\" is not read (B and C are)");
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "Content")) ReadContent();
            else if (Is(m_Xml.Name(), "HistoryRecord")) ReadHistoryRecord();
            else if (Is(m_Xml.Name(), "Ecad")) ReadEcad();
        }
        if (!m_StepFound) {
            throw Ipc2581Error(m_Options.step.empty() ? "line " + std::to_string(m_Xml.Line()) + ": Ecad: no Step"
                                                      : "line " + std::to_string(m_Xml.Line()) + ": Ecad: no Step named " +
                                                            m_Options.step);
        }
        Finish();
        if (m_Dropped) m_Warnings.push_back(std::to_string(m_Dropped) + " more warnings not listed");
        return std::move(m_Board);
    }

private:
    void Warn(const std::string& what) {
        if (m_Warnings.size() < kMaxWarnings) m_Warnings.push_back(m_Xml.Where() + ": " + what);
        else ++m_Dropped;
    }

    // KiCad (9 at least) draws component references and pin names from one pool of
    // names: its suffixed names are taken back (PoolSuffixedNames).
    void ReadHistoryRecord() {
        auto isKiCad = [](const std::string& name) { return name.compare(0, 5, "KiCad") == 0; };
        if (isKiCad(m_Xml.Attr("software"))) m_Gathered.namesFromOnePool = true;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (!Is(m_Xml.Name(), "FileRevision")) continue;
            const int revisionDepth = m_Xml.Depth();
            while (m_Xml.NextChild(revisionDepth))
                if (Is(m_Xml.Name(), "SoftwarePackage") && isKiCad(m_Xml.Attr("name")))
                    m_Gathered.namesFromOnePool = true;
        }
    }

    // ---- Content: the dictionaries ----
    void ReadContent() {
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const char* name = m_Xml.Name();
            if (Is(name, "DictionaryStandard")) ReadDictionary(false);
            else if (Is(name, "DictionaryUser")) ReadDictionary(true);
            else if (Is(name, "DictionaryLineDesc")) ReadLineDescs();
        }
    }

    // Dictionaries may leave their units to the CadHeader, which comes later: their
    // entries are then scaled when the header is known.
    double DictionaryScale(bool& deferred) {
        std::string units;
        deferred = !m_Xml.Attr("units", units);
        return deferred ? 1 : UnitScale(m_Xml, units);
    }

    void ReadDictionary(bool user) {
        bool deferred = false;
        const double scale = DictionaryScale(deferred);
        PrimitiveMap& map = user ? m_User : m_Standard;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const std::string id = m_Xml.Attr("id");
            const int entryDepth = m_Xml.Depth();
            while (m_Xml.NextChild(entryDepth)) {
                std::optional<Primitive> primitive;
                std::string why;
                if (user && Is(m_Xml.Name(), "UserSpecial")) {
                    primitive = ReadUserSpecial(m_Xml, scale, m_Standard);
                    if (!primitive) why = "a user primitive without a filled shape";
                } else if (!user) {
                    primitive = ReadStandardPrimitive(m_Xml, scale, why);
                }
                if (primitive) {
                    map[id] = std::move(*primitive);
                    if (deferred) m_Deferred.push_back(&map[id]);
                } else if (!why.empty()) {
                    Warn(why + " (entry " + id + ")");
                }
            }
        }
    }

    void ReadLineDescs() {
        bool deferred = false;
        const double scale = DictionaryScale(deferred);
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const std::string id = m_Xml.Attr("id");
            const int entryDepth = m_Xml.Depth();
            while (m_Xml.NextChild(entryDepth))
                if (Is(m_Xml.Name(), "LineDesc")) {
                    m_LineWidths[id] = m_Xml.Number("lineWidth", 0, scale);
                    if (deferred) m_DeferredWidths.push_back(id);
                }
        }
    }

    // ---- Ecad ----
    void ReadEcad() {
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "CadHeader")) {
                m_Scale = UnitScale(m_Xml, m_Xml.Attr("units"));
                for (Primitive* primitive : m_Deferred) ScalePrimitive(*primitive, m_Scale);
                for (const std::string& id : m_DeferredWidths) m_LineWidths[id] *= m_Scale;
                m_Deferred.clear();
                m_DeferredWidths.clear();
            } else if (Is(m_Xml.Name(), "CadData")) {
                ReadCadData();
            }
        }
    }

    void ReadCadData() {
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const char* name = m_Xml.Name();
            if (Is(name, "Layer")) ReadLayer();
            else if (Is(name, "Stackup")) ReadStackup(m_Xml.Depth());
            else if (Is(name, "Step")) ReadStep();
        }
    }

    void ReadLayer() {
        LayerRecord layer{m_Xml.Attr("name"), m_Xml.Attr("layerFunction"), m_Xml.Attr("side"), {}, {}};
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth))
            if (Is(m_Xml.Name(), "Span")) {
                layer.spanFrom = m_Xml.Attr("fromLayer");
                layer.spanTo = m_Xml.Attr("toLayer");
            }
        m_LayerRecords.push_back(std::move(layer));
    }

    // Stackup layers in sequence order, whatever their nesting in groups.
    void ReadStackup(int depth) {
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "StackupLayer")) {
                std::string ref;
                if (!m_Xml.Attr("layerOrGroupRef", ref)) ref = m_Xml.Attr("layerRef");
                m_Stack.emplace_back(m_Xml.Number("sequence", static_cast<double>(m_Stack.size())), ref);
            } else if (Is(m_Xml.Name(), "StackupGroup")) {
                ReadStackup(m_Xml.Depth());
            }
        }
    }

    // The board's layers: those of the stack-up in its order, then the others in the
    // order they were declared; dielectrics are left out.
    void BuildLayers() {
        std::stable_sort(m_Stack.begin(), m_Stack.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<const LayerRecord*> order;
        std::unordered_map<std::string, const LayerRecord*> byName;
        for (const LayerRecord& layer : m_LayerRecords) byName.emplace(layer.name, &layer);
        for (const auto& entry : m_Stack) {
            auto found = byName.find(entry.second);
            if (found == byName.end() || !found->second) continue;
            order.push_back(found->second);
            found->second = nullptr;
        }
        for (const LayerRecord& layer : m_LayerRecords)
            if (byName[layer.name] == &layer) order.push_back(&layer);
        CPDBLayerManager& layers = m_Board->GetLayerManager();
        for (const LayerRecord* layer : order) {
            bool dielectric = false;
            const LayerKind kind = KindOfFunction(layer->function, dielectric);
            if (dielectric) continue;
            if (!layers.AddLayer(CString(layer->name.c_str()), CString(layer->name.c_str()), kind)) continue;
            m_Gathered.layerIndex[layer->name] = layers.GetLayerCount() - 1;
            m_Gathered.layerSide[layer->name] = layer->side;
        }
        for (const LayerRecord* layer : order) {
            if (layer->spanFrom.empty()) continue;
            m_Spans[layer->name] = {LayerIndex(layer->spanFrom), LayerIndex(layer->spanTo)};
        }
    }

    int LayerIndex(const std::string& name) const {
        const auto found = m_Gathered.layerIndex.find(name);
        return found == m_Gathered.layerIndex.end() ? -1 : found->second;
    }

    // ---- Step ----
    void ReadStep() {
        const std::string name = m_Xml.Attr("name");
        if (m_StepFound || (!m_Options.step.empty() && name != m_Options.step)) return;
        m_StepFound = true;
        m_Board->SetBoardName(CString(name.c_str()));
        BuildLayers();
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const char* child = m_Xml.Name();
            if (Is(child, "Profile")) ReadProfile();
            else if (Is(child, "PadStackDef")) ReadPadStackDef();
            else if (Is(child, "Package")) ReadPackage();
            else if (Is(child, "Component")) ReadComponent();
            else if (Is(child, "LogicalNet")) ReadLogicalNet();
            else if (Is(child, "LayerFeature")) ReadLayerFeature();
            else if (!Is(child, "Datum") && !Is(child, "PhyNetGroup") && !Is(child, "NonstandardAttribute"))
                Warn("skipped");
        }
    }

    void ReadProfile() {
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth))
            if (Is(m_Xml.Name(), "Polygon") && m_Board->GetOutline().GetSize() == 0)
                m_Board->GetOutline() = ReadPolygon(m_Xml, m_Scale);
    }

    void ReadPadStackDef() {
        const std::string name = m_Xml.Attr("name");
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "PadstackHoleDef")) m_PadstackDrill[name] = m_Xml.Number("diameter", 0, m_Scale);
            else if (Is(m_Xml.Name(), "PadstackPadDef")) m_PadstackLayers[name].insert(m_Xml.Attr("layerRef"));
        }
    }

    // Takes a primitive reference (StandardPrimitiveRef / UserPrimitiveRef) or an inline
    // standard primitive into primitive; a missing entry leaves it and is warned of.
    void ReadShapeChild(const Primitive*& primitive) {
        const char* name = m_Xml.Name();
        const bool user = Is(name, "UserPrimitiveRef");
        if (user || Is(name, "StandardPrimitiveRef")) {
            const std::string id = m_Xml.Attr("id");
            const PrimitiveMap& map = user ? m_User : m_Standard;
            const auto found = map.find(id);
            if (found == map.end()) Warn("no dictionary entry " + id);
            else primitive = &found->second;
            return;
        }
        if (IsStandardPrimitive(name)) {
            std::string why;
            if (auto inline_ = ReadStandardPrimitive(m_Xml, m_Scale, why)) {
                m_Inline.push_back(std::make_unique<Primitive>(std::move(*inline_)));
                primitive = m_Inline.back().get();
            } else {
                Warn(why);
            }
        }
    }

    void ReadPackage() {
        std::vector<PackagePin>& pins = m_Gathered.packages[m_Xml.Attr("name")];
        std::vector<PackagePin> lands;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "Pin")) {
                PackagePin pin;
                pin.name = m_Xml.Attr("number");
                ReadPlacedShape(pin.placement, pin.primitive, nullptr);
                pins.push_back(std::move(pin));
            } else if (Is(m_Xml.Name(), "LandPattern")) {
                const int landDepth = m_Xml.Depth();
                while (m_Xml.NextChild(landDepth)) {
                    if (!Is(m_Xml.Name(), "Pad")) continue;
                    lands.emplace_back();
                    std::vector<PinRefRecord> refs;
                    ReadPlacedShape(lands.back().placement, lands.back().primitive, &refs);
                    if (!refs.empty()) lands.back().name = refs.front().pin;
                }
            }
        }
        // Land pattern pads give the shape of pins that do not carry one.
        for (PackagePin& pin : pins)
            for (const PackagePin& land : lands)
                if (!pin.primitive && land.name == pin.name) {
                    pin.primitive = land.primitive;
                    pin.placement.rotation = land.placement.rotation;
                    pin.placement.mirror = land.placement.mirror;
                }
    }

    // Takes an Xform or a Location into placement (a Location moves the element on
    // top of its Xform's offset); false for any other element.
    bool ReadPlacementChild(Xform& placement) {
        if (Is(m_Xml.Name(), "Xform")) {
            const CPointD offset = placement.offset;
            placement = ReadXform(m_Xml, m_Scale);
            placement.offset = placement.offset + offset;
            return true;
        }
        if (Is(m_Xml.Name(), "Location")) {
            placement.offset = placement.offset + CPointD(m_Xml.Number("x", 0, m_Scale), m_Xml.Number("y", 0, m_Scale));
            return true;
        }
        return false;
    }

    // The children of a Pin or Pad: Xform, Location, a shape, and PinRefs (into pins,
    // when given).
    void ReadPlacedShape(Xform& placement, const Primitive*& primitive, std::vector<PinRefRecord>* pins) {
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (ReadPlacementChild(placement)) continue;
            if (Is(m_Xml.Name(), "PinRef")) {
                if (pins) pins->push_back({m_Xml.Attr("componentRef"), m_Xml.Attr("pin")});
            } else {
                ReadShapeChild(primitive);
            }
        }
    }

    void ReadComponent() {
        ComponentRecord component{m_Xml.Attr("refDes"), m_Xml.Attr("packageRef"), m_Xml.Attr("part"),
                                  m_Xml.Attr("layerRef"), {}};
        if (component.reference.empty()) {
            Warn("a component without refDes");
            return;
        }
        const Primitive* unused = nullptr;
        ReadPlacedShape(component.placement, unused, nullptr);
        m_Gathered.components.push_back(std::move(component));
    }

    void ReadLogicalNet() {
        const std::string net = m_Xml.Attr("name");
        const int depth = m_Xml.Depth();
        if (!net.empty()) NetOf(net);
        while (m_Xml.NextChild(depth))
            if (Is(m_Xml.Name(), "PinRef") && !net.empty())
                m_Gathered.pinNets.emplace(PinKey(m_Xml.Attr("componentRef"), m_Xml.Attr("pin")), net);
    }

    CPNet* NetOf(const std::string& name) { return NetNamed(*m_Board, name); }

    // ---- Layer features ----
    void ReadLayerFeature() {
        const std::string layerName = m_Xml.Attr("layerRef");
        const int layer = LayerIndex(layerName);
        if (layer < 0) return;  // a dielectric, or a layer not declared
        const LayerKind kind = m_Board->GetLayerManager().GetLayer(layer)->GetKind();
        if (kind != LayerKind::Copper && kind != LayerKind::Drill) return;  // drawings the board does not keep
        m_PadsOnLayer.clear();
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth))
            if (Is(m_Xml.Name(), "Set")) ReadSet(layer, kind == LayerKind::Copper, layerName);
    }

    void ReadSet(int layer, bool copper, const std::string& layerName) {
        const std::string net = m_Xml.Attr("net");
        const std::string geometry = m_Xml.Attr("geometry");
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const char* name = m_Xml.Name();
            if (Is(name, "Pad") && copper) ReadPad(net, layerName);
            else if (Is(name, "Features") && copper) ReadFeatures(layer, NetOf(net));
            else if (Is(name, "Hole") || Is(name, "SlotCavity")) ReadHole(net, layerName, geometry);
        }
    }

    // A pad: of each pin its PinRefs name (a pad may serve several), else of a via.
    void ReadPad(const std::string& net, const std::string& layerName) {
        FeaturePad pad;
        pad.net = net;
        pad.padstack = m_Xml.Attr("padstackDefRef");
        auto found = m_PadstackDrill.find(pad.padstack);
        if (found != m_PadstackDrill.end()) pad.drill = found->second;
        std::vector<PinRefRecord> pins;
        ReadPlacedShape(pad.placement, pad.primitive, &pins);
        if (!pad.primitive) return;
        for (const PinRefRecord& pin : pins) {
            if (pin.reference.empty() || pin.pin.empty()) Warn("a pin reference without component or pin: skipped");
            else AddPinPad(pin, pad, layerName);
        }
        if (!pins.empty()) return;
        double& size = m_Gathered.viaPads[PlaceKey(pad.placement.offset)];
        size = std::max(size, std::max(pad.primitive->sizeX, pad.primitive->sizeY) * pad.placement.scale);
    }

    // A pad repeats on each layer of its padstack, yet one pin may have several pads at
    // one place (an exposed pad over a thermal via, pads on either side, two pads drawn
    // one on the other): on one layer every pad is new, so a pin has as many pads at a
    // place of one padstack as the layer with the most of them shows. A pad on a layer
    // its padstack does not list is another pad (KiCad 9 gives like pads of either
    // side one padstack).
    void AddPinPad(const PinRefRecord& pin, FeaturePad pad, const std::string& layerName) {
        const auto layers = m_PadstackLayers.find(pad.padstack);
        if (layers != m_PadstackLayers.end() && !layers->second.count(layerName)) pad.padstack += '\x1f' + layerName;
        const std::string key = PinKey(pin.reference, pin.pin);
        std::vector<FeaturePad>& pads = m_Gathered.featurePads[key];
        const int onLayer =
            m_PadsOnLayer[key + '\x1f' + std::to_string(PlaceKey(pad.placement.offset)) + '\x1f' + pad.padstack]++;
        int known = 0;
        for (const FeaturePad& other : pads)
            known += other.padstack == pad.padstack && other.placement.offset.Distance(pad.placement.offset) < 1e-6;
        if (known > onLayer) return;
        if (pads.empty()) m_Gathered.padPins[pin.reference].push_back(pin.pin);
        pads.push_back(std::move(pad));
    }

    void ReadHole(const std::string& net, const std::string& layerName, const std::string& geometry) {
        Hole hole;
        hole.net = net;
        hole.plated = m_Xml.Attr("platingStatus") != "NONPLATED";
        const auto span = m_Spans.find(layerName);
        if (span != m_Spans.end()) {
            hole.fromLayer = span->second.first;
            hole.toLayer = span->second.second;
        }
        if (Is(m_Xml.Name(), "Hole")) {
            hole.diameter = m_Xml.Number("diameter", 0, m_Scale);
            hole.position = CPointD(m_Xml.Number("x", 0, m_Scale), m_Xml.Number("y", 0, m_Scale));
        } else {
            // A slot: its narrow side is the drill, placed at its centre.
            const Primitive* shape = nullptr;
            Xform placement;
            ReadPlacedShape(placement, shape, nullptr);
            if (!shape) return;
            hole.diameter = std::min(shape->sizeX, shape->sizeY) * placement.scale;
            hole.position = placement.offset;
        }
        m_Gathered.holeAt.emplace(PlaceKey(hole.position), m_Gathered.holes.size());
        m_Gathered.holes.push_back(std::move(hole));
    }

    // Features of a copper layer: tracks (Line, Arc, Polyline) and areas (Contour).
    void ReadFeatures(int layer, CPNet* net) {
        Xform placement;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (!ReadPlacementChild(placement)) ReadFeature(layer, net, placement);
        }
    }

    void ReadFeature(int layer, CPNet* net, const Xform& placement) {
        const char* name = m_Xml.Name();
        const bool identity = placement.rotation == 0 && !placement.mirror && placement.scale == 1 &&
                              placement.offset == CPointD();
        auto place = [&](const CPointD& p) { return identity ? p : ApplyXform(placement, p); };
        if (Is(name, "UserSpecial")) {
            const int depth = m_Xml.Depth();
            while (m_Xml.NextChild(depth)) ReadFeature(layer, net, placement);
        } else if (Is(name, "Line") || Is(name, "Arc")) {
            const bool arc = Is(name, "Arc");
            const CPointD from = place(CPointD(m_Xml.Number("startX", 0, m_Scale), m_Xml.Number("startY", 0, m_Scale)));
            const CPointD to = place(CPointD(m_Xml.Number("endX", 0, m_Scale), m_Xml.Number("endY", 0, m_Scale)));
            CPointD centre;
            bool clockwise = false;
            if (arc) {
                centre = place(CPointD(m_Xml.Number("centerX", 0, m_Scale), m_Xml.Number("centerY", 0, m_Scale)));
                clockwise = m_Xml.Flag("clockwise") != placement.mirror;
            }
            const double width = ReadLineWidth() * placement.scale;
            if (!TrackHasNet(net)) return;
            if (arc) net->GetRoute().AddArc(layer, width, C2PointD(from, to), centre, clockwise);
            else net->GetRoute().AddSegment(layer, width, C2PointD(from, to));
        } else if (Is(name, "Polyline")) {
            ReadPolyline(layer, net, placement);
        } else if (Is(name, "Contour") || Is(name, "Polygon")) {
            CPadOutline contours = Is(name, "Contour") ? ReadContour(m_Xml, m_Scale) : CPadOutline{ReadPolygon(m_Xml, m_Scale)};
            if (contours.empty() || contours.front().GetSize() < 3) return;
            CPArea* area = m_Board->AddArea(layer, net);
            for (size_t i = 0; i < contours.size(); ++i) {
                CArrayPointD& target = i == 0 ? area->GetOutline() : *area->AddHole();
                for (INT_PTR k = 0; k < contours[i].GetSize(); ++k) target.Add(place(contours[i][k]));
            }
        } else if (!Is(name, "NonstandardAttribute")) {
            ++m_SkippedCopper;
        }
    }

    // A Polyline: segments and curves from point to point, then its line width.
    void ReadPolyline(int layer, CPNet* net, const Xform& placement) {
        struct Step {
            CPointD to, centre;
            bool curve, clockwise;
        };
        std::vector<Step> steps;
        double width = 0;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            const char* name = m_Xml.Name();
            const CPointD p = ApplyXform(placement, CPointD(m_Xml.Number("x", 0, m_Scale), m_Xml.Number("y", 0, m_Scale)));
            if (Is(name, "PolyBegin") || Is(name, "PolyStepSegment")) {
                steps.push_back({p, {}, false, false});
            } else if (Is(name, "PolyStepCurve")) {
                const CPointD c = ApplyXform(placement, CPointD(m_Xml.Number("centerX", 0, m_Scale),
                                                               m_Xml.Number("centerY", 0, m_Scale)));
                steps.push_back({p, c, true, m_Xml.Flag("clockwise") != placement.mirror});
            } else if (Is(name, "LineDesc")) {
                width = m_Xml.Number("lineWidth", 0, m_Scale);
            } else if (Is(name, "LineDescRef")) {
                width = LineWidthOf(m_Xml.Attr("id"));
            }
        }
        if (!TrackHasNet(net)) return;
        width *= placement.scale;
        for (size_t i = 1; i < steps.size(); ++i) {
            const C2PointD line(steps[i - 1].to, steps[i].to);
            if (steps[i].curve) net->GetRoute().AddArc(layer, width, line, steps[i].centre, steps[i].clockwise);
            else net->GetRoute().AddSegment(layer, width, line);
        }
    }

    double LineWidthOf(const std::string& id) {
        const auto found = m_LineWidths.find(id);
        if (found != m_LineWidths.end()) return found->second;
        Warn("no line description " + id);
        return 0;
    }

    // The width of the current Line or Arc, from its LineDesc or LineDescRef.
    double ReadLineWidth() {
        double width = 0;
        const int depth = m_Xml.Depth();
        while (m_Xml.NextChild(depth)) {
            if (Is(m_Xml.Name(), "LineDesc")) width = m_Xml.Number("lineWidth", 0, m_Scale);
            else if (Is(m_Xml.Name(), "LineDescRef")) width = LineWidthOf(m_Xml.Attr("id"));
        }
        return width;
    }

    // Tracks belong to a net: those of none are counted and left out.
    bool TrackHasNet(const CPNet* net) {
        if (!net) ++m_UnnamedTracks;
        return net != nullptr;
    }

    void Finish() {
        m_Gathered.Finish(*m_Board, m_Warnings);
        if (m_UnnamedTracks) m_Warnings.push_back(std::to_string(m_UnnamedTracks) + " copper tracks without a net skipped");
        if (m_SkippedCopper) m_Warnings.push_back(std::to_string(m_SkippedCopper) + " copper features of other kinds skipped");
    }

    XmlStream& m_Xml;
    const Ipc2581ImportOptions& m_Options;
    std::vector<std::string>& m_Warnings;
    std::unique_ptr<CPdb> m_Board;
    size_t m_Dropped = 0;
    double m_Scale = 1;
    bool m_StepFound = false;

    PrimitiveMap m_Standard, m_User;
    std::vector<std::unique_ptr<Primitive>> m_Inline;
    std::vector<Primitive*> m_Deferred;
    std::unordered_map<std::string, double> m_LineWidths;
    std::vector<std::string> m_DeferredWidths;

    std::vector<LayerRecord> m_LayerRecords;
    std::vector<std::pair<double, std::string>> m_Stack;
    std::unordered_map<std::string, std::pair<int, int>> m_Spans;

    std::unordered_map<std::string, double> m_PadstackDrill;
    std::unordered_map<std::string, std::unordered_set<std::string>> m_PadstackLayers;  // layers of its pads
    std::unordered_map<std::string, int> m_PadsOnLayer;  // pads of the current layer by pin, place and padstack
    BoardAssembly m_Gathered;
    size_t m_UnnamedTracks = 0, m_SkippedCopper = 0;
};

}  // namespace

std::unique_ptr<CPdb> ReadIpc2581(XmlStream& xml, const Ipc2581ImportOptions& options,
                                  std::vector<std::string>& warnings) {
    return Reader(xml, options, warnings).Run();
}
