// What the reference viewer shows: the view settings that commands change.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "CArrayD.h"
#include "CString.h"
#include "CStringArray.h"
#include "WinTypes.h"

namespace viewer {

enum class Side { Top, Bottom, All };

struct Window {
    int left = 0, top = 0, width = 1024, height = 768;  // default canvas when never placed
};

// One highlight request as the viewer keeps it for drawing.
struct Highlight {
    enum class What { Objects, RefPins, NetSection, NetSegments } what = What::Objects;
    int functionType = 0;
    int objectKind = 0;
    std::vector<std::string> names;   // objects, or the pins of ref
    std::string ref;                  // RefPins: the component; NetSection: "net ref1 pin1 ref2 pin2"
    std::vector<std::string> layers;  // specific layers (function 3)
    std::vector<int> segments;
    COLORREF color = 0;
};

// Which layers are shown: either only a named set, or all but those switched off.
struct LayerVisibility {
    bool only = false;
    std::set<std::string> onlyNames;
    std::map<std::string, int> switched;  // name -> visible value as sent
};

struct RedMark {
    std::string title;
    std::string contents;
};

// The merge result between create and destroy: clockwise outlines, each with its holes.
struct MergeSession {
    bool open = false;
    bool ran = false;
    struct Outline {
        // Kept as the reply's own array type, so that an answer lends them to its
        // reply instead of copying them.
        CArrayD xs, ys;
        std::vector<CArrayD> holeXs, holeYs;
    };
    std::vector<Outline> outlines;
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
    std::vector<Highlight> highlights;
    LayerVisibility layers;
    LayerVisibility layerBackup;
    bool hasLayerBackup = false;
    std::vector<RedMark> redMarks;
    int redMarkCallStatus = 0;
    MergeSession merge;
    std::vector<std::string> captures;  // bitmap files asked for, in order
    std::vector<std::string> exports;   // text exports asked for, in order
};

}  // namespace viewer
