// eda/data: the layers that features are linked on, nets with their subnets and
// feature links, packages with their pins and outlines.
#include <memory>

#include "OdbGeometry.h"
#include "OdbParse.h"
#include "OdbText.h"

namespace odb {

namespace {
// Reads an outline record (RC, CR, SQ, CT and its polygons) into outline; false when
// the record is none of those. contour tracks the CT block being read.
bool ReadOutlineRecord(const std::vector<std::string_view>& f, double scale, COwningArray<CODBdataPkgObj>& outline,
                       CODBdataPkgObj*& block, bool& malformed) {
    const std::string_view tag = f[0];
    double v[4] = {0, 0, 0, 0};
    auto numbers = [&](size_t count) {
        if (f.size() < count + 1) return false;
        for (size_t i = 0; i < count; ++i) {
            if (!ParseDouble(f[i + 1], v[i])) return false;
            v[i] *= scale;
        }
        return true;
    };
    malformed = false;
    if (tag == "RC" || tag == "CR" || tag == "SQ") {
        if (!numbers(tag == "RC" ? 4 : 3)) {
            malformed = true;
            return true;
        }
        auto* obj = new CODBdataPkgObj;
        obj->m_Type = tag == "RC" ? CODBdataPkgObj::Rect : tag == "CR" ? CODBdataPkgObj::Circle : CODBdataPkgObj::Square;
        obj->m_Point = CPointD(v[0], v[1]);
        obj->m_A = v[2];
        obj->m_B = v[3];
        outline.Add(obj);
        return true;
    }
    if (tag == "CT") {
        block = new CODBdataPkgObj;
        block->m_Type = CODBdataPkgObj::Contour;
        outline.Add(block);
        return true;
    }
    if (tag == "CE") {
        block = nullptr;
        return true;
    }
    if (!block) return false;
    std::vector<CODBContour>& contours = block->m_Contours;
    if (tag == "OB") {
        if (!numbers(2)) {
            malformed = true;
            return true;
        }
        contours.emplace_back();
        contours.back().m_Hole = f.size() > 3 && f[3] == "H";
        contours.back().m_Points.Add(CPointD(v[0], v[1]));
    } else if (tag == "OS") {
        if (contours.empty() || !numbers(2)) {
            malformed = true;
            return true;
        }
        contours.back().m_Points.Add(CPointD(v[0], v[1]));
    } else if (tag == "OC") {
        if (contours.empty() || !numbers(4) || f.size() < 6) {
            malformed = true;
            return true;
        }
        CArrayPointD& points = contours.back().m_Points;
        AppendArc(points, points[points.GetSize() - 1], CPointD(v[0], v[1]), CPointD(v[2], v[3]),
                  f[5] == "Y" || f[5] == "y");
    } else if (tag == "OE") {
        if (!contours.empty()) {
            CArrayPointD& points = contours.back().m_Points;
            if (points.GetSize() > 1 && points[0] == points[points.GetSize() - 1]) points.RemoveAt(points.GetSize() - 1);
        }
    } else {
        return false;
    }
    return true;
}
}  // namespace

void ParseEdaData(std::string_view text, const std::string& file, double unitsMM, EdaData& data, Log& log) {
    LineReader reader(text);
    std::string_view line;
    std::vector<std::string_view> f;
    double scale = unitsMM;
    CODBdataNet* net = nullptr;
    CODBSnt* subnet = nullptr;
    CODBdataPkg* pkg = nullptr;
    CODBdataPkgPin* pin = nullptr;
    CODBdataPkgObj* block = nullptr;
    auto bad = [&](const char* what) { log.Warn(file, reader.LineNumber(), what); };
    while (reader.Next(line)) {
        if (line.empty() || line[0] == '#') continue;
        if (const double units = UnitsLine(line)) {
            scale = units;
            continue;
        }
        SplitFields(StripAttributes(line), f);
        if (f.empty()) continue;
        const std::string_view tag = f[0];
        if (tag == "LYR") {
            for (size_t i = 1; i < f.size(); ++i) data.layers.push_back(ToUpper(f[i]));
        } else if (tag == "NET") {
            net = new CODBdataNet;
            net->m_Name = CString(f.size() > 1 ? std::string(f[1]) : std::string());
            data.nets.Add(net);  // even malformed: toeprints number the nets in file order
            subnet = nullptr;
            pkg = nullptr;
            pin = nullptr;
        } else if (tag == "SNT") {
            if (!net || f.size() < 2) {
                bad("subnet outside a net, skipped");
                subnet = nullptr;
                continue;
            }
            auto snt = std::make_unique<CODBSnt>();
            if (f[1] == "TOP") {
                snt->m_Type = CODBSnt::Toeprint;
                if (f.size() < 5 || !ParseInt(f[3], snt->m_Component) || !ParseInt(f[4], snt->m_Pin)) {
                    bad("malformed toeprint subnet, skipped");
                }
                snt->m_Bottom = f.size() > 2 && f[2] == "B";
            } else if (f[1] == "VIA") {
                snt->m_Type = CODBSnt::Via;
            } else if (f[1] == "PLN") {
                snt->m_Type = CODBSnt::Plane;
            } else {
                snt->m_Type = CODBSnt::Trace;
            }
            subnet = snt.get();
            net->m_Subnets.Add(snt.release());
        } else if (tag == "FID") {
            auto fid = std::make_unique<CODBdataNetObj>();
            if (!subnet || f.size() < 4 || f[1].empty() || !ParseInt(f[2], fid->m_Layer) ||
                !ParseInt(f[3], fid->m_Feature)) {
                log.WarnOnce(file, reader.LineNumber(), "malformed feature link, skipped");
                continue;
            }
            fid->m_Kind = f[1][0];
            subnet->m_Features.Add(fid.release());
        } else if (tag == "PKG") {
            pkg = new CODBdataPkg;
            data.packages.Add(pkg);  // even malformed: components number the packages in file order
            pin = nullptr;
            block = nullptr;
            net = nullptr;
            subnet = nullptr;
            double v[5] = {0, 0, 0, 0, 0};
            bool ok = f.size() >= 7;
            for (size_t i = 0; ok && i < 5; ++i) ok = ParseDouble(f[i + 2], v[i]);
            if (f.size() > 1) pkg->m_Name = CString(std::string(f[1]));
            if (!ok) {
                bad("malformed package header");
                continue;
            }
            pkg->m_Pitch = v[0] * scale;
            pkg->m_Box = CRectD(v[1] * scale, v[2] * scale, v[3] * scale, v[4] * scale);
        } else if (tag == "PIN") {
            if (!pkg) {
                bad("pin outside a package, skipped");
                continue;
            }
            pin = new CODBdataPkgPin;
            pkg->m_Pins.Add(pin);  // toeprints number the pins of a package in file order
            block = nullptr;
            double x = 0, y = 0;
            if (f.size() < 5 || !ParseDouble(f[3], x) || !ParseDouble(f[4], y)) {
                bad("malformed package pin");
                continue;
            }
            pin->m_Name = CString(std::string(f[1]));
            pin->m_Type = f[2].empty() ? 'S' : f[2][0];
            pin->m_Center = CPointD(x * scale, y * scale);
        } else if (tag == "HDR" || tag == "PRP" || tag == "FGR" || tag == "PGR" || tag == "NSH" || tag == "GRP" ||
                   tag[0] == '@' || tag[0] == '&') {
            continue;  // headers, properties and groups: nothing the board database holds
        } else {
            bool malformed = false;
            COwningArray<CODBdataPkgObj>* outline = pin ? &pin->m_Outline : pkg ? &pkg->m_Outline : nullptr;
            if (outline && ReadOutlineRecord(f, scale, *outline, block, malformed)) {
                if (malformed) bad("malformed outline record, skipped");
            } else {
                log.WarnOnce(file, reader.LineNumber(), "unknown record '" + std::string(tag) + "', skipped");
            }
        }
    }
}

}  // namespace odb
