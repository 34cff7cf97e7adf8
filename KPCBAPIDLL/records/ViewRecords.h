// Records of the view-control commands, and the generic code-carrying command.
#pragma once

#include "CKPRCI__Base.h"

// A command told fully by one code (zoom steps, fit, board side, mirror,
// highlight clearing, layer backup and restore).
class CKPRCI_SimpleCMD : public CKPRCI__Base {
public:
    enum { ClassID = 8 };
    enum Code {
        HighlightClear = 1, ZoomIn = 2, ZoomOut = 3, ZoomFitSize = 4, ViewLayerTop = 5, ViewLayerBtm = 6,
        ViewLayerAll = 7, ViewMirror = 8, ViewMirrorClear = 9, BackupLayers = 10, RestoreLayers = 11
    };
    CKPRCI_SimpleCMD() = default;
    explicit CKPRCI_SimpleCMD(const int& commandType) : m_CommandType(commandType) {}
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_CommandType, m_CommonValue); }
    int GetClassID() const override { return ClassID; }

    int GetCommandType() const { return m_CommandType; }
    void SetCommandType(const int& v) { m_CommandType = v; }
    int GetCommonValue() const { return m_CommonValue; }
    void SetCommonValue(int v) { m_CommonValue = v; }

private:
    int m_CommandType = 0;
    int m_CommonValue = 0;
};

// Switches one kind of board object on or off: 1 components, 2 routes.
class CKPRCI_ObjectOnOff : public CKPRCI__Base {
public:
    enum { ClassID = 9 };
    CKPRCI_ObjectOnOff() = default;
    CKPRCI_ObjectOnOff(const int& objectType, int onOff) : m_ObjectType(objectType), m_OnOff(onOff) {}
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_ObjectType, m_OnOff); }
    int GetClassID() const override { return ClassID; }

    int GetObjectType() const { return m_ObjectType; }
    void SetObjectType(const int& v) { m_ObjectType = v; }
    int IsOn() const { return m_OnOff; }
    void SetOnOff(const int& v) { m_OnOff = v; }

private:
    int m_ObjectType = 0;
    int m_OnOff = 0;
};

// Switches one viewer tool on or off: 1 picking tool, 2 red-mark tool, 3 minimap.
class CKPRCI_ToolOnOff : public CKPRCI__Base {
public:
    enum { ClassID = 20 };
    CKPRCI_ToolOnOff() = default;
    CKPRCI_ToolOnOff(const int& toolType, int onOff) : m_ToolType(toolType), m_OnOff(onOff) {}
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_ToolType, m_OnOff); }
    int GetClassID() const override { return ClassID; }

    int GetToolType() const { return m_ToolType; }
    void SetToolType(const int& v) { m_ToolType = v; }
    int IsOn() const { return m_OnOff; }
    void SetOnOff(const int& v) { m_OnOff = v; }

private:
    int m_ToolType = 0;
    int m_OnOff = 0;
};

// The area to show: first X, first Y, second X, second Y, in board coordinates.
class CKPRCI_ZoomArea : public CKPRCI__Base {
public:
    enum { ClassID = 10 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_X1, m_Y1, m_X2, m_Y2); }
    int GetClassID() const override { return ClassID; }

    void GetData(double& x1, double& y1, double& x2, double& y2) const { x1 = m_X1; y1 = m_Y1; x2 = m_X2; y2 = m_Y2; }
    void SetData(const double& x1, const double& y1, const double& x2, const double& y2) { m_X1 = x1; m_Y1 = y1; m_X2 = x2; m_Y2 = y2; }

private:
    double m_X1 = 0, m_Y1 = 0, m_X2 = 0, m_Y2 = 0;
};

// Placement of the viewer's main window, four values in the caller's order.
class CKPRCI_SetWindowPosition : public CKPRCI__Base {
public:
    enum { ClassID = 11 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_V1, m_V2, m_V3, m_V4); }
    int GetClassID() const override { return ClassID; }

    void GetData(int& v1, int& v2, int& v3, int& v4) const { v1 = m_V1; v2 = m_V2; v3 = m_V3; v4 = m_V4; }
    void SetData(int v1, int v2, int v3, int v4) { m_V1 = v1; m_V2 = v2; m_V3 = v3; m_V4 = v4; }

private:
    int m_V1 = 0, m_V2 = 0, m_V3 = 0, m_V4 = 0;
};

class CKPRCI_RotateBoard : public CKPRCI__Base {
public:
    enum { ClassID = 12 };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_Angle); }
    int GetClassID() const override { return ClassID; }

    double GetAngle() const { return m_Angle; }
    void SetAngle(const double& v) { m_Angle = v; }

private:
    double m_Angle = 0;
};

class CKPRCI_Information_SetMainTitle : public records::TitleCommand<27> {};
