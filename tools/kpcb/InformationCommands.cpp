// Information queries: pin counts, pitch, placement, the pins of a net.
#include <array>

#include "KPCBAPI.h"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

// The library hands a query's values over and drops the viewer's error code; a
// viewer that cannot answer puts its code in the value instead (a pin count of
// -200). Such a value is printed, then reported as that code.
const Meanings kValueMeanings = {
    {KPCB_ERR_200, "the viewer answered -200: no such object on the board"},
    {KPCB_ERR_201, "the viewer answered -201: the question has no answer for that object"},
    {KPCB_ERR_202, "the viewer answered -202: unknown unit or function code"},
};

int FinishValue(const Command& c, double value) {
    if (value >= 0 || value != static_cast<int>(value)) return kExitOk;
    return c.Finish(static_cast<int>(value), kValueMeanings);
}

void AddPinCount(Tool& tool, const std::string& name, const std::string& help, const std::string& what,
                 int (*call)(int, const wchar_t*, int*)) {
    Command& c = tool.AddForViewer(name, help);
    auto& key = c.Hold<std::string>();
    c.parser()->add_option(what, key)->required();
    c.Does([&c, &key, call] {
        int count = 0;
        const int status = call(c.Pid(), Wide(key).c_str(), &count);
        if (status != KPCB_OK) return c.Finish(status);
        c.out() << count << '\n';
        return FinishValue(c, count);
    });
}

struct Pitch {
    std::string ref;
    int unit = 0;
};

void AddPitch(Tool& tool, const std::string& name, const std::string& help,
              int (*call)(int, const wchar_t*, int, double*)) {
    Command& c = tool.AddForViewer(name, help);
    Pitch& p = c.Hold<Pitch>();
    c.parser()->add_option("REF", p.ref, "the component's reference designator")->required();
    c.parser()
        ->add_option("--unit,-u", p.unit, "the viewer's unit code, or mm, mil, inch, um")
        ->capture_default_str()
        ->transform(UnitNames());
    c.Does([&c, &p, call] {
        double pitch = 0;
        const int status = call(c.Pid(), Wide(p.ref).c_str(), p.unit, &pitch);
        if (status != KPCB_OK) return c.Finish(status);
        c.out() << Number(pitch) << '\n';
        return FinishValue(c, pitch);
    });
}

struct PlaceCount {
    NameList names;
    bool highlight = false;
};

void AddPlaceCount(Tool& tool, const std::string& name, const std::string& help, const std::string& what,
                   int (*call)(int, const wchar_t*, const wchar_t*, int*, int*, int*, int)) {
    Command& c = tool.AddForViewer(name, help);
    PlaceCount& p = c.Hold<PlaceCount>();
    AddNameList(c.parser(), p.names, what, "the names");
    c.parser()->add_flag("--highlight", p.highlight, "the viewer also highlights what it counts");
    c.Does([&c, &p, call] {
        int top = 0, bottom = 0, other = 0;
        const int status = call(c.Pid(), Wide(p.names.Text()).c_str(), Wide(p.names.Separators()).c_str(), &top,
                                &bottom, &other, p.highlight ? 1 : 0);
        if (status != KPCB_OK) return c.Finish(status);
        c.out() << "top " << top << "\nbottom " << bottom << "\nother " << other << '\n';
        return kExitOk;
    });
}

}  // namespace

void AddInformationCommands(Tool& tool) {
    tool.Group("Information queries");
    AddPinCount(tool, "pin-count-part", "Prints the pin count of a part (KPCB_GetPinCountFromPart).", "PART",
                KPCB_GetPinCountFromPart);
    AddPinCount(tool, "pin-count-ref", "Prints the pin count of a placed component (KPCB_GetPinCountFromReference).",
                "REF", KPCB_GetPinCountFromReference);
    AddPitch(tool, "pin-pitch", "Prints the pin pitch of a component (KPCB_GetPinPitch).", KPCB_GetPinPitch);
    AddPitch(tool, "pin-pitch-2pin", "Prints the pin pitch of a two-pin component "
                                     "(KPCB_GetPinPitchFrom2PinComponent).",
             KPCB_GetPinPitchFrom2PinComponent);
    {
        Command& c = tool.AddForViewer("place-status", "Prints the placement status of a component "
                                                       "(KPCB_GetReferencePlaceStatus).");
        struct Place {
            std::string ref;
            bool highlight = false;
        };
        Place& p = c.Hold<Place>();
        c.parser()->add_option("REF", p.ref, "the component's reference designator")->required();
        c.parser()->add_flag("--highlight", p.highlight, "the viewer also highlights the component");
        c.Does([&c, &p] {
            int value = 0;
            const int status = KPCB_GetReferencePlaceStatus(c.Pid(), Wide(p.ref).c_str(), &value, p.highlight ? 1 : 0);
            if (status != KPCB_OK) return c.Finish(status);
            c.out() << value << '\n';
            return FinishValue(c, value);
        });
    }
    AddPlaceCount(tool, "place-count", "Prints how many of the components are placed on top, on the bottom, and "
                                       "neither (KPCB_GetReferenceCountForPlace).",
                  "REF", KPCB_GetReferenceCountForPlace);
    AddPlaceCount(tool, "place-count-part", "The same for the components of the parts "
                                            "(KPCB_GetReferenceCountForPlaceOfPart).",
                  "PART", KPCB_GetReferenceCountForPlaceOfPart);
    {
        Command& c = tool.AddForViewer("net-pins", "Prints the net of a pin, then every component pin on that net, "
                                                   "one per line (KPCB_GetPinListInfoOfNet_RefPin).");
        auto& pin = c.Hold<std::array<std::string, 2>>();
        c.parser()->add_option("REF", pin[0], "the component's reference designator")->required();
        c.parser()->add_option("PIN", pin[1], "the pin's name")->required();
        c.Does([&c, &pin] {
            LibraryString net, pins;
            const int status = KPCB_GetPinListInfoOfNet_RefPin(c.Pid(), Wide(pin[0]).c_str(), Wide(pin[1]).c_str(),
                                                               &net.text, &pins.text, L"\n");
            if (status != KPCB_OK) return c.Finish(status, {{KPCB_ERR_200, "the viewer knows no such pin"}});
            c.out() << Narrow(net.text) << '\n';
            PrintLines(c.out(), Narrow(pins.text));
            return kExitOk;
        });
    }
}

}  // namespace kpcb
