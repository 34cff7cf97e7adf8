// The objects of a board: parts, components and their pins, nets with their routing,
// and the drawing objects (copper areas, texts). The board (CPdb) creates and owns
// them all; objects point at each other, and name layers by their stack index.
#pragma once

#include <vector>

#include "CExPtrArray.h"
#include "CPDBLayerManager.h"
#include "CString.h"
#include "PdbGeometry.h"

class CPComp;
class CPNet;
class CPArea;

enum class CompSide { Top = 0, Bottom = 1, NotPlaced = 2 };

// Round: a circle of diameter SizeX. Rect: SizeX by SizeY. Oblong: SizeX by SizeY
// with fully rounded short ends. Polygon: any other shape, given by its outline
// (CPRefPin::GetPadOutline); SizeX and SizeY are then the outline's extent.
enum class PadShape { Round = 0, Rect = 1, Oblong = 2, Polygon = 3 };

// The outline of a pad of any shape: closed contours relative to the pin's position,
// in board orientation (the pad angle, the component's rotation and mirror are
// already applied). Filled by the even-odd rule, so a donut is two contours and a
// thermal several.
using CPadOutline = std::vector<CArrayPointD>;

// A part: what components are instances of (a part number and its package).
class CPPart {
public:
    CPPart(const CString& name, const CString& package) : m_Name(name), m_Package(package) {}
    virtual ~CPPart() = default;

    const CString& GetName() const { return m_Name; }
    const CString& GetPackage() const { return m_Package; }
    // Position in the board's list of parts.
    int GetIndex() const { return m_Index; }
    // The components of this part, in the order they were added (not owned).
    const CExPtrArray<CPComp*, CPComp*>& GetComps() const { return m_Comps; }

private:
    friend class CPdb;
    CString m_Name;
    CString m_Package;
    int m_Index = 0;
    CExPtrArray<CPComp*, CPComp*> m_Comps;
};

// A pin of a placed component with its pad. Position and pad angle are absolute
// board values (the component's placement is already applied). A pin with a drill
// is through-hole and has its pad on every copper layer; one without has it on the
// outer copper layer of its component's side.
class CPRefPin {
public:
    CPRefPin(CPComp* comp, const CString& name, const CPointD& position, PadShape shape, double sizeX, double sizeY,
             double padAngle, double drill)
        : m_pComp(comp), m_Name(name), m_Position(position), m_Shape(shape), m_SizeX(sizeX), m_SizeY(sizeY),
          m_PadAngle(padAngle), m_Drill(drill) {}
    virtual ~CPRefPin() = default;

    CPComp* GetComp() const { return m_pComp; }
    const CString& GetName() const { return m_Name; }
    const CPointD& GetPosition() const { return m_Position; }
    PadShape GetShape() const { return m_Shape; }
    double GetSizeX() const { return m_SizeX; }
    double GetSizeY() const { return m_SizeY; }
    double GetPadAngle() const { return m_PadAngle; }
    double GetDrill() const { return m_Drill; }
    bool IsThroughHole() const { return m_Drill > 0; }
    // Null for an unconnected pin.
    CPNet* GetNet() const { return m_pNet; }
    // The pad's extent on the board, rotation included.
    CRectD GetPadRect() const;

    // Polygon pads: the outline (empty for the other shapes). Setting a non-empty
    // outline makes the pad a Polygon pad whose sizes are the outline's extent.
    const CPadOutline& GetPadOutline() const { return m_PadOutline; }
    void SetPadOutline(CPadOutline outline);

private:
    friend class CPNet;
    friend class CPdb;
    CPComp* m_pComp;
    CString m_Name;
    CPointD m_Position;
    PadShape m_Shape;
    double m_SizeX, m_SizeY, m_PadAngle, m_Drill;
    CPNet* m_pNet = nullptr;
    CPadOutline m_PadOutline;
};

// A component: a part placed on the board under a reference. Owns its pins.
class CPComp {
public:
    CPComp(const CString& reference, CPPart* part, CompSide side, const CPointD& position, double rotation)
        : m_Reference(reference), m_pPart(part), m_Side(side), m_Position(position), m_Rotation(rotation) {}
    virtual ~CPComp() { m_Pins.DeleteAll(); }
    CPComp(const CPComp&) = delete;
    CPComp& operator=(const CPComp&) = delete;

    const CString& GetReference() const { return m_Reference; }
    // Null for a component without a part.
    CPPart* GetPart() const { return m_pPart; }
    CString GetPartName() const { return m_pPart ? m_pPart->GetName() : CString(); }
    CompSide GetSide() const { return m_Side; }
    bool IsPlaced() const { return m_Side != CompSide::NotPlaced; }
    const CPointD& GetPosition() const { return m_Position; }
    double GetRotation() const { return m_Rotation; }
    // Mirrored: the footprint is seen from the other side (a bottom component as
    // designed). Rotation is applied after the mirror, counter-clockwise seen from top.
    bool IsMirrored() const { return m_Mirrored; }
    void SetMirrored(bool mirrored) { m_Mirrored = mirrored; }

    // Appends a pin. Pin names are expected to be unique per component; FindPin finds
    // the first of a repeated name.
    CPRefPin* AddPin(const CString& name, const CPointD& position, PadShape shape, double sizeX, double sizeY,
                     double padAngle, double drill);
    int GetPinCount() const { return static_cast<int>(m_Pins.GetSize()); }
    CPRefPin* GetPin(int index) const { return m_Pins.GetAt(index); }
    CPRefPin* FindPin(const CString& name) const;
    // Extent of the pads; empty for a component without pins.
    CRectD GetBoundingRect() const;

private:
    friend class CPdb;
    CString m_Reference;
    CPPart* m_pPart;
    CompSide m_Side;
    CPointD m_Position;
    double m_Rotation;
    bool m_Mirrored = false;
    CExPtrArray<CPRefPin*, CPRefPin*> m_Pins;
};

// One piece of routing: a track segment or arc on a copper layer, or a via.
class CPRouteDObj {
public:
    enum Type { Segment = 0, Via = 1, Arc = 2 };

    static CPRouteDObj* MakeSegment(int layer, double width, const C2PointD& line);
    // An arc from line.p1 to line.p2 about center, clockwise or counter-clockwise; equal
    // ends make a full circle.
    static CPRouteDObj* MakeArc(int layer, double width, const C2PointD& line, const CPointD& center,
                                bool clockwise);
    // A via joins the copper layers fromLayer..toLayer (fromLayer above toLayer).
    static CPRouteDObj* MakeVia(const CPointD& position, double padSize, double drill, int fromLayer, int toLayer);
    virtual ~CPRouteDObj() = default;

    Type GetType() const { return m_Type; }
    bool IsVia() const { return m_Type == Via; }
    bool IsArc() const { return m_Type == Arc; }
    // Arc: its centre and direction (both meaningless for the other types).
    const CPointD& GetCenter() const { return m_Center; }
    bool IsClockwise() const { return m_Clockwise; }
    // Segment and arc: its two ends. Via: both points are the via's centre.
    const C2PointD& GetLine() const { return m_Line; }
    const CPointD& GetPosition() const { return m_Line.p1; }
    // Segment: the track width. Via: the pad diameter.
    double GetWidth() const { return m_Width; }
    double GetDrill() const { return m_Drill; }
    // Segment: its layer twice. Via: its upper and lower layer.
    int GetLayer() const { return m_Layer; }
    int GetLastLayer() const { return m_LastLayer; }
    bool IsOnLayer(int layer) const { return layer >= m_Layer && layer <= m_LastLayer; }
    CRectD GetBoundingRect() const;

private:
    CPRouteDObj() = default;
    Type m_Type = Segment;
    C2PointD m_Line;
    CPointD m_Center;
    bool m_Clockwise = false;
    double m_Width = 0;
    double m_Drill = 0;
    int m_Layer = 0;
    int m_LastLayer = 0;
};

// The routing of one net: segments and vias in the order they were added. Owns them.
class CPRouteNet {
public:
    explicit CPRouteNet(CPNet* net) : m_pNet(net) {}
    virtual ~CPRouteNet() { m_Objects.DeleteAll(); }
    CPRouteNet(const CPRouteNet&) = delete;
    CPRouteNet& operator=(const CPRouteNet&) = delete;

    CPNet* GetNet() const { return m_pNet; }
    CPRouteDObj* AddSegment(int layer, double width, const C2PointD& line);
    CPRouteDObj* AddArc(int layer, double width, const C2PointD& line, const CPointD& center, bool clockwise);
    CPRouteDObj* AddVia(const CPointD& position, double padSize, double drill, int fromLayer, int toLayer);
    int GetCount() const { return static_cast<int>(m_Objects.GetSize()); }
    CPRouteDObj* GetAt(int index) const { return m_Objects.GetAt(index); }
    const CExPtrArray<CPRouteDObj*, CPRouteDObj*>& GetObjects() const { return m_Objects; }

private:
    CPNet* m_pNet;
    CExPtrArray<CPRouteDObj*, CPRouteDObj*> m_Objects;
};

// A net: its pins (not owned; a pin belongs to one net at most), its routing
// (owned) and its copper areas (not owned: the board owns them).
class CPNet {
public:
    explicit CPNet(const CString& name) : m_Name(name), m_Route(this) {}
    virtual ~CPNet() = default;
    CPNet(const CPNet&) = delete;
    CPNet& operator=(const CPNet&) = delete;

    const CString& GetName() const { return m_Name; }
    // Position in the board's list of nets.
    int GetIndex() const { return m_Index; }
    // Connects the pin to this net, taking it off the net it was on.
    void AddPin(CPRefPin* pin);
    // Disconnects the pin; false when it is not on this net.
    bool RemovePin(CPRefPin* pin);
    int GetPinCount() const { return static_cast<int>(m_Pins.GetSize()); }
    CPRefPin* GetPin(int index) const { return m_Pins.GetAt(index); }
    const CExPtrArray<CPRefPin*, CPRefPin*>& GetPins() const { return m_Pins; }

    CPRouteNet& GetRoute() { return m_Route; }
    const CPRouteNet& GetRoute() const { return m_Route; }

    const CExPtrArray<CPArea*, CPArea*>& GetAreas() const { return m_Areas; }

private:
    friend class CPdb;
    CString m_Name;
    int m_Index = 0;
    CExPtrArray<CPRefPin*, CPRefPin*> m_Pins;
    CPRouteNet m_Route;
    CExPtrArray<CPArea*, CPArea*> m_Areas;
};

// Something drawn on one layer of the board.
class CPDrawObj {
public:
    enum Kind { Area = 0, Text = 1 };

    explicit CPDrawObj(int layer) : m_Layer(layer) {}
    virtual ~CPDrawObj() = default;

    virtual Kind GetKind() const = 0;
    virtual CRectD GetBoundingRect() const = 0;
    int GetLayer() const { return m_Layer; }

private:
    int m_Layer;
};

// A copper area: a polygon with holes on one layer, belonging to a net or to none.
// The outline and the holes are closed polygons of any orientation.
class CPArea : public CPDrawObj {
public:
    CPArea(int layer, CPNet* net) : CPDrawObj(layer), m_pNet(net) {}
    ~CPArea() override { m_Holes.DeleteAll(); }
    CPArea(const CPArea&) = delete;
    CPArea& operator=(const CPArea&) = delete;

    Kind GetKind() const override { return Area; }
    CRectD GetBoundingRect() const override { return m_Outline.GetBoundingRect(); }

    CPNet* GetNet() const { return m_pNet; }
    CArrayPointD& GetOutline() { return m_Outline; }
    const CArrayPointD& GetOutline() const { return m_Outline; }
    // Adds an empty hole and returns it for filling; the area owns it.
    CArrayPointD* AddHole();
    int GetHoleCount() const { return static_cast<int>(m_Holes.GetSize()); }
    CArrayPointD* GetHole(int index) const { return m_Holes.GetAt(index); }
    // Inside the outline and in no hole.
    bool ContainsPoint(const CPointD& p) const;

private:
    CPNet* m_pNet;
    CArrayPointD m_Outline;
    CExPtrArray<CArrayPointD*, CArrayPointD*> m_Holes;
};

// A text on a layer: anchored at its position (the left end of its base line),
// rotated about it.
class CPText : public CPDrawObj {
public:
    CPText(int layer, const CString& text, const CPointD& position, double height, double rotation)
        : CPDrawObj(layer), m_Text(text), m_Position(position), m_Height(height), m_Rotation(rotation) {}

    Kind GetKind() const override { return Text; }
    // An estimate: characters are taken as 0.8 of the height wide.
    CRectD GetBoundingRect() const override;

    const CString& GetText() const { return m_Text; }
    const CPointD& GetPosition() const { return m_Position; }
    double GetHeight() const { return m_Height; }
    double GetRotation() const { return m_Rotation; }

private:
    friend class CPdb;
    CString m_Text;
    CPointD m_Position;
    double m_Height;
    double m_Rotation;
};
