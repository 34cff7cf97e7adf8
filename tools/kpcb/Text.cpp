#include "Text.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>

#include <CLI/CLI.hpp>

#include "KPCBAPI.h"
#include "Tool.h"
#include "platform.h"

namespace kpcb {

LibraryString::~LibraryString() { KPCB_FreeString(text); }

std::wstring Wide(const std::string& text) { return platform::AnsiToWide(text); }

std::string Narrow(const wchar_t* text) { return text ? platform::WideToAnsi(text) : std::string(); }

namespace {
// Joins names that need no further splitting: a line break, which no name holds.
const char kNameBreak = '\n';
}  // namespace

std::string NameList::Text() const {
    const char joint = separators.empty() ? kNameBreak : separators[0];
    std::string text;
    for (size_t i = 0; i < names.size(); ++i) {
        if (i) text += joint;
        text += names[i];
    }
    return text;
}

std::string NameList::Separators() const { return separators.empty() ? std::string(1, kNameBreak) : separators; }

void AddNameList(CLI::App* command, NameList& list, const std::string& what, const std::string& help) {
    command->add_option(what, list.names, help);
    command->add_option("--separators,-s", list.separators,
                        "characters that also split each argument into names (every character splits on its own)");
}

namespace {

bool ParseInt(const std::string& text, long& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtol(text.c_str(), &end, 10);
    return end && *end == '\0';
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

Rgb ParseColor(const std::string& text) {
    const std::string wrong = "a colour is R,G,B (each 0 to 255) or #RRGGBB, not \"" + text + "\"";
    Rgb color;
    if (!text.empty() && text[0] == '#') {
        if (text.size() != 7) throw UsageError(wrong);
        for (size_t i = 1; i < 7; ++i) {
            if (!std::isxdigit(static_cast<unsigned char>(text[i]))) throw UsageError(wrong);
        }
        const unsigned long value = std::strtoul(text.c_str() + 1, nullptr, 16);
        color.r = static_cast<unsigned char>(value >> 16);
        color.g = static_cast<unsigned char>(value >> 8);
        color.b = static_cast<unsigned char>(value);
        return color;
    }
    unsigned char* parts[3] = {&color.r, &color.g, &color.b};
    size_t start = 0;
    for (int i = 0; i < 3; ++i) {
        const size_t comma = text.find(',', start);
        if ((i < 2) != (comma != std::string::npos)) throw UsageError(wrong);
        long value;
        if (!ParseInt(text.substr(start, comma == std::string::npos ? std::string::npos : comma - start), value) ||
            value < 0 || value > 255) {
            throw UsageError(wrong);
        }
        *parts[i] = static_cast<unsigned char>(value);
        start = comma + 1;
    }
    return color;
}

int ParseSwitch(const std::string& text) {
    const std::string word = Lower(text);
    if (word == "on") return 1;
    if (word == "off") return 0;
    long value;
    if (ParseInt(text, value)) return static_cast<int>(value);
    throw UsageError("a switch is on, off or a whole number, not \"" + text + "\"");
}

CLI::Transformer ObjectKindNames() {
    const std::map<std::string, int> names = {{"nets", 0},       {"net", 0},  {"components", 1},
                                              {"component", 1}, {"pins", 2}, {"pin", 2}};
    return CLI::Transformer(names, CLI::ignore_case);
}

CLI::Transformer UnitNames() {
    const std::map<std::string, int> names = {{"mm", 0}, {"mil", 1}, {"inch", 2}, {"um", 3}};
    return CLI::Transformer(names, CLI::ignore_case);
}

std::string Absolute(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.string();
}

std::string Number(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

void PrintLines(std::ostream& out, const std::string& joined) {
    if (joined.empty()) return;
    out << joined << '\n';
}

void PrintPoints(std::ostream& out, const std::vector<double>& xs, const std::vector<double>& ys) {
    const size_t n = xs.size() < ys.size() ? xs.size() : ys.size();
    for (size_t i = 0; i < n; ++i) out << Number(xs[i]) << ' ' << Number(ys[i]) << '\n';
}

bool SplitScriptLine(const std::string& line, std::vector<std::string>& words, std::string& error) {
    words.clear();
    size_t i = 0;
    const size_t n = line.size();
    auto blank = [&](size_t at) { return line[at] == ' ' || line[at] == '\t' || line[at] == '\r' || line[at] == '\n'; };
    while (i < n) {
        while (i < n && blank(i)) ++i;
        if (i >= n || line[i] == '#') break;
        std::string word;
        while (i < n && !blank(i)) {
            const char c = line[i];
            if (c == '"' || c == '\'') {
                const size_t open = i++;
                bool closed = false;
                while (i < n) {
                    if (line[i] == c) {
                        closed = true;
                        ++i;
                        break;
                    }
                    if (c == '"' && line[i] == '\\' && i + 1 < n && (line[i + 1] == '"' || line[i + 1] == '\\')) ++i;
                    word += line[i++];
                }
                if (!closed) {
                    error = std::string("unclosed ") + c + " quote opened at column " + std::to_string(open + 1);
                    return false;
                }
            } else {
                word += c;
                ++i;
            }
        }
        words.push_back(word);
    }
    return true;
}

}  // namespace kpcb
