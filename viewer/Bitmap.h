// A picture in memory and its file form: 24-bit uncompressed Windows bitmap (BMP).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "WinTypes.h"

namespace viewer {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    friend bool operator==(const Rgb& x, const Rgb& y) { return x.r == y.r && x.g == y.g && x.b == y.b; }
    friend bool operator!=(const Rgb& x, const Rgb& y) { return !(x == y); }
};

// A COLORREF (0x00BBGGRR) as a pixel colour.
inline Rgb FromColorRef(COLORREF c) {
    return Rgb{static_cast<std::uint8_t>(c & 0xFF), static_cast<std::uint8_t>((c >> 8) & 0xFF),
               static_cast<std::uint8_t>((c >> 16) & 0xFF)};
}

// Pixels in rows from the top, columns from the left.
class Bitmap {
public:
    Bitmap(int width, int height, Rgb fill);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    // Out-of-range positions are ignored by Set and read as black by Get.
    void Set(int x, int y, Rgb c) {
        if (x < 0 || y < 0 || x >= m_width || y >= m_height) return;
        m_pixels[static_cast<size_t>(y) * static_cast<size_t>(m_width) + static_cast<size_t>(x)] = c;
    }
    Rgb Get(int x, int y) const {
        if (x < 0 || y < 0 || x >= m_width || y >= m_height) return Rgb{};
        return m_pixels[static_cast<size_t>(y) * static_cast<size_t>(m_width) + static_cast<size_t>(x)];
    }
    // Fills columns x0..x1 (inclusive) of row y; the span is clipped to the picture.
    void FillSpan(int y, int x0, int x1, Rgb c);

    // The BMP file image: file header, 40-byte information header, then the rows from
    // the bottom up, each pixel blue, green, red, each row padded to four bytes.
    std::vector<std::uint8_t> EncodeBmp() const;
    // Writes the BMP file (a row at a time), replacing it; false with the reason when it
    // cannot be written.
    bool WriteBmp(const std::string& path, std::string& why) const;

private:
    size_t Stride() const { return (static_cast<size_t>(m_width) * 3 + 3) / 4 * 4; }
    std::vector<std::uint8_t> Headers() const;
    // Row y (from the top) in the file's form, padding included.
    void EncodeRow(int y, std::uint8_t* out) const;

    int m_width, m_height;
    std::vector<Rgb> m_pixels;
};

}  // namespace viewer
