#include "RenderRaster.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

// The first pixel index whose centre is at or beyond v.
int FirstCentreAtOrAfter(double v) { return static_cast<int>(std::ceil(v - 0.5)); }

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
    m_target.Set(static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y)), c);
}

void Raster::FillPolygon(const std::vector<PixelPoint>& ring, Rgb c) {
    FillPolygon(std::vector<std::vector<PixelPoint>>{ring}, c);
}

void Raster::FillPolygon(const std::vector<std::vector<PixelPoint>>& rings, Rgb c) {
    const int height = m_target.Height();
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    m_crossings.clear();
    for (const std::vector<PixelPoint>& ring : rings) {
        const size_t n = ring.size();
        for (size_t i = 0; i < n; ++i) {
            const PixelPoint& a = ring[i];
            const PixelPoint& b = ring[(i + 1) % n];
            minX = std::min(minX, a.x);
            maxX = std::max(maxX, a.x);
            minY = std::min(minY, a.y);
            maxY = std::max(maxY, a.y);
            if (a.y == b.y || !std::isfinite(a.y) || !std::isfinite(b.y)) continue;
            const double lo = std::min(a.y, b.y), hi = std::max(a.y, b.y);
            // Rows whose centre lies in [lo, hi): each crossing is counted once.
            const int first = std::max(FirstCentreAtOrAfter(lo), 0);
            const int last = std::min(FirstCentreAtOrAfter(hi) - 1, height - 1);
            const double slope = (b.x - a.x) / (b.y - a.y);
            for (int row = first; row <= last; ++row)
                m_crossings.emplace_back(row, a.x + (row + 0.5 - a.y) * slope);
        }
    }
    if (minX > maxX || !Touches(minX, minY, maxX, maxY)) return;
    if (m_crossings.empty()) {  // thinner than a row: keep it visible as a dot
        if (maxY - minY < 1 && maxX - minX < 1) Dot(PixelPoint{(minX + maxX) / 2, (minY + maxY) / 2}, c);
        return;
    }
    std::sort(m_crossings.begin(), m_crossings.end());
    bool painted = false;
    for (size_t i = 0; i + 1 < m_crossings.size(); i += 2) {
        if (m_crossings[i].first != m_crossings[i + 1].first) {  // an odd row: numerical noise
            --i;
            continue;
        }
        const int x0 = FirstCentreAtOrAfter(m_crossings[i].second);
        const int x1 = FirstCentreAtOrAfter(m_crossings[i + 1].second) - 1;
        if (x0 <= x1) {
            m_target.FillSpan(m_crossings[i].first, x0, x1, c);
            painted = true;
        }
    }
    if (!painted && maxX - minX < 1) Dot(PixelPoint{(minX + maxX) / 2, (minY + maxY) / 2}, c);
}

void Raster::FillCircle(PixelPoint centre, double radius, Rgb c) {
    if (!Touches(centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius)) return;
    if (radius < 0.5) {
        Dot(centre, c);
        return;
    }
    const int first = std::max(FirstCentreAtOrAfter(centre.y - radius), 0);
    const int last = std::min(static_cast<int>(std::floor(centre.y + radius - 0.5)), m_target.Height() - 1);
    for (int row = first; row <= last; ++row) {
        const double dy = row + 0.5 - centre.y;
        const double dx = std::sqrt(std::max(radius * radius - dy * dy, 0.0));
        m_target.FillSpan(row, FirstCentreAtOrAfter(centre.x - dx), static_cast<int>(std::floor(centre.x + dx - 0.5)),
                          c);
    }
}

void Raster::FillCapsule(PixelPoint a, PixelPoint b, double halfWidth, Rgb c) {
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
