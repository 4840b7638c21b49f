#include <tov310/sheet_extensions.h>

#include <tov310/hooks.h>
#include <tov310/messages.h>

#include <algorithm>

namespace tov {
namespace {

constexpr int placesOfButtons = 3;  // OK, Cancel and Apply

CString StringOf(HINSTANCE module, unsigned id) {
    CString text;
    TovLoadResourceString(module, id, text);
    return text;
}

}  // namespace

int CTovSheetTabs::IsHidden(unsigned page) const {
    return std::ranges::binary_search(m_hidden, page);
}

unsigned CTovSheetTabs::TabOf(unsigned page) const {
    return page - static_cast<unsigned>(std::ranges::lower_bound(m_hidden, page) - m_hidden.begin());
}

int CTovSheetTabs::Hide(unsigned page) {
    auto const place = std::ranges::lower_bound(m_hidden, page);
    if (place != m_hidden.end() && *place == page) return 0;
    m_hidden.insert(place, page);
    return 1;
}

int CTovSheetTabs::Show(unsigned page) {
    return std::erase(m_hidden, page) != 0;
}

void CTovSheetTabs::PageRemoved(unsigned page) {
    Show(page);
    for (unsigned& hidden : m_hidden) {
        if (hidden > page) --hidden;
    }
}

// Sees the commands of the sheet before the sheet does.
class CTovSheetExtensions::CSubclassSheet : public CTovSubclassWnd {
 public:
    explicit CSubclassSheet(CTovSheetExtensions& extensions) : m_extensions(extensions) {}

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        LRESULT answer = 0;
        if (message == WM_COMMAND && m_extensions.FilterCommand(wParam, answer) != 0) return answer;
        return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }

 private:
    CTovSheetExtensions& m_extensions;
};

CTovSheetExtensions::CTovSheetExtensions(CPropertySheet* sheet) : m_sheet(*sheet) {}

CTovSheetExtensions::~CTovSheetExtensions() = default;

int CTovSheetExtensions::HidePage(unsigned page, int hide) {
    if (m_isInitialized == 0 || IsWizardMode() != 0) return 0;
    if (page >= static_cast<unsigned>(m_sheet.GetPageCount())) return 0;
    int const isHidden = m_tabs.IsHidden(page);
    if ((hide != 0) == (isHidden != 0)) return isHidden;
    if (hide == 0) {
        m_tabs.Show(page);
        ShowTab(page, 1);
        return 1;
    }
    m_tabs.Hide(page);
    ShowTab(page, 0);
    if (m_sheet.GetActiveIndex() != static_cast<int>(page)) return 0;
    int const count = m_sheet.GetPageCount();
    for (int i = 1; i < count; ++i) {
        // Those behind it from the nearest on, then those before it.
        int const other = static_cast<int>(page) + i;
        int const next = other < count ? other : count - 1 - i;
        if (m_tabs.IsHidden(static_cast<unsigned>(next)) != 0) continue;
        m_sheet.SetActivePage(next);
        break;
    }
    return 0;
}

void CTovSheetExtensions::Enable(int id, int enable) const {
    if (CWnd* const button = CWnd::FromHandlePermanent(m_sheet.GetDlgItem(id))) button->EnableWindow(enable);
}

int CTovSheetExtensions::EnableOkButton() {
    int const ok = OnEnableOkButton(1);
    if (!m_sheet.GetSafeHwnd()) return ok;
    if (m_sheet.IsWizard() != 0) {
        if (m_isFinish != 0) {
            unsigned long const steps = m_sheet.m_wizardButtons & (PSWIZB_BACK | PSWIZB_NEXT);
            m_sheet.SetShownWizardButtons(steps | (ok != 0 ? PSWIZB_FINISH : PSWIZB_DISABLEDFINISH));
        }
        return ok;
    }
    Enable(IDOK, ok);
    m_sheet.AllowApply(ok);
    CPropertyPage* const first = m_sheet.GetPage(0);
    if (m_isApplyRemoved == 0 && first != nullptr && m_sheet.GetDlgItem(ID_APPLY_NOW)) first->SetModified(ok);
    return ok;
}

void CTovSheetExtensions::Remove(int& flag, int remove) {
    if (m_sheet.IsWizard() != 0) return;
    flag = remove != 0;
    if (m_isApplyRemoved != 0) m_handleApply = 0;
    if (m_isInitialized != 0) PlaceButtons();
}

// They stand at the right end, so that nothing moves where OK goes.
void CTovSheetExtensions::PlaceButtons() {
    if (m_sheet.IsWizard() != 0) return;
    std::pair<int, int> const buttons[] = {
        {ID_APPLY_NOW, m_isApplyRemoved}, {IDCANCEL, m_isCancelRemoved}, {IDOK, m_isOkRemoved}};
    int place = placesOfButtons;
    for (auto const& [id, isRemoved] : buttons)
        PlaceButton(id, isRemoved != 0 ? -1 : --place);
}

void CTovSheetExtensions::Rename(int id, char const* text) {
    if (m_isInitialized == 0 || m_sheet.IsWizard() != 0) return;
    if (CWnd* const button = CWnd::FromHandlePermanent(m_sheet.GetDlgItem(id))) button->SetWindowText(text);
}

void CTovSheetExtensions::RenameApplyButton(char const* text) {
    Rename(ID_APPLY_NOW, text);
}

void CTovSheetExtensions::RenameApplyButton(HINSTANCE module, unsigned id) {
    Rename(ID_APPLY_NOW, StringOf(module, id).c_str());
}

void CTovSheetExtensions::RenameCancelButton(char const* text) {
    Rename(IDCANCEL, text);
}

void CTovSheetExtensions::RenameCancelButton(HINSTANCE module, unsigned id) {
    Rename(IDCANCEL, StringOf(module, id).c_str());
}

void CTovSheetExtensions::RenameOKButton(char const* text) {
    Rename(IDOK, text);
}

void CTovSheetExtensions::RenameOKButton(HINSTANCE module, unsigned id) {
    Rename(IDOK, StringOf(module, id).c_str());
}

void CTovSheetExtensions::SetWizardButtons(unsigned long buttons) {
    if (m_sheet.IsWizard() == 0) return;
    m_isFinish = (buttons & (PSWIZB_FINISH | PSWIZB_DISABLEDFINISH)) != 0;
    m_sheet.SetShownWizardButtons(buttons);
    if (m_isFinish != 0) EnableOkButton();
}

void CTovSheetExtensions::SetDialogDocument(CTovPtrSmart<CTovDocument> const& document) {
    CTovPtrSmart<CTovDocument> const keep = document;
    if (m_document && m_document->Compare(keep.Get()) != 0) return;
    UnsetDialogDocument();
    m_document = keep;
    OnSetDialogDocument();
}

void CTovSheetExtensions::UnsetDialogDocument() {
    if (!m_document) return;
    OnUnsetDialogDocument();
    m_document = CTovPtrSmart<CTovDocument>();
}

void CTovSheetExtensions::TakeTab(int page) {
    CTovDialogExtensions* const extensions = CTovDialogExtensions::Of(m_sheet.GetPage(page));
    if (extensions != nullptr && m_document) extensions->SetDialogDocument(m_document);
}

void CTovSheetExtensions::OnSetDialogDocument() {
    for (int i = 0; i < m_sheet.GetPageCount(); ++i) {
        if (auto* const page = CTovDialogExtensions::Of(m_sheet.GetPage(i)))
            page->SetDialogDocument(m_document);
    }
}

void CTovSheetExtensions::OnUnsetDialogDocument() {
    for (int i = 0; i < m_sheet.GetPageCount(); ++i) {
        if (auto* const page = CTovDialogExtensions::Of(m_sheet.GetPage(i))) page->UnsetDialogDocument();
    }
}

int CTovSheetExtensions::OnEnableOkButton(int quiet) {
    for (int i = 0; i < m_sheet.GetPageCount(); ++i) {
        if (m_sheet.GetPage(i)->IsMade() == 0 || m_tabs.IsHidden(static_cast<unsigned>(i)) != 0) continue;
        CTovOkHost* const page = Of(m_sheet.GetPage(i));
        if (page != nullptr && page->OnEnableOkButton(quiet) == 0) return 0;
    }
    return 1;
}

void CTovSheetExtensions::InitSheet() {
    HWND const self = m_sheet.GetSafeHwnd();
    m_subclassSheet = std::make_unique<CSubclassSheet>(*this);
    m_subclassSheet->HookWindow(self);
    PlaceButtons();
    MakeAllPages();
    TovPostMessage(self, WM_TOV_POST_INITDIALOG);
}

int CTovSheetExtensions::OnSheetExtensionMessage(unsigned message) {
    if (message != WM_TOV_POST_INITDIALOG) return 0;
    OnPostInitDialog();
    return 1;
}

unsigned CTovSheetExtensions::GetNextFreeDlgItemID() const {
    return m_sheet.GetSafeHwnd() ? TovFindFreeDlgItemId(m_sheet) : 0;
}

// Shown once or, if it must not be, without that.
void CTovSheetExtensions::MakePage(int index) {
    CPropertySheet& sheet = m_sheet;
    HWND const self = sheet.GetSafeHwnd();
    if (sheet.SetActivePage(index) == 0 && IsWindow(self) != 0 && sheet.GetPage(index) != nullptr)
        sheet.Make(*sheet.GetPage(index));
}

void CTovSheetExtensions::MakeAllPages() {
    CPropertySheet& sheet = m_sheet;
    HWND const self = sheet.GetSafeHwnd();
    CPropertyPage const* const first = sheet.GetActivePage();
    for (int i = 0; IsWindow(self) != 0 && i < sheet.GetPageCount(); ++i)
        MakePage(i);
    if (IsWindow(self) == 0) return;
    m_isInitialized = 1;
    sheet.SetActivePage(sheet.GetPageIndex(first));
}

int CTovSheetExtensions::FilterCommand(WPARAM wParam, LRESULT& answer) {
    HWND const self = m_sheet.GetSafeHwnd();
    answer = 0;
    if (wParam == IDOK) {
        OnOkButtonClicked();
        if (IsWindow(self) == 0) return 1;
        if (m_isOkRemoved == 0 || m_isApplyRemoved != 0) return 0;
        answer = TovSendMessage(self, WM_COMMAND, ID_APPLY_NOW);
        return 1;
    }
    if (wParam != ID_APPLY_NOW || m_handleApply == 0) return 0;
    OnApplyButtonClicked();
    if (IsWindow(self) == 0) return 1;
    // Each page may take others out.
    std::vector<CPropertyPage*> pages;
    CPropertyPage* const active = m_sheet.GetActivePage();
    if (active != nullptr) pages.push_back(active);
    for (int i = 0; i < m_sheet.GetPageCount(); ++i) {
        if (m_sheet.GetPage(i) != active) pages.push_back(m_sheet.GetPage(i));
    }
    bool isApplied = true;
    for (CPropertyPage* const page : pages) {
        if (m_sheet.GetPageIndex(page) < 0 || page->IsMade() == 0) continue;
        isApplied &= page->OnApply() != 0;
        if (IsWindow(self) == 0) return 1;
    }
    if (isApplied) m_sheet.PagesApplied();
    return 1;
}

int CTovSheetExtensions::ApplyPage(CPropertyPage& page) {
    CPropertySheet* const sheet = page.GetParentSheet();
    if (sheet == nullptr) return 0;
    CTovSheetExtensions* const own = OfSheet(sheet);
    if (own == nullptr) return page.CPropertyPage::OnApply();
    if (own->m_handleApply == 0 && sheet->IsApplying() == 0) return 0;
    std::weak_ptr<void const> const life = sheet->m_life;
    if (own->EnableOkButton() == 0 || life.expired()) return 0;
    int const isApplied = page.CPropertyPage::OnApply();
    return life.expired() || own->m_handleApply != 0 ? isApplied : 1;
}

}  // namespace tov
