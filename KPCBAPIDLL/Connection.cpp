#include "Connection.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>

#include "FrameReader.h"
#include "KPCBAPI.h"
#include "SlotNames.h"
#include "platform.h"

namespace kapi {
namespace {

std::atomic<int> g_replyTimeoutMs{0};
std::atomic<bool> g_keeping{false};

// Waits for a message in slot within the reply time-out, in short slices so that a
// viewer that has ended (running() false) is noticed at once.
template <class Running>
bool AwaitWithin(CMailslot& slot, Running&& running) {
    const int limit = g_replyTimeoutMs;
    platform::SetSlotReadTimeout(slot.GetHandle(), limit);  // also clears a limit set earlier on a kept slot
    if (limit <= 0) return true;
    constexpr int kSliceMs = 20;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit);
    uint32_t size = 0;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0) return false;
        if (platform::PeekSlotMessageSize(slot.GetHandle(), static_cast<int>(std::min<long long>(left, kSliceMs)), &size))
            return true;
        if (!running()) return platform::PeekSlotMessageSize(slot.GetHandle(), 0, &size);  // it may have answered just before
    }
}

// Frames to one viewer leave one after another: the viewer pairs each length with the
// next message of the same process, so two threads' frames must not interleave. One
// lock per viewer, made while someone sends to it: a viewer that does not read holds
// up only the callers of that viewer.
class ViewerSendLock {
public:
    explicit ViewerSendLock(int pid) : m_pid(pid) {
        {
            std::lock_guard<std::mutex> hold(Registry().lock);
            m_entry = &Registry().byPid[pid];
            ++m_entry->users;
        }
        m_entry->sending.lock();
    }
    ~ViewerSendLock() {
        m_entry->sending.unlock();
        std::lock_guard<std::mutex> hold(Registry().lock);
        if (--m_entry->users == 0) Registry().byPid.erase(m_pid);
    }
    ViewerSendLock(const ViewerSendLock&) = delete;
    ViewerSendLock& operator=(const ViewerSendLock&) = delete;

private:
    struct Entry {
        std::mutex sending;
        int users = 0;
    };
    struct Locks {
        std::mutex lock;
        std::map<int, Entry> byPid;
    };
    static Locks& Registry() {
        static Locks locks;
        return locks;
    }
    int m_pid;
    Entry* m_entry;
};

// Slots of this call alone, closed when it ends.
class FreshConnection final : public Connection {
public:
    explicit FreshConnection(int pid) : Connection(pid), m_command(1, MakeCommandSlotName(pid)) {}
    bool ViewerRunning() override { return platform::ProcessExists(m_pid); }

private:
    bool OpenCommandSlot() override { return m_command.Open() != 0; }
    bool Send(CMemFile& frame) override {
        ViewerSendLock one(m_pid);
        m_command.SendFrame(frame);  // not examined: a failed write still counts as handed over
        return true;
    }
    CMailslot* ReplySlot() override {
        m_reply = std::make_unique<CMailslot>(0, MakeReplySlotName(m_pid));
        return m_reply->Open() ? m_reply.get() : nullptr;
    }

    CMailslot m_command;
    std::unique_ptr<CMailslot> m_reply;
};

// What is kept for one viewer: the write side of its command slot, the reply slot of
// this process and a watch on its process. A call holds it through a shared pointer,
// so that forgetting the viewer meanwhile does not pull the slots from under it.
class KeptViewer {
public:
    KeptViewer(int pid, platform::ProcessWatch watch) : m_pid(pid), m_watch(watch) {}
    ~KeptViewer() { platform::StopWatching(m_watch); }
    KeptViewer(const KeptViewer&) = delete;
    KeptViewer& operator=(const KeptViewer&) = delete;

    bool Running() const { return platform::WatchedProcessRunning(m_watch); }
    bool OpenCommandSlot() {
        std::lock_guard<std::mutex> hold(m_sending);
        return OpenCommandLocked();
    }
    // The kept writer is opened again once when it no longer reaches a reader.
    bool Send(CMemFile& frame) {
        std::lock_guard<std::mutex> hold(m_sending);
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (!OpenCommandLocked()) return false;
            if (m_command->SendFrame(frame)) return true;
            m_command.reset();
        }
        return true;  // opened but not written: handed over, as a fresh slot's write would be
    }
    // Only the holder of ReplyLock() touches the reply slot. Whatever waits in it
    // answered an earlier request that gave up on it, and is dropped.
    CMailslot* ReplySlot() {
        if (!m_reply) {
            auto reply = std::make_unique<CMailslot>(0, MakeReplySlotName(m_pid));
            if (!reply->Open()) return nullptr;
            m_reply = std::move(reply);
        }
        uint32_t size = 0;
        while (platform::PeekSlotMessageSize(m_reply->GetHandle(), 0, &size)) {
            std::unique_ptr<unsigned char[]> stale(new unsigned char[size ? size : 1]);
            uint32_t read = 0;
            if (!platform::ReadSlot(m_reply->GetHandle(), stale.get(), size, &read)) break;
        }
        return m_reply.get();
    }
    void DropReplySlot() { m_reply.reset(); }
    std::mutex& ReplyLock() { return m_replyLock; }

private:
    bool OpenCommandLocked() {
        if (m_command) return true;
        auto command = std::make_unique<CMailslot>(1, MakeCommandSlotName(m_pid));
        if (!command->Open()) return false;
        m_command = std::move(command);
        return true;
    }

    int m_pid;
    platform::ProcessWatch m_watch;
    std::mutex m_sending;
    std::unique_ptr<CMailslot> m_command;
    std::mutex m_replyLock;
    std::unique_ptr<CMailslot> m_reply;
};

struct KeptRegistry {
    std::mutex lock;
    std::map<int, std::shared_ptr<KeptViewer>> byPid;
};

// Touched only while keeping is on or being switched off: a process that never keeps
// never makes it.
KeptRegistry& Kept() {
    static KeptRegistry registry;
    return registry;
}

std::shared_ptr<KeptViewer> FindKept(int pid) {
    KeptRegistry& kept = Kept();
    std::lock_guard<std::mutex> hold(kept.lock);
    const auto found = kept.byPid.find(pid);
    return found == kept.byPid.end() ? nullptr : found->second;
}

// The kept viewer, made when its process runs; null otherwise.
std::shared_ptr<KeptViewer> KeptViewerFor(int pid) {
    if (auto existing = FindKept(pid)) return existing;
    const platform::ProcessWatch watch = platform::WatchProcess(pid);
    if (!watch) return nullptr;
    auto made = std::make_shared<KeptViewer>(pid, watch);
    KeptRegistry& kept = Kept();
    std::lock_guard<std::mutex> hold(kept.lock);
    return kept.byPid.emplace(pid, std::move(made)).first->second;  // another thread's, if it was first
}

// One call through what is kept. A query holds the kept reply slot for the whole call;
// a query of another thread in progress makes this one -5, as a taken name would.
class KeptConnection final : public Connection {
public:
    KeptConnection(int pid, std::shared_ptr<KeptViewer> viewer) : Connection(pid), m_viewer(std::move(viewer)) {}
    bool ViewerRunning() override {
        if (m_viewer->Running()) return true;
        ForgetViewer(m_pid);
        return false;
    }

private:
    bool OpenCommandSlot() override { return m_viewer->OpenCommandSlot(); }
    bool Send(CMemFile& frame) override { return m_viewer->Send(frame); }
    bool Reserve() override {
        m_lease = std::unique_lock<std::mutex>(m_viewer->ReplyLock(), std::try_to_lock);
        return m_lease.owns_lock();
    }
    CMailslot* ReplySlot() override { return m_viewer->ReplySlot(); }
    void ReplyLost() override { m_viewer->DropReplySlot(); }

    std::shared_ptr<KeptViewer> m_viewer;
    std::unique_lock<std::mutex> m_lease;
};

}  // namespace

int Connection::OneWay(CMemFile& frame) {
    if (!OpenCommandSlot() || !Send(frame)) return KPCB_SLOT_UNAVAILABLE;
    return KPCB_OK;
}

int Connection::Query(CMemFile& frame, CKPRCI__BaseRV& reply, bool twice) {
    if (!Reserve() || !OpenCommandSlot()) return KPCB_SLOT_UNAVAILABLE;
    if (twice && !Send(frame)) return KPCB_SLOT_UNAVAILABLE;
    CMailslot* replySlot = ReplySlot();
    if (!replySlot || !Send(frame)) return KPCB_SLOT_UNAVAILABLE;
    if (!AwaitMessage(*replySlot) || !ReceiveRecord(*replySlot, new CMemFile(1024), reply)) {
        ReplyLost();
        return KPCB_NO_REPLY;
    }
    return KPCB_OK;
}

int Connection::Acknowledged(CMemFile& frame) {
    const int sent = OneWay(frame);
    if (sent != KPCB_OK) return sent;
    // The acknowledgement slot is made only now, after the command left.
    CMailslot acknowledgement(0, ReturnSlotName());
    if (!acknowledgement.Open()) return KPCB_SLOT_UNAVAILABLE;
    int value = -1;
    if (!AwaitMessage(acknowledgement) || !ReceiveLeadingInt(acknowledgement, &value)) return KPCB_NO_REPLY;
    return KPCB_OK;
}

bool Connection::AwaitMessage(CMailslot& slot) {
    return AwaitWithin(slot, [this] { return ViewerRunning(); });
}

std::unique_ptr<Connection> ConnectTo(int pid) {
    if (g_keeping) {
        if (auto kept = KeptViewerFor(pid)) return std::make_unique<KeptConnection>(pid, std::move(kept));
    }
    return std::make_unique<FreshConnection>(pid);
}

bool ViewerRunning(int pid) {
    if (g_keeping) {
        if (auto kept = FindKept(pid)) {
            if (kept->Running()) return true;
            ForgetViewer(pid);
            return false;
        }
    }
    return platform::ProcessExists(pid);
}

bool SetKeepConnections(bool keep) {
    const bool was = g_keeping.exchange(keep);
    if (!keep && was) {
        std::map<int, std::shared_ptr<KeptViewer>> released;  // let go of after the lock
        KeptRegistry& kept = Kept();
        std::lock_guard<std::mutex> hold(kept.lock);
        released.swap(kept.byPid);
    }
    return was;
}

void ForgetViewer(int pid) {
    if (!g_keeping) return;  // switching keeping off let go of everything
    std::shared_ptr<KeptViewer> released;
    KeptRegistry& kept = Kept();
    std::lock_guard<std::mutex> hold(kept.lock);
    const auto found = kept.byPid.find(pid);
    if (found == kept.byPid.end()) return;
    released = std::move(found->second);
    kept.byPid.erase(found);
}

void SetReplyTimeout(int milliseconds) { g_replyTimeoutMs = milliseconds > 0 ? milliseconds : 0; }

bool AwaitAnswer(CMailslot& slot, int pid) {
    return AwaitWithin(slot, [pid] { return platform::ProcessExists(pid); });
}

}  // namespace kapi
