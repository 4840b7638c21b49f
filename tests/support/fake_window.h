// A desk of windows without a screen: they stand in one another, have the focus, and note what reaches them.
#pragma once

#include <tov310/messages.h>
#include <tov310/styles.h>
#include <tov310/system.h>
#include <tov310/window.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tov::test {

// What the windows of one test share; puts itself in the place of the screen.
struct FakeDesk : ITovSystem {
    FakeDesk() : m_before(TovSetSystem(this)) {}
    ~FakeDesk() override { TovSetSystem(m_before); }

    HWND GetFocus() override { return focus; }
    int IsKeyDown(int virtualKey) override { return keys.contains(virtualKey); }
    CSize GetTextExtent(HFONT, char const* text) override {
        return {static_cast<int>(std::string(text).size()) * 7, 13};
    }

    // As a screen does: who loses the focus is told first, then who has got it.
    void MoveFocus(HWND window) {
        if (window == focus) return;
        HWND const before = std::exchange(focus, window);
        TovSendMessage(before, WM_KILLFOCUS);
        if (focus == window) TovSendMessage(window, WM_SETFOCUS);
    }

    HWND focus;
    std::set<int> keys;

 private:
    ITovSystem* const m_before;
};

struct FakeFamily {
    HWND parent;
    std::vector<HWND> children;
};

template <class Base = CWnd>
class FakeWindowOf : public Base, public FakeFamily {
 public:
    template <class... Arguments>
    explicit FakeWindowOf(FakeDesk& desk, CWnd* around = nullptr, int id = 0, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...), m_desk(&desk) {
        EXPECT_EQ(this->Attach(), 1);
        this->SetDlgCtrlID(id);
        this->ModifyStyle(0, WS_VISIBLE);
        if (around == nullptr) return;
        parent = around->GetSafeHwnd();
        dynamic_cast<FakeFamily&>(*around).children.push_back(this->GetSafeHwnd());
    }
    ~FakeWindowOf() override {
        if (m_desk->focus == this->GetSafeHwnd()) m_desk->focus = {};
        if (auto* const family = dynamic_cast<FakeFamily*>(GetParent()))
            std::erase(family->children, this->GetSafeHwnd());
        this->Detach();  // nobody is to find it while its bases go
    }

    CWnd* GetParent() const override { return CWnd::FromHandlePermanent(parent); }
    std::vector<HWND> GetChildren() const override { return children; }
    CString GetClassName() const override { return className; }
    void SetFocus() override {
        if ((this->GetStyle() & WS_DISABLED) == 0) m_desk->MoveFocus(this->GetSafeHwnd());
    }
    void RedrawWindow(unsigned flags) override { redrawn = flags; }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        log.push_back(message);
        return message == WM_GETDLGCODE ? dialogCode : Base::WindowProc(message, wParam, lParam);
    }

    // How often the message came so far; forgets all.
    long Count(unsigned message) {
        long const count = std::count(log.begin(), log.end(), message);
        log.clear();
        return count;
    }

    std::vector<unsigned> log;
    CString className = "Static";
    LRESULT dialogCode = 0;
    unsigned redrawn = 0;

 protected:
    FakeDesk* m_desk;
};

using FakeWindow = FakeWindowOf<>;

// One that stands somewhere.
template <class Base>
struct Placed : Base {
    using Base::Base;
    CRect GetWindowRect() const override { return rect; }
    void MoveWindow(CRect const& to) override { rect = to; }
    CRect rect;
};

}  // namespace tov::test
