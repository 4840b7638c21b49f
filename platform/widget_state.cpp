// What a window is asked about, answered by its widget, and what it is told to be.
#include "platform/event_routing.h"
#include "platform/logical_tree.h"
#include "platform/paint_devices.h"
#include "platform/window_registry.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QWizard>

#include <algorithm>
#include <set>
#include <vector>

namespace tov {
namespace {

int StandardIdOf(QWidget const& widget) {
    auto* const button = qobject_cast<QAbstractButton*>(const_cast<QWidget*>(&widget));
    if (button == nullptr) return 0;
    for (QWidget const* w = widget.parentWidget(); w != nullptr; w = w->parentWidget()) {
        if (auto const* const box = qobject_cast<QDialogButtonBox const*>(w)) {
            switch (box->standardButton(button)) {
                case QDialogButtonBox::Ok:
                    return IDOK;
                case QDialogButtonBox::Cancel:
                case QDialogButtonBox::Close:
                    return IDCANCEL;
                case QDialogButtonBox::Apply:
                    return ID_APPLY_NOW;
                case QDialogButtonBox::Help:
                    return IDHELP;
                default:
                    return 0;
            }
        }
        if (auto const* const wizard = qobject_cast<QWizard const*>(w)) {
            if (wizard->button(QWizard::NextButton) == button) return ID_WIZNEXT;
            if (wizard->button(QWizard::CommitButton) == button) return ID_WIZNEXT;
            if (wizard->button(QWizard::BackButton) == button) return ID_WIZBACK;
            if (wizard->button(QWizard::FinishButton) == button) return ID_WIZFINISH;
            if (wizard->button(QWizard::CancelButton) == button) return IDCANCEL;
            if (wizard->button(QWizard::HelpButton) == button) return IDHELP;
            return 0;
        }
    }
    return 0;
}

constexpr int firstFreeId = 0x4000;  // below the commands of applications, above what people write
constexpr int lastFreeId = 0x7FFF;

// By the window or as a property; looking for one in vain takes long, so not where there are none.
int StatedId(QWidget const& widget) {
    CWnd const* const window = WindowRegistry::Instance().Find(&widget);
    int const ofWindow = window != nullptr ? window->CWnd::GetDlgCtrlID() : 0;
    if (ofWindow != 0) return ofWindow;
    int const stated = widget.dynamicPropertyNames().isEmpty() ? 0 : widget.property(tovIdProperty).toInt();
    return stated != 0 ? stated : StandardIdOf(widget);
}

// All who stand beside the widget get theirs at the same time, in the order of the focus.
int FreeIdOf(QWidget& widget) {
    WindowRegistry& registry = WindowRegistry::Instance();
    QWidget* const around = LogicalParent(widget);
    if (int const id = registry.GivenId(widget, around); id != 0) return id;
    std::vector<QWidget*> const siblings =
        around != nullptr ? LogicalChildren(*around) : std::vector{&widget};
    std::set<int> taken;
    std::vector<QWidget*> without;
    for (QWidget* const sibling : siblings) {
        int const given = registry.GivenId(*sibling, around);
        int const id = given != 0 ? given : StatedId(*sibling);
        id != 0 ? static_cast<void>(taken.insert(id)) : without.push_back(sibling);
    }
    int next = firstFreeId;
    for (QWidget* const sibling : without) {
        while (taken.contains(next) && next < lastFreeId)
            ++next;
        registry.GiveId(*sibling, around, next);
        taken.insert(next);
    }
    return registry.GivenId(widget, around);
}

unsigned long ButtonStyleOf(QWidget const& widget, unsigned long stored) {
    if (qobject_cast<QRadioButton const*>(&widget) != nullptr) return BS_AUTORADIOBUTTON;
    if (qobject_cast<QCheckBox const*>(&widget) != nullptr) return BS_AUTOCHECKBOX;
    if ((stored & BS_PUSHLIKE) != 0) return BS_PUSHLIKE | BS_CHECKBOX;
    auto const* const push = qobject_cast<QPushButton const*>(&widget);
    return push != nullptr && push->isDefault() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
}

constexpr unsigned long stylesOfAll = WS_CHILD | WS_MINIMIZE | WS_VISIBLE | WS_DISABLED | WS_TABSTOP;
constexpr unsigned long stylesOfButtons = BS_TYPEMASK | BS_PUSHLIKE;
constexpr unsigned long stylesOfEdits = ES_READONLY | ES_PASSWORD | ES_RIGHT;

// Gives the focus to the control of the window that comes after, or before, the one that has it.
void FocusNextControl(QWidget& around, bool previous) {
    QWidget* const focus = QApplication::focusWidget();
    if (focus == nullptr) return;
    QWidget* control = focus;
    while (control != nullptr && LogicalParent(*control) != &around)
        control = LogicalParent(*control);
    if (control == nullptr) return;
    QWidget* next = control;
    do {
        next = previous ? next->previousInFocusChain() : next->nextInFocusChain();
        bool const isElsewhere = next != control && !control->isAncestorOf(next);
        if (isElsewhere && next->isVisible() && next->isEnabled() &&
            (next->focusPolicy() & Qt::TabFocus) != 0)
            return next->setFocus(previous ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    } while (next != control);
}

LRESULT DialogCodeOf(QWidget const& widget) {
    return qobject_cast<QAbstractButton const*>(&widget) != nullptr ? DLGC_BUTTON : 0;
}

}  // namespace

namespace detail {

CWnd* ParentOf(QWidget const& widget) {
    return WindowRegistry::Instance().Of(LogicalParent(widget));
}

std::vector<HWND> ChildrenOf(QWidget const& widget) {
    std::vector<HWND> children;
    for (QWidget* const child : LogicalChildren(widget)) {
        if (WindowRegistry::Instance().IsDead(*child)) continue;
        CWnd const* const window = WindowRegistry::Instance().Of(child);
        if (window != nullptr && window->GetSafeHwnd()) children.push_back(window->GetSafeHwnd());
    }
    return children;
}

int IdOf(QWidget& widget, int given) {
    if (given != 0) return given;
    int const stated = StatedId(widget);
    return stated != 0 || widget.isWindow() ? stated : FreeIdOf(widget);
}

CString ClassNameOf(QWidget const& widget) {
    if (qobject_cast<QLineEdit const*>(&widget) != nullptr) return "Edit";
    if (qobject_cast<QComboBox const*>(&widget) != nullptr) return "ComboBox";
    if (qobject_cast<QAbstractButton const*>(&widget) != nullptr) return "Button";
    if (qobject_cast<QLabel const*>(&widget) != nullptr) return "Static";
    if (qobject_cast<QScrollBar const*>(&widget) != nullptr) return "ScrollBar";
    if (qobject_cast<QListWidget const*>(&widget) != nullptr) return "ListBox";
    return widget.metaObject()->className();
}

unsigned long StyleOf(QWidget const& widget, unsigned long stored) {
    unsigned long style = (stored & ~stylesOfAll) | WS_CLIPCHILDREN;
    if (!widget.isWindow()) style |= WS_CHILD;
    if (widget.isWindow() && widget.isMinimized()) style |= WS_MINIMIZE;
    if (IsShownInParent(widget)) style |= WS_VISIBLE;
    if (!widget.isEnabled()) style |= WS_DISABLED;
    if ((widget.focusPolicy() & Qt::TabFocus) != 0) style |= WS_TABSTOP;
    if (qobject_cast<QAbstractButton const*>(&widget) != nullptr)
        style = (style & ~stylesOfButtons) | ButtonStyleOf(widget, stored);
    if (auto const* const edit = qobject_cast<QLineEdit const*>(&widget)) {
        style &= ~stylesOfEdits;
        if (edit->isReadOnly()) style |= ES_READONLY;
        if (edit->echoMode() != QLineEdit::Normal) style |= ES_PASSWORD;
        if (edit->alignment().testFlag(Qt::AlignRight)) style |= ES_RIGHT;
    }
    return style;
}

void ChangeStyle(QWidget& widget, unsigned long before, unsigned long after) {
    unsigned long const changed = before ^ after;
    auto const isOn = [after](unsigned long bit) { return (after & bit) != 0; };
    if ((changed & WS_DISABLED) != 0) widget.setEnabled(!isOn(WS_DISABLED));
    if ((changed & WS_TABSTOP) != 0) {
        auto const policy = static_cast<int>(widget.focusPolicy());
        widget.setFocusPolicy(
            static_cast<Qt::FocusPolicy>(isOn(WS_TABSTOP) ? policy | Qt::TabFocus : policy & ~Qt::TabFocus));
    }
    if (auto* const push = qobject_cast<QPushButton*>(&widget);
        push != nullptr && (changed & stylesOfButtons)) {
        bool const isDefault = (after & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        push->setDefault(isDefault);
        if (isOn(BS_PUSHLIKE)) push->setAutoDefault(false);
    }
    if (auto* const edit = qobject_cast<QLineEdit*>(&widget)) {
        if ((changed & ES_READONLY) != 0) edit->setReadOnly(isOn(ES_READONLY));
        if ((changed & ES_PASSWORD) != 0)
            edit->setEchoMode(isOn(ES_PASSWORD) ? QLineEdit::Password : QLineEdit::Normal);
        if ((changed & ES_RIGHT) != 0)
            edit->setAlignment((isOn(ES_RIGHT) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    // Last, since it may run the host's code.
    if ((changed & WS_VISIBLE) != 0) widget.setVisible(isOn(WS_VISIBLE));
}

unsigned long ExStyleOf(QWidget const&, unsigned long stored) {
    return stored;
}

void FocusTo(QWidget& widget) {
    RevealPages(widget);
    widget.setFocus(Qt::OtherFocusReason);
}

CString TextOf(QWidget const& widget) {
    if (widget.isWindow()) return TovText(widget.windowTitle());
    if (auto const* const combo = qobject_cast<QComboBox const*>(&widget))
        return TovText(combo->currentText());
    return TovText(widget.property("text").toString());
}

void SetTextOf(QWidget& widget, char const* text) {
    QString const shown = TovQString(text);
    if (widget.isWindow())
        widget.setWindowTitle(shown);
    else if (auto* const combo = qobject_cast<QComboBox*>(&widget))
        combo->setCurrentText(shown);
    else if (widget.metaObject()->indexOfProperty("text") >= 0)
        widget.setProperty("text", shown);
}

CRect ScreenRectOf(QWidget const& widget) {
    if (widget.isWindow()) return TovRect(widget.frameGeometry());
    return TovRect(QRect(widget.mapToGlobal(QPoint()), widget.size()));
}

CRect ClientRectOf(QWidget const& widget) {
    auto const* const area = qobject_cast<QAbstractScrollArea const*>(&widget);
    QSize const size = area != nullptr ? area->viewport()->size() : widget.size();
    return {0, 0, size.width(), size.height()};
}

// The widget whose place is that of the window's own pixels.
static QWidget const& ClientWidget(QWidget const& widget) {
    auto const* const area = qobject_cast<QAbstractScrollArea const*>(&widget);
    return area != nullptr ? *area->viewport() : widget;
}

void MoveWithin(QWidget& widget, CRect const& rect) {
    QRect place = TovQRect(rect);
    QWidget const* const around = LogicalParent(widget);
    if (around != nullptr)
        place.moveTopLeft(widget.parentWidget()->mapFrom(&ClientWidget(*around), place.topLeft()));
    widget.setGeometry(place);
}

CPoint ToScreen(QWidget const& widget, CPoint const& point) {
    return TovPoint(ClientWidget(widget).mapToGlobal(TovQPoint(point)));
}

CPoint FromScreen(QWidget const& widget, CPoint const& point) {
    return TovPoint(ClientWidget(widget).mapFromGlobal(TovQPoint(point)));
}

HFONT FontOf(QWidget const& widget) {
    return TovFont(widget.font());
}

void SetFontOf(QWidget& widget, HFONT font) {
    widget.setFont(font != nullptr ? TovQFont(font) : QFont());
}

void Redraw(QWidget& widget, unsigned flags) {
    QWidget& shown = const_cast<QWidget&>(ClientWidget(widget));
    // Not at once while something is being painted.
    if ((flags & RDW_UPDATENOW) != 0 && !IsPainting())
        shown.repaint();
    else if ((flags & RDW_INVALIDATE) != 0)
        shown.update();
}

LRESULT AnswerAsToolkit(CWnd& window, QWidget& widget, unsigned message, WPARAM wParam, LPARAM) {
    if (PassEvent(window, message)) {
        if (message == WM_PAINT && wParam != 0) CopyPainted(window, *reinterpret_cast<CDC*>(wParam));
        return 0;
    }
    switch (message) {
        case WM_MOUSEACTIVATE:
            return 1;
        case WM_GETDLGCODE:
            return DialogCodeOf(widget);
        case WM_SETREDRAW:
            widget.setUpdatesEnabled(wParam != 0);
            return 0;
        case WM_CLOSE:
            CloseAsked(window, widget);
            return 0;
        case WM_NEXTDLGCTL:
            FocusNextControl(widget, wParam != 0);
            return 0;
        case BM_CLICK:
            if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) button->click();
            return 0;
        default:
            return 0;
    }
}

// Windows that end with the one around them, while that ends.
static std::vector<QPointer<QWidget>>& EndedWithin() {
    static auto& widgets = *std::make_unique<std::vector<QPointer<QWidget>>>().release();
    return widgets;
}
static constinit int endsUnderWay = 0;

DeathOfWidget::DeathOfWidget(QWidget& widget) : m_widget(&widget) {
    ++endsUnderWay;
}

DeathOfWidget::~DeathOfWidget() {
    bool const isOutermost = --endsUnderWay == 0;
    if (m_widget) {
        // Who asks for the children of a window meanwhile must not give them a new life.
        WindowRegistry::Instance().NoteDeath(*m_widget);
        if (isOutermost) m_widget->hide();
        if (m_widget->property(madeByFactoryProperty).toBool()) m_widget->deleteLater();
        if (!isOutermost) EndedWithin().push_back(m_widget);
    }
    if (!isOutermost) return;
    // They are born again with the window around them.
    for (QPointer<QWidget> const& widget : std::exchange(EndedWithin(), {})) {
        if (widget) WindowRegistry::Instance().NoteBirth(*widget);
    }
}

}  // namespace detail

}  // namespace tov
