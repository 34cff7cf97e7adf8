#include "TestPaths.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <stdexcept>

#include "platform.h"

namespace testing_support {

std::string BinDir() { return platform::ExecutableDirectory(); }

std::string SampleBoard() { return std::string(KPCB_SOURCE_DIR) + "/samples/demo_board.pdbba"; }

std::string Join(const std::string& folder, const std::string& name) {
    const char separator = platform::PathSeparator();
    std::string native = name;
    for (char& c : native)
        if (c == '/') c = separator;
    return folder + separator + native;
}

TempDir::TempDir() {
    static std::atomic<int> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    const std::filesystem::path dir = std::filesystem::temp_directory_path() /
        ("kpcb-test-" + std::to_string(platform::CurrentProcessId()) + "-" + std::to_string(counter++) + "-" +
         std::to_string(stamp % 1000000007));
    if (!std::filesystem::create_directories(dir)) throw std::runtime_error("cannot make " + dir.string());
    m_path = dir.string();
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace testing_support
