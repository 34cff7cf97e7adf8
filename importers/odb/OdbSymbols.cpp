#include "OdbSymbols.h"

#include <clipper.hpp>

#include <cmath>
#include <string>
#include <vector>

#include "OdbGeometry.h"
#include "OdbText.h"

namespace odb {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kClipScale = 1e6;  // clipper works in integers: nanometres

// The parts of a name after its prefix, split at 'x': numbers, or a letter followed by
// a number (the corner options "r150", "c20") or by corner digits.
struct Params {
    std::vector<double> numbers;
    double cornerRadius = 0;
    double chamfer = 0;
    std::string corners = "1234";
};

bool ReadParams(std::string_view text, double unitMM, Params& params) {
    size_t start = 0;
    bool afterOption = false;
    while (start <= text.size()) {
        size_t x = text.find('x', start);
        if (x == std::string_view::npos) x = text.size();
        std::string_view field = text.substr(start, x - start);
        start = x + 1;
        if (field.empty()) return false;
        double value = 0;
        if (field[0] == 'r' || field[0] == 'c') {
            if (!ParseDouble(field.substr(1), value)) return false;
            (field[0] == 'r' ? params.cornerRadius : params.chamfer) = value * unitMM;
            afterOption = true;
        } else if (afterOption) {
            params.corners = std::string(field);  // which corners the option applies to
        } else {
            if (!ParseDouble(field, value)) return false;
            params.numbers.push_back(value);
        }
        if (x == text.size()) break;
    }
    return true;
}

CArrayPointD Rectangle(double w, double h) {
    return CArrayPointD{{-w / 2, -h / 2}, {w / 2, -h / 2}, {w / 2, h / 2}, {-w / 2, h / 2}};
}

CArrayPointD Polygon(std::initializer_list<CPointD> points) { return CArrayPointD(points); }

// A rectangle with rounded or chamfered corners; corners numbered 1 upper right,
// 2 upper left, 3 lower left, 4 lower right.
CArrayPointD CorneredRectangle(double w, double h, double radius, double chamfer, const std::string& corners) {
    CArrayPointD points;
    const double hx = w / 2, hy = h / 2;
    const CPointD corner[4] = {{hx, hy}, {-hx, hy}, {-hx, -hy}, {hx, -hy}};
    const double size = radius > 0 ? radius : chamfer;
    for (int i = 0; i < 4; ++i) {
        const CPointD c = corner[i];
        const double sx = c.x > 0 ? 1 : -1, sy = c.y > 0 ? 1 : -1;
        if (corners.find(char('1' + i)) == std::string::npos || size <= 0) {
            points.Add(c);
            continue;
        }
        // Counter-clockwise walk: each corner is entered along one side and left along the next.
        const bool enterVertical = (i % 2) == 0;
        const CPointD in = enterVertical ? CPointD(c.x, c.y - sy * size) : CPointD(c.x - sx * size, c.y);
        const CPointD out = enterVertical ? CPointD(c.x - sx * size, c.y) : CPointD(c.x, c.y - sy * size);
        points.Add(in);
        if (radius > 0) {
            AppendArc(points, in, out, CPointD(c.x - sx * size, c.y - sy * size), false);
        } else {
            points.Add(out);
        }
    }
    return points;
}

CArrayPointD Ellipse(double w, double h) {
    CArrayPointD circle = Circle(CPointD(), 1);
    for (INT_PTR i = 0; i < circle.GetSize(); ++i) {
        circle[i].x *= w / 2;
        circle[i].y *= h / 2;
    }
    return circle;
}

CArrayPointD Oblong(double w, double h) {
    CArrayPointD points;
    if (w >= h) {
        const double r = h / 2, cx = w / 2 - r;
        points.Add(CPointD(cx, -r));
        AppendArc(points, CPointD(cx, -r), CPointD(cx, r), CPointD(cx, 0), false);
        points.Add(CPointD(-cx, r));
        AppendArc(points, CPointD(-cx, r), CPointD(-cx, -r), CPointD(-cx, 0), false);
    } else {
        CArrayPointD turned = Oblong(h, w);
        for (INT_PTR i = 0; i < turned.GetSize(); ++i) points.Add(CPointD(-turned[i].y, turned[i].x));
    }
    return points;
}

ClipperLib::Path ToPath(const CArrayPointD& points) {
    ClipperLib::Path path;
    for (INT_PTR i = 0; i < points.GetSize(); ++i) {
        path.push_back(ClipperLib::IntPoint(static_cast<ClipperLib::cInt>(std::llround(points[i].x * kClipScale)),
                                            static_cast<ClipperLib::cInt>(std::llround(points[i].y * kClipScale))));
    }
    return path;
}

// A thermal: the ring between outer and inner minus spokes of width gap, the first at
// angle degrees (counter-clockwise from +x), the others evenly spread.
CPadOutline Thermal(const CArrayPointD& outer, const CArrayPointD& inner, double reach, double angle, int spokes,
                    double gap) {
    ClipperLib::Clipper clipper;
    clipper.AddPath(ToPath(outer), ClipperLib::ptSubject, true);
    ClipperLib::Paths cuts;
    cuts.push_back(ToPath(inner));
    for (int k = 0; k < spokes; ++k) {
        const double a = (angle + k * 360.0 / spokes) * kPi / 180;
        const double c = std::cos(a), s = std::sin(a), g = gap / 2;
        CArrayPointD bar{{-g * -s, -g * c}, {reach * c + g * s, reach * s - g * c},
                         {reach * c - g * s, reach * s + g * c}, {g * -s, g * c}};
        cuts.push_back(ToPath(bar));
    }
    clipper.AddPaths(cuts, ClipperLib::ptClip, true);
    ClipperLib::Paths result;
    clipper.Execute(ClipperLib::ctDifference, result, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
    CPadOutline outline;
    for (const ClipperLib::Path& path : result) {
        CArrayPointD contour;
        for (const ClipperLib::IntPoint& p : path) contour.Add(CPointD(p.X / kClipScale, p.Y / kClipScale));
        outline.push_back(contour);
    }
    return outline;
}

bool StartsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

void SetSimple(SymbolShape& shape, PadShape kind, double w, double h) {
    shape.kind = kind;
    shape.width = w;
    shape.height = h;
    shape.outline.push_back(kind == PadShape::Round    ? Circle(CPointD(), w / 2)
                            : kind == PadShape::Oblong ? Oblong(w, h)
                                                       : Rectangle(w, h));
}

void SetPolygon(SymbolShape& shape, CPadOutline outline) {
    shape.kind = PadShape::Polygon;
    shape.outline = std::move(outline);
    CRectD box;
    for (const CArrayPointD& contour : shape.outline) box.Include(contour.GetBoundingRect());
    shape.width = box.Width();
    shape.height = box.Height();
}
}  // namespace

bool StandardSymbol(std::string_view name, double unitMM, SymbolShape& shape) {
    shape = SymbolShape();
    // Longer prefixes first: "rect" before "r", "s_ths" before "s".
    static const char* const kPrefixes[] = {"donut_rc", "donut_sr", "donut_r", "donut_s", "donut_o", "oval_h",
                                            "sr_ths",   "s_ths",    "s_tho",   "s_thr",   "rc_ths",  "rc_tho",
                                            "hex_l",    "hex_s",    "moire",   "hole",    "null",    "rect",
                                            "oval",     "oct",      "bfr",     "bfs",     "tri",     "thr",
                                            "ths",      "di",       "el",      "r",       "s"};
    std::string_view prefix;
    for (const char* candidate : kPrefixes) {
        if (StartsWith(name, candidate)) {
            prefix = candidate;
            break;
        }
    }
    if (prefix.empty()) return false;
    std::string_view rest = name.substr(prefix.size());
    if (prefix == "null") return rest.empty() || ParseDouble(rest, shape.width);
    Params p;
    if (rest.empty() || !ReadParams(rest, unitMM, p) || p.numbers.empty()) return false;
    std::vector<double>& n = p.numbers;
    for (size_t i = 0; i < n.size(); ++i) {
        // Angles and spoke counts of thermals are not lengths.
        const bool thermal = prefix.find("th") != std::string_view::npos;
        if (!(thermal && (i == 2 || i == 3))) n[i] *= unitMM;
    }
    auto need = [&](size_t count) { return n.size() >= count; };
    if (prefix == "r") {
        SetSimple(shape, PadShape::Round, n[0], n[0]);
    } else if (prefix == "s") {
        SetSimple(shape, PadShape::Rect, n[0], n[0]);
    } else if (prefix == "hole") {
        SetSimple(shape, PadShape::Round, n[0], n[0]);
    } else if (prefix == "rect") {
        if (!need(2)) return false;
        const double w = n[0], h = n[1];
        const double shortSide = std::min(w, h);
        if (p.cornerRadius <= 0 && p.chamfer <= 0) {
            SetSimple(shape, PadShape::Rect, w, h);
        } else if (p.cornerRadius * 2 >= shortSide - 1e-9 && p.corners == "1234") {
            SetSimple(shape, w == h ? PadShape::Round : PadShape::Oblong, w, h);
        } else {
            SetPolygon(shape, {CorneredRectangle(w, h, std::min(p.cornerRadius, shortSide / 2),
                                                 std::min(p.chamfer, shortSide / 2), p.corners)});
        }
    } else if (prefix == "oval") {
        if (!need(2)) return false;
        SetSimple(shape, n[0] == n[1] ? PadShape::Round : PadShape::Oblong, n[0], n[1]);
    } else if (prefix == "oval_h") {
        // A half oval: square at the left end, round at the right.
        if (!need(2)) return false;
        const double w = n[0], h = n[1], r = h / 2;
        CArrayPointD points{{-w / 2, -r}, {w / 2 - r, -r}};
        AppendArc(points, CPointD(w / 2 - r, -r), CPointD(w / 2 - r, r), CPointD(w / 2 - r, 0), false);
        points.Add(CPointD(-w / 2, r));
        SetPolygon(shape, {points});
    } else if (prefix == "di") {
        if (!need(2)) return false;
        SetPolygon(shape, {Polygon({{0, -n[1] / 2}, {n[0] / 2, 0}, {0, n[1] / 2}, {-n[0] / 2, 0}})});
    } else if (prefix == "oct") {
        if (!need(3)) return false;
        SetPolygon(shape, {CorneredRectangle(n[0], n[1], 0, n[2], "1234")});
    } else if (prefix == "el") {
        if (!need(2)) return false;
        SetPolygon(shape, {Ellipse(n[0], n[1])});
    } else if (prefix == "tri") {
        if (!need(2)) return false;
        SetPolygon(shape, {Polygon({{-n[0] / 2, -n[1] / 2}, {n[0] / 2, -n[1] / 2}, {0, n[1] / 2}})});
    } else if (prefix == "hex_l") {
        if (!need(3)) return false;
        const double w = n[0] / 2, h = n[1] / 2, c = n[2];
        SetPolygon(shape, {Polygon({{-w, 0}, {-w + c, -h}, {w - c, -h}, {w, 0}, {w - c, h}, {-w + c, h}})});
    } else if (prefix == "hex_s") {
        if (!need(3)) return false;
        const double w = n[0] / 2, h = n[1] / 2, c = n[2];
        SetPolygon(shape, {Polygon({{0, -h}, {w, -h + c}, {w, h - c}, {0, h}, {-w, h - c}, {-w, -h + c}})});
    } else if (prefix == "bfr" || prefix == "bfs") {
        // Butterfly: the first and third quadrants of a circle or square.
        const double r = n[0] / 2;
        CPadOutline outline;
        for (int q : {0, 2}) {
            const double sx = q == 0 ? 1 : -1;
            CArrayPointD piece{{0, 0}, {sx * r, 0}};
            if (prefix == "bfr") {
                AppendArc(piece, CPointD(sx * r, 0), CPointD(0, sx * r), CPointD(), false);
            } else {
                piece.Add(CPointD(sx * r, sx * r));
                piece.Add(CPointD(0, sx * r));
            }
            outline.push_back(piece);
        }
        SetPolygon(shape, outline);
    } else if (prefix == "donut_r") {
        if (!need(2)) return false;
        SetPolygon(shape, {Circle(CPointD(), n[0] / 2), Circle(CPointD(), n[1] / 2)});
    } else if (prefix == "donut_s") {
        if (!need(2)) return false;
        SetPolygon(shape, {Rectangle(n[0], n[0]), Rectangle(n[1], n[1])});
    } else if (prefix == "donut_sr") {
        if (!need(2)) return false;
        SetPolygon(shape, {Rectangle(n[0], n[0]), Circle(CPointD(), n[1] / 2)});
    } else if (prefix == "thr" || prefix == "ths") {
        if (!need(5)) return false;
        SetPolygon(shape, Thermal(Circle(CPointD(), n[0] / 2), Circle(CPointD(), n[1] / 2), n[0], n[2],
                                  static_cast<int>(n[3]), n[4]));
    } else if (prefix == "s_ths" || prefix == "s_thr" || prefix == "s_tho") {
        if (!need(5)) return false;
        SetPolygon(shape, Thermal(Rectangle(n[0], n[0]), Rectangle(n[1], n[1]), n[0], n[2], static_cast<int>(n[3]),
                                  n[4]));
    } else if (prefix == "sr_ths") {
        if (!need(5)) return false;
        SetPolygon(shape, Thermal(Rectangle(n[0], n[0]), Circle(CPointD(), n[1] / 2), n[0], n[2],
                                  static_cast<int>(n[3]), n[4]));
    } else {
        return false;  // moire, rounded donuts and thermals of other outlines: not drawn
    }
    return true;
}

}  // namespace odb
