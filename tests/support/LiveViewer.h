// What the tests that drive a real viewer process share: a viewer that is closed at
// the end of its scope, strings the library hands out, and wide forms of test text.
#pragma once

#include <string>

#include "KPCBAPI.hpp"

namespace testing_support {

// A viewer launched hidden on a board file, closed (and waited for) at scope end.
class Viewer {
public:
    explicit Viewer(const std::string& board) : pid(KPCB_Launch(CString(board), 1)) {}
    ~Viewer() {
        if (pid > 0) KPCB_Exit(pid, 1);
    }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;
    const int pid;
};

// A wide string allocated by the library, freed at scope end.
struct OwnedString {
    wchar_t* text = nullptr;
    ~OwnedString() { KPCB_FreeString(text); }
    std::wstring str() const { return text ? text : L"(null)"; }
};

// The wide form of ASCII test text.
inline std::wstring Wide(const std::string& s) { return std::wstring(s.begin(), s.end()); }

}  // namespace testing_support
