// The importer settings file.
#include <gtest/gtest.h>

#include <fstream>

#include "CKP_UIS__Main.h"
#include "TestPaths.h"
#include "TestSystem.h"

namespace {
std::vector<int> Options(CKP_UIS__Main& settings) {
    CKP_UIS_ECAD* ecad = settings.GetECAD();
    return {ecad->GetAllegro()->GetConvertEucJPtoShiftJIS(), ecad->GetCR5000BD()->GetConvertEucJPtoShiftJIS(),
            ecad->GetBoardStation()->GetConvertEucJPtoShiftJIS(), ecad->GetCR5000PWS()->GetConvertEucJPtoShiftJIS()};
}
}  // namespace

TEST(ImporterSettings, ReadsSectionsIgnoringCaseAndSkipsWhatItDoesNotKnow) {
    testing_support::TempDir dir;
    const std::string path = dir / "s.ini";
    std::ofstream(path) << "# comment\n"
                           "ConvertEucJPtoShiftJIS=1\n"  // before any section: ignored
                           "[ allegro ]\n"
                           "  CONVERTEUCJPTOSHIFTJIS = 1 \n"
                           "[Unknown]\nConvertEucJPtoShiftJIS=1\n"
                           "[BoardStation]\n"
                           "ConvertEucJPtoShiftJIS=yes\n"  // not a number: ignored
                           "; comment\nOther=5\nno equals sign\n"
                           "[CR5000PWS]\r\n"
                           "ConvertEucJPtoShiftJIS=2\r\n";
    CKP_UIS__Main settings;
    EXPECT_EQ(settings.LoadFromFile(path.c_str()), 1);
    EXPECT_EQ(Options(settings), (std::vector<int>{1, 0, 0, 2}));

    // Loading again starts from the defaults: a missing file leaves all at 0.
    EXPECT_EQ(settings.LoadFromFile((dir / "none.ini").c_str()), 0);
    EXPECT_EQ(Options(settings), (std::vector<int>{0, 0, 0, 0}));
}
