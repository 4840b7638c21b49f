// Edits for angles: the mask is the text of the edit, and the fields are edits without a frame over its
// digits.
#include <tov310/value_edits.h>

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/string_edits.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "platform/control_notices.h"
#include "platform/focus_guard.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>
#include <utility>

namespace tov {

namespace {

constexpr int marginOfText = 2;  // QLineEdit's own, inside its frame

bool IsOfField(QChar c) {
    return c.isDigit() || c == QLatin1Char('-') || c == QLatin1Char('.');
}

}  // namespace

// A field asks its angle first what a key, a character or a text means.
template <class Edit>
class CTovEditValueAngle::FieldOf : public Edit {
 public:
    explicit FieldOf(CTovEditValueAngle& angle) : Edit(&angle), m_angle(&angle) {
        this->setFrame(false);
        // The rectangle of a field begins where its digits do and ends 2 pixels behind them, one of which is
        // for the caret.
        this->setTextMargins(-marginOfText, 0, 1 - marginOfText, 0);
        this->setContentsMargins(0, 0, 0, 0);
        this->setPalette(UsualPalette());
    }

    void Copy() override { this->SetClipboardText(m_angle->m_mask.TextToCopy().c_str()); }
    int CanCopy() override { return this->ControlOrChildHasFocus(); }
    int CanCut() override { return this->hasSelectedText() && Edit::CanCut() != 0; }
    void Cut() override {
        if (CanCut() == 0) return this->Beep();
        Copy();
        this->Delete();
    }
    int CanUndo() override { return CanEdit() && m_angle->m_mask.CanUndoPaste() ? 1 : Edit::CanUndo(); }
    int CanRedo() override { return CanEdit() && m_angle->m_mask.CanRedoPaste() ? 1 : Edit::CanRedo(); }
    void Undo() override {
        if (!CanEdit() || m_angle->m_mask.UndoPaste() == 0) Edit::Undo();
    }
    void Redo() override {
        if (!CanEdit() || m_angle->m_mask.RedoPaste() == 0) Edit::Redo();
    }
    // A whole angle that comes in by a drop, say, goes into all fields, once the toolkit is ready for it.
    int TakeInput(CString const& text) override {
        if (!CanEdit() || m_angle->IsChanging() || !m_angle->m_mask.CanPaste(text.c_str())) return 0;
        QMetaObject::invokeMethod(
            m_angle, [angle = m_angle, text] { angle->m_mask.Paste(text.c_str()); }, Qt::QueuedConnection);
        m_isTaken = true;
        return 1;
    }
    void Beep() override {
        if (!std::exchange(m_isTaken, false)) Edit::Beep();
    }
    void Paste() override {
        CString text;
        if (this->GetClipboardText(text) != 0 && m_angle->m_mask.CanPaste(text.c_str())) {
            if (m_angle->m_mask.Paste(text.c_str()) == 0) this->Beep();
            return;
        }
        auto const alone = TovQString(text).trimmed().toUcs4();
        if (alone.size() == 1 && m_angle->m_mask.OnFieldChar(alone[0]) != 0) return;
        Edit::Paste();
    }
    int CanPaste() override {
        CString text;
        if (this->GetClipboardText(text) != 0 && m_angle->m_mask.CanPaste(text.c_str())) return 1;
        return Edit::CanPaste();
    }
    // A text with anything else than the field takes is no part of an angle.
    void ReadInput(CString& text) const override {
        Edit::ReadInput(text);
        QString const words = TovQString(text).trimmed();
        auto const isStrange = [this](char32_t c) {
            this->Convert(c);
            return this->CharAllowed(c) == 0;
        };
        if (words.size() > 1 && std::ranges::any_of(words.toUcs4(), isStrange)) text.clear();
    }
    void AddCurrentToLastItems() override {}  // a part of an angle is no value
    void OnEditChanged(unsigned id) override {
        // The first character in a field fills the angle, and the last one that goes empties it.
        if (m_angle == nullptr) return;
        CTovInputControl::CTovNotifyEmptyChanged const scope(*m_angle);
        Edit::OnEditChanged(id);
    }

 protected:
    // What one event puts into several fields is one change of the angle.
    void BeginInput() override {
        if (m_angle != nullptr) m_angle->BeginInput();
        m_holding.push_back(m_angle);
        Edit::BeginInput();
    }
    void EndInput() override {
        QPointer<CTovEditValueAngle> const angle = m_holding.back();
        m_holding.pop_back();
        Edit::EndInput();
        if (angle) angle->EndInput();
    }
    void OnContentChanged() override {
        QPointer<CTovEdit> const alive(this);
        Edit::OnContentChanged();
        if (alive && m_angle != nullptr) m_angle->OnFieldChanged();
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (m_angle == nullptr) return Edit::WindowProc(message, wParam, lParam);
        HWND const self = this->GetSafeHwnd();
        bool const isOfPopup = message == WM_KILLFOCUS && IsFocusOfPopup(*this, message);
        if (message == WM_KEYDOWN && m_angle->OnFieldKey(static_cast<int>(wParam), *this)) return 0;
        if (message == WM_SETFOCUS && !std::exchange(m_angle->m_fieldHadFocus, true)) m_angle->ForgetChange();
        LRESULT const result = Edit::WindowProc(message, wParam, lParam);
        if (!IsWindow(self)) return result;
        if (message == WM_SETFOCUS) m_angle->m_mask.OnFieldFocus(m_angle->GetChildEditFocus());
        if (message == WM_KILLFOCUS && !isOfPopup) m_angle->OnFieldLeft();
        return result;
    }

    void keyPressEvent(QKeyEvent* event) override {
        QString const typed = event->text();
        bool const isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
        if (m_angle != nullptr && isPlain && typed.size() == 1 && typed[0].isPrint()) {
            if (m_angle->m_mask.OnFieldChar(typed[0].unicode()) != 0) return;
            if (CanEdit() && !m_angle->m_mask.HasRoomFor(typed[0].unicode())) return this->Beep();
        }
        Edit::keyPressEvent(event);
    }

    void inputMethodEvent(QInputMethodEvent* event) override {
        auto const committed = event->commitString().toUcs4();
        if (m_angle == nullptr || committed.size() != 1 || m_angle->m_mask.OnFieldChar(committed[0]) == 0)
            return Edit::inputMethodEvent(event);
        QInputMethodEvent rest(event->preeditString(), event->attributes());
        Edit::inputMethodEvent(&rest);
    }

    // The edit paints the background.
    QPalette UsualPalette() const override {
        QPalette palette = m_angle != nullptr ? m_angle->palette() : QPalette();
        palette.setColor(QPalette::Base, Qt::transparent);
        return palette;
    }

    // Tab goes through the fields and then on.
    bool focusNextPrevChild(bool next) override {
        if (m_angle == nullptr || !m_angle->m_mask.IsChildEdit(this))
            return Edit::focusNextPrevChild(next);  // it goes
        next ? m_angle->NextChildEdit() : m_angle->PrevChildEdit();
        return true;
    }

 private:
    bool CanEdit() { return this->hasFocus() && this->GetReadOnlyMode() == 0; }

    friend class CTovEditValueAngle;

    CTovEditValueAngle* m_angle;                          // null once that is gone; then the field goes soon
    std::vector<QPointer<CTovEditValueAngle>> m_holding;  // for an event of this field each
    bool m_isTaken = false;
};

struct CTovEditValueAngle::Child {
    eTovAngleField field = eTovFieldDegrees;
    std::unique_ptr<CTovEdit> edit;
    std::unique_ptr<CTovAngleFieldEdit> asField;
    CTovEditValueAngle** link = nullptr;  // to this angle, of the edit
};

CTovEditValueAngle::CTovEditValueAngle(std::unique_ptr<CTovValueAngle> value, QWidget* parent)
    : CTovEditValueAngleOn(parent), m_value(std::move(value)) {}

CTovEditValueAngle::CTovEditValueAngle(QWidget* parent)
    : CTovEditValueAngle(std::make_unique<CTovValueAngle>(), parent) {}

CTovEditValueAngle::CTovEditValueAngle(CTovUnitSettingsAngle* settings, QWidget* parent)
    : CTovEditValueAngle(std::make_unique<CTovValueAngle>(settings), parent) {}

CTovEditValueAngle::~CTovEditValueAngle() {
    bool isAtWork = false;
    for (auto const& child : m_children) {
        QObject::disconnect(child->edit.get(), nullptr, this, nullptr);
        isAtWork = isAtWork || child->edit->IsAtWork();
    }
    if (!isAtWork) return;
    // Whoever was told of what is typed in a field deletes the edit; the field goes when that is done.
    HoldChanges();
    for (auto const& child : m_children)
        *child->link = nullptr;
    DestroyWindow();
    EndFields();
}

unsigned CTovEditValueAngle::UnitMessage() const {
    return WM_TOV_UNIT_CHANGED_ANGLE;
}

template <class Edit>
void CTovEditValueAngle::MakeField(CTovAngleFieldSetup const& setup, Child& child) {
    auto edit = std::make_unique<FieldOf<Edit>>(*this);
    AddAdditionalEditFields(edit.get(), setup.style);
    CTovEditIntegerHost* integer = nullptr;
    CTovEditFloatingHost* floating = nullptr;
    if constexpr (std::is_base_of_v<CTovEditIntegerHost, Edit>) integer = edit.get();
    if constexpr (std::is_base_of_v<CTovEditFloatingHost, Edit>) floating = edit.get();
    child.asField = std::make_unique<CTovAngleFieldEdit>(setup, *edit, integer, floating);
    child.link = &edit->m_angle;
    child.edit = std::move(edit);
}

void CTovEditValueAngle::AddAdditionalEditFields(CTovEdit* edit, unsigned long style) {
    edit->setFont(font());
    edit->ModifyStyle(0, style & (ES_RIGHT | WS_TABSTOP));
    HINSTANCE module{};
    unsigned menu = 0;
    GetMenu(module, menu);
    edit->SetMenu(module, menu);
    edit->ReadOnlyKeepsFocus(1);  // it is enabled as the whole angle is
    TovHandle(edit);
}

ITovAngleField* CTovEditValueAngle::CreateField(CTovAngleFieldSetup const& setup) {
    auto child = std::make_unique<Child>();
    child->field = setup.field;
    if (setup.field == eTovFieldSign)
        MakeField<CTovEditString>(setup, *child);
    else if (setup.field == eTovFieldSeconds)
        MakeField<CTovEditFloating>(setup, *child);
    else
        MakeField<CTovEditInteger>(setup, *child);
    CTovEdit& edit = *child->edit;
    edit.setAccessibleName(TovQString(m_mask.FieldSign(setup.field)));
    edit.show();
    OnDlgCtrlChildAdded(edit.GetSafeHwnd());
    ITovAngleField* const field = child->asField.get();
    m_children.push_back(std::move(child));
    PutFieldsIntoFocusChain();
    setAcceptDrops(false);  // a text dropped beside a field would be nobody's
    updateGeometry();
    return field;
}

void CTovEditValueAngle::DestroyFields() {
    // The focus stays in the edit.
    m_losesFields = true;
    if (QWidget const* const focus = window()->focusWidget();
        std::ranges::any_of(m_children, [focus](auto const& child) { return child->edit.get() == focus; }))
        QWidget::setFocus(Qt::OtherFocusReason);
    m_losesFields = false;
    EndFields();
    setAcceptDrops(true);
    updateGeometry();
}

void CTovEditValueAngle::EndFields() {
    for (auto& child : m_children) {
        child->asField.reset();
        if (child->edit->IsAtWork()) *child->link = nullptr;
        EndSoon(std::move(child->edit));
    }
    m_children.clear();
}

CTovEdit* CTovEditValueAngle::FieldEdit(eTovAngleField field) const {
    auto const found = std::ranges::find(m_children, field, [](auto const& child) { return child->field; });
    return found != m_children.end() ? (*found)->edit.get() : nullptr;
}

// Behind the edit, in the order of the mask.
void CTovEditValueAngle::PutFieldsIntoFocusChain() {
    QWidget* before = this;
    for (auto const& child : m_children) {
        QWidget::setTabOrder(before, child->edit.get());
        before = child->edit.get();
    }
    if (GetEditButton() != nullptr) QWidget::setTabOrder(before, GetEditButton());
}

int CTovEditValueAngle::CreateEditButton(char const* words) {
    int const result = CTovEditValueAngleOn::CreateEditButton(words);
    PutFieldsIntoFocusChain();
    return result;
}

void CTovEditValueAngle::SetMenu(HINSTANCE module, unsigned id) {
    CTovEditValueAngleOn::SetMenu(module, id);
    for (auto const& child : m_children)
        child->edit->SetMenu(module, id);
}

bool CTovEditValueAngle::OnFieldKey(int virtualKey, CTovEdit& field) {
    ITovSystem& system = *TovGetSystem();
    bool const isControl = system.IsKeyDown(VK_CONTROL) != 0;
    if (system.IsKeyDown(VK_SHIFT) != 0) return false;
    switch (virtualKey) {
        case VK_LEFT:
            return m_mask.MoveCaret(isControl ? eTovCaretPrevious : eTovCaretLeft) != 0;
        case VK_RIGHT:
            return m_mask.MoveCaret(isControl ? eTovCaretNext : eTovCaretRight) != 0;
        case VK_HOME:
            return m_mask.MoveCaret(eTovCaretHome) != 0;
        case VK_END:
            return m_mask.MoveCaret(eTovCaretEnd) != 0;
        case VK_BACK:
            return !field.hasSelectedText() && field.cursorPosition() == 0 &&
                   m_mask.MoveCaret(eTovCaretLeft) != 0;
        case VK_DELETE:
            return !field.hasSelectedText() && field.cursorPosition() == field.text().size() &&
                   m_mask.MoveCaret(eTovCaretRight) != 0;
        case VK_UP:
        case VK_DOWN:
            Text().OnSpinNotification(virtualKey == VK_UP ? -1 : 1);
            return true;
        default:
            return false;
    }
}

void CTovEditValueAngle::OnFieldLeft() {
    if (ControlOrChildHasFocus() != 0) return;
    m_fieldHadFocus = false;
    TellDone();
}

void CTovEditValueAngle::OnFieldChanged() {
    if (!IsChanging()) NoteChange();
    m_fieldChanged = true;
    TellContent();
}

void CTovEditValueAngle::OnContentChanged() {
    QPointer<CTovEdit> const alive(this);
    if (std::exchange(m_fieldChanged, false)) TellParent(*this, EN_CHANGE);
    if (alive && m_mask.IsSplit()) TellEmpty();
    if (alive) CTovEditValueAngleOn::OnContentChanged();
}

bool CTovEditValueAngle::IsTextAllowed(CString const& text) {
    return m_mask.IsTextAllowed() || text == m_mask.MaskText();
}

LRESULT CTovEditValueAngle::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    // Its state as an edit is not that of having got the focus now.
    if (m_losesFields && message == WM_SETFOCUS) return DefWindowProc(message, wParam, lParam);
    if (!m_mask.IsSplit()) return CTovEditValueAngleOn::WindowProc(message, wParam, lParam);
    switch (message) {
        case WM_SETFOCUS: {
            HWND const self = GetSafeHwnd();
            auto const* const event = static_cast<QFocusEvent const*>(TovEventOf(*this, WM_SETFOCUS));
            QPoint const press = mapFromGlobal(LastPress());
            bool const isPressed =
                event != nullptr && event->reason() == Qt::MouseFocusReason && !IsOfCompanion(press);
            bool const isMnemonic = event != nullptr && event->reason() == Qt::ShortcutFocusReason;
            LRESULT const result = DefWindowProc(message, wParam, lParam);
            if (!IsWindow(self)) return result;
            if (isPressed) m_mask.OnFieldFocus(m_mask.FindClosestChildEdit(TovPoint(press)));
            if (!isMnemonic) {
                m_mask.OnSetFocus();
                return result;
            }
            m_mask.SetChildEditFocus(eFocusFirst);
            if (CTovEdit* const first = FieldEdit(eTovFieldDegrees)) first->selectAll();
            return result;
        }
        case WM_KILLFOCUS:
            return DefWindowProc(message, wParam, lParam);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            m_mask.OnFieldFocus(m_mask.FindClosestChildEdit(TovPointOf(lParam)));
            m_mask.SetChildEditFocus(eFocusKeep);
            return 0;
        case WM_KEYDOWN:
            return DefWindowProc(message, wParam, lParam);
        case WM_CONTEXTMENU:
            SetFocus();
            return 0;
        case WM_COMMAND:
            if (TovNotificationOf(wParam) == EN_CHANGE &&
                m_mask.IsChildEdit(CWnd::FromHandlePermanent(HWND{static_cast<std::uint64_t>(lParam)}))) {
                return 0;  // it tells by itself when it knows its number
            }
            break;
        case WM_FONTCHANGE: {
            LRESULT const result = CTovEditValueAngleOn::WindowProc(message, wParam, lParam);
            for (auto const& child : m_children)
                child->edit->setFont(font());
            m_mask.OnSize();
            updateGeometry();
            return result;
        }
        default:
            break;
    }
    return CTovEditValueAngleOn::WindowProc(message, wParam, lParam);
}

void CTovEditValueAngle::resizeEvent(QResizeEvent* event) {
    CTovEditValueAngleOn::resizeEvent(event);
    m_mask.OnSize();
}

// In parts the edit shows the signs of its mask; the digits are those of the fields.
void CTovEditValueAngle::paintEvent(QPaintEvent* event) {
    if (!m_mask.IsSplit()) return CTovEditValueAngleOn::paintEvent(event);
    QStyleOptionFrame panel;
    initStyleOption(&panel);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &panel, &painter, this);
    QFontMetrics const metrics = fontMetrics();
    QRect const contents = style()->subElementRect(QStyle::SE_LineEditContents, &panel, this);
    int const base = contents.top() + (contents.height() - metrics.height() + 1) / 2 + metrics.ascent();
    painter.setPen(palette().color(QPalette::Text));
    CTovEdit const* const letter = FieldEdit(eTovFieldSign);
    QString const mask = text();
    for (qsizetype begin = 0; begin < mask.size();) {
        qsizetype end = begin + 1;
        while (end < mask.size() && IsOfField(mask[end]) == IsOfField(mask[begin]))
            ++end;
        int const x = GetMaskIndent() + metrics.horizontalAdvance(mask, static_cast<int>(begin));
        QString signs = mask.mid(begin, end - begin);
        if (letter != nullptr && end == mask.size()) signs.chop(1);
        if (!IsOfField(mask[begin])) painter.drawText(x, base, signs);
        begin = end;
    }
}

int CTovEditValueAngle::GetMaskIndent() {
    QStyleOptionFrame option;
    initStyleOption(&option);
    QRect const contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    return contents.left() + textMargins().left() + marginOfText;
}

int CTovEditValueAngle::GetTextWidth(CString const& text) {
    return fontMetrics().horizontalAdvance(TovQString(text));
}

int CTovEditValueAngle::GetEditButtonWidth() {
    return Text().companions.buttonWidth;
}

// No field lies under the frame of the spin.
int CTovEditValueAngle::GetCompanionsWidth() {
    return Text().companions.buttonWidth + Text().companions.spinWidth;
}

void CTovEditValueAngle::FocusEditButton() {
    if (GetEditButton() != nullptr) GetEditButton()->setFocus(Qt::BacktabFocusReason);
}

// The wrong field gets it, once a guard that sends the focus back has done so.
void CTovEditValueAngle::SetFocus() {
    CTovEditValueAngleOn::SetFocus();
    if (!m_mask.IsSplit()) return;
    auto const toFailing = [this] {
        int const failing = m_mask.FailingField();
        if (failing < 0 || m_mask.GetChildEditFocus() < 0) return;
        m_mask.OnFieldFocus(failing);
        m_mask.SetChildEditFocus(eFocusKeep);
    };
    QMetaObject::invokeMethod(this, toFailing, Qt::QueuedConnection);
}

void CTovEditValueAngle::PostNextDlgCtl(int previous) {
    if (previous == 0 && GetEditButton() != nullptr && GetEditButton()->isEnabled())
        return GetEditButton()->setFocus(Qt::TabFocusReason);
    if (CWnd const* const around = GetParent())
        TovPostMessage(around->GetSafeHwnd(), WM_NEXTDLGCTL, static_cast<WPARAM>(previous != 0));
}

QString CTovEditValueAngle::WholeText() {
    if (m_mask.IsSplit()) return TovQString(m_mask.GetWholeText());
    CString const future = GetSafeHwnd() || IsEmpty() != 0 ? CString() : m_mask.GetFutureText();
    return future.empty() ? text() : TovQString(future);
}

QSize CTovEditValueAngle::minimumSizeHint() const {
    QSize size = CTovEditValueAngleOn::minimumSizeHint();
    auto& self = const_cast<CTovEditValueAngle&>(*this);
    if (m_mask.IsSplit())
        size.setWidth(std::max(size.width(), m_mask.GetMinEditWidth() + 2 * self.GetMaskIndent()));
    return size;
}

QSize CTovEditValueAngle::sizeHint() const {
    QSize size = CTovEditValueAngleOn::sizeHint();
    return m_mask.IsSplit() ? QSize(minimumSizeHint().width(), size.height()) : size;
}

}  // namespace tov
