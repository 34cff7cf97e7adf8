// View control: zoom, fit, side, mirror, rotation, window, title, on/off switches.
#include <cstdio>

#include "Dispatcher.h"
#include "ViewRecords.h"

namespace viewer {
namespace {

std::string Text(const char* format, double a = 0, double b = 0, double c = 0, double d = 0) {
    char buffer[256];
    std::snprintf(buffer, sizeof(buffer), format, a, b, c, d);
    return buffer;
}

Answer Simple(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_SimpleCMD&>(base);
    ViewState& view = context.view;
    switch (record.GetCommandType()) {
    case CKPRCI_SimpleCMD::ZoomIn: ++view.zoomSteps; return NoAnswer("zoom in");
    case CKPRCI_SimpleCMD::ZoomOut: --view.zoomSteps; return NoAnswer("zoom out");
    case CKPRCI_SimpleCMD::ZoomFitSize:
        view.zoomSteps = 0;
        view.fitted = true;
        view.hasZoomArea = false;
        return NoAnswer("fit");
    case CKPRCI_SimpleCMD::ViewLayerTop: view.side = Side::Top; return NoAnswer("side top");
    case CKPRCI_SimpleCMD::ViewLayerBtm: view.side = Side::Bottom; return NoAnswer("side bottom");
    case CKPRCI_SimpleCMD::ViewLayerAll: view.side = Side::All; return NoAnswer("side all");
    case CKPRCI_SimpleCMD::ViewMirror: view.mirrored = true; return NoAnswer("mirror");
    case CKPRCI_SimpleCMD::ViewMirrorClear: view.mirrored = false; return NoAnswer("mirror clear");
    case CKPRCI_SimpleCMD::HighlightClear:
        view.highlights.clear();
        return NoAnswer(Text("highlight clear %.0f", record.GetCommonValue()));
    case CKPRCI_SimpleCMD::BackupLayers:
        view.layerBackup = view.layers;
        view.hasLayerBackup = true;
        return NoAnswer("layers backed up");
    case CKPRCI_SimpleCMD::RestoreLayers:
        if (view.hasLayerBackup) view.layers = view.layerBackup;
        return NoAnswer(view.hasLayerBackup ? "layers restored" : "no layer backup");
    default:
        return NoAnswer(Text("unknown simple command %.0f", record.GetCommandType()));
    }
}

Answer ZoomArea(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_ZoomArea&>(base);
    ViewState& view = context.view;
    record.GetData(view.area[0], view.area[1], view.area[2], view.area[3]);
    view.hasZoomArea = true;
    view.fitted = false;
    view.zoomSteps = 0;
    return NoAnswer(Text("zoom area %g %g %g %g", view.area[0], view.area[1], view.area[2], view.area[3]));
}

Answer WindowPlacement(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_SetWindowPosition&>(base);
    viewer::Window& w = context.view.window;
    record.GetData(w.left, w.top, w.width, w.height);
    return NoAnswer(Text("window %.0f %.0f %.0f %.0f", w.left, w.top, w.width, w.height));
}

Answer Rotate(CKPRCI__Base& base, ViewerContext& context) {
    context.view.rotation = static_cast<CKPRCI_RotateBoard&>(base).GetAngle();
    return NoAnswer(Text("rotate %g", context.view.rotation));
}

Answer Title(CKPRCI__Base& base, ViewerContext& context) {
    context.view.title = static_cast<CKPRCI_Information_SetMainTitle&>(base).GetTitle();
    CKPRCI__BaseRV reply;
    return ReplyAnswer(reply, "title " + context.view.title.str());
}

Answer ObjectSwitch(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_ObjectOnOff&>(base);
    if (record.GetObjectType() == 1) context.view.componentsOn = record.IsOn();
    if (record.GetObjectType() == 2) context.view.routesOn = record.IsOn();
    return NoAnswer(Text("object %.0f on %.0f", record.GetObjectType(), record.IsOn()));
}

Answer ToolSwitch(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_ToolOnOff&>(base);
    if (record.GetToolType() == 1) context.view.pickingTool = record.IsOn();
    if (record.GetToolType() == 2) context.view.redMarkTool = record.IsOn();
    if (record.GetToolType() == 3) context.view.miniMap = record.IsOn();
    return NoAnswer(Text("tool %.0f on %.0f", record.GetToolType(), record.IsOn()));
}

}  // namespace

void RegisterViewHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_SimpleCMD::ClassID, Simple);
    dispatcher.Register(CKPRCI_ZoomArea::ClassID, ZoomArea);
    dispatcher.Register(CKPRCI_SetWindowPosition::ClassID, WindowPlacement);
    dispatcher.Register(CKPRCI_RotateBoard::ClassID, Rotate);
    dispatcher.Register(CKPRCI_Information_SetMainTitle::ClassID, Title);
    dispatcher.Register(CKPRCI_ObjectOnOff::ClassID, ObjectSwitch);
    dispatcher.Register(CKPRCI_ToolOnOff::ClassID, ToolSwitch);
}

}  // namespace viewer
