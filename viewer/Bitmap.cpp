#include "Bitmap.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace viewer {
namespace {

constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::int32_t kPixelsPerMetre = 2835;  // 72 dots per inch

void Put16(std::vector<std::uint8_t>& out, size_t at, std::uint16_t v) {
    out[at] = static_cast<std::uint8_t>(v & 0xFF);
    out[at + 1] = static_cast<std::uint8_t>(v >> 8);
}

void Put32(std::vector<std::uint8_t>& out, size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) out[at + static_cast<size_t>(i)] = static_cast<std::uint8_t>(v >> (8 * i));
}

}  // namespace

Bitmap::Bitmap(int width, int height, Rgb fill)
    : m_width(std::max(width, 0)), m_height(std::max(height, 0)),
      m_pixels(static_cast<size_t>(m_width) * static_cast<size_t>(m_height), fill) {}

void Bitmap::FillSpan(int y, int x0, int x1, Rgb c) {
    if (y < 0 || y >= m_height) return;
    x0 = std::max(x0, 0);
    x1 = std::min(x1, m_width - 1);
    if (x0 > x1) return;
    Rgb* row = m_pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(m_width);
    std::fill(row + x0, row + x1 + 1, c);
}

std::vector<std::uint8_t> Bitmap::Headers() const {
    const size_t imageSize = Stride() * static_cast<size_t>(m_height);
    const size_t offset = kFileHeaderSize + kInfoHeaderSize;
    std::vector<std::uint8_t> out(offset, 0);
    out[0] = 'B';
    out[1] = 'M';
    Put32(out, 2, static_cast<std::uint32_t>(offset + imageSize));
    Put32(out, 10, static_cast<std::uint32_t>(offset));
    Put32(out, 14, kInfoHeaderSize);
    Put32(out, 18, static_cast<std::uint32_t>(m_width));
    Put32(out, 22, static_cast<std::uint32_t>(m_height));  // positive: rows from the bottom up
    Put16(out, 26, 1);                                     // planes
    Put16(out, 28, 24);                                    // bits per pixel
    Put32(out, 30, 0);                                     // no compression
    Put32(out, 34, static_cast<std::uint32_t>(imageSize));
    Put32(out, 38, static_cast<std::uint32_t>(kPixelsPerMetre));
    Put32(out, 42, static_cast<std::uint32_t>(kPixelsPerMetre));
    return out;
}

void Bitmap::EncodeRow(int y, std::uint8_t* out) const {
    const Rgb* pixel = m_pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(m_width);
    for (int x = 0; x < m_width; ++x, ++pixel) {
        out[3 * x] = pixel->b;
        out[3 * x + 1] = pixel->g;
        out[3 * x + 2] = pixel->r;
    }
    std::fill(out + 3 * static_cast<size_t>(m_width), out + Stride(), std::uint8_t{0});
}

std::vector<std::uint8_t> Bitmap::EncodeBmp() const {
    std::vector<std::uint8_t> out = Headers();
    const size_t offset = out.size();
    out.resize(offset + Stride() * static_cast<size_t>(m_height));
    for (int y = 0; y < m_height; ++y) EncodeRow(y, out.data() + offset + Stride() * static_cast<size_t>(m_height - 1 - y));
    return out;
}

bool Bitmap::WriteBmp(const std::string& path, std::string& why) const {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) {
        why = std::strerror(errno);
        return false;
    }
    const std::vector<std::uint8_t> headers = Headers();
    bool written = std::fwrite(headers.data(), 1, headers.size(), file) == headers.size();
    std::vector<std::uint8_t> row(Stride());
    for (int y = m_height - 1; written && y >= 0; --y) {
        EncodeRow(y, row.data());
        written = std::fwrite(row.data(), 1, row.size(), file) == row.size();
    }
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        why = "write failed";
        return false;
    }
    return true;
}

}  // namespace viewer
