// Hooks on windows: code that sees every message of a window before the window does, and after it if it
// likes.
//
// The newest hook of a window runs first. A hook may do work before and after the rest, answer in its place,
// unhook itself or another, be deleted, or destroy the window, all in the middle of a message. Hooks belong
// to the user-interface thread.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/window.h>

#include <map>

namespace tov {

class TOV_CORE_API CTovSubclassWnd : public CObject {
    TOV_DYNCREATE(CTovSubclassWnd, CObject)
 public:
    CTovSubclassWnd() = default;
    CTovSubclassWnd(CTovSubclassWnd const&) = delete;
    CTovSubclassWnd& operator=(CTovSubclassWnd const&) = delete;
    ~CTovSubclassWnd() override;  // unhooks

    // Called when the window dies, once it has answered WM_DESTROY. Unhooks; an override may delete the hook.
    virtual void OnDestroyWindow();

    // Answers a message to the window. An override that does not answer it itself passes it on to this one,
    // which asks the next hook and at last the window. That holds also when the hook has left the window
    // meanwhile; a window that is dead by then answers 0.
    virtual LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam);

    // Puts the hook on the window, before all others. Answers 1, also when it is on this window already; 0
    // when it is on another one, when there is no such window, or off the user-interface thread.
    int HookWindow(HWND window);

    // Answers 1, or 0 when it is on no window.
    int UnhookWindow();

    // Says whether WindowProc does something more when a message that it passed on comes back; not at first.
    // A widget that is not the library's has dealt with the message by then only if one of its hooks says so;
    // otherwise that is left to the toolkit, which does it when all hooks are through.
    void SetRunsAfter(int runsAfter) { m_runsAfter = runsAfter; }
    static int HasHookThatRunsAfter(HWND window);

    int IsHooked() const { return m_window ? 1 : 0; }
    HWND GetHookedWindow() const { return m_window; }

    static int IsWindowHooked(HWND window);

    // The newest hook of every window that has one.
    static std::map<HWND, CTovSubclassWnd*> const& StaticMapHwndToSubclassWnd();

 protected:
    // Passes on the message that the window was sent last, as it was sent.
    LRESULT Default();

 private:
    friend class CWnd;
    friend class TovHookCall;

    HWND m_window;
    CTovSubclassWnd* m_next = nullptr;  // the hook that was the newest before
    int m_runsAfter = 0;
};

}  // namespace tov
