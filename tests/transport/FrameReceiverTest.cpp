// The frame decoder: whole frames out of the messages of a slot, what it does with
// messages that do not form one, and the rules of a reply frame.
#include <gtest/gtest.h>

#include <chrono>

#include "CKPRCI__Base.h"
#include "FakeViewer.h"
#include "FrameReader.h"
#include "SlotTestSupport.h"

using testing_support::Bytes;
using transport_test::SlotPair;

namespace {

void Write(CMailslot& writer, const Bytes& message) {
    ASSERT_EQ(writer.WriteBytes(message.data(), static_cast<unsigned>(message.size())), 1);
}

void WriteFrame(CMailslot& writer, const Bytes& payload) {
    Write(writer, testing_support::LengthMessage(static_cast<uint32_t>(payload.size())));
    if (!payload.empty()) Write(writer, payload);
}

Bytes Contents(CMemFile& file) {
    Bytes out(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!out.empty()) file.Read(out.data(), static_cast<UINT>(out.size()));
    return out;
}

}  // namespace

TEST(FrameReceiver, FramesComeOutWholeAndInOrder) {
    SlotPair pair("receiver-order");
    FrameReceiver frames;
    CMemFile file(1024);
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Nothing);

    const Bytes first{1, 2, 3, 4, 5}, fourBytes{9, 9, 9, 9};
    WriteFrame(pair.writer, first);
    WriteFrame(pair.writer, fourBytes);  // a payload of four bytes is not taken for a length
    WriteFrame(pair.writer, {});
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), first);
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), fourBytes);
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), Bytes{});
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Nothing);
}

TEST(FrameReceiver, MessagesThatFormNoFrameAreDroppedAndTheNextFrameIsRead) {
    SlotPair pair("receiver-stray");
    FrameReceiver frames;
    CMemFile file(1024);
    const Bytes good{7, 0, 0, 0, 1};

    Write(pair.writer, Bytes{1, 2, 3});  // no length first
    WriteFrame(pair.writer, good);
    EXPECT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Malformed);
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), good);

    Write(pair.writer, testing_support::LengthMessage(10));
    Write(pair.writer, Bytes(6, 0xEE));  // not the size announced
    WriteFrame(pair.writer, good);
    EXPECT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Malformed);
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), good);

    // A frame sent again whole after its length alone went out.
    Write(pair.writer, testing_support::LengthMessage(5));
    WriteFrame(pair.writer, good);
    EXPECT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Malformed);
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), good);
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Nothing);
}

TEST(FrameReceiver, ALengthWithoutItsPayloadIsGivenUpAfterThePayloadWait) {
    SlotPair pair("receiver-overdue");
    FrameReceiver frames(100);
    CMemFile file(1024);
    Write(pair.writer, testing_support::LengthMessage(12));
    const auto start = std::chrono::steady_clock::now();
    // Even a caller that does not wait waits for an announced payload, then gives it up.
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Malformed);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Nothing);

    // A payload that comes late is dropped as the stray message it then is.
    Write(pair.writer, Bytes(12, 1));
    EXPECT_EQ(frames.Receive(pair.reader, file, 0), FrameResult::Malformed);
    WriteFrame(pair.writer, Bytes{3, 0, 0, 0});
    ASSERT_EQ(frames.Receive(pair.reader, file, 1000), FrameResult::Frame);
    EXPECT_EQ(Contents(file), (Bytes{3, 0, 0, 0}));
}

TEST(FrameReceiver, ReplyFramesTakeAShortPayloadAndRefuseWhatCannotBeBacked) {
    using testing_support::LengthMessage;
    struct Case {
        const char* what;
        std::vector<Bytes> messages;
        int received;  // ReceiveFrame's result
        Bytes file;    // the file after it
    };
    const std::vector<Case> cases = {
        {"shorter payload: zeros after it", {LengthMessage(8), {1, 2, 3}}, 1, {1, 2, 3, 0, 0, 0, 0, 0}},
        {"huge length: nothing sized", {LengthMessage(0xFFFFFFF0u), {1, 2, 3, 4}}, 0, {}},
    };
    for (const Case& c : cases) {
        SlotPair pair("reply-rules");
        for (const Bytes& message : c.messages) Write(pair.writer, message);
        CMemFile file(1024);
        EXPECT_EQ(pair.reader.ReceiveFrame(file), c.received) << c.what;
        EXPECT_EQ(Contents(file), c.file) << c.what;
    }
    // A reply of 1 to 3 bytes is refused before anything is loaded.
    for (uint32_t size = 1; size <= 3; ++size) {
        SlotPair pair("reply-record");
        WriteFrame(pair.writer, Bytes(size, 0xAB));
        CKPRCI__BaseRV reply;
        reply.SetErrorCode(77);
        EXPECT_EQ(ReceiveRecord(pair.reader, new CMemFile(1024), reply), 0) << size;
        EXPECT_EQ(reply.GetErrorCode(), 77) << size;
    }
}
