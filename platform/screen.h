// What the library asks of the screen, answered by the toolkit.
#pragma once

#include <tov310/system.h>

namespace tov {

class ScreenTimers {
 public:
    virtual int SetTimer(HWND window, WPARAM id, unsigned milliseconds) = 0;
    virtual int KillTimer(HWND window, WPARAM id) = 0;

 protected:
    ~ScreenTimers() = default;
};

class Screen final : public ITovSystem {
 public:
    explicit Screen(ScreenTimers& timers) : m_timers(timers) {}
    ~Screen() override = default;

    void SetCursor(unsigned int cursor) override;
    void RefreshCursor() override;
    HWND GetFocus() override;
    int IsKeyDown(int virtualKey) override;
    CSize GetTextExtent(HFONT font, char const* text) override;
    HFONT GetDialogFont() override;
    int SetTimer(HWND window, WPARAM id, unsigned milliseconds) override;
    int KillTimer(HWND window, WPARAM id) override;
    unsigned GetDoubleClickTime() override;
    HBITMAP GetPicture(HWND window) override;
    std::uint32_t GetSysColor(int index) override;
    std::unique_ptr<CDC> CreateMemoryDC(HWND window, CSize const& size) override;
    std::unique_ptr<CDC> CreatePaintDC(HWND window, CRect* part) override;
    std::unique_ptr<ITovTip> CreateTip(HWND window) override;

 private:
    ScreenTimers& m_timers;
};

}  // namespace tov
