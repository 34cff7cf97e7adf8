// Whatever a viewer answers, a query either delivers a well-formed reply of its own
// class or returns -7 with every out-argument untouched.
#include <gtest/gtest.h>

#include "FakeViewer.h"
#include "TestPaths.h"
#include "InformationRecords.h"
#include "KPCBAPI.hpp"
#include "PolygonMergeRecords.h"

using testing_support::Bytes;
using testing_support::FakeViewer;
using testing_support::ImageOf;

namespace {

Bytes PitchReply(double pitch) {
    CKPRCI_Information_GetPinPitch_RV reply;
    reply.SetPinPitch(pitch);
    return ImageOf(reply);
}

}  // namespace

TEST(BadReplies, RepliesTooShortForTheirFieldsAreMinusSevenAndWriteNothing) {
    const Bytes good = PitchReply(2.54);
    CKPRCI_Information_GetCompPinCount_RV otherClass;
    otherClass.SetPinCount(8);
    std::vector<std::pair<const char*, Bytes>> cases;
    for (size_t n = 4; n < good.size(); ++n) cases.emplace_back("truncated", Bytes(good.begin(), good.begin() + n));
    cases.emplace_back("shorter class", ImageOf(otherClass));
    for (const auto& c : cases) {
        FakeViewer viewer;
        viewer.Answer(c.second);
        double pitch = -1;
        EXPECT_EQ(KPCB_GetPinPitch(viewer.pid(), L"U1", 0, &pitch), KPCB_NO_REPLY) << c.first << " " << c.second.size();
        EXPECT_EQ(pitch, -1) << c.first;
    }
}

TEST(Replies, BytesAfterTheFieldsAreIgnored) {
    // A viewer that carries more fields than this library knows still answers it.
    CKPRCI_PolygonMerge_RV longerClass;
    Bytes extended = PitchReply(2.54);
    extended.insert(extended.end(), {1, 2, 3, 4, 5, 6, 7});
    for (int withKeeping = 0; withKeeping < 2; ++withKeeping) {
        KPCB_KeepConnections(withKeeping);
        FakeViewer viewer;
        viewer.Answer(extended);
        double pitch = -1;
        EXPECT_EQ(KPCB_GetPinPitch(viewer.pid(), L"U1", 0, &pitch), 0) << "keeping " << withKeeping;
        EXPECT_EQ(pitch, 2.54);
        // The text export takes any reply as done.
        for (const Bytes& reply : {ImageOf(longerClass), Bytes(37, 0xA5)}) {
            viewer.Answer(reply);
            EXPECT_EQ(KPCB_ExportPDBAscii(viewer.pid(), "board.txt"), 0) << reply.size();
        }
        // An acknowledgement (as a hello) counts by its first 4 bytes.
        viewer.AnswerRaw({Bytes{1, 0, 0, 0, 9, 9, 9}}, 1, FakeViewer::Channel::ReturnSlot);
        EXPECT_EQ(KPCB_Explorer(viewer.pid(), 0, CString(testing_support::BinDir())), 0);
    }
    KPCB_KeepConnections(0);
}

TEST(BadReplies, FramesThatBreakTheRulesAreMinusSeven) {
    const Bytes good = PitchReply(1.0);
    const std::vector<std::vector<Bytes>> frames = {
        {testing_support::LengthMessage(static_cast<uint32_t>(good.size()) - 2), good},       // payload longer than said
        {testing_support::LengthMessage(0)},                                                  // empty
        {testing_support::LengthMessage(0xFFFFFFFFu), good},                                  // 4 GiB announced
        {Bytes{1, 2, 3, 4, 5}, good},                                                         // length message of 5 bytes
    };
    for (size_t i = 0; i < frames.size(); ++i) {
        FakeViewer viewer;
        viewer.AnswerRaw(frames[i]);
        double pitch = -1;
        EXPECT_EQ(KPCB_GetPinPitch(viewer.pid(), L"U1", 0, &pitch), KPCB_NO_REPLY) << "frame " << i;
        EXPECT_EQ(pitch, -1);
    }
}

TEST(BadReplies, StringListAnnouncingMoreThanArrivesIsRefused) {
    // error 0, net "N", then a list claiming 0xFFFFFFFF entries in a few bytes
    const Bytes reply{0, 0, 0, 0, 1, 'N', 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1, 'a'};
    FakeViewer viewer;
    viewer.Answer(reply);
    wchar_t* net = nullptr;
    wchar_t* pins = nullptr;
    EXPECT_EQ(KPCB_GetPinListInfoOfNet_RefPin(viewer.pid(), L"U1", L"1", &net, &pins, L","), KPCB_NO_REPLY);
    EXPECT_EQ(net, nullptr);
    EXPECT_EQ(pins, nullptr);
}

TEST(BadReplies, HugePointArrayAnnouncedInASmallReplyIsRefused) {
    CKPRCI_PolygonMerge_RV reply;
    Bytes image = ImageOf(reply);
    // The CW X array's count sits after error code, mode, four counts and the point.
    const size_t countAt = 4 + 4 + 16 + 16;
    image[countAt] = 0xFF;
    image[countAt + 1] = 0xFF;
    image.insert(image.begin() + static_cast<long>(countAt) + 2, {0xF0, 0xFF, 0xFF, 0x0F});
    FakeViewer viewer;
    viewer.Answer(image);
    CArrayD xs, ys;
    xs.Add(7);
    EXPECT_EQ(KPCB_GetCWPolygonPointDataArray(viewer.pid(), 0, &xs, &ys), KPCB_NO_REPLY);
    ASSERT_EQ(xs.GetSize(), 1);
    EXPECT_EQ(xs[0], 7);
}
