// Layer visibility, and the viewer's memory of it.
#include "KPCBAPI.hpp"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

struct Visible {
    std::string value;
    NameList layers;
};

void AddVisible(Tool& tool, const std::string& name, const std::string& help,
                int (*call)(int, const char*, const char*, int)) {
    Command& c = tool.AddForViewer(name, help);
    Visible& v = c.Hold<Visible>();
    c.parser()->add_option("VALUE", v.value, "on (show), off (hide), or a whole number sent as it is")->required();
    AddNameList(c.parser(), v.layers, "LAYER", "the layers' names");
    c.Does([&c, &v, call] {
        const int visible = ParseSwitch(v.value);
        const std::string text = v.layers.Text(), separators = v.layers.Separators();
        return c.Finish(call(c.Pid(), text.c_str(), separators.c_str(), visible));
    });
}

void AddOnly(Tool& tool, const std::string& name, const std::string& help, int (*call)(int, const char*, const char*)) {
    Command& c = tool.AddForViewer(name, help);
    NameList& layers = c.Hold<NameList>();
    AddNameList(c.parser(), layers, "LAYER", "the layers' names");
    c.Does([&c, &layers, call] {
        const std::string text = layers.Text(), separators = layers.Separators();
        return c.Finish(call(c.Pid(), text.c_str(), separators.c_str()));
    });
}

void AddSimple(Tool& tool, const std::string& name, const std::string& help, int (*call)(int)) {
    Command& c = tool.AddForViewer(name, help);
    c.Does([&c, call] { return c.Finish(call(c.Pid())); });
}

}  // namespace

void AddLayerCommands(Tool& tool) {
    tool.Group("Layer visibility");
    AddVisible(tool, "visible-layers", "Shows or hides the named layers; the others stay as they are "
                                       "(KPCB_Visible_Layers).",
               KPCB_Visible_Layers);
    AddOnly(tool, "visible-layers-only", "Shows only the named layers (KPCB_Visible_Layers_Only).",
            KPCB_Visible_Layers_Only);
    AddVisible(tool, "visible-ecad-layers", "As visible-layers, with the ECAD system's layer names "
                                            "(KPCB_Visible_ECAD_Layers).",
               KPCB_Visible_ECAD_Layers);
    AddOnly(tool, "visible-ecad-layers-only", "As visible-layers-only, with the ECAD system's layer names "
                                              "(KPCB_Visible_ECAD_Layers_Only).",
            KPCB_Visible_ECAD_Layers_Only);
    AddSimple(tool, "backup-layers", "Makes the viewer remember its current layer visibility "
                                     "(KPCB_Backup_Current_Layers).",
              KPCB_Backup_Current_Layers);
    AddSimple(tool, "restore-layers", "Makes the viewer restore the layer visibility it remembered "
                                      "(KPCB_Restore_Current_Layers).",
              KPCB_Restore_Current_Layers);
}

}  // namespace kpcb
