#include "RenderRaster.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

// Pixel indices far outside any picture are held here, so that conversions stay in
// the range of int whatever the zoom.
constexpr double kFarOutside = 1e9;

int ToIndex(double v) {
    if (std::isnan(v)) return -1;
    return static_cast<int>(std::min(std::max(v, -kFarOutside), kFarOutside));
}

// The first pixel index whose centre is at or beyond v.
int FirstCentreAtOrAfter(double v) { return ToIndex(std::ceil(v - 0.5)); }
// The last pixel index whose centre is at or before v.
int LastCentreAtOrBefore(double v) { return ToIndex(std::floor(v - 0.5)); }

bool Finite(PixelPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// Clips the line to the box (Liang-Barsky); false when nothing of it is inside.
bool Clip(PixelPoint& a, PixelPoint& b, double minX, double minY, double maxX, double maxY) {
    double t0 = 0, t1 = 1;
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x - minX, maxX - a.x, a.y - minY, maxY - a.y};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0) {
            if (t > t1) return false;
            t0 = std::max(t0, t);
        } else {
            if (t < t0) return false;
            t1 = std::min(t1, t);
        }
    }
    const PixelPoint start{a.x + t0 * dx, a.y + t0 * dy};
    b = PixelPoint{a.x + t1 * dx, a.y + t1 * dy};
    a = start;
    return true;
}

}  // namespace

void Raster::Dot(PixelPoint p, Rgb c) {
    if (Finite(p)) m_target.Set(ToIndex(std::floor(p.x)), ToIndex(std::floor(p.y)), c);
}

void Raster::FillPolygon(const std::vector<PixelPoint>& ring, Rgb c) {
    FillPolygon(std::vector<std::vector<PixelPoint>>{ring}, c);
}

void Raster::FillPolygon(const std::vector<std::vector<PixelPoint>>& rings, Rgb c) {
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    for (const std::vector<PixelPoint>& ring : rings)
        for (const PixelPoint& p : ring) {
            if (!Finite(p)) return;
            minX = std::min(minX, p.x);
            maxX = std::max(maxX, p.x);
            minY = std::min(minY, p.y);
            maxY = std::max(maxY, p.y);
        }
    if (minX > maxX || !Touches(minX, minY, maxX, maxY)) return;
    const int height = m_target.Height();
    m_crossings.clear();
    for (const std::vector<PixelPoint>& ring : rings) {
        const size_t n = ring.size();
        for (size_t i = 0; i < n; ++i) {
            const PixelPoint& a = ring[i];
            const PixelPoint& b = ring[(i + 1) % n];
            if (a.y == b.y) continue;
            const double lo = std::min(a.y, b.y), hi = std::max(a.y, b.y);
            // Rows whose centre lies in [lo, hi): each crossing is counted once.
            const int first = std::max(FirstCentreAtOrAfter(lo), 0);
            const int last = std::min(FirstCentreAtOrAfter(hi) - 1, height - 1);
            const double slope = (b.x - a.x) / (b.y - a.y);
            for (int row = first; row <= last; ++row)
                m_crossings.emplace_back(row, a.x + (row + 0.5 - a.y) * slope);
        }
    }
    if (m_crossings.empty()) {  // thinner than a row: keep it visible as a dot
        if (maxY - minY < 1 && maxX - minX < 1) Dot(PixelPoint{(minX + maxX) / 2, (minY + maxY) / 2}, c);
        return;
    }
    // Group the crossings by row (counting), then order each row's few by x.
    int firstRow = height, lastRow = -1;
    for (const auto& c : m_crossings) {
        firstRow = std::min(firstRow, c.first);
        lastRow = std::max(lastRow, c.first);
    }
    m_rowStart.assign(static_cast<size_t>(lastRow - firstRow + 2), 0);
    for (const auto& c : m_crossings) ++m_rowStart[static_cast<size_t>(c.first - firstRow + 1)];
    for (size_t i = 1; i < m_rowStart.size(); ++i) m_rowStart[i] += m_rowStart[i - 1];
    m_rowXs.resize(m_crossings.size());
    m_rowNext.assign(m_rowStart.begin(), m_rowStart.end() - 1);
    for (const auto& c : m_crossings)
        m_rowXs[static_cast<size_t>(m_rowNext[static_cast<size_t>(c.first - firstRow)]++)] = c.second;
    bool painted = false;
    for (int row = firstRow; row <= lastRow; ++row) {
        double* begin = m_rowXs.data() + m_rowStart[static_cast<size_t>(row - firstRow)];
        double* end = m_rowXs.data() + m_rowStart[static_cast<size_t>(row - firstRow + 1)];
        std::sort(begin, end);
        for (double* x = begin; x + 1 < end; x += 2) {  // an odd count (numerical noise) drops the last
            const int x0 = FirstCentreAtOrAfter(x[0]);
            const int x1 = FirstCentreAtOrAfter(x[1]) - 1;
            if (x0 <= x1) {
                m_target.FillSpan(row, x0, x1, c);
                painted = true;
            }
        }
    }
    if (!painted && maxX - minX < 1) Dot(PixelPoint{(minX + maxX) / 2, (minY + maxY) / 2}, c);
}

void Raster::FillCircle(PixelPoint centre, double radius, Rgb c) {
    if (!Finite(centre) || !std::isfinite(radius)) return;
    if (!Touches(centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius)) return;
    if (radius < 0.5) {
        Dot(centre, c);
        return;
    }
    const int first = std::max(FirstCentreAtOrAfter(centre.y - radius), 0);
    const int last = std::min(LastCentreAtOrBefore(centre.y + radius), m_target.Height() - 1);
    for (int row = first; row <= last; ++row) {
        const double dy = row + 0.5 - centre.y;
        const double dx = std::sqrt(std::max(radius * radius - dy * dy, 0.0));
        m_target.FillSpan(row, FirstCentreAtOrAfter(centre.x - dx), LastCentreAtOrBefore(centre.x + dx), c);
    }
}

void Raster::FillCapsule(PixelPoint a, PixelPoint b, double halfWidth, Rgb c) {
    if (!Finite(a) || !Finite(b) || !std::isfinite(halfWidth)) return;
    const double minX = std::min(a.x, b.x) - halfWidth, maxX = std::max(a.x, b.x) + halfWidth;
    const double minY = std::min(a.y, b.y) - halfWidth, maxY = std::max(a.y, b.y) + halfWidth;
    if (!Touches(minX, minY, maxX, maxY)) return;
    if (halfWidth < 0.5) {
        Line(a, b, c);
        return;
    }
    FillCircle(a, halfWidth, c);
    FillCircle(b, halfWidth, c);
    const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
    if (length == 0) return;
    const double nx = -dy / length * halfWidth, ny = dx / length * halfWidth;
    FillPolygon(std::vector<PixelPoint>{{a.x + nx, a.y + ny}, {b.x + nx, b.y + ny}, {b.x - nx, b.y - ny},
                                        {a.x - nx, a.y - ny}},
                c);
}

void Raster::Line(PixelPoint a, PixelPoint b, Rgb c) {
    if (!Finite(a) || !Finite(b)) return;
    if (!Clip(a, b, -1, -1, m_target.Width() + 1, m_target.Height() + 1)) return;
    const double dx = b.x - a.x, dy = b.y - a.y;
    const int steps = static_cast<int>(std::ceil(std::max(std::fabs(dx), std::fabs(dy))));
    if (steps == 0) {
        Dot(a, c);
        return;
    }
    for (int i = 0; i <= steps; ++i) Dot(PixelPoint{a.x + dx * i / steps, a.y + dy * i / steps}, c);
}

void Raster::Outline(const std::vector<PixelPoint>& ring, Rgb c) {
    for (size_t i = 0; i < ring.size(); ++i) Line(ring[i], ring[(i + 1) % ring.size()], c);
}

}  // namespace viewer
