// Command families against the real viewer process where no other suite runs them
// there: red marks across viewers, and requests sent twice.
#include <gtest/gtest.h>

#include <fstream>

#include "KPCBAPI.hpp"
#include "LiveViewer.h"
#include "SampleBoardTest.h"

using testing_support::OwnedString;
using testing_support::Viewer;
using testing_support::Wide;

namespace {

using EndToEnd = testing_support::SampleBoardTest;

}  // namespace

TEST_F(EndToEnd, RedMarksSurviveSaveAndLoadAcrossViewers) {
    const std::string handWritten = dir / "marks.txt";
    std::ofstream(handWritten) << "KPCB RED MARKS 1\nTITLE Short\nCONTENTS U1-3 touches GND\\nsee layer 2\n"
                                  "TITLE Open pad\nCONTENTS R7 pad 2\n";
    const std::string binary = dir / "marks.bin";
    {
        Viewer first(board);
        ASSERT_GT(first.pid, 0);
        OwnedString titles;
        EXPECT_EQ(KPCB_RedMarkLoad(first.pid, Wide(handWritten).c_str(), &titles.text, L"|", 1), 0);
        EXPECT_EQ(titles.str(), L"Short|Open pad");
        EXPECT_EQ(KPCB_RedMarkSave(first.pid, Wide(binary).c_str(), 0), 0);
        EXPECT_EQ(KPCB_SetMainTitle(first.pid, "sync"), 0);  // the save is done once this answers
    }
    Viewer second(board);
    ASSERT_GT(second.pid, 0);
    OwnedString titles, contents;
    EXPECT_EQ(KPCB_RedMarkLoad(second.pid, Wide(binary).c_str(), &titles.text, L",", 0), 0);
    EXPECT_EQ(titles.str(), L"Short,Open pad");
    EXPECT_EQ(KPCB_CallSelectedItemFromRedMark(second.pid, L"Short", &contents.text), 0);
    EXPECT_EQ(contents.str(), L"U1-3 touches GND\nsee layer 2");
    EXPECT_EQ(KPCB_RemoveItemFromRedMarkList(second.pid, L"Short"), 0);
    EXPECT_EQ(KPCB_RemoveItemFromRedMarkList(second.pid, L"Short"), KPCB_ERR_200);
}

// Every request the library sends twice, between one-way commands (the layer backup
// and restore among them) and waiting ones.
TEST_F(EndToEnd, DoubleSentRequestsLeaveNoStaleAnswers) {
    Viewer viewer(board);
    ASSERT_GT(viewer.pid, 0);
    int status = -1;
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(KPCB_Highlight(viewer.pid, 0, "GND,VCC", ",", 0), 0);
        EXPECT_EQ(KPCB_Backup_Current_Layers(viewer.pid), 0);
        EXPECT_EQ(KPCB_SetStatusForCallingRedMark(viewer.pid, round), 0);
        EXPECT_EQ(KPCB_GetStatusForCallingRedMark(viewer.pid, &status), 0);
        EXPECT_EQ(status, round);
        EXPECT_EQ(KPCB_Visible_Layers(viewer.pid, "TOP", ",", 0), 0);
        EXPECT_EQ(KPCB_ZoomHighlightForSection_NetRefPin(viewer.pid, "+3V3", "U1", "1", "U2", "2"), 0);
        EXPECT_EQ(KPCB_Restore_Current_Layers(viewer.pid), 0);
        EXPECT_EQ(KPCB_SetMainTitle(viewer.pid, "after"), 0);
        int pins = -1;
        EXPECT_EQ(KPCB_GetPinCountFromReference(viewer.pid, L"U1", &pins), 0);
    }
}
