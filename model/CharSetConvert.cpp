#include "CharSetConvert.h"

#include <string>

namespace {
bool IsJisByte(unsigned char b) { return b >= 0xA1 && b <= 0xFE; }
}  // namespace

CString ConvertEucJpToShiftJis(const CString& text) {
    const std::string& in = text.str();
    std::string out;
    out.reserve(in.size());
    const size_t n = in.size();
    size_t i = 0;
    while (i < n) {
        const unsigned char b = static_cast<unsigned char>(in[i]);
        const unsigned char next = i + 1 < n ? static_cast<unsigned char>(in[i + 1]) : 0;
        if (b < 0x80) {
            out += static_cast<char>(b);
            i += 1;
        } else if (b == 0x8E && next >= 0xA1 && next <= 0xDF) {  // half-width katakana
            out += static_cast<char>(next);
            i += 2;
        } else if (b == 0x8F && IsJisByte(next) && i + 2 < n && IsJisByte(static_cast<unsigned char>(in[i + 2]))) {
            out += '\x81';  // JIS X 0212 has no Shift-JIS form: the geta mark
            out += '\xAC';
            i += 3;
        } else if (IsJisByte(b) && IsJisByte(next)) {
            // Row j1 and cell j2 of the 94 x 94 JIS plane, each 0x21..0x7E. Shift-JIS
            // packs two rows into one lead byte; odd rows take the low trail range.
            const unsigned j1 = b - 0x80u, j2 = next - 0x80u;
            const unsigned s1 = ((j1 + 1) >> 1) + (j1 <= 0x5E ? 0x70u : 0xB0u);
            unsigned s2;
            if (j1 & 1) {
                s2 = j2 + 0x1F;
                if (s2 >= 0x7F) ++s2;  // the trail range skips 0x7F
            } else {
                s2 = j2 + 0x7E;
            }
            out += static_cast<char>(s1);
            out += static_cast<char>(s2);
            i += 2;
        } else {
            out += '?';
            i += 1;
        }
    }
    return CString(std::move(out));
}
