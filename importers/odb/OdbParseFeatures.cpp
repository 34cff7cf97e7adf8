// Features files: the symbol table and the pads, lines, arcs, texts and surfaces of a layer.
#include <cmath>
#include <memory>

#include "OdbGeometry.h"
#include "OdbParse.h"
#include "OdbText.h"

namespace odb {

namespace {
// Orientation codes 0-7 of pads and texts: a multiple of 90 degrees, 4-7 mirrored.
// 8 and 9 take the angle from the next field (9 mirrored). false for another code.
bool ReadOrientation(const std::vector<std::string_view>& f, size_t& i, double& angle, bool& mirror) {
    int code = 0;
    if (i >= f.size() || !ParseInt(f[i++], code) || code < 0 || code > 9) return false;
    if (code >= 8) {
        mirror = code == 9;
        return i < f.size() && ParseDouble(f[i++], angle);
    }
    mirror = code >= 4;
    angle = 90.0 * (code % 4);
    return true;
}

bool ReadPoint(const std::vector<std::string_view>& f, size_t at, double scale, CPointD& p) {
    if (at + 1 >= f.size() || !ParseDouble(f[at], p.x) || !ParseDouble(f[at + 1], p.y)) return false;
    p.x *= scale;
    p.y *= scale;
    return true;
}

// A contour ends where it began: the closing point is implied.
void CloseContour(CODBContour& contour) {
    CArrayPointD& points = contour.m_Points;
    if (points.GetSize() > 1 && points[0] == points[points.GetSize() - 1]) points.RemoveAt(points.GetSize() - 1);
}
}  // namespace

void ParseFeatures(std::string_view text, const std::string& file, double unitsMM, CODBlayer& layer, Log& log) {
    LineReader reader(text);
    std::string_view line;
    std::vector<std::string_view> f;
    double scale = unitsMM;
    CODBlayObj* surface = nullptr;  // the surface being read
    CODBContour* contour = nullptr;
    auto bad = [&](const char* what) { log.Warn(file, reader.LineNumber(), what); };
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (const double units = UnitsLine(line)) {
            scale = units;
            continue;
        }
        const std::string_view record = StripAttributes(line);
        SplitFields(record, f);
        if (f.empty()) continue;
        const std::string_view tag = f[0];
        if (surface) {
            if (tag == "OB") {
                CODBContour next;
                CPointD p;
                if (f.size() < 4 || !ReadPoint(f, 1, scale, p)) {
                    bad("malformed polygon start, skipped");
                    contour = nullptr;
                    continue;
                }
                next.m_Hole = f[3] == "H";
                next.m_Points.Add(p);
                surface->m_Contours.push_back(std::move(next));
                contour = &surface->m_Contours.back();
            } else if (tag == "OS") {
                CPointD p;
                if (!contour || !ReadPoint(f, 1, scale, p)) {
                    bad("malformed polygon segment, skipped");
                    continue;
                }
                contour->m_Points.Add(p);
            } else if (tag == "OC") {
                CPointD end, center;
                if (!contour || f.size() < 6 || !ReadPoint(f, 1, scale, end) || !ReadPoint(f, 3, scale, center) ||
                    contour->m_Points.GetSize() == 0) {
                    bad("malformed polygon arc, skipped");
                    continue;
                }
                const CPointD start = contour->m_Points[contour->m_Points.GetSize() - 1];
                AppendArc(contour->m_Points, start, end, center, f[5] == "Y" || f[5] == "y");
            } else if (tag == "OE") {
                if (contour) CloseContour(*contour);
                contour = nullptr;
            } else if (tag == "SE") {
                surface = nullptr;
                contour = nullptr;
            } else {
                bad("unexpected record inside a surface, skipped");
            }
            continue;
        }
        if (tag[0] == '$') {
            int index = 0;
            if (!ParseInt(tag.substr(1), index) || index < 0 || index > 1000000 || f.size() < 2) {
                bad("malformed symbol table entry, skipped");
                continue;
            }
            auto* symbol = new CODBSpecialSymbol;
            symbol->m_Name = CString(std::string(f[1]));
            const bool inch = f.size() > 2 ? (f[2] == "I" || f[2] == "i") : scale != 1.0;
            symbol->m_UnitMM = inch ? 0.0254 : 0.001;
            symbol->m_Line = reader.LineNumber();
            if (layer.m_Symbols.GetSize() <= index) layer.m_Symbols.SetSize(index + 1);
            delete layer.m_Symbols.GetAt(index);
            layer.m_Symbols.SetAt(index, symbol);
            continue;
        }
        if (tag[0] == '@' || tag[0] == '&' || tag == "F" || tag.substr(0, 3) == "ID=") continue;
        auto obj = std::make_unique<CODBlayObj>();
        size_t i = 1;
        auto polarity = [&](size_t at) {
            obj->m_Positive = !(at < f.size() && (f[at] == "N" || f[at] == "n"));
        };
        bool ok = true;
        if (tag == "P") {
            obj->m_Kind = CODBlayObj::Pad;
            ok = ReadPoint(f, 1, scale, obj->m_P1) && f.size() > 3 && ParseInt(f[3], obj->m_Symbol);
            i = 4;
            if (ok && obj->m_Symbol == -1) {  // a resized symbol: -1 <symbol> <resize factor>
                ok = f.size() > 5 && ParseInt(f[4], obj->m_Symbol);
                i = 6;
            }
            if (ok) {
                polarity(i);
                i += 2;  // polarity, dcode
                ok = ReadOrientation(f, i, obj->m_Angle, obj->m_Mirror);
            }
        } else if (tag == "L") {
            obj->m_Kind = CODBlayObj::Line;
            ok = ReadPoint(f, 1, scale, obj->m_P1) && ReadPoint(f, 3, scale, obj->m_P2) && f.size() > 6 &&
                 ParseInt(f[5], obj->m_Symbol);
            polarity(6);
        } else if (tag == "A") {
            obj->m_Kind = CODBlayObj::Arc;
            ok = ReadPoint(f, 1, scale, obj->m_P1) && ReadPoint(f, 3, scale, obj->m_P2) &&
                 ReadPoint(f, 5, scale, obj->m_Center) && f.size() > 10 && ParseInt(f[7], obj->m_Symbol);
            if (ok) {
                polarity(8);
                obj->m_Clockwise = f[10] == "Y" || f[10] == "y";
            }
        } else if (tag == "T") {
            obj->m_Kind = CODBlayObj::Text;
            ok = ReadPoint(f, 1, scale, obj->m_P1) && f.size() > 9;
            if (ok) {
                polarity(4);
                i = 5;
                double xSize = 0, ySize = 0;
                ok = ReadOrientation(f, i, obj->m_Angle, obj->m_Mirror) && i + 3 < f.size() &&
                     ParseDouble(f[i], xSize) && ParseDouble(f[i + 1], ySize);
                obj->m_TextHeight = ySize * scale;
                if (ok) {
                    std::string_view quoted = f[i + 3];
                    if (quoted.size() >= 2 && quoted.front() == '\'' && quoted.back() == '\'') {
                        quoted = quoted.substr(1, quoted.size() - 2);
                    }
                    obj->m_Text = CString(std::string(quoted));
                }
            }
        } else if (tag == "B") {
            obj->m_Kind = CODBlayObj::Barcode;
            log.WarnOnce(file, reader.LineNumber(), "barcode, skipped");
        } else if (tag == "S") {
            obj->m_Kind = CODBlayObj::Surface;
            polarity(1);
        } else {
            log.WarnOnce(file, reader.LineNumber(), "unknown record '" + std::string(tag) + "', skipped");
            continue;
        }
        if (!ok) {
            // Kept as a placeholder so that feature numbers after it stay right.
            obj->m_Kind = CODBlayObj::Barcode;
            bad("malformed feature, skipped");
        }
        if (obj->m_Kind == CODBlayObj::Surface) surface = obj.get();
        layer.m_Objects.Add(obj.release());
    }
    if (surface) log.Warn(file, reader.LineNumber(), "surface without its end (SE)");
}

}  // namespace odb
