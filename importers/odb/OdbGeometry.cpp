#include "OdbGeometry.h"

#include <cmath>

namespace odb {

namespace {
constexpr double kPi = 3.14159265358979323846;

int SegmentsFor(double radius, double sweep) {
    if (radius <= kArcTolerance) return 1;
    const double step = 2 * std::acos(1 - kArcTolerance / radius);
    const int n = static_cast<int>(std::ceil(std::fabs(sweep) / step));
    return std::max(2, std::min(n, 720));
}
}  // namespace

void AppendArc(CArrayPointD& points, const CPointD& start, const CPointD& end, const CPointD& center, bool clockwise) {
    const double sweep = ArcSweep(center, start, end, clockwise);
    AppendArcPoints(points, center, start, end, sweep, SegmentsFor(center.Distance(start), sweep));
}

void DropClosingPoint(CArrayPointD& points) {
    if (points.GetSize() > 1 && points[0] == points[points.GetSize() - 1]) points.RemoveAt(points.GetSize() - 1);
}

CArrayPointD Circle(const CPointD& center, double radius) {
    CArrayPointD points;
    const CPointD start(center.x + radius, center.y);
    points.Add(start);
    AppendArc(points, start, start, center, false);
    points.RemoveAt(points.GetSize() - 1);  // the closing point repeats the first
    return points;
}

CPointD Place(const CPointD& p, double angleCW, bool mirror) {
    const double x = mirror ? -p.x : p.x;
    if (angleCW == 0) return CPointD(x, p.y);
    const double a = -angleCW * kPi / 180;
    const double c = std::cos(a), s = std::sin(a);
    return CPointD(x * c - p.y * s, x * s + p.y * c);
}

}  // namespace odb
