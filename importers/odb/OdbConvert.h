// Turns the records of one step of an ODB++ job into a board database, layer by
// layer, so that each layer's records can be freed once it is converted.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CPdb.h"
#include "OdbJobFiles.h"
#include "OdbParse.h"
#include "OdbSymbols.h"

namespace odb {

// The step's records that every layer refers to.
struct StepRecords {
    std::vector<const CODBmatrixLayer*> layers;  // the layers to read, in ROW order (not owned)
    EdaData eda;
    bool haveEda = false;
    COwningArray<CODBcmp> top, bottom;
    std::string edaFile;  // for messages
};

class BoardBuilder {
public:
    // files gives the user symbols; jobUnitsMM the units of files without their own.
    BoardBuilder(CPdb& pdb, const JobFiles& files, double jobUnitsMM, const StepRecords& step, bool drillToVia,
                 Log& log);

    // Drill layers first (their holes decide what is a via), then every other layer.
    static bool IsDrill(const CODBmatrixLayer& layer);
    // Converts one parsed layer; file names it in messages. The surfaces' points are
    // moved into the board: the layer's records are spent afterwards.
    void ConvertLayer(CODBlayer& layer, const std::string& file);
    // Places components, pins and vias, and the outline from the profile (may be null).
    void Finish(const CODBlayer* profile, const std::string& profileFile);

private:
    struct ToeRef {
        bool bottom;
        int cmp;
        int pin;
    };
    struct PadFound {
        const SymbolShape* shape = nullptr;
        CPointD position;
        double angleCW = 0;
        bool mirror = false;
        // Linked to the toeprint by eda/data (2) rather than found at its position, and on
        // the outer copper layer of its component's side (1): the best pad found wins.
        int rank = -1;
    };
    struct Via {
        CPointD position;
        double drill = 0;
        int from = 0, to = 0;
        int net = -1;       // eda net index
        double pad = 0;     // the widest pad found over it
    };

    // The shape of a layer's symbol; null (after a warning) for one that cannot be drawn.
    const SymbolShape* Symbol(const CODBlayer& layer, int index, const std::string& file);
    const SymbolShape* FindSymbol(const CODBlayer& layer, int index, const std::string& file);
    const SymbolShape* UserSymbol(const std::string& name, double unitMM);
    int FeatureNet(int edaLayer, int feature) const;
    const ToeRef* FeatureToe(int edaLayer, int feature) const;
    CPNet* NetOf(int edaNet) const;
    void ConvertDrill(const CODBlayer& layer, int edaLayer, const std::string& file);
    void AddSurface(CODBlayObj& obj, int dbLayer, CPNet* net);
    void AddPadArea(const SymbolShape& shape, const CODBlayObj& obj, int dbLayer, CPNet* net);
    void PlacePins(const COwningArray<CODBcmp>& comps, bool bottom);

    CPdb& m_Pdb;
    const JobFiles& m_Files;
    double m_JobUnitsMM;
    const StepRecords& m_Step;
    bool m_DrillToVia;
    Log& m_Log;
    std::map<std::string, int> m_DbLayer;              // ODB++ name, upper case -> board layer
    std::map<std::string, SymbolShape> m_Symbols;      // name and unit -> shape
    std::unordered_map<uint64_t, int> m_FeatureNet;    // eda layer, feature -> eda net
    std::unordered_map<uint64_t, ToeRef> m_FeatureToe; // eda layer, feature -> toeprint
    std::unordered_map<uint64_t, ToeRef> m_ToeAt[2];   // position -> toeprint, per side
    std::vector<CPNet*> m_Nets;                        // eda net -> board net (null: no net)
    std::vector<std::vector<PadFound>> m_Pads[2];      // per side, component, toeprint
    std::vector<std::vector<double>> m_Drills[2];
    std::vector<Via> m_Vias;
    const CODBlayer* m_ShapesOf = nullptr;             // the layer m_Shapes belongs to
    std::vector<std::pair<bool, const SymbolShape*>> m_Shapes;  // its symbols, once looked up
    std::unordered_map<uint64_t, size_t> m_ViaAt;      // position -> via
};

}  // namespace odb
