// A viewer inside the test process: it owns the command slot of the test's own
// process id (which is a running process, so liveness tests pass), records every
// message that arrives, and answers queries with whatever the test arms it with.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "CArchive.h"
#include "CKPRCI__Base.h"
#include "RecordImage.h"

namespace testing_support {

using Bytes = std::vector<uint8_t>;

// The archive image of a record, as the library writes it.
template <class Record>
Bytes ImageOf(Record& record) {
    return records::Image(record);
}

// A 4-byte little-endian length message.
Bytes LengthMessage(uint32_t length);

class FakeViewer {
public:
    // Where an armed answer goes.
    enum class Channel { ReplySlot, ReturnSlot };

    FakeViewer();
    ~FakeViewer();
    FakeViewer(const FakeViewer&) = delete;
    FakeViewer& operator=(const FakeViewer&) = delete;

    int pid() const { return m_pid; }
    // This process's id: running, but with no command slot unless a FakeViewer exists.
    static int SelfPid();

    // Answers with a frame (length message, then payload) once the onFrame-th frame
    // after this call has arrived. Answers queue up in order.
    void Answer(const Bytes& payload, int onFrame = 1, Channel channel = Channel::ReplySlot);
    template <class Reply>
    void AnswerWith(Reply& reply, int onFrame = 1) { Answer(ImageOf(reply), onFrame); }
    // Answers with these raw messages instead of a well-formed frame.
    void AnswerRaw(const std::vector<Bytes>& messages, int onFrame = 1, Channel channel = Channel::ReplySlot);

    // Sends a frame with this payload at once, whatever has arrived.
    void AnswerNow(const Bytes& payload, Channel channel = Channel::ReplySlot);

    // Waits until at least count messages have arrived; false on time-out.
    bool WaitForMessages(size_t count, int timeoutMs = 5000);
    // Every message received so far, in order.
    std::vector<Bytes> Messages();
    // The payloads of the frames received so far.
    std::vector<Bytes> Payloads();
    // Waits briefly and returns the number of messages: to show that nothing arrived.
    size_t SettledMessageCount(int quietMs = 100);

private:
    struct Armed {
        std::vector<Bytes> messages;
        int onFrame;
        Channel channel;
        int framesSeen = 0;
    };
    void Serve();
    // With m_lock held: counts a frame for the first armed answer; true, with the
    // answer in due, when it is due.
    bool FrameArrived(Armed& due);
    bool Deliver(const Armed& armed);

    int m_pid;
    void* m_slot;
    bool m_stop = false;
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<Bytes> m_messages;
    std::deque<Armed> m_armed;
    std::thread m_thread;
};

}  // namespace testing_support
