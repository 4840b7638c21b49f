// Everything is drawn by asking what a pixel is: how far it is from a line or inside of what. That is smooth
// at every angle, and a sheet of some megapixels takes a tenth of a second.
#include "map_sheet.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace survey {
namespace {

using tov::COLORREF;
using tov::CRect;
using tov::CTovDib;
using tov::TovRgb;

constexpr COLORREF paper = TovRgb(250, 247, 238), ink = TovRgb(45, 52, 64), shade = TovRgb(205, 199, 184);
constexpr COLORREF sea = TovRgb(226, 236, 243), deep = TovRgb(168, 196, 216), line = TovRgb(38, 84, 128);

// Digits and what stands beside them: seven rows of five pixels, the leftmost in the highest bit.
struct Glyph {
    char character;
    std::array<std::uint8_t, 7> rows;
};

constexpr Glyph glyphs[] = {
    {'0', {14, 17, 19, 21, 25, 17, 14}}, {'1', {4, 12, 4, 4, 4, 4, 14}},
    {'2', {14, 17, 1, 2, 4, 8, 31}},     {'3', {31, 2, 4, 2, 1, 17, 14}},
    {'4', {2, 6, 10, 18, 31, 2, 2}},     {'5', {31, 16, 30, 1, 1, 17, 14}},
    {'6', {6, 8, 16, 30, 17, 17, 14}},   {'7', {31, 1, 2, 4, 8, 8, 8}},
    {'8', {14, 17, 17, 14, 17, 17, 14}}, {'9', {14, 17, 17, 15, 1, 2, 12}},
    {'-', {0, 0, 0, 14, 0, 0, 0}},       {'.', {0, 0, 0, 0, 0, 12, 12}},
    {'o', {12, 18, 18, 12, 0, 0, 0}},    {'p', {0, 0, 30, 17, 30, 16, 16}},
    {'x', {0, 0, 17, 10, 4, 10, 17}},    {'k', {16, 16, 18, 20, 24, 20, 18}},
    {'m', {0, 0, 26, 21, 21, 21, 21}},
};

// The sign of degrees is a small "o".
constexpr std::string_view unitOfDegrees = "o", unitOfPixels = "px";

constexpr int glyphWidth = 5, glyphHeight = 7;

struct Place {
    double x = 0;
    double y = 0;
};

double DistanceToStroke(Place p, Place from, Place to) {
    double const x = to.x - from.x, y = to.y - from.y;
    double const along = std::clamp(((p.x - from.x) * x + (p.y - from.y) * y) / (x * x + y * y), 0.0, 1.0);
    return std::hypot(p.x - from.x - along * x, p.y - from.y - along * y);
}

// Metres from one meridian to that a degree farther east: on the ellipsoid of WGS 84 (NIMA TR8350.2), whose
// parallel of latitude has the radius a cos(latitude) / sqrt(1 - e2 sin(latitude)^2).
double MetresOfDegree(double latitude) {
    constexpr double a = 6378137, f = 1 / 298.257223563, e2 = f * (2 - f);
    double const radian = std::acos(-1.0) / 180, s = std::sin(latitude * radian);
    return radian * a * std::cos(latitude * radian) / std::sqrt(1 - e2 * s * s);
}

// Between the image, from its left top corner, and the sheet.
class Turn {
 public:
    Turn(double angle, Place image, Place sheet)
        : m_cos(std::cos(angle)), m_sin(std::sin(angle)), m_image(image), m_sheet(sheet) {}
    Place ToImage(Place p) const {
        double const x = p.x - m_sheet.x, y = p.y - m_sheet.y;
        return {m_image.x + m_cos * x - m_sin * y, m_image.y + m_sin * x + m_cos * y};
    }
    double Cos() const { return m_cos; }
    double Sin() const { return m_sin; }

 private:
    double m_cos, m_sin;
    Place m_image, m_sheet;
};

// A round number of which `least` pixels hold no more than one.
double RoundStep(double perPixel, double least) {
    double const wanted = perPixel * least;
    double const ten = std::pow(10.0, std::floor(std::log10(wanted)));
    for (double const digit : {1.0, 2.0, 3.0, 5.0}) {
        if (digit * ten >= wanted * (1 - 1e-9)) return digit * ten;
    }
    return 10 * ten;
}

std::string Label(double value, double step, std::string_view unit) {
    std::array<char, 64> text{};
    int const decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
    double const clean = std::abs(value) < step / 2 ? 0 : value;
    auto const end =
        std::to_chars(text.data(), text.data() + text.size(), clean, std::chars_format::fixed, decimals);
    return std::string(text.data(), end.ptr).append(unit);
}

// A kind of lines of the graticule: of equal column or of equal row.
struct LineFamily {
    double first = 0, perPixel = 1, step = 1;  // in units of the map
    bool isColumn = true;

    double ValueAt(Place image) const { return first + perPixel * (isColumn ? image.x : image.y); }
    // Pixels to the nearest line.
    double Distance(Place image) const {
        double const lines = ValueAt(image) / step;
        return std::abs(lines - std::round(lines)) * step / std::abs(perPixel);
    }
};

// What stands where a line meets the neat line.
struct SheetLabel {
    std::string text;
    int at;      // from the left or the top of the map
    bool atTop;  // or at the bottom; otherwise at one of the sides
    int side;    // 0: top or left
};

class SheetPainter {
 public:
    SheetPainter(CTovDib& sheet, CTovDib& image, MapExtent const& extent, MapStyle const& style)
        : m_sheet(sheet), m_image(image), m_extent(extent), m_style(style) {}

    bool Draw() {
        int const width = m_image.GetWidth(), height = m_image.GetHeight();
        double const c = std::abs(std::cos(m_style.angle)), s = std::abs(std::sin(m_style.angle));
        double const wide = width * c + height * s, high = width * s + height * c;
        // What surrounds a large picture is seen from farther away.
        m_zoom = static_cast<int>(std::clamp(std::round(std::sqrt(wide * high) / 800), 1.0, 8.0));
        double const room = 56.0 * m_zoom;  // on both sides together
        double const mapWide = std::max(320.0, std::ceil(wide) + room);
        double const mapHigh = std::max(200.0, std::ceil(high) + room);
        if (!(mapWide < 1e6 && mapHigh < 1e6)) return false;
        m_map = {0, 0, static_cast<int>(mapWide), static_cast<int>(mapHigh)};
        double const least = 70.0 * m_zoom;
        m_families[0] = {m_extent.west, m_extent.perColumn, RoundStep(std::abs(m_extent.perColumn), least),
                         true};
        m_families[1] = {m_extent.north, m_extent.perRow, RoundStep(std::abs(m_extent.perRow), least), false};
        auto const turned = [&] {
            return Turn(m_style.angle, {width * 0.5, height * 0.5},
                        {m_map.left + mapWide / 2, m_map.top + mapHigh / 2});
        };
        PlaceLabels(turned());
        int const border = 46 * m_zoom, sides = std::max(border, RoomOfLabels()), foot = 80 * m_zoom;
        m_map = {sides, border, sides + m_map.right, border + m_map.bottom};
        if (!m_sheet.Create(m_map.right + sides, -(m_map.bottom + foot))) return false;
        Turn const turn = turned();

        DrawPaper();
        DrawImage();
        DrawGraticule(turn);
        for (SheetLabel const& label : m_labels)
            DrawLabel(label);
        DrawScale();
        if (m_extent.isInDegrees) DrawArrow();
        return true;
    }

 private:
    void Blend(int x, int y, COLORREF color, double amount) {
        if (amount > 0) m_sheet.BlendRect(color, x, y, 1, 1, static_cast<int>(std::min(1.0, amount) * 255));
    }

    void DrawPaper() {
        CRect const frame{m_map.left - 4, m_map.top - 4, m_map.right + 4, m_map.bottom + 4};
        CRect const shadow{frame.left + 5, frame.top + 5, frame.right + 5, frame.bottom + 5};
        m_sheet.Fill(paper);
        m_sheet.FillStippledRect(shade, shadow);
        m_sheet.FillRect(ink, frame);
        m_sheet.FillRect(paper, {frame.left + 1, frame.top + 1, frame.right - 1, frame.bottom - 1});
        m_sheet.FillRect(ink, {m_map.left - 1, m_map.top - 1, m_map.right + 1, m_map.bottom + 1});
        m_sheet.FillRect(sea, m_map);
        CTovDib water;
        if (!water.Create(m_map.Width(), -m_map.Height())) return;
        water.Fill(deep);
        water.FillAlphaGradient(200, 0, 0);
        m_sheet.CopyFromDibAlpha(&water, m_map.left, m_map.top);
    }

    void DrawImage() {
        std::uint32_t* const bits = m_image.GetCrBits();
        for (std::size_t i = 0; i < m_image.GetBitmap()->GetCount(); ++i) {
            auto const alpha = (bits[i] >> 24) * static_cast<std::uint32_t>(m_style.opacity) / 255;
            bits[i] = (bits[i] & 0xFFFFFF) | alpha << 24;
        }
        auto const half = [](int size) { return static_cast<float>(size) * 0.5F; };
        m_sheet.CopyFromDibStretchAlpha(&m_image, static_cast<float>(m_style.angle), 1.0F,
                                        static_cast<float>(m_map.left) + half(m_map.Width()),
                                        static_cast<float>(m_map.top) + half(m_map.Height()),
                                        half(m_image.GetWidth()), half(m_image.GetHeight()), 0, 0);
    }

    // Over the image, which may be as light as ice or as dark as the sea, a dark line in a light one.
    void DrawGraticule(Turn const& turn) {
        double const width = m_image.GetWidth(), height = m_image.GetHeight();
        for (int y = m_map.top; y < m_map.bottom; ++y) {
            for (int x = m_map.left; x < m_map.right; ++x) {
                Place const p = turn.ToImage({x + 0.5, y + 0.5});
                double const inside = std::min({p.x, p.y, width - p.x, height - p.y});
                double const one = m_families[0].Distance(p), other = m_families[1].Distance(p);
                double const half = 0.5 + m_zoom * 0.5;
                if (inside > 0) Blend(x, y, paper, 0.55 * (half + m_zoom - std::min(one, other)));
                for (double const distance : {one, other})
                    Blend(x, y, line, (inside > 0 ? 0.9 : 0.6) * (half - distance));
                Blend(x, y, ink, 0.2 + m_zoom - std::abs(inside));
            }
        }
    }

    // Where lines meet the neat line, while the map stands at 0: those that run up at the top and the bottom,
    // the others at the sides.
    void PlaceLabels(Turn const& turn) {
        bool const isUpright = std::abs(turn.Cos()) >= std::abs(turn.Sin());
        for (LineFamily const& family : m_families) {
            bool const atTop = family.isColumn == isUpright;
            int const from = atTop ? m_map.left : m_map.top, to = atTop ? m_map.right : m_map.bottom;
            for (int const side : {0, 1}) {
                int free = std::numeric_limits<int>::min();
                auto const valueAt = [&](int at) {
                    double const across =
                        side == 0 ? (atTop ? m_map.top : m_map.left) : (atTop ? m_map.bottom : m_map.right);
                    return family.ValueAt(
                        turn.ToImage(atTop ? Place{at + 0.0, across} : Place{across, at + 0.0}));
                };
                for (int at = from; at < to; ++at) {
                    double const low = valueAt(at) / family.step, high = valueAt(at + 1) / family.step;
                    double const value = std::floor(std::max(low, high));
                    if (value <= std::min(low, high)) continue;
                    std::string const text = LabelOf(family, value);
                    // Long ones side by side would run into each other.
                    int const half = atTop ? TextWidth(text) / 2 : glyphHeight * m_zoom / 2;
                    if (text.empty() || at - half < free) continue;
                    free = at + half + glyphWidth * m_zoom;
                    m_labels.push_back({text, at, atTop, side});
                }
            }
        }
    }

    // From the sides of the map to those of the sheet.
    int RoomOfLabels() const {
        int room = 0;
        for (SheetLabel const& label : m_labels) {
            int const width = TextWidth(label.text);
            int const out =
                label.atTop ? width / 2 - std::min(label.at, m_map.right - label.at) : GapOfLabels() + width;
            room = std::max(room, out + GapOfLabels());
        }
        return room;
    }

    // Longitudes begin anew behind 180 degrees, and latitudes end at 90.
    std::string LabelOf(LineFamily const& family, double number) const {
        double const value = number * family.step;
        if (!m_extent.isInDegrees) return Label(value, family.step, unitOfPixels);
        if (!family.isColumn && std::abs(value) > 90) return {};
        return Label(family.isColumn ? std::remainder(value, 360) : value, family.step, unitOfDegrees);
    }

    // Clear of the frame and its shadow.
    int GapOfLabels() const { return 8 * m_zoom + 3; }

    void DrawLabel(SheetLabel const& label) {
        int const width = TextWidth(label.text), height = glyphHeight * m_zoom, gap = GapOfLabels();
        bool const isFirst = label.side == 0;
        if (label.atTop)
            DrawText(label.text, m_map.left + label.at - width / 2,
                     isFirst ? m_map.top - gap - height : m_map.bottom + gap);
        else
            DrawText(label.text, isFirst ? m_map.left - gap - width : m_map.right + gap,
                     m_map.top + label.at - height / 2);
    }

    int TextWidth(std::string_view text) const {
        return static_cast<int>(text.size()) * (glyphWidth + 1) * m_zoom;
    }

    void DrawText(std::string_view text, int x, int y) {
        for (char const character : text) {
            auto const glyph = std::find_if(std::begin(glyphs), std::end(glyphs),
                                            [&](Glyph const& g) { return g.character == character; });
            for (int i = 0; glyph != std::end(glyphs) && i < glyphHeight * glyphWidth; ++i) {
                int const column = i % glyphWidth, row = i / glyphWidth;
                if ((glyph->rows[static_cast<std::size_t>(row)] >> (glyphWidth - 1 - column) & 1) != 0)
                    m_sheet.FillRect(ink, x + column * m_zoom, y + row * m_zoom, m_zoom, m_zoom);
            }
            x += (glyphWidth + 1) * m_zoom;
        }
    }

    // Along the columns of the image: on a map along the parallel through its middle.
    void DrawScale() {
        double const middle = m_extent.north + m_extent.perRow * m_image.GetHeight() / 2;
        double const perPixel =
            std::abs(m_extent.perColumn) * (m_extent.isInDegrees ? MetresOfDegree(middle) : 1);
        double const length = RoundStep(perPixel, std::max(80.0 * m_zoom, m_map.Width() / 8.0));
        int const left = m_map.left, top = m_map.bottom + 36 * m_zoom, half = 3 * m_zoom;
        int const width = static_cast<int>(std::lround(length / perPixel));
        m_sheet.FillRect(ink, left - m_zoom, top - m_zoom, width + 2 * m_zoom, 2 * half + 2 * m_zoom);
        m_sheet.FillRect(paper, left, top, width, 2 * half);
        for (int i = 0; i < 4; ++i) {
            int const from = left + width * i / 4, to = left + width * (i + 1) / 4;
            m_sheet.FillRect(ink, from, top + i % 2 * half, to - from, half);
        }
        DrawText("0", left - 2 * m_zoom, top + 12 * m_zoom);
        double const inUnit = m_extent.isInDegrees && length >= 1000 ? length / 1000 : length;
        std::string const text = Label(inUnit, inUnit,
                                       !m_extent.isInDegrees ? unitOfPixels
                                       : inUnit < length     ? " km"
                                                             : " m");
        DrawText(text, left + width - TextWidth(text) / 2, top + 12 * m_zoom);
    }

    // Up in the image, with its letter at the tip.
    void DrawArrow() {
        int const reach = 26 * m_zoom, x0 = m_map.right - reach, y0 = m_map.bottom + 50 * m_zoom;
        Turn const turn(m_style.angle, {}, {x0 + 0.5, y0 + 0.5});
        constexpr Place letter[] = {{-2.5, -17}, {-2.5, -24}, {2.5, -17}, {2.5, -24}};
        for (int y = y0 - reach; y <= y0 + reach; ++y) {
            for (int x = x0 - reach; x <= x0 + reach; ++x) {
                Place p = turn.ToImage({x + 0.5, y + 0.5});
                p = {p.x / m_zoom, p.y / m_zoom};
                double const half = (p.y + 14) / 3;  // as wide as the arrow is here
                double const notch = 12 - std::abs(p.x) * 0.7;
                double const inside = std::min({half - std::abs(p.x), notch - p.y, p.y + 14}) * m_zoom;
                Blend(x, y, p.x < 0 || inside < m_zoom ? ink : paper, inside + 0.5);
                double stroke = reach;
                for (int i = 0; i < 3; ++i)
                    stroke = std::min(stroke, DistanceToStroke(p, letter[i], letter[i + 1]));
                Blend(x, y, ink, (0.7 - stroke) * m_zoom + 0.5);
            }
        }
    }

    CTovDib& m_sheet;
    CTovDib& m_image;
    MapExtent const& m_extent;
    MapStyle const& m_style;
    int m_zoom = 1;
    std::array<LineFamily, 2> m_families;
    std::vector<SheetLabel> m_labels;
    CRect m_map;  // within the neat line
};

}  // namespace

bool DrawMapSheet(CTovDib& sheet, CTovDib& image, MapExtent const& extent, MapStyle const& style) {
    return SheetPainter(sheet, image, extent, style).Draw();
}

}  // namespace survey
