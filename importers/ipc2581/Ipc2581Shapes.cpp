#include "Ipc2581Shapes.h"

#include <algorithm>
#include <cstring>

namespace {

bool Is(const char* a, const char* b) { return std::strcmp(a, b) == 0; }

CPointD ReadPoint(XmlStream& xml, double scale, const char* x = "x", const char* y = "y") {
    return CPointD(xml.Number(x, 0, scale), xml.Number(y, 0, scale));
}

// The contour of a shape attribute (ROUND, SQUARE, HEXAGON, OCTAGON) across that size.
CArrayPointD ShapeContour(const std::string& shape, double size) {
    if (shape == "SQUARE") {
        const bool none[4] = {false, false, false, false};
        return RectContour(size, size, 0, none, false);
    }
    if (shape == "HEXAGON") return RegularContour(6, size / 2, 0);
    if (shape == "OCTAGON") return RegularContour(8, size / 2 / std::cos(3.14159265358979323846 / 8), 22.5);
    return EllipseContour(size, size);
}

}  // namespace

CArrayPointD ReadPolygon(XmlStream& xml, double scale) {
    CArrayPointD points;
    const int depth = xml.Depth();
    while (xml.NextChild(depth)) {
        const char* name = xml.Name();
        if (Is(name, "PolyBegin") || Is(name, "PolyStepSegment")) {
            points.Add(ReadPoint(xml, scale));
        } else if (Is(name, "PolyStepCurve")) {
            const CPointD to = ReadPoint(xml, scale);
            const CPointD centre = ReadPoint(xml, scale, "centerX", "centerY");
            if (points.GetSize() == 0) throw xml.Fail("a curve needs a start point");
            AppendArc(points, points[points.GetSize() - 1], to, centre, xml.Flag("clockwise"));
        }
    }
    DropClosingPoint(points);
    return points;
}

CPadOutline ReadContour(XmlStream& xml, double scale) {
    CPadOutline contours;
    const int depth = xml.Depth();
    while (xml.NextChild(depth)) {
        if (Is(xml.Name(), "Polygon") || Is(xml.Name(), "Cutout")) {
            CArrayPointD polygon = ReadPolygon(xml, scale);
            if (polygon.GetSize() >= 3) contours.push_back(std::move(polygon));
        }
    }
    return contours;
}

Xform ReadXform(XmlStream& xml, double scale) {
    Xform xform;
    xform.rotation = xml.Number("rotation");
    xform.mirror = xml.Flag("mirror");
    xform.scale = xml.Number("scale", 1);
    xform.offset = ReadPoint(xml, scale, "xOffset", "yOffset");
    return xform;
}

bool IsStandardPrimitive(const char* name) {
    static const char* const kNames[] = {"Circle",  "RectCenter", "RectRound", "RectCham", "Oval",
                                         "Butterfly", "Diamond",  "Donut",     "Ellipse",  "Hexagon",
                                         "Octagon", "Triangle",   "Thermal",   "Moire",    "Contour",
                                         "RectCorner"};
    for (const char* known : kNames)
        if (Is(name, known)) return true;
    return false;
}

std::optional<Primitive> ReadStandardPrimitive(XmlStream& xml, double scale, std::string& why) {
    const char* name = xml.Name();
    auto length = [&](const char* attribute) { return xml.Number(attribute, 0, scale); };
    const double width = length("width"), height = length("height");
    bool corners[4] = {xml.Flag("upperRight"), xml.Flag("upperLeft"), xml.Flag("lowerLeft"), xml.Flag("lowerRight")};
    if (!corners[0] && !corners[1] && !corners[2] && !corners[3]) {
        // Without corner flags every corner takes the rounding or the chamfer.
        std::string ignored;
        if (!xml.Attr("upperRight", ignored) && !xml.Attr("upperLeft", ignored) && !xml.Attr("lowerLeft", ignored) &&
            !xml.Attr("lowerRight", ignored))
            corners[0] = corners[1] = corners[2] = corners[3] = true;
    }
    if (Is(name, "Circle")) return MakeSimple(PadShape::Round, length("diameter"), length("diameter"));
    if (Is(name, "RectCenter")) return MakeSimple(PadShape::Rect, width, height);
    if (Is(name, "Oval")) return MakeSimple(PadShape::Oblong, width, height);
    if (Is(name, "RectCorner")) {
        const double x0 = length("lowerLeftX"), y0 = length("lowerLeftY");
        const double x1 = length("upperRightX"), y1 = length("upperRightY");
        const CArrayPointD box{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
        return MakeOutline({box});
    }
    if (Is(name, "RectRound")) {
        const double radius = length("radius");
        const bool all = corners[0] && corners[1] && corners[2] && corners[3];
        if (radius <= 0) return MakeSimple(PadShape::Rect, width, height);
        if (all && radius * 2 >= std::min(width, height) * 0.999) return MakeSimple(PadShape::Oblong, width, height);
        return MakeOutline({RectContour(width, height, radius, corners, false)});
    }
    if (Is(name, "RectCham")) {
        const double chamfer = length("chamfer");
        if (chamfer <= 0) return MakeSimple(PadShape::Rect, width, height);
        return MakeOutline({RectContour(width, height, chamfer, corners, true)});
    }
    if (Is(name, "Diamond")) {
        const CArrayPointD diamond{{width / 2, 0}, {0, height / 2}, {-width / 2, 0}, {0, -height / 2}};
        return MakeOutline({diamond});
    }
    if (Is(name, "Ellipse")) {
        if (width == height) return MakeSimple(PadShape::Round, width, width);
        return MakeOutline({EllipseContour(width, height)});
    }
    if (Is(name, "Hexagon")) return MakeOutline({RegularContour(6, length("length") / 2, 0)});
    if (Is(name, "Octagon")) return MakeOutline({ShapeContour("OCTAGON", length("length"))});
    if (Is(name, "Triangle")) {
        const double base = length("base"), h = length("height");
        const CArrayPointD triangle{{-base / 2, -h / 2}, {base / 2, -h / 2}, {0, h / 2}};
        return MakeOutline({triangle});
    }
    if (Is(name, "Butterfly")) {
        const bool square = xml.Attr("shape") == "SQUARE";
        const double size = square ? length("side") : length("diameter");
        const double r = size / 2;
        CPadOutline wings;
        for (int quadrant : {0, 2}) {
            const double sx = quadrant == 0 ? 1 : -1;
            CArrayPointD wing{{0, 0}, {sx * r, 0}};
            if (square) {
                wing.Add(CPointD(sx * r, sx * r));
                wing.Add(CPointD(0, sx * r));
            } else {
                AppendArc(wing, CPointD(sx * r, 0), CPointD(0, sx * r), CPointD(0, 0), false);
            }
            wings.push_back(std::move(wing));
        }
        return MakeOutline(std::move(wings));
    }
    if (Is(name, "Donut")) {
        const std::string shape = xml.Attr("shape");
        return MakeOutline({ShapeContour(shape, length("outerDiameter")), ShapeContour(shape, length("innerDiameter"))});
    }
    if (Is(name, "Thermal")) {
        return MakeOutline(ThermalContours(length("outerDiameter"), length("innerDiameter"),
                                           static_cast<int>(std::clamp(xml.Number("spokeCount", 4), 0.0, 360.0)), length("gap"),
                                           xml.Number("spokeStartAngle", 45)));
    }
    if (Is(name, "Moire")) return MakeSimple(PadShape::Round, length("diameter"), length("diameter"));
    if (Is(name, "Contour")) {
        CPadOutline contours = ReadContour(xml, scale);
        if (contours.empty()) {
            why = "a contour without a polygon";
            return std::nullopt;
        }
        return MakeOutline(std::move(contours));
    }
    why = std::string("unknown primitive ") + name;
    return std::nullopt;
}

std::optional<Primitive> ReadUserSpecial(XmlStream& xml, double scale, const PrimitiveMap& standard) {
    std::vector<Primitive> shapes;
    const int depth = xml.Depth();
    while (xml.NextChild(depth)) {
        const char* name = xml.Name();
        std::optional<Primitive> shape;
        std::string why;
        if (Is(name, "UserSpecial")) {
            shape = ReadUserSpecial(xml, scale, standard);
        } else if (Is(name, "StandardPrimitiveRef")) {
            const auto found = standard.find(xml.Attr("id"));
            if (found != standard.end()) shape = found->second;
        } else if (IsStandardPrimitive(name)) {
            shape = ReadStandardPrimitive(xml, scale, why);
        }
        if (shape) shapes.push_back(std::move(*shape));  // lines and text draw, they do not fill
    }
    if (shapes.empty()) return std::nullopt;
    if (shapes.size() == 1) return shapes.front();
    // Several shapes make one outline; a contour given twice (filled, then drawn) once.
    CPadOutline contours;
    for (const Primitive& shape : shapes)
        for (CArrayPointD& contour : PrimitiveContours(shape)) {
            bool repeated = false;
            for (const CArrayPointD& known : contours)
                repeated = repeated || (known.GetSize() == contour.GetSize() && known.GetBoundingRect() == contour.GetBoundingRect());
            if (!repeated) contours.push_back(std::move(contour));
        }
    return MakeOutline(std::move(contours));
}
