// View control: zoom steps and areas, board side, mirror, rotation, the window,
// its title, and the on/off switches.
#include <array>

#include "KPCBAPI.hpp"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

void AddSimple(Tool& tool, const std::string& name, const std::string& help, int (*call)(int)) {
    Command& c = tool.AddForViewer(name, help);
    c.Does([&c, call] { return c.Finish(call(c.Pid())); });
}

// Two corners of an area in board coordinates.
std::array<double, 4>& AddCorners(Command& c) {
    auto& corners = c.Hold<std::array<double, 4>>();
    const char* names[] = {"X1", "Y1", "X2", "Y2"};
    for (int i = 0; i < 4; ++i) c.parser()->add_option(names[i], corners[i], "corner coordinate")->required();
    return corners;
}

void AddSwitch(Tool& tool, const std::string& name, const std::string& what, const std::string& function,
               int (*call)(int, int)) {
    Command& c = tool.AddForViewer(name, "Switches " + what + " on or off (" + function + ").");
    auto& value = c.Hold<std::string>();
    c.parser()->add_option("VALUE", value, "on, off, or a whole number sent as it is (non-zero is on)")->required();
    c.Does([&c, &value, call] {
        const int onOff = ParseSwitch(value);
        return c.Finish(call(c.Pid(), onOff));
    });
}

}  // namespace

void AddViewCommands(Tool& tool) {
    tool.Group("View control");
    AddSimple(tool, "zoom-in", "Zooms in one step (KPCB_ZoomIn).", KPCB_ZoomIn);
    AddSimple(tool, "zoom-out", "Zooms out one step (KPCB_ZoomOut).", KPCB_ZoomOut);
    AddSimple(tool, "zoom-fit", "Zooms so that the whole board fits (KPCB_ZoomFitSize).", KPCB_ZoomFitSize);
    AddSimple(tool, "view-top", "Shows the top side (KPCB_ViewLayer_Top).", KPCB_ViewLayer_Top);
    AddSimple(tool, "view-bottom", "Shows the bottom side (KPCB_ViewLayer_Btm).", KPCB_ViewLayer_Btm);
    AddSimple(tool, "view-all", "Shows both sides (KPCB_ViewLayer_All).", KPCB_ViewLayer_All);
    AddSimple(tool, "mirror", "Mirrors the view (KPCB_ViewMirror).", KPCB_ViewMirror);
    AddSimple(tool, "mirror-clear", "Cancels mirroring (KPCB_ViewMirror_Clear).", KPCB_ViewMirror_Clear);
    {
        Command& c = tool.AddForViewer("zoom-area", "Shows the area between two corners, in board coordinates "
                                                    "(KPCB_ZoomArea).");
        auto& a = AddCorners(c);
        c.Does([&c, &a] { return c.Finish(KPCB_ZoomArea(c.Pid(), &a[0], &a[1], &a[2], &a[3])); });
    }
    {
        Command& c = tool.AddForViewer("set-zoom-area", "As zoom-area, through the C++ entry point (KPCB_SetZoomArea).");
        auto& a = AddCorners(c);
        c.Does([&c, &a] { return c.Finish(KPCB_SetZoomArea(c.Pid(), a[0], a[1], a[2], a[3])); });
    }
    {
        Command& c = tool.AddForViewer("rotate", "Rotates the board view (KPCB_RotateBoard).");
        auto& angle = c.Hold<double>(0);
        c.parser()->add_option("ANGLE", angle, "degrees, counter-clockwise")->required();
        c.Does([&c, &angle] { return c.Finish(KPCB_RotateBoard(c.Pid(), &angle)); });
    }
    {
        Command& c = tool.AddForViewer("window-position", "Places the viewer's main window (KPCB_SetWindowPosition).");
        auto& v = c.Hold<std::array<int, 4>>();
        c.parser()->add_option("LEFT", v[0])->required();
        c.parser()->add_option("TOP", v[1])->required();
        c.parser()->add_option("WIDTH", v[2])->required();
        c.parser()->add_option("HEIGHT", v[3])->required();
        c.Does([&c, &v] { return c.Finish(KPCB_SetWindowPosition(c.Pid(), v[0], v[1], v[2], v[3])); });
    }
    {
        Command& c = tool.AddForViewer("title", "Sets the main window's title and waits for the viewer "
                                                "(KPCB_SetMainTitle).");
        auto& title = c.Hold<std::string>();
        c.parser()->add_option("TEXT", title, "the title")->required();
        c.Does([&c, &title] {
            return c.Finish(KPCB_SetMainTitle(c.Pid(), title.c_str()), {{KPCB_ERR_201, "the viewer refused the title"}});
        });
    }
    AddSwitch(tool, "components", "the components", "KPCB_Component_OnOff", KPCB_Component_OnOff);
    AddSwitch(tool, "routes", "the routes", "KPCB_Route_OnOff", KPCB_Route_OnOff);
    AddSwitch(tool, "picking-tool", "the picking tool", "KPCB_PickingTool_OnOff", KPCB_PickingTool_OnOff);
    AddSwitch(tool, "red-mark-tool", "the red-mark tool", "KPCB_RedMark_OnOff", KPCB_RedMark_OnOff);
    AddSwitch(tool, "minimap", "the minimap", "KPCB_MiniMap_OnOff", KPCB_MiniMap_OnOff);
}

}  // namespace kpcb
