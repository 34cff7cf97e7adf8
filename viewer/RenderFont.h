// The viewer's built-in stroke font: capitals, digits and common signs drawn as
// polylines on a grid four units wide and six high, the base line at 0. Small
// letters are drawn as capitals; a character without a glyph is drawn as a box.
#pragma once

#include <vector>

namespace viewer {

struct GlyphPoint {
    int x, y;
};

// The strokes of a character (none for a blank).
const std::vector<std::vector<GlyphPoint>>& Glyph(char c);

// Text metrics in units of the text height: the glyph grid's six units are the height.
constexpr double kGlyphUnit = 1.0 / 6;       // one grid unit
constexpr double kGlyphAdvance = 0.8;        // from one character to the next
constexpr double kGlyphStroke = 0.12;        // stroke width

}  // namespace viewer
