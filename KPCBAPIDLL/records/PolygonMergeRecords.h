// Records of the polygon merge: one request and one reply shape for every mode.
#pragma once

#include <utility>

#include "CKPRCI__Base.h"

// Modes, shared by the request and its reply.
namespace polygon_merge {
enum Mode {
    Create = 1,
    Run = 2,                           // uses LayerNames, NetName, Division
    GetCWPolygonCount = 3,
    GetCCWPolygonCount = 4,            // uses CWIndex
    GetCWPolygonPointCount = 5,        // uses CWIndex
    GetCCWPolygonPointCount = 6,       // uses CWIndex, CCWIndex
    GetCWPolygonPointData = 7,         // uses CWIndex, PointIndex
    GetCCWPolygonPointData = 8,        // uses CWIndex, CCWIndex, PointIndex
    GetCWPolygonPointDataArray = 9,    // uses CWIndex
    GetCCWPolygonPointDataArray = 10,  // uses CWIndex, CCWIndex
    Destroy = 11                       // not answered
};
}  // namespace polygon_merge

class CKPRCI_PolygonMerge : public CKPRCI__Base {
public:
    enum { ClassID = 28 };
    CKPRCI_PolygonMerge() = default;
    explicit CKPRCI_PolygonMerge(const int& mode) : m_Mode(mode) {}
    void Serialize(CArchive& ar) override {
        records::SerializeCommand(ar, ClassID, m_Mode, m_LayerNames, m_NetName, m_Division, m_CWIndex, m_CCWIndex,
                                  m_PointIndex);
    }
    int GetClassID() const override { return ClassID; }

    // The three inputs of a run.
    void SetRun(const CStringArray& layerNames, const CString& netName, double division) {
        m_LayerNames.Copy(layerNames);
        m_NetName = netName;
        m_Division = division;
    }

    int GetMode() const { return m_Mode; }
    void SetMode(const int& v) { m_Mode = v; }
    const CStringArray& GetLayerNames() const { return m_LayerNames; }
    CString GetNetName() const { return m_NetName; }
    double GetDivision() const { return m_Division; }
    // Index of a clockwise polygon.
    int GetCWIndex() const { return m_CWIndex; }
    void SetCWIndex(int v) { m_CWIndex = v; }
    // Index of a counter-clockwise polygon within the clockwise polygon.
    int GetCCWIndex() const { return m_CCWIndex; }
    void SetCCWIndex(int v) { m_CCWIndex = v; }
    // Index of a point within the polygon addressed.
    int GetPointIndex() const { return m_PointIndex; }
    void SetPointIndex(int v) { m_PointIndex = v; }

private:
    int m_Mode = 0;
    CStringArray m_LayerNames;
    CString m_NetName;
    double m_Division = 0;
    int m_CWIndex = 0;
    int m_CCWIndex = 0;
    int m_PointIndex = 0;
};

// What the viewer answers; each mode fills the fields it is about.
class CKPRCI_PolygonMerge_RV : public CKPRCI__BaseRV {
public:
    CKPRCI_PolygonMerge_RV() = default;
    explicit CKPRCI_PolygonMerge_RV(const int& mode) : m_Mode(mode) {}
    void Serialize(CArchive& ar) override {
        records::SerializeReply(ar, *this, m_Mode, m_CWPolygonCount, m_CCWPolygonCount, m_CWPointCount,
                                m_CCWPointCount, m_PointX, m_PointY, m_CWPointsX, m_CWPointsY, m_CCWPointsX,
                                m_CCWPointsY);
    }

    int GetMode() const { return m_Mode; }
    void SetMode(const int& v) { m_Mode = v; }
    int GetCWPolygonCount() const { return m_CWPolygonCount; }
    void SetCWPolygonCount(int v) { m_CWPolygonCount = v; }
    int GetCCWPolygonCount() const { return m_CCWPolygonCount; }
    void SetCCWPolygonCount(int v) { m_CCWPolygonCount = v; }
    int GetCWPointCount() const { return m_CWPointCount; }
    void SetCWPointCount(int v) { m_CWPointCount = v; }
    int GetCCWPointCount() const { return m_CCWPointCount; }
    void SetCCWPointCount(int v) { m_CCWPointCount = v; }
    double GetPointX() const { return m_PointX; }
    void SetPointX(const double& v) { m_PointX = v; }
    double GetPointY() const { return m_PointY; }
    void SetPointY(const double& v) { m_PointY = v; }
    const CArrayD& GetCWPointsX() const { return m_CWPointsX; }
    void SetCWPointsX(const CArrayD& v) { m_CWPointsX.Copy(v); }
    const CArrayD& GetCWPointsY() const { return m_CWPointsY; }
    void SetCWPointsY(const CArrayD& v) { m_CWPointsY.Copy(v); }
    const CArrayD& GetCCWPointsX() const { return m_CCWPointsX; }
    void SetCCWPointsX(const CArrayD& v) { m_CCWPointsX.Copy(v); }
    const CArrayD& GetCCWPointsY() const { return m_CCWPointsY; }
    void SetCCWPointsY(const CArrayD& v) { m_CCWPointsY.Copy(v); }
    // Exchanges the point arrays with the given ones without copying a value: the
    // viewer lends a kept outline to the reply while it is serialised, and the caller
    // takes a loaded reply's points into its own arrays.
    void SwapCWPoints(CArrayD& xs, CArrayD& ys) {
        std::swap(m_CWPointsX, xs);
        std::swap(m_CWPointsY, ys);
    }
    void SwapCCWPoints(CArrayD& xs, CArrayD& ys) {
        std::swap(m_CCWPointsX, xs);
        std::swap(m_CCWPointsY, ys);
    }

private:
    int m_Mode = 0;
    int m_CWPolygonCount = 0;
    int m_CCWPolygonCount = 0;
    int m_CWPointCount = 0;
    int m_CCWPointCount = 0;
    double m_PointX = 0;
    double m_PointY = 0;
    CArrayD m_CWPointsX;
    CArrayD m_CWPointsY;
    CArrayD m_CCWPointsX;
    CArrayD m_CCWPointsY;
};
