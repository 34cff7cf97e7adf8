// Geometry values of the board model. Board coordinates are millimetres, x to the
// right and y upwards; angles are degrees, counter-clockwise.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "CArray.h"

// A point. A plain value: arrays of points are stored and written as raw pairs.
class CPointD {
public:
    CPointD() = default;
    CPointD(double x_, double y_) : x(x_), y(y_) {}

    friend bool operator==(const CPointD& a, const CPointD& b) { return a.x == b.x && a.y == b.y; }
    friend bool operator!=(const CPointD& a, const CPointD& b) { return !(a == b); }
    friend CPointD operator+(const CPointD& a, const CPointD& b) { return CPointD(a.x + b.x, a.y + b.y); }
    friend CPointD operator-(const CPointD& a, const CPointD& b) { return CPointD(a.x - b.x, a.y - b.y); }

    double Distance(const CPointD& other) const { return std::hypot(other.x - x, other.y - y); }

    double x = 0;
    double y = 0;
};

// The angle, in radians, that an arc about centre sweeps from `from` to `to`:
// positive counter-clockwise, in (0, 2 pi]; negative clockwise, in [-2 pi, 0). Equal
// ends sweep a whole turn.
inline double ArcSweep(const CPointD& centre, const CPointD& from, const CPointD& to, bool clockwise) {
    constexpr double kTurn = 6.283185307179586476925;
    if (from == to) return clockwise ? -kTurn : kTurn;
    const double start = std::atan2(from.y - centre.y, from.x - centre.x);
    const double end = std::atan2(to.y - centre.y, to.x - centre.x);
    double sweep = std::fmod(clockwise ? start - end : end - start, kTurn);
    if (sweep <= 0) sweep += kTurn;
    return clockwise ? -sweep : sweep;
}

// An axis-aligned rectangle. A fresh rectangle is empty (min above max) and grows
// with Include.
class CRectD {
public:
    CRectD() = default;
    CRectD(double minX_, double minY_, double maxX_, double maxY_)
        : minX(minX_), minY(minY_), maxX(maxX_), maxY(maxY_) {}
    CRectD(const CRectD&) = default;
    CRectD& operator=(const CRectD&) = default;
    virtual ~CRectD() = default;

    bool IsEmpty() const { return !(minX <= maxX && minY <= maxY); }
    double Width() const { return IsEmpty() ? 0 : maxX - minX; }
    double Height() const { return IsEmpty() ? 0 : maxY - minY; }
    CPointD Center() const { return CPointD((minX + maxX) / 2, (minY + maxY) / 2); }
    bool Contains(const CPointD& p) const { return p.x >= minX && p.x <= maxX && p.y >= minY && p.y <= maxY; }

    void Include(const CPointD& p) {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
    void Include(const CRectD& r) {
        if (r.IsEmpty()) return;
        Include(CPointD(r.minX, r.minY));
        Include(CPointD(r.maxX, r.maxY));
    }
    // Grows every side by margin.
    void Inflate(double margin) {
        if (IsEmpty()) return;
        minX -= margin;
        minY -= margin;
        maxX += margin;
        maxY += margin;
    }

    friend bool operator==(const CRectD& a, const CRectD& b) {
        return a.minX == b.minX && a.minY == b.minY && a.maxX == b.maxX && a.maxY == b.maxY;
    }

    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();
};

// Two points: a track segment, a line.
class C2PointD {
public:
    C2PointD() = default;
    C2PointD(const CPointD& p1_, const CPointD& p2_) : p1(p1_), p2(p2_) {}
    C2PointD(const C2PointD&) = default;
    C2PointD& operator=(const C2PointD&) = default;
    virtual ~C2PointD() = default;

    double Length() const { return p1.Distance(p2); }
    friend bool operator==(const C2PointD& a, const C2PointD& b) { return a.p1 == b.p1 && a.p2 == b.p2; }

    CPointD p1;
    CPointD p2;
};

// A polyline or a closed polygon (the closing edge is implied: the last point is not
// a copy of the first).
class CArrayPointD : public CArray<CPointD, const CPointD&> {
public:
    CArrayPointD() = default;
    CArrayPointD(std::initializer_list<CPointD> points) {
        for (const CPointD& p : points) Add(p);
    }
    const char* GetRuntimeClassName() const override { return "CArrayPointD"; }

    CRectD GetBoundingRect() const {
        CRectD r;
        for (const CPointD& p : m_data) r.Include(p);
        return r;
    }
    // Shoelace area: positive for counter-clockwise points, negative for clockwise.
    double SignedArea() const {
        double twice = 0;
        const size_t n = m_data.size();
        for (size_t i = 0; i < n; ++i) {
            const CPointD& a = m_data[i];
            const CPointD& b = m_data[(i + 1) % n];
            twice += a.x * b.y - b.x * a.y;
        }
        return twice / 2;
    }
    // Even-odd test; points on an edge may fall either way.
    bool ContainsPoint(const CPointD& p) const {
        bool inside = false;
        const size_t n = m_data.size();
        for (size_t i = 0, j = n - 1; i < n; j = i++) {
            const CPointD& a = m_data[i];
            const CPointD& b = m_data[j];
            if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
        }
        return inside;
    }
};

// Appends the points of the arc from `from` (not appended) to `to` (appended, exactly)
// about centre, sweeping `sweep` radians (ArcSweep), in `steps` equal chords.
inline void AppendArcPoints(CArrayPointD& points, const CPointD& centre, const CPointD& from, const CPointD& to,
                            double sweep, int steps) {
    const double radius = centre.Distance(from);
    const double start = std::atan2(from.y - centre.y, from.x - centre.x);
    for (int i = 1; i < steps; ++i) {
        const double a = start + sweep * i / steps;
        points.Add(CPointD(centre.x + radius * std::cos(a), centre.y + radius * std::sin(a)));
    }
    points.Add(to);
}
