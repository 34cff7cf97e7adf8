// The small files of a job: the layer table, the job info, step headers, components
// and the CAD netlist; and the log the parsers write to.
#include <algorithm>
#include <memory>

#include "OdbParse.h"
#include "OdbText.h"

namespace odb {

void Log::Warn(const std::string& file, int line, const std::string& what) {
    // Line 0: the message is about the file as a whole.
    lines.push_back(line > 0 ? file + ":" + std::to_string(line) + ": " + what : file + ": " + what);
}

void Log::WarnOnce(const std::string& file, int line, const std::string& kind) {
    for (Repeat& repeat : m_Repeats) {
        if (repeat.file == file && repeat.kind == kind) {
            ++repeat.count;
            return;
        }
    }
    m_Repeats.push_back({file, kind, 1});
    Warn(file, line, kind);
}

void Log::Flush() {
    for (const Repeat& repeat : m_Repeats) {
        if (repeat.count > 1) {
            lines.push_back(repeat.file + ": " + repeat.kind + " (" + std::to_string(repeat.count) + " times)");
        }
    }
    m_Repeats.clear();
}

bool ParseMatrix(std::string_view text, const std::string& file, std::vector<MatrixStep>& steps,
                 COwningArray<CODBmatrixLayer>& layers, std::string& error) {
    LineReader reader(text);
    std::string_view line;
    enum { None, Step, Layer } block = None;
    MatrixStep step;
    std::unique_ptr<CODBmatrixLayer> layer;
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (block == None) {
            const size_t brace = line.find('{');
            const std::string_view word = brace == std::string_view::npos ? line : line.substr(0, brace);
            std::string_view name = word;
            while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
            if (brace != std::string_view::npos && EqualsNoCase(name, "STEP")) {
                block = Step;
                step = MatrixStep();
            } else if (brace != std::string_view::npos && EqualsNoCase(name, "LAYER")) {
                block = Layer;
                layer = std::make_unique<CODBmatrixLayer>();
            } else if (brace != std::string_view::npos) {
                block = Step;  // a block of another kind: read through, keep nothing
                step.col = -1;
            } else if (UnitsLine(line) == 0) {
                error = file + ":" + std::to_string(reader.LineNumber()) + ": unexpected line in the layer table";
                return false;
            }
            continue;
        }
        if (line[0] == '}') {
            if (block == Step && step.col >= 0 && !step.name.IsEmpty()) steps.push_back(step);
            if (block == Layer && layer) {
                if (layer->m_Name.IsEmpty()) {
                    error = file + ":" + std::to_string(reader.LineNumber()) + ": layer without a name";
                    return false;
                }
                layers.Add(layer.release());
            }
            block = None;
            step = MatrixStep();
            continue;
        }
        std::string_view key, value;
        if (!SplitKeyValue(line, key, value)) continue;
        const CString text(std::string{value});
        if (block == Step) {
            if (EqualsNoCase(key, "COL")) ParseInt(value, step.col);
            if (EqualsNoCase(key, "NAME")) step.name = text;
        } else if (EqualsNoCase(key, "ROW")) {
            ParseInt(value, layer->m_Row);
        } else if (EqualsNoCase(key, "CONTEXT")) {
            layer->m_Context = CString(ToUpper(value));
        } else if (EqualsNoCase(key, "TYPE")) {
            layer->m_Type = CString(ToUpper(value));
        } else if (EqualsNoCase(key, "NAME")) {
            layer->m_Name = text;
        } else if (EqualsNoCase(key, "POLARITY")) {
            layer->m_Positive = !EqualsNoCase(value, "NEGATIVE");
        } else if (EqualsNoCase(key, "START_NAME")) {
            layer->m_StartName = text;
        } else if (EqualsNoCase(key, "END_NAME")) {
            layer->m_EndName = text;
        }
    }
    if (block != None) {
        error = file + ":" + std::to_string(reader.LineNumber()) + ": block without its closing brace";
        return false;
    }
    if (steps.empty()) {
        error = file + ": no step in the layer table";
        return false;
    }
    std::stable_sort(steps.begin(), steps.end(), [](const MatrixStep& a, const MatrixStep& b) { return a.col < b.col; });
    std::vector<CODBmatrixLayer*> sorted(layers.GetSize());
    for (INT_PTR i = 0; i < layers.GetSize(); ++i) sorted[i] = layers.GetAt(i);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const CODBmatrixLayer* a, const CODBmatrixLayer* b) { return a->m_Row < b->m_Row; });
    for (INT_PTR i = 0; i < layers.GetSize(); ++i) layers.SetAt(i, sorted[i]);
    return true;
}

void ParseInfo(std::string_view text, COwningArray<CGProperty>& properties, double& unitsMM) {
    LineReader reader(text);
    std::string_view line, key, value;
    while (reader.Next(line)) {
        if (const double units = UnitsLine(line)) unitsMM = units;
        if (!line.empty() && line[0] != '#' && SplitKeyValue(line, key, value)) {
            properties.Add(new CGProperty(CString(std::string(key)), CString(std::string(value))));
        }
    }
}

void ParseStephdr(std::string_view text, const std::string& file, double unitsMM, CODBstephdr& header, Log& log) {
    LineReader reader(text);
    std::string_view line, key, value;
    double scale = unitsMM;
    std::unique_ptr<CODBstepRepeat> repeat;
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (const double units = UnitsLine(line)) {
            scale = units;
            continue;
        }
        if (line.find('{') != std::string_view::npos) {
            repeat = std::make_unique<CODBstepRepeat>();
            continue;
        }
        if (line[0] == '}') {
            if (repeat) header.m_Repeats.Add(repeat.release());
            continue;
        }
        if (!SplitKeyValue(line, key, value)) {
            log.Warn(file, reader.LineNumber(), "not a KEY=VALUE line, skipped");
            continue;
        }
        double number = 0;
        const bool isNumber = ParseDouble(value, number);
        const std::string k = ToUpper(key);
        if (repeat) {
            if (k == "NAME") repeat->m_Name = CString(std::string(value));
            if (k == "X") repeat->m_X = number * scale;
            if (k == "Y") repeat->m_Y = number * scale;
            if (k == "DX") repeat->m_DX = number * scale;
            if (k == "DY") repeat->m_DY = number * scale;
            if (k == "NX") repeat->m_NX = static_cast<int>(number);
            if (k == "NY") repeat->m_NY = static_cast<int>(number);
            if (k == "ANGLE") repeat->m_Angle = number;
            if (k == "MIRROR") repeat->m_Mirror = EqualsNoCase(value, "YES");
        } else if (isNumber) {
            if (k == "X_DATUM") header.m_Datum.x = number * scale;
            if (k == "Y_DATUM") header.m_Datum.y = number * scale;
            if (k == "X_ORIGIN") header.m_Origin.x = number * scale;
            if (k == "Y_ORIGIN") header.m_Origin.y = number * scale;
        }
    }
}

void ParseComponents(std::string_view text, const std::string& file, double unitsMM, bool bottom,
                     COwningArray<CODBcmp>& components, Log& log) {
    LineReader reader(text);
    std::string_view line;
    std::vector<std::string_view> f;
    double scale = unitsMM;
    CODBcmp* current = nullptr;
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (const double units = UnitsLine(line)) {
            scale = units;
            continue;
        }
        SplitFields(StripAttributes(line), f);
        if (f.empty()) continue;
        const std::string_view tag = f[0];
        if (tag == "CMP") {
            auto cmp = std::make_unique<CODBcmp>();
            double x = 0, y = 0;
            if (f.size() < 7 || !ParseInt(f[1], cmp->m_Package) || !ParseDouble(f[2], x) || !ParseDouble(f[3], y) ||
                !ParseDouble(f[4], cmp->m_Rotation)) {
                log.Warn(file, reader.LineNumber(), "malformed component, skipped with its pins");
                current = nullptr;
                // Kept as a placeholder: subnets number the components of a side in file order.
                components.Add(new CODBcmp);
                continue;
            }
            cmp->m_Position = CPointD(x * scale, y * scale);
            cmp->m_Mirror = f[5] == "M" || f[5] == "m";
            cmp->m_Bottom = bottom;
            cmp->m_Reference = CString(std::string(f[6]));
            if (f.size() > 7) cmp->m_Part = CString(std::string(f[7]));
            current = cmp.get();
            components.Add(cmp.release());
        } else if (tag == "TOP") {
            auto toe = std::make_unique<CODBcmpToe>();
            double x = 0, y = 0;
            if (!current || f.size() < 9 || !ParseInt(f[1], toe->m_Pin) || !ParseDouble(f[2], x) ||
                !ParseDouble(f[3], y) || !ParseDouble(f[4], toe->m_Rotation) || !ParseInt(f[6], toe->m_Net) ||
                !ParseInt(f[7], toe->m_Subnet)) {
                log.Warn(file, reader.LineNumber(), "malformed toeprint, skipped");
                if (current) current->m_Toes.Add(new CODBcmpToe);  // keeps the numbering of later pins
                continue;
            }
            toe->m_Position = CPointD(x * scale, y * scale);
            toe->m_Mirror = f[5] == "M" || f[5] == "m";
            toe->m_Name = CString(std::string(f[8]));
            current->m_Toes.Add(toe.release());
        } else if (tag == "PRP") {
            if (!current || f.size() < 2) continue;
            std::string value;
            const size_t quote = line.find('\'');
            if (quote != std::string_view::npos) {
                const size_t close = line.find('\'', quote + 1);
                value = std::string(line.substr(quote + 1, close == std::string_view::npos ? std::string_view::npos
                                                                                           : close - quote - 1));
            }
            current->m_Properties.Add(new CPProperty(CString(std::string(f[1])), CString(value)));
        } else if (tag[0] == '@' || tag[0] == '&' || tag.substr(0, 3) == "ID=") {
            continue;
        } else {
            log.WarnOnce(file, reader.LineNumber(), "unknown record '" + std::string(tag) + "', skipped");
        }
    }
}

void ParseNetlist(std::string_view text, const std::string& file, double unitsMM, COwningArray<CODBnet>& nets,
                  Log& log) {
    LineReader reader(text);
    std::string_view line;
    std::vector<std::string_view> f;
    double scale = unitsMM;
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#' || line[0] == 'H') continue;
        if (const double units = UnitsLine(line)) {
            scale = units;
            continue;
        }
        SplitFields(StripAttributes(line), f);
        int index = 0;
        if (line[0] == '$') {
            if (f.size() < 2 || !ParseInt(f[0].substr(1), index)) {
                log.Warn(file, reader.LineNumber(), "malformed net name, skipped");
                continue;
            }
            auto* net = new CODBnet;
            net->m_Index = index;
            net->m_Name = CString(std::string(f[1]));
            nets.Add(net);
            continue;
        }
        auto point = std::make_unique<CODBnetPt>();
        if (f.size() < 5 || !ParseInt(f[0], index) || !ParseDouble(f[1], point->m_Radius) ||
            !ParseDouble(f[2], point->m_Position.x) || !ParseDouble(f[3], point->m_Position.y)) {
            log.WarnOnce(file, reader.LineNumber(), "malformed net point, skipped");
            continue;
        }
        point->m_Radius *= scale;
        point->m_Position.x *= scale;
        point->m_Position.y *= scale;
        point->m_Side = f[4].empty() ? 'T' : f[4][0];
        // Nets are listed in number order; a point names its net by that number.
        if (index >= 0 && index < nets.GetSize() && nets.GetAt(index)->m_Index == index) {
            nets.GetAt(index)->m_Points.Add(point.release());
        } else {
            for (INT_PTR i = 0; i < nets.GetSize(); ++i) {
                if (nets.GetAt(i)->m_Index == index) {
                    nets.GetAt(i)->m_Points.Add(point.release());
                    break;
                }
            }
        }
    }
}

}  // namespace odb
