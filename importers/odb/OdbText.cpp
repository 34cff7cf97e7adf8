#include "OdbText.h"

#include <cctype>
#include <charconv>

namespace odb {

namespace {
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}
}  // namespace

bool LineReader::Next(std::string_view& line) {
    m_Joined.clear();
    bool continued = false;
    while (m_Pos < m_Text.size()) {
        size_t end = m_Text.find('\n', m_Pos);
        if (end == std::string_view::npos) end = m_Text.size();
        std::string_view piece = Trim(m_Text.substr(m_Pos, end - m_Pos));
        m_Pos = end + 1;
        if (!continued) m_Line = m_NextLine;
        ++m_NextLine;
        const bool more = !piece.empty() && piece.back() == '\\';
        if (more) piece.remove_suffix(1);
        if (!more && !continued) {
            line = piece;
            return true;
        }
        if (continued) m_Joined += ' ';
        m_Joined.append(piece.data(), piece.size());
        continued = true;
        if (!more) break;
    }
    if (!continued) return false;
    line = Trim(m_Joined);
    return true;
}

void SplitFields(std::string_view line, std::vector<std::string_view>& fields) {
    fields.clear();
    size_t i = 0;
    const size_t n = line.size();
    while (i < n) {
        while (i < n && IsBlank(line[i])) ++i;
        if (i >= n) break;
        size_t start = i;
        if (line[i] == '\'') {
            size_t close = line.find('\'', i + 1);
            i = close == std::string_view::npos ? n : close + 1;
        } else {
            while (i < n && !IsBlank(line[i])) ++i;
        }
        fields.push_back(line.substr(start, i - start));
    }
}

std::string_view StripAttributes(std::string_view line) {
    const size_t semi = line.find(';');
    return semi == std::string_view::npos ? line : Trim(line.substr(0, semi));
}

bool ParseDouble(std::string_view field, double& value) {
    if (!field.empty() && field.front() == '+') field.remove_prefix(1);
    const char* end = field.data() + field.size();
    auto result = std::from_chars(field.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

bool ParseInt(std::string_view field, int& value) {
    if (!field.empty() && field.front() == '+') field.remove_prefix(1);
    const char* end = field.data() + field.size();
    auto result = std::from_chars(field.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

bool SplitKeyValue(std::string_view line, std::string_view& key, std::string_view& value) {
    const size_t eq = line.find('=');
    if (eq == std::string_view::npos) return false;
    key = Trim(line.substr(0, eq));
    value = Trim(line.substr(eq + 1));
    return true;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

std::string ToLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string ToUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

double UnitsLine(std::string_view line) {
    std::string_view value;
    if (line.size() > 6 && EqualsNoCase(line.substr(0, 6), "UNITS=")) {
        value = Trim(line.substr(6));
    } else if (line.size() > 2 && (line[0] == 'U' || line[0] == 'u') && IsBlank(line[1])) {
        value = Trim(line.substr(2));
    } else {
        return 0;
    }
    if (EqualsNoCase(value, "MM")) return 1.0;
    if (EqualsNoCase(value, "INCH")) return 25.4;
    return 0;
}

}  // namespace odb
