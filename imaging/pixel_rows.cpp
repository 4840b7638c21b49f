#include "imaging/pixel_rows.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace tov {

namespace {

// Whether a destination reaches into pixels of its source other than those in their place.
bool Overlaps(PixelRows const& rows) {
    auto const end = [&rows](std::uint32_t const* first, std::ptrdiff_t pitch) {
        return first + (rows.height - 1) * pitch + rows.width;
    };
    std::less<std::uint32_t const*> const before;
    return rows.dst != rows.src && before(rows.dst, end(rows.src, rows.srcPitch)) &&
           before(rows.src, end(rows.dst, rows.dstPitch));
}

// Does a row's work for all rows: from the last to the first where the destination lies behind the source in
// the same image. `inRow` tells that the two lie in the same row.
template <class Work>
void EachRow(PixelRows rows, Work const& work) {
    bool const overlaps = Overlaps(rows);
    auto count = static_cast<std::size_t>(rows.width);
    if (!overlaps && rows.dstPitch == rows.width && rows.srcPitch == rows.width) {
        work(rows.dst, rows.src, count * static_cast<std::size_t>(rows.height), false);
        return;
    }
    bool const inRow = overlaps && std::abs(rows.dst - rows.src) < rows.width;
    if (overlaps && rows.dst > rows.src) {
        rows.dst += (rows.height - 1) * rows.dstPitch;
        rows.src += (rows.height - 1) * rows.srcPitch;
        rows.dstPitch = -rows.dstPitch;
        rows.srcPitch = -rows.srcPitch;
    }
    for (int row = 0; row < rows.height; ++row)
        work(rows.dst + row * rows.dstPitch, rows.src + row * rows.srcPitch, count, inRow);
}

// Composes pixels with others of their row, piece by piece from the end that is written first.
void ComposeInRow(PixelLoops::Compose compose, std::uint32_t* d, std::uint32_t const* s, std::size_t count,
                  PixelArguments const& arguments) {
    std::uint32_t kept[512];
    for (std::size_t done = 0; done < count;) {
        std::size_t const piece = std::min(count - done, std::size(kept));
        std::size_t const at = d > s ? count - done - piece : done;
        std::copy_n(s + at, piece, kept);
        compose(d + at, kept, piece, arguments);
        done += piece;
    }
}

}  // namespace

void CopyRows(PixelRows const& rows) {
    EachRow(rows, [](std::uint32_t* d, std::uint32_t const* s, std::size_t count, bool) {
        std::memmove(d, s, count * sizeof *d);
    });
}

void ComposeRows(PixelRows const& rows, PixelOperation operation, PixelArguments const& arguments) {
    PixelLoops::Compose const compose = FastPixelLoops().Moving(operation);
    EachRow(rows, [&](std::uint32_t* d, std::uint32_t const* s, std::size_t count, bool inRow) {
        if (inRow) {
            ComposeInRow(compose, d, s, count, arguments);
        } else {
            compose(d, s, count, arguments);
        }
    });
}

void ComposeRows(PixelRows const& rows, PixelOperation operation, PixelArguments const& arguments,
                 std::uint32_t pixel) {
    PixelLoops::Compose const compose = FastPixelLoops().Still(operation);
    PixelRows own = rows;
    own.src = own.dst;
    own.srcPitch = own.dstPitch;
    EachRow(own, [&](std::uint32_t* d, std::uint32_t const*, std::size_t count, bool) {
        compose(d, &pixel, count, arguments);
    });
}

namespace {

// What the walk found in one row of the band: `index` belongs to its first column.
struct WalkedRow {
    std::uint32_t const* index;
    std::size_t pitch;
    std::size_t before;
    std::size_t inside;
    std::size_t columns;
};

void Gather(std::uint32_t* to, std::uint32_t const* from, WalkedRow const& row) {
    for (std::size_t i = 0; i < row.inside; ++i)
        to[i] = from[row.index[(row.before + i) * row.pitch]];
}

void StretchRow(std::uint32_t* to, std::uint32_t const* from, WalkedRow const& row, PixelStretch const& how,
                PixelLoops const& loops) {
    std::uint32_t* const first = to + row.before;
    if (how.compose) {
        std::uint32_t gathered[PixelBand::mostColumns];
        Gather(gathered, from, row);
        loops.Moving(how.operation)(first, gathered, row.inside, how.arguments);
    } else {
        Gather(first, from, row);
    }
    if (how.fill) {
        std::fill(to, first, how.outside);
        std::fill(first + row.inside, to + row.columns, how.outside);
    }
}

}  // namespace

void StretchPixels(CTovPixels& to, CTovPixels const& from, PixelWalk const& first, PixelStretch const& how,
                   PixelLoops const& loops) {
    PixelWalk walk = first;
    PixelBand band;
    int const rows = static_cast<int>(loops.rows);
    auto const width = static_cast<std::size_t>(to.GetWidth());
    for (int y = 0; y < to.GetHeight(); y += rows) {
        for (std::size_t lane = 0; lane < loops.rows; ++lane) {
            band.u[lane] = walk.u;
            band.v[lane] = walk.v;
            walk.u -= walk.dv;
            walk.v += walk.du;
        }
        int const count = std::min(rows, to.GetHeight() - y);
        for (std::size_t x = 0; x < width; x += PixelBand::mostColumns) {
            std::size_t const columns = std::min(width - x, PixelBand::mostColumns);
            loops.walk(band, walk, columns);
            for (int lane = 0; lane < count; ++lane) {
                WalkedRow const row{band.index + lane, loops.rows,
                                    static_cast<std::size_t>(band.before[lane]),
                                    static_cast<std::size_t>(band.inside[lane]), columns};
                StretchRow(to.GetRow(y + lane) + x, from.GetBits(), row, how, loops);
            }
        }
    }
}

}  // namespace tov
