#include "CTokenizer.h"

INT_PTR CTokenizer::GetTokenArray(CStringArray& tokens) const {
    tokens.RemoveAll();
    const std::string& text = m_text.str();
    const std::string& separators = m_separators.str();
    if (text.empty()) return 0;
    if (separators.empty()) {
        tokens.Add(m_text);
        return 1;
    }
    size_t start = text.find_first_not_of(separators);
    while (start != std::string::npos) {
        const size_t stop = text.find_first_of(separators, start);
        tokens.Add(CString(text.substr(start, stop == std::string::npos ? std::string::npos : stop - start)));
        if (stop == std::string::npos) break;
        start = text.find_first_not_of(separators, stop);
    }
    return tokens.GetSize();
}
