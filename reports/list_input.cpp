#include <tov310/list_input.h>

#include <tov310/window_messages.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <utility>

namespace tov {
namespace {

constexpr int columnStep = 10;
constexpr int bandInset = 2;  // of a row of a report: its border does not count

constexpr int Saturated(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

}  // namespace

ITovListActions::~ITovListActions() = default;

// Pages end where the next column begins.
unsigned int CTovListInput::Target(unsigned int from, int key) const {
    unsigned int const count = m_layout.GetItemCount();
    if (key == VK_HOME) return 0;
    if (key == VK_END) return count - 1;
    if (from >= count) return 0;
    auto const next = [&](eTovListWay way) {
        unsigned int const item = m_layout.GetNextItem(from, way);
        return item == tovNoIndex ? from : item;
    };
    switch (key) {
        case VK_UP:
            return next(eListWayUp);
        case VK_DOWN:
            return next(eListWayDown);
        case VK_LEFT:
            return next(eListWayLeft);
        case VK_RIGHT:
            return next(eListWayRight);
        default:
            break;
    }
    unsigned int target = from;
    for (unsigned int step = 1; step < m_layout.GetCountPerPage(); ++step) {
        unsigned int const item = m_layout.GetNextItem(target, key == VK_PRIOR ? eListWayUp : eListWayDown);
        if (item == tovNoIndex || !m_layout.IsSameColumn(item, from)) break;
        target = item;
    }
    return target;
}

int CTovListInput::HandleNavigation(int key, TOV_LISTKEYS keys) {
    static_assert(VK_PRIOR < VK_DOWN && VK_DOWN - VK_PRIOR == 7);
    if (key < VK_PRIOR || key > VK_DOWN) return 0;
    if (m_layout.GetItemCount() == 0) return 1;
    unsigned int const focused = m_actions->GetFocusedItem();
    unsigned int const target = Target(focused, key);
    m_actions->FocusItem(target, 1);
    if (keys.shift && multilineSelection != 0) {
        if (m_actions->GetSelectionAnchor() >= m_layout.GetItemCount())
            m_actions->SetSelectionAnchor(focused < m_layout.GetItemCount() ? focused : target);
        m_actions->SetItemSelection(m_actions->GetSelectionAnchor(), target, 1);
    } else if (!keys.ctrl) {
        m_actions->SetItemSelection(target, 1);
        m_actions->SetSelectionAnchor(target);
    }
    return 1;
}

void CTovListInput::TurnCheck(unsigned int item) {
    int const check = m_actions->GetItemChecked(item) == 0;
    if (m_actions->GetItemSelected(item) != 0)
        m_actions->CheckSelectedItems(check, 1);
    else if (m_actions->GetItemDisabled(item) == 0)
        m_actions->CheckItem(item, check, 1);
}

int CTovListInput::HandleSpace(TOV_LISTKEYS keys) {
    unsigned int const focused = m_actions->GetFocusedItem();
    if (focused >= m_layout.GetItemCount()) return 1;
    if (keys.ctrl) {
        bool const select = m_actions->GetItemSelected(focused) == 0;
        if (select && multilineSelection == 0)
            m_actions->SetItemSelection(focused, 1);
        else
            m_actions->SelectItem(focused, select, 1, 0);
        m_actions->SetSelectionAnchor(focused);
    } else if (m_actions->ShowCheckboxes() != 0) {
        TurnCheck(focused);
    } else if (m_actions->GetItemSelected(focused) == 0) {
        m_actions->SetItemSelection(focused, 1);
        m_actions->SetSelectionAnchor(focused);
    }
    return 1;
}

CSize CTovListInput::GetScrollStep(int key, int rowHeight, int clientHeight) {
    int const page = std::max(Saturated(std::int64_t{clientHeight} - 2 * std::int64_t{rowHeight}), rowHeight);
    switch (key) {
        case VK_LEFT:
            return {-columnStep, 0};
        case VK_RIGHT:
            return {columnStep, 0};
        case VK_UP:
            return {0, -rowHeight};
        case VK_DOWN:
            return {0, rowHeight};
        case VK_PRIOR:
            return {0, -page};
        case VK_NEXT:
            return {0, page};
        case VK_HOME:
            return {0, std::numeric_limits<int>::min()};
        case VK_END:
            return {0, std::numeric_limits<int>::max()};
        default:
            return {};
    }
}

eTovListPress CTovListInput::OnLButtonDown(TOV_LISTHIT hit, TOV_LISTKEYS keys) {
    bool const isOther = m_layout.GetStyle() == LVS_REPORT && fullRowSelect == 0 && hit.col != 0;
    if (hit.item >= m_layout.GetItemCount() || isOther) {
        if (multilineSelection != 0) return eListPressBand;
        OnBackgroundClick();
        return eListPressDone;
    }
    unsigned int const item = hit.item;
    if (hit.flags == LVHT_ONITEMSTATEICON && m_actions->ShowCheckboxes() != 0) {
        TurnCheck(item);
        return eListPressDone;
    }
    unsigned int const focused = m_actions->GetFocusedItem();
    if (multilineSelection != 0 && keys.ctrl) {
        m_actions->SelectItem(item, m_actions->GetItemSelected(item) == 0, 1, 0);
        m_actions->FocusItem(item, 1);
    } else if (multilineSelection != 0 && keys.shift && focused < m_layout.GetItemCount()) {
        m_actions->SetItemSelection(focused, item, 1);
        m_actions->FocusItem(item, 1);
        m_actions->SetSelectionAnchor(focused);
    } else if (m_actions->GetItemSelected(item) != 0) {
        m_actions->FocusItem(item, 1);
    } else {
        m_actions->SetItemSelection(item, 1);
        m_actions->FocusItem(item, 1);
        m_actions->SetSelectionAnchor(item);
    }
    return eListPressRow;
}

void CTovListInput::OnBackgroundClick() {
    m_actions->SelectAllItems(0, 1, 1);
}

void CTovListBand::Begin(CPoint const& point, TOV_LISTKEYS keys) {
    m_keys = keys;
    m_anchor = m_end = m_layout.ToContent(point);
    m_marked.clear();
    m_isActive = true;
    m_isDragged = false;
}

void CTovListBand::End() {
    m_isActive = false;
    m_marked.clear();
}

CTovRect<std::int64_t> CTovListBand::Covered() const {
    CTovRect<std::int64_t> covered{m_anchor.x, m_anchor.y, m_end.x, m_end.y};
    covered.Normalize();
    return covered;
}

CRect CTovListBand::GetRect() const {
    if (!m_isActive || !m_isDragged) return {};
    CRect const rect = m_layout.FromContent(Covered());
    CSize const area = m_layout.GetArea();
    return {std::max(rect.left, 0), std::max(rect.top, 0), std::min(rect.right, area.cx),
            std::min(rect.bottom, area.cy)};
}

void CTovListBand::Track(CPoint const& point, int threshold) {
    if (!m_isActive) return;
    CSize const area = m_layout.GetArea();
    auto const end = m_layout.ToContent({std::clamp(point.x, 0, area.cx), std::clamp(point.y, 0, area.cy)});
    if (!m_isDragged) {
        if (end == m_anchor || std::abs(end.x - m_anchor.x) + std::abs(end.y - m_anchor.y) < threshold)
            return;
        m_isDragged = true;
        if (!m_keys.shift && !m_keys.ctrl) m_actions.SelectAllItems(0, 1, 1);
    }
    m_end = end;
    if (m_layout.GetStyle() == LVS_ICON) return;
    int const inset = m_layout.GetStyle() == LVS_REPORT ? bandInset : 0;
    std::vector<unsigned int> covered = m_layout.GetItemsIn(Covered(), inset);
    std::sort(covered.begin(), covered.end());
    std::vector<unsigned int> left;
    std::vector<unsigned int> entered;
    std::set_difference(m_marked.begin(), m_marked.end(), covered.begin(), covered.end(),
                        std::back_inserter(left));
    std::set_difference(covered.begin(), covered.end(), m_marked.begin(), m_marked.end(),
                        std::back_inserter(entered));
    m_marked = std::move(covered);
    for (unsigned int const item : left)
        m_actions.SelectItem(item, 0, 1, 0);
    for (unsigned int const item : entered)
        m_actions.SelectItem(item, 1, 1, 0);
}

CSize CTovListBand::GetScrollLines(CPoint const& point) const {
    CSize const area = m_layout.GetArea();
    auto const lines = [](int at, int size, CTovListLayout::Bar const& bar) {
        if (at < 0 && bar.position > 0) return -1;
        return at >= size && bar.position < bar.most ? 1 : 0;
    };
    return {lines(point.x, area.cx, m_layout.GetBar(false)), lines(point.y, area.cy, m_layout.GetBar(true))};
}

}  // namespace tov
