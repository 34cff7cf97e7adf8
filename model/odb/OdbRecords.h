// The records of an ODB++ job as its reader finds them: the layer table, the step
// header, the features of each layer, components with their toeprints, the nets and
// packages of the EDA data, and the CAD netlist.
//
// Lengths are millimetres (the reader converts inch files), in the job's own
// orientation: y up, angles in degrees clockwise as the format gives them. Each
// record owns the arrays of records it holds (emptied with DeleteAll when it dies);
// pointers to records elsewhere (such as a layer's matrix entry) are not owned.
#pragma once

#include <vector>

#include "CExPtrArray.h"
#include "CString.h"
#include "PdbExtras.h"
#include "PdbGeometry.h"

// An array that owns its elements.
template <class T>
class COwningArray : public CExPtrArray<T*, T*> {
public:
    COwningArray() = default;
    COwningArray(const COwningArray&) = delete;
    COwningArray& operator=(const COwningArray&) = delete;
    ~COwningArray() override { this->DeleteAll(); }
};

// One LAYER block of matrix/matrix.
class CODBmatrixLayer {
public:
    virtual ~CODBmatrixLayer() = default;
    int m_Row = 0;
    CString m_Context;   // BOARD or MISC
    CString m_Type;      // SIGNAL, POWER_GROUND, MIXED, SOLDER_MASK, DRILL, ...
    CString m_Name;      // as written (upper case); the layer's folder is its lower case
    bool m_Positive = true;
    CString m_StartName; // drill and rout layers: the copper span
    CString m_EndName;
};

// One STEP-REPEAT block of a step header: nx by ny copies of another step.
class CODBstepRepeat {
public:
    virtual ~CODBstepRepeat() = default;
    CString m_Name;
    double m_X = 0, m_Y = 0, m_DX = 0, m_DY = 0;
    int m_NX = 1, m_NY = 1;
    double m_Angle = 0;
    bool m_Mirror = false;
};

// A step's header.
class CODBstephdr {
public:
    virtual ~CODBstephdr() = default;
    CPointD m_Datum;
    CPointD m_Origin;
    COwningArray<CODBstepRepeat> m_Repeats;
};

// An entry of a features file's symbol table ($n name), with its size unit.
class CODBSpecialSymbol {
public:
    virtual ~CODBSpecialSymbol() = default;
    CString m_Name;       // without the unit mark
    double m_UnitMM = 0;  // millimetres per unit of the sizes in the name
    int m_Line = 0;       // where the table names it
};

// A closed contour of a surface; arcs are already broken into points.
struct CODBContour {
    bool m_Hole = false;
    CArrayPointD m_Points;
};

// One feature of a layer.
class CODBlayObj {
public:
    enum Kind { Pad, Line, Arc, Text, Surface, Barcode };
    virtual ~CODBlayObj() = default;
    Kind m_Kind = Pad;
    bool m_Positive = true;
    int m_Symbol = -1;         // index into the layer's symbol table; -1 for surfaces and texts
    CPointD m_P1, m_P2;        // pad and text: position in m_P1; line and arc: the ends
    CPointD m_Center;          // arc
    bool m_Clockwise = false;  // arc
    double m_Angle = 0;        // pad and text: rotation, clockwise degrees
    bool m_Mirror = false;     // pad and text
    CString m_Text;            // text
    double m_TextHeight = 0;
    std::vector<CODBContour> m_Contours;  // surface
};

// The features file of one layer of a step.
class CODBlayer {
public:
    virtual ~CODBlayer() = default;
    CString m_Name;
    const CODBmatrixLayer* m_pMatrix = nullptr;  // not owned
    COwningArray<CODBSpecialSymbol> m_Symbols;
    COwningArray<CODBlayObj> m_Objects;           // in file order: a feature number indexes it
    COwningArray<CLProperty> m_Attributes;
};

// A point of a net in the CAD netlist.
class CODBnetPt {
public:
    virtual ~CODBnetPt() = default;
    double m_Radius = 0;
    CPointD m_Position;
    char m_Side = 'T';  // T, D (down, bottom), B (both)
};

// A net of the CAD netlist ($n name) with its points.
class CODBnet {
public:
    virtual ~CODBnet() = default;
    int m_Index = 0;
    CString m_Name;
    COwningArray<CODBnetPt> m_Points;
};

// A toeprint: where one pin of a component lands.
class CODBcmpToe {
public:
    virtual ~CODBcmpToe() = default;
    int m_Pin = 0;  // index of the pin in its package
    CPointD m_Position;
    double m_Rotation = 0;
    bool m_Mirror = false;
    int m_Net = -1;  // index of the net among the NET records of eda/data
    int m_Subnet = -1;
    CString m_Name;
};

// The toeprints of one component; owns them.
class CODBcmpToeArray : public COwningArray<CODBcmpToe> {};

// A placed component (CMP) with its properties and toeprints.
class CODBcmp {
public:
    virtual ~CODBcmp() = default;
    int m_Package = -1;  // index among the PKG records of eda/data
    CPointD m_Position;
    double m_Rotation = 0;
    bool m_Mirror = false;
    bool m_Bottom = false;  // from comp_+_bot
    CString m_Reference;
    CString m_Part;
    COwningArray<CPProperty> m_Properties;
    CODBcmpToeArray m_Toes;
};

// An FID line: one feature of a layer that belongs to a subnet.
class CODBdataNetObj {
public:
    virtual ~CODBdataNetObj() = default;
    char m_Kind = 'C';  // C copper, H hole, L laminate
    int m_Layer = -1;   // index into the LYR list of eda/data
    int m_Feature = -1;
};

// A subnet (SNT) of a net of eda/data.
class CODBSnt {
public:
    enum Type { Toeprint, Trace, Via, Plane };
    virtual ~CODBSnt() = default;
    Type m_Type = Trace;
    bool m_Bottom = false;  // toeprint: the component's side
    int m_Component = -1;   // toeprint: index among that side's components
    int m_Pin = -1;         // toeprint: index of the toeprint in the component
    COwningArray<CODBdataNetObj> m_Features;
};

// A NET record of eda/data.
class CODBdataNet {
public:
    virtual ~CODBdataNet() = default;
    CString m_Name;
    COwningArray<CODBSnt> m_Subnets;
};

// A shape of a package or pin outline: a rectangle (RC: lower-left corner, width,
// height), a circle (CR: centre, radius), a square (SQ: centre, half side) or a
// contour (CT ... CE: m_Contours).
class CODBdataPkgObj {
public:
    enum Type { Rect, Circle, Square, Contour };
    virtual ~CODBdataPkgObj() = default;
    Type m_Type = Rect;
    CPointD m_Point;
    double m_A = 0, m_B = 0;
    std::vector<CODBContour> m_Contours;
};

// A pin of a package, relative to the package's origin.
class CODBdataPkgPin {
public:
    virtual ~CODBdataPkgPin() = default;
    CString m_Name;
    char m_Type = 'S';  // T through hole, B blind, S surface
    CPointD m_Center;
    COwningArray<CODBdataPkgObj> m_Outline;
};

// A PKG record of eda/data.
class CODBdataPkg {
public:
    virtual ~CODBdataPkg() = default;
    CString m_Name;
    double m_Pitch = 0;
    CRectD m_Box;
    COwningArray<CODBdataPkgObj> m_Outline;
    COwningArray<CODBdataPkgPin> m_Pins;
};
