// The slot layer and the frame writer: message boundaries, sizes, the frame on the wire.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "CMailslot.h"
#include "CUniversalLogger.h"
#include "FakeViewer.h"
#include "TestPaths.h"
#include "TestSystem.h"
#include "SlotTestSupport.h"
#include "platform.h"

using testing_support::Bytes;
using transport_test::SlotPair;
using transport_test::UniqueSlotName;

namespace {

Bytes ReadOne(platform::SlotHandle slot, uint32_t capacity, platform::Status* why = nullptr) {
    Bytes out(capacity);
    uint32_t read = 0;
    const platform::Status good = platform::ReadSlot(slot, out.data(), capacity, &read);
    if (why) *why = good;
    out.resize(good ? read : 0);
    return out;
}

}  // namespace

TEST(Slots, ReadSideNameIsExclusiveAndWriteSideNeedsAReader) {
    const CString name = UniqueSlotName("exclusive");
    CMailslot writerFirst(1, name);
    EXPECT_EQ(writerFirst.Open(), 0) << "no reader yet";
    CMailslot first(0, name);
    ASSERT_EQ(first.Open(), 1);
    CMailslot second(0, name);
    EXPECT_EQ(second.Open(), 0) << "a second creation of the same name must fail";
    CMailslot writer(1, name);
    EXPECT_EQ(writer.Open(), 1);
}

TEST(Slots, ClosingTheReaderFreesTheName) {
    const CString name = UniqueSlotName("reuse");
    {
        CMailslot first(0, name);
        ASSERT_EQ(first.Open(), 1);
    }
    CMailslot again(0, name);
    EXPECT_EQ(again.Open(), 1);
}

TEST(Slots, ShortBufferFailsAndLeavesTheMessageQueued) {
    SlotPair pair("short");
    const Bytes five{1, 2, 3, 4, 5};
    ASSERT_EQ(pair.writer.WriteBytes(five.data(), 5), 1);
    platform::Status why;
    ReadOne(pair.reader.GetHandle(), 4, &why);
    EXPECT_EQ(why.error(), platform::Error::kTooBig) << why.Text();
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 5, &why), five);
    EXPECT_TRUE(why);
}

TEST(Slots, MessagesKeepTheirBoundariesAndOrder) {
    SlotPair pair("order");
    for (uint8_t i = 1; i <= 5; ++i) {
        const Bytes message(i, i);
        ASSERT_EQ(pair.writer.WriteBytes(message.data(), i), 1);
    }
    for (uint8_t i = 1; i <= 5; ++i) EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 100), Bytes(i, i));
}

TEST(Slots, MessagesAroundSixtyFourKibibytesKeepTheirSizeAndOrder) {
    SlotPair pair("window");
    const std::vector<uint32_t> sizes{65535, 65536, 65537, 150000};
    std::vector<Bytes> sent;
    for (const uint32_t size : sizes) {
        Bytes message(size);
        for (uint32_t i = 0; i < size; ++i) message[i] = static_cast<uint8_t>(i * 7 + size);
        ASSERT_EQ(pair.writer.WriteBytes(message.data(), size), 1) << size;
        sent.push_back(std::move(message));
    }
    for (size_t k = 0; k < sizes.size(); ++k) {
        uint32_t peeked = 0;
        ASSERT_TRUE(platform::PeekSlotMessageSize(pair.reader.GetHandle(), 1000, &peeked));
        EXPECT_EQ(peeked, sizes[k]);
        platform::Status why;
        ReadOne(pair.reader.GetHandle(), sizes[k] - 1, &why);
        EXPECT_FALSE(why) << "one byte short must fail and keep the message of " << sizes[k];
        EXPECT_EQ(ReadOne(pair.reader.GetHandle(), sizes[k] + 10, &why), sent[k]) << sizes[k];
    }
}

TEST(Slots, SixtyFourMebibyteMessageArrivesWhole) {
    if (testing_support::RunningUnderWine())
        GTEST_SKIP() << "Wine's mailslots carry messages of at most about 208 KiB";
    SlotPair pair("large");
    const uint32_t size = 64u << 20;
    Bytes big(size);
    for (uint32_t i = 0; i < size; ++i) big[i] = static_cast<uint8_t>(i * 2654435761u >> 24);
    ASSERT_EQ(pair.writer.WriteBytes(big.data(), size), 1);
    const Bytes small{9, 9};
    ASSERT_EQ(pair.writer.WriteBytes(small.data(), 2), 1);
    platform::Status why;
    ReadOne(pair.reader.GetHandle(), size - 1, &why);
    EXPECT_FALSE(why) << "one byte short must fail and keep the message";
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), size, &why), big);
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 16), small) << "the next message follows the large one";
}

TEST(Frames, ZeroLengthFileSendsOneMessageAndSucceeds) {
    testing_support::TempDir dir;
    GetUniversalLogger().Init(CString(dir / "log/KAPI.log"), 1);
    SlotPair pair("zero");
    CMemFile empty(1024);
    EXPECT_EQ(pair.writer.SendFrame(empty), 1);
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 16), testing_support::LengthMessage(0));
    uint32_t size = 0;
    EXPECT_EQ(platform::PeekSlotMessageSize(pair.reader.GetHandle(), 50, &size).error(), platform::Error::kTimedOut);
    std::ifstream log(dir / "log/KAPI.log");
    std::stringstream text;
    text << log.rdbuf();
    EXPECT_NE(text.str().find("Send Fail data : 0"), std::string::npos);
}

TEST(Frames, FrameIsLengthThenPayload) {
    SlotPair pair("frame");
    CMemFile file(1024);
    const Bytes payload{0x08, 0, 0, 0, 0x02, 0, 0, 0, 0, 0, 0, 0};
    file.Write(payload.data(), static_cast<UINT>(payload.size()));
    EXPECT_EQ(pair.writer.SendFrame(file), 1);
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 16), (Bytes{12, 0, 0, 0}));
    EXPECT_EQ(ReadOne(pair.reader.GetHandle(), 64), payload);
}
