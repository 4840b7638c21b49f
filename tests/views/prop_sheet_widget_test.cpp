#include "support/dialogs_module.h"
#include "support/faults.h"
#include "support/widgets.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/system.h>
#include <tov310/ui.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSignalSpy>

#include <functional>

namespace tov {
namespace {

using testing::ElementsAre;

// Pages of plain code with one field.
struct FieldPage : CTovPropPageCV {
    explicit FieldPage(char const* title) {
        setWindowTitle(QString::fromUtf8(title));
        auto* const row = new QVBoxLayout(this);  // the page's
        row->addWidget(edit);
    }
    void Clear() const { edit->SetString(CString()); }
    void Fill() const { edit->SetString(CString("x")); }
    CTovEditString* const edit = new CTovEditString(this);
};

struct Options : CTovPropSheetCV {
    explicit Options(QWidget* parent = nullptr) : CTovPropSheetCV("选项", parent) {
        for (FieldPage* const page : {&a, &b, &c}) {
            page->Fill();
            AddPage(page);
        }
    }
    void OnPostInitDialog() override {
        CTovPropSheetCV::OnPostInitDialog();
        isReady = true;
    }
    QStringList Tabs() const {
        QStringList tabs;
        for (int i = 0; i < GetTabWidget()->count(); ++i) {
            if (GetTabWidget()->isTabVisible(i)) tabs += GetTabWidget()->tabText(i);
        }
        return tabs;
    }
    std::vector<int> ButtonsFromLeft() const {
        std::map<int, int> places;
        for (int const id : {IDOK, IDCANCEL, ID_APPLY_NOW, ID_WIZBACK, ID_WIZNEXT, ID_WIZFINISH}) {
            QPushButton const* const button = GetButton(id);
            if (button != nullptr && button->isVisible()) places[button->x()] = id;
        }
        std::vector<int> ids;
        for (auto const& [x, id] : places)
            ids.push_back(id);
        return ids;
    }
    bool IsOk() const { return GetButton(IDOK)->isEnabled(); }

    FieldPage a{"甲"}, b{"乙"}, c{"丙"};
    bool isReady = false;
};

class PropSheet : public testing::Test {
    void SetUp() override { TovSetFaultHandler(test::Faults::Note); }
    void TearDown() override { EXPECT_THAT(test::TakeFaults(), ElementsAre()); }

 protected:
    template <class Sheet>
    static int Run(Sheet& sheet, std::function<void()> const& drive) {
        QTimer::singleShot(0, &sheet, [&] {
            EXPECT_TRUE(QTest::qWaitForWindowActive(&sheet));
            QTest::qWait(1);  // what was posted
            drive();
        });
        return sheet.DoModal();
    }
    static void Click(QWidget* widget) { test::ClickOn(*widget); }
    static void ClickTab(Options const& sheet, int tab) {
        QTabBar const& bar = *sheet.GetTabWidget()->tabBar();
        test::ClickOn(bar, bar.tabRect(tab).center());
    }
};

TEST_F(PropSheet, KeepsOkTrueAndShowsWhatIsMissing) {
    Options sheet;
    QSignalSpy const turned(&sheet, &CTovPropSheet::currentChanged);
    QSignalSpy const told(&sheet, &CTovPropSheet::okButtonEnabled);
    int const end = Run(sheet, [&] {
        EXPECT_TRUE(sheet.isReady);
        EXPECT_EQ(QApplication::focusWidget(), sheet.a.edit);
        EXPECT_THAT(sheet.ButtonsFromLeft(), ElementsAre(IDOK, IDCANCEL, ID_APPLY_NOW));
        EXPECT_TRUE(sheet.IsOk());
        sheet.b.Clear();
        EXPECT_FALSE(sheet.IsOk());
        EXPECT_FALSE(sheet.GetButton(ID_APPLY_NOW)->isEnabled());
        Click(sheet.GetButton(IDOK));
        EXPECT_EQ(sheet.GetActivePage(), &sheet.b);
        EXPECT_EQ(sheet.GetTabWidget()->currentIndex(), 1);
        EXPECT_EQ(QApplication::focusWidget(), sheet.b.edit);
        bool hasTip = false;
        for (QWidget const* const widget : QApplication::topLevelWidgets())
            hasTip |= widget->isVisible() && qobject_cast<CTovWndToolTip const*>(widget) != nullptr;
        EXPECT_TRUE(hasTip);
        QTest::keyClicks(sheet.b.edit, "yes");
        EXPECT_TRUE(sheet.IsOk());

        // A page that goes takes what is missing along, and one that comes brings it.
        FieldPage late("丁");
        late.Clear();
        sheet.AddPage(&late);
        EXPECT_FALSE(sheet.IsOk());
        EXPECT_EQ(sheet.GetActivePage(), &sheet.b);
        sheet.RemovePage(&late);
        EXPECT_TRUE(sheet.IsOk());
        sheet.c.Clear();
        EXPECT_EQ(sheet.HidePage(2, 1), 0);
        EXPECT_EQ(sheet.Tabs(), (QStringList{"甲", "乙"}));
        sheet.EnableOkButton();
        EXPECT_TRUE(sheet.IsOk());
        EXPECT_EQ(sheet.HidePage(2, 0), 1);
        EXPECT_FALSE(sheet.IsOk());
        EXPECT_EQ(sheet.Tabs(), (QStringList{"甲", "乙", "丙"}));
        sheet.c.setWindowTitle("戊");
        EXPECT_EQ(sheet.Tabs().last(), "戊");
        sheet.c.Fill();
        QTest::keyClick(sheet.b.edit, Qt::Key_Return);
    });
    EXPECT_EQ(end, IDOK);
    EXPECT_EQ(told.count(), 9);
    EXPECT_GE(turned.count(), 2);
    EXPECT_EQ(sheet.a.edit->GetString(), "x");  // a host's own controls stay
    EXPECT_EQ(Run(sheet, [&] { QTest::keyClick(&sheet, Qt::Key_Escape); }), IDCANCEL);
}

// The field that is wrong keeps the focus, whatever the user turns to.
TEST_F(PropSheet, DoesNotLeaveAWrongField) {
    Options sheet;
    sheet.a.edit->SetMinChars(3);
    Run(sheet, [&] {
        sheet.a.edit->SetString(CString("ab"));
        ClickTab(sheet, 1);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.a);
        QTest::keyClick(sheet.a.edit, Qt::Key_Tab, Qt::ControlModifier);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.a);
        Click(sheet.GetButton(IDOK));
        EXPECT_TRUE(sheet.isVisible());
        EXPECT_EQ(QApplication::focusWidget(), sheet.a.edit);
        sheet.a.edit->SetString(CString("abc"));
        ClickTab(sheet, 1);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.b);
        sheet.HidePage(2, 1);
        for (FieldPage const* const page : {&sheet.a, &sheet.b}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
            EXPECT_EQ(sheet.GetActivePage(), page);
        }
        Click(sheet.GetButton(IDCANCEL));
    });
}

TEST_F(PropSheet, LeadsThroughAWizard) {
    struct Import : Options {
        int wasFinished = 0;
    } sheet;
    sheet.SetWizardMode();
    sheet.RemoveCancelButton(1);  // which a wizard does not do
    int const end = Run(sheet, [&] {
        sheet.SetWizardButtons(PSWIZB_NEXT);
        EXPECT_FALSE(sheet.GetTabWidget()->tabBar()->isVisible());
        EXPECT_THAT(sheet.ButtonsFromLeft(), ElementsAre(ID_WIZBACK, ID_WIZNEXT, IDCANCEL));
        EXPECT_FALSE(sheet.GetButton(ID_WIZBACK)->isEnabled());
        sheet.b.Clear();
        Click(sheet.GetButton(ID_WIZNEXT));  // it asks the page in front only
        EXPECT_EQ(QApplication::focusWidget(), sheet.b.edit);
        QTest::keyClick(sheet.b.edit, Qt::Key_Return);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.b);
        sheet.b.Fill();
        QTest::keyClick(sheet.b.edit, Qt::Key_Return);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.c);
        sheet.a.Clear();
        sheet.SetWizardButtons(PSWIZB_BACK | PSWIZB_FINISH);
        EXPECT_THAT(sheet.ButtonsFromLeft(), ElementsAre(ID_WIZBACK, ID_WIZFINISH, IDCANCEL));
        EXPECT_FALSE(sheet.GetButton(ID_WIZFINISH)->isEnabled());
        Click(sheet.GetButton(ID_WIZFINISH));
        EXPECT_EQ(QApplication::focusWidget(), sheet.a.edit);
        QTest::keyClicks(sheet.a.edit, "y");
        sheet.SetActivePage(2);
        sheet.GetButton(ID_WIZBACK)->setFocus();
        QTest::keyClick(sheet.GetButton(ID_WIZBACK), Qt::Key_Return);
        EXPECT_EQ(sheet.GetActivePage(), &sheet.b);
        Click(sheet.GetButton(ID_WIZFINISH));
    });
    EXPECT_EQ(end, ID_WIZFINISH);
}

// By what its host takes away, and by pages that guard nothing.
TEST_F(PropSheet, IsNotConfusedByWhatComesAndGoes) {
    Options sheet;
    auto late = std::make_unique<FieldPage>("丁");
    late->Clear();
    sheet.AddPage(late.get());
    sheet.HandleApplyButton(1);
    QSignalSpy const applied(&sheet, &CTovPropSheet::applied);
    int const end = Run(sheet, [&] {
        sheet.RemoveContextHelpButton(1);
        EXPECT_TRUE(sheet.isVisible());
        EXPECT_FALSE(sheet.IsOk());
        late.reset();
        QCoreApplication::processEvents();
        EXPECT_TRUE(sheet.IsOk());
        Click(sheet.GetButton(ID_APPLY_NOW));
        EXPECT_EQ(applied.count(), 1);
        QDialog other(&sheet.a);
        QPushButton button(&other);
        button.setDefault(true);
        other.show();
        QTest::keyClick(sheet.a.edit, Qt::Key_Return);
        EXPECT_FALSE(sheet.isVisible());
    });
    EXPECT_EQ(end, IDOK);

    CTovPropSheet plain;
    FieldPage guarded("甲");
    guarded.Clear();
    plain.AddPage(&guarded);
    Run(plain, [&] {
        EXPECT_FALSE(plain.GetButton(IDOK)->isEnabled());
        plain.reject();
    });

    CTovPropSheetCV wizard;
    CTovPropPage pages[2];
    wizard.SetWizardMode();
    for (CPropertyPage* const page :
         {static_cast<CPropertyPage*>(&pages[0]), static_cast<CPropertyPage*>(&pages[1]),
          static_cast<CPropertyPage*>(&guarded)})
        wizard.AddPage(page);
    Run(wizard, [&] {
        Click(wizard.GetButton(ID_WIZNEXT));
        EXPECT_EQ(wizard.GetActiveIndex(), 1);
        wizard.reject();
    });
}

// Templates, their numbers, a modeless life, and pages that go before or after their sheet.
TEST_F(PropSheet, MakesPagesOfTemplates) {
    auto sheet = std::make_unique<CTovPropSheet>("x");
    auto page = std::make_unique<CTovPropPage>(test::DialogsModule(), 1000u);
    auto gone = std::make_unique<CTovPropPage>();
    QWidget shelf;
    FieldPage lent("?");
    lent.setParent(&shelf);
    for (CTovPropPage* const each : {page.get(), gone.get(), static_cast<CTovPropPage*>(&lent)})
        sheet->AddPage(each);
    sheet->RemoveOKButton(1);
    EXPECT_EQ(sheet->GetTabWidget()->tabText(0), QStringLiteral("新建测站"));
    EXPECT_EQ(page->findChildren<QLineEdit*>().size(), 0);
    QSignalSpy const applied(sheet.get(), &CTovPropSheet::applied);
    EXPECT_EQ(sheet->Create(), 1);
    EXPECT_EQ(page->Modeless(), 1);
    sheet->show();
    EXPECT_EQ(page->GetDlgCtrlID(), 1000);
    EXPECT_TRUE(page->GetDlgItem(1001));
    EXPECT_EQ(page->sizeHint(), TovMapDialogRect(page->font(), {0, 0, 230, 134}).size());
    EXPECT_EQ(page->EnableOkButton(), 1);
    EXPECT_FALSE(dynamic_cast<QPushButton&>(*TovWidget(page->GetDlgItem(IDOK))).isDefault());
    sheet->RenameApplyButton("接受");
    EXPECT_EQ(sheet->GetButton(ID_APPLY_NOW)->text(), QStringLiteral("接受"));
    QTest::keyClick(sheet.get(), Qt::Key_Return);  // without OK it applies
    EXPECT_EQ(applied.count(), 1);
    gone.reset();
    EXPECT_EQ(sheet->GetPageCount(), 2);
    Click(sheet->GetButton(IDCANCEL));
    EXPECT_FALSE(sheet->GetSafeHwnd());
    EXPECT_EQ(lent.parentWidget(), sheet->GetTabWidget()->findChild<QStackedWidget*>());
    sheet.reset();
    EXPECT_EQ(lent.parentWidget(), &shelf);
    EXPECT_EQ(page->parentWidget(), nullptr);
    EXPECT_EQ(page->GetParentSheet(), nullptr);
}

TEST_F(PropSheet, SurvivesItsEnd) {
    auto owner = std::make_unique<QWidget>();
    Options sheet(owner.get());
    EXPECT_EQ(sheet.GetOriginalParent(), TovWnd(owner.get()));
    EXPECT_EQ(Run(sheet, [&] { owner.reset(); }), IDCANCEL);
    EXPECT_EQ(sheet.GetOriginalParent(), nullptr);
    EXPECT_EQ(Run(sheet, [&] { sheet.DestroyWindow(); }), IDCANCEL);
    auto* const own = new Options;  // ends itself
    EXPECT_EQ(Run(*own, [&] { delete own; }), IDCANCEL);
}

}  // namespace
}  // namespace tov
