#include "FakeViewer.h"

#include <chrono>
#include <cstring>
#include <stdexcept>

#include "FrameReader.h"
#include "SlotNames.h"
#include "platform.h"

namespace testing_support {

Bytes LengthMessage(uint32_t length) {
    Bytes out(4);
    std::memcpy(out.data(), &length, 4);
    return out;
}

int FakeViewer::SelfPid() { return platform::CurrentProcessId(); }

FakeViewer::FakeViewer() : m_pid(platform::CurrentProcessId()) {
    m_slot = platform::CreateSlot(MakeCommandSlotName(m_pid).str());
    if (m_slot == platform::InvalidSlot()) throw std::runtime_error("fake viewer: command slot busy");
    m_thread = std::thread([this] { Serve(); });
}

FakeViewer::~FakeViewer() {
    {
        std::lock_guard<std::mutex> hold(m_lock);
        m_stop = true;
    }
    m_thread.join();
    platform::CloseSlot(m_slot);
}

void FakeViewer::Answer(const Bytes& payload, int onFrame, Channel channel) {
    std::vector<Bytes> messages{LengthMessage(static_cast<uint32_t>(payload.size()))};
    if (!payload.empty()) messages.push_back(payload);
    AnswerRaw(messages, onFrame, channel);
}

void FakeViewer::AnswerRaw(const std::vector<Bytes>& messages, int onFrame, Channel channel) {
    std::lock_guard<std::mutex> hold(m_lock);
    m_armed.push_back(Armed{messages, onFrame, channel});
}

void FakeViewer::AnswerNow(const Bytes& payload, Channel channel) {
    Armed now{{LengthMessage(static_cast<uint32_t>(payload.size()))}, 0, channel};
    if (!payload.empty()) now.messages.push_back(payload);
    Deliver(now);
}

bool FakeViewer::WaitForMessages(size_t count, int timeoutMs) {
    std::unique_lock<std::mutex> hold(m_lock);
    return m_changed.wait_for(hold, std::chrono::milliseconds(timeoutMs), [&] { return m_messages.size() >= count; });
}

std::vector<Bytes> FakeViewer::Messages() {
    std::lock_guard<std::mutex> hold(m_lock);
    return m_messages;
}

std::vector<Bytes> FakeViewer::Payloads() {
    std::vector<Bytes> payloads;
    const std::vector<Bytes> messages = Messages();
    for (size_t i = 0; i < messages.size(); ++i) {
        if (messages[i].size() != 4) continue;
        uint32_t length;
        std::memcpy(&length, messages[i].data(), 4);
        if (length == 0) {
            payloads.emplace_back();
        } else if (i + 1 < messages.size()) {
            payloads.push_back(messages[++i]);
        }
    }
    return payloads;
}

size_t FakeViewer::SettledMessageCount(int quietMs) {
    std::this_thread::sleep_for(std::chrono::milliseconds(quietMs));
    std::lock_guard<std::mutex> hold(m_lock);
    return m_messages.size();
}

void FakeViewer::Serve() {
    bool expectPayload = false;
    for (;;) {
        {
            std::lock_guard<std::mutex> hold(m_lock);
            if (m_stop) return;
        }
        uint32_t size = 0;
        if (!platform::PeekSlotMessageSize(m_slot, 20, &size)) continue;
        Bytes message(size);
        uint32_t read = 0;
        if (!platform::ReadSlot(m_slot, message.data(), size, &read)) continue;
        message.resize(read);
        bool frameDone = false;
        if (expectPayload) {
            expectPayload = false;
            frameDone = true;
        } else if (message.size() == 4) {
            uint32_t length;
            std::memcpy(&length, message.data(), 4);
            expectPayload = length != 0;
            frameDone = length == 0;
        }
        // The frame counts for the armed answers before anyone hears of the message, so
        // that an answer armed after waiting for it never counts it.
        Armed due;
        bool answerDue = false;
        {
            std::lock_guard<std::mutex> hold(m_lock);
            m_messages.push_back(std::move(message));
            if (frameDone) answerDue = FrameArrived(due);
        }
        m_changed.notify_all();
        if (answerDue) Deliver(due);
    }
}

bool FakeViewer::FrameArrived(Armed& due) {
    if (m_armed.empty() || ++m_armed.front().framesSeen < m_armed.front().onFrame) return false;
    due = m_armed.front();
    m_armed.pop_front();
    return true;
}

bool FakeViewer::Deliver(const Armed& armed) {
    const std::string name =
        armed.channel == Channel::ReplySlot ? MakeReplySlotName(m_pid).str() : ReturnSlotName().str();
    // The caller may create its slot only after sending (the explorer does): wait for it.
    CMailslot slot(1, CString(name));
    if (!OpenWhenReady(slot, 4000)) return false;
    for (const Bytes& message : armed.messages) slot.WriteBytes(message.data(), static_cast<unsigned>(message.size()));
    return true;
}

}  // namespace testing_support
