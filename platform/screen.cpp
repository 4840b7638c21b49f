#include "platform/screen.h"

#include "platform/keys_down.h"
#include "platform/window_registry.h"

#include <tov310/qt_values.h>
#include <tov310/tip.h>
#include <tov310/window_messages.h>
#include <tov310/wnd_tool_tip.h>

#include <QApplication>
#include <QFontMetrics>
#include <QPalette>
#include <QToolTip>

#include <atomic>
#include <utility>

namespace tov {
namespace {

// Cursors may be asked for by any thread; they are shown by the main one.
template <class Work>
void OnMainThread(Work work) {
    QMetaObject::invokeMethod(qApp, work, Qt::AutoConnection);
}

// What callers want last, in the order in which they ask; 0 for whatever the windows choose. It is read when
// the main thread comes to it, so that a change asked for by another thread does not undo a later one.
std::atomic<unsigned int> wantedCursor{0};
bool isCursorShown = false;  // of the main thread

Qt::CursorShape ShapeOf(unsigned int cursor) {
    return cursor == IDC_WAIT ? Qt::WaitCursor : Qt::ArrowCursor;
}

void ApplyCursor() {
    unsigned int const cursor = wantedCursor;
    bool const wasShown = std::exchange(isCursorShown, cursor != 0);
    if (cursor == 0) {
        if (wasShown) QApplication::restoreOverrideCursor();
    } else if (wasShown) {
        QApplication::changeOverrideCursor(ShapeOf(cursor));
    } else {
        QApplication::setOverrideCursor(ShapeOf(cursor));
    }
}

class ScreenTip final : public ITovTip {
 public:
    explicit ScreenTip(CWnd* window) { m_tip.CreatePopUpNA(window); }

    void Show(char const* text, CPoint const& place, CTovToolTipText::eAcross across,
              CTovToolTipText::eDown down) override {
        m_tip.ShowAt(QString::fromUtf8(text), TovQPoint(place), across, down);
    }
    void Hide() override { m_tip.Hide(); }

 private:
    CTovWndToolTip m_tip;
};

}  // namespace

std::unique_ptr<ITovTip> Screen::CreateTip(HWND window) {
    return std::make_unique<ScreenTip>(CWnd::FromHandlePermanent(window));
}

void Screen::SetCursor(unsigned int cursor) {
    wantedCursor = cursor;
    OnMainThread(ApplyCursor);
}

void Screen::RefreshCursor() {
    SetCursor(0);
}

HWND Screen::GetFocus() {
    CWnd const* const window = WindowRegistry::Instance().Nearest(QApplication::focusWidget());
    return window != nullptr ? window->GetSafeHwnd() : HWND{};
}

int Screen::IsKeyDown(int virtualKey) {
    Qt::KeyboardModifiers const down = QGuiApplication::queryKeyboardModifiers();
    switch (virtualKey) {
        case VK_SHIFT:
            return down.testFlag(Qt::ShiftModifier) || IsKeyNoted(virtualKey);
        case VK_CONTROL:
            return down.testFlag(Qt::ControlModifier) || IsKeyNoted(virtualKey);
        case VK_MENU:
            return down.testFlag(Qt::AltModifier) || IsKeyNoted(virtualKey);
        default:
            return IsKeyNoted(virtualKey);
    }
}

CSize Screen::GetTextExtent(HFONT font, char const* text) {
    QFontMetrics const metrics(TovQFont(font));
    return {metrics.horizontalAdvance(QString::fromUtf8(text != nullptr ? text : "")), metrics.height()};
}

HFONT Screen::GetDialogFont() {
    return TovFont(QApplication::font());
}

int Screen::SetTimer(HWND window, WPARAM id, unsigned milliseconds) {
    return m_timers.SetTimer(window, id, milliseconds);
}

int Screen::KillTimer(HWND window, WPARAM id) {
    return m_timers.KillTimer(window, id);
}

unsigned Screen::GetDoubleClickTime() {
    return static_cast<unsigned>(QApplication::doubleClickInterval());
}

std::uint32_t Screen::GetSysColor(int index) {
    QPalette const palette = QApplication::palette();
    switch (index) {
        case COLOR_WINDOW:
            return TovColorRef(palette.color(QPalette::Base));
        case COLOR_WINDOWFRAME:
            return TovColorRef(palette.color(QPalette::Shadow));
        case COLOR_WINDOWTEXT:
            return TovColorRef(palette.color(QPalette::Text));
        case COLOR_HIGHLIGHT:
            return TovColorRef(palette.color(QPalette::Highlight));
        case COLOR_HIGHLIGHTTEXT:
            return TovColorRef(palette.color(QPalette::HighlightedText));
        case COLOR_BTNFACE:
            return TovColorRef(palette.color(QPalette::Button));
        case COLOR_BTNSHADOW:
            return TovColorRef(palette.color(QPalette::Dark));
        case COLOR_GRAYTEXT:
            return TovColorRef(palette.color(QPalette::Disabled, QPalette::Text));
        case COLOR_BTNTEXT:
            return TovColorRef(palette.color(QPalette::ButtonText));
        case COLOR_BTNHIGHLIGHT:
            return TovColorRef(palette.color(QPalette::Light));
        case COLOR_INFOTEXT:
            return TovColorRef(QToolTip::palette().color(QPalette::ToolTipText));
        case COLOR_INFOBK:
            return TovColorRef(QToolTip::palette().color(QPalette::ToolTipBase));
        default:
            return 0;
    }
}

}  // namespace tov
