// Sheets of pages without a screen: who is asked before which page is shown, and what the buttons do.
#include "support/fake_window.h"

#include <tov310/sheet_extensions.h>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <random>

namespace tov {
namespace {

using test::FakeDesk;
using test::FakeWindow;
using test::FakeWindowOf;

struct Notes {
    std::string text;
    std::function<void()> inBetween;  // what else the host does while it is asked

    void Add(std::string const& note) {
        if (!text.empty()) text.push_back(' ');
        text.append(note);
        if (inBetween) inBetween();
    }
    std::string Take() { return std::exchange(text, {}); }
};

struct FakePage : FakeWindowOf<CPropertyPage>, CTovOkHost {
    FakePage(FakeDesk& desk, Notes& notes, int number)
        : FakeWindowOf(desk, nullptr, 100 + number), m_notes(notes), name(std::to_string(number)) {}
    ~FakePage() override { LeaveSheet(); }

    int OnSetActive() override {
        bool const answer = isOpen = hasAgreed = maySet;
        m_notes.Add("set" + name);
        return answer;
    }
    int OnKillActive() override {
        bool const answer = mayKill;
        if (answer) isOpen = false;
        m_notes.Add("kill" + name);
        return answer;
    }
    int OnApply() override {
        if (asLibrary) return CTovSheetExtensions::ApplyPage(*this);
        bool const answer = mayApply;
        m_notes.Add("apply" + name);
        return answer;
    }
    void OnOK() override {
        CPropertyPage::OnOK();
        m_notes.Add("ok" + name);
    }
    int OnQueryCancel() override { return mayCancel; }
    void OnCancel() override { m_notes.Add("cancel" + name); }
    int OnWizardNext() override { return nextPage; }
    int OnWizardFinish() override { return mayApply; }
    int EnableOkButton() override { return 1; }
    int OnEnableOkButton(int quiet) override {
        if (quiet == 0) m_notes.Add("ask" + name);
        return mayPressOk;
    }

    Notes& m_notes;
    std::string const name;
    bool isOpen = false;    // was turned to last, and not left
    bool hasAgreed = true;  // to that
    bool maySet = true;
    bool mayKill = true;
    bool mayApply = true;
    bool mayCancel = true;
    bool mayPressOk = true;
    bool asLibrary = false;
    int nextPage = 0;
};

struct FakeSheet : FakeWindowOf<CTovSheetOf<CPropertySheet>> {
    FakeSheet(FakeDesk& desk, Notes& notes) : FakeWindowOf(desk), m_notes(notes) {}
    void ShowPage(int index) override { shown = GetPage(index); }
    void PlaceButton(int id, int place) override { places[id] = place; }
    void ShowWizardButtons(unsigned long buttons) override { wizardButtons = buttons; }
    void EndDialog(int result) override { ended = result; }
    void OnOkButtonClicked() override { m_notes.Add("OK"); }
    void OnApplyButtonClicked() override { m_notes.Add("Apply"); }
    FakePage* Page(int index) const { return dynamic_cast<FakePage*>(GetPage(index)); }

    Notes& m_notes;
    CPropertyPage const* shown = nullptr;
    unsigned long wizardButtons = 0;
    std::map<int, int> places;
    int ended = 0;
};

// A sheet with so many pages, and its buttons.
struct Desk : FakeDesk {
    explicit Desk(int count, bool isWizard = false) {
        if (isWizard) sheet->SetWizardMode();
        for (int const id : {IDOK, IDCANCEL, ID_APPLY_NOW})
            buttons.push_back(std::make_unique<FakeWindow>(*this, sheet.get(), id));
        for (int i = 0; i < count; ++i)
            Add();
    }
    void Add() {
        int const number = static_cast<int>(pages.size());
        pages.push_back(std::make_unique<FakePage>(*this, notes, number));
        sheet->AddPage(pages.back().get());
    }
    void Begin() {
        sheet->InitDialog();
        notes.Take();
    }
    LRESULT Press(int id) const {
        return TovSendMessage(sheet->GetSafeHwnd(), WM_COMMAND, static_cast<WPARAM>(id));
    }
    bool IsEnabled(std::size_t button) const { return (buttons[button]->GetStyle() & WS_DISABLED) == 0; }

    Notes notes;
    std::unique_ptr<FakeSheet> sheet = std::make_unique<FakeSheet>(*this, notes);
    std::vector<std::unique_ptr<FakeWindow>> buttons;
    std::vector<std::unique_ptr<FakePage>> pages;
};

// What happens, in one or two letters: p2 turns to page 2, r0 takes it out, d0 deletes it; S1, K1, A1 and C1
// have page 1 refuse to be shown, left, applied and cancelled; h lets the sheet run Apply, x takes OK away;
// o, a and c press OK, Apply and Cancel.
void Do(Desk& desk, std::string const& script) {
    for (std::size_t i = 0; i < script.size() && desk.sheet != nullptr; ++i) {
        char const letter = script[i];
        int const number = i + 1 < script.size() ? script[i + 1] - '0' : 0;
        FakePage* const page = desk.sheet->Page(number);
        if (letter == 'p') desk.sheet->SetActivePage(number);
        if (letter == 'r') desk.sheet->RemovePage(number);
        if (letter == 'd' && number < static_cast<int>(desk.pages.size()))
            desk.pages[static_cast<std::size_t>(number)].reset();
        if (letter == 'S') page->maySet = false;
        if (letter == 'K') page->mayKill = false;
        if (letter == 'A') page->mayApply = false;
        if (letter == 'C') page->mayCancel = false;
        if (letter == 'h') desk.sheet->HandleApplyButton(1);
        if (letter == 'x') desk.sheet->RemoveOKButton(1);
        if (letter == 'o') desk.Press(IDOK);
        if (letter == 'a') desk.Press(ID_APPLY_NOW);
        if (letter == 'c') desk.Press(IDCANCEL);
    }
}

TEST(PropertySheet, AsksInOrder) {
    struct Case {
        char const* script;
        char const* notes;
        int active;
        int end = 0;
    } const cases[] = {
        {"p2p2", "kill0 set2", 2},
        {"o", "OK kill0 apply0 apply1 apply2", 0, IDOK},
        {"a", "kill0 apply0 apply1 apply2 set0", 0},
        {"c", "cancel0 cancel1 cancel2", 0, IDCANCEL},
        {"K0p1o", "kill0 OK kill0", 0},
        {"S1p1", "kill0 set1 set2", 2},
        {"S1S2p1", "kill0 set1 set2 set0", 0},
        {"A1o", "OK kill0 apply0 apply1 set1", 1},
        {"C0c", "", 0},
        {"r0", "kill0 set1", 0},
        {"p2d2", "kill0 set2 set1", 1},
        {"hp1a", "kill0 set1 Apply apply1 apply0 apply2", 1},
        {"xo", "OK kill0 apply0 apply1 apply2 set0", 0},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.script);
        Desk desk(3);
        desk.Begin();
        Do(desk, c.script);
        EXPECT_EQ(desk.notes.Take(), c.notes);
        EXPECT_EQ(desk.sheet->ended, c.end);
        EXPECT_EQ(desk.sheet->GetActiveIndex(), c.active);
        EXPECT_EQ(desk.sheet->shown, desk.sheet->GetActivePage());
    }
    Desk desk(3);
    desk.sheet->SetActivePage(1);
    desk.sheet->InitDialog();
    EXPECT_EQ(desk.notes.Take(), "set1 kill1 set0 kill0 set1 kill1 set2 kill2 set1");
}

TEST(PropertySheet, LeadsThroughAWizard) {
    Desk desk(4, true);
    desk.sheet->SetActivePage(1);  // to begin with
    desk.Begin();
    EXPECT_EQ(desk.Press(ID_APPLY_NOW), 0);
    desk.Press(ID_WIZBACK);
    desk.Press(ID_WIZNEXT);
    EXPECT_EQ(desk.notes.Take(), "kill1 set0 kill0 set1");
    desk.pages[1]->nextPage = -1;
    desk.Press(IDOK);  // Enter
    desk.pages[1]->nextPage = 103;
    desk.Press(IDOK);
    EXPECT_EQ(desk.notes.Take(), "OK OK kill1 set3");
    struct Case {
        unsigned long flags;
        bool mayPressOk;
        unsigned long shown;
    } const cases[] = {{3, false, 3}, {0, true, 0}, {5, true, 5}, {5, false, 9}, {9, true, 5}, {8, false, 8}};
    for (Case const& c : cases) {
        desk.pages[2]->mayPressOk = c.mayPressOk;
        desk.sheet->SetWizardButtons(c.flags);
        EXPECT_EQ(desk.sheet->wizardButtons, c.shown) << c.flags;
        EXPECT_EQ(desk.sheet->EnableOkButton(), c.mayPressOk);
        EXPECT_EQ(desk.sheet->wizardButtons, c.shown) << c.flags;
        desk.Press(ID_WIZNEXT);
    }
    EXPECT_EQ(desk.sheet->GetActiveIndex(), 3);
    desk.Press(ID_WIZFINISH);  // which cannot be pressed
    desk.pages[2]->mayPressOk = true;
    desk.sheet->EnableOkButton();
    desk.pages[3]->mayApply = false;
    desk.Press(ID_WIZFINISH);
    EXPECT_EQ(desk.sheet->ended, 0);
    desk.pages[3]->mayApply = true;
    desk.Press(ID_WIZFINISH);
    EXPECT_EQ(desk.notes.Take(), "kill3 set3 kill3");
    EXPECT_EQ(desk.sheet->ended, ID_WIZFINISH);
    EXPECT_EQ(desk.sheet->HidePage(1, 1), 0);
}

TEST(PropertySheet, HidesTabs) {
    Desk desk(4);
    EXPECT_EQ(desk.sheet->HidePage(2, 1), 0);
    EXPECT_EQ(desk.sheet->Tabs().IsHidden(2), 0);  // too early
    desk.Begin();
    struct Step {
        unsigned page;
        int hide;
        int answer;
    } const steps[] = {{9, 0, 0}, {9, 1, 0}, {2, 0, 0}, {2, 1, 0}, {2, 1, 1},
                       {2, 0, 1}, {1, 1, 0}, {2, 1, 0}, {2, 0, 1}};
    for (Step const& step : steps)
        EXPECT_EQ(desk.sheet->HidePage(step.page, step.hide), step.answer) << step.page;
    EXPECT_EQ(desk.sheet->Tabs().TabOf(2), 1);
    EXPECT_EQ(desk.sheet->Tabs().TabOf(1), 1);  // where it comes back
    desk.sheet->HidePage(0, 1);
    EXPECT_EQ(desk.sheet->GetActiveIndex(), 2);
    desk.pages[3]->mayPressOk = false;
    EXPECT_EQ(desk.sheet->EnableOkButton(), 0);
    desk.sheet->HidePage(3, 1);
    EXPECT_EQ(desk.sheet->EnableOkButton(), 1);
}

TEST(PropertySheet, KeepsOkAndApplyTrue) {
    Desk desk(3);
    desk.Begin();
    EXPECT_EQ(desk.sheet->EnableOkButton(), 1);
    EXPECT_TRUE(desk.IsEnabled(0));
    EXPECT_TRUE(desk.IsEnabled(2));
    desk.pages[1]->mayPressOk = false;
    desk.pages[2]->SetModified();
    EXPECT_EQ(desk.sheet->EnableOkButton(), 0);
    EXPECT_FALSE(desk.IsEnabled(0));
    EXPECT_FALSE(desk.IsEnabled(2));
    EXPECT_EQ(desk.sheet->OnEnableOkButton(0), 0);
    EXPECT_EQ(desk.notes.Take(), "ask0 ask1");
    desk.pages[1]->mayPressOk = true;
    desk.sheet->EnableOkButton();
    desk.Press(ID_APPLY_NOW);
    EXPECT_FALSE(desk.IsEnabled(2));
    desk.pages[2]->SetModified();
    EXPECT_TRUE(desk.IsEnabled(2));
    desk.sheet->RemovePage(2);
    EXPECT_FALSE(desk.IsEnabled(2));

    FakePage& page = *desk.pages[0];
    page.asLibrary = true;
    struct Case {
        int handle;
        bool mayPressOk;
        int applied;
    } const cases[] = {{1, true, 1}, {1, false, 0}, {0, true, 0}, {0, false, 0}};
    for (auto const& [handle, mayPressOk, applied] : cases) {
        desk.sheet->HandleApplyButton(handle);
        page.mayPressOk = mayPressOk;
        EXPECT_EQ(page.OnApply(), applied) << handle << mayPressOk;
    }
    page.mayPressOk = true;
    desk.Press(IDOK);
    EXPECT_EQ(desk.sheet->ended, IDOK);
    desk.sheet->RemoveApplyButton(1);
    desk.sheet->HandleApplyButton(1);
    EXPECT_EQ(desk.sheet->HandleApplyButton(), 0);
}

// In every order in which they can be taken away, before and after the sheet is made.
TEST(PropertySheet, ClosesTheGapsOfItsButtons) {
    constexpr int ids[] = {IDOK, IDCANCEL, ID_APPLY_NOW};
    constexpr void (FakeSheet::*remove[])(int) = {&FakeSheet::RemoveOKButton, &FakeSheet::RemoveCancelButton,
                                                  &FakeSheet::RemoveApplyButton};
    // By those that are gone, a bit each; -1 has no place.
    constexpr int places[8][3] = {{0, 1, 2},  {-1, 1, 2},  {1, -1, 2},  {-1, -1, 2},
                                  {1, 2, -1}, {-1, 2, -1}, {2, -1, -1}, {-1, -1, -1}};
    std::vector<std::size_t> order{0, 1, 2};
    do {
        for (std::size_t count = 0; count <= order.size(); ++count) {
            for (std::size_t early = 0; early <= count; ++early) {
                Desk desk(1);
                unsigned gone = 0;
                for (std::size_t i = 0; i < count; ++i) {
                    if (i == early) desk.Begin();
                    (desk.sheet.get()->*remove[order[i]])(1);
                    gone |= 1u << order[i];
                }
                desk.Begin();
                for (std::size_t i = 0; i < 3; ++i)
                    EXPECT_EQ(desk.sheet->places.at(ids[i]), places[gone][i]) << gone << ' ' << i;
                for (std::size_t i = 0; i < count; ++i)
                    (desk.sheet.get()->*remove[order[i]])(0);
                for (std::size_t i = 0; i < 3; ++i)
                    EXPECT_EQ(desk.sheet->places.at(ids[i]), places[0][i]);
            }
        }
    } while (std::ranges::next_permutation(order).found);
}

// Pages come, go, hide and refuse at random, and while they are asked the host does the like. Afterwards the
// page that is shown is the only one that was turned to and not left, and the tabs stand as they would if
// each were put in and taken out by hand.
TEST(PropertySheet, SurvivesItsHost) {
    std::minstd_rand random(9);
    auto const pick = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(std::max(count, 1)));
    };
    for (int round = 0; round < 2000; ++round) {
        bool const isWild = round % 2 != 0;
        Desk desk(pick(5));
        for (auto const& page : desk.pages)
            page->asLibrary = round % 4 == 3;
        int depth = 0;
        auto const act = [&] {
            FakeSheet* const sheet = desk.sheet.get();
            if (sheet == nullptr) return;
            int const page = pick(sheet->GetPageCount() + 1);
            FakePage* const object = sheet->Page(page);
            std::string const scripts[] = {"p", "p", "r", "S", "K", "A", "a", "o", "d"};
            int const what = pick(isWild ? 13 : 12);
            if (what < 8 + isWild) {
                bool const needsPage = what > 2 && what < 6;
                if (!needsPage || object != nullptr) Do(desk, scripts[what] + std::to_string(page % 5));
            } else if (what == 9) {
                desk.Add();
            } else if (what == 10) {
                sheet->HidePage(static_cast<unsigned>(page), pick(2));
            } else if (what == 11 && object != nullptr) {
                object->maySet = object->mayKill = object->mayApply = true;
            } else if (pick(8) == 0 && isWild) {
                desk.sheet.reset();
            }
        };
        desk.notes.inBetween = [&] {
            if (!isWild || depth > 2 || pick(6) != 0) return;
            ++depth;
            act();
            --depth;
        };
        desk.Begin();
        for (int i = 0; i < 60; ++i) {
            act();
            if (desk.sheet == nullptr || desk.sheet->ended != 0) break;
            FakeSheet const& sheet = *desk.sheet;
            unsigned tabs = 0;
            for (int page = 0; page < sheet.GetPageCount(); ++page) {
                EXPECT_EQ(sheet.Tabs().TabOf(static_cast<unsigned>(page)), tabs);
                tabs += sheet.Tabs().IsHidden(static_cast<unsigned>(page)) == 0;
            }
            EXPECT_TRUE(isWild || sheet.GetActivePage() == nullptr || sheet.shown == sheet.GetActivePage());
            for (auto const& page : desk.pages) {
                if (isWild || page == nullptr || !page->hasAgreed || page->GetParentSheet() == nullptr)
                    continue;
                EXPECT_EQ(page->isOpen, sheet.GetActivePage() == page.get()) << page->name;
            }
        }
        desk.notes.inBetween = nullptr;
    }
}

}  // namespace
}  // namespace tov
