// Mailslots as AF_UNIX datagram sockets in the abstract namespace. Messages too
// large for one datagram travel as a sealed memfd inside a small envelope datagram.
//
// Reading costs system calls, and on a loaded machine every one counts: a read side
// takes the next message off the socket whole into a buffer of its own (an envelope's
// memfd is held instead), where it stays until it is read, so sizing a message and
// reading it is one receive (nobody else reads the socket); a wait without a time
// limit receives blocking instead of polling first, and a wait with one looks before
// it polls.
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "../platform.h"

namespace platform {
namespace {

// What the head of a slot's queue holds.
struct Head {
    uint32_t size = 0;      // the message's size as the reader sees it
    bool envelope = false;  // the bytes are in a passed memfd
    int sender = 0;         // the sending process, from its credentials
};

struct Slot {
    explicit Slot(int socket) : fd(socket) {}
    int fd;
    int timeoutMs = 0;          // 0: wait for ever
    uid_t owner = 0;            // read side: whose messages it accepts (its creator's user)
    bool headKnown = false;     // read side: head describes the message held
    Head head;
    int receiveTimeoutMs = 0;   // the socket's SO_RCVTIMEO in milliseconds, 0 for none
    unsigned char* held = nullptr;  // read side: the bytes of the held message
    int heldFd = -1;            // read side: the held envelope's memfd
};

constexpr char kEnvelopeMagic[8] = {'K', 'P', 'C', 'B', 'M', 'F', 'D', '1'};
constexpr size_t kEnvelopeSize = 16;             // magic, then the 64-bit message length
constexpr uint32_t kLargestInlineMessage = 60 * 1024;
constexpr uint32_t kHeldCapacity = 64 * 1024;   // more than any inline message
constexpr size_t kMaxPassedFds = 8;

Slot* AsSlot(SlotHandle handle) {
    return handle == nullptr || handle == InvalidSlot() ? nullptr : static_cast<Slot*>(handle);
}

bool MakeAddress(const std::string& name, sockaddr_un& address, socklen_t& length) {
    if (name.size() + 1 > sizeof(address.sun_path)) return false;
    std::memset(&address, 0, sizeof(address));
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data(), name.size());  // leading NUL: abstract namespace
    length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return true;
}

struct Control {
    alignas(cmsghdr) char bytes[CMSG_SPACE(sizeof(ucred)) + CMSG_SPACE(sizeof(int) * kMaxPassedFds)];
};

// Walks a received control block: closes every passed descriptor except the first,
// which is returned in firstFd (or closed too when firstFd is null).
void TakeControl(msghdr& message, uid_t owner, bool& fromOwnUser, int* firstFd, size_t* fdCount,
                 int* sender = nullptr) {
    fromOwnUser = false;
    if (sender) *sender = 0;
    if (firstFd) *firstFd = -1;
    size_t count = 0;
    for (cmsghdr* c = CMSG_FIRSTHDR(&message); c; c = CMSG_NXTHDR(&message, c)) {
        if (c->cmsg_level != SOL_SOCKET) continue;
        if (c->cmsg_type == SCM_CREDENTIALS && c->cmsg_len >= CMSG_LEN(sizeof(ucred))) {
            ucred credentials;
            std::memcpy(&credentials, CMSG_DATA(c), sizeof(credentials));
            fromOwnUser = credentials.uid == owner;
            if (sender) *sender = static_cast<int>(credentials.pid);
        } else if (c->cmsg_type == SCM_RIGHTS) {
            const size_t n = (c->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            for (size_t i = 0; i < n; ++i) {
                int fd;
                std::memcpy(&fd, CMSG_DATA(c) + i * sizeof(int), sizeof(int));
                if (firstFd && *firstFd < 0 && count == 0) *firstFd = fd;
                else close(fd);
                ++count;
            }
        }
    }
    if (fdCount) *fdCount = count;
}

// A signal restarts a waiting receive unless interruptible is set.
ssize_t ReceiveMessage(int fd, void* data, size_t capacity, int flags, Control& control, msghdr& message,
                       bool interruptible = false) {
    iovec io{data, capacity};
    std::memset(&message, 0, sizeof(message));
    message.msg_iov = &io;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof(control.bytes);
    ssize_t n;
    do {
        n = recvmsg(fd, &message, flags | MSG_CMSG_CLOEXEC);
    } while (n < 0 && errno == EINTR && !(flags & MSG_DONTWAIT) && !interruptible);
    return n;
}

// Forgets the held message, closing the memfd it carried.
void DropHead(Slot* slot) {
    slot->headKnown = false;
    if (slot->heldFd >= 0) close(slot->heldFd);
    slot->heldFd = -1;
}

// Waits until the slot is readable. timeoutMs < 0 waits for ever. False on time-out,
// error, or (when interruptible) a signal.
bool WaitReadable(int fd, int timeoutMs, bool interruptible) {
    pollfd p{fd, POLLIN, 0};
    for (;;) {
        const int r = poll(&p, 1, timeoutMs);
        if (r > 0) return true;
        if (r == 0) { errno = ETIMEDOUT; return false; }
        if (errno != EINTR || interruptible) return false;
    }
}

enum class TakeResult { Message, Empty, Error };
enum class Wait { No, Block, BlockInterruptible };

// Takes the next message from our own user off the socket into the slot's buffer,
// dropping any from other users (and any too large to be one of ours), and holds it
// as the slot's head. Wait::No returns Empty at once when nothing is there; the
// blocking forms wait as long as the socket's receive time-out allows (Empty when it
// passes), and the interruptible one also ends (Error) on a signal.
TakeResult TakeHead(Slot* slot, Wait wait) {
    for (;;) {
        Control control;
        msghdr message;
        const ssize_t n = ReceiveMessage(slot->fd, slot->held, kHeldCapacity,
                                         MSG_TRUNC | (wait == Wait::No ? MSG_DONTWAIT : 0), control, message,
                                         wait == Wait::BlockInterruptible);
        if (n < 0) {
            if (errno == EAGAIN || errno == EWOULDBLOCK) return TakeResult::Empty;
            return wait == Wait::No && errno == EINTR ? TakeResult::Empty : TakeResult::Error;
        }
        bool own = false;
        size_t fdCount = 0;
        int sender = 0;
        int memFd = -1;
        TakeControl(message, slot->owner, own, &memFd, &fdCount, &sender);
        Head head;
        head.sender = sender;
        if (own && fdCount == 1 && static_cast<size_t>(n) == kEnvelopeSize &&
            std::memcmp(slot->held, kEnvelopeMagic, 8) == 0) {
            uint64_t length;
            std::memcpy(&length, slot->held + 8, sizeof(length));
            head.envelope = length <= 0xFFFFFFFFull;
            head.size = static_cast<uint32_t>(length);
            if (head.envelope) {
                slot->heldFd = memFd;
                memFd = -1;
            }
            own = head.envelope;
        } else {
            head.size = static_cast<uint32_t>(n);
            own = own && static_cast<size_t>(n) <= kHeldCapacity;
        }
        if (memFd >= 0) close(memFd);
        if (!own) continue;
        slot->head = head;
        slot->headKnown = true;
        return TakeResult::Message;
    }
}

// Gives the socket's blocking receives a time limit (0: none), unless they have it already.
bool SetReceiveTimeout(Slot* slot, int timeoutMs) {
    if (slot->receiveTimeoutMs == timeoutMs) return true;
    timeval limit{timeoutMs / 1000, (timeoutMs % 1000) * 1000};
    if (setsockopt(slot->fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit)) != 0) return false;
    slot->receiveTimeoutMs = timeoutMs;
    return true;
}

// Advises huge pages for the whole 2 MiB pages inside a large buffer that is about to
// be filled: fresh memory then costs one fault per 2 MiB instead of one per 4 KiB.
void AdviseHugePages(void* data, size_t size) {
    constexpr uintptr_t kHuge = uintptr_t{2} << 20;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + kHuge - 1) & ~(kHuge - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + size) & ~(kHuge - 1);
    if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

// Copies the first size bytes of a passed memfd into data. A large one that is sealed
// against shrinking (so that a mapping cannot lose pages under the copy) is mapped and
// copied at once: reading shared memory through read() costs several times a copy.
bool CopyOut(int memFd, void* data, uint32_t size) {
    constexpr uint32_t kMapAtLeast = 1u << 20;
    if (size >= kMapAtLeast) {
        struct stat status;
        const int seals = fcntl(memFd, F_GET_SEALS);
        if (seals >= 0 && (seals & F_SEAL_SHRINK) && fstat(memFd, &status) == 0 &&
            status.st_size >= static_cast<off_t>(size)) {
            void* view = mmap(nullptr, size, PROT_READ, MAP_SHARED, memFd, 0);
            if (view != MAP_FAILED) {
                AdviseHugePages(data, size);
                std::memcpy(data, view, size);
                munmap(view, size);
                return true;
            }
        }
    }
    uint32_t done = 0;
    while (done < size) {
        const ssize_t r = pread(memFd, static_cast<char*>(data) + done, size - done, done);
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) break;
        done += static_cast<uint32_t>(r);
    }
    return done == size;
}


bool SendEnvelope(int fd, const void* data, uint32_t count) {
    const int memFd = memfd_create("kpcb-message", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (memFd < 0) return false;
    bool ok = true;
    for (uint32_t done = 0; ok && done < count;) {
        const ssize_t w = write(memFd, static_cast<const char*>(data) + done, count - done);
        if (w < 0 && errno == EINTR) continue;
        ok = w > 0;
        if (ok) done += static_cast<uint32_t>(w);
    }
    // Sealed so the reader can trust the size and contents it maps.
    if (ok) ok = fcntl(memFd, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) == 0;
    if (ok) {
        unsigned char envelope[kEnvelopeSize];
        const uint64_t length = count;
        std::memcpy(envelope, kEnvelopeMagic, 8);
        std::memcpy(envelope + 8, &length, sizeof(length));
        iovec io{envelope, sizeof(envelope)};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        msghdr message{};
        message.msg_iov = &io;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof(control);
        cmsghdr* c = CMSG_FIRSTHDR(&message);
        c->cmsg_level = SOL_SOCKET;
        c->cmsg_type = SCM_RIGHTS;
        c->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(c), &memFd, sizeof(int));
        ssize_t sent;
        do {
            sent = sendmsg(fd, &message, MSG_NOSIGNAL);
        } while (sent < 0 && errno == EINTR);
        ok = sent == static_cast<ssize_t>(sizeof(envelope));
    }
    const int reason = errno;  // the failure's, not the close's
    close(memFd);
    errno = reason;
    return ok;
}

// A failed open: why receives the reason, and fd (when open) is closed.
SlotHandle FailedOpen(Status* why, Status reason, int fd = -1) {
    if (why) *why = reason;
    if (fd >= 0) close(fd);
    return InvalidSlot();
}

}  // namespace

SlotHandle CreateSlot(const std::string& name, Status* why) {
    sockaddr_un address;
    socklen_t length;
    if (!MakeAddress(name, address, length)) return FailedOpen(why, Error::kTooBig);
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return FailedOpen(why, LastSystemError());
    const int on = 1;
    if (setsockopt(fd, SOL_SOCKET, SO_PASSCRED, &on, sizeof(on)) != 0 ||
        bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0)
        return FailedOpen(why, LastSystemError(), fd);
    Slot* slot = new (std::nothrow) Slot(fd);
    unsigned char* held = new (std::nothrow) unsigned char[kHeldCapacity];
    if (!slot || !held) {
        delete slot;
        delete[] held;
        return FailedOpen(why, Error::kNoMemory, fd);
    }
    slot->owner = getuid();
    slot->held = held;
    return slot;
}

SlotHandle OpenSlot(const std::string& name, Status* why) {
    sockaddr_un address;
    socklen_t length;
    if (!MakeAddress(name, address, length)) return FailedOpen(why, Error::kTooBig);
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return FailedOpen(why, LastSystemError());
    int r;
    do {
        r = connect(fd, reinterpret_cast<sockaddr*>(&address), length);
    } while (r != 0 && errno == EINTR);
    if (r != 0) return FailedOpen(why, LastSystemError(), fd);
    // A reader that stops reading fills its queue; a write then waits for room only
    // this long, so that the writer's thread is not held for ever.
    const timeval sendWait{kSlotSendWaitMs / 1000, (kSlotSendWaitMs % 1000) * 1000};
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &sendWait, sizeof(sendWait));
    Slot* slot = new (std::nothrow) Slot(fd);  // a write side reads nothing
    if (!slot) return FailedOpen(why, Error::kNoMemory, fd);
    return slot;
}

Status WriteSlot(SlotHandle handle, const void* data, uint32_t count, uint32_t* written) {
    if (written) *written = 0;
    Slot* slot = AsSlot(handle);
    if (!slot || (count && !data)) return Error::kInvalid;
    bool ok;
    if (count > kLargestInlineMessage) {
        ok = SendEnvelope(slot->fd, data, count);
    } else {
        ssize_t sent;
        do {
            sent = send(slot->fd, data, count, MSG_NOSIGNAL);
        } while (sent < 0 && errno == EINTR);
        ok = sent == static_cast<ssize_t>(count);
        if (sent >= 0 && !ok) errno = EMSGSIZE;
    }
    if (!ok) return LastSystemError();
    if (written) *written = count;
    return Status();
}

Status WriteSlotPair(SlotHandle handle, const void* first, uint32_t firstCount, const void* second,
                     uint32_t secondCount) {
    Slot* slot = AsSlot(handle);
    if (!slot || (firstCount && !first) || (secondCount && !second)) return Error::kInvalid;
    if (firstCount > kLargestInlineMessage || secondCount > kLargestInlineMessage) {
        uint32_t written = 0;
        const Status sent = WriteSlot(handle, first, firstCount, &written);
        return sent ? WriteSlot(handle, second, secondCount, &written) : sent;
    }
    iovec io[2] = {{const_cast<void*>(first), firstCount}, {const_cast<void*>(second), secondCount}};
    mmsghdr messages[2] = {};
    for (int i = 0; i < 2; ++i) {
        messages[i].msg_hdr.msg_iov = &io[i];
        messages[i].msg_hdr.msg_iovlen = 1;
    }
    unsigned done = 0;
    while (done < 2) {
        const int sent = sendmmsg(slot->fd, messages + done, 2 - done, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return LastSystemError();
        if (sent == 0) return Error::kUnknown;
        done += static_cast<unsigned>(sent);
    }
    if (messages[0].msg_len != firstCount || messages[1].msg_len != secondCount) return Error::kTooBig;
    return Status();
}

namespace {
// Waits for the next message of our own user and describes it. interruptible: a
// signal ends the wait (the viewer's close request); timeoutMs < 0 waits for ever.
//
// A message held already answers at once. Otherwise one blocking receive does the
// waiting when the socket's receive time-out is already the one wanted (a
// server that waits the same way each time); else a look without waiting comes first,
// as the message is often there already, and only then the time-out is changed.
Status WaitHead(Slot* slot, int timeoutMs, bool interruptible, Head& head) {
    if (!slot->headKnown) {
        const int limit = timeoutMs < 0 ? 0 : timeoutMs;
        const Wait block = interruptible ? Wait::BlockInterruptible : Wait::Block;
        TakeResult r = TakeResult::Empty;
        if (timeoutMs != 0 && slot->receiveTimeoutMs == limit) {
            r = TakeHead(slot, block);
        } else {
            r = TakeHead(slot, Wait::No);
            if (r == TakeResult::Empty && timeoutMs != 0) {
                if (SetReceiveTimeout(slot, limit)) {
                    r = TakeHead(slot, block);
                } else {
                    // Without a receive time-out: wait for readiness, then look.
                    while (r == TakeResult::Empty && WaitReadable(slot->fd, timeoutMs, interruptible))
                        r = TakeHead(slot, Wait::No);
                }
            }
        }
        if (r == TakeResult::Empty) return Error::kTimedOut;
        if (r != TakeResult::Message) return LastSystemError();
    }
    head = slot->head;
    return Status();
}

int ReadTimeout(const Slot* slot) { return slot->timeoutMs > 0 ? slot->timeoutMs : -1; }
}  // namespace

Status PeekSlotMessageSize(SlotHandle handle, int timeoutMs, uint32_t* size, int* sender) {
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    Head head;
    const Status waited = WaitHead(slot, timeoutMs, true, head);
    if (!waited) return waited;
    if (size) *size = head.size;
    if (sender) *sender = head.sender;
    return Status();
}

Status NextSlotMessageSize(SlotHandle handle, uint32_t* size) {
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    Head head;
    const Status waited = WaitHead(slot, ReadTimeout(slot), false, head);
    if (!waited) return waited;
    if (size) *size = head.size;
    return Status();
}

Status ReadSlot(SlotHandle handle, void* data, uint32_t capacity, uint32_t* read) {
    if (read) *read = 0;
    Slot* slot = AsSlot(handle);
    if (!slot) return Error::kInvalid;
    Head head;
    const Status waited = WaitHead(slot, ReadTimeout(slot), false, head);
    if (!waited) return waited;
    if (head.size > capacity) return Error::kTooBig;  // it stays held
    bool ok = true;
    if (head.envelope)
        ok = CopyOut(slot->heldFd, data, head.size);
    else if (head.size)
        std::memcpy(data, slot->held, head.size);
    const Status copied = ok ? Status() : LastSystemError();
    DropHead(slot);
    if (ok && read) *read = head.size;
    return copied;
}

bool KeptWriterNoticesClosedReader() { return true; }

void SetSlotReadTimeout(SlotHandle handle, int milliseconds) {
    if (Slot* slot = AsSlot(handle)) slot->timeoutMs = milliseconds > 0 ? milliseconds : 0;
}

void CloseSlot(SlotHandle handle) {
    if (Slot* slot = AsSlot(handle)) {
        DropHead(slot);
        close(slot->fd);
        delete[] slot->held;
        delete slot;
    }
}

}  // namespace platform
