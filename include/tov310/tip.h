// The small text that a view or a dialog shows at a place for a time, without a toolkit.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/tool_tip_text.h>
#include <tov310/types.h>

#include <memory>

namespace tov {

class CWnd;

// A tool tip of the screen. The layer of the toolkit makes it (ITovSystem::CreateTip).
class TOV_CORE_API ITovTip {
 public:
    ITovTip() = default;
    ITovTip(ITovTip const&) = delete;
    ITovTip& operator=(ITovTip const&) = delete;
    virtual ~ITovTip();

    // Shows the text so that the point of the screen, in pixels, lies at that place in it; a text that was up
    // before goes.
    virtual void Show(char const* text, CPoint const& place, CTovToolTipText::eAcross across,
                      CTovToolTipText::eDown down) = 0;
    virtual void Hide() = 0;
};

// The tip of one window. It hides when its time is over; the window tells it of its timers:
//
//   if (message == WM_TIMER && m_tip.OnTimer(wParam) != 0) return 0;
class TOV_CORE_API CTovTip {
 public:
    static constexpr WPARAM timer = 1;  // its id

    // It is above this window from now on; to be called in each of the window's lives. The tip itself is made
    // when there is something to show. Without a screen there is none.
    void Create(CWnd const& window);

    // The same text at the same place stays up for the new time.
    void Show(char const* text, int x, int y, unsigned milliseconds, CTovToolTipText::eAcross across,
              CTovToolTipText::eDown down);
    void Hide();
    int OnTimer(WPARAM id);  // 1: it was the tip's
    int IsShown() const { return m_isShown; }

 private:
    std::unique_ptr<ITovTip> m_tip;
    HWND m_window;
    int m_isShown = 0;
};

// What the mix-ins of views and dialogs offer their hosts of it. The first word of a name says where in the
// tip the point of the screen (pixels) lies across, the second where down. It hides after so many
// milliseconds.
class TOV_CORE_API CTovTipExtensions {
 protected:
    void ShowToolTipLeftTop(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipLeftCentered(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipLeftBottom(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipCenteredTop(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipCenteredCentered(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipCenteredBottom(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipRightTop(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipRightCentered(char const* text, int x, int y, unsigned milliseconds);
    void ShowToolTipRightBottom(char const* text, int x, int y, unsigned milliseconds);
    void HideTooltip() { m_tip.Hide(); }

    // As CTovTip has them.
    void CreateTip(CWnd const& window) { m_tip.Create(window); }
    int OnTipTimer(WPARAM id) { return m_tip.OnTimer(id); }

 private:
    CTovTip m_tip;
};

}  // namespace tov
