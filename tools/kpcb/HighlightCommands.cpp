// Highlights: named objects, a component's pins, a net section, net segments; the
// current colour and clearing.
#include <array>

#include "KPCBAPI.hpp"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

const Meanings kNamedMeanings = {{KPCB_ERR_200, "the object kind is not 0, 1 or 2"},
                                 {KPCB_ERR_201, "the viewer refused the highlight: no name of the list is on the board"}};

struct Named {
    int kind = 0;
    NameList names;
    int contrast = 0;
    std::string color = "255,0,0";
    int layerColorFromApi = 1;
    int layerNameType = 0;
    NameList layers;
};

// KIND NAME... --contrast, and with colour: --color, --layer-color-from-api.
Named& AddNamed(Command& c, bool withColor) {
    Named& h = c.Hold<Named>();
    c.parser()
        ->add_option("KIND", h.kind, "kind of the named objects: 0, 1 or 2, or nets, components, pins")
        ->required()
        ->transform(ObjectKindNames());
    AddNameList(c.parser(), h.names, "NAME", "the objects' names");
    c.parser()->add_option("--contrast", h.contrast, "the contrast value, sent as it is")->capture_default_str();
    if (withColor) {
        c.parser()->add_option("--color,-c", h.color, "R,G,B or #RRGGBB")->capture_default_str();
        c.parser()
            ->add_option("--layer-color-from-api", h.layerColorFromApi,
                         "non-zero: the layers take this colour rather than the viewer's layer colours")
            ->capture_default_str();
    }
    return h;
}

using ColorHighlight = int (*)(int, int, const char*, const char*, unsigned char, unsigned char, unsigned char, int, int);

void AddColorHighlight(Tool& tool, const std::string& name, const std::string& help, ColorHighlight call) {
    Command& c = tool.AddForViewer(name, help);
    Named& h = AddNamed(c, true);
    c.Does([&c, &h, call] {
        const Rgb rgb = ParseColor(h.color);
        const std::string text = h.names.Text(), separators = h.names.Separators();
        return c.Finish(call(c.Pid(), h.kind, text.c_str(), separators.c_str(), rgb.r, rgb.g, rgb.b, h.contrast,
                             h.layerColorFromApi),
                        kNamedMeanings);
    });
}

struct Pins {
    std::string ref;
    NameList pins;
    std::string color = "255,0,0";
    int layerColorFromApi = 1;
};

using PinHighlight = int (*)(int, const char*, const char*, const char*, unsigned char, unsigned char, unsigned char, int);

void AddPinHighlight(Tool& tool, const std::string& name, const std::string& help, PinHighlight call) {
    Command& c = tool.AddForViewer(name, help);
    Pins& p = c.Hold<Pins>();
    c.parser()->add_option("REF", p.ref, "the component's reference designator")->required();
    AddNameList(c.parser(), p.pins, "PIN", "its pins' names");
    c.parser()->add_option("--color,-c", p.color, "R,G,B or #RRGGBB")->capture_default_str();
    c.parser()
        ->add_option("--layer-color-from-api", p.layerColorFromApi,
                     "non-zero: the layers take this colour rather than the viewer's layer colours")
        ->capture_default_str();
    c.Does([&c, &p, call] {
        const Rgb rgb = ParseColor(p.color);
        const std::string text = p.pins.Text(), separators = p.pins.Separators();
        return c.Finish(
            call(c.Pid(), p.ref.c_str(), text.c_str(), separators.c_str(), rgb.r, rgb.g, rgb.b, p.layerColorFromApi),
            {{KPCB_ERR_200, "the viewer refused the pins: no such component"},
             {KPCB_ERR_201, "the viewer refused the pins: none of them is a pin of the component"}});
    });
}

void AddClear(Tool& tool, const std::string& name, const std::string& help, int (*call)(int)) {
    Command& c = tool.AddForViewer(name, help);
    c.Does([&c, call] { return c.Finish(call(c.Pid())); });
}

}  // namespace

void AddHighlightCommands(Tool& tool) {
    tool.Group("Highlight");
    {
        Command& c = tool.AddForViewer("highlight", "Highlights the named objects in red and waits for the viewer's "
                                                    "verdict (KPCB_Highlight).");
        Named& h = AddNamed(c, false);
        c.Does([&c, &h] {
            const std::string text = h.names.Text(), separators = h.names.Separators();
            return c.Finish(KPCB_Highlight(c.Pid(), h.kind, text.c_str(), separators.c_str(), h.contrast),
                            kNamedMeanings);
        });
    }
    AddColorHighlight(tool, "highlight-color", "Highlights the named objects in a colour (KPCB_Highlight_DependentColor).",
                      KPCB_Highlight_DependentColor);
    AddColorHighlight(tool, "highlight-all-layers",
                      "As highlight-color, on all layers (KPCB_Highlight_DependentColor_AllLayer).",
                      KPCB_Highlight_DependentColor_AllLayer);
    {
        Command& c = tool.AddForViewer("highlight-layers", "As highlight-color, on the named layers only "
                                                           "(KPCB_Highlight_SpecificLayer).");
        Named& h = AddNamed(c, true);
        c.parser()
            ->add_option("--layer,-l", h.layers.names, "a layer to highlight on (repeat for more)")
            ->required()
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        c.parser()->add_option("--layer-separators", h.layers.separators,
                               "characters that also split each --layer value into names");
        c.parser()
            ->add_option("--layer-name-type", h.layerNameType, "how the layers are named, sent as it is")
            ->capture_default_str();
        c.Does([&c, &h] {
            const Rgb rgb = ParseColor(h.color);
            const std::string text = h.names.Text(), separators = h.names.Separators();
            const std::string layers = h.layers.Text(), layerSeparators = h.layers.Separators();
            return c.Finish(KPCB_Highlight_SpecificLayer(c.Pid(), h.kind, text.c_str(), separators.c_str(), rgb.r,
                                                         rgb.g, rgb.b, h.contrast, h.layerColorFromApi,
                                                         h.layerNameType, layers.c_str(), layerSeparators.c_str()),
                            kNamedMeanings);
        });
    }
    AddPinHighlight(tool, "highlight-pins",
                    "Highlights pins of one component; any answer but 0 from the viewer fails (KPCB_Highlight_RefPin).",
                    KPCB_Highlight_RefPin);
    AddPinHighlight(tool, "highlight-pins-zoom", "As highlight-pins, and zooms to the pins (KPCB_Highlight_RefPin_Zoom).",
                    KPCB_Highlight_RefPin_Zoom);
    {
        Command& c = tool.AddForViewer("highlight-section", "Highlights and zooms to the section of a net between two "
                                                            "pins (KPCB_ZoomHighlightForSection_NetRefPin).");
        auto& s = c.Hold<std::array<std::string, 5>>();
        c.parser()->add_option("NET", s[0], "the net")->required();
        c.parser()->add_option("REF1", s[1], "the component at one end")->required();
        c.parser()->add_option("PIN1", s[2], "its pin")->required();
        c.parser()->add_option("REF2", s[3], "the component at the other end")->required();
        c.parser()->add_option("PIN2", s[4], "its pin")->required();
        c.Does([&c, &s] {
            return c.Finish(KPCB_ZoomHighlightForSection_NetRefPin(c.Pid(), s[0].c_str(), s[1].c_str(), s[2].c_str(),
                                                                   s[3].c_str(), s[4].c_str()),
                            {{KPCB_ERR_200, "the viewer refused the net section: an end is not a pin of the net"},
                             {KPCB_ERR_201, "the viewer refused the net section: no such net"}});
        });
    }
    {
        Command& c = tool.AddForViewer("highlight-net-segments", "Highlights and zooms to segments of a net, by index "
                                                                 "(KPCB_Highlight_ZoomNetSegment).");
        struct Segments {
            std::string net;
            std::vector<int> indexes;
            std::string color = "255,0,0";
        };
        Segments& s = c.Hold<Segments>();
        c.parser()->add_option("NET", s.net, "the net")->required();
        c.parser()->add_option("INDEX", s.indexes, "indexes of the net's segments");
        c.parser()->add_option("--color,-c", s.color, "R,G,B or #RRGGBB")->capture_default_str();
        c.Does([&c, &s] {
            const Rgb rgb = ParseColor(s.color);
            CArrayN indexes;
            for (const int index : s.indexes) indexes.Add(index);
            return c.Finish(
                KPCB_Highlight_ZoomNetSegment(c.Pid(), CString(s.net.c_str()), indexes, rgb.Colorref()),
                {{KPCB_SLOT_UNAVAILABLE, "no viewer serves this process id (this call does not test whether it runs), "
                                         "or another call is waiting for its answer"},
                 {KPCB_ERR_200, "the viewer refused the segments: no index, or one that is not the net's"},
                 {KPCB_ERR_201, "the viewer refused the segments: no such net"}});
        });
    }
    {
        Command& c = tool.AddForViewer("highlight-set-color", "Sets the viewer's current highlight colour "
                                                              "(KPCB_Highlight_SetCurrentColor).");
        auto& color = c.Hold<std::string>();
        c.parser()->add_option("COLOR", color, "R,G,B or #RRGGBB")->required();
        c.Does([&c, &color] {
            const Rgb rgb = ParseColor(color);
            return c.Finish(KPCB_Highlight_SetCurrentColor(c.Pid(), rgb.r, rgb.g, rgb.b));
        });
    }
    AddClear(tool, "highlight-clear", "Clears highlighting (KPCB_Highlight_Clear).", KPCB_Highlight_Clear);
    AddClear(tool, "highlight-clear-basic", "Clears all highlighting (KPCB_Highlight_Clear_Basic).",
             KPCB_Highlight_Clear_Basic);
    AddClear(tool, "highlight-clear-explorer", "Clears the explorer's highlighting (KPCB_Highlight_Clear_Explorer).",
             KPCB_Highlight_Clear_Explorer);
    AddClear(tool, "highlight-clear-picking", "Clears the picking tool's highlighting (KPCB_Highlight_Clear_Picking).",
             KPCB_Highlight_Clear_Picking);
}

}  // namespace kpcb
