// The entry points: reads the job's files, parses the step's records and converts
// them layer by layer (layers parsed in parallel, converted in order).
#include "OdbImport.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

#include "OdbConvert.h"
#include "OdbJobFiles.h"
#include "OdbParse.h"
#include "OdbText.h"

namespace {

using namespace odb;

bool Selected(const CODBmatrixLayer& layer, const OdbImportOptions& options) {
    if (options.skipMisc && layer.m_Context == "MISC") return false;
    if (options.layerFilter.empty()) return true;
    for (const std::string& name : options.layerFilter) {
        if (EqualsNoCase(name, layer.m_Name.str())) return true;
    }
    return false;
}

std::unique_ptr<CPdb> Import(const std::string& path, const OdbImportOptions& options,
                             std::vector<std::string>& warnings, std::string& error) {
    JobFiles files;
    if (!files.Load(path, error)) return nullptr;
    Log log;

    double unitsMM = 25.4;  // the format's default when the job does not say
    COwningArray<CGProperty> info;
    if (const std::string* text = files.Find("misc/info")) ParseInfo(*text, info, unitsMM);

    const std::string* matrixText = files.Find("matrix/matrix");
    if (!matrixText) {
        error = files.DisplayName("matrix/matrix") + ": missing";
        return nullptr;
    }
    std::vector<MatrixStep> steps;
    COwningArray<CODBmatrixLayer> matrix;
    if (!ParseMatrix(*matrixText, files.DisplayName("matrix/matrix"), steps, matrix, error)) return nullptr;

    const MatrixStep* step = &steps.front();
    if (!options.step.empty()) {
        step = nullptr;
        for (const MatrixStep& candidate : steps) {
            if (EqualsNoCase(candidate.name.str(), options.step)) step = &candidate;
        }
        if (!step) {
            error = files.DisplayName("matrix/matrix") + ": no step named '" + options.step + "'";
            return nullptr;
        }
    }
    const std::string stepDir = "steps/" + ToLower(step->name.str()) + "/";

    CODBstephdr header;
    if (const std::string* text = files.Find(stepDir + "stephdr")) {
        ParseStephdr(*text, files.DisplayName(stepDir + "stephdr"), unitsMM, header, log);
        if (header.m_Repeats.GetSize() > 0) {
            log.Warn(files.DisplayName(stepDir + "stephdr"), 0,
                     "step-repeats not expanded: only the step's own features are read");
        }
    }

    StepRecords records;
    for (INT_PTR i = 0; i < matrix.GetSize(); ++i) {
        if (Selected(*matrix.GetAt(i), options)) records.layers.push_back(matrix.GetAt(i));
    }
    records.edaFile = files.DisplayName(stepDir + "eda/data");
    if (const std::string* text = files.Find(stepDir + "eda/data")) {
        ParseEdaData(*text, records.edaFile, unitsMM, records.eda, log);
        records.haveEda = true;
    } else {
        log.Warn(records.edaFile, 0, "missing: the board has no nets, and packages are unknown");
    }
    for (int side = 0; side < 2; ++side) {
        const std::string key = stepDir + (side == 0 ? "layers/comp_+_top/components" : "layers/comp_+_bot/components");
        if (const std::string* text = files.Find(key)) {
            ParseComponents(*text, files.DisplayName(key), unitsMM, side == 1, side == 0 ? records.top : records.bottom,
                            log);
        }
    }

    auto pdb = std::make_unique<CPdb>();
    pdb->SetBoardName(CString(step->name));
    BoardBuilder builder(*pdb, files, unitsMM, records, options.drillToVia, log);

    // Drill layers first: their holes decide which copper pads are vias.
    std::vector<const CODBmatrixLayer*> order;
    for (const CODBmatrixLayer* layer : records.layers) {
        if (BoardBuilder::IsDrill(*layer)) order.push_back(layer);
    }
    for (const CODBmatrixLayer* layer : records.layers) {
        if (!BoardBuilder::IsDrill(*layer) && layer->m_Type != "COMPONENT") order.push_back(layer);
    }
    // Layers are parsed in batches of one per thread, then converted in order and freed,
    // so that no more than a batch of layers is held as records at once.
    const size_t threads = static_cast<size_t>(std::max(1, options.threads));
    for (size_t first = 0; first < order.size(); first += threads) {
        const size_t count = std::min(threads, order.size() - first);
        std::vector<CODBlayer> parsed(count);
        std::vector<Log> logs(count);
        std::vector<std::string> names(count);
        std::vector<bool> present(count, false);
        for (size_t i = 0; i < count; ++i) names[i] = stepDir + "layers/" + ToLower(order[first + i]->m_Name.str()) + "/features";
        auto parse = [&](size_t i) {
            const std::string text = files.Find(names[i]) ? *files.Find(names[i]) : std::string();
            present[i] = files.Find(names[i]) != nullptr;
            parsed[i].m_Name = order[first + i]->m_Name;
            parsed[i].m_pMatrix = order[first + i];
            if (present[i]) ParseFeatures(text, files.DisplayName(names[i]), unitsMM, parsed[i], logs[i]);
        };
        if (count == 1) {
            parse(0);
        } else {
            std::vector<std::thread> workers;
            for (size_t i = 0; i < count; ++i) workers.emplace_back(parse, i);
            for (std::thread& worker : workers) worker.join();
        }
        for (size_t i = 0; i < count; ++i) {
            logs[i].Flush();
            log.lines.insert(log.lines.end(), logs[i].lines.begin(), logs[i].lines.end());
            if (present[i]) builder.ConvertLayer(parsed[i], files.DisplayName(names[i]));
        }
    }

    CODBlayer profile;
    const std::string profileKey = stepDir + "profile";
    const std::string* profileText = files.Find(profileKey);
    if (profileText) {
        ParseFeatures(*profileText, files.DisplayName(profileKey), unitsMM, profile, log);
    } else {
        log.Warn(files.DisplayName(profileKey), 0, "missing: the board has no outline");
    }
    builder.Finish(profileText ? &profile : nullptr, files.DisplayName(profileKey));
    log.Flush();
    warnings.insert(warnings.end(), log.lines.begin(), log.lines.end());
    return pdb;
}

}  // namespace

std::unique_ptr<CPdb> ImportOdbJob(const std::string& path, const OdbImportOptions& options,
                                   std::vector<std::string>& warnings, std::string& error) {
    try {
        return Import(path, options, warnings, error);
    } catch (const std::exception& e) {
        error = path + ": " + e.what();
    } catch (...) {
        error = path + ": unexpected failure";
    }
    return nullptr;
}

bool IsOdbJob(const std::string& path) {
    try {
        return odb::HoldsJob(path);
    } catch (...) {
        return false;
    }
}
