#include <tov310/sheet_container.h>

#include "frame/handle_of.h"
#include "frame/resource_module.h"

#include <tov310/input_control.h>
#include <tov310/messages.h>
#include <tov310/styles.h>

#include <initializer_list>

namespace tov {
namespace {

constexpr unsigned wordsOfEmptyPageField = 26079;

bool Contains(CRect const& rect, CPoint const& point) {
    return rect.left <= point.x && point.x < rect.right && rect.top <= point.y && point.y < rect.bottom;
}

// The button, one of those that need all fields, that cannot be pressed at a place of the window; 0 for none.
unsigned DisabledButtonAt(CWnd const& window, CPoint const& place) {
    CPoint const onScreen = window.ClientToScreen(place);
    for (int const id : {IDOK, ID_APPLY_NOW, ID_WIZFINISH}) {
        CWnd const* const button = CWnd::FromHandlePermanent(window.GetDlgItem(id));
        if (button == nullptr || (button->GetStyle() & WS_VISIBLE) == 0) continue;
        if ((button->GetStyle() & WS_DISABLED) != 0 && Contains(button->GetWindowRect(), onScreen))
            return static_cast<unsigned>(id);
    }
    return 0;
}

}  // namespace

CTovSheetContainer::CTovSheetContainer(CPropertySheet* sheet, CTovSheetExtensions* extensions)
    : CTovInputControlContainer(sheet), m_sheet(*sheet), m_extensions(*extensions) {}

CTovHostContainer* CTovSheetContainer::PageAt(int index) const {
    CPropertyPage* const page = m_sheet.GetPage(index);
    return page != nullptr && page->IsMade() != 0 ? CTovHostContainer::Of(page) : nullptr;
}

CTovHostContainer* CTovSheetContainer::PageOf(unsigned long data) const {
    return data != 0 ? PageAt(static_cast<int>(data) - 1) : nullptr;
}

// Calls ask(page) for the page that is shown and then for the others with a tab, until it answers true.
// Answers the index of that page, or -1.
template <class Ask>
int CTovSheetContainer::AskPages(Ask&& ask) {
    HWND const self = m_sheet.GetSafeHwnd();
    int const active = m_sheet.GetActiveIndex();
    for (int i = -1; i < m_sheet.GetPageCount(); ++i) {
        int const index = i < 0 ? active : i;
        if (i >= 0 && (i == active || m_extensions.Tabs().IsHidden(static_cast<unsigned>(i)) != 0)) continue;
        CTovHostContainer* const page = PageAt(index);
        if (page != nullptr && ask(*page, *m_sheet.GetPage(index))) return index;
        if (!IsWindow(self)) return -1;
    }
    return -1;
}

int CTovSheetContainer::FocusIsBlocked() {
    HWND const self = m_sheet.GetSafeHwnd();
    if (!IsWindow(self)) return 0;
    if (AskPages([](CTovHostContainer& page, CPropertyPage&) { return page.FocusIsBlocked() != 0; }) >= 0)
        return 1;
    return IsWindow(self) ? CTovInputControlContainer::FocusIsBlocked() : 0;
}

CWnd* CTovSheetContainer::ValidateAllDlgCtrls(int ignoreEmpty, int command, unsigned long& data,
                                              CString& message) {
    HWND const self = m_sheet.GetSafeHwnd();
    CWnd* failing = nullptr;
    bool const stops = command == ID_WIZNEXT;
    CPropertyPage const* const shown = m_sheet.GetActivePage();
    int const page = AskPages([&](CTovHostContainer& asked, CPropertyPage& which) {
        if (stops && &which != shown) return true;
        unsigned long inPage = 0;
        failing = asked.ValidateAllDlgCtrls(ignoreEmpty, command, inPage, message);
        return failing != nullptr;
    });
    data = page >= 0 && failing != nullptr ? static_cast<unsigned long>(page) + 1 : 0;
    if (failing != nullptr || stops || !IsWindow(self)) return failing;
    unsigned long ofItem = 0;
    return CTovInputControlContainer::ValidateAllDlgCtrls(ignoreEmpty, command, ofItem, message);
}

CWnd* CTovSheetContainer::GetFirstEmptyDlgItem(unsigned long& data) {
    HWND const self = m_sheet.GetSafeHwnd();
    CWnd* empty = nullptr;
    int const page = AskPages([&empty](CTovHostContainer& asked, CPropertyPage&) {
        unsigned long inPage = 0;
        empty = asked.GetFirstEmptyDlgItem(inPage);
        return empty != nullptr;
    });
    data = page >= 0 ? static_cast<unsigned long>(page) + 1 : 0;
    if (empty != nullptr || !IsWindow(self)) return empty;
    unsigned long ofItem = 0;
    return CTovInputControlContainer::GetFirstEmptyDlgItem(ofItem);
}

void CTovSheetContainer::OnDlgCtrlEmptyChanged(unsigned int id, int empty) {
    unsigned long data = 0;
    // One on a page without a tab does not count.
    int const counts = empty != 0 && GetFirstEmptyDlgItem(data) != nullptr;
    CTovInputControlContainer::OnDlgCtrlEmptyChanged(id, counts);
}

int CTovSheetContainer::OnDlgItemGainFocus(HWND window) {
    HWND const self = m_sheet.GetSafeHwnd();
    if (CTovInputControlContainer::OnDlgItemGainFocus(window) == 0 || !IsWindow(self)) return 0;
    CTovHostContainer* const page = PageAt(m_sheet.GetActiveIndex());
    return page == nullptr || page->OnDlgItemGainFocus(window) != 0;
}

void CTovSheetContainer::OnPrepareShowValidationText(HWND, unsigned int, unsigned long data, CString*) {
    if (data != 0) m_sheet.SetActivePage(static_cast<int>(data) - 1);
}

void CTovSheetContainer::OnShowValidationText(HWND window, unsigned int id, unsigned long data,
                                              CString* message) {
    if (data != 0) m_sheet.SetActivePage(static_cast<int>(data) - 1);
    // The words for a control of the sheet itself are shown by the page beside it.
    CTovHostContainer* const page = data != 0 ? PageOf(data) : PageAt(m_sheet.GetActiveIndex());
    if (page != nullptr) page->OnShowValidationText(window, id, 0, message);
}

void CTovSheetContainer::OnHideValidationText() {
    for (int i = 0; i < m_sheet.GetPageCount(); ++i) {
        if (CTovHostContainer* const page = PageAt(i)) page->OnHideValidationText();
    }
}

void CTovSheetContainer::OnEmptyFieldsChanged(int) {
    m_extensions.EnableOkButton();
}

void CTovSheetContainer::BeginSheet() {
    if (m_wasHooked != 0) UnhookAllDlgCtrls();
    m_wasHooked = 1;
    HookContainer();
}

void CTovSheetContainer::SheetIsReady() {
    // The pages guard what stands in them.
    if (m_hooksAll != 0) HookAllDlgCtrls(&CPropertyPage::classCPropertyPage);
    unsigned long data = 0;
    SetEmptyFields(GetFirstEmptyDlgItem(data) != nullptr);
    m_extensions.EnableOkButton();
}

void CTovSheetContainer::PagesChanged() {
    if (!IsWindow(m_sheet.GetSafeHwnd())) return;
    unsigned long data = 0;
    int const emptyFields = GetFirstEmptyDlgItem(data) != nullptr;
    if (emptyFields == GetEmptyFields()) return;
    SetEmptyFields(emptyFields);
    OnEmptyFieldsChanged(emptyFields);
}

int CTovSheetContainer::ShowsPagesAtOnce() const {
    return m_wasHooked != 0 && m_sheet.GetSafeHwnd();
}

void CTovSheetContainer::ShowOnce(CPropertyPage* page) {
    HWND const self = m_sheet.GetSafeHwnd();
    CPropertyPage const* const before = m_sheet.GetActivePage();
    TovSendMessage(self, WM_SETREDRAW, 0);
    m_extensions.MakePage(m_sheet.GetPageIndex(page));
    if (!IsWindow(self)) return;
    m_sheet.SetActivePage(m_sheet.GetPageIndex(before));
    TovSendMessage(self, WM_SETREDRAW, 1);
}

int CTovSheetContainer::EnableOkOfSheet(int quiet) {
    if (GetEmptyFields() == 0) return 1;
    HWND const self = m_sheet.GetSafeHwnd();
    unsigned long data = 0;
    CWnd* const empty = GetFirstEmptyDlgItem(data);
    if (empty == nullptr) {
        // The last one has gone without a word, with its page.
        SetEmptyFields(0);
        if (quiet == 0) m_extensions.EnableOkButton();
        return 1;
    }
    if (quiet != 0) return 0;
    HWND const handle = empty->GetSafeHwnd();
    CString words = LibraryString(wordsOfEmptyPageField);
    OnPrepareShowValidationText(handle, 0, data, &words);
    if (CWnd* const control = CWnd::FromHandlePermanent(handle)) control->SetFocus();
    // A wrong field that has kept the focus tells of itself.
    if (IsWindow(self) && FocusIsBlocked() == 0) OnShowValidationText(handle, 0, data, &words);
    return 0;
}

void CTovSheetContainer::OnSheetMessage(unsigned message, LPARAM lParam) {
    if (message != WM_LBUTTONDOWN) return;
    if (unsigned const id = DisabledButtonAt(m_sheet, TovPointOf(lParam))) OnDisabledOkButtonClicked(id);
}

void CTovSheetContainer::OnDisabledOkButtonClicked(unsigned) {
    HWND const sheet = m_sheet.GetSafeHwnd();
    CPropertyPage const* const shown = m_sheet.GetActivePage();
    int const refusing = AskPages([shown](CTovHostContainer& asked, CPropertyPage& page) {
        HWND const self = page.GetSafeHwnd();
        if (&page == shown) {
            HWND const control = asked.GetWndTopmostFocus();
            CString words;
            LRESULT const state =
                TovSendMessage(control, WM_TOV_INPUT_CONTROL_VALIDATE, reinterpret_cast<WPARAM>(&words));
            if (!IsWindow(self)) return true;
            if (state != CTovInputControl::eStateValid) {
                if (state == CTovInputControl::eStateEmpty) words = LibraryString(wordsOfEmptyPageField);
                // The focus may be on the tabs.
                if (CWnd* const field = CWnd::FromHandlePermanent(control)) field->SetFocus();
                if (!IsWindow(self)) return true;
                asked.OnShowValidationText(control, 0, 0, &words);
                return true;
            }
        }
        CTovOkHost* const host = CTovOkHost::Of(&page);
        return host != nullptr && host->OnEnableOkButton(0) == 0;
    });
    // A control of the sheet itself.
    if (refusing < 0 && IsWindow(sheet)) m_extensions.OnEnableOkButton(0);
}

}  // namespace tov
