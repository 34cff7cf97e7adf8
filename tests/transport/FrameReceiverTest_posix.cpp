// Frames of two processes that interleave in one slot: each length is paired with
// the next message of the process that sent it.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FakeViewer.h"
#include "FrameReader.h"
#include "SlotTestSupport.h"

using testing_support::Bytes;

namespace {

void Send(CMailslot& writer, const Bytes& message) {
    writer.WriteBytes(message.data(), static_cast<unsigned>(message.size()));
}

}  // namespace

TEST(FrameReceiver, InterleavedFramesOfTwoProcessesArePairedBySender) {
    const CString name = transport_test::UniqueSlotName("receiver-senders");
    CMailslot reader(0, name);
    ASSERT_EQ(reader.Open(), 1);
    const Bytes childPayload{1, 2, 3, 4, 5}, ownPayload{6, 7, 8};
    int toParent[2], toChild[2];
    ASSERT_EQ(pipe(toParent), 0);
    ASSERT_EQ(pipe(toChild), 0);

    // In the slot: the child's length, ours, the child's payload, ours.
    const pid_t child = fork();
    if (child == 0) {
        CMailslot writer(1, name);
        if (writer.Open() != 1) _exit(2);
        Send(writer, testing_support::LengthMessage(5));
        char step = 0;
        if (write(toParent[1], &step, 1) != 1 || read(toChild[0], &step, 1) != 1) _exit(3);
        Send(writer, childPayload);
        _exit(0);
    }
    ASSERT_GT(child, 0);
    char step = 0;
    ASSERT_EQ(read(toParent[0], &step, 1), 1);
    CMailslot writer(1, name);
    ASSERT_EQ(writer.Open(), 1);
    Send(writer, testing_support::LengthMessage(3));
    ASSERT_EQ(write(toChild[1], &step, 1), 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    Send(writer, ownPayload);
    for (int fd : {toParent[0], toParent[1], toChild[0], toChild[1]}) close(fd);

    FrameReceiver frames;
    CMemFile file(1024);
    for (const Bytes& expected : {childPayload, ownPayload}) {
        ASSERT_EQ(frames.Receive(reader, file, 1000), FrameResult::Frame);
        Bytes got(static_cast<size_t>(file.GetLength()));
        file.SeekToBegin();
        file.Read(got.data(), static_cast<UINT>(got.size()));
        EXPECT_EQ(got, expected);
    }
    EXPECT_EQ(frames.Receive(reader, file, 0), FrameResult::Nothing);
}
