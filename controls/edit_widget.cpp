#include <tov310/edit.h>

#include <tov310/cmd_ui.h>
#include <tov310/edit_commands.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/resources.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "controls/edit_accessibility.h"
#include "platform/focus_guard.h"
#include "platform/native_messages.h"

#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QValidator>

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>

namespace tov {
namespace {

// Positions count characters in the engine and UTF-16 units in Qt.
int ToUnits(QString const& text, int characters) {
    qsizetype units = 0;
    for (; characters > 0 && units < text.size(); --characters)
        units += text[units].isHighSurrogate() && units + 1 < text.size() ? 2 : 1;
    return static_cast<int>(units);
}

int ToCharacters(QString const& text, int units) {
    int characters = 0;
    for (int i = 0; i < units && i < text.size(); ++i)
        characters += !(text[i].isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate());
    return characters;
}

// Whether the toolkit changes the text by it.
bool IsInput(QEvent const& event) {
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

}  // namespace

// What comes in by keys, paste, drop or input method.
class CTovEdit::Gate : public QValidator {
 public:
    explicit Gate(CTovEdit& edit) : QValidator(&edit), m_edit(edit) {}

    State validate(QString& input, int& position) const override {
        CString text = TovText(input);
        int caret = ToCharacters(input, position);
        if (!m_edit.IsTextAllowed(text) || m_edit.m_text.AcceptInput(text, caret) == 0) {
            m_edit.Beep();
            return Invalid;
        }
        input = TovQString(text);
        position = ToUnits(input, caret);
        return Acceptable;
    }

 private:
    CTovEdit& m_edit;
};

CTovEdit::CTovEdit(QWidget* parent) : CWndOn(parent) {
    ShowEditsToAccessibility();
    // The engine limits the length, by characters.
    setMaxLength(std::numeric_limits<int>::max());
    setValidator(std::make_unique<Gate>(*this).release());  // its child
    connect(this, &QLineEdit::textChanged, this, &CTovEdit::OnTextChanged);
}

CTovEdit::~CTovEdit() {
    // What still changes as the parts go is nobody's any more.
    disconnect(this, nullptr, this, nullptr);
    for (QWidget* const companion : std::initializer_list<QWidget*>{m_button, m_spin}) {
        if (companion != nullptr) disconnect(companion, nullptr, this, nullptr);
    }
    setValidator(nullptr);
}

void CTovEdit::PreSubclassWindow() {
    CWndOn::PreSubclassWindow();
    QString const present = text();
    HoldChanges();
    InitializeEdit();
    if (!present.isEmpty() && m_text.IsRawEmpty() != 0 && IsTextAllowed(TovText(present)))
        m_text.AdoptWindowText();
    ShowValue();
    m_lastEmpty = ValidateEmpty();
    // To be born is no change.
    --m_held;
    m_contentHeld = m_emptyHeld = false;
}

CTovCommandTable const* CTovEdit::GetCommandTable() const {
    static constexpr auto handlers =
        TovEditCommandHandlers<CTovEdit, &CTovEdit::OnEditCommand, &CTovEdit::OnUpdateEditCommand>();
    static CTovCommandTable const table{CWndOn::GetCommandTable(), handlers};
    return &table;
}

void CTovEdit::OnTextChanged() {
    if (IgnoreEditChanged() != 0) return;
    if (!IsTextAllowed(TovText(text()))) return PutAllowedText();
    m_changedSinceFocus = true;
    HoldChanges();
    OnEditChanged(static_cast<unsigned>(GetDlgCtrlID()));
    TellContent();
    TellChanges(true);
}

void CTovEdit::BeginInput() {
    HoldChanges();
    ++m_inputsUnderWay;
}

void CTovEdit::EndInput() {
    --m_inputsUnderWay;
    TellChanges(true);
}

void CTovEdit::TellContent() {
    if (IsHolding()) {
        m_contentHeld = true;
    } else {
        OnContentChanged();
    }
}

void CTovEdit::TellChanges(bool byUser) {
    if (--m_held != 0) return;
    QPointer<CTovEdit> const alive(this);
    bool const content = std::exchange(m_contentHeld, false);
    if (content && byUser) NoteChange();
    if (std::exchange(m_emptyHeld, false)) OnEmptyChanged();
    if (alive && content) TellContent();
}

void CTovEdit::TellValue(double value) {
    bool const hasValue = IsEmpty() == 0;
    if (hasValue == m_lastHadValue &&
        std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(m_lastValue))
        return;
    m_lastHadValue = hasValue;
    m_lastValue = value;
    TellAccessibilityOfNumber(*this);
    Q_EMIT valueChanged(value);
}

void CTovEdit::Undo() {
    HoldChanges();
    m_text.Undo();
    TellChanges(true);
}

void CTovEdit::Redo() {
    HoldChanges();
    m_text.Redo();
    TellChanges(true);
}

void CTovEdit::DispatchSpinDeltapos(int up, int delta) {
    HoldChanges();
    m_text.DispatchSpinDeltapos(up, delta);
    TellChanges(true);
}

void CTovEdit::OnContentChanged() {
    TellValidity();
}

void CTovEdit::TellDone() {
    QPointer<CTovEdit> const alive(this);
    TellValidity();
    if (alive && std::exchange(m_changedSinceFocus, false)) Q_EMIT editingDone();
}

void CTovEdit::TellValidity() {
    CString message;
    eState const state = Validate(&message);
    if (state == eStateEmpty && message.empty()) {
        constexpr unsigned textOfEmpty = 26079;
        TovLoadResourceString(TovGetTovResourceHandle(), textOfEmpty, message);
    }
    QString const words = TovQString(message);
    if (state == m_lastState && words == m_lastWords) return;
    m_lastState = state;
    // The host's own description is there again when nothing is wrong any more.
    if (accessibleDescription() != m_lastWords) m_hostDescription = accessibleDescription();
    m_lastWords = words;
    setAccessibleDescription(words.isEmpty() ? m_hostDescription : words);
    Q_EMIT validityChanged(state, words);
}

CTovInputControl::eState CTovEdit::OnValidate(CString* message) {
    CString text = m_text.GetRawString();
    TrimString(text, 1);
    return InternalValidate(text.c_str(), message);
}

void CTovEdit::OnEmptyChanged() {
    if (IsHolding()) {
        m_emptyHeld = true;
        return;
    }
    m_lastEmpty = ValidateEmpty();
    QPointer<CTovEdit> const alive(this);
    CTovInputControl::OnEmptyChanged();
    if (alive) Q_EMIT emptyChanged(m_lastEmpty != 0);
}

void CTovEdit::TellEmpty() {
    if (ValidateEmpty() != m_lastEmpty) OnEmptyChanged();
}

LRESULT CTovEdit::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_KEYDOWN:
            if (m_text.OnKeyDown(static_cast<int>(wParam)) != 0) return 0;
            if (m_spin == nullptr || (wParam != VK_UP && wParam != VK_DOWN)) break;
            m_text.OnSpinNotification(wParam == VK_UP ? -1 : 1);
            return 0;
        case WM_SETFOCUS: {
            if (IsFocusOfPopup(*this, message)) break;
            LRESULT result = 0;
            GainFocus(result, wParam, lParam);
            return result;
        }
        case WM_KILLFOCUS: {
            if (IsFocusOfPopup(*this, message)) break;
            m_pressGivesFocus = false;
            HWND const self = GetSafeHwnd();
            LRESULT const result = CWndOn::WindowProc(message, wParam, lParam);
            if (!IsWindow(self)) return result;
            m_text.OnKillFocus();
            if (!IsWindow(self)) return result;
            TellDone();
            return result;
        }
        case WM_LBUTTONDOWN: {
            bool const givesFocus = std::exchange(m_pressGivesFocus, false);
            if (!givesFocus) m_text.BeginLeftButton(CharacterAt(TovQPoint(TovPointOf(lParam))));
            LRESULT const result = CWndOn::WindowProc(message, wParam, lParam);
            // What the toolkit selects stays: by Shift, by a third click, or to be dragged.
            m_text.EndLeftButton(!givesFocus && hasSelectedText());
            return result;
        }
        case WM_CONTEXTMENU:
            m_text.OnContextMenu(TovPointOf(lParam));
            return 0;
        case WM_GETDLGCODE:
            return CWndOn::WindowProc(message, wParam, lParam) | m_text.DialogCode();
        case WM_SYSCOLORCHANGE: {
            LRESULT const result = CWndOn::WindowProc(message, wParam, lParam);
            if (!m_isApplyingColors) PrepareColors();
            return result;
        }
        case WM_FONTCHANGE: {
            LRESULT const result = CWndOn::WindowProc(message, wParam, lParam);
            PlaceCompanions();
            return result;
        }
        case WM_ENABLE: {
            LRESULT const result = CWndOn::WindowProc(message, wParam, lParam);
            ApplyColors();
            return result;
        }
        default:
            break;
    }
    return CWndOn::WindowProc(message, wParam, lParam);
}

void CTovEdit::GainFocus(LRESULT& result, WPARAM wParam, LPARAM lParam) {
    auto const* const event = static_cast<QFocusEvent const*>(TovEventOf(*this, WM_SETFOCUS));
    bool const isPressed = event != nullptr && event->reason() == Qt::MouseFocusReason &&
                           QApplication::mouseButtons().testFlag(Qt::LeftButton);
    bool const isMnemonic = event != nullptr && event->reason() == Qt::ShortcutFocusReason;
    // The focus comes before the press that brings it, and may show another text; the press means the one
    // that is seen now.
    QPoint const press = mapFromGlobal(LastPress());
    m_pressGivesFocus = isPressed && rect().contains(press) && !IsOfCompanion(press);
    if (m_pressGivesFocus) m_text.BeginLeftButton(CharacterAt(press));
    HWND const self = GetSafeHwnd();
    result = CWndOn::WindowProc(WM_SETFOCUS, wParam, lParam);
    if (!IsWindow(self)) return;
    m_changedSinceFocus = false;
    m_text.OnSetFocus(isMnemonic);
}

bool CTovEdit::event(QEvent* event) {
    // Keys of the engine are not shortcuts of the window while the edit has the focus.
    if (event->type() == QEvent::ShortcutOverride) {
        auto const& key = static_cast<QKeyEvent const&>(*event);
        bool const isControl = key.modifiers().testFlag(Qt::ControlModifier);
        int const number = VirtualKeyOf(key.key(), key.modifiers().testFlag(Qt::KeypadModifier));
        // Up and Down are the spin's where there is one, else the engine's.
        if (TovEditKeyAction(number, isControl, key.modifiers().testFlag(Qt::ShiftModifier),
                             number == VK_INSERT, false) != eEditActionNone) {
            event->accept();
            return true;
        }
    }
    QPointer<CTovEdit> const alive(this);
    bool const isInput = IsInput(*event);
    ++m_eventsUnderWay;
    if (isInput) BeginInput();
    bool const result = CWndOn::event(event);
    if (alive && isInput) EndInput();
    if (!alive) return result;
    --m_eventsUnderWay;
    // What is hidden need not be filled.
    bool const isTurned = event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent;
    if (isTurned && GetSafeHwnd()) CTovInputControl::OnEmptyChanged();
    if (event->type() == QEvent::ReadOnlyChange && isReadOnly() != (GetReadOnlyMode() != 0)) {
        // The toolkit's own operation.
        SetReadOnlyMode(isReadOnly());
        ApplyReadOnly(isReadOnly(), 1);
    }
    return result;
}

void CTovEdit::EndSoon(std::unique_ptr<CTovEdit> edit) {
    edit->hide();
    edit->DestroyWindow();
    // The window around it may go before it.
    if (edit->IsAtWork()) edit->setParent(nullptr);
    edit.release()->deleteLater();
}

void CTovEdit::resizeEvent(QResizeEvent* event) {
    CWndOn::resizeEvent(event);
    PlaceCompanions();
}

// --- What the engine asks of the toolkit

CString CTovEdit::GetEditText() {
    return TovText(text());
}

void CTovEdit::SetEditText(CString const& content) {
    QLineEdit::setText(TovQString(content));
}

void CTovEdit::GetEditSel(int& start, int& end) {
    QString const content = text();
    start = end = ToCharacters(content, cursorPosition());
    if (!hasSelectedText()) return;
    start = ToCharacters(content, selectionStart());
    end = ToCharacters(content, selectionEnd());
}

void CTovEdit::SetEditSel(int start, int end) {
    QString const content = text();
    int const first = ToUnits(content, start);
    int const last = ToUnits(content, end);
    setCursorPosition(last);
    if (first != last) setSelection(first, last - first);
}

void CTovEdit::LimitEditText(unsigned) {}

void CTovEdit::ApplyReadOnly(int readOnly, int enabled) {
    setReadOnly(readOnly != 0);
    // What somebody else has disabled stays so.
    if (enabled == 0 && !testAttribute(Qt::WA_ForceDisabled)) {
        m_disabledByReadOnly = true;
        setEnabled(false);
    } else if (enabled != 0 && std::exchange(m_disabledByReadOnly, false)) {
        setEnabled(true);
    }
    ApplyColors();
}

int CTovEdit::SetReadOnlyMode(int readOnly) {
    return m_text.SetReadOnlyMode(readOnly);
}

int CTovEdit::ReadClipboard(CString& content) {
    QClipboard const* const clipboard = QApplication::clipboard();
    content = TovText(clipboard->text());
    return !content.empty();
}

int CTovEdit::WriteClipboard(CString const& content) {
    QApplication::clipboard()->setText(TovQString(content));
    return 1;
}

void CTovEdit::Beep() {
    QApplication::beep();
}

void CTovEdit::PrepareColors() {
    CTovEditHost::PrepareColors();
    ApplyColors();
}

void CTovEdit::ApplyColors() {
    m_isApplyingColors = true;
    bool const isSet = testAttribute(Qt::WA_SetPalette);
    auto const shows = [this](QPalette::ColorRole role, COLORREF color) {
        return color == tovPlatformColor || palette().color(QPalette::Active, role) == TovQColor(color);
    };
    // Any other palette is the host's.
    if (!isSet || !m_paintsOwnColors || !shows(QPalette::Text, m_painted.text) ||
        !shows(QPalette::Base, m_painted.back))
        m_hostPalette = isSet ? palette() : QPalette();
    m_painted = m_text.CtlColor();
    m_paintsOwnColors = m_painted.text != tovPlatformColor || m_painted.back != tovPlatformColor;
    QPalette wanted = UsualPalette();
    for (QPalette::ColorGroup const group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        if (m_painted.text != tovPlatformColor)
            wanted.setBrush(group, QPalette::Text, TovQColor(m_painted.text));
        if (m_painted.back != tovPlatformColor)
            wanted.setBrush(group, QPalette::Base, TovQColor(m_painted.back));
    }
    bool const isAsWanted = wanted.resolveMask() == 0 ? !isSet : isSet && wanted == palette();
    if (!isAsWanted) setPalette(wanted);
    m_isApplyingColors = false;
}

int CTovEdit::CharacterAt(QPoint const& place) const {
    return ToCharacters(text(), const_cast<CTovEdit*>(this)->cursorPositionAt(place));
}

bool CTovEdit::IsOfCompanion(QPoint const& place) const {
    return (m_button != nullptr && m_button->geometry().contains(place)) ||
           (m_spin != nullptr && m_spin->geometry().contains(place));
}

void CTovEdit::setText(QString const& content) {
    CTovKeepChangedByUserStatus const status(*this);
    QLineEdit::setText(content);
}

void CTovEdit::GetWindowBoundingRect(CRect* rect) {
    if (rect != nullptr && GetSafeHwnd()) *rect = GetWindowRect();
}

void CTovEdit::UnhookControl() {
    CTovInputControl::UnhookControl();
}

int CTovEdit::SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long) {
    return m_text.SetupInlineRect(container, control, font);
}

int CTovEdit::CreateInline(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id,
                           HFONT font) {
    QWidget* const around = TovWidget(parent);
    if (around == nullptr) return 0;
    if (GetSafeHwnd()) DestroyWindow();
    setParent(qobject_cast<QAbstractScrollArea*>(around) != nullptr
                  ? static_cast<QAbstractScrollArea*>(around)->viewport()
                  : around);
    IsInline(1);
    SetDlgCtrlID(static_cast<int>(id));
    SetFont(font);
    MoveWindow(rect);
    // It is born with its styles, and shown as the last.
    unsigned long const wanted = style | tovInlineEditStyle;
    ModifyStyle(0, wanted & (ES_RIGHT | ES_PASSWORD | ES_READONLY | WS_DISABLED | WS_TABSTOP));
    TovHandle(this);
    ModifyStyle(0, wanted & WS_VISIBLE);
    return 1;
}

}  // namespace tov
