// Values of the board model beside the board database proper: integer point lists,
// named properties of a job, a layer and a component, measured points, named sets of
// nets, and drawn features of non-copper layers.
#pragma once

#include "CArray.h"
#include "CExPtrArray.h"
#include "CString.h"
#include "CStringArray.h"
#include "PdbGeometry.h"

// An integer point (database units of a writer that counts in integers).
struct CPointN {
    int x = 0;
    int y = 0;
};

// A polyline of integer points.
class CArrayPointN : public CArray<CPointN, const CPointN&> {
public:
    const char* GetRuntimeClassName() const override { return "CArrayPointN"; }
};

// A name and its text value.
class CNamedValue {
public:
    CNamedValue() = default;
    CNamedValue(const CString& name, const CString& value) : m_Name(name), m_Value(value) {}
    virtual ~CNamedValue() = default;
    CString m_Name;
    CString m_Value;
};

// A property of the whole job (for example the writer or the units of its info file).
class CGProperty : public CNamedValue {
    using CNamedValue::CNamedValue;
};
// An attribute of one layer.
class CLProperty : public CNamedValue {
    using CNamedValue::CNamedValue;
};
// A property of one component.
class CPProperty : public CNamedValue {
    using CNamedValue::CNamedValue;
};

// A point with a label and the layer it was taken on (a measuring mark).
class CMPoint {
public:
    virtual ~CMPoint() = default;
    CPointD m_Position;
    int m_Layer = -1;
    CString m_Label;
};

// A named set of nets (a bus, a net class); holds names, not the nets themselves.
class CNSet {
public:
    virtual ~CNSet() = default;
    CString m_Name;
    CStringArray m_Nets;
};

// A feature drawn on a non-copper layer: a polyline of some width (a line, an arc
// already broken into points), or a filled polygon.
class CPCDrawObj {
public:
    virtual ~CPCDrawObj() = default;
    int m_Layer = -1;
    bool m_Filled = false;
    double m_Width = 0;
    CArrayPointD m_Points;
};

// The drawn features of one layer; owns them.
class CPCDrawObjArray : public CExPtrArray<CPCDrawObj*, CPCDrawObj*> {
public:
    CPCDrawObjArray() = default;
    CPCDrawObjArray(const CPCDrawObjArray&) = delete;
    CPCDrawObjArray& operator=(const CPCDrawObjArray&) = delete;
    ~CPCDrawObjArray() override { DeleteAll(); }
    int m_Layer = -1;
};
