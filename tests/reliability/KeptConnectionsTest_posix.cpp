// A kept command slot whose reader went away and came back under the same name. On
// POSIX the kept socket is refused by the closed reader and the name is opened again.
// (A Windows mailslot lives on while any handle to it is open, so its name cannot
// be made anew while a writer is kept; a viewer never makes its slot twice anyway.)
#include <gtest/gtest.h>

#include "FakeViewer.h"
#include "KPCBAPI.hpp"

using testing_support::FakeViewer;

TEST(KeptConnections, ACommandSlotMadeAnewIsReachedAgain) {
    ASSERT_EQ(KPCB_KeepConnections(1), 0);
    {
        FakeViewer first;
        EXPECT_EQ(KPCB_ZoomIn(first.pid()), 0);
        ASSERT_TRUE(first.WaitForMessages(2));
    }
    FakeViewer second;
    EXPECT_EQ(KPCB_ZoomOut(second.pid()), 0);
    ASSERT_TRUE(second.WaitForMessages(2));
    const std::vector<testing_support::Bytes> payloads = second.Payloads();
    ASSERT_EQ(payloads.size(), 1u);
    EXPECT_EQ(payloads[0], (testing_support::Bytes{8, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0})) << "the zoom-out command";
    EXPECT_EQ(KPCB_KeepConnections(0), 1);
}
