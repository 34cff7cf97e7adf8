// Highlights, the current colour, and layer visibility: kept for drawing. Every
// highlight is kept as sent; its answer is a verdict on the names against the board:
//   named (kinds 0 nets, 1 components, 2 pins "REF-PIN"): -200 for another kind,
//       -201 when no name of the list is on the board, else 0;
//   reference pins: -200 for an unknown reference, -201 when none of the named pins
//       is a pin of it, else 0;
//   net section: -201 for an unknown net, -200 when either end is not a pin of that
//       net, else 0;
//   net segments: -201 for an unknown net, -200 when the list is empty or an index
//       is not one of the net's routing objects (tracks and vias in board order).
// The pins highlight with its zoom flag, the section and the segments highlights also
// bring what they mark into view, when their verdict is 0.
#include "BoardQueries.h"
#include "Dispatcher.h"
#include "HighlightMarks.h"
#include "HighlightRecords.h"
#include "LayerRecords.h"

namespace viewer {
namespace {

Answer Done(int verdict, std::string note) {
    CKPRCI__BaseRV reply;
    reply.SetErrorCode(verdict);
    if (verdict) note += ": " + std::to_string(verdict);
    return ReplyAnswer(reply, std::move(note));
}

int NamedVerdict(const CPdb& pdb, const Highlight& h) {
    if (h.objectKind < board::Nets || h.objectKind > board::Pins) return board::kUnknownName;
    for (const std::string& name : h.names)
        if (board::ObjectExists(pdb, h.objectKind, name)) return 0;
    return board::kNotApplicable;
}

int RefPinsVerdict(const CPdb& pdb, const Highlight& h) {
    const CPComp* comp = pdb.FindComp(CString(h.ref.c_str()));
    if (!comp) return board::kUnknownName;
    for (const std::string& name : h.names)
        if (comp->FindPin(CString(name.c_str()))) return 0;
    return board::kNotApplicable;
}

// names: net, ref1, pin1, ref2, pin2.
int SectionVerdict(const CPdb& pdb, const std::vector<std::string>& names) {
    const CPNet* net = pdb.FindNet(CString(names[0].c_str()));
    if (!net) return board::kNotApplicable;
    for (size_t end = 1; end + 1 < names.size(); end += 2) {
        const CPRefPin* pin = pdb.FindPin(CString(names[end].c_str()), CString(names[end + 1].c_str()));
        if (!pin || pin->GetNet() != net) return board::kUnknownName;
    }
    return 0;
}

int SegmentsVerdict(const CPdb& pdb, const Highlight& h) {
    const CPNet* net = pdb.FindNet(CString(h.names[0].c_str()));
    if (!net) return board::kNotApplicable;
    if (h.segments.empty()) return board::kUnknownName;
    for (int index : h.segments)
        if (!board::NetSegment(*net, index)) return board::kUnknownName;
    return 0;
}

// Shows the zoom area around what the highlight marks, as an explicit zoom area does.
void ZoomTo(const Highlight& h, ViewerContext& context) {
    const CRectD box = MarkedExtent(*context.board, h);
    if (box.IsEmpty()) return;
    const CRectD area = ZoomAreaAround(box);
    ViewState& view = context.view;
    view.area[0] = area.minX;
    view.area[1] = area.minY;
    view.area[2] = area.maxX;
    view.area[3] = area.maxY;
    view.hasZoomArea = true;
    view.fitted = false;
    view.zoomSteps = 0;
}

// Keeps the highlight, zooms to it when asked and the names were right, and answers.
Answer Keep(Highlight h, int verdict, bool zoom, std::string note, ViewerContext& context) {
    context.view.highlights.push_back(h);
    if (zoom && verdict == 0) {
        ZoomTo(h, context);
        note += " (zoomed)";
    }
    return Done(verdict, std::move(note));
}

Answer Named(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight&>(base);
    Highlight h;
    h.functionType = record.GetFunctionType();
    h.objectKind = record.GetHighlightObjType();
    h.names = ToStrings(record.GetObjectNameList());
    h.layers = ToStrings(record.GetSpecificLayerList());
    h.color = record.GetHighlightColor();
    return Keep(h, NamedVerdict(*context.board, h), false,
                "highlight kind " + std::to_string(h.objectKind) + " " + Joined(h.names), context);
}

Answer Color(CKPRCI__Base& base, ViewerContext& context) {
    context.view.currentHighlightColor = static_cast<CKPRCI_Highlight_Color&>(base).GetHighlightColor();
    return NoAnswer("highlight colour " + std::to_string(context.view.currentHighlightColor));
}

Answer RefPins(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight_RefPin&>(base);
    Highlight h;
    h.what = Highlight::What::RefPins;
    h.ref = record.GetRefName().str();
    h.names = ToStrings(record.GetPinNames());
    h.color = record.GetHighlightColor();
    return Keep(h, RefPinsVerdict(*context.board, h), record.GetZoom() != 0,
                "highlight pins " + h.ref + " " + Joined(h.names), context);
}

Answer Section(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin&>(base);
    Highlight h;
    h.what = Highlight::What::NetSection;
    h.names = {record.GetNetName().str(), record.GetRef1Name().str(), record.GetPin1Name().str(),
               record.GetRef2Name().str(), record.GetPin2Name().str()};
    h.color = context.view.currentHighlightColor;
    return Keep(h, SectionVerdict(*context.board, h.names), true, "highlight section " + Joined(h.names), context);
}

Answer Segments(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight_ZoomNetSegment&>(base);
    Highlight h;
    h.what = Highlight::What::NetSegments;
    h.names = {record.GetNetName().str()};
    const CArrayN segments = record.GetSegmentIndex();
    for (INT_PTR i = 0; i < segments.GetSize(); ++i) h.segments.push_back(segments[i]);
    h.color = record.GetColor();
    return Keep(h, SegmentsVerdict(*context.board, h), true, "highlight segments of " + h.names[0], context);
}

Answer Layers(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_VisibleLayer&>(base);
    LayerVisibility& layers = context.view.layers;
    const std::vector<std::string> names = ToStrings(record.GetLayerNames());
    const int type = record.GetLayerControlType();
    if (type == 1 || type == 3) {
        layers.only = true;
        layers.onlyNames = std::set<std::string>(names.begin(), names.end());
        layers.switched.clear();
    } else if (type == 2 || type == 4) {
        for (const std::string& name : names) {
            layers.switched[name] = record.GetVisible();
            if (layers.only && record.GetVisible()) layers.onlyNames.insert(name);
            if (layers.only && !record.GetVisible()) layers.onlyNames.erase(name);
        }
    }
    return NoAnswer("layers type " + std::to_string(type) + " visible " + std::to_string(record.GetVisible()) + " " +
                    Joined(names));
}

}  // namespace

void RegisterHighlightHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_Highlight::ClassID, Named);
    dispatcher.Register(CKPRCI_Highlight_Color::ClassID, Color);
    dispatcher.Register(CKPRCI_Highlight_RefPin::ClassID, RefPins);
    dispatcher.Register(CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin::ClassID, Section);
    dispatcher.Register(CKPRCI_Highlight_ZoomNetSegment::ClassID, Segments);
    dispatcher.Register(CKPRCI_VisibleLayer::ClassID, Layers);
}

}  // namespace viewer
