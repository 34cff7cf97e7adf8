// The IPC-2581 reader on small documents written here: the conversions that are easy
// to get wrong (units, a mirrored bottom component, polygon pads, areas with cutouts,
// vias), and bad input.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Ipc2581Import.h"

namespace {

std::string Document(const std::string& content, const std::string& step, const std::string& revision = "C") {
    return "<?xml version=\"1.0\"?>\n<IPC-2581 revision=\"" + revision + "\" xmlns=\"http://webstds.ipc.org/2581\">\n" +
           content + "<Ecad name=\"e\"><CadHeader units=\"INCH\"/><CadData>\n" +
           "<Layer name=\"SST\" layerFunction=\"SILKSCREEN\" side=\"TOP\"/>\n"
           "<Layer name=\"BOTTOM\" layerFunction=\"CONDUCTOR\" side=\"BOTTOM\"/>\n"
           "<Layer name=\"CORE\" layerFunction=\"DIELCORE\" side=\"INTERNAL\"/>\n"
           "<Layer name=\"TOP\" layerFunction=\"CONDUCTOR\" side=\"TOP\"/>\n"
           "<Layer name=\"D12\" layerFunction=\"DRILL\" side=\"ALL\"><Span fromLayer=\"TOP\" toLayer=\"BOTTOM\"/></Layer>\n"
           "<Stackup name=\"s\"><StackupGroup name=\"g\">\n"
           "<StackupLayer layerOrGroupRef=\"SST\" sequence=\"0\"/><StackupLayer layerOrGroupRef=\"BOTTOM\" sequence=\"3\"/>\n"
           "<StackupLayer layerOrGroupRef=\"TOP\" sequence=\"1\"/><StackupLayer layerOrGroupRef=\"CORE\" sequence=\"2\"/>\n"
           "</StackupGroup></Stackup>\n" +
           step + "</CadData></Ecad></IPC-2581>\n";
}

// Dictionaries in their own units: microns for the standard ones, millimetres for the user ones.
const char* const kContent = R"(<Content>
<DictionaryStandard units="MICRON">
  <EntryStandard id="RECT"><RectCenter width="1000" height="500"/></EntryStandard>
  <EntryStandard id="VIAPAD"><Circle diameter="600"/></EntryStandard>
</DictionaryStandard>
<DictionaryUser units="MILLIMETER">
  <EntryUser id="TRI"><UserSpecial><Contour><Polygon>
    <PolyBegin x="0" y="0"/><PolyStepSegment x="1" y="0"/><PolyStepSegment x="0" y="2"/><PolyStepSegment x="0" y="0"/>
  </Polygon></Contour></UserSpecial></EntryUser>
</DictionaryUser>
<DictionaryLineDesc units="MILLIMETER"><EntryLineDesc id="W"><LineDesc lineWidth="0.2"/></EntryLineDesc></DictionaryLineDesc>
</Content>
)";

const char* const kStep = R"(<Step name="pcb">
<Profile><Polygon><PolyBegin x="0" y="0"/><PolyStepSegment x="2" y="0"/><PolyStepSegment x="2" y="1"/>
  <PolyStepSegment x="0" y="1"/><PolyStepSegment x="0" y="0"/></Polygon></Profile>
<Package name="PKG">
  <Pin number="1"><Location x="-0.05" y="0"/><StandardPrimitiveRef id="RECT"/></Pin>
  <Pin number="2"><Xform rotation="90"/><Location x="0.05" y="0"/><UserPrimitiveRef id="TRI"/></Pin>
</Package>
<Component refDes="U1" packageRef="PKG" part="CHIP" layerRef="BOTTOM"><Xform rotation="90" mirror="true"/><Location x="1" y="1"/></Component>
<LogicalNet name="GND"><PinRef componentRef="U1" pin="1"/></LogicalNet>
<LayerFeature layerRef="TOP">
  <Set net="GND"><Features><Line startX="0" startY="0" endX="1" endY="0"><LineDesc lineWidth="0.01"/></Line></Features></Set>
  <Set net="GND"><Features><Polyline><PolyBegin x="1" y="0"/><PolyStepCurve x="1.2" y="0.2" centerX="1" centerY="0.2" clockwise="false"/>
    <LineDescRef id="W"/></Polyline></Features></Set>
  <Set net="GND"><Pad><Location x="0.5" y="0.2"/><StandardPrimitiveRef id="VIAPAD"/></Pad></Set>
  <Set net="GND"><Pad><Location x="1" y="1.05"/><StandardPrimitiveRef id="RECT"/><PinRef componentRef="U1" pin="P1"/></Pad></Set>
  <Set net="PLANE"><Features><Contour>
    <Polygon><PolyBegin x="0" y="0"/><PolyStepSegment x="1" y="0"/><PolyStepSegment x="1" y="1"/><PolyStepSegment x="0" y="1"/></Polygon>
    <Cutout><PolyBegin x="0.4" y="0.4"/><PolyStepSegment x="0.6" y="0.4"/><PolyStepSegment x="0.6" y="0.6"/></Cutout>
  </Contour></Features></Set>
</LayerFeature>
<LayerFeature layerRef="D12"><Set net="GND"><Hole name="h" diameter="0.012" platingStatus="VIA" x="0.5" y="0.2"/></Set></LayerFeature>
</Step>
)";

bool HasPoint(const CArrayPointD& points, const CPointD& p) {
    for (INT_PTR i = 0; i < points.GetSize(); ++i)
        if (points[i].Distance(p) < 1e-9) return true;
    return false;
}

TEST(Ipc2581Import, ConvertsTheBoard) {
    const std::string path = (std::filesystem::temp_directory_path() / "kpcb_ipc2581_test.xml").string();
    std::ofstream(path) << Document(kContent, kStep);
    std::vector<std::string> warnings;
    std::string error;
    ASSERT_TRUE(IsIpc2581File(path));
    auto board = ImportIpc2581File(path, {}, warnings, error);
    std::remove(path.c_str());
    ASSERT_TRUE(board) << error;
    EXPECT_TRUE(warnings.empty()) << warnings.front();

    // Stack-up order, dielectrics left out, the drill layer after.
    const CPDBLayerManager& layers = board->GetLayerManager();
    ASSERT_EQ(layers.GetLayerCount(), 4);
    const char* const names[] = {"SST", "TOP", "BOTTOM", "D12"};
    const LayerKind kinds[] = {LayerKind::Silk, LayerKind::Copper, LayerKind::Copper, LayerKind::Drill};
    for (int i = 0; i < 4; ++i) {
        EXPECT_STREQ(layers.GetLayer(i)->GetEcadName().GetString(), names[i]);
        EXPECT_EQ(layers.GetLayer(i)->GetKind(), kinds[i]);
    }
    EXPECT_EQ(board->GetOutline().GetSize(), 4);  // the closing point dropped
    EXPECT_TRUE(HasPoint(board->GetOutline(), CPointD(50.8, 25.4)));

    // Bottom component: mirrored, then turned 90 degrees, at (1, 1) inch (its side and
    // rotation, and the nets of pins, are checked on real boards).
    CPComp* u1 = board->FindComp("U1");
    ASSERT_TRUE(u1);
    EXPECT_TRUE(u1->IsMirrored());
    EXPECT_STREQ(u1->GetPartName().GetString(), "CHIP");
    EXPECT_EQ(u1->GetPinCount(), 2);  // the copper pad naming pin 1 otherwise is pin 1's pad
    CPRefPin* pin1 = u1->FindPin("1");
    CPRefPin* pin2 = u1->FindPin("2");
    ASSERT_TRUE(pin1 && pin2);
    EXPECT_NEAR(pin1->GetPosition().x, 25.4, 1e-9);
    EXPECT_NEAR(pin1->GetPosition().y, 26.67, 1e-9);
    EXPECT_NEAR(pin2->GetPosition().y, 24.13, 1e-9);
    EXPECT_EQ(pin1->GetShape(), PadShape::Rect);
    EXPECT_DOUBLE_EQ(pin1->GetSizeX(), 1.0);
    EXPECT_DOUBLE_EQ(pin1->GetSizeY(), 0.5);
    EXPECT_DOUBLE_EQ(pin1->GetPadAngle(), 90);
    // The triangle turned 90 by its pin, then mirrored and turned 90 by the component.
    ASSERT_EQ(pin2->GetShape(), PadShape::Polygon);
    ASSERT_EQ(pin2->GetPadOutline().size(), 1u);
    EXPECT_TRUE(HasPoint(pin2->GetPadOutline()[0], CPointD(-1, 0)));
    EXPECT_TRUE(HasPoint(pin2->GetPadOutline()[0], CPointD(0, 2)));

    // Routing: a track, an arc from a polyline, a via from the hole and its pad.
    const CPRouteNet& route = board->FindNet("GND")->GetRoute();
    ASSERT_EQ(route.GetCount(), 3);
    EXPECT_DOUBLE_EQ(route.GetAt(0)->GetWidth(), 0.254);
    EXPECT_DOUBLE_EQ(route.GetAt(0)->GetLine().p2.x, 25.4);
    ASSERT_TRUE(route.GetAt(1)->IsArc());
    EXPECT_DOUBLE_EQ(route.GetAt(1)->GetWidth(), 0.2);
    EXPECT_FALSE(route.GetAt(1)->IsClockwise());
    const CPRouteDObj* via = route.GetAt(2);
    ASSERT_TRUE(via->IsVia());
    EXPECT_DOUBLE_EQ(via->GetWidth(), 0.6);
    EXPECT_NEAR(via->GetDrill(), 0.3048, 1e-12);
    EXPECT_EQ(via->GetLastLayer(), 2);

    ASSERT_EQ(board->GetAreaCount(), 1);
    const CPArea* area = board->GetArea(0);
    EXPECT_EQ(area->GetLayer(), 1);
    ASSERT_EQ(area->GetHoleCount(), 1);
    EXPECT_FALSE(area->ContainsPoint(CPointD(0.55 * 25.4, 0.45 * 25.4)));
    EXPECT_TRUE(area->ContainsPoint(CPointD(0.2 * 25.4, 0.2 * 25.4)));
    EXPECT_STREQ(area->GetNet()->GetName().GetString(), "PLANE");

    CString problem;
    EXPECT_TRUE(board->Validate(problem)) << problem.GetString();
}

// Each standard primitive as a pin's pad: the simple shapes stay simple, the others
// become outlines of the right number of contours (even-odd: a donut is two).
TEST(Ipc2581Import, ConvertsPrimitives) {
    struct Case {
        const char* element;
        PadShape shape;
        double sizeX, sizeY;
        size_t contours;
    };
    const Case cases[] = {
        {"<Circle diameter=\"1\"/>", PadShape::Round, 1, 1, 0},
        {"<Oval width=\"2\" height=\"1\"/>", PadShape::Oblong, 2, 1, 0},
        {"<RectRound width=\"2\" height=\"1\" radius=\"0.5\"/>", PadShape::Oblong, 2, 1, 0},
        {"<RectRound width=\"2\" height=\"1\" radius=\"0.2\" upperRight=\"true\"/>", PadShape::Polygon, 2, 1, 1},
        {"<RectCham width=\"2\" height=\"1\" chamfer=\"0.2\"/>", PadShape::Polygon, 2, 1, 1},
        {"<Ellipse width=\"1\" height=\"1\"/>", PadShape::Round, 1, 1, 0},
        {"<Donut shape=\"ROUND\" outerDiameter=\"2\" innerDiameter=\"1\"/>", PadShape::Polygon, 2, 2, 2},
        {"<Thermal shape=\"ROUND\" outerDiameter=\"2\" innerDiameter=\"1\" spokeCount=\"4\" gap=\"0.2\"/>",
         PadShape::Polygon, 2, 2, 4},
        {"<Diamond width=\"2\" height=\"1\"/>", PadShape::Polygon, 2, 1, 1},
        {"<Octagon length=\"2\"/>", PadShape::Polygon, 2, 2, 1},
    };
    std::string dictionary = "<Content><DictionaryStandard units=\"MILLIMETER\">";
    std::string package = "<Step name=\"s\"><Package name=\"P\">";
    int index = 0;
    for (const Case& c : cases) {
        const std::string id = std::to_string(++index);
        dictionary += "<EntryStandard id=\"" + id + "\">" + c.element + "</EntryStandard>";
        package += "<Pin number=\"" + id + "\"><Location x=\"0.1\" y=\"0\"/><StandardPrimitiveRef id=\"" + id + "\"/></Pin>";
    }
    const std::string document =
        Document(dictionary + "</DictionaryStandard></Content>",
                 package + "</Package><Component refDes=\"U\" packageRef=\"P\" layerRef=\"TOP\"><Location x=\"0\" y=\"0\"/></Component></Step>");
    std::vector<std::string> warnings;
    std::string error;
    auto board = ImportIpc2581Buffer(document.data(), document.size(), {}, warnings, error);
    ASSERT_TRUE(board) << error;
    CPComp* comp = board->FindComp("U");
    ASSERT_TRUE(comp);
    ASSERT_EQ(comp->GetPinCount(), index);
    for (int i = 0; i < index; ++i) {
        SCOPED_TRACE(cases[i].element);
        const CPRefPin* pin = comp->GetPin(i);
        EXPECT_EQ(pin->GetShape(), cases[i].shape);
        EXPECT_NEAR(pin->GetSizeX(), cases[i].sizeX, 1e-9);
        EXPECT_NEAR(pin->GetSizeY(), cases[i].sizeY, 1e-9);
        EXPECT_EQ(pin->GetPadOutline().size(), cases[i].contours);
    }
}

TEST(Ipc2581Import, ReportsBadInput) {
    const std::string good = Document(kContent, kStep);
    const std::string truncated = good.substr(0, good.size() / 2);
    const std::string step = kStep;
    auto replace = [](std::string text, const std::string& from, const std::string& to) {
        return text.replace(text.find(from), from.size(), to);
    };
    struct Case {
        const char* name;
        std::string document;
        const char* error;    // expected in the error; null: the board is read
        const char* warning;  // expected in a warning
    };
    const Case cases[] = {
        {"truncated", truncated, "line ", nullptr},
        {"not xml", "this is not XML", "line 1", nullptr},
        {"other root", "<?xml version=\"1.0\"?><board/>", "line 1: board: not an IPC-2581 document", nullptr},
        {"other revision", Document(kContent, kStep, "A"), "revision \"A\"", nullptr},
        {"bad number", replace(good, "x=\"-0.05\"", "x=\"left\""), "Location: attribute x is not a number", nullptr},
        {"bad units", replace(good, "units=\"INCH\"", "units=\"FURLONG\""), "CadHeader: unknown units FURLONG", nullptr},
        {"no such step", Document(kContent, replace(step, "name=\"pcb\"", "name=\"other\"")), "no Step named pcb", nullptr},
        {"unknown primitive", replace(good, "<Circle diameter=\"600\"/>", "<Squiggle/>"), nullptr,
         "Squiggle: unknown primitive Squiggle"},
        {"missing entry", replace(good, "<StandardPrimitiveRef id=\"RECT\"/>", "<StandardPrimitiveRef id=\"NOPE\"/>"),
         nullptr, "StandardPrimitiveRef: no dictionary entry NOPE"},
        {"pad of no component", replace(good, "VIAPAD\"/></Pad>", "VIAPAD\"/><PinRef componentRef=\"U9\" pin=\"1\"/></Pad>"),
         nullptr, "pads of pins of component \"U9\", which is not placed: skipped"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::string> warnings;
        std::string error;
        Ipc2581ImportOptions options;
        if (std::string(c.name) == "no such step") options.step = "pcb";
        auto board = ImportIpc2581Buffer(c.document.data(), c.document.size(), options, warnings, error);
        if (c.error) {
            EXPECT_FALSE(board);
            EXPECT_NE(error.find(c.error), std::string::npos) << error;
            EXPECT_EQ(error.rfind("line ", 0), 0u) << error;
        } else {
            ASSERT_TRUE(board) << error;
            bool found = false;
            for (const std::string& w : warnings) found = found || w.find(c.warning) != std::string::npos;
            EXPECT_TRUE(found) << (warnings.empty() ? "no warning" : warnings.front());
        }
    }
}

}  // namespace
