// Where the tests find the built programs and a scratch folder of their own.
#pragma once

#include <string>

namespace testing_support {
// The folder that holds the library, the viewer and the test programs.
std::string BinDir();
// The sample board of the source tree (its text form).
std::string SampleBoard();
// folder + the system's separator + name, with any '/' in name turned into that
// separator: the form in which the library gives paths back.
std::string Join(const std::string& folder, const std::string& name);
// A new empty folder, removed with its contents when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return m_path; }
    // A path inside the folder; '/' in name separates folders on every platform.
    std::string operator/(const std::string& name) const { return Join(m_path, name); }

private:
    std::string m_path;
};
}  // namespace testing_support
