#include "RenderFont.h"

#include <array>
#include <cctype>
#include <cstring>

namespace viewer {
namespace {

// Each glyph: strokes separated by blanks, each stroke a run of points written as
// two digits, x then y.
struct GlyphText {
    char c;
    const char* strokes;
};

const GlyphText kGlyphs[] = {
    {'A', "0004264440 0343"},
    {'B', "00063645443303 3342413000"},
    {'C', "4536160501103041"},
    {'D', "00062644422000"},
    {'E', "40000646 0333"},
    {'F', "000646 0333"},
    {'G', "45361605011030414323"},
    {'H', "0006 4046 0343"},
    {'I', "1030 2026 1636"},
    {'J', "0110203136 2646"},
    {'K', "0006 4602 1340"},
    {'L', "060040"},
    {'M', "0006234640"},
    {'N', "00064046"},
    {'O', "103041453616050110"},
    {'P', "00063645443303"},
    {'Q', "103041453616050110 2240"},
    {'R', "00063645443303 2340"},
    {'S', "453616050413334241301001"},
    {'T', "0646 2620"},
    {'U', "060110304146"},
    {'V', "062046"},
    {'W', "0610233046"},
    {'X', "0046 0640"},
    {'Y', "062346 2320"},
    {'Z', "06464000"},
    {'0', "103041453616050110 0145"},
    {'1', "152620 1030"},
    {'2', "05163645440040"},
    {'3', "0516364544334241301001 1333"},
    {'4', "30360242"},
    {'5', "460603334241301001"},
    {'6', "4536160501103041423303"},
    {'7', "064610"},
    {'8', "13040516364544331302011030414233"},
    {'9', "0110304145361605041343"},
    {'-', "1333"},
    {'+', "1333 2224"},
    {'_', "0040"},
    {'.', "2021"},
    {',', "2110"},
    {'/', "0046"},
    {'\\', "0640"},
    {':', "2122 2425"},
    {';', "2110 2425"},
    {'(', "36252130"},
    {')', "16252110"},
    {'[', "36262030"},
    {']', "16262010"},
    {'<', "350331"},
    {'>', "153311"},
    {'=', "0242 0444"},
    {'#', "1016 3036 0242 0444"},
    {'*', "1531 3511 0343"},
    {'%', "0046 0515 3141"},
    {'!', "2622 2021"},
    {'?', "051636454422 2021"},
    {'\'', "2625"},
    {'"', "1615 3635"},
    {' ', ""},
};

const char kBox[] = "0006464000";

std::vector<std::vector<GlyphPoint>> Parse(const char* text) {
    std::vector<std::vector<GlyphPoint>> strokes(1);
    for (const char* p = text; *p;) {
        if (*p == ' ') {
            strokes.emplace_back();
            ++p;
            continue;
        }
        strokes.back().push_back(GlyphPoint{p[0] - '0', p[1] - '0'});
        p += 2;
    }
    if (strokes.back().empty()) strokes.pop_back();
    return strokes;
}

struct Table {
    std::array<std::vector<std::vector<GlyphPoint>>, 256> glyphs;
    Table() {
        const std::vector<std::vector<GlyphPoint>> box = Parse(kBox);
        for (auto& g : glyphs) g = box;
        for (const GlyphText& g : kGlyphs) glyphs[static_cast<unsigned char>(g.c)] = Parse(g.strokes);
        for (int c = 'a'; c <= 'z'; ++c) glyphs[static_cast<size_t>(c)] = glyphs[static_cast<size_t>(std::toupper(c))];
        glyphs['\t'] = glyphs[' '];
    }
};

}  // namespace

const std::vector<std::vector<GlyphPoint>>& Glyph(char c) {
    static const Table table;
    return table.glyphs[static_cast<unsigned char>(c)];
}

}  // namespace viewer
