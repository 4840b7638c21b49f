#include <tov310/tov_dialog.h>

#include "platform/child_ground.h"
#include "platform/dialog_builder.h"
#include "platform/focus_order.h"
#include "platform/help_request.h"

#include <tov310/accelerator_keys.h>
#include <tov310/application.h>
#include <tov310/dlg_tool_bar.h>
#include <tov310/help_app.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/view.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QWhatsThis>

#include <utility>

namespace tov {

CTovDialog::CTovDialog(QWidget* parent) : CWndOn(parent) {}

CTovDialog::CTovDialog(unsigned id, CWnd* parent)
    : CWndOn(TovWidget(parent)), m_template(std::to_string(id)), m_helpTopic(id) {}

CTovDialog::CTovDialog(CString const& name, CWnd* parent) : CWndOn(TovWidget(parent)), m_template(name) {}

CTovDialog::CTovDialog(HINSTANCE module, unsigned id, QWidget* parent)
    : CWndOn(parent), m_module(module), m_template(std::to_string(id)), m_helpTopic(id) {}

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
    CTovDialogTemplate loaded;
    bool isFaulty = false;
    if (m_given == nullptr && !m_template.empty())
        isFaulty = TovLoadDialogTemplate(m_module, m_template.c_str(), loaded) == 0 || !MakeControls(loaded);
    else if (m_given != nullptr)
        isFaulty = !MakeControls(*m_given);
    if (isFaulty) {
        CWndOn::DestroyWindow();
        return Readiness::kFaulty;
    }
    m_isReady = true;
    m_okEnabled = -1;
    // A row of buttons of the toolkit's own is heard from now on, also one that nobody is connected to.
    for (QDialogButtonBox const* const box : findChildren<QDialogButtonBox*>()) {
        for (QAbstractButton* const button : box->buttons())
            TovWnd(button);
    }
    QPointer<CTovDialog> const alive(this);
    auto const end = m_end;
    int const takesFirst = InitDialog();
    if (!alive || !m_isReady || (end != nullptr && end->has_value())) return Readiness::kOver;
    if (takesFirst != 0 && isWindow()) FocusFirstControl();
    return Readiness::kReady;
}

bool CTovDialog::MakeControls(CTovDialogTemplate const& dialog) {
    SetFrame(dialog.style);
    if (!FillDialog(*this, dialog, m_made, nullptr)) return false;
    if (isWindow() && dialog.hasPlace) {
        QPoint const corner = TovMapDialogRect(font(), dialog.rect).topLeft();
        move(parentWidget() != nullptr ? parentWidget()->window()->mapToGlobal(corner) : corner);
    } else if (!isWindow()) {
        move(TovMapDialogRect(font(), dialog.rect).topLeft());
    }
    CWnd::ModifyStyle(0, dialog.style);
    if ((dialog.style & WS_DISABLED) != 0) setEnabled(false);
    m_isShownAtOnce = (dialog.style & WS_VISIBLE) != 0;
    return true;
}

// As the template says, which leaves nothing of what the host has set before. All have the question mark.
void CTovDialog::SetFrame(unsigned long style) {
    if ((style & WS_CHILD) != 0 && m_end == nullptr && parentWidget() != nullptr) {
        setWindowFlags(Qt::Widget);
        return;
    }
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                            Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                            Qt::WindowContextHelpButtonHint;
    if ((style & WS_MINIMIZEBOX) != 0) flags |= Qt::WindowMinimizeButtonHint;
    if ((style & WS_MAXIMIZEBOX) != 0) flags |= Qt::WindowMaximizeButtonHint;
    setWindowFlags(flags);
}

int CTovDialog::OnInitDialog() {
    CWinApp* const app = TovGetApp();
    CWnd* const main = app != nullptr ? CWnd::FromHandlePermanent(app->GetMainWnd()) : nullptr;
    if (main != nullptr && main->IsKindOf(&CFrameWnd::classCFrameWnd))
        m_inheritedAccelerators = TovGetAccelerators(TovWidget(main));
    UseInheritedAccelerators(m_useInheritedAccelerators);
    ModifyStyleEx(0, WS_EX_CONTEXTHELP);
    return CTovDialogOf::OnInitDialog();
}

// In a dialog within another the keys are those of the outer one.
void CTovDialog::UseInheritedAccelerators(int use) {
    if (m_inheritedAccelerators && isWindow() && (use != 0 || m_useInheritedAccelerators != 0))
        TovSetAccelerators(this, use != 0 ? m_inheritedAccelerators : HACCEL());
    m_useInheritedAccelerators = use;
}

int CTovDialog::EnableOkButton() {
    QPointer<CTovDialog> const alive(this);
    int const isEnabled = CTovDialogOf::EnableOkButton();
    if (!alive || IsChildDialog() != 0 || std::exchange(m_okEnabled, isEnabled) == isEnabled)
        return isEnabled;
    Q_EMIT okButtonEnabled(isEnabled != 0);
    return isEnabled;
}

void CTovDialog::OnSetDialogDocument() {
    CTovDialogOf::OnSetDialogDocument();
    Q_EMIT documentSet();
}

void CTovDialog::OnUnsetDialogDocument() {
    CTovDialogOf::OnUnsetDialogDocument();
    Q_EMIT documentAboutToBeUnset();
}

std::unique_ptr<CDialog> CTovDialog::MakePlainDialog() {
    return std::make_unique<CTovDialog>();
}

void CTovDialog::TakePlaceholder(CWnd& placeholder) {
    m_childGround = std::make_unique<ChildGround>(*this, placeholder);
    CTovDialogOf::TakePlaceholder(placeholder);
}

void CTovDialog::PrepareChildDialog(CDialog& child) {
    if (m_childGround != nullptr) m_childGround->Prepare(child);
}

LRESULT CTovDialog::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    HWND const self = GetSafeHwnd();
    LRESULT const result = CTovDialogOf::WindowProc(message, wParam, lParam);
    if (message == WM_TOV_POST_INITDIALOG && IsWindow(self)) Q_EMIT initialized();
    return result;
}

void CTovDialog::FocusFirstControl() {
    for (QWidget* w = nextInFocusChain(); w != nullptr && w != this; w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || !isAncestorOf(w)) continue;
        if (!w->isEnabledTo(this) || !w->isVisibleTo(this)) continue;
        w->setFocus(Qt::TabFocusReason);
        return;
    }
}

int CTovDialog::DoModal(HINSTANCE module) {
    if (m_template.empty()) return -1;
    if (m_end == nullptr) m_module = module;
    return RunModal();
}

int CTovDialog::RunModal() {
    if (m_end != nullptr) {
        TovReportFault("a dialog was to be shown modally while it is");
        return -1;
    }
    QPointer<CTovDialog> const alive(this);
    QPointer<QWidget> const owner(parentWidget() != nullptr ? parentWidget()->window()
                                                            : QApplication::activeWindow());
    auto const end = std::make_shared<std::optional<int>>();
    m_end = end;
    m_isModeless = 0;
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
    int const result = RunModal();
    return result == IDCANCEL || result == -1 ? static_cast<int>(Rejected) : result;
}

int CTovDialog::Create(HINSTANCE module, unsigned id, CWnd* parent) {
    if (m_isReady) return 0;
    m_helpTopic = id;
    m_template = std::to_string(id);
    return Create(module, parent);
}

int CTovDialog::Create(HINSTANCE module, char const* name, CWnd* parent) {
    if (m_isReady) return 0;
    m_template = name != nullptr ? name : "";
    return Create(module, parent);
}

int CTovDialog::Create(HINSTANCE module, CWnd* parent) {
    if (m_template.empty()) return -1;
    if (m_isReady) return 0;
    CTovDialogTemplate dialog;
    if (TovLoadDialogTemplate(module, m_template.c_str(), dialog) == 0) return 0;
    m_module = module;
    m_isModeless = 1;
    return CreateIndirect(dialog, parent);
}

int CTovDialog::CreateIndirect(CTovDialogTemplate const& dialog, CWnd* parent) {
    if (m_isReady) return 0;
    QWidget* const around = TovWidget(parent);
    if (around != nullptr && !around->isAncestorOf(this)) setParent(around, windowFlags());
    m_given = &dialog;
    QPointer<CTovDialog> const alive(this);
    Readiness const readiness = Prepare();
    if (alive) m_given = nullptr;
    if (readiness != Readiness::kReady) return 0;
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
    // The toolkit gives a dialog that it shows the focus, which is not for one within another.
    if (isWindow())
        CWndOn::setVisible(visible);
    else
        QWidget::setVisible(visible);
}

int CTovDialog::CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId,
                              unsigned arrangeFlags) {
    if (m_toolbar == nullptr) m_toolbar = std::make_shared<CTovDlgToolBar>(this);
    return m_toolbar->Create(module, bitmapId, controlId, static_cast<int>(arrangeFlags), 0);
}

// Nobody else would end those that delete themselves.
void CTovDialog::EndDialogsOf(QWidget const& owner) {
    QList<QPointer<CTovDialog>> ending;
    for (CTovDialog* const dialog : owner.findChildren<CTovDialog*>()) {
        if (dialog->m_isModeless != 0 && dialog->m_autoDelete != 0 && dialog->isWindow() &&
            dialog->parentWidget()->window() == &owner)
            ending.append(dialog);
    }
    for (QPointer<CTovDialog> const& dialog : ending) {
        if (dialog) dialog->DestroyWindow();
    }
}

int CTovDialog::DestroyWindow() {
    QPointer<CTovDialog> const alive(this);
    EndDialogsOf(*this);
    if (!alive) return 1;
    int const result = CWndOn::DestroyWindow();
    if (!alive || GetSafeHwnd()) return result;  // or somebody is told of its end, further out
    m_isReady = false;
    RemoveControls();
    // One of its own handlers may be at work.
    if (result != 0 && m_isModeless != 0 && m_autoDelete != 0) deleteLater();
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

// The button with the focus unless it is one that is never the default button, else the default one, else
// IDOK.
void CTovDialog::PressEnter() {
    QPushButton* button = qobject_cast<QPushButton*>(focusWidget());
    if (button != nullptr && !button->autoDefault() && !button->isDefault()) button = nullptr;
    if (button == nullptr) button = DefaultButtonOf(*this);
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
    else if (event->key() == Qt::Key_F1 && (event->modifiers() & ~Qt::ShiftModifier) == 0 && isWindow() &&
             CTovHelpApp::Get() != nullptr)
        OnHelpInfo(HelpRequest(focusWidget(), *this, QCursor::pos()));
    else
        CWndOn::keyPressEvent(event);
}

bool CTovDialog::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::EnterWhatsThisMode:
            NoteHelpButton(1);
            break;
        case QEvent::QueryWhatsThis:
            if (CTovHelpApp::Get() == nullptr) break;
            event->accept();
            return true;
        case QEvent::WhatsThis: {
            if (CTovHelpApp::Get() == nullptr) break;
            auto const& help = static_cast<QHelpEvent const&>(*event);
            QWhatsThis::leaveWhatsThisMode();
            OnHelpInfo(HelpRequest(childAt(help.pos()), *this, help.globalPos()));
            event->accept();
            return true;
        }
        default:
            break;
    }
    return CWndOn::event(event);
}

CTovDialogCV::~CTovDialogCV() = default;

void CTovDialogCV::OnEmptyFieldsChanged(int emptyFields) {
    QPointer<CTovDialogCV> const alive(this);
    CTovDialogCVOf::OnEmptyFieldsChanged(emptyFields);
    if (alive) Q_EMIT emptyFieldsChanged(emptyFields != 0);
}

void CTovDialogCV::OnDisabledOkButtonClicked(unsigned id) {
    QPointer<CTovDialogCV> const alive(this);
    CTovDialogCVOf::OnDisabledOkButtonClicked(id);
    if (alive) Q_EMIT disabledOkButtonClicked(id);
}

}  // namespace tov
