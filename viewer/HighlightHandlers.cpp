// Highlights, the current colour, and layer visibility: kept for drawing.
#include "Dispatcher.h"
#include "HighlightRecords.h"
#include "LayerRecords.h"

namespace viewer {
namespace {

Answer Done(std::string note) {
    CKPRCI__BaseRV reply;
    return ReplyAnswer(reply, std::move(note));
}

Answer Named(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight&>(base);
    Highlight h;
    h.functionType = record.GetFunctionType();
    h.objectKind = record.GetHighlightObjType();
    h.names = ToStrings(record.GetObjectNameList());
    h.layers = ToStrings(record.GetSpecificLayerList());
    h.color = record.GetHighlightColor();
    context.view.highlights.push_back(h);
    return Done("highlight kind " + std::to_string(h.objectKind) + " " + Joined(h.names));
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
    context.view.highlights.push_back(h);
    return Done("highlight pins " + h.ref + " " + Joined(h.names));
}

Answer Section(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin&>(base);
    Highlight h;
    h.what = Highlight::What::NetSection;
    h.names = {record.GetNetName().str(), record.GetRef1Name().str(), record.GetPin1Name().str(),
               record.GetRef2Name().str(), record.GetPin2Name().str()};
    h.color = context.view.currentHighlightColor;
    context.view.highlights.push_back(h);
    return Done("highlight section " + Joined(h.names));
}

Answer Segments(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Highlight_ZoomNetSegment&>(base);
    Highlight h;
    h.what = Highlight::What::NetSegments;
    h.names = {record.GetNetName().str()};
    const CArrayN segments = record.GetSegmentIndex();
    for (INT_PTR i = 0; i < segments.GetSize(); ++i) h.segments.push_back(segments[i]);
    h.color = record.GetColor();
    context.view.highlights.push_back(h);
    return Done("highlight segments of " + h.names[0]);
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
