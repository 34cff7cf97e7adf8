// The viewer's journal: one line per record received, for tests and for people
// who want to see what a program sent. Enabled by KPCB_VIEWER_JOURNAL=<file>.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace viewer {

class Journal {
public:
    explicit Journal(const std::string& path);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // "<n>\t<class id>\t<class name>\t<payload in hex>\t<what the viewer did>"
    void Record(int classId, const char* className, const unsigned char* payload, size_t size, const std::string& note);
    // "<n>\t-\tMALFORMED\t\t<why>"
    void Malformed(const std::string& why);

private:
    FILE* m_file = nullptr;
    long m_count = 0;
};

}  // namespace viewer
