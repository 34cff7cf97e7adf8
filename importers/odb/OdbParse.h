// Parsers of the text files of an ODB++ job. Each reads one file's text into records
// (lengths converted to millimetres) and reports what it skips to the log as
// "file:line: what". Only the layer table can fail as a whole.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CString.h"
#include "PdbExtras.h"
#include "odb/OdbRecords.h"

namespace odb {

// Warnings of one reading; each names the file and line.
class Log {
public:
    void Warn(const std::string& file, int line, const std::string& what);
    // Skips of one kind after the first are counted, not listed: Flush adds a
    // summary line for each kind that repeated.
    void WarnOnce(const std::string& file, int line, const std::string& kind);
    void Flush();
    std::vector<std::string> lines;

private:
    struct Repeat {
        std::string file, kind;
        int count;
    };
    std::vector<Repeat> m_Repeats;
};

// A step of the layer table.
struct MatrixStep {
    int col = 0;
    CString name;
};

// matrix/matrix: steps sorted by COL, layers by ROW. false with error ("file:line: what").
bool ParseMatrix(std::string_view text, const std::string& file, std::vector<MatrixStep>& steps,
                 COwningArray<CODBmatrixLayer>& layers, std::string& error);

// misc/info: every KEY=VALUE as a property; unitsMM becomes the job's units when given.
void ParseInfo(std::string_view text, COwningArray<CGProperty>& properties, double& unitsMM);

void ParseStephdr(std::string_view text, const std::string& file, double unitsMM, CODBstephdr& header, Log& log);

// A features file (a layer, the profile or a user symbol).
void ParseFeatures(std::string_view text, const std::string& file, double unitsMM, CODBlayer& layer, Log& log);

// components of one side.
void ParseComponents(std::string_view text, const std::string& file, double unitsMM, bool bottom,
                     COwningArray<CODBcmp>& components, Log& log);

// The EDA data of a step.
struct EdaData {
    std::vector<std::string> layers;  // LYR names, upper case
    COwningArray<CODBdataNet> nets;
    COwningArray<CODBdataPkg> packages;
};
void ParseEdaData(std::string_view text, const std::string& file, double unitsMM, EdaData& data, Log& log);

// netlists/cadnet/netlist.
void ParseNetlist(std::string_view text, const std::string& file, double unitsMM, COwningArray<CODBnet>& nets,
                  Log& log);

}  // namespace odb
