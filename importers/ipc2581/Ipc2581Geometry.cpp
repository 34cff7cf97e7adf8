#include "Ipc2581Geometry.h"

#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;
// Curves become polygons of this many segments per full turn.
constexpr int kSegmentsPerTurn = 64;

double Radians(double degrees) { return degrees * kPi / 180; }

}  // namespace

CPointD ApplyXform(const Xform& xform, const CPointD& point) {
    double x = point.x * xform.scale, y = point.y * xform.scale;
    if (xform.mirror) x = -x;
    if (xform.rotation != 0) {
        const double a = Radians(xform.rotation), c = std::cos(a), s = std::sin(a);
        const double rx = x * c - y * s;
        y = x * s + y * c;
        x = rx;
    }
    return CPointD(x + xform.offset.x, y + xform.offset.y);
}

Xform Compose(const Xform& outer, const Xform& inner) {
    // R(a) M(m) R(b) M(n) = R(a -+ b) M(m xor n): a mirror turns the inner rotation round.
    Xform result;
    result.scale = outer.scale * inner.scale;
    result.mirror = outer.mirror != inner.mirror;
    result.rotation = outer.rotation + (outer.mirror ? -inner.rotation : inner.rotation);
    result.offset = ApplyXform(outer, inner.offset);
    return result;
}

void AppendArc(CArrayPointD& points, const CPointD& from, const CPointD& to, const CPointD& center, bool clockwise) {
    const double sweep = ArcSweep(center, from, to, clockwise);
    // Ends off the circle or absurd values (NaN from a zero radius) give a straight step.
    const double turns = std::fabs(sweep) / (2 * kPi);
    const int steps = std::isfinite(turns) && turns <= 1 ? std::max(1, static_cast<int>(std::ceil(turns * kSegmentsPerTurn))) : 1;
    AppendArcPoints(points, center, from, to, sweep, steps);
}

void DropClosingPoint(CArrayPointD& points) {
    while (points.GetSize() > 1 && points[points.GetSize() - 1] == points[0]) points.SetSize(points.GetSize() - 1);
}

Primitive MakeSimple(PadShape shape, double sizeX, double sizeY) {
    Primitive primitive;
    primitive.shape = shape;
    primitive.sizeX = sizeX;
    primitive.sizeY = sizeY;
    return primitive;
}

Primitive MakeOutline(CPadOutline outline) {
    Primitive primitive;
    primitive.shape = PadShape::Polygon;
    CRectD extent;
    for (const CArrayPointD& contour : outline) extent.Include(contour.GetBoundingRect());
    primitive.sizeX = extent.Width();
    primitive.sizeY = extent.Height();
    primitive.outline = std::move(outline);
    return primitive;
}

CPadOutline PrimitiveContours(const Primitive& primitive) {
    const bool all[4] = {true, true, true, true};
    switch (primitive.shape) {
        case PadShape::Round: return {EllipseContour(primitive.sizeX, primitive.sizeX)};
        case PadShape::Rect: return {RectContour(primitive.sizeX, primitive.sizeY, 0, all, false)};
        case PadShape::Oblong:
            return {RectContour(primitive.sizeX, primitive.sizeY, std::min(primitive.sizeX, primitive.sizeY) / 2, all,
                                false)};
        case PadShape::Polygon: break;
    }
    return primitive.outline;
}

void ScalePrimitive(Primitive& primitive, double factor) {
    primitive.sizeX *= factor;
    primitive.sizeY *= factor;
    for (CArrayPointD& contour : primitive.outline)
        for (INT_PTR i = 0; i < contour.GetSize(); ++i) contour[i] = CPointD(contour[i].x * factor, contour[i].y * factor);
}

CArrayPointD EllipseContour(double width, double height) {
    CArrayPointD points;
    for (int i = 0; i < kSegmentsPerTurn; ++i) {
        const double a = 2 * kPi * i / kSegmentsPerTurn;
        points.Add(CPointD(width / 2 * std::cos(a), height / 2 * std::sin(a)));
    }
    return points;
}

CArrayPointD RectContour(double width, double height, double cut, const bool corners[4], bool chamfer) {
    const double hx = width / 2, hy = height / 2;
    cut = std::min(cut, std::min(hx, hy));
    // Corner centres counter-clockwise from the upper right, each with the directions
    // of the edge coming in and going out.
    const CPointD corner[4] = {{hx, hy}, {-hx, hy}, {-hx, -hy}, {hx, -hy}};
    const CPointD in[4] = {{0, 1}, {-1, 0}, {0, -1}, {1, 0}};
    const CPointD out[4] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};
    CArrayPointD points;
    for (int i = 0; i < 4; ++i) {
        if (!corners[i] || cut <= 0) {
            points.Add(corner[i]);
            continue;
        }
        const CPointD start(corner[i].x - in[i].x * cut, corner[i].y - in[i].y * cut);
        const CPointD end(corner[i].x + out[i].x * cut, corner[i].y + out[i].y * cut);
        points.Add(start);
        if (chamfer) {
            points.Add(end);
        } else {
            const CPointD centre(start.x + out[i].x * cut, start.y + out[i].y * cut);
            AppendArc(points, start, end, centre, false);
        }
    }
    return points;
}

CArrayPointD RegularContour(int corners, double radius, double startDegrees) {
    CArrayPointD points;
    for (int i = 0; i < corners; ++i) {
        const double a = Radians(startDegrees) + 2 * kPi * i / corners;
        points.Add(CPointD(radius * std::cos(a), radius * std::sin(a)));
    }
    return points;
}

CPadOutline ThermalContours(double outerDiameter, double innerDiameter, int spokes, double gap, double startDegrees) {
    const double ro = outerDiameter / 2, ri = innerDiameter / 2;
    CPadOutline outline;
    if (spokes <= 0 || ri <= 0) {
        outline.push_back(EllipseContour(outerDiameter, outerDiameter));
        if (ri > 0) outline.push_back(EllipseContour(innerDiameter, innerDiameter));
        return outline;
    }
    const double pitch = 2 * kPi / spokes;
    const double halfOuter = std::asin(std::min(1.0, gap / 2 / ro)), halfInner = std::asin(std::min(1.0, gap / 2 / ri));
    for (int k = 0; k < spokes; ++k) {
        const double spoke = Radians(startDegrees) + pitch * k;
        const double o0 = spoke + halfOuter, o1 = spoke + pitch - halfOuter;
        const double i0 = spoke + halfInner, i1 = spoke + pitch - halfInner;
        if (o1 <= o0 || i1 <= i0) continue;
        CArrayPointD piece;
        const CPointD origin;
        piece.Add(CPointD(ro * std::cos(o0), ro * std::sin(o0)));
        AppendArc(piece, piece[0], CPointD(ro * std::cos(o1), ro * std::sin(o1)), origin, false);
        const CPointD innerEnd(ri * std::cos(i1), ri * std::sin(i1));
        piece.Add(innerEnd);
        AppendArc(piece, innerEnd, CPointD(ri * std::cos(i0), ri * std::sin(i0)), origin, true);
        outline.push_back(std::move(piece));
    }
    return outline;
}
