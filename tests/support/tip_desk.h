// A desk that notes the tips and timers of its windows.
#pragma once

#include "support/fake_window.h"

#include <tov310/tip.h>

#include <map>
#include <memory>

namespace tov::test {

struct TipDesk : FakeDesk {
    struct Tip final : ITovTip {
        explicit Tip(TipDesk& desk) : m_desk(desk) {}
        void Show(char const* words, CPoint const& corner, CTovToolTipText::eAcross across,
                  CTovToolTipText::eDown down) override {
            EXPECT_TRUE(across == CTovToolTipText::eLeft && down == CTovToolTipText::eTop);
            m_desk.tip = words;
            m_desk.place = corner;
        }
        void Hide() override { m_desk.tip.clear(); }
        TipDesk& m_desk;
    };
    std::unique_ptr<ITovTip> CreateTip(HWND) override { return std::make_unique<Tip>(*this); }
    int SetTimer(HWND, WPARAM id, unsigned milliseconds) override {
        timers[id] = milliseconds;
        return 1;
    }
    int KillTimer(HWND, WPARAM id) override { return static_cast<int>(timers.erase(id)); }
    unsigned GetDoubleClickTime() override { return 400; }

    CString tip;
    CPoint place;
    std::map<WPARAM, unsigned> timers;
};

}  // namespace tov::test
