// The reference viewer's answers to the information queries and its highlight and
// explorer verdicts, against the sample board (and a small board of the test's own
// for what the sample lacks). Every expected value is worked out here from the
// board's text form.
#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "ViewerSession.h"

using namespace viewer_board_test;
using text_board::Comp;
using text_board::Pin;

namespace {

double Distance(const Pin& a, const Pin& b) { return std::hypot(a.at.x - b.at.x, a.at.y - b.at.y); }

std::string JoinRefs(const std::vector<std::string>& names, const std::string& delimiter) {
    std::string out;
    for (size_t i = 0; i < names.size(); ++i) out += (i ? delimiter : "") + names[i];
    return out;
}

int SideStatus(const std::string& side) { return side == "TOP" ? 1 : side == "BOTTOM" ? 2 : 0; }

}  // namespace

TEST_F(BoardTest, PinCountsOfEveryComponentAndPart) {
    UseSample();
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    for (const Comp& comp : text.comps) {
        int count = -1;
        EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid, Wide(comp.ref).c_str(), &count), 0);
        EXPECT_EQ(count, static_cast<int>(comp.pins.size())) << comp.ref;
    }
    for (const std::string& part : text.parts) {
        const auto first = std::find_if(text.comps.begin(), text.comps.end(),
                                        [&](const Comp& c) { return c.part == part; });
        ASSERT_NE(first, text.comps.end()) << "every part of the sample has components";
        int count = -1;
        EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid, Wide(part).c_str(), &count), 0);
        EXPECT_EQ(count, static_cast<int>(first->pins.size())) << part;
    }
    int count = 0;
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid, L"NO_SUCH_REF", &count), 0);
    EXPECT_EQ(count, -200);
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid, L"NO_SUCH_PART", &count), 0);
    EXPECT_EQ(count, -200);
    EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid, nullptr, &count), 0);
    EXPECT_EQ(count, -200);
}

TEST_F(BoardTest, PitchOfEveryComponentInEveryUnit) {
    UseSample();
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const double mmPerUnit[] = {1, 0.0254, 25.4, 0.001};
    for (const Comp& comp : text.comps) {
        double smallest = std::numeric_limits<double>::infinity();
        for (size_t i = 0; i < comp.pins.size(); ++i)
            for (size_t j = i + 1; j < comp.pins.size(); ++j) {
                const double d = Distance(comp.pins[i], comp.pins[j]);
                if (d > 0) smallest = std::min(smallest, d);
            }
        for (int unit = 0; unit < 4; ++unit) {
            double pitch = 0;
            EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, Wide(comp.ref).c_str(), unit, &pitch), 0);
            if (std::isinf(smallest))
                EXPECT_EQ(pitch, -201) << comp.ref << " has no two pins";
            else
                EXPECT_NEAR(pitch, smallest / mmPerUnit[unit], 1e-5 / mmPerUnit[unit]) << comp.ref << " unit " << unit;

            double twoPin = 0;
            EXPECT_EQ(KPCB_GetPinPitchFrom2PinComponent(viewer.pid, Wide(comp.ref).c_str(), unit, &twoPin), 0);
            if (comp.pins.size() == 2)
                EXPECT_NEAR(twoPin, Distance(comp.pins[0], comp.pins[1]) / mmPerUnit[unit], 1e-5 / mmPerUnit[unit])
                    << comp.ref;
            else
                EXPECT_EQ(twoPin, -201) << comp.ref << " has " << comp.pins.size() << " pins";
        }
    }
    double pitch = 0;
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, Wide(text.comps[0].ref).c_str(), 4, &pitch), 0);
    EXPECT_EQ(pitch, -202) << "unknown unit";
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, Wide(text.comps[0].ref).c_str(), -1, &pitch), 0);
    EXPECT_EQ(pitch, -202) << "unknown unit";
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, L"NO_SUCH_REF", 0, &pitch), 0);
    EXPECT_EQ(pitch, -200);
}

TEST_F(BoardTest, PlacementOfEveryComponentAndCountsOfListsAndParts) {
    UseSample();
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    int expected[3] = {0, 0, 0};  // not placed, top, bottom
    std::vector<std::string> refs;
    for (const Comp& comp : text.comps) {
        int status = -1;
        EXPECT_EQ(KPCB_GetReferencePlaceStatus(viewer.pid, Wide(comp.ref).c_str(), &status, comp.pins.size() % 2), 0);
        EXPECT_EQ(status, SideStatus(comp.side)) << comp.ref;
        ++expected[SideStatus(comp.side)];
        refs.push_back(comp.ref);
    }
    int status = 0;
    EXPECT_EQ(KPCB_GetReferencePlaceStatus(viewer.pid, L"NO_SUCH_REF", &status, 1), 0);
    EXPECT_EQ(status, -200);

    // Every entry counts once; unknown names count as other.
    refs.push_back("NO_SUCH_REF");
    int top = -1, bottom = -1, other = -1;
    EXPECT_EQ(KPCB_GetReferenceCountForPlace(viewer.pid, Wide(JoinRefs(refs, " ; ")).c_str(), L";", &top, &bottom,
                                             &other, 1),
              0);
    EXPECT_EQ(top, expected[1]);
    EXPECT_EQ(bottom, expected[2]);
    EXPECT_EQ(other, expected[0] + 1);

    const Comp& someTop =
        *std::find_if(text.comps.begin(), text.comps.end(), [](const Comp& c) { return c.side == "TOP"; });
    const std::wstring twice = Wide(someTop.ref + "," + someTop.ref);
    EXPECT_EQ(KPCB_GetReferenceCountForPlace(viewer.pid, twice.c_str(), L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top, 2) << "a repeated name counts each time";
    EXPECT_EQ(bottom + other, 0);

    // Parts: every component of every named part.
    std::vector<std::string> parts = text.parts;
    parts.push_back("NO_SUCH_PART");
    EXPECT_EQ(KPCB_GetReferenceCountForPlaceOfPart(viewer.pid, Wide(JoinRefs(parts, ",")).c_str(), L",", &top,
                                                   &bottom, &other, 1),
              0);
    EXPECT_EQ(top, expected[1]);
    EXPECT_EQ(bottom, expected[2]);
    EXPECT_EQ(other, expected[0] + 1);
    const std::string part = text.comps.back().part;
    int partTop = 0, partBottom = 0;
    for (const Comp& comp : text.comps)
        if (comp.part == part) (comp.side == "TOP" ? partTop : partBottom) += 1;
    EXPECT_EQ(KPCB_GetReferenceCountForPlaceOfPart(viewer.pid, Wide(part).c_str(), L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top, partTop);
    EXPECT_EQ(bottom, partBottom);
    EXPECT_EQ(other, 0);
    EXPECT_EQ(KPCB_GetReferenceCountForPlace(viewer.pid, nullptr, L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top + bottom + other, 0) << "an empty list counts nothing";
}

TEST_F(BoardTest, EveryPinNamesItsNetAndTheNetsPins) {
    UseSample();
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    int connected = 0, unconnected = 0;
    for (const Comp& comp : text.comps) {
        for (const Pin& pin : comp.pins) {
            OwnedString net, pins;
            ASSERT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid, Wide(comp.ref).c_str(), Wide(pin.name).c_str(),
                                                      &net.text, &pins.text, L"|"),
                      0);
            std::vector<std::string> expected;
            if (!pin.net.empty())
                for (const Comp& c : text.comps)
                    for (const Pin& p : c.pins)
                        if (p.net == pin.net) expected.push_back(c.ref + "-" + p.name);
            EXPECT_EQ(net.str(), Wide(pin.net)) << comp.ref << "-" << pin.name;
            EXPECT_EQ(pins.str(), Wide(JoinRefs(expected, "|"))) << comp.ref << "-" << pin.name;
            ++(pin.net.empty() ? unconnected : connected);
        }
    }
    EXPECT_GT(connected, 0);
    EXPECT_GT(unconnected, 0) << "the sample has unconnected pins: they answer an empty net and list";

    wchar_t* net = nullptr;
    wchar_t* pins = nullptr;
    EXPECT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid, Wide(text.comps[0].ref).c_str(), L"NO_SUCH_PIN", &net,
                                              &pins, L","),
              -200);
    EXPECT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid, L"NO_SUCH_REF", L"1", &net, &pins, L","), -200);
    EXPECT_EQ(net, nullptr);
    EXPECT_EQ(pins, nullptr);
}

TEST_F(BoardTest, HighlightVerdictsJudgeTheNamesAgainstTheBoard) {
    UseSample();
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    const Comp& comp = text.comps[0];
    const Pin& pin = comp.pins[0];
    const std::string refPin = comp.ref + "-" + pin.name;

    // Named: -201 only when no name of the list is on the board.
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 0, (pin.net + ",NO_SUCH_NET").c_str(), ",", 0), 0);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 0, "NO_SUCH_NET", ",", 0), -201);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 0, comp.ref.c_str(), ",", 0), -201) << "a reference is not a net";
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 1, comp.ref.c_str(), ",", 0), 0);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 1, "NO_SUCH_REF", ",", 0), -201);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 2, refPin.c_str(), ",", 0), 0);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 2, (comp.ref + "-NO_SUCH_PIN").c_str(), ",", 0), -201);
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 2, comp.ref.c_str(), ",", 0), -201) << "a pin is named REF-PIN";
    EXPECT_EQ(KPCB_Highlight(viewer.pid, 1, nullptr, ",", 0), -201) << "an empty list names nothing";

    // Reference pins: the reference's verdict passes through the library as it is.
    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, comp.ref.c_str(), (pin.name + ",NO_SUCH_PIN").c_str(), ",", 1, 2, 3, 1),
              0);
    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, comp.ref.c_str(), "NO_SUCH_PIN", ",", 1, 2, 3, 1), -201);
    EXPECT_EQ(KPCB_Highlight_RefPin(viewer.pid, "NO_SUCH_REF", pin.name.c_str(), ",", 1, 2, 3, 1), -200);

    // Section: both ends must be pins of the net.
    const Pin* sameNet = nullptr;
    const Comp* sameNetComp = nullptr;
    const Pin* otherNet = nullptr;
    const Comp* otherNetComp = nullptr;
    for (const Comp& c : text.comps)
        for (const Pin& p : c.pins) {
            if (&p == &pin) continue;
            if (!sameNet && p.net == pin.net) sameNet = &p, sameNetComp = &c;
            if (!otherNet && !p.net.empty() && p.net != pin.net) otherNet = &p, otherNetComp = &c;
        }
    ASSERT_TRUE(sameNet && otherNet);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, pin.net.c_str(), comp.ref.c_str(), pin.name.c_str(),
                                                     sameNetComp->ref.c_str(), sameNet->name.c_str()),
              0);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, pin.net.c_str(), comp.ref.c_str(), pin.name.c_str(),
                                                     otherNetComp->ref.c_str(), otherNet->name.c_str()),
              -200);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, pin.net.c_str(), "NO_SUCH_REF", "1",
                                                     sameNetComp->ref.c_str(), sameNet->name.c_str()),
              -200);
    EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, "NO_SUCH_NET", comp.ref.c_str(), pin.name.c_str(),
                                                     sameNetComp->ref.c_str(), sameNet->name.c_str()),
              -201);

    // Segments: indexes of the net's routing objects, tracks and vias together.
    const int objects = text.routeObjects["GND"];
    ASSERT_GT(objects, 1);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("GND"), CArrayN{0, objects - 1}, 0xFF), 0);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("GND"), CArrayN{0, objects}, 0xFF), -200);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("GND"), CArrayN{-1}, 0xFF), -200);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("GND"), CArrayN{}, 0xFF), -200);
    EXPECT_EQ(KPCB_Highlight_ZoomNetSegment(viewer.pid, CString("NO_SUCH_NET"), CArrayN{0}, 0xFF), -201);
}

TEST_F(BoardTest, ExplorerListIsResolvedAgainstTheBoardInTheJournal) {
    UseSample();
    const std::string list = dir / "objects.txt";
    const Comp& comp = text.comps[1];
    std::ofstream(list) << "# components to look at\r\n  " << comp.ref << "  \r\n\r\nNO_SUCH_REF\n"
                        << text.comps[0].ref << "\n";
    {
        Viewer viewer(boardFile);
        ASSERT_GT(viewer.pid, 0);
        EXPECT_EQ(KPCB_Explorer(viewer.pid, 1, CString(list)), 0);
        EXPECT_EQ(KPCB_Explorer(viewer.pid, 0, CString(list)), 0);
        EXPECT_EQ(KPCB_SetMainTitle(viewer.pid, "sync"), 0);
    }
    std::vector<std::string> notes;
    for (const std::string& line : JournalLines())
        if (line.find("\tCKPRCI_Explorer\t") != std::string::npos) notes.push_back(line.substr(line.rfind('\t') + 1));
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_NE(notes[0].find("2 of 3 found; unknown: NO_SUCH_REF"), std::string::npos) << notes[0];
    EXPECT_NE(notes[1].find("0 of 3 found"), std::string::npos) << notes[1] << ": references are not nets";
}

// What the sample lacks: a part without components and a component that is not placed.
TEST_F(BoardTest, UnplacedComponentsAndPartsWithoutComponents) {
    UseText(R"(PDBBA 1
BOARD small
LAYER TOP T COPPER
LAYER BOTTOM B COPPER
PART USED PKG
PART UNUSED PKG
NET N
COMP P1 USED UNPLACED 0 0 0
PIN 1 0 0 ROUND 1 1 0 0 N
PIN 2 0 0 ROUND 1 1 0 0 N
PIN 3 2.5 0 ROUND 1 1 0 0 ""
COMP P2 USED TOP 10 0 0
PIN 1 10 0 ROUND 1 1 0 0 N
END
)");
    Viewer viewer(boardFile);
    ASSERT_GT(viewer.pid, 0);
    int status = -1, count = -1;
    EXPECT_EQ(KPCB_GetReferencePlaceStatus(viewer.pid, L"P1", &status, 1), 0);
    EXPECT_EQ(status, 0);
    int top = -1, bottom = -1, other = -1;
    EXPECT_EQ(KPCB_GetReferenceCountForPlace(viewer.pid, L"P1,P2", L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top, 1);
    EXPECT_EQ(bottom, 0);
    EXPECT_EQ(other, 1);
    EXPECT_EQ(KPCB_GetReferenceCountForPlaceOfPart(viewer.pid, L"USED,UNUSED", L",", &top, &bottom, &other, 0), 0);
    EXPECT_EQ(top, 1);
    EXPECT_EQ(other, 1) << "the unplaced component; a part without components adds nothing";

    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid, L"USED", &count), 0);
    EXPECT_EQ(count, 3) << "the part's first component";
    EXPECT_EQ(KPCB_GetPinCountFromPart(viewer.pid, L"UNUSED", &count), 0);
    EXPECT_EQ(count, -201);

    double pitch = 0;
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, L"P1", 0, &pitch), 0);
    EXPECT_DOUBLE_EQ(pitch, 2.5) << "pins at the same place are not a pair";
    EXPECT_EQ(KPCB_GetPinPitch(viewer.pid, L"P2", 0, &pitch), 0);
    EXPECT_EQ(pitch, -201) << "one pin";
}
