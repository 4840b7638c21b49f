// Sheets of pages, as far as they can be told without a toolkit: which page is shown, who is asked before
// another is, and what OK, Cancel, Apply and the buttons of a wizard do.
//
// A page is turned to by OnSetActive and left by OnKillActive, which come in pairs: a page that has agreed to
// be left and is shown all the same is turned to again. Any of these calls may add and remove pages, turn to
// another page or end the sheet.
#pragma once

#include <tov310/dialog.h>

#include <memory>
#include <vector>

namespace tov {

class CPropertySheet;

// SetWizardButtons.
inline constexpr unsigned long PSWIZB_BACK = 1;
inline constexpr unsigned long PSWIZB_NEXT = 2;
inline constexpr unsigned long PSWIZB_FINISH = 4;          // in the place of Next
inline constexpr unsigned long PSWIZB_DISABLEDFINISH = 8;  // the same, and it cannot be pressed

// A page of a sheet. Its window text is the words of its tab. It belongs to its host, whoever ends first.
class TOV_CORE_API CPropertyPage : public CDialog {
    TOV_DYNCREATE(CPropertyPage, CDialog)
 public:
    CPropertyPage() = default;
    ~CPropertyPage() override;

    CPropertySheet* GetParentSheet() const { return m_sheet; }  // null for none

    // Tells that there is something to apply, or no longer. Apply can be pressed as long as that holds for a
    // page.
    void SetModified(int changed = 1);
    int IsModified() const { return m_isModified; }

    // Whether the sheet has had its window made, which it does when the page is to be shown first.
    int IsMade() const { return m_isMade != 0 && GetSafeHwnd(); }

    // Ends the sheet.
    void EndDialog(int result) override;

    // The sheet has turned to it. 0: it cannot be shown now, and the sheet goes on to the next one.
    virtual int OnSetActive() { return 1; }

    // It is to be left, for another page or by OK, Apply or Finish. 0: it stays.
    virtual int OnKillActive() { return 1; }

    // OK or Apply. 0: something is wrong; the sheet stays, and turns to this page. Here OnOK is called, which
    // takes back what SetModified told.
    virtual int OnApply();

    // Cancel. OnQueryCancel asks the page that is shown, and 0 keeps the sheet; OnReset, which calls OnCancel
    // here, then tells all pages.
    virtual int OnQueryCancel() { return 1; }
    virtual void OnReset();

    // The buttons of a wizard. 0 turns to the page beside, -1 stays, any other number is that of the page to
    // turn to (GetDlgCtrlID). OnWizardFinish: 0 keeps the wizard.
    virtual int OnWizardBack() { return 0; }
    virtual int OnWizardNext() { return 0; }
    virtual int OnWizardFinish() { return 1; }

 protected:
    void OnOK() override;
    void OnCancel() override {}

    // OK and Cancel are the sheet's, whoever asks for them.
    int OnCommand(WPARAM wParam, LPARAM lParam) override;

    // To be called by destructors that want the sheet to hear of it while they are whole.
    void LeaveSheet();

 private:
    friend class CPropertySheet;
    CPropertySheet* m_sheet = nullptr;
    int m_isModified = 0;
    int m_isMade = 0;
};

class TOV_CORE_API CPropertySheet : public CWnd {
    TOV_DYNCREATE(CPropertySheet, CWnd)
 public:
    CPropertySheet() = default;
    ~CPropertySheet() override;

    // Behind the others. A page has one sheet: adding it takes it out of another. Null and a page that is in
    // it change nothing.
    virtual void AddPage(CPropertyPage* page);

    // Takes it out and destroys its window; the object stays. If it is shown, the sheet turns to the next
    // one, or to the last.
    virtual void RemovePage(CPropertyPage* page);
    void RemovePage(int index) { RemovePage(GetPage(index)); }

    int GetPageCount() const { return static_cast<int>(m_pages.size()); }
    CPropertyPage* GetPage(int index) const;            // null out of range
    int GetPageIndex(CPropertyPage const* page) const;  // -1 where it is none of them
    CPropertyPage* GetActivePage() const { return GetPage(m_active); }

    // -1 for none. Before the sheet has a window, the page that it is to begin with.
    int GetActiveIndex() const { return GetPage(m_active) != nullptr ? m_active : -1; }

    // Turns to a page: the one that is shown is asked, the new one is made if it was never seen, and told;
    // one that cannot be shown is passed over in the direction of the move. Answers whether the page is shown
    // afterwards. 0 also out of range.
    int SetActivePage(int index);
    int SetActivePage(CPropertyPage* page) { return SetActivePage(GetPageIndex(page)); }

    // The page to begin with, also before it is added; past the last one it is that.
    void SetFirstPage(int index);

    // A wizard leads through its pages by Back, Next and Finish and has no tabs. To be said before the sheet
    // has a window.
    void SetWizardMode(int isWizard = 1) { m_isWizard = isWizard; }
    int IsWizard() const { return m_isWizard; }

    // Which buttons of a wizard can be pressed, PSWIZB_ bits.
    unsigned long GetShownWizardButtons() const { return m_wizardButtons; }

    // Shows it and answers what it ends with. -1 where it cannot be shown.
    virtual int DoModal() { return -1; }

    // Ends it with a number. The object stays.
    virtual void EndDialog(int /*result*/) {}

    // The window that it belongs to; null for none.
    virtual CWnd* GetOwner() const { return GetParent(); }

    // What OK, Apply, Cancel, Back, Next and Finish do (IDOK, ID_APPLY_NOW, IDCANCEL, ID_WIZBACK ...), the
    // commands of the same numbers. Answers 0 where that is none of them, or a button that the sheet does not
    // have: Apply in a wizard, Next in none. A wizard takes IDOK for the button that Enter presses in it.
    int PressButton(int id);

    // Whether a page's OnApply comes of PressButton, and not of a call of somebody else.
    int IsApplying() const { return m_isApplying; }

    int OnCommand(WPARAM wParam, LPARAM lParam) override;
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;

    // To be called when the buttons stand, in each of the sheet's lives: has OnInitDialog called, and answers
    // what that answers.
    int InitDialog();

 protected:
    // The sheet is there, and not shown yet. Here the first page, or the one that was chosen, is turned to.
    // 0: the host has given the focus to a control by itself.
    virtual int OnInitDialog();

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    // What a toolkit does for it. A page that is to be shown first gets its window: 0 where it cannot have
    // one, and then it is passed over. The page is the one to be seen now, -1 for none.
    virtual int CreatePage(CPropertyPage& page) { return page.GetSafeHwnd() ? 1 : 0; }
    virtual void ShowPage(int /*index*/) {}
    virtual void PageAdded(int /*index*/) {}
    virtual void PageRemoved(CPropertyPage& /*page*/, int /*index*/) {}
    virtual void PagesApplied() {}  // all of them, by OK or Apply
    virtual void ShowWizardButtons(unsigned long /*buttons*/) {}

    // Whether the user cannot turn to it.
    virtual int IsPageHidden(int /*index*/) const { return 0; }

    // The sheet has no window any more, and no page is shown; the next life begins with the same page.
    void EndPages();

    void SetShownWizardButtons(unsigned long buttons);

    // Whether Apply may be pressed at all; it may at first.
    void AllowApply(int allow);
    void UpdateApply();

 private:
    friend class CPropertyPage;
    friend class CTovSheetExtensions;

    void Forget(CPropertyPage& page, bool isWhole);
    int Make(CPropertyPage& page);
    int Turn(int index, int step, CPropertyPage const* back);
    int SetActive(CPropertyPage& page);
    int ApplyAll();
    void PressOk();
    void PressApply();
    void PressCancel();
    void PressStep(int step);
    void PressFinish();
    int PageOfId(int id) const;

    std::vector<CPropertyPage*> m_pages;
    int m_active = 0;
    int m_first = 0;
    int m_isShown = 0;  // a page is, or was, turned to
    int m_isWizard = 0;
    int m_isApplying = 0;
    int m_isApplyAllowed = 1;
    int m_turns = 0;  // so far
    unsigned long m_wizardButtons = PSWIZB_BACK | PSWIZB_NEXT;
    std::shared_ptr<void const> m_life = std::make_shared<char>();
};

}  // namespace tov
