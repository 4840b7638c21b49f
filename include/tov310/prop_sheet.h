// Sheets of pages on the screen: options behind tabs, and wizards.
//
//   tov::CTovPropSheet sheet("Options", parent);
//   Units units;                   // a CTovPropPage, from a template or from code
//   sheet.AddPage(&units);
//   if (sheet.DoModal() == tov::IDOK) ...
//
// A sheet has buttons of its own: OK, Cancel and Apply, or Back, Next, Finish and Cancel in a wizard. Each is
// a command, which passes the hooks and OnCommand of the sheet; what it does then is told in
// property_sheet.h.
#pragma once

#include <tov310/prop_page.h>
#include <tov310/sheet_extensions.h>
#include <tov310/wnd_on.h>

#include <QDialog>
#include <QGridLayout>
#include <QPushButton>
#include <QTabWidget>

#include <map>
#include <memory>
#include <optional>

namespace tov {

class CTovDlgToolBar;

class TOV_UI_API CTovPropSheet : public CWndOn<QDialog, CTovSheetOf<CPropertySheet>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovPropSheet, CPropertySheet)
 public:
    explicit CTovPropSheet(QWidget* parent = nullptr);

    // With a title, or a string of the module (null: the library's own) for one, and the page to begin with.
    explicit CTovPropSheet(char const* caption, CWnd* parent = nullptr, unsigned selectPage = 0);
    CTovPropSheet(char const* caption, TovPlainWidget auto* parent, unsigned selectPage = 0)
        : CTovPropSheet(parent) {
        SetUp(caption, selectPage);
    }
    CTovPropSheet(HINSTANCE module, unsigned caption, CWnd* parent = nullptr, unsigned selectPage = 0);
    CTovPropSheet(HINSTANCE module, unsigned caption, TovPlainWidget auto* parent, unsigned selectPage = 0)
        : CTovPropSheet(parent) {
        SetUp(module, caption, selectPage);
    }
    ~CTovPropSheet() override;

    // The same for a sheet that is there already, before it is shown.
    void Construct(char const* caption, CWnd* parent = nullptr, unsigned selectPage = 0);
    void Construct(HINSTANCE module, unsigned caption, CWnd* parent = nullptr, unsigned selectPage = 0);
    void Construct(char const* caption, TovPlainWidget auto* parent, unsigned selectPage = 0) {
        Construct(caption, TovWnd(parent), selectPage);
    }
    void Construct(HINSTANCE module, unsigned caption, TovPlainWidget auto* parent, unsigned selectPage = 0) {
        Construct(module, caption, TovWnd(parent), selectPage);
    }

    // Shows it and answers what it ends with; meanwhile the windows around it take nothing. IDCANCEL where it
    // ends without a number: it was destroyed, or its parent was. A wizard ends with ID_WIZFINISH. -1 where
    // it is being shown modally already.
    int DoModal() override;

    // The same in the toolkit's numbers: QDialog::Accepted for IDOK and ID_WIZFINISH, otherwise Rejected.
    int exec() override;

    // Makes a sheet that lets the others work. It is shown by ShowWindow or show(). OK, Finish and Cancel
    // destroy it. Answers 1, or 0 where it is there already.
    int Create();
    int Modeless() const { return m_isModeless; }

    // Hides it and ends DoModal. finished() carries the result; accepted() tells of IDOK and ID_WIZFINISH,
    // rejected() of IDCANCEL.
    void EndDialog(int result) override;

    // The window that it was given as its parent, whatever has become of it since; null for none and for one
    // that is gone.
    CWnd* GetOriginalParent() const { return CWnd::FromHandlePermanent(m_originalParent); }
    CWnd* GetOwner() const override;

    // Also for a page that is in the toolkit's hands so far: it stands in the sheet from now on, and at the
    // end of either it goes back to where it came from.
    void AddPage(CPropertyPage* page) override;
    void RemovePage(CPropertyPage* page) override;
    using CWndOn::RemovePage;

    // No question mark in the frame, from the next time that it is shown on.
    void RemoveContextHelpButton(int remove);

    // A tool bar at the left of the buttons, once the sheet has a window (dlg_tool_bar.h). Answers 1, or 0.
    // Enabling lets it be pressed or not.
    virtual int CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId, unsigned arrangeFlags);
    void EnableToolbar(int enable);
    int IsToolbarEnabled() const;

    // The parts that a host may want to dress: the tabs, and a button by its command; null where the sheet
    // has none. They are the sheet's.
    QTabWidget* GetTabWidget() const;
    QPushButton* GetButton(int id) const;

    int DestroyWindow() override;
    int EnableOkButton() override;
    void accept() override;
    void reject() override;
    void done(int result) override;
    void setVisible(bool visible) override;

 Q_SIGNALS:
    void initialized();                  // with OnPostInitDialog, behind it
    void currentChanged(int page);       // another page is shown; -1 for none
    void okButtonEnabled(bool enabled);  // OK, or Finish, can be pressed now, or no longer
    void okButtonClicked();              // with OnOkButtonClicked
    void applyButtonClicked();           // with OnApplyButtonClicked
    void applied();                      // the pages have been applied, by OK or Apply

 protected:
    int OnInitDialog() override;
    void OnOkButtonClicked() override { Q_EMIT okButtonClicked(); }
    void OnApplyButtonClicked() override { Q_EMIT applyButtonClicked(); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    int CreatePage(CPropertyPage& page) override;
    void ShowPage(int index) override;
    void PageAdded(int index) override;
    void PageRemoved(CPropertyPage& page, int index) override;
    void PagesApplied() override { Q_EMIT applied(); }
    void ShowWizardButtons(unsigned long buttons) override;
    void ShowTab(unsigned page, int show) override;
    void PlaceButton(int id, int place) override;

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    class SheetTabs;

    // Where its pages were before, and go back to.
    struct PageRecord {
        QPointer<QWidget> widget;
        QPointer<QWidget> parentBefore;
    };

    void SetUp(char const* caption, unsigned selectPage);
    void SetUp(HINSTANCE module, unsigned caption, unsigned selectPage);
    bool Prepare();
    void MakeButtons();
    QPushButton* MakeButton(int id, unsigned text, int place);
    void OnTabChanged(int tab);
    void TurnTab(int step);
    void ShowDefaultButton();
    void FocusFirstControl();
    void Command(int id);
    void ShowHelp(QWidget* about, QPoint const& place);

    std::shared_ptr<CTovDlgToolBar> m_toolbar;
    SheetTabs* const m_tabs;
    QGridLayout* m_buttonRow = nullptr;
    std::map<int, QPushButton*> m_buttons;
    std::map<CPropertyPage const*, PageRecord> m_records;
    CPropertyPage const* m_shownPage = nullptr;  // nothing is asked of it
    HWND m_originalParent;
    int m_isModeless = 0;
    int m_okEnabled = -1;  // as it was told
    int m_isContextHelpRemoved = 0;
    bool m_isReady = false;
    bool m_isShowingPage = false;
    bool m_wasActive = false;                   // when it was hidden
    std::shared_ptr<std::optional<int>> m_end;  // of the modal loop; null without one
};

// A sheet that keeps its OK true to the content of the input controls on its pages (sheet_container.h).
class TOV_UI_API CTovPropSheetCV : public CTovSheetCVOf<CTovPropSheet> {
    Q_OBJECT
    TOV_DYNCREATE(CTovPropSheetCV, CTovPropSheet)
 public:
    using CTovSheetCVOf::CTovSheetCVOf;
    ~CTovPropSheetCV() override;

    void OnEmptyFieldsChanged(int emptyFields) override;

 Q_SIGNALS:
    void emptyFieldsChanged(bool empty);            // with OnEmptyFieldsChanged
    void disabledOkButtonClicked(unsigned int id);  // with OnDisabledOkButtonClicked

 protected:
    void OnDisabledOkButtonClicked(unsigned id) override;
};

}  // namespace tov
