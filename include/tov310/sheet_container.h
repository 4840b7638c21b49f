// Sheets and pages that keep OK true: it can be pressed, and a wizard finished, as long as no field that must
// be filled is empty on any page with a tab. A click on it when it cannot be pressed turns to what is
// missing.
//
// Whatever asks for all fields asks the page that is shown first, then the others in their order; Next asks
// that page only.
#pragma once

#include <tov310/host_container.h>
#include <tov310/sheet_extensions.h>

#include <concepts>
#include <utility>

namespace tov {

// Where a text is shown for a page's control, `data` is the index of the page and one; 0 for a control that
// stands in the sheet itself.
class TOV_CORE_API CTovSheetContainer : public CTovInputControlContainer {
 public:
    // The sheet that it serves, commonly the object that it is a base of: borrowed, and it lives as long.
    CTovSheetContainer(CPropertySheet* sheet, CTovSheetExtensions* extensions);

    // Null where the window is none, and for null.
    static CTovSheetContainer* OfSheet(CWnd* window) { return dynamic_cast<CTovSheetContainer*>(window); }

    // Whether the controls of the sheet itself are guarded once it stands (1, at first).
    void SetHookAllAutomatically(int automatically) { m_hooksAll = automatically; }

    int FocusIsBlocked() override;
    CWnd* ValidateAllDlgCtrls(int ignoreEmpty, int command, unsigned long& data, CString& message) override;
    CWnd* GetFirstEmptyDlgItem(unsigned long& data) override;
    void OnDlgCtrlEmptyChanged(unsigned int id, int empty) override;
    int OnDlgItemGainFocus(HWND window) override;
    void OnPrepareShowValidationText(HWND window, unsigned int id, unsigned long data,
                                     CString* message) override;
    void OnShowValidationText(HWND window, unsigned int id, unsigned long data, CString* message) override;
    void OnHideValidationText() override;
    void OnEmptyFieldsChanged(int emptyFields) override;

 protected:
    // The user has pressed OK (1), Apply (12321) or Finish (12325) while it is disabled. Here: the field of
    // the shown page that he is in is checked and, if it is wrong, its words are shown beside it; else the
    // first empty field is shown.
    virtual void OnDisabledOkButtonClicked(unsigned id);

    // The steps of a sheet's life: OnInitDialog, the post after it, a message that the window has dealt with,
    // and other pages than before.
    void BeginSheet();
    void SheetIsReady();
    void OnSheetMessage(unsigned message, LPARAM lParam);
    void PagesChanged();

    // Whether a page that is added now is shown once, so that it has a window.
    int ShowsPagesAtOnce() const;
    void ShowOnce(CPropertyPage* page);

    // What OnEnableOkButton answers.
    int EnableOkOfSheet(int quiet);

 private:
    template <class Ask>
    int AskPages(Ask&& ask);
    CTovHostContainer* PageAt(int index) const;
    CTovHostContainer* PageOf(unsigned long data) const;

    CPropertySheet& m_sheet;
    CTovSheetExtensions& m_extensions;
    int m_hooksAll = 1;
    int m_wasHooked = 0;
};

// A sheet with all that: Sheet is made of CTovSheetOf.
template <class Sheet>
class CTovSheetCVOf : public Sheet, public CTovSheetContainer {
 public:
    template <class... Arguments>
    requires std::constructible_from<Sheet, Arguments...>
    explicit CTovSheetCVOf(Arguments&&... arguments)
        : Sheet(std::forward<Arguments>(arguments)...), CTovSheetContainer(this, this) {}

    int OnEnableOkButton(int quiet) override { return EnableOkOfSheet(quiet); }

    // While the sheet is there, a page that is added is shown once, and OK follows what pages there are.
    void AddPage(CPropertyPage* page) override {
        int const isNew = this->GetPageIndex(page) < 0;
        Sheet::AddPage(page);
        if (isNew == 0 || ShowsPagesAtOnce() == 0) return;
        ShowOnce(page);
        PagesChanged();
    }
    void RemovePage(CPropertyPage* page) override {
        Sheet::RemovePage(page);
        PagesChanged();
    }
    using Sheet::RemovePage;

    // OK follows a page that is shown again. One that goes counts until EnableOkButton is called.
    int HidePage(unsigned page, int hide) override {
        int const result = Sheet::HidePage(page, hide);
        if (result != 0) PagesChanged();
        return result;
    }

 protected:
    // Also one that is deleted by its host.
    void PageRemoved(CPropertyPage& page, int index) override {
        Sheet::PageRemoved(page, index);
        CheckEmptyFieldsSoon();
    }
    int OnInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Sheet::OnInitDialog();
        if (IsWindow(self)) BeginSheet();
        return 1;
    }
    void OnPostInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Sheet::OnPostInitDialog();
        if (IsWindow(self)) SheetIsReady();
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        HWND const self = this->GetSafeHwnd();
        LRESULT const result = Sheet::WindowProc(message, wParam, lParam);
        if (IsWindow(self)) OnSheetMessage(message, lParam);
        return result;
    }
};

// A page with all that: Page is made of CTovPageOf.
template <class Page>
class CTovPageCVOf : public CTovDialogCVOf<Page, CTovHostContainer::eKindPage> {
    using Base = CTovDialogCVOf<Page, CTovHostContainer::eKindPage>;

 public:
    using Base::Base;

 protected:
    void RevealHost() override {
        if (CPropertySheet* const sheet = this->GetParentSheet()) sheet->SetActivePage(this);
    }
    HWND GetWindowAbove() const override {
        CPropertySheet* const sheet = this->GetParentSheet();
        return CTovSheetContainer::OfSheet(sheet) != nullptr ? sheet->GetSafeHwnd() : HWND{};
    }
};

}  // namespace tov
