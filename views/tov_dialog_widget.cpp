#include <tov310/tov_dialog.h>

#include "platform/dialog_builder.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

#include <utility>

namespace tov {

CTovDialog::CTovDialog(QWidget* parent) : CWndOn(parent) {}

CTovDialog::CTovDialog(HINSTANCE module, unsigned id, QWidget* parent)
    : CWndOn(parent), m_module(module), m_template(std::to_string(id)) {}

CTovDialog::CTovDialog(HINSTANCE module, char const* name, QWidget* parent)
    : CWndOn(parent), m_module(module), m_template(name != nullptr ? name : "") {}

CTovDialog::~CTovDialog() = default;

CWnd* CTovDialog::GetOwner() const {
    return isWindow() && parentWidget() != nullptr ? TovWnd(parentWidget()->window()) : GetParent();
}

// Makes its controls and lets the host see them, once.
CTovDialog::Readiness CTovDialog::Prepare() {
    if (m_isReady) return Readiness::kReady;
    TovWnd(this);  // is born now
    if (!m_template.empty() && !MakeControls()) {
        CWndOn::DestroyWindow();
        return Readiness::kFaulty;
    }
    m_isReady = true;
    QPointer<CTovDialog> const alive(this);
    auto const end = m_end;
    int const takesFirst = InitDialog();
    if (!alive || !m_isReady || (end != nullptr && end->has_value())) return Readiness::kOver;
    if (takesFirst != 0) FocusFirstControl();
    return Readiness::kReady;
}

bool CTovDialog::MakeControls() {
    CTovDialogTemplate dialog;
    if (TovLoadDialogTemplate(m_module, m_template.c_str(), dialog) == 0) return false;
    SetFrame(dialog.style);
    if (!FillDialog(*this, dialog, m_made, nullptr)) return false;
    if (isWindow() && dialog.hasPlace) {
        QPoint const corner = TovMapDialogRect(font(), dialog.rect).topLeft();
        move(parentWidget() != nullptr ? parentWidget()->window()->mapToGlobal(corner) : corner);
    }
    CWnd::ModifyStyle(0, dialog.style);
    if ((dialog.style & WS_DISABLED) != 0) setEnabled(false);
    m_isShownAtOnce = (dialog.style & WS_VISIBLE) != 0;
    return true;
}

// As the template says, which leaves nothing of what the host has set before.
void CTovDialog::SetFrame(unsigned long style) {
    if ((style & WS_CHILD) != 0 && m_end == nullptr && parentWidget() != nullptr) {
        setWindowFlags(Qt::Widget);
        return;
    }
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                            Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if ((style & WS_MINIMIZEBOX) != 0) flags |= Qt::WindowMinimizeButtonHint;
    if ((style & WS_MAXIMIZEBOX) != 0) flags |= Qt::WindowMaximizeButtonHint;
    if ((style & DS_CONTEXTHELP) != 0) flags |= Qt::WindowContextHelpButtonHint;
    setWindowFlags(flags);
}

void CTovDialog::FocusFirstControl() {
    for (QWidget* w = nextInFocusChain(); w != nullptr && w != this; w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || !isAncestorOf(w)) continue;
        if (!w->isEnabledTo(this) || !w->isVisibleTo(this)) continue;
        w->setFocus(Qt::TabFocusReason);
        return;
    }
}

int CTovDialog::DoModal() {
    if (m_end != nullptr) {
        TovReportFault("a dialog was to be shown modally while it is");
        return -1;
    }
    QPointer<CTovDialog> const alive(this);
    QPointer<QWidget> const owner(parentWidget() != nullptr ? parentWidget()->window()
                                                            : QApplication::activeWindow());
    auto const end = std::make_shared<std::optional<int>>();
    m_end = end;
    m_isModeless = false;
    Readiness const readiness = Prepare();
    if (readiness == Readiness::kReady) {
        // A parent that dies takes its children along; this one belongs to whoever waits for it here.
        QMetaObject::Connection leave;
        if (parentWidget() != nullptr) {
            leave = connect(parentWidget(), &QObject::destroyed, this,
                            [this] { setParent(nullptr, windowFlags()); });
        }
        CWndOn::exec();
        disconnect(leave);
    }
    int const result = end->value_or(readiness == Readiness::kFaulty ? -1 : IDCANCEL);
    if (!alive) return result;
    m_end = nullptr;
    if (readiness == Readiness::kReady && m_wasActive && owner && owner->isVisible()) owner->activateWindow();
    if (!m_template.empty()) {
        m_isLoopOver = true;
        DestroyWindow();
        if (alive) m_isLoopOver = false;
    }
    return result;
}

int CTovDialog::exec() {
    int const result = DoModal();
    return result == IDCANCEL || result == -1 ? static_cast<int>(Rejected) : result;
}

int CTovDialog::Create() {
    if (m_isReady) return 0;
    m_isModeless = true;
    if (Prepare() != Readiness::kReady) return 0;
    if (m_isShownAtOnce) show();
    return 1;
}

void CTovDialog::EndDialog(int result) {
    done(result);
}

void CTovDialog::done(int result) {
    if (m_end != nullptr && !m_end->has_value()) *m_end = result;
    QPointer<CTovDialog> const alive(this);
    CWndOn::done(result);
    if (alive && result == IDCANCEL) Q_EMIT rejected();
}

void CTovDialog::setVisible(bool visible) {
    if (visible && Prepare() != Readiness::kReady) return;
    if (!visible && isVisible()) m_wasActive = isActiveWindow();
    CWndOn::setVisible(visible);
}

int CTovDialog::DestroyWindow() {
    QPointer<CTovDialog> const alive(this);
    int const result = CWndOn::DestroyWindow();
    if (!alive) return result;
    m_isReady = false;
    RemoveControls();
    return result;
}

// One of them may be what has asked for it, unless the modal loop is over.
void CTovDialog::RemoveControls() {
    for (QPointer<QObject> const& object : std::exchange(m_made, {})) {
        if (!object) continue;
        if (m_isLoopOver) {
            delete object.data();
            continue;
        }
        if (auto* const widget = qobject_cast<QWidget*>(object.data()))
            widget->setParent(nullptr);
        else
            object->setParent(nullptr);
        object->deleteLater();
    }
}

void CTovDialog::OnOK() {
    QPointer<CTovDialog> const alive(this);
    EndDialog(IDOK);
    if (alive && m_isModeless) DestroyWindow();
}

void CTovDialog::OnCancel() {
    QPointer<CTovDialog> const alive(this);
    EndDialog(IDCANCEL);
    if (alive && m_isModeless) DestroyWindow();
}

void CTovDialog::Command(int id) {
    if (!GetSafeHwnd()) {
        EndDialog(id);
        return;
    }
    HWND const control = GetDlgItem(id);
    QWidget const* const widget = TovWidget(control);
    if (widget != nullptr && !widget->isEnabled()) return;
    TovSendMessage(GetSafeHwnd(), WM_COMMAND, TovCommandParam(static_cast<unsigned>(id), BN_CLICKED),
                   static_cast<LPARAM>(control.id));
}

void CTovDialog::accept() {
    Command(IDOK);
}

void CTovDialog::reject() {
    Command(IDCANCEL);
}

// The button with the focus, else the default one, else IDOK.
void CTovDialog::PressEnter() {
    QPushButton* button = qobject_cast<QPushButton*>(focusWidget());
    if (button == nullptr) {
        for (QPushButton* const candidate : findChildren<QPushButton*>()) {
            if (candidate->isDefault() && candidate->isVisible()) button = candidate;
        }
    }
    if (button != nullptr)
        button->click();
    else
        accept();
}

void CTovDialog::keyPressEvent(QKeyEvent* event) {
    bool const isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    bool const isPlain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
    // In a dialog within another the outer one decides.
    if (!isWindow() && ((isEnter && isPlain) || event->matches(QKeySequence::Cancel)))
        event->ignore();
    else if (isEnter && isPlain)
        PressEnter();
    else
        CWndOn::keyPressEvent(event);
}

}  // namespace tov
