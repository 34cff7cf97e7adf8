#include "CopperOutlines.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace viewer {
namespace {

constexpr double kPi = 3.14159265358979323846;

void PositiveFirst(ClipperLib::Path& path, bool positive) {
    if (ClipperLib::Orientation(path) != positive) ClipperLib::ReversePath(path);
}

}  // namespace

ClipperLib::IntPoint CopperOutlines::At(double x, double y) const {
    const double X = x * kUnitsPerMillimetre, Y = y * kUnitsPerMillimetre;
    // Clipper's own limit; it would refuse such a point anyway, but only after
    // a conversion that is undefined for values this large or not a number.
    constexpr double kLimit = static_cast<double>(ClipperLib::hiRange);
    if (!(std::fabs(X) < kLimit && std::fabs(Y) < kLimit)) throw std::range_error("coordinate out of range");
    return ClipperLib::IntPoint(std::llround(X), std::llround(Y));
}

void CopperOutlines::Add(ClipperLib::Path path) {
    if (path.size() >= 3) m_paths.push_back(std::move(path));
}

void CopperOutlines::ArcCorners(ClipperLib::Path& path, const CPointD& c, double radius, double from,
                                double sweep) const {
    const int n = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / (2 * kPi) * m_segments - 1e-9)));
    for (int i = 0; i <= n; ++i) {
        const double a = from + sweep * i / n;
        path.push_back(At(c.x + radius * std::cos(a), c.y + radius * std::sin(a)));
    }
}

void CopperOutlines::Circle(const CPointD& c, double radius) {
    if (!(radius > 0)) return;
    ClipperLib::Path path;
    for (int k = 0; k < m_segments; ++k) {
        const double a = 2 * kPi * k / m_segments;
        path.push_back(At(c.x + radius * std::cos(a), c.y + radius * std::sin(a)));
    }
    Add(std::move(path));
    ++m_shapes;
}

void CopperOutlines::Capsule(const CPointD& a, const CPointD& b, double radius) {
    if (!(radius > 0)) return;
    if (a.Distance(b) < 1e-9) return Circle(a, radius);
    const double along = std::atan2(b.y - a.y, b.x - a.x);
    const int half = std::max(2, (m_segments + 1) / 2);
    ClipperLib::Path path;
    for (int end = 0; end < 2; ++end) {
        const CPointD& c = end == 0 ? b : a;
        const double start = along - kPi / 2 + end * kPi;
        for (int i = 0; i <= half; ++i) {
            const double t = start + kPi * i / half;
            path.push_back(At(c.x + radius * std::cos(t), c.y + radius * std::sin(t)));
        }
    }
    Add(std::move(path));
    ++m_shapes;
}

void CopperOutlines::Rect(const CPointD& c, double w, double h, double angle) {
    if (!(w > 0 && h > 0)) return;
    const double a = angle * kPi / 180, cs = std::cos(a), sn = std::sin(a);
    const double corners[4][2] = {{-w / 2, -h / 2}, {w / 2, -h / 2}, {w / 2, h / 2}, {-w / 2, h / 2}};
    ClipperLib::Path path;
    for (const auto& k : corners) path.push_back(At(c.x + k[0] * cs - k[1] * sn, c.y + k[0] * sn + k[1] * cs));
    Add(std::move(path));
    ++m_shapes;
}

// SizeX along the pad's angle, SizeY across; the short ends are half circles.
void CopperOutlines::Oblong(const CPointD& c, double w, double h, double angle) {
    if (!(w > 0 && h > 0)) return;
    const double a = angle * kPi / 180;
    CPointD axis(std::cos(a), std::sin(a));
    double offset = (w - h) / 2;
    if (w < h) {
        axis = CPointD(-axis.y, axis.x);
        offset = (h - w) / 2;
    }
    const CPointD d(axis.x * offset, axis.y * offset);
    Capsule(c - d, c + d, std::min(w, h) / 2);
}

// The outline is filled by the even-odd rule; its own union under that rule turns
// it into outlines and holes of the windings the merge expects.
void CopperOutlines::PolygonPad(const CPRefPin& pin) {
    const CPointD& at = pin.GetPosition();
    ClipperLib::Paths contours;
    for (const CArrayPointD& contour : pin.GetPadOutline()) {
        ClipperLib::Path path;
        for (INT_PTR i = 0; i < contour.GetSize(); ++i) path.push_back(At(at.x + contour[i].x, at.y + contour[i].y));
        if (path.size() >= 3) contours.push_back(std::move(path));
    }
    if (contours.empty()) return;
    ClipperLib::Clipper clipper;
    clipper.AddPaths(contours, ClipperLib::ptSubject, true);
    ClipperLib::Paths filled;
    clipper.Execute(ClipperLib::ctUnion, filled, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
    for (ClipperLib::Path& path : filled) Add(std::move(path));
    ++m_shapes;
}

void CopperOutlines::Pad(const CPRefPin& pin) {
    switch (pin.GetShape()) {
    case PadShape::Round:
        return Circle(pin.GetPosition(), pin.GetSizeX() / 2);
    case PadShape::Rect:
        return Rect(pin.GetPosition(), pin.GetSizeX(), pin.GetSizeY(), pin.GetPadAngle());
    case PadShape::Oblong:
        return Oblong(pin.GetPosition(), pin.GetSizeX(), pin.GetSizeY(), pin.GetPadAngle());
    case PadShape::Polygon:
        return PolygonPad(pin);
    }
}

// The band of the arc's width about it, and a round end at each end. A band wider
// than the arc's radius covers the centre: it is then the sector of its outer
// radius.
void CopperOutlines::Arc(const CPRouteDObj& arc) {
    const double half = arc.GetWidth() / 2;
    if (!(half > 0)) return;
    const CPointD& c = arc.GetCenter();
    const CPointD& p1 = arc.GetLine().p1;
    const CPointD& p2 = arc.GetLine().p2;
    const double radius = c.Distance(p1), inner = radius - half;
    if (p1.Distance(p2) < 1e-9) {
        Circle(c, radius + half);
        if (inner > 0) {
            ClipperLib::Path hole;
            ArcCorners(hole, c, inner, 0, -2 * kPi);
            hole.pop_back();
            Add(std::move(hole));
        }
        return;
    }
    const double from = std::atan2(p1.y - c.y, p1.x - c.x);
    double sweep = std::atan2(p2.y - c.y, p2.x - c.x) - from;
    if (arc.IsClockwise())
        while (sweep >= 0) sweep -= 2 * kPi;
    else
        while (sweep <= 0) sweep += 2 * kPi;
    ClipperLib::Path band;
    ArcCorners(band, c, radius + half, from, sweep);
    if (inner > 0)
        ArcCorners(band, c, inner, from + sweep, -sweep);
    else
        band.push_back(At(c.x, c.y));
    PositiveFirst(band, true);
    Add(std::move(band));
    Circle(p1, half);
    Circle(p2, half);
    m_shapes -= 1;  // the arc and its two ends are one shape
}

void CopperOutlines::Route(const CPRouteDObj& object) {
    if (object.IsVia())
        Circle(object.GetPosition(), object.GetWidth() / 2);
    else if (object.IsArc())
        Arc(object);
    else
        Capsule(object.GetLine().p1, object.GetLine().p2, object.GetWidth() / 2);
}

bool CopperOutlines::Area(const CPArea& area) {
    auto contour = [&](const CArrayPointD& points, bool outline, ClipperLib::Paths& out) {
        ClipperLib::Path path;
        for (INT_PTR i = 0; i < points.GetSize(); ++i) path.push_back(At(points[i].x, points[i].y));
        if (path.size() < 3) return true;
        // A contour that crosses itself comes out of a union with itself as more
        // than one piece, or as one of another area. Not SimplifyPolygon: its strictly
        // simple output takes time that grows with the square of the contour's corners
        // (minutes for a zone of a million).
        ClipperLib::Paths simple;
        ClipperLib::Clipper clipper;
        clipper.AddPath(path, ClipperLib::ptSubject, true);
        clipper.Execute(ClipperLib::ctUnion, simple, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
        const double before = std::fabs(ClipperLib::Area(path));
        if (simple.size() != 1 || std::fabs(std::fabs(ClipperLib::Area(simple[0])) - before) > 1e-9 * before)
            return false;
        PositiveFirst(path, outline);
        out.push_back(std::move(path));
        return true;
    };
    ClipperLib::Paths paths;
    if (!contour(area.GetOutline(), true, paths)) return false;
    if (paths.empty()) return true;
    for (int i = 0; i < area.GetHoleCount(); ++i)
        if (!contour(*area.GetHole(i), false, paths)) return false;
    for (ClipperLib::Path& path : paths) Add(std::move(path));
    ++m_shapes;
    return true;
}

}  // namespace viewer
