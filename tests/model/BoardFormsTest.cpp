// Both file forms carry layer kinds, mirrored components, polygon pads and track
// arcs; files of the first version still load.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "BoardTestSupport.h"
#include "CPdbbProcessor.h"
#include "PdbText.h"

namespace {

using Image = std::vector<unsigned char>;

// The fields the text form may not show, read from the model itself, so that a field
// both forms forget is still seen missing.
std::string Describe(const CPdb& pdb) {
    std::ostringstream out;
    out.precision(17);
    const CPDBLayerManager& layers = pdb.GetLayerManager();
    for (int i = 0; i < layers.GetLayerCount(); ++i) out << static_cast<int>(layers.GetLayer(i)->GetKind()) << ' ';
    for (int i = 0; i < pdb.GetCompCount(); ++i) {
        const CPComp* comp = pdb.GetComp(i);
        out << '\n' << comp->GetReference().str() << (comp->IsMirrored() ? " mirrored" : "");
        for (int j = 0; j < comp->GetPinCount(); ++j) {
            const CPRefPin* pin = comp->GetPin(j);
            out << " | " << static_cast<int>(pin->GetShape()) << ' ' << pin->GetSizeX() << ' ' << pin->GetSizeY();
            for (const CArrayPointD& contour : pin->GetPadOutline()) {
                out << " /";
                for (INT_PTR k = 0; k < contour.GetSize(); ++k) out << ' ' << contour[k].x << ',' << contour[k].y;
            }
        }
    }
    for (int i = 0; i < pdb.GetNetCount(); ++i) {
        const CPRouteNet& route = pdb.GetNet(i)->GetRoute();
        for (int j = 0; j < route.GetCount(); ++j) {
            const CPRouteDObj* obj = route.GetAt(j);
            out << '\n' << obj->GetType() << ' ' << obj->GetLine().p2.x << ' ' << obj->GetLine().p2.y;
            if (obj->IsArc()) out << " c " << obj->GetCenter().x << ',' << obj->GetCenter().y << ' ' << obj->IsClockwise();
        }
    }
    return out.str();
}

std::unique_ptr<CPdb> ThroughImage(const CPdb& pdb, int version) {
    Image image;
    CString error;
    EXPECT_TRUE(CPdbbProcessor::SavePDBToMemory(pdb, image, error, version)) << error.GetString();
    uint32_t written = 0;
    if (image.size() > 12) std::memcpy(&written, &image[8], 4);
    EXPECT_EQ(static_cast<uint32_t>(version), written);
    std::unique_ptr<CPdb> back = CPdbbProcessor::LoadPDBFromMemory(image.data(), image.size(), error);
    EXPECT_TRUE(back) << error.GetString();
    return back;
}

std::unique_ptr<CPdb> ThroughText(const CPdb& pdb) {
    CString error;
    std::unique_ptr<CPdb> back = CPdbText::Read(CPdbText::Write(pdb), error);
    EXPECT_TRUE(back) << error.GetString();
    return back;
}

TEST(BoardForms, EveryKindOfObjectSurvivesBothForms) {
    const std::unique_ptr<CPdb> board = board_test::BoardWithEveryKind();
    const std::string expected = Describe(*board), expectedText = CPdbText::Write(*board).str();
    struct Path {
        const char* name;
        std::function<std::unique_ptr<CPdb>(const CPdb&)> run;
    };
    const Path paths[] = {
        {"binary", [](const CPdb& b) { return ThroughImage(b, CPdbbProcessor::kFormatVersion); }},
        {"text", ThroughText},
    };
    for (const Path& path : paths) {
        const std::unique_ptr<CPdb> back = path.run(*board);
        ASSERT_TRUE(back) << path.name;
        EXPECT_EQ(expected, Describe(*back)) << path.name;
        EXPECT_EQ(expectedText, CPdbText::Write(*back).str()) << path.name;
    }
}

TEST(BoardForms, FirstVersionFilesStillLoad) {
    const std::unique_ptr<CPdb> old = board_test::SmallBoard();
    const std::unique_ptr<CPdb> back = ThroughImage(*old, 1);
    ASSERT_TRUE(back);
    EXPECT_EQ(CPdbText::Write(*old).str(), CPdbText::Write(*back).str());

    // What the first version cannot hold is refused rather than dropped.
    Image image;
    CString error;
    EXPECT_FALSE(CPdbbProcessor::SavePDBToMemory(*board_test::BoardWithEveryKind(), image, error, 1));
    EXPECT_NE(-1, error.Find("version 1 cannot hold")) << error.GetString();
}

}  // namespace
