// Arguments in, answers out: name lists, colours, switches, wide text, numbers,
// and the words of a script line.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kpcb {

// A string that the library allocated for a wchar_t** result, freed with it.
struct LibraryString {
    wchar_t* text = nullptr;
    LibraryString() = default;
    LibraryString(const LibraryString&) = delete;
    LibraryString& operator=(const LibraryString&) = delete;
    ~LibraryString();
};

// Narrow text is in the system's code page (UTF-8 on POSIX); the wide functions of
// the library take and give wchar_t text.
std::wstring Wide(const std::string& text);
std::string Narrow(const wchar_t* text);

// A list of names as the library takes it: one text and a set of separator
// characters. Each argument is one name; with --separators given, each argument
// may itself hold several names split at any of those characters.
struct NameList {
    std::vector<std::string> names;
    std::string separators;

    std::string Text() const;        // the names joined for the library
    std::string Separators() const;  // the separator set that splits Text() again
};

// Adds the positional argument `what` (any number of names) and --separators.
void AddNameList(CLI::App* command, NameList& list, const std::string& what, const std::string& help);

// A colour: "R,G,B" (0-255 each) or "#RRGGBB". Throws UsageError.
struct Rgb {
    unsigned char r = 255, g = 0, b = 0;
    unsigned long Colorref() const { return r | (g << 8) | (static_cast<unsigned long>(b) << 16); }
};
Rgb ParseColor(const std::string& text);

// "on" / "off" (any case), or a whole number sent as it is. Throws UsageError.
int ParseSwitch(const std::string& text);

// Names for the reference viewer's codes (docs/viewer.md); a number passes as it is.
//   object kinds of highlights and the explorer: nets 0, components 1, pins 2
//   units of the pin pitch: mm 0, mil 1, inch 2, um 3
CLI::Transformer ObjectKindNames();
CLI::Transformer UnitNames();

// The path made absolute against the current folder: the viewer, which opens it,
// may run in another folder.
std::string Absolute(const std::string& path);

// A number for reading: up to ten significant digits, no trailing zeros.
std::string Number(double value);

// Prints a list that the library joined with '\n', one entry per line.
void PrintLines(std::ostream& out, const std::string& joined);

// Prints parallel coordinate arrays as "x y" lines.
void PrintPoints(std::ostream& out, const std::vector<double>& xs, const std::vector<double>& ys);

// The words of a script line: blanks separate words; "double" and 'single' quotes
// group (inside double quotes \" and \\ stand for " and \); a # that starts a word
// starts a comment. Backslashes elsewhere are kept as they are (Windows paths).
// Returns false and sets error for an unclosed quote.
bool SplitScriptLine(const std::string& line, std::vector<std::string>& words, std::string& error);

}  // namespace kpcb
