#include <tov310/tool_tip_text.h>

#include <algorithm>

namespace tov {
namespace {

constexpr int roomAround = 6;  // for the frame and a little air, both sides together

}  // namespace

void CTovToolTipText::Update(char const* text, Measure const& measure) {
    CString const given = text != nullptr ? text : "";
    if (given == m_text) return;
    m_text = given;
    m_displayText.clear();
    m_size = {};
    if (given.empty()) return;
    m_displayText.assign(1, ' ').append(given).append(1, ' ');
    for (char& c : m_displayText) {
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    }
    CSize const extent = measure(m_displayText);
    m_size = {extent.cx + roomAround, extent.cy + roomAround};
}

CRect CTovToolTipText::RectangleAt(int x, int y, eAcross across, eDown down) const {
    int const left = across == eLeft ? x : across == eRight ? x - m_size.cx : x - m_size.cx / 2;
    int const top = down == eTop ? y : down == eBottom ? y - m_size.cy : y - m_size.cy / 2;
    return {left, top, left + m_size.cx, top + m_size.cy};
}

CRect CTovToolTipText::KeptInside(CRect const& rect, CRect const& screen) {
    if (screen.right <= screen.left || screen.bottom <= screen.top) return rect;
    int const width = std::min(rect.right - rect.left, screen.right - screen.left);
    int const height = std::min(rect.bottom - rect.top, screen.bottom - screen.top);
    int const left = std::clamp(rect.left, screen.left, screen.right - width);
    int const top = std::clamp(rect.top, screen.top, screen.bottom - height);
    return {left, top, left + width, top + height};
}

int CTovToolTipText::Show(CRect const& rect) {
    if (m_isShown != 0 && rect == m_shownRect && m_displayText == m_shownText) return 0;
    m_isShown = 1;
    m_shownRect = rect;
    m_shownText = m_displayText;
    return 1;
}

void CTovToolTipText::Hide() {
    *this = {};
}

}  // namespace tov
