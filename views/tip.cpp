#include <tov310/tip.h>

#include <tov310/system.h>
#include <tov310/window.h>

namespace tov {

ITovTip::~ITovTip() = default;

void CTovTip::Create(CWnd const& window) {
    HWND const handle = window.GetSafeHwnd();
    if (!handle || handle == m_window) return;
    m_isShown = 0;
    m_window = handle;
    m_tip.reset();
}

void CTovTip::Show(char const* text, int x, int y, unsigned milliseconds, CTovToolTipText::eAcross across,
                   CTovToolTipText::eDown down) {
    CWnd* const window = CWnd::FromHandlePermanent(m_window);
    if (window == nullptr) return;
    if (m_tip == nullptr) m_tip = TovGetSystem()->CreateTip(m_window);
    if (m_tip == nullptr) return;
    m_tip->Show(text, {x, y}, across, down);
    m_isShown = 1;
    window->SetTimer(timer, milliseconds);
}

void CTovTip::Hide() {
    if (m_isShown == 0) return;
    m_isShown = 0;
    if (CWnd* const window = CWnd::FromHandlePermanent(m_window)) window->KillTimer(timer);
    m_tip->Hide();
}

int CTovTip::OnTimer(WPARAM id) {
    if (id != timer) return 0;
    Hide();
    return 1;
}

void CTovTipExtensions::ShowToolTipLeftTop(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eLeft, CTovToolTipText::eTop);
}

void CTovTipExtensions::ShowToolTipLeftCentered(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eLeft, CTovToolTipText::eMiddle);
}

void CTovTipExtensions::ShowToolTipLeftBottom(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eLeft, CTovToolTipText::eBottom);
}

void CTovTipExtensions::ShowToolTipCenteredTop(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eCentered, CTovToolTipText::eTop);
}

void CTovTipExtensions::ShowToolTipCenteredCentered(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eCentered, CTovToolTipText::eMiddle);
}

void CTovTipExtensions::ShowToolTipCenteredBottom(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eCentered, CTovToolTipText::eBottom);
}

void CTovTipExtensions::ShowToolTipRightTop(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eRight, CTovToolTipText::eTop);
}

void CTovTipExtensions::ShowToolTipRightCentered(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eRight, CTovToolTipText::eMiddle);
}

void CTovTipExtensions::ShowToolTipRightBottom(char const* text, int x, int y, unsigned milliseconds) {
    m_tip.Show(text, x, y, milliseconds, CTovToolTipText::eRight, CTovToolTipText::eBottom);
}

}  // namespace tov
