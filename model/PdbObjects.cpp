#include "PdbObjects.h"

#include <cmath>

namespace {
constexpr double kPi = 3.14159265358979323846;

// Extent of a w by h rectangle centred on c and turned by angle degrees.
CRectD TurnedBox(const CPointD& c, double w, double h, double angle) {
    const double a = angle * kPi / 180;
    const double cs = std::fabs(std::cos(a)), sn = std::fabs(std::sin(a));
    const double hx = (w * cs + h * sn) / 2, hy = (w * sn + h * cs) / 2;
    return CRectD(c.x - hx, c.y - hy, c.x + hx, c.y + hy);
}
}  // namespace

CRectD CPRefPin::GetPadRect() const {
    if (m_Shape == PadShape::Polygon) {
        CRectD r;
        for (const CArrayPointD& contour : m_PadOutline) {
            for (INT_PTR i = 0; i < contour.GetSize(); ++i) r.Include(m_Position + contour[i]);
        }
        return r;
    }
    if (m_Shape == PadShape::Round) return TurnedBox(m_Position, m_SizeX, m_SizeX, 0);
    return TurnedBox(m_Position, m_SizeX, m_SizeY, m_PadAngle);
}

void CPRefPin::SetPadOutline(CPadOutline outline) {
    m_PadOutline = std::move(outline);
    if (m_PadOutline.empty()) return;
    CRectD extent;
    for (const CArrayPointD& contour : m_PadOutline) extent.Include(contour.GetBoundingRect());
    m_Shape = PadShape::Polygon;
    m_SizeX = extent.Width();
    m_SizeY = extent.Height();
    m_PadAngle = 0;
}

CPRefPin* CPComp::AddPin(const CString& name, const CPointD& position, PadShape shape, double sizeX, double sizeY,
                         double padAngle, double drill) {
    CPRefPin* pin = new CPRefPin(this, name, position, shape, sizeX, sizeY, padAngle, drill);
    m_Pins.Add(pin);
    return pin;
}

CPRefPin* CPComp::FindPin(const CString& name) const {
    for (INT_PTR i = 0; i < m_Pins.GetSize(); ++i) {
        if (m_Pins.GetAt(i)->GetName() == name) return m_Pins.GetAt(i);
    }
    return nullptr;
}

CRectD CPComp::GetBoundingRect() const {
    CRectD r;
    for (INT_PTR i = 0; i < m_Pins.GetSize(); ++i) r.Include(m_Pins.GetAt(i)->GetPadRect());
    return r;
}

CPRouteDObj* CPRouteDObj::MakeSegment(int layer, double width, const C2PointD& line) {
    CPRouteDObj* seg = new CPRouteDObj;
    seg->m_Type = Segment;
    seg->m_Line = line;
    seg->m_Width = width;
    seg->m_Layer = seg->m_LastLayer = layer;
    return seg;
}

CPRouteDObj* CPRouteDObj::MakeArc(int layer, double width, const C2PointD& line, const CPointD& center,
                                  bool clockwise) {
    CPRouteDObj* arc = MakeSegment(layer, width, line);
    arc->m_Type = Arc;
    arc->m_Center = center;
    arc->m_Clockwise = clockwise;
    return arc;
}

CPRouteDObj* CPRouteDObj::MakeVia(const CPointD& position, double padSize, double drill, int fromLayer,
                                  int toLayer) {
    CPRouteDObj* via = new CPRouteDObj;
    via->m_Type = Via;
    via->m_Line = C2PointD(position, position);
    via->m_Width = padSize;
    via->m_Drill = drill;
    via->m_Layer = fromLayer;
    via->m_LastLayer = toLayer;
    return via;
}

CRectD CPRouteDObj::GetBoundingRect() const {
    CRectD r;
    r.Include(m_Line.p1);
    r.Include(m_Line.p2);
    if (m_Type == Arc) {
        // Besides its ends, an arc reaches farthest where it crosses the axes through
        // its centre: right, up, left, down.
        const double radius = m_Center.Distance(m_Line.p1);
        const double sweep = ArcSweep(m_Center, m_Line.p1, m_Line.p2, m_Clockwise);
        const double start = std::atan2(m_Line.p1.y - m_Center.y, m_Line.p1.x - m_Center.x);
        constexpr double kQuarter = 1.5707963267948966192, kTurn = 4 * kQuarter;
        const CPointD reach[4] = {{radius, 0}, {0, radius}, {-radius, 0}, {0, -radius}};
        for (int k = 0; k < 4; ++k) {
            // How far past the start the axis lies, going the arc's way round.
            double past = std::fmod(sweep > 0 ? k * kQuarter - start : start - k * kQuarter, kTurn);
            if (past < 0) past += kTurn;
            if (past <= std::fabs(sweep)) r.Include(m_Center + reach[k]);
        }
    }
    r.Inflate(m_Width / 2);
    return r;
}

CPRouteDObj* CPRouteNet::AddSegment(int layer, double width, const C2PointD& line) {
    CPRouteDObj* seg = CPRouteDObj::MakeSegment(layer, width, line);
    m_Objects.Add(seg);
    return seg;
}

CPRouteDObj* CPRouteNet::AddArc(int layer, double width, const C2PointD& line, const CPointD& center,
                                 bool clockwise) {
    CPRouteDObj* arc = CPRouteDObj::MakeArc(layer, width, line, center, clockwise);
    m_Objects.Add(arc);
    return arc;
}

CPRouteDObj* CPRouteNet::AddVia(const CPointD& position, double padSize, double drill, int fromLayer, int toLayer) {
    CPRouteDObj* via = CPRouteDObj::MakeVia(position, padSize, drill, fromLayer, toLayer);
    m_Objects.Add(via);
    return via;
}

void CPNet::AddPin(CPRefPin* pin) {
    if (pin->m_pNet == this) return;
    if (pin->m_pNet) pin->m_pNet->RemovePin(pin);
    pin->m_pNet = this;
    m_Pins.Add(pin);
}

bool CPNet::RemovePin(CPRefPin* pin) {
    if (pin->m_pNet != this) return false;
    m_Pins.Remove(pin);
    pin->m_pNet = nullptr;
    return true;
}

CArrayPointD* CPArea::AddHole() {
    CArrayPointD* hole = new CArrayPointD;
    m_Holes.Add(hole);
    return hole;
}

bool CPArea::ContainsPoint(const CPointD& p) const {
    if (!m_Outline.ContainsPoint(p)) return false;
    for (INT_PTR i = 0; i < m_Holes.GetSize(); ++i) {
        if (m_Holes.GetAt(i)->ContainsPoint(p)) return false;
    }
    return true;
}

CRectD CPText::GetBoundingRect() const {
    const double a = m_Rotation * kPi / 180;
    const double length = 0.8 * m_Height * m_Text.GetLength();
    const CPointD along(std::cos(a), std::sin(a)), up(-std::sin(a), std::cos(a));
    CRectD r;
    r.Include(m_Position);
    r.Include(m_Position + CPointD(along.x * length, along.y * length));
    r.Include(m_Position + CPointD(up.x * m_Height, up.y * m_Height));
    r.Include(m_Position + CPointD(along.x * length + up.x * m_Height, along.y * length + up.y * m_Height));
    return r;
}
