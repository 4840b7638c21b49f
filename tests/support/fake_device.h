// A device that is a picture in memory and notes how it was asked.
#pragma once

#include <tov310/device_context.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace tov::test {

struct FakeDevice : CDC {
    explicit FakeDevice(int w = 8, int h = 8)
        : width(w), height(h), pixels(static_cast<std::size_t>(w * h)) {}

    int SetDIBitsToDevice(int x, int y, int w, int h, std::uint32_t const* bits,
                          BITMAPINFOHEADER const& header) override {
        int const rows = std::min(h, std::abs(header.biHeight));
        for (int row = 0; row < rows; ++row)
            std::copy_n(bits + row * header.biWidth, w,
                        &At(x, header.biHeight < 0 ? y + row : y + h - 1 - row));
        return rows;
    }

    // Only sizes that are multiples of the source's.
    int StretchDIBits(int x, int y, int w, int h, int xs, int ys, int ws, int hs, std::uint32_t const* bits,
                      BITMAPINFOHEADER const& header, std::uint32_t rop) override {
        ++drawings;
        modeOfDrawing = GetStretchBltMode();
        originOfDrawing = GetBrushOrg();
        operation = rop;
        for (int i = 0; i < w * h; ++i) {
            int const row = i / w * hs / h;
            int const from = ys + (header.biHeight < 0 ? row : hs - 1 - row);
            At(x + i % w, y + i / w) = bits[from * header.biWidth + xs + i % w * ws / w];
        }
        return hs;
    }

    int GetDIBits(int x, int y, CTovPixels& to) override {
        if (x < 0 || y < 0 || x + to.GetWidth() > width || y + to.GetHeight() > height) return 0;
        for (int row = 0; row < to.GetHeight(); ++row)
            std::copy_n(&At(x, y + row), to.GetWidth(),
                        to.GetRow(to.IsTopDown() ? row : to.GetHeight() - 1 - row));
        return to.GetHeight();
    }

    int HasAttributeDC() const override { return attributes; }

    std::uint32_t& At(int x, int y) { return pixels.at(static_cast<std::size_t>(y * width + x)); }

    int width, height;
    std::vector<std::uint32_t> pixels;
    int attributes = 0;
    int drawings = 0;
    int modeOfDrawing = 0;
    CPoint originOfDrawing;
    std::uint32_t operation = 0;
};

}  // namespace tov::test
