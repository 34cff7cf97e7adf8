// Slot security on POSIX: the read side drops messages that another user sends.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform.h"

TEST(Slots, MessagesFromAnotherUserAreDropped) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to send as another user";
    const std::string name =
        "\\\\.\\mailslot\\KPCBTEST\\stranger\\" + std::to_string(platform::CurrentProcessId());
    const platform::SlotHandle reader = platform::CreateSlot(name);
    ASSERT_NE(reader, platform::InvalidSlot());
    const pid_t child = fork();
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(2);
        platform::SlotHandle slot = platform::OpenSlot(name);
        if (slot == platform::InvalidSlot()) _exit(3);
        const char stranger[] = "stranger";
        uint32_t written = 0;
        _exit(platform::WriteSlot(slot, stranger, sizeof(stranger), &written) ? 0 : 4);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0);
    const platform::SlotHandle writer = platform::OpenSlot(name);
    ASSERT_NE(writer, platform::InvalidSlot());
    uint32_t written = 0;
    ASSERT_TRUE(platform::WriteSlot(writer, "own", 3, &written));
    std::vector<char> got(64);
    uint32_t read = 0;
    EXPECT_TRUE(platform::ReadSlot(reader, got.data(), 64, &read));
    EXPECT_EQ(std::string(got.data(), read), "own");
    platform::CloseSlot(writer);
    platform::CloseSlot(reader);
}
