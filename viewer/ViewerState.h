// What the reference viewer shows: the view settings that commands change.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "CString.h"
#include "CStringArray.h"
#include "WinTypes.h"

namespace viewer {

enum class Side { Top, Bottom, All };

struct Window {
    int left = 0, top = 0, width = 1024, height = 768;  // default canvas when never placed
};

struct ViewState {
    int zoomSteps = 0;              // + in, - out, relative to the fitted view
    bool fitted = true;             // the whole board fits; an explicit area clears it
    bool hasZoomArea = false;
    double area[4] = {0, 0, 0, 0};  // x1, y1, x2, y2 as given
    double rotation = 0;            // degrees, counter-clockwise
    bool mirrored = false;
    Side side = Side::All;
    Window window;
    CString title;
    int componentsOn = 1, routesOn = 1;
    int pickingTool = 0, redMarkTool = 0, miniMap = 0;
    COLORREF currentHighlightColor = 0x000000FF;
    // Layers the user hid, by viewer name (empty: every layer shown).
    std::map<std::string, int> layerVisible;
    std::map<std::string, int> layerBackup;
    bool hasLayerBackup = false;
    int redMarkCallStatus = 0;
};

}  // namespace viewer
