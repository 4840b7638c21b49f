#include <tov310/property_sheet.h>

#include <tov310/application.h>
#include <tov310/messages.h>

#include <algorithm>
#include <utility>

namespace tov {
namespace {

constexpr unsigned firstCommandBeyondSheets = 0x8000;

}  // namespace

CPropertyPage::~CPropertyPage() {
    LeaveSheet();
}

void CPropertyPage::LeaveSheet() {
    if (m_sheet != nullptr) m_sheet->Forget(*this, false);
}

void CPropertyPage::SetModified(int changed) {
    m_isModified = changed != 0;
    if (m_sheet != nullptr) m_sheet->UpdateApply();
}

void CPropertyPage::EndDialog(int result) {
    if (m_sheet != nullptr) m_sheet->EndDialog(result);
}

int CPropertyPage::OnApply() {
    OnOK();
    return 1;
}

void CPropertyPage::OnReset() {
    OnCancel();
}

void CPropertyPage::OnOK() {
    SetModified(0);
}

int CPropertyPage::OnCommand(WPARAM wParam, LPARAM lParam) {
    unsigned const id = TovCommandOf(wParam);
    if (TovNotificationOf(wParam) != BN_CLICKED || (id != IDOK && id != IDCANCEL))
        return CDialog::OnCommand(wParam, lParam);
    if (m_sheet != nullptr) TovSendMessage(m_sheet->GetSafeHwnd(), WM_COMMAND, wParam, lParam);
    return 1;
}

CPropertySheet::~CPropertySheet() {
    for (CPropertyPage* const page : m_pages)
        page->m_sheet = nullptr;
}

CPropertyPage* CPropertySheet::GetPage(int index) const {
    return index >= 0 && index < GetPageCount() ? m_pages[static_cast<std::size_t>(index)] : nullptr;
}

int CPropertySheet::GetPageIndex(CPropertyPage const* page) const {
    auto const found = std::ranges::find(m_pages, page);
    return found != m_pages.end() ? static_cast<int>(found - m_pages.begin()) : -1;
}

int CPropertySheet::PageOfId(int id) const {
    auto const found =
        std::ranges::find_if(m_pages, [id](CPropertyPage const* page) { return page->GetDlgCtrlID() == id; });
    return found != m_pages.end() ? static_cast<int>(found - m_pages.begin()) : -1;
}

void CPropertySheet::AddPage(CPropertyPage* page) {
    if (page == nullptr || page->m_sheet == this) return;
    if (page->m_sheet != nullptr) page->m_sheet->RemovePage(page);
    m_pages.push_back(page);
    page->m_sheet = this;
    std::weak_ptr<void const> const life = m_life;
    PageAdded(GetPageCount() - 1);
    if (!life.expired() && m_isShown != 0 && m_active < 0) Turn(0, 1, nullptr);
}

void CPropertySheet::RemovePage(CPropertyPage* page) {
    if (page == nullptr || page->m_sheet != this) return;
    std::weak_ptr<void const> const life = m_life;
    if (m_isShown != 0 && GetActivePage() == page) page->OnKillActive();
    if (life.expired() || GetPageIndex(page) < 0) return;
    Forget(*page, true);
}

// Of a page that is not whole any more nothing but its object is left.
void CPropertySheet::Forget(CPropertyPage& page, bool isWhole) {
    std::weak_ptr<void const> const life = m_life;
    int const index = GetPageIndex(&page);
    m_pages.erase(m_pages.begin() + index);
    page.m_sheet = nullptr;
    page.m_isMade = 0;
    bool const wasActive = index == m_active && m_isShown != 0;
    if (wasActive)
        m_active = -1;
    else if (index < m_active || (index == m_active && m_active > 0 && m_active == GetPageCount()))
        --m_active;
    PageRemoved(page, index);
    if (isWhole) page.DestroyWindow();
    if (life.expired()) return;
    if (wasActive && m_active < 0 && Turn(index, 1, nullptr) == 0 && !life.expired() && m_active < 0)
        Turn(std::min(index, GetPageCount()) - 1, -1, nullptr);
    if (!life.expired()) UpdateApply();
}

// 1 as soon as it has its window.
int CPropertySheet::Make(CPropertyPage& page) {
    if (page.IsMade() != 0) return 1;
    std::weak_ptr<void const> const life = m_life;
    if (CreatePage(page) == 0 || life.expired() || GetPageIndex(&page) < 0) return 0;
    page.m_isMade = 1;
    return 1;
}

int CPropertySheet::SetActive(CPropertyPage& page) {
    std::weak_ptr<void const> const life = m_life;
    if (Make(page) == 0 || life.expired()) return 0;
    int const index = GetPageIndex(&page);
    m_active = index;
    return page.OnSetActive();
}

// Turns to the page or, where that cannot be shown, to the first one from there on that can; else back to the
// one that was shown before. Answers whether it is shown where the caller wanted, which is not so as soon as
// somebody who is asked turns elsewhere.
int CPropertySheet::Turn(int index, int step, CPropertyPage const* back) {
    std::weak_ptr<void const> const life = m_life;
    int const turn = ++m_turns;
    CPropertyPage const* const wanted = GetPage(index);
    bool goesBack = false;
    for (CPropertyPage* page = GetPage(index); page != nullptr; page = GetPage(index)) {
        if (!goesBack && page != wanted && IsPageHidden(index) != 0) {
            index += step;
            continue;
        }
        int const isSet = SetActive(*page);
        if (life.expired()) return 0;
        if (m_turns != turn) return GetActivePage() == wanted;
        int const now = GetPageIndex(page);
        m_active = -1;
        if (now >= 0 && (isSet != 0 || goesBack)) {
            m_active = now;
            ShowPage(now);
            return page == wanted;
        }
        if (now >= 0)
            index = now + step;
        else if (step < 0)
            --index;
        if (GetPage(index) != nullptr || goesBack || back == nullptr) continue;
        goesBack = true;
        index = GetPageIndex(back);
    }
    if (m_turns == turn) {
        m_active = -1;
        ShowPage(-1);
    }
    return 0;
}

int CPropertySheet::OnInitDialog() {
    if (std::exchange(m_isShown, 1) != 0) return 1;
    int const first = std::clamp(std::exchange(m_active, -1), 0, std::max(GetPageCount() - 1, 0));
    std::weak_ptr<void const> const life = m_life;
    Turn(first, 1, nullptr);
    if (!life.expired() && m_active < 0) Turn(first - 1, -1, nullptr);
    return 1;
}

int CPropertySheet::InitDialog() {
    return static_cast<int>(TovSendMessage(GetSafeHwnd(), WM_INITDIALOG));
}

LRESULT CPropertySheet::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    return message == WM_INITDIALOG ? OnInitDialog() : CWnd::WindowProc(message, wParam, lParam);
}

void CPropertySheet::SetFirstPage(int index) {
    m_first = index;
    if (m_isShown == 0) m_active = index;
}

void CPropertySheet::EndPages() {
    for (CPropertyPage* const page : m_pages)
        page->m_isMade = 0;
    m_isShown = 0;
    m_active = m_first;
}

int CPropertySheet::SetActivePage(int index) {
    CPropertyPage* const wanted = GetPage(index);
    if (wanted == nullptr) return 0;
    if (m_isShown == 0) SetFirstPage(index);
    if (index == m_active) return 1;
    CPropertyPage* const before = GetActivePage();
    std::weak_ptr<void const> const life = m_life;
    int const turn = m_turns;
    int const mayLeave = before == nullptr || before->OnKillActive() != 0;
    if (life.expired()) return 0;
    if (mayLeave == 0 || m_turns != turn) {
        if (m_turns == turn) ShowPage(m_active);  // the tabs may be ahead
        return GetActivePage() == wanted;
    }
    return Turn(GetPageIndex(wanted), index > m_active ? 1 : -1, before);
}

int CPropertySheet::ApplyAll() {
    std::weak_ptr<void const> const life = m_life;
    if (CPropertyPage* const active = GetActivePage(); active != nullptr && active->OnKillActive() == 0)
        return 0;
    if (life.expired()) return 0;
    std::vector<CPropertyPage*> const pages = m_pages;
    for (CPropertyPage* const page : pages) {
        if (GetPageIndex(page) < 0 || page->IsMade() == 0) continue;
        m_isApplying = 1;
        int const isApplied = page->OnApply();
        if (life.expired()) return 0;
        m_isApplying = 0;
        if (isApplied != 0) continue;
        if (int const wrong = GetPageIndex(page); wrong >= 0) Turn(wrong, 1, GetActivePage());
        return 0;
    }
    for (CPropertyPage* const page : m_pages)
        page->m_isModified = 0;
    UpdateApply();
    PagesApplied();
    return life.expired() ? 0 : 1;
}

void CPropertySheet::PressOk() {
    if (ApplyAll() != 0) EndDialog(IDOK);
}

void CPropertySheet::PressApply() {
    if (ApplyAll() == 0) return;
    if (CPropertyPage* const active = GetActivePage()) active->OnSetActive();
}

void CPropertySheet::PressCancel() {
    std::weak_ptr<void const> const life = m_life;
    if (CPropertyPage* const active = GetActivePage(); active != nullptr && active->OnQueryCancel() == 0)
        return;
    if (life.expired()) return;
    std::vector<CPropertyPage*> const pages = m_pages;
    for (CPropertyPage* const page : pages) {
        if (GetPageIndex(page) >= 0 && page->IsMade() != 0) page->OnReset();
        if (life.expired()) return;
    }
    EndDialog(IDCANCEL);
}

void CPropertySheet::PressStep(int step) {
    CPropertyPage* const active = GetActivePage();
    if (active == nullptr) return;
    std::weak_ptr<void const> const life = m_life;
    int const answer = step > 0 ? active->OnWizardNext() : active->OnWizardBack();
    if (life.expired() || answer == -1) return;
    SetActivePage(answer != 0 ? PageOfId(answer) : m_active + step);
}

void CPropertySheet::PressFinish() {
    CPropertyPage* const active = GetActivePage();
    std::weak_ptr<void const> const life = m_life;
    if (active != nullptr) {
        if (active->OnKillActive() == 0 || life.expired()) return;
        if (GetActivePage() != active) return;
        int const isFinished = active->OnWizardFinish();
        if (life.expired()) return;
        if (isFinished == 0) {
            if (GetActivePage() == active) active->OnSetActive();
            return;
        }
    }
    EndDialog(ID_WIZFINISH);
}

int CPropertySheet::PressButton(int id) {
    if (id == IDCANCEL) {
        PressCancel();
        return 1;
    }
    if (m_isWizard == 0) {
        if (id == IDOK)
            PressOk();
        else if (id == ID_APPLY_NOW)
            PressApply();
        return id == IDOK || id == ID_APPLY_NOW;
    }
    bool const isLast = (m_wizardButtons & (PSWIZB_FINISH | PSWIZB_DISABLEDFINISH)) != 0;
    if (id == IDOK) id = isLast ? ID_WIZFINISH : ID_WIZNEXT;
    if (id == ID_WIZBACK) {
        if ((m_wizardButtons & PSWIZB_BACK) != 0) PressStep(-1);
    } else if (id == ID_WIZNEXT) {
        if (!isLast && (m_wizardButtons & PSWIZB_NEXT) != 0) PressStep(1);
    } else if (id == ID_WIZFINISH) {
        if ((m_wizardButtons & PSWIZB_FINISH) != 0) PressFinish();
    } else {
        return 0;
    }
    return 1;
}

void CPropertySheet::SetShownWizardButtons(unsigned long buttons) {
    m_wizardButtons = buttons;
    ShowWizardButtons(buttons);
}

void CPropertySheet::AllowApply(int allow) {
    m_isApplyAllowed = allow;
    UpdateApply();
}

void CPropertySheet::UpdateApply() {
    if (!GetSafeHwnd()) return;
    bool const isModified = std::ranges::any_of(m_pages, [](auto* page) { return page->m_isModified != 0; });
    if (CWnd* const apply = CWnd::FromHandlePermanent(GetDlgItem(ID_APPLY_NOW)))
        apply->EnableWindow(m_isApplyAllowed != 0 && isModified);
}

int CPropertySheet::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (TovNotificationOf(wParam) == BN_CLICKED && PressButton(static_cast<int>(TovCommandOf(wParam))) != 0)
        return 1;
    return CWnd::OnCommand(wParam, lParam);
}

int CPropertySheet::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (CWnd::OnCmdMsg(id, code, extra, info) != 0) return 1;
    if (id < firstCommandBeyondSheets) return 0;
    CWnd* const owner = GetOwner();
    if (owner != nullptr && owner->OnCmdMsg(id, code, extra, info) != 0) return 1;
    CWinApp* const app = TovGetApp();
    return app != nullptr ? app->OnCmdMsg(id, code, extra, info) : 0;
}

}  // namespace tov
