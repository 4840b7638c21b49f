// The content of an edit and the way it is shown. edit_text_filter.cpp says
// which characters come in, edit_text_actions.cpp holds what the user can do.
#include <tov310/edit_text.h>

#include <tov310/edit_host.h>
#include <tov310/messages.h>
#include <tov310/requirements.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "frame/handle_of.h"
#include "util/code_points.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace tov {
namespace {

// By name, since the classes of the screen stand above.
bool IsOfClass(CWnd const& window, std::initializer_list<std::string_view> names) {
    for (CRuntimeClass const* c = window.GetRuntimeClass(); c != nullptr; c = c->m_pBaseClass) {
        if (std::ranges::find(names, std::string_view(c->m_lpszClassName)) != names.end()) return true;
    }
    return false;
}

// The list of values takes ";" for the end of what it compares.
CString EscapedItem(std::string_view text) {
    CString escaped;
    for (; !text.empty(); text.remove_prefix(1)) {
        bool const looksEscaped = text.starts_with("%3B") || text.starts_with("%25");
        escaped += text.front() == ';' ? "%3B" : looksEscaped ? "%25" : text.substr(0, 1);
    }
    return escaped;
}

CString UnescapedItem(std::string_view entry) {
    entry = entry.substr(0, entry.find(';'));
    CString text;
    while (!entry.empty()) {
        bool const isBreak = entry.starts_with("%3B");
        bool const isEscape = isBreak || entry.starts_with("%25");
        text += isBreak ? ';' : entry.front();
        entry.remove_prefix(isEscape ? 3 : 1);
    }
    return text;
}

}  // namespace

int& CTovEditSettings::DefaultTrimLeft() {
    static int trim = 1;
    return trim;
}

int& CTovEditSettings::DefaultTrimRight() {
    static int trim = 1;
    return trim;
}

int& CTovEditSettings::DefaultReadOnlyKeepsFocus() {
    static int keeps = 0;
    return keeps;
}

CTovEditText::CTovEditText(CTovEditHost& host)
    : m_host(host), m_current(std::make_unique<CTovEditUndoRedoItem>()) {
    host.m_text = this;
}

CTovEditText::~CTovEditText() = default;

bool CTovEditText::HasWindow() const {
    return IsWindow(HandleOf(m_host.InputControl().GetWnd())) != 0;
}

void CTovEditText::InitializeEdit() {
    CTovInputControl& control = m_host.InputControl();
    m_rawString.clear();
    m_rawEmpty = 1;
    control.SetChangedByUser(0);
    control.HookControl();

    CWnd* const window = control.GetWnd();
    CWnd const* parent = window != nullptr ? window->GetParent() : nullptr;
    // A switched edit is the place of this one in the form.
    if (parent != nullptr && IsOfClass(*parent, {"CTovEditSwitched"})) parent = parent->GetParent();
    m_parentIsDialog = parent != nullptr && IsOfClass(*parent, {"CDialog", "CPropertyPage", "CFileDialog"});
    m_parentIsFormView = parent != nullptr && IsOfClass(*parent, {"CFormView"});
    m_parentIsEdit = parent != nullptr && IsOfClass(*parent, {"CTovEdit"});
    unsigned long const style = window != nullptr ? window->GetStyle() : 0;
    if ((style & ES_READONLY) != 0 || control.GetReadOnlyMode() != 0) control.SetReadOnlyMode(1);
    m_host.EnableCompanions(control.GetReadOnlyMode() == 0);
    m_host.PrepareColors();
    m_host.LimitTextValue();
    m_current = NewUndoRedoItem();
    m_undoRedo.Empty();

    if (m_lastItemsFile.empty()) m_lastItems.IniFile(nullptr);
    if (m_lastItemsSection.empty() && window != nullptr) {
        // So a list belongs to one field of one form.
        CString section = parent != nullptr ? parent->GetRuntimeClass()->m_lpszClassName : "";
        section.append("::").append(window->GetRuntimeClass()->m_lpszClassName).append("::");
        SetLastItemsSection(section.append(std::to_string(window->GetDlgCtrlID())).c_str());
    }
    m_selectAllAtNextFocus = 1;
}

int CTovEditText::ResetAttributes() {
    if (HasWindow() || m_host.InputControl().CTovInputControl::ResetAttributes() == 0) return 0;
    settings = {};
    SetLastItemsIniFile(nullptr);
    SetLastItemsSection(nullptr);
    m_ignoreEditChanged = 0;
    m_ignoreKillFocusAction = 0;
    m_selectAllAtNextFocus = 1;
    m_host.DeleteEditButton();
    m_host.DeleteSpinButton();
    companions = {};
    return 1;
}

int CTovEditText::SetReadOnlyMode(int readOnly) {
    CTovInputControl& control = m_host.InputControl();
    control.CTovInputControl::SetReadOnlyMode(readOnly);
    if (!HasWindow()) return 1;
    bool const isReadOnly = (control.GetWnd()->GetStyle() & ES_READONLY) != 0;
    if (isReadOnly != (readOnly != 0)) {
        bool const disables = readOnly != 0 && settings.readOnlyKeepsFocus == 0 && TovIsComCtlXP() != 0;
        m_host.ApplyReadOnly(readOnly, !disables);
    }
    m_host.EnableCompanions(readOnly == 0);
    return 1;
}

int CTovEditText::IsPassword() const {
    CWnd const* const window = m_host.InputControl().GetWnd();
    return window != nullptr && (window->GetStyle() & ES_PASSWORD) != 0;
}

LRESULT CTovEditText::DialogCode() const {
    if (m_host.InputControl().IsInline() == 0 && m_parentIsEdit == 0) return 0;
    bool const isAmongNone = m_parentIsDialog == 0 && m_parentIsFormView == 0 && m_parentIsEdit == 0;
    return isAmongNone ? DLGC_WANTALLKEYS : DLGC_WANTTAB;
}

int CTovEditText::ControlOrChildHasFocus() const {
    CWnd const* const window = m_host.InputControl().GetWnd();
    HWND const focus = TovGetFocus();
    return HandleOf(window) && focus && (focus == window->GetSafeHwnd() || window->IsChild(focus) != 0);
}

int CTovEditText::IsEmpty() const {
    CString text = m_host.InputControl().GetRawString();
    m_host.TrimString(text, 1);
    return text.empty();
}

void CTovEditText::Empty() {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_host.InputControl());
    m_host.InputControl().SetChangedByUser(0);
    SetRawString({});
    ShowText({});
    RefreshUndoRedoItem();
}

int CTovEditText::SetString(CString const& text) {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_host.InputControl());
    if (text != m_rawString) m_host.AddPreviousToUndoRedo();
    SetRawString(text);
    m_host.InputControl().SetChangedByUser(0);
    m_host.ShowValue();
    RefreshUndoRedoItem();
    return 1;
}

void CTovEditText::SetRawString(CString const& text) {
    m_rawString = text;
    m_rawEmpty = text.empty();
}

void CTovEditText::AdoptWindowText() {
    m_shown = m_host.GetEditText();
    SetRawString(m_shown);
    RefreshUndoRedoItem();
}

void CTovEditText::OnEditChanged() {
    if (m_host.IgnoreEditChanged() != 0) return;
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_host.InputControl());
    m_shown = m_host.GetEditText();
    SetRawString(m_shown);
    m_host.InputControl().SetChangedByUser(1);
    if (m_settingInternally == 0) m_host.AddPreviousToUndoRedo();
    RefreshUndoRedoItem();
}

void CTovEditText::ShowText(CString const& text) {
    CTovEditHost::CTovIgnoreEditChange const scope(m_host);
    // The same text again would move the caret.
    if (m_host.GetEditText() != text) m_host.SetEditText(text);
    m_shown = text;
}

// Writes first and tells then, so that whoever is told finds text and selection
// as they shall be.
void CTovEditText::ChangeText(CString const& text, Selection const& selection) {
    bool const tells = m_host.IgnoreEditChanged() == 0;
    ShowText(text);
    m_host.SetEditSel(selection.start, selection.end);
    if (!tells) return;
    CWnd const* const window = m_host.InputControl().GetWnd();
    auto const id = static_cast<unsigned>(window != nullptr ? window->GetDlgCtrlID() : 0);
    if (m_trimming != 0) return m_host.OnEditChanged(id);  // nothing that anybody has done
    m_host.TellEditChanged(id);
}

void CTovEditText::InternalSetWindowTextNoTrimNoUndoRedo(char const* text) {
    CTovEditHost::CTovKeepFlag const keep(&m_settingInternally);
    m_settingInternally = 1;
    CString const written = text != nullptr ? text : "";
    auto const length = static_cast<int>(CharacterCount(written));
    Selection const before = GetSel();
    ChangeText(written, {std::min(before.start, length), std::min(before.end, length)});
}

void CTovEditText::ShowValue() {
    if (m_insideShowValue != 0) return;
    CTovEditHost::CTovKeepFlag const keep(&m_insideShowValue);
    m_insideShowValue = 1;
    bool const isReadOnly = m_host.InputControl().GetReadOnlyMode() != 0;
    if (!m_host.GetDisplayFormat().empty() && (isReadOnly || m_host.ControlOrChildHasFocus() == 0)) {
        m_host.ShowDisplayValue();
    } else {
        m_host.ShowInputValue();
    }
}

void CTovEditText::OnFormatChanged() {
    if (!HasWindow() || m_host.ControlOrChildHasFocus() != 0) return;
    m_host.LimitTextValue();
    m_host.ShowValue();
}

void CTovEditText::LimitTextValue() {
    bool const isReadOnly = m_host.InputControl().GetReadOnlyMode() != 0;
    if (m_host.GetDisplayFormat().empty() || (!isReadOnly && m_host.ControlOrChildHasFocus() != 0)) {
        m_host.LimitTextInputValue();
    } else {
        m_host.LimitTextDisplayValue();
    }
}

void CTovEditText::LimitTextInputValue() {
    m_host.LimitEditText(m_host.GetMaxChars());
}

void CTovEditText::LimitTextDisplayValue() {
    m_host.LimitEditText(tovNoMaxChars);
}

void CTovEditText::OnSetFocus(bool byMnemonic) {
    bool const hasFormat = !m_host.GetDisplayFormat().empty();
    if (hasFormat && m_host.InputControl().GetReadOnlyMode() == 0) {
        m_host.LimitTextInputValue();
        m_host.ShowInputValue();
    } else if (hasFormat) {
        m_host.LimitTextDisplayValue();
        m_host.ShowDisplayValue();
    }
    if (m_leftButtonGoingDown != 0) {
        m_host.ConvertDisplayToInputPos(m_clickPosition);
        m_host.SetEditSel(m_clickPosition, m_clickPosition);
    } else {
        bool const inCell = m_host.InputControl().IsInline() != 0 && m_selectAllAtNextFocus != 0;
        bool const wanted = inCell || byMnemonic || TovGetSystem()->IsKeyDown(VK_TAB) != 0;
        if (wanted && (hasFormat || m_parentIsDialog != 0))
            m_host.SetEditSel(0, static_cast<int>(CharacterCount(m_host.GetEditText())));
    }
    m_selectAllAtNextFocus = 0;
    m_leftButtonGoingDown = 0;
}

void CTovEditText::OnKillFocus() {
    m_leftButtonGoingDown = 0;
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_host.InputControl());
    if (!HasWindow() || m_host.IgnoreKillFocusAction() != 0) return;
    CString text = m_rawString;
    if (m_host.TrimString(text, 1) != 0) {
        CTovInputControl::CTovKeepChangedByUserStatus const status(m_host.InputControl());
        CTovEditHost::CTovKeepFlag const keep(&m_trimming);
        m_trimming = 1;
        m_host.InternalSetWindowTextNoTrimNoUndoRedo(text.c_str());
    }
    m_host.AddCurrentToLastItems();
    if (!m_host.GetDisplayFormat().empty()) {
        m_host.LimitTextDisplayValue();
        m_host.ShowDisplayValue();
    } else {
        m_host.LimitTextInputValue();
        m_host.ShowInputValue();
    }
}

void CTovEditText::BeginLeftButton(int position) {
    m_clickPosition = position;
    m_leftButtonGoingDown = 1;
}

void CTovEditText::EndLeftButton(bool keepsSelection) {
    m_leftButtonGoingDown = 0;
    if (!keepsSelection) m_host.SetEditSel(m_clickPosition, m_clickPosition);
}

void CTovEditText::SetLastItemsIniFile(char const* path) {
    m_lastItemsFile = path != nullptr ? path : "";
    m_lastItems.IniFile(path);
}

void CTovEditText::SetLastItemsSection(char const* section) {
    m_lastItemsSection = section != nullptr ? section : "";
    m_lastItems.Section(section);
}

CString CTovEditText::GetLastItem(unsigned index) {
    std::vector<CString> items = m_host.GetAllLastItems();
    return index < items.size() ? std::move(items[index]) : CString();
}

std::vector<CString> CTovEditText::GetAllLastItems() {
    std::vector<CString> items;
    for (unsigned number = 1; number <= m_lastItems.GetCapacity(); ++number) {
        CString item = UnescapedItem(m_lastItems.GetDocument(number));
        if (!item.empty()) items.push_back(std::move(item));
    }
    return items;
}

void CTovEditText::AddCurrentToLastItems() {
    if (IsPassword() != 0) return;
    CString text = m_rawString;
    m_host.TrimString(text, 1);
    if (!text.empty() && m_host.GetLastItem(0) != text) m_lastItems.AddDocument(EscapedItem(text).c_str());
}

void CTovEditText::RemoveAllLastItems() {
    m_lastItems.RemoveAllDocuments();
}

}  // namespace tov
