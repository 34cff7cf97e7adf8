#include "KeptConnections.h"

#include <atomic>
#include <map>

#include "SlotNames.h"

namespace kapi {
namespace {

std::atomic<bool> g_keeping{false};

struct Registry {
    std::mutex lock;
    std::map<int, std::shared_ptr<KeptConnection>> byPid;
};

// Touched only while keeping is on or being switched off: a process (or a copy of the
// library) that never keeps never makes it.
Registry& Kept() {
    static Registry registry;
    return registry;
}

std::shared_ptr<KeptConnection> Find(int pid) {
    Registry& kept = Kept();
    std::lock_guard<std::mutex> guard(kept.lock);
    const auto found = kept.byPid.find(pid);
    return found == kept.byPid.end() ? nullptr : found->second;
}

}  // namespace

KeptConnection::KeptConnection(int pid, platform::ProcessWatch watch) : m_pid(pid), m_watch(watch) {}

KeptConnection::~KeptConnection() { platform::StopWatching(m_watch); }

bool KeptConnection::Running() const { return platform::WatchedProcessRunning(m_watch); }

bool KeptConnection::SendFrame(CFile& file) {
    std::lock_guard<std::mutex> guard(m_commandLock);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!m_command) {
            auto command = std::make_unique<CMailslot>(1, MakeCommandSlotName(m_pid));
            if (!command->Open()) return false;
            m_command = std::move(command);
        }
        if (m_command->SendFrame(file)) return true;
        m_command.reset();  // the reader it reached is gone: open the name again
    }
    return true;  // opened but not written: handed over, as a fresh slot's write would be
}

CMailslot* KeptConnection::ReplySlot() {
    if (!m_reply) {
        auto reply = std::make_unique<CMailslot>(0, MakeReplySlotName(m_pid));
        if (!reply->Open()) return nullptr;
        m_reply = std::move(reply);
    }
    // Whatever waits in it answered an earlier request that gave up on it.
    uint32_t size = 0;
    while (platform::PeekSlotMessageSize(m_reply->GetHandle(), 0, &size)) {
        std::unique_ptr<unsigned char[]> stale(new unsigned char[size ? size : 1]);
        uint32_t read = 0;
        if (!platform::ReadSlot(m_reply->GetHandle(), stale.get(), size, &read)) break;
    }
    return m_reply.get();
}

void KeptConnection::DropReplySlot() { m_reply.reset(); }

bool SetKeepConnections(bool keep) {
    const bool was = g_keeping.exchange(keep);
    if (!keep && was) {
        Registry& kept = Kept();
        std::map<int, std::shared_ptr<KeptConnection>> released;
        std::lock_guard<std::mutex> guard(kept.lock);
        released.swap(kept.byPid);
    }
    return was;
}

std::shared_ptr<KeptConnection> ConnectionTo(int pid) {
    if (!g_keeping) return nullptr;
    if (auto existing = Find(pid)) return existing;
    const platform::ProcessWatch watch = platform::WatchProcess(pid);
    if (!watch) return nullptr;
    auto made = std::make_shared<KeptConnection>(pid, watch);
    Registry& kept = Kept();
    std::lock_guard<std::mutex> guard(kept.lock);
    return kept.byPid.emplace(pid, std::move(made)).first->second;  // another thread's, if it was first
}

bool ViewerRunning(int pid) {
    if (g_keeping) {
        if (auto kept = Find(pid)) {
            if (kept->Running()) return true;
            ForgetViewer(pid);
            return false;
        }
    }
    return platform::ProcessExists(pid);
}

void ForgetViewer(int pid) {
    if (!g_keeping) return;  // switching keeping off let go of everything
    std::shared_ptr<KeptConnection> released;
    Registry& kept = Kept();
    std::lock_guard<std::mutex> guard(kept.lock);
    const auto found = kept.byPid.find(pid);
    if (found == kept.byPid.end()) return;
    released = std::move(found->second);
    kept.byPid.erase(found);
}

}  // namespace kapi
