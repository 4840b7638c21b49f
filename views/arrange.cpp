#include <tov310/arrange.h>

#include <tov310/system.h>
#include <tov310/window.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tov {
namespace {

// In 32 bits, which a percentage times a size may leave; then the low ones count.
int Wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

int MovedEdge(int edge, std::int64_t percent, std::int64_t growth) {
    auto const product = static_cast<std::uint64_t>(percent) * static_cast<std::uint64_t>(growth);
    double const share = std::trunc(Wrapped(static_cast<std::int64_t>(product)) / 100.0);
    return Wrapped(std::int64_t{edge} + static_cast<std::int64_t>(share));
}

int ScaledLength(int length, double from, double to) {
    return from == to ? length : TovRoundToPixel(length / from * to);
}

}  // namespace

void CTovArrangement::Add(int moveX, int sizeX, int moveY, int sizeY, unsigned id, CRect const& rect) {
    if (!m_hasFirst) m_firstUnits = m_units;
    m_hasFirst = true;
    m_items.push_back(
        {{moveX, sizeX, moveY, sizeY, id, rect.left, rect.top, rect.right, rect.bottom}, m_units});
}

void CTovArrangement::Add(int flags, unsigned id, CRect const& rect) {
    auto const share = [flags](int bit, int unless) {
        return (flags & bit) != 0 && (flags & unless) == 0 ? 100 : 0;
    };
    Add(share(ARRANGE_MOVE_X, ARRANGE_SIZE_X), share(ARRANGE_SIZE_X, 0),
        share(ARRANGE_MOVE_Y, ARRANGE_SIZE_Y), share(ARRANGE_SIZE_Y, 0), id, rect);
}

void CTovArrangement::Remove(unsigned id) {
    auto const found = std::ranges::find(m_items, id, [](Registered const& r) { return r.item.id; });
    if (found != m_items.end()) m_items.erase(found);
}

CRect CTovArrangement::Place(ARRANGE_ITEM const& item, int dx, int dy) {
    return {MovedEdge(item.left, item.MoveXPercent, dx), MovedEdge(item.top, item.MoveYPercent, dy),
            MovedEdge(item.right, std::int64_t{item.MoveXPercent} + item.SizeXPercent, dx),
            MovedEdge(item.bottom, std::int64_t{item.MoveYPercent} + item.SizeYPercent, dy)};
}

void CTovArrangement::SetUnits(double x, double y) {
    if (x > 0 && y > 0) m_units = {x, y};
}

void CTovArrangement::TakeUnits(CWnd const& window) {
    constexpr char const* letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    CSize const extent = TovGetSystem()->GetTextExtent(window.GetFont(), letters);
    SetUnits(extent.cx / (4.0 * 52), extent.cy / 8.0);
}

CSize CTovArrangement::Scaled(CSize size, Units const& from, Units const& to) {
    return {ScaledLength(size.cx, from.x, to.x), ScaledLength(size.cy, from.y, to.y)};
}

CSize CTovArrangement::Growth(CSize current, CSize original, CSize minimum) {
    m_original = original;
    m_minimum = minimum;
    m_hasSizes = true;
    CSize const first = m_hasFirst ? Scaled(original, m_firstUnits, m_units) : original;
    CSize const least = m_hasFirst ? Scaled(minimum, m_firstUnits, m_units) : minimum;
    return {Wrapped(std::int64_t{std::max(current.cx, least.cx)} - first.cx),
            Wrapped(std::int64_t{std::max(current.cy, least.cy)} - first.cy)};
}

std::vector<ARRANGE_ITEM> CTovArrangement::Carried() const {
    std::vector<ARRANGE_ITEM> items;
    items.reserve(m_items.size());
    for (Registered const& registered : m_items) {
        ARRANGE_ITEM item = registered.item;
        CSize const corner = Scaled({item.left, item.top}, registered.units, m_units);
        CSize const opposite = Scaled({item.right, item.bottom}, registered.units, m_units);
        item.left = corner.cx;
        item.top = corner.cy;
        item.right = opposite.cx;
        item.bottom = opposite.cy;
        items.push_back(item);
    }
    return items;
}

CRect TovRectWithin(CWnd const& window, CWnd const& around) {
    CRect const rect = window.GetWindowRect();
    CPoint const corner = around.ScreenToClient({rect.left, rect.top});
    return {corner.x, corner.y, corner.x + rect.Width(), corner.y + rect.Height()};
}

}  // namespace tov
