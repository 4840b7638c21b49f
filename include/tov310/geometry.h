// Points, rectangles and segments with coordinates of any arithmetic type; with double they carry device,
// logical, map and image coordinates.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace tov {

template <typename T>
struct CTovPoint {
    T x{};
    T y{};

    friend constexpr bool operator==(CTovPoint const&, CTovPoint const&) = default;
};

template <typename T>
struct CTovRect {
    T left{};
    T top{};
    T right{};
    T bottom{};

    // Swaps left with right when right is less than left, and top with bottom likewise.
    constexpr void Normalize() {
        if (right < left) std::swap(left, right);
        if (bottom < top) std::swap(top, bottom);
    }

    // The rectangle is closed: all four sides belong to it. Expects a normalised rectangle.
    constexpr bool Contains(T x, T y) const { return left <= x && x <= right && top <= y && y <= bottom; }
    constexpr bool Contains(CTovPoint<T> const& point) const { return Contains(point.x, point.y); }

    friend constexpr bool operator==(CTovRect const&, CTovRect const&) = default;
};

template <typename T>
struct CTovSegment {
    CTovPoint<T> start;
    CTovPoint<T> end;

    friend constexpr bool operator==(CTovSegment const&, CTovSegment const&) = default;
};

// Pixels of windows and of the screen.
struct POINT {
    int x = 0;
    int y = 0;

    friend constexpr bool operator==(POINT const&, POINT const&) = default;
};

struct CPoint : POINT {
    constexpr CPoint() = default;
    constexpr CPoint(int left, int top) : POINT{left, top} {}
    constexpr CPoint(POINT const& point) : POINT(point) {}
};

struct CSize {
    int cx = 0;
    int cy = 0;

    friend constexpr bool operator==(CSize const&, CSize const&) = default;
};
using SIZE = CSize;

// The right and the bottom side do not belong to it.
struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    // Negative where the sides are exchanged; limited to the range of int.
    constexpr int Width() const { return Extent(left, right); }
    constexpr int Height() const { return Extent(top, bottom); }
    friend constexpr bool operator==(CRect const&, CRect const&) = default;

 private:
    static constexpr int Extent(int from, int to) {
        return static_cast<int>(
            std::clamp<std::int64_t>(std::int64_t{to} - from, -2147483647 - 1, 2147483647));
    }
};

// Device coordinate to pixel: to the nearest, a half to the even one (std::rint in the default rounding
// mode). Values outside the range of int, and NaN, are limited to it; NaN gives 0.
inline int TovRoundToPixel(double coordinate) {
    double const rounded = std::rint(coordinate);
    if (!(rounded >= -2147483648.0)) return std::isnan(rounded) ? 0 : -2147483647 - 1;
    return rounded >= 2147483647.0 ? 2147483647 : static_cast<int>(rounded);
}

inline CTovPoint<int> TovRoundToPixel(CTovPoint<double> const& point) {
    return {TovRoundToPixel(point.x), TovRoundToPixel(point.y)};
}

inline CTovRect<int> TovRoundToPixel(CTovRect<double> const& rect) {
    return {TovRoundToPixel(rect.left), TovRoundToPixel(rect.top), TovRoundToPixel(rect.right),
            TovRoundToPixel(rect.bottom)};
}

inline CTovSegment<int> TovRoundToPixel(CTovSegment<double> const& segment) {
    return {TovRoundToPixel(segment.start), TovRoundToPixel(segment.end)};
}

}  // namespace tov
