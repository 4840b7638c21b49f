// What the user can do in an edit: undo, the clipboard, keys, commands, the
// menu; and how it is laid out.
#include <tov310/cmd_ui.h>
#include <tov310/edit_commands.h>
#include <tov310/edit_host.h>
#include <tov310/edit_text.h>
#include <tov310/menu_edit.h>
#include <tov310/messages.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "controls/one_line.h"
#include "util/code_points.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace tov {
namespace {

// A key counts by the number of its capital and by that of its small letter,
// which is another key.
constexpr bool IsKeyOf(char letter, int virtualKey) {
    return virtualKey == letter || virtualKey == letter + ('a' - 'A');
}

std::size_t At(int position) {
    return static_cast<std::size_t>(std::max(position, 0));
}

}  // namespace

eTovEditAction TovEditCommandAction(unsigned id) {
    for (CTovEditCommand const& command : tovEditCommands) {
        if (id >= command.first && id <= command.last) return command.action;
    }
    return eEditActionNone;
}

eTovEditAction TovEditKeyAction(int virtualKey, bool control, bool shift, bool insert, bool hasSpin) {
    if (control && IsKeyOf('Z', virtualKey)) return eEditActionUndo;
    if (control && IsKeyOf('Y', virtualKey)) return eEditActionRedo;
    if (control && IsKeyOf('X', virtualKey)) return eEditActionCut;
    if (control && IsKeyOf('C', virtualKey)) return eEditActionCopy;
    if ((control && IsKeyOf('V', virtualKey)) || (shift && insert)) return eEditActionPaste;
    if (control && IsKeyOf('A', virtualKey)) return eEditActionSelectAll;
    if (virtualKey == VK_DELETE) return eEditActionDelete;
    if (virtualKey == VK_BACK) return eEditActionBackspace;
    if (virtualKey == VK_UP && !hasSpin) return eEditActionSpinUp;
    if (virtualKey == VK_DOWN && !hasSpin) return eEditActionSpinDown;
    return eEditActionNone;
}

// --- Undo and redo

std::unique_ptr<CTovEditUndoRedoItem> CTovEditText::NewUndoRedoItem() const {
    std::unique_ptr<CObject> made;
    if (settings.undoItemClass != nullptr) made = settings.undoItemClass->CreateObject();
    if (made == nullptr || !made->IsKindOf(&CTovEditUndoRedoItem::classCTovEditUndoRedoItem))
        return std::make_unique<CTovEditUndoRedoItem>();
    return std::unique_ptr<CTovEditUndoRedoItem>(static_cast<CTovEditUndoRedoItem*>(made.release()));
}

void CTovEditText::AddPreviousToUndoRedo() {
    m_undoRedo.AddPrevious(m_host.CopyUndoRedoItem(m_current.get()).release());
}

std::unique_ptr<CTovEditUndoRedoItem> CTovEditText::CopyUndoRedoItem(CTovEditUndoRedoItem const& item) const {
    auto copy = NewUndoRedoItem();
    *copy = item;
    return copy;
}

void CTovEditText::FillUndoRedoItemWithCurrent(CTovEditUndoRedoItem& item) const {
    Selection const selection = GetSel();
    item.m_sText = m_rawString;
    item.m_nSelStart = selection.start;
    item.m_nSelEnd = selection.end;
    item.m_value.reset();
}

void CTovEditText::RefreshUndoRedoItem() {
    m_host.FillUndoRedoItemWithCurrent(m_current.get());
}

void CTovEditText::ForgetUndoRedo() {
    RefreshUndoRedoItem();
    m_undoRedo.Empty();
}

void CTovEditText::Restore(CObject* (CTovUndoRedo::*step)(CObject*), int can) {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    if (can == 0) return m_host.Beep();
    auto now = NewUndoRedoItem();
    m_host.FillUndoRedoItemWithCurrent(now.get());
    CObject* const state = (m_undoRedo.*step)(now.get());
    if (state == nullptr) return m_host.Beep();
    static_cast<void>(now.release());  // the stack's
    std::unique_ptr<CTovEditUndoRedoItem> const item(static_cast<CTovEditUndoRedoItem*>(state));
    CString text = item->m_sText;
    m_host.TrimString(text, 1);
    m_host.InternalSetWindowTextNoTrimNoUndoRedo(text.c_str());
    if (item->m_nSelStart != CTovEditUndoRedoItem::noSelection &&
        item->m_nSelEnd != CTovEditUndoRedoItem::noSelection) {
        auto const length = static_cast<int>(CharacterCount(text));
        m_host.SetEditSel(std::clamp(item->m_nSelStart, 0, length), std::clamp(item->m_nSelEnd, 0, length));
    }
    m_host.OnUndoRedoItemRestored(item.get());
    RefreshUndoRedoItem();
}

void CTovEditText::Undo() {
    Restore(&CTovUndoRedo::Undo, m_host.CanUndo());
}

void CTovEditText::Redo() {
    Restore(&CTovUndoRedo::Redo, m_host.CanRedo());
}

// --- What can be done now

bool CTovEditText::CanChange() const {
    return m_host.ControlOrChildHasFocus() != 0 && m_host.InputControl().GetReadOnlyMode() == 0;
}

CTovEditText::Selection CTovEditText::GetSel() const {
    Selection selection;
    m_host.GetEditSel(selection.start, selection.end);
    if (selection.end < selection.start) std::swap(selection.start, selection.end);
    return selection;
}

unsigned CTovEditText::CanInsert() const {
    constexpr std::size_t most = tovLastInsertCommand - tovFirstInsertCommand + 1;
    if (!CanChange() || IsPassword() != 0) return 0;
    return static_cast<unsigned>(std::min(m_host.GetAllLastItems().size(), most));
}

int CTovEditText::CanUndo() const {
    return CanChange() && m_undoRedo.CanUndo() != 0;
}

int CTovEditText::CanRedo() const {
    return CanChange() && m_undoRedo.CanRedo() != 0;
}

int CTovEditText::CanCut() const {
    return m_host.InputControl().GetReadOnlyMode() == 0 && m_host.CanCopy() != 0;
}

int CTovEditText::CanCopy() const {
    Selection const selection = GetSel();
    return IsPassword() == 0 && selection.start != selection.end && m_host.ControlOrChildHasFocus() != 0;
}

// The text of the clipboard as far as it fits in the place of the selection; 0
// where nothing does.
int CTovEditText::PreparePaste(CString& text, Selection& range, bool& loses) const {
    if (!CanChange() || m_host.GetClipboardText(text) == 0) return 0;
    MakeOneLine(text);
    loses = FilterInput(text);
    range = GetSel();
    std::size_t const length = CharacterCount(text);
    std::size_t const whole =
        CharacterCount(m_host.GetEditText()) - (At(range.end) - At(range.start)) + length;
    std::size_t const most = m_host.GetMaxChars();
    std::size_t const excess = whole > most ? whole - most : 0;
    if (length <= excess) return 0;
    text = CString(Characters(text, 0, length - excess));
    return 1;
}

int CTovEditText::CanPaste() const {
    CString text;
    Selection range;
    bool loses = false;
    return PreparePaste(text, range, loses);
}

int CTovEditText::CanDelete() const {
    Selection const selection = GetSel();
    return CanChange() &&
           (selection.start != selection.end || At(selection.start) < CharacterCount(m_host.GetEditText()));
}

int CTovEditText::CanBackspace() const {
    Selection const selection = GetSel();
    return CanChange() && (selection.start != selection.end || selection.start > 0);
}

int CTovEditText::CanSelectAll() const {
    return m_host.ControlOrChildHasFocus() != 0 && !m_host.GetEditText().empty();
}

// --- And doing it

// Puts a text in the place of a part of the window's and the caret behind it.
void CTovEditText::Replace(Selection const& range, std::string_view text) {
    CString const before = m_host.GetEditText();
    CString after(Characters(before, 0, At(range.start)));
    after += text;
    auto const caret = static_cast<int>(CharacterCount(after));
    after += std::string_view(before).substr(CharacterOffset(before, At(range.end)));
    ChangeText(after, {caret, caret});
}

void CTovEditText::Insert(unsigned index) {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    CString text = index < m_host.CanInsert() ? m_host.GetLastItem(index) : CString();
    m_host.ReadInput(text);  // it may have been entered with another decimal separator
    m_host.TrimString(text, 1);
    if (text.empty()) return m_host.Beep();
    auto const length = static_cast<int>(CharacterCount(text));
    ChangeText(text, {length, length});
}

void CTovEditText::Copy() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    Selection const selection = GetSel();
    CString const text = m_host.GetEditText();
    CString const selected(Characters(text, At(selection.start), At(selection.end)));
    if (m_host.CanCopy() == 0 || m_host.SetClipboardText(selected.c_str()) == 0) m_host.Beep();
}

void CTovEditText::Cut() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    Selection const selection = GetSel();
    CString const text = m_host.GetEditText();
    CString const selected(Characters(text, At(selection.start), At(selection.end)));
    // What could not be put on the clipboard stays.
    if (m_host.CanCut() == 0 || m_host.SetClipboardText(selected.c_str()) == 0) return m_host.Beep();
    m_host.Delete();
}

void CTovEditText::Paste() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    CString text;
    Selection range;
    bool loses = false;
    if (m_host.CanPaste() == 0 || PreparePaste(text, range, loses) == 0) return m_host.Beep();
    if (loses) m_host.OnInputLost();
    Replace(range, text);
}

void CTovEditText::Delete() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    if (m_host.CanDelete() == 0) return m_host.Beep();
    Selection range = GetSel();
    if (range.start == range.end) ++range.end;
    Replace(range, {});
}

void CTovEditText::Backspace() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    if (m_host.CanBackspace() == 0) return m_host.Beep();
    Selection range = GetSel();
    if (range.start == range.end) --range.start;
    Replace(range, {});
}

void CTovEditText::SelectAll() {
    if (m_host.ControlOrChildHasFocus() == 0) return;
    if (m_host.CanSelectAll() == 0) return m_host.Beep();
    m_host.SetEditSel(0, static_cast<int>(CharacterCount(m_host.GetEditText())));
}

// --- Keys, commands, the menu

int CTovEditText::OnKeyDown(int virtualKey) {
    ITovSystem* const system = TovGetSystem();
    bool const insert = virtualKey == VK_INSERT || system->IsKeyDown(VK_INSERT) != 0;
    eTovEditAction const action =
        TovEditKeyAction(virtualKey, system->IsKeyDown(VK_CONTROL) != 0, system->IsKeyDown(VK_SHIFT) != 0,
                         insert, companions.spinWidth != 0);
    switch (action) {
        case eEditActionNone:
            return 0;
        case eEditActionDelete:
            if (m_host.CanDelete() != 0) m_host.Delete();
            return 1;
        case eEditActionBackspace:
            if (m_host.CanBackspace() != 0) m_host.Backspace();
            return 1;
        default:
            Do(action, 0);
            return 1;
    }
}

void CTovEditText::Do(eTovEditAction action, unsigned index) {
    switch (action) {
        case eEditActionUndo:
            return m_host.Undo();
        case eEditActionRedo:
            return m_host.Redo();
        case eEditActionCut:
            return m_host.Cut();
        case eEditActionCopy:
            return m_host.Copy();
        case eEditActionPaste:
            return m_host.Paste();
        case eEditActionDelete:
            return m_host.Delete();
        case eEditActionBackspace:
            return m_host.Backspace();
        case eEditActionSelectAll:
            return m_host.SelectAll();
        case eEditActionInsert:
            return m_host.Insert(index);
        case eEditActionSpinUp:
            return m_host.DispatchSpinDeltapos(1, -m_host.GetSpinDelta());
        case eEditActionSpinDown:
            return m_host.DispatchSpinDeltapos(0, m_host.GetSpinDelta());
        case eEditActionNone:
            return;
    }
}

int CTovEditText::Can(eTovEditAction action, unsigned index) const {
    switch (action) {
        case eEditActionUndo:
            return m_host.CanUndo();
        case eEditActionRedo:
            return m_host.CanRedo();
        case eEditActionCut:
            return m_host.CanCut();
        case eEditActionCopy:
            return m_host.CanCopy();
        case eEditActionPaste:
            return m_host.CanPaste();
        case eEditActionDelete:
            return m_host.CanDelete();
        case eEditActionBackspace:
            return m_host.CanBackspace();
        case eEditActionSelectAll:
            return m_host.CanSelectAll();
        case eEditActionInsert:
            return index < m_host.CanInsert();
        default:
            return 0;
    }
}

int CTovEditText::DoCommand(unsigned id) {
    eTovEditAction const action = TovEditCommandAction(id);
    Do(action, id - tovFirstInsertCommand);
    return action != eEditActionNone;
}

void CTovEditText::UpdateCommand(CCmdUI& state) {
    eTovEditAction const action = TovEditCommandAction(state.m_nID);
    if (action != eEditActionNone) state.Enable(Can(action, state.m_nID - tovFirstInsertCommand));
}

void CTovEditText::OnSpinNotification(int platformDelta) {
    int const step = m_host.GetSpinDelta();
    m_host.DispatchSpinDeltapos(platformDelta < 0, platformDelta < 0 ? -step : step);
}

void CTovEditText::DispatchSpinDeltapos(int up, int delta) {
    if (m_host.InputControl().GetReadOnlyMode() == 0) m_host.OnSpinDeltapos(up, delta);
}

void CTovEditText::OnContextMenu(CPoint point) {
    CWnd* const window = m_host.InputControl().GetWnd();
    if (window == nullptr) return;
    if (m_host.ControlOrChildHasFocus() == 0) m_host.InputControl().SetFocusInputControl();
    if (point == CPoint(-1, -1)) {
        CRect const rect = window->GetClientRect();
        point = window->ClientToScreen({rect.left + rect.Width() / 2, rect.top + rect.Height() / 2});
    }
    m_host.ContextMenu(window, point);
}

int CTovEditText::ContextMenu(CWnd* window, CPoint point) {
    HINSTANCE module = nullptr;
    unsigned id = 0;
    m_host.GetMenu(module, id);
    if (module == nullptr || id == 0) return 0;
    std::vector<CString> items;
    if (IsPassword() == 0) items = m_host.GetAllLastItems();
    std::erase(items, CString());
    CTovMenuPopUpEdit menu(&m_host, IsPassword() == 0 ? &items : nullptr);
    if (menu.LoadMenu(module, id) == 0) return 0;
    menu.SetWindow(window != nullptr ? window : m_host.InputControl().GetWnd());
    return menu.Activate(point, TPM_RIGHTBUTTON);
}

// --- Painting and places

void CTovEditText::PrepareColors() {
    for (std::size_t i = 0; i < m_brushes.size(); ++i) {
        m_brushes[i] = settings.backColors[i];
        if (m_brushes[i] == tovPlatformColor && settings.textColors[i] != tovPlatformColor)
            m_brushes[i] = TovGetSystem()->GetSysColor(i == 0 ? COLOR_WINDOW : COLOR_BTNFACE);
    }
}

CTovEditColors CTovEditText::CtlColor() const {
    CWnd const* const window = m_host.InputControl().GetWnd();
    bool const isDisabled = window != nullptr && (window->GetStyle() & WS_DISABLED) != 0;
    std::size_t const which = isDisabled ? 2 : m_host.InputControl().GetReadOnlyMode() != 0 ? 1 : 0;
    return {settings.textColors[which], m_brushes[which]};
}

int CTovEditText::SetupInlineRect(CRect& container, CRect& control, HFONT font) const {
    long height = 0;
    long width = 0;
    long unit = 0;
    CTovInputControl& input = m_host.InputControl();
    input.GetInlineDimensions(height, width, unit, font, "AaBbCc_GgJjXZQ");
    container.top -= static_cast<int>(input.GetInlineMoveUp(container.Height(), height));
    container.bottom = container.top + static_cast<int>(height);
    container.right = std::max(container.right, container.left + static_cast<int>(5 * unit));
    control = container;
    return 1;
}

int CTovEditCompanions::ButtonWidth(CSize const& text) {
    return std::max(text.cy, text.cx + 12);
}

CRect CTovEditCompanions::BoundsForButton(CRect const& whole, int buttonWidth, bool isInline) {
    CRect bounds = whole;
    bounds.right = std::max(bounds.right, bounds.left + buttonWidth) + (isInline ? 1 : 0);
    return bounds;
}

CRect CTovEditCompanions::BoundsForSpin(CRect const& whole, CSize const& scrollBar) {
    CRect bounds = whole;
    if (bounds.Width() < scrollBar.cx) bounds.right += scrollBar.cx;
    if (bounds.Height() < scrollBar.cy) bounds.bottom += scrollBar.cy;
    return bounds;
}

int CTovEditCompanions::MinWidth() const {
    return std::max(spinWidth - 2, 0) + buttonWidth;
}

CRect CTovEditCompanions::Edit(CRect const& whole) const {
    CRect rect = whole;
    rect.right = std::max(rect.left, rect.right - MinWidth());
    return rect;
}

CRect CTovEditCompanions::Spin(CRect const& whole) const {
    CRect rect = whole;
    rect.right -= buttonWidth;
    rect.left = rect.right - spinWidth;
    return rect;
}

CRect CTovEditCompanions::Button(CRect const& whole) const {
    CRect rect = whole;
    rect.left = rect.right - buttonWidth;
    return rect;
}

}  // namespace tov
