// Record of the layer visibility commands.
#pragma once

#include "CKPRCI__Base.h"

// Shows or hides named layers.
class CKPRCI_VisibleLayer : public CKPRCI__Base {
public:
    enum { ClassID = 13 };
    enum ControlType {
        OnlyNamed = 1,      // show only the named layers, hide all others
        SetNamed = 2,       // set the named layers to Visible, leave the others
        OnlyNamedECAD = 3,  // as OnlyNamed, names in the ECAD system's own naming
        SetNamedECAD = 4    // as SetNamed, names in the ECAD system's own naming
    };
    void Serialize(CArchive& ar) override { records::SerializeCommand(ar, ClassID, m_LayerControlType, m_LayerNames, m_Visible); }
    int GetClassID() const override { return ClassID; }

    int GetLayerControlType() const { return m_LayerControlType; }
    void SetLayerControlType(int v) { m_LayerControlType = v; }
    const CStringArray& GetLayerNames() const { return m_LayerNames; }
    void SetLayerNames(const CStringArray& v) { m_LayerNames.Copy(v); }
    // Types 2 and 4: non-zero shows the named layers, 0 hides them.
    int GetVisible() const { return m_Visible; }
    void SetVisible(int v) { m_Visible = v; }

private:
    int m_LayerControlType = 0;
    CStringArray m_LayerNames;
    int m_Visible = 0;
};
