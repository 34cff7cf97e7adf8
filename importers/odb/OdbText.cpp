#include "OdbText.h"

#include <cctype>
#include <charconv>
#include <cstdint>

namespace odb {

namespace {
// Most characters are above the space: one comparison decides for them.
bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
}

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

bool RecordReader::Next() {
    while (m_Lines.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (const double units = UnitsLine(line)) {
            m_Scale = units;
            continue;
        }
        SplitFields(StripAttributes(line), fields);
        if (!fields.empty()) return true;
    }
    return false;
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

namespace {
// Exact powers of ten: every one up to 1e22 is a double without rounding.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A plain decimal ("-12.345678", no exponent) of at most 15 digits, the common case of
// a coordinate: its digits and the power of ten are exact doubles, so the one division
// is rounded once and gives the same double as from_chars. false for anything else.
bool ParsePlainDecimal(std::string_view field, double& value) {
    const char* p = field.data();
    const char* end = p + field.size();
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    uint64_t digits = 0;
    int count = 0, fraction = -1;  // fraction: digits after the point, -1 before it
    for (; p != end; ++p) {
        const unsigned d = static_cast<unsigned char>(*p) - '0';
        if (d <= 9) {
            if (++count > 15) return false;
            digits = digits * 10 + d;
            if (fraction >= 0) ++fraction;
        } else if (*p == '.' && fraction < 0) {
            fraction = 0;
        } else {
            return false;
        }
    }
    if (count == 0) return false;
    const double magnitude = static_cast<double>(digits) / kPowersOfTen[fraction > 0 ? fraction : 0];
    value = negative ? -magnitude : magnitude;
    return true;
}
}  // namespace

bool ParseDouble(std::string_view field, double& value) {
    if (!field.empty() && field.front() == '+') field.remove_prefix(1);
    if (ParsePlainDecimal(field, value)) return true;
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
    if (line.empty() || (line[0] != 'U' && line[0] != 'u')) return 0;  // most lines, at once
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
