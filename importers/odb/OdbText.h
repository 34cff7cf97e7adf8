// Line and field scanning for the text files of an ODB++ job: no allocation per line,
// numbers read with std::from_chars.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace odb {

// Walks a file's text line by line. A line ending in a backslash continues on the
// next one (the pieces are joined with a space). Line numbers count from 1 and name
// the line where a record starts.
class LineReader {
public:
    explicit LineReader(std::string_view text) : m_Text(text) {}
    // The next line without its end-of-line characters and outer blanks; false at the end.
    bool Next(std::string_view& line);
    int LineNumber() const { return m_Line; }

private:
    std::string_view m_Text;
    size_t m_Pos = 0;
    int m_Line = 0;
    int m_NextLine = 1;
    std::string m_Joined;  // a continued record, pieced together
};

// Splits at blanks; a field that starts with a quote runs to the closing quote (the
// quotes are kept). Fills fields, reusing its storage.
void SplitFields(std::string_view line, std::vector<std::string_view>& fields);

// The line without what follows its first ';' (the attributes of a record).
std::string_view StripAttributes(std::string_view line);

bool ParseDouble(std::string_view field, double& value);
bool ParseInt(std::string_view field, int& value);
// "KEY=VALUE" of a header line: sets key and value; false without '='.
bool SplitKeyValue(std::string_view line, std::string_view& key, std::string_view& value);
bool EqualsNoCase(std::string_view a, std::string_view b);
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);
// The units of a "UNITS=MM|INCH" or "U MM|INCH" line: millimetres per unit; 0 when the
// line is not a units line.
double UnitsLine(std::string_view line);

}  // namespace odb
