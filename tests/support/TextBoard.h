// A reader of the board text form (.pdbba) of the tests' own: just what the tests
// need to work out what the viewer should answer, independent of the model's reader.
#pragma once

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace text_board {

struct Pt {
    double x = 0, y = 0;
};

struct Pin {
    std::string name;
    Pt at;
    std::string shape;
    double sizeX = 0, sizeY = 0, angle = 0, drill = 0;
    std::string net;
};

struct Comp {
    std::string ref, part, side;
    std::vector<Pin> pins;
};

struct Area {
    std::string net, layer;
    std::vector<Pt> outline;
    std::vector<std::vector<Pt>> holes;
};

struct Board {
    std::vector<std::string> layers;                  // viewer names, top first
    std::map<std::string, std::string> ecadName;      // viewer name -> ECAD name
    std::map<std::string, std::string> layerKind;     // viewer name -> COPPER, SILK, ...
    std::vector<std::string> parts;
    std::vector<Comp> comps;
    std::map<std::string, int> routeObjects;          // net -> SEG and VIA lines
    std::vector<Area> areas;
};

// Fields separated by blanks, or quoted (the test boards quote no quote or backslash).
inline std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> out;
    size_t i = 0;
    while (true) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) ++i;
        if (i >= line.size()) break;
        std::string field;
        if (line[i] == '"') {
            for (++i; i < line.size() && line[i] != '"'; ++i) field += line[i];
            ++i;
        } else {
            while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') field += line[i++];
        }
        out.push_back(field);
    }
    return out;
}

inline double Num(const std::string& s) { return std::strtod(s.c_str(), nullptr); }

inline std::vector<Pt> Points(const std::vector<std::string>& f, size_t countAt) {
    std::vector<Pt> out;
    const int n = std::atoi(f[countAt].c_str());
    for (int k = 0; k < n; ++k) out.push_back({Num(f[countAt + 1 + 2 * k]), Num(f[countAt + 2 + 2 * k])});
    return out;
}

inline Board Parse(const std::string& text) {
    Board b;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const std::vector<std::string> f = Fields(line);
        if (f.empty() || f[0][0] == '#') continue;
        const std::string& kind = f[0];
        if (kind == "LAYER") {
            b.layers.push_back(f[1]);
            b.ecadName[f[1]] = f[2];
            b.layerKind[f[1]] = f[3];
        } else if (kind == "PART") {
            b.parts.push_back(f[1]);
        } else if (kind == "COMP") {
            b.comps.push_back({f[1], f[2], f[3], {}});
        } else if (kind == "PIN") {
            b.comps.back().pins.push_back(
                {f[1], {Num(f[2]), Num(f[3])}, f[4], Num(f[5]), Num(f[6]), Num(f[7]), Num(f[8]), f[9]});
        } else if (kind == "SEG" || kind == "VIA") {
            ++b.routeObjects[f[1]];
        } else if (kind == "AREA") {
            b.areas.push_back({f[1], f[2], Points(f, 3), {}});
        } else if (kind == "HOLE") {
            b.areas.back().holes.push_back(Points(f, 1));
        }
    }
    return b;
}

inline Board ParseFile(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return Parse(text.str());
}

// Shoelace area: positive counter-clockwise, negative clockwise (y upwards).
inline double SignedArea(const std::vector<Pt>& ring) {
    double twice = 0;
    for (size_t i = 0; i < ring.size(); ++i) {
        const Pt& a = ring[i];
        const Pt& b = ring[(i + 1) % ring.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2;
}

struct Extent {
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    void Include(const Pt& p) {
        minX = std::fmin(minX, p.x);
        minY = std::fmin(minY, p.y);
        maxX = std::fmax(maxX, p.x);
        maxY = std::fmax(maxY, p.y);
    }
};

inline Extent ExtentOf(const std::vector<Pt>& ring) {
    Extent e;
    for (const Pt& p : ring) e.Include(p);
    return e;
}

}  // namespace text_board
