#include "platform/dialog_builder.h"

#include "platform/dialog_controls.h"
#include "platform/event_routing.h"
#include "platform/focus_order.h"
#include "platform/logical_tree.h"
#include "platform/window_registry.h"
#include "views/dialog_units.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>

#include <memory>

namespace tov {
namespace {

DialogUnits UnitsOf(QFont const& font) {
    QFontMetrics const metrics(font);
    return DialogUnits({metrics.horizontalAdvance(QLatin1String(dialogUnitLetters)), metrics.height()});
}

bool IsKind(CTovControlTemplate const& control, char const* className, unsigned long mask,
            unsigned long type) {
    return control.className == className && (control.style & mask) == type;
}

bool IsPush(CTovControlTemplate const& control) {
    return IsKind(control, "Button", BS_TYPEMASK, BS_PUSHBUTTON) ||
           IsKind(control, "Button", BS_TYPEMASK, BS_DEFPUSHBUTTON);
}

bool IsLabel(CTovControlTemplate const& control) {
    unsigned long const type = control.style & SS_TYPEMASK;
    return control.className == "Static" && type != SS_ICON && type != SS_ETCHEDHORZ;
}

class DialogBuilder {
 public:
    DialogBuilder(QWidget& host, CTovDialogTemplate const& dialog, MadeObjects& made)
        : m_host(host), m_dialog(dialog), m_made(made) {}

    bool Build(CString* message) {
        QFont font = m_host.font();
        if (!m_dialog.fontFamily.empty()) font.setFamily(TovQString(m_dialog.fontFamily));
        if (m_dialog.fontSize > 0) font.setPointSizeF(m_dialog.fontSize);
        bool const hasFont = !m_dialog.fontFamily.empty() || m_dialog.fontSize > 0;
        DialogUnits const units = UnitsOf(hasFont ? font : m_host.font());
        for (CTovControlTemplate const& control : m_dialog.controls) {
            if (!Make(control, TovQRect(units.Map(control.rect)))) {
                TakeBack(control, message);
                return false;
            }
        }
        // What the host was before is changed only now that nothing can fail.
        if (hasFont) m_host.setFont(font);
        m_host.setWindowTitle(TovQString(m_dialog.title));
        QSize const size = TovQRect(units.Map({0, 0, m_dialog.rect.Width(), m_dialog.rect.Height()})).size();
        if (m_host.isWindow() && (m_dialog.style & WS_THICKFRAME) == 0)
            m_host.setFixedSize(size);
        else
            m_host.resize(size);
        PutTogether();
        for (std::size_t i = 0; i < m_widgets.size(); ++i)
            TellIfCut(i);
        for (std::size_t i = 0; i < m_widgets.size(); ++i)
            m_made.emplace_back(m_widgets[i]);
        return true;
    }

 private:
    std::string NameOf(std::size_t place) const {
        CTovControlTemplate const& control = m_dialog.controls[place];
        std::string name = m_dialog.name + ": control " + std::to_string(place + 1) + " (";
        name += control.className;
        if (control.id != 0) name.append(" ").append(std::to_string(control.id));
        return name.append(")");
    }

    bool Make(CTovControlTemplate const& control, QRect const& place) {
        QWidget* widget = MakeDialogControl(control, m_host);
        if (widget == nullptr) widget = MakeOther(control, place);
        if (widget == nullptr) return false;
        m_widgets.push_back(widget);
        widget->setProperty(madeByFactoryProperty, true);
        if (control.id != 0) widget->setProperty(tovIdProperty, control.id);
        widget->setGeometry(place);
        if ((control.style & WS_DISABLED) != 0) widget->setEnabled(false);
        if ((control.style & WS_VISIBLE) == 0)
            widget->hide();
        else if (m_host.isVisible())
            widget->show();
        SetTabStop(*widget, (control.style & WS_TABSTOP) != 0);
        return true;
    }

    QWidget* MakeOther(CTovControlTemplate const& control, QRect const& place) {
        // A host that only holds the controls of a form is no window of its own.
        CWnd* const around = IsTransparent(m_host) && LogicalParent(m_host) != nullptr
                                 ? WindowRegistry::Instance().Of(LogicalParent(m_host))
                                 : TovWnd(&m_host);
        CWnd* const window =
            TovCreateControl(control.className.c_str(), control.style, TovRect(place), around);
        QWidget* const widget = window != nullptr ? TovWidget(window) : nullptr;
        if (widget == nullptr) return nullptr;
        if (!m_host.isAncestorOf(widget)) widget->setParent(&m_host);
        if (control.id != 0) window->SetDlgCtrlID(static_cast<int>(control.id));
        if (!control.text.empty()) window->SetWindowText(control.text.c_str());
        return widget;
    }

    static void SetTabStop(QWidget& widget, bool isStop) {
        auto const policy = static_cast<int>(widget.focusPolicy());
        if (((policy & Qt::TabFocus) != 0) == isStop) return;
        widget.setFocusPolicy(isStop
                                  ? Qt::StrongFocus
                                  : static_cast<Qt::FocusPolicy>(policy & ~static_cast<int>(Qt::TabFocus)));
    }

    void TakeBack(CTovControlTemplate const& culprit, CString* message) {
        std::string const fault =
            NameOf(m_widgets.size()) + ": there is no class \"" + culprit.className + "\"";
        for (QWidget const* const widget : m_widgets)
            delete widget;
        m_widgets.clear();
        TovReportFault(fault.c_str());
        if (message != nullptr) *message = fault;
    }

    // What one control is to another.
    void PutTogether() {
        JoinRadioButtons();
        ChooseDefaultButton();
        for (std::size_t i = 0; i < m_widgets.size(); ++i) {
            CTovControlTemplate const& control = m_dialog.controls[i];
            if (IsLabel(control)) LeadFrom(i);
            if (control.className == "Static") continue;
            // Those have something to tell the dialog.
            if (CWnd* const window = TovWnd(m_widgets[i])) window->CWnd::ModifyStyle(0, control.style);
        }
        for (std::size_t i = m_widgets.size(); i-- > 0;) {
            if (IsKind(m_dialog.controls[i], "Button", BS_TYPEMASK, BS_GROUPBOX)) m_widgets[i]->lower();
        }
        if (m_host.isWindow()) return;
        // In a form within a form they come where the form does.
        QWidget* before = &m_host;
        for (QWidget* const widget : m_widgets) {
            PutBehindInFocus(*before, *widget);
            before = widget;
        }
    }

    // The toolkit does so only once one of the group has had the focus.
    static void LetTabStopAtChecked(QAbstractButton* button, bool isChecked) {
        if (!isChecked) return;
        for (QAbstractButton* const other : button->group()->buttons())
            SetTabStop(*other, other == button);
    }

    void JoinRadioButtons() {
        QButtonGroup* group = nullptr;
        for (std::size_t i = 0; i < m_widgets.size(); ++i) {
            CTovControlTemplate const& control = m_dialog.controls[i];
            if ((control.style & WS_GROUP) != 0) group = nullptr;
            if (!IsKind(control, "Button", BS_TYPEMASK, BS_AUTORADIOBUTTON)) continue;
            if (group == nullptr) {
                group = std::make_unique<QButtonGroup>(&m_host).release();
                m_made.emplace_back(group);
                QObject::connect(group, &QButtonGroup::buttonToggled, group, LetTabStopAtChecked);
            }
            group->addButton(qobject_cast<QAbstractButton*>(m_widgets[i]),
                             control.id != 0 ? static_cast<int>(control.id) : -1);
        }
    }

    void ChooseDefaultButton() {
        QPushButton* chosen = nullptr;
        std::vector<QPushButton*> pushes;
        for (std::size_t i = 0; i < m_widgets.size(); ++i) {
            CTovControlTemplate const& control = m_dialog.controls[i];
            if (!IsPush(control)) continue;
            pushes.push_back(qobject_cast<QPushButton*>(m_widgets[i]));
            bool const isStated = (control.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
            if (isStated || (control.id == IDOK && chosen == nullptr)) chosen = pushes.back();
        }
        if (chosen != nullptr) {
            chosen->setDefault(true);
            return;
        }
        // The toolkit would choose one.
        for (QPushButton* const push : pushes)
            push->setAutoDefault(false);
    }

    // A label leads to the control behind it; to one that says by itself what it is only with a letter.
    void LeadFrom(std::size_t place) {
        auto& label = *qobject_cast<QLabel*>(m_widgets[place]);
        CTovControlTemplate const& own = m_dialog.controls[place];
        QString const text = TovQString(own.text);
        bool const hasPrefixes = (own.style & SS_NOPREFIX) == 0;
        bool const hasLetter = hasPrefixes && WithoutMnemonic(text).size() < text.size() &&
                               QString(text).remove(QStringLiteral("&&")).contains(QLatin1Char('&'));
        std::size_t next = place + 1;
        while (next < m_widgets.size() && m_widgets[next]->focusPolicy() == Qt::NoFocus)
            ++next;
        if (next == m_widgets.size() || (!hasLetter && next != place + 1)) return;
        if (!hasLetter && m_dialog.controls[next].className == "Button") return;
        label.setBuddy(m_widgets[next]);
        label.setText(hasPrefixes ? text : QString(text).replace(QLatin1Char('&'), QStringLiteral("&&")));
    }

    void TellIfCut(std::size_t place) {
        QWidget const& widget = *m_widgets[place];
        int needed = 0;
        int given = widget.width();
        if (auto* const label = qobject_cast<QLabel*>(m_widgets[place])) {
            if (label->text().isEmpty()) return;
            // A label of two lines or more is folded.
            if (label->height() >= 2 * label->fontMetrics().lineSpacing()) {
                label->setWordWrap(true);
                needed = label->heightForWidth(label->width());
                given = label->height();
            } else {
                needed = label->sizeHint().width();
            }
        } else if (qobject_cast<QCheckBox const*>(&widget) || qobject_cast<QRadioButton const*>(&widget)) {
            needed = widget.sizeHint().width();
        } else if (auto const* const push = qobject_cast<QPushButton const*>(&widget)) {
            needed = push->fontMetrics().size(Qt::TextShowMnemonic, push->text()).width() +
                     push->style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, push);
        } else if (auto const* const box = qobject_cast<QGroupBox const*>(&widget)) {
            needed = box->fontMetrics().size(Qt::TextShowMnemonic, box->title()).width() + 8;
        }
        if (needed <= given) return;
        std::string const fault = NameOf(place) + ": the text needs " + std::to_string(needed) +
                                  " pixels and has " + std::to_string(given);
        TovReportFault(fault.c_str());
    }

    QWidget& m_host;
    CTovDialogTemplate const& m_dialog;
    MadeObjects& m_made;
    std::vector<QWidget*> m_widgets;  // as many as controls
};

}  // namespace

bool FillDialog(QWidget& host, CTovDialogTemplate const& dialog, MadeObjects& made, CString* message) {
    if (message != nullptr) message->clear();
    return DialogBuilder(host, dialog, made).Build(message);
}

int TovFillDialog(QWidget* host, CTovDialogTemplate const& dialog, CString* message) {
    MadeObjects made;
    return host != nullptr && FillDialog(*host, dialog, made, message);
}

QRect TovMapDialogRect(QFont const& font, CRect const& rect) {
    return TovQRect(UnitsOf(font).Map(rect));
}

}  // namespace tov
