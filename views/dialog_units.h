// Dialog units of one font: four are the mean width of a letter, eight the height of a line.
#pragma once

#include <tov310/geometry.h>

#include <cmath>

namespace tov {

inline constexpr char const* dialogUnitLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

class DialogUnits {
 public:
    // The extent of the letters above in one line, in pixels.
    explicit DialogUnits(CSize const& letters) : m_letters(letters) {}

    // In pixels. Edges that meet in the one meet in the other.
    CRect Map(CRect const& rect) const {
        return {Across(rect.left), Down(rect.top), Across(rect.right), Down(rect.bottom)};
    }

 private:
    static int Round(double value) { return static_cast<int>(std::floor(value + 0.5)); }
    int Across(int units) const { return Round(units * static_cast<double>(m_letters.cx) / (4 * 52)); }
    int Down(int units) const { return Round(units * static_cast<double>(m_letters.cy) / 8); }

    CSize m_letters;
};

}  // namespace tov
