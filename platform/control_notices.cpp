#include "platform/control_notices.h"

#include "platform/window_registry.h"

#include <tov310/dialog.h>
#include <tov310/messages.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextEdit>

namespace tov {
namespace {

bool IsButtonOfDialogs(int id) {
    return id == IDOK || id == IDCANCEL || id == ID_APPLY_NOW || id == ID_WIZBACK || id == ID_WIZNEXT ||
           id == ID_WIZFINISH;
}

// Opens what the class keeps to itself and its heirs.
struct BoxSignals : QDialogButtonBox {
    static constexpr auto IsHeard = &BoxSignals::isSignalConnected;
};

// Whether the host listens to the row of buttons, which ends the dialog by accept() or reject() then: the
// command comes from there.
bool IsToldByItsBox(QWidget const& button, int id) {
    auto const* const box = qobject_cast<QDialogButtonBox const*>(button.parentWidget());
    if (box == nullptr || (id != IDOK && id != IDCANCEL)) return false;
    auto const signal = id == IDOK ? QMetaMethod::fromSignal(&QDialogButtonBox::accepted)
                                   : QMetaMethod::fromSignal(&QDialogButtonBox::rejected);
    return (box->*BoxSignals::IsHeard)(signal);
}

void TellOfClick(CWnd& button, QWidget const& widget) {
    CWnd const* const around = button.GetParent();
    int const id = button.GetDlgCtrlID();
    bool const isForeign = around == nullptr || dynamic_cast<ForeignWindow const*>(around) != nullptr;
    if (IsButtonOfDialogs(id) && (isForeign || IsToldByItsBox(widget, id))) return;
    TellParent(button, BN_CLICKED);
}

}  // namespace

void TellParent(CWnd& control, unsigned notification) {
    HWND const self = control.GetSafeHwnd();
    CWnd const* const around = control.GetParent();
    if (!self || around == nullptr || !around->GetSafeHwnd()) return;
    TovSendMessage(around->GetSafeHwnd(), WM_COMMAND,
                   TovCommandParam(static_cast<unsigned>(control.GetDlgCtrlID()), notification),
                   static_cast<LPARAM>(self.id));
}

void ConnectNotices(QWidget& control, CWnd& window) {
    auto const tell = [&window](unsigned notification) {
        return [&window, notification] { TellParent(window, notification); };
    };
    // The window goes with the control, so the connections need no other end.
    if (auto* const edit = qobject_cast<QLineEdit*>(&control)) {
        QObject::connect(edit, &QLineEdit::textChanged, edit, tell(EN_CHANGE));
    } else if (auto* const text = qobject_cast<QTextEdit*>(&control)) {
        QObject::connect(text, &QTextEdit::textChanged, text, tell(EN_CHANGE));
    } else if (auto* const plain = qobject_cast<QPlainTextEdit*>(&control)) {
        QObject::connect(plain, &QPlainTextEdit::textChanged, plain, tell(EN_CHANGE));
    } else if (auto* const whole = qobject_cast<QSpinBox*>(&control)) {
        QObject::connect(whole, &QSpinBox::textChanged, whole, tell(EN_CHANGE));
    } else if (auto* const real = qobject_cast<QDoubleSpinBox*>(&control)) {
        QObject::connect(real, &QDoubleSpinBox::textChanged, real, tell(EN_CHANGE));
    } else if (auto* const date = qobject_cast<QDateTimeEdit*>(&control)) {
        QObject::connect(date, &QDateTimeEdit::dateTimeChanged, date, tell(EN_CHANGE));
    } else if (auto* const combo = qobject_cast<QComboBox*>(&control)) {
        QObject::connect(combo, &QComboBox::currentIndexChanged, combo, tell(CBN_SELCHANGE));
        QObject::connect(combo, &QComboBox::editTextChanged, combo, tell(CBN_EDITCHANGE));
    } else if (auto* const button = qobject_cast<QAbstractButton*>(&control)) {
        QObject::connect(button, &QAbstractButton::clicked, button,
                         [&window, button] { TellOfClick(window, *button); });
    } else if (auto* const list = qobject_cast<QListWidget*>(&control)) {
        QObject::connect(list, &QListWidget::itemSelectionChanged, list, tell(LBN_SELCHANGE));
    }
}

}  // namespace tov
