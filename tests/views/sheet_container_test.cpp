// Sheets that keep OK true to the fields on their pages, without a screen.
#include "support/fake_control.h"
#include "support/host_model.h"
#include "support/tip_desk.h"

#include <tov310/sheet_container.h>

#include <gmock/gmock.h>

#include <memory>
#include <random>

namespace tov {
namespace {

using test::FakeControl;
using test::FakeWindow;
using test::FakeWindowOf;
using test::HostField;
using test::TipDesk;

struct Page : FakeWindowOf<CTovPageCVOf<CTovPageOf<CPropertyPage>>> {
    Page(TipDesk& desk, CWnd& sheet) : FakeWindowOf(desk, &sheet) {}
    ~Page() override { LeaveSheet(); }
};

struct Sheet : FakeWindowOf<CTovSheetCVOf<CTovSheetOf<CPropertySheet>>> {
    using FakeWindowOf::FakeWindowOf;
    int CreatePage(CPropertyPage& page) override {
        page.InitDialog();
        return 1;
    }
    void ShowWizardButtons(unsigned long buttons) override { wizardButtons = buttons; }
    unsigned long wizardButtons = 0;
};

struct PageModel {
    std::unique_ptr<Page> page;
    std::vector<HostField> fields;
    std::vector<std::unique_ptr<FakeControl>> controls;
    bool isHidden = false;

    FakeControl* FirstMissing() const {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].IsMissing()) return controls[i].get();
        }
        return nullptr;
    }
    void Set(std::size_t i) const {
        CTovInputControl::CTovNotifyEmptyChanged const scope(*controls[i]);
        controls[i]->SetReadOnlyMode(fields[i].isReadOnly);
        controls[i]->SetEmptyAllowed(fields[i].mayBeEmpty);
        controls[i]->ShowWindow(!fields[i].isHidden);
        controls[i]->SetString(fields[i].isEmpty ? "" : "right");
    }
};

// A sheet and what its user knows of it.
struct World {
    explicit World(bool isWizard) {
        sheet.SetWizardMode(isWizard);
        for (int const id : {IDOK, IDCANCEL, ID_APPLY_NOW, ID_WIZFINISH})
            buttons.push_back(std::make_unique<FakeWindow>(desk, &sheet, id));
        buttons[3]->EnableWindow(0);
    }
    PageModel& Add(std::size_t fields) {
        PageModel& model = *models.emplace_back(std::make_unique<PageModel>());
        model.page = std::make_unique<Page>(desk, sheet);
        for (std::size_t i = 0; i < fields; ++i) {
            model.fields.emplace_back();
            model.controls.push_back(
                std::make_unique<FakeControl>(desk, *model.page, static_cast<int>(i) + 1));
        }
        sheet.AddPage(model.page.get());
        return model;
    }
    // Who is to be shown: the page in front first, then the others with a tab.
    FakeControl* FirstMissing() const {
        FakeControl* first = nullptr;
        for (auto const& model : models) {
            FakeControl* const missing = model->FirstMissing();
            if (missing != nullptr && model->page.get() == sheet.GetActivePage()) return missing;
            if (first == nullptr && !model->isHidden) first = missing;
        }
        return first;
    }
    bool IsEnabled(std::size_t button) const { return (buttons[button]->GetStyle() & WS_DISABLED) == 0; }

    TipDesk desk;
    Sheet sheet{desk};
    std::vector<std::unique_ptr<FakeWindow>> buttons;
    std::vector<std::unique_ptr<PageModel>> models;
};

TEST(SheetContainer, KeepsOkTrue) {
    std::minstd_rand random(6);
    auto const pick = [&random](std::size_t count) { return random() % count; };
    for (int round = 0; round < 150 && !HasFailure(); ++round) {
        bool const isWizard = round % 4 == 0;
        World world(isWizard);
        for (std::size_t i = 1 + pick(4); i > 0; --i)
            world.Add(pick(3));
        world.sheet.InitDialog();
        TovDispatchPosts();
        world.sheet.SetWizardButtons(PSWIZB_BACK | PSWIZB_FINISH);
        for (int step = 0; step < 40 && !HasFailure(); ++step) {
            bool const wasEnabled = world.IsEnabled(0);
            std::size_t const index = pick(world.models.size());
            PageModel& model = *world.models[index];
            switch (pick(9)) {
                case 0:
                    world.Add(pick(3));
                    break;
                case 1:
                    if (world.models.size() == 1) break;
                    world.sheet.RemovePage(static_cast<int>(index));
                    world.models.erase(world.models.begin() + static_cast<std::ptrdiff_t>(index));
                    break;
                case 2:
                    if (!model.isHidden) world.sheet.SetActivePage(model.page.get());
                    break;
                case 3:
                    if (isWizard || (!model.isHidden && world.sheet.GetActivePage() == model.page.get()))
                        break;
                    model.isHidden = !model.isHidden;
                    EXPECT_EQ(world.sheet.HidePage(static_cast<unsigned>(index), model.isHidden),
                              !model.isHidden);
                    if (!model.isHidden) break;
                    EXPECT_EQ(world.IsEnabled(0), wasEnabled);
                    world.sheet.EnableOkButton();
                    break;
                default: {
                    if (model.fields.empty()) break;
                    std::size_t const i = pick(model.fields.size());
                    HostField& field = model.fields[i];
                    bool* const properties[] = {&field.isEmpty, &field.isEmpty, &field.isHidden,
                                                &field.isReadOnly, &field.mayBeEmpty};
                    bool& property = *properties[pick(5)];
                    property = &property == &field.isEmpty ? pick(4) == 0 : !property;
                    model.Set(i);
                    break;
                }
            }
            TovDispatchPosts();
            FakeControl* const missing = world.FirstMissing();
            if (isWizard) {
                EXPECT_EQ((world.sheet.wizardButtons & PSWIZB_FINISH) != 0, missing == nullptr) << step;
                EXPECT_EQ((world.sheet.wizardButtons & PSWIZB_DISABLEDFINISH) != 0, missing != nullptr);
            } else {
                EXPECT_EQ(world.IsEnabled(0), missing == nullptr) << step;
            }
        }
    }
}

// What is wrong on the page in front keeps everything, what is wrong elsewhere only the end.
TEST(SheetContainer, AsksForTheCommand) {
    World world(true);
    PageModel& first = world.Add(1);
    PageModel& second = world.Add(1);
    world.sheet.InitDialog();
    TovDispatchPosts();
    second.controls[0]->content = "wrong";
    struct Case {
        int command;
        int isRight;
        PageModel* shown;
    } const cases[] = {{ID_WIZNEXT, 1, &first}, {ID_WIZFINISH, 0, &second}, {ID_WIZNEXT, 0, &second}};
    for (auto const& [command, isRight, shown] : cases) {
        world.desk.tip.clear();
        EXPECT_EQ(world.sheet.ValidateCommand(command), isRight) << command;
        EXPECT_EQ(world.sheet.GetActivePage(), shown->page.get());
        EXPECT_EQ(world.desk.tip, isRight != 0 ? "" : "it is wrong");
        EXPECT_EQ(world.desk.focus == second.controls[0]->GetSafeHwnd(), shown == &second);
    }
    // Nor does the focus go to a button then.
    TovSendMessage(world.buttons[3]->GetSafeHwnd(), WM_MOUSEACTIVATE);
    EXPECT_NE(world.sheet.FocusIsBlocked(), 0);
    second.controls[0]->content = "right";
    TovSendMessage(world.buttons[3]->GetSafeHwnd(), WM_MOUSEACTIVATE);
    EXPECT_EQ(world.sheet.FocusIsBlocked(), 0);
}

}  // namespace
}  // namespace tov
