// What the sheets of the library add to CPropertySheet, without a toolkit: OK and Apply that can be pressed
// only when all pages agree, pages without tabs, buttons that are taken away, a document for all pages.
#pragma once

#include <tov310/dialog_extensions.h>
#include <tov310/document.h>
#include <tov310/ok_host.h>
#include <tov310/property_sheet.h>
#include <tov310/resources.h>
#include <tov310/smart_ptr.h>

#include <memory>
#include <vector>

namespace tov {

// Where the tabs of a sheet stand when some of its pages have none.
class TOV_CORE_API CTovSheetTabs {
 public:
    int IsHidden(unsigned page) const;

    // The place of the page's tab among the tabs; of a hidden page the one that it comes back to.
    unsigned TabOf(unsigned page) const;

    // Answer whether that changed something.
    int Hide(unsigned page);
    int Show(unsigned page);

    void PageRemoved(unsigned page);

 private:
    std::vector<unsigned> m_hidden;  // ascending
};

// A mix-in for a class that is a CPropertySheet too.
class TOV_CORE_API CTovSheetExtensions : public CTovOkHost {
 public:
    // The sheet that it serves, commonly the object that it is a base of. Borrowed, and it lives as long.
    explicit CTovSheetExtensions(CPropertySheet* sheet);
    CTovSheetExtensions(CTovSheetExtensions const&) = delete;
    CTovSheetExtensions& operator=(CTovSheetExtensions const&) = delete;
    ~CTovSheetExtensions() override;

    // Null where the window is no sheet of the library's.
    static CTovSheetExtensions* OfSheet(CWnd* window) { return dynamic_cast<CTovSheetExtensions*>(window); }

    // Takes away the tab of a page, or (hide 0) puts it back with all that it had. The page stays in the
    // sheet; if it is shown, the sheet turns to the next one with a tab. For sheets with tabs, once they are
    // made. Answers 1 where the tab is put back, and where it was away already and is to be; 0 where it is
    // taken away now, and where there is nothing to do or no such page.
    virtual int HidePage(unsigned page, int hide);
    CTovSheetTabs const& Tabs() const { return m_tabs; }

    // Asks OnEnableOkButton, and lets OK and Apply, or Finish in a wizard, be pressed by its answer, which is
    // the result.
    int EnableOkButton() override;

    // Here the first page that says no decides; those without a window, and without a tab, are not asked.
    int OnEnableOkButton(int quiet) override;

    // Whether the sheet itself runs Apply: OnApplyButtonClicked, then OnApply of the page that is shown, then
    // of the others in their order. 0 where Apply was taken away.
    int HandleApplyButton() const { return m_handleApply; }
    void HandleApplyButton(int handle) { m_handleApply = handle != 0 && m_isApplyRemoved == 0; }

    // Take a button away, or put it back (0); the others close the gap. For sheets with tabs, also before
    // they are made. Without OK, Enter applies.
    void RemoveApplyButton(int remove) { Remove(m_isApplyRemoved, remove); }
    void RemoveCancelButton(int remove) { Remove(m_isCancelRemoved, remove); }
    void RemoveOKButton(int remove) { Remove(m_isOkRemoved, remove); }

    // Other words for them, or those of a string of the module; for sheets with tabs, once they are made.
    void RenameApplyButton(char const* text);
    void RenameApplyButton(HINSTANCE module, unsigned id);
    void RenameCancelButton(char const* text);
    void RenameCancelButton(HINSTANCE module, unsigned id);
    void RenameOKButton(char const* text);
    void RenameOKButton(HINSTANCE module, unsigned id);

    // Which buttons of a wizard can be pressed, PSWIZB_ bits. Either finish bit puts Finish in the place of
    // Next, and OnEnableOkButton decides whether it can be pressed.
    void SetWizardButtons(unsigned long buttons);
    int IsWizardMode() const { return m_sheet.IsWizard(); }

    // Whether the user asked what something is, by the question mark of the frame.
    int HelpState() const { return m_helpState; }
    void HelpState(int state) { m_helpState = state; }

    // What the pages edit; setting hands it to those that are the library's. The same document (Compare)
    // changes nothing.
    virtual CTovPtrSmart<CTovDocument> GetDialogDocument() const { return m_document; }
    virtual void SetDialogDocument(CTovPtrSmart<CTovDocument> const& document);
    virtual void UnsetDialogDocument();

    // What OnApply of a page of the library's does: in a sheet of the library's it applies only when OK may
    // be pressed and, unless the sheet runs Apply itself, only when the sheet asks for it. 0 without a sheet.
    static int ApplyPage(CPropertyPage& page);

 protected:
    // The document is there; it is about to go, and still there.
    virtual void OnSetDialogDocument();
    virtual void OnUnsetDialogDocument();

    virtual void OnOkButtonClicked() {}
    virtual void OnApplyButtonClicked() {}

    // What a toolkit does for it. The place of a button is counted from 0, that of OK in a sheet with all of
    // OK, Cancel and Apply; -1 hides it.
    virtual void ShowTab(unsigned /*page*/, int /*show*/) {}
    virtual void PlaceButton(int /*id*/, int /*place*/) {}

    // --- What the handlers of all sheets have in common

    // OnInitDialog, once the buttons stand: sees the commands before the sheet does, takes away the buttons
    // that the host does not want, shows each page once, so that all have windows, and posts
    // WM_TOV_POST_INITDIALOG to the sheet.
    void InitSheet();

    // A message to the sheet before the sheet sees it: calls OnPostInitDialog. Answers 1 for what is done
    // with.
    int OnSheetExtensionMessage(unsigned message);

    // The sheet has lost that page, or its window.
    void ForgetTab(int page) { m_tabs.PageRemoved(static_cast<unsigned>(page)); }
    void EndSheet() { m_isInitialized = 0; }

    // A page has come: it gets the document.
    void TakeTab(int page);

    // All pages stand and have been shown once (a post behind OnInitDialog).
    virtual void OnPostInitDialog() {}

    // A control id that no child of the sheet has; 0 without a window.
    virtual unsigned GetNextFreeDlgItemID() const;

 private:
    friend class CTovSheetContainer;
    class CSubclassSheet;

    void MakeAllPages();
    void MakePage(int index);
    void PlaceButtons();
    int FilterCommand(WPARAM wParam, LRESULT& answer);
    void Remove(int& flag, int remove);
    void Rename(int id, char const* text);
    void Enable(int id, int enable) const;

    CPropertySheet& m_sheet;
    std::unique_ptr<CSubclassSheet> m_subclassSheet;
    CTovSheetTabs m_tabs;
    CTovPtrSmart<CTovDocument> m_document;
    int m_isInitialized = 0;
    int m_isOkRemoved = 0;
    int m_isCancelRemoved = 0;
    int m_isApplyRemoved = 0;
    int m_handleApply = 0;
    int m_helpState = 0;
    int m_isFinish = 0;  // of a wizard
};

// A class of sheets with all that, on the screen and in tests:
//
//   class CTovPropSheet : public CWndOn<QDialog, CTovSheetOf<CPropertySheet>> { ... };
template <class Sheet>
class CTovSheetOf : public Sheet, public CTovSheetExtensions {
 public:
    CTovSheetOf() : CTovSheetExtensions(this) {}

 protected:
    int IsPageHidden(int index) const override { return Tabs().IsHidden(static_cast<unsigned>(index)); }
    void PageAdded(int index) override {
        Sheet::PageAdded(index);
        TakeTab(index);
    }
    void PageRemoved(CPropertyPage& page, int index) override {
        ForgetTab(index);
        Sheet::PageRemoved(page, index);
    }
    int OnInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Sheet::OnInitDialog();
        if (IsWindow(self)) InitSheet();
        return 1;
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (OnSheetExtensionMessage(message) != 0) return 0;
        return Sheet::WindowProc(message, wParam, lParam);
    }
};

// A class of pages with all that.
template <class Page>
class CTovPageOf : public CTovDialogOf<Page> {
 public:
    // Has the sheet ask all pages whether OK may be pressed. 1 without a sheet of the library's.
    int EnableOkButton() override {
        CTovSheetExtensions* const sheet = CTovSheetExtensions::OfSheet(this->GetParentSheet());
        return sheet != nullptr ? sheet->EnableOkButton() : 1;
    }
    int OnKillActive() override {
        this->HideTooltip();
        return Page::OnKillActive();
    }
    int OnApply() override { return CTovSheetExtensions::ApplyPage(*this); }
};

}  // namespace tov
