// Mailslots as AF_UNIX datagram sockets in the abstract namespace. Messages too
// large for one datagram travel as a sealed memfd inside a small envelope datagram.
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "../platform.h"

namespace platform {
namespace {

struct Slot {
    int fd;
    int timeoutMs;  // 0: wait for ever
};

constexpr char kEnvelopeMagic[8] = {'K', 'P', 'C', 'B', 'M', 'F', 'D', '1'};
constexpr size_t kEnvelopeSize = 16;             // magic, then the 64-bit message length
constexpr uint32_t kLargestInlineMessage = 60 * 1024;
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

// What the head of a slot's queue holds.
struct Head {
    uint32_t size = 0;      // the message's size as the reader sees it
    bool envelope = false;  // the bytes are in a passed memfd
};

struct Control {
    alignas(cmsghdr) char bytes[CMSG_SPACE(sizeof(ucred)) + CMSG_SPACE(sizeof(int) * kMaxPassedFds)];
};

// Walks a received control block: closes every passed descriptor except the first,
// which is returned in firstFd (or closed too when firstFd is null).
void TakeControl(msghdr& message, bool& fromOwnUser, int* firstFd, size_t* fdCount) {
    fromOwnUser = false;
    if (firstFd) *firstFd = -1;
    size_t count = 0;
    for (cmsghdr* c = CMSG_FIRSTHDR(&message); c; c = CMSG_NXTHDR(&message, c)) {
        if (c->cmsg_level != SOL_SOCKET) continue;
        if (c->cmsg_type == SCM_CREDENTIALS && c->cmsg_len >= CMSG_LEN(sizeof(ucred))) {
            ucred credentials;
            std::memcpy(&credentials, CMSG_DATA(c), sizeof(credentials));
            fromOwnUser = credentials.uid == getuid();
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

ssize_t ReceiveMessage(int fd, void* data, size_t capacity, int flags, Control& control, msghdr& message) {
    iovec io{data, capacity};
    std::memset(&message, 0, sizeof(message));
    message.msg_iov = &io;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof(control.bytes);
    ssize_t n;
    do {
        n = recvmsg(fd, &message, flags | MSG_CMSG_CLOEXEC);
    } while (n < 0 && errno == EINTR && !(flags & MSG_DONTWAIT));
    return n;
}

// Drops the message at the head of the queue, closing anything it carried.
void DropHead(int fd) {
    char scratch[1];
    Control control;
    msghdr message;
    if (ReceiveMessage(fd, scratch, sizeof(scratch), MSG_TRUNC, control, message) >= 0) {
        bool own;
        TakeControl(message, own, nullptr, nullptr);
    }
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

enum class PeekResult { Message, Empty, Error };

// Looks at the next message from our own user without waiting, dropping any from other users.
PeekResult PeekHead(int fd, Head& head) {
    for (;;) {
        unsigned char probe[kEnvelopeSize];
        Control control;
        msghdr message;
        const ssize_t n = ReceiveMessage(fd, probe, sizeof(probe), MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT, control, message);
        if (n < 0) return errno == EAGAIN || errno == EINTR ? PeekResult::Empty : PeekResult::Error;
        bool own = false;
        size_t fdCount = 0;
        TakeControl(message, own, nullptr, &fdCount);
        if (!own) {
            DropHead(fd);
            continue;
        }
        head = Head{};
        if (fdCount == 1 && static_cast<size_t>(n) == kEnvelopeSize && std::memcmp(probe, kEnvelopeMagic, 8) == 0) {
            uint64_t length;
            std::memcpy(&length, probe + 8, sizeof(length));
            if (length > 0xFFFFFFFFull) { DropHead(fd); continue; }
            head.envelope = true;
            head.size = static_cast<uint32_t>(length);
        } else {
            head.size = static_cast<uint32_t>(n);
        }
        return PeekResult::Message;
    }
}

bool ReadEnvelope(int fd, void* data, uint32_t size) {
    unsigned char envelope[kEnvelopeSize];
    Control control;
    msghdr message;
    if (ReceiveMessage(fd, envelope, sizeof(envelope), 0, control, message) < 0) return false;
    bool own;
    int memFd = -1;
    TakeControl(message, own, &memFd, nullptr);
    if (memFd < 0) return false;
    uint32_t done = 0;
    while (done < size) {
        const ssize_t r = pread(memFd, static_cast<char*>(data) + done, size - done, done);
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) break;
        done += static_cast<uint32_t>(r);
    }
    close(memFd);
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
    close(memFd);
    return ok;
}

}  // namespace

SlotHandle CreateSlot(const std::string& name) {
    sockaddr_un address;
    socklen_t length;
    if (!MakeAddress(name, address, length)) return InvalidSlot();
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return InvalidSlot();
    const int on = 1;
    if (setsockopt(fd, SOL_SOCKET, SO_PASSCRED, &on, sizeof(on)) != 0 ||
        bind(fd, reinterpret_cast<sockaddr*>(&address), length) != 0) {
        close(fd);
        return InvalidSlot();
    }
    Slot* slot = new (std::nothrow) Slot{fd, 0};
    if (!slot) { close(fd); return InvalidSlot(); }
    return slot;
}

SlotHandle OpenSlot(const std::string& name) {
    sockaddr_un address;
    socklen_t length;
    if (!MakeAddress(name, address, length)) return InvalidSlot();
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return InvalidSlot();
    int r;
    do {
        r = connect(fd, reinterpret_cast<sockaddr*>(&address), length);
    } while (r != 0 && errno == EINTR);
    if (r != 0) { close(fd); return InvalidSlot(); }
    Slot* slot = new (std::nothrow) Slot{fd, 0};
    if (!slot) { close(fd); return InvalidSlot(); }
    return slot;
}

bool WriteSlot(SlotHandle handle, const void* data, uint32_t count, uint32_t* written) {
    if (written) *written = 0;
    Slot* slot = AsSlot(handle);
    if (!slot || (count && !data)) return false;
    bool ok;
    if (count > kLargestInlineMessage) {
        ok = SendEnvelope(slot->fd, data, count);
    } else {
        ssize_t sent;
        do {
            sent = send(slot->fd, data, count, MSG_NOSIGNAL);
        } while (sent < 0 && errno == EINTR);
        ok = sent == static_cast<ssize_t>(count);
    }
    if (ok && written) *written = count;
    return ok;
}

namespace {
// Waits for the next message of our own user and describes it. interruptible: a
// signal ends the wait (the viewer's close request); timeoutMs < 0 waits for ever.
bool WaitHead(Slot* slot, int timeoutMs, bool interruptible, Head& head) {
    for (;;) {
        if (!WaitReadable(slot->fd, timeoutMs, interruptible)) return false;
        const PeekResult r = PeekHead(slot->fd, head);
        if (r == PeekResult::Error) return false;
        if (r == PeekResult::Message) return true;
        // Empty: only a stranger's message was there; wait again.
    }
}

int ReadTimeout(const Slot* slot) { return slot->timeoutMs > 0 ? slot->timeoutMs : -1; }
}  // namespace

bool PeekSlotMessageSize(SlotHandle handle, int timeoutMs, uint32_t* size) {
    Slot* slot = AsSlot(handle);
    Head head;
    if (!slot || !WaitHead(slot, timeoutMs, true, head)) return false;
    if (size) *size = head.size;
    return true;
}

bool NextSlotMessageSize(SlotHandle handle, uint32_t* size) {
    Slot* slot = AsSlot(handle);
    Head head;
    if (!slot || !WaitHead(slot, ReadTimeout(slot), false, head)) return false;
    if (size) *size = head.size;
    return true;
}

bool ReadSlot(SlotHandle handle, void* data, uint32_t capacity, uint32_t* read) {
    if (read) *read = 0;
    Slot* slot = AsSlot(handle);
    if (!slot) return false;
    for (;;) {
        Head head;
        if (!WaitHead(slot, ReadTimeout(slot), false, head)) return false;
        if (head.size > capacity) { errno = EMSGSIZE; return false; }
        if (head.envelope) {
            if (!ReadEnvelope(slot->fd, data, head.size)) return false;
            if (read) *read = head.size;
            return true;
        }
        Control control;
        msghdr message;
        const ssize_t n = ReceiveMessage(slot->fd, data, capacity, 0, control, message);
        if (n < 0) return false;
        bool own;
        TakeControl(message, own, nullptr, nullptr);
        if (!own) continue;  // a stranger's message slipped in between peek and read
        if (read) *read = static_cast<uint32_t>(n);
        return true;
    }
}

void SetSlotReadTimeout(SlotHandle handle, int milliseconds) {
    if (Slot* slot = AsSlot(handle)) slot->timeoutMs = milliseconds > 0 ? milliseconds : 0;
}

void CloseSlot(SlotHandle handle) {
    if (Slot* slot = AsSlot(handle)) {
        close(slot->fd);
        delete slot;
    }
}

}  // namespace platform
