// Reads back the pictures the viewer writes: 24-bit uncompressed BMP, the only form
// it writes. Every header field a common viewer relies on is checked on reading.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace render_test {

struct Color {
    int r = 0, g = 0, b = 0;
    friend bool operator==(const Color& x, const Color& y) { return x.r == y.r && x.g == y.g && x.b == y.b; }
    friend bool operator!=(const Color& x, const Color& y) { return !(x == y); }
};

inline std::ostream& operator<<(std::ostream& out, const Color& c) {
    return out << "(" << c.r << "," << c.g << "," << c.b << ")";
}

class Bmp {
public:
    // Empty (width 0) with a reason in problem when the file is not such a BMP.
    static Bmp Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        return Decode(bytes);
    }

    static Bmp Decode(const std::vector<unsigned char>& d) {
        Bmp bmp;
        auto u16 = [&](size_t at) { return static_cast<uint32_t>(d[at] | d[at + 1] << 8); };
        auto u32 = [&](size_t at) { return u16(at) | u16(at + 2) << 16; };
        if (d.size() < 54) return bmp.Fail("shorter than the two headers");
        if (d[0] != 'B' || d[1] != 'M') return bmp.Fail("no BM signature");
        if (u32(2) != d.size()) return bmp.Fail("file size field " + std::to_string(u32(2)));
        if (u32(14) != 40) return bmp.Fail("information header size " + std::to_string(u32(14)));
        const int32_t width = static_cast<int32_t>(u32(18)), height = static_cast<int32_t>(u32(22));
        if (width <= 0 || height <= 0) return bmp.Fail("not a bottom-up picture of positive size");
        if (u16(26) != 1 || u16(28) != 24 || u32(30) != 0) return bmp.Fail("not 24-bit uncompressed");
        const size_t stride = (static_cast<size_t>(width) * 3 + 3) / 4 * 4;
        const size_t offset = u32(10);
        if (offset < 54 || offset + stride * static_cast<size_t>(height) != d.size())
            return bmp.Fail("pixel data does not fill the file");
        if (u32(34) != stride * static_cast<size_t>(height)) return bmp.Fail("pixel data size field");
        bmp.width = width;
        bmp.height = height;
        bmp.pixels.resize(static_cast<size_t>(width) * static_cast<size_t>(height));
        for (int y = 0; y < height; ++y) {
            const unsigned char* row = d.data() + offset + stride * static_cast<size_t>(height - 1 - y);
            for (int x = 0; x < width; ++x)
                bmp.pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] =
                    Color{row[3 * x + 2], row[3 * x + 1], row[3 * x]};
        }
        return bmp;
    }

    // Row y from the top, column x from the left.
    Color At(int x, int y) const {
        return pixels.at(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x));
    }
    int Count(const Color& c) const {
        int n = 0;
        for (const Color& p : pixels) n += p == c ? 1 : 0;
        return n;
    }

    int width = 0, height = 0;
    std::vector<Color> pixels;
    std::string problem;

private:
    Bmp& Fail(const std::string& why) {
        problem = why;
        return *this;
    }
};

}  // namespace render_test
