#include "platform/dialog_controls.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTreeWidget>

#include <climits>
#include <memory>

namespace tov {
namespace {

bool HasStyle(CTovControlTemplate const& control, unsigned long bits) {
    return (control.style & bits) == bits;
}

// The parent owns it.
template <class Widget, class... Arguments>
Widget& NewChild(Arguments&&... arguments) {
    return *std::make_unique<Widget>(std::forward<Arguments>(arguments)...).release();
}

Qt::Alignment AlignmentOf(unsigned long side) {
    return side == SS_RIGHT ? Qt::AlignRight : side == SS_CENTER ? Qt::AlignHCenter : Qt::AlignLeft;
}

QStringList ItemsOf(CTovControlTemplate const& control) {
    QStringList items;
    for (CString const& item : control.items)
        items.append(TovQString(item));
    return items;
}

QWidget& MakeLabel(CTovControlTemplate const& control, QWidget& host) {
    auto& label = NewChild<QLabel>(&host);
    unsigned long const type = control.style & SS_TYPEMASK;
    label.setTextFormat(Qt::PlainText);
    if (type == SS_ETCHEDHORZ) {
        bool const isLevel = control.rect.right - control.rect.left >= control.rect.bottom - control.rect.top;
        label.setFrameStyle((isLevel ? QFrame::HLine : QFrame::VLine) | QFrame::Sunken);
    } else if (type == SS_ICON) {
        label.setAlignment(Qt::AlignCenter);
        label.setAccessibleName(TovQString(control.text));
    } else {
        label.setAlignment(AlignmentOf(type) |
                           (HasStyle(control, SS_CENTERIMAGE) ? Qt::AlignVCenter : Qt::AlignTop));
        QString const text = TovQString(control.text);
        label.setText(HasStyle(control, SS_NOPREFIX) ? text : WithoutMnemonic(text));
    }
    if (HasStyle(control, WS_BORDER)) label.setFrameStyle(QFrame::Box | QFrame::Plain);
    return label;
}

Qt::ScrollBarPolicy BarPolicy(CTovControlTemplate const& control, unsigned long bit) {
    return HasStyle(control, bit) ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
}

QWidget& MakeLines(CTovControlTemplate const& control, QWidget& host) {
    auto& lines = NewChild<QPlainTextEdit>(&host);
    lines.setPlainText(TovQString(control.text));
    lines.setReadOnly(HasStyle(control, ES_READONLY));
    lines.setTabChangesFocus(true);
    bool const isFolded = !HasStyle(control, ES_AUTOHSCROLL) && !HasStyle(control, WS_HSCROLL);
    lines.setLineWrapMode(isFolded ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
    lines.setHorizontalScrollBarPolicy(BarPolicy(control, WS_HSCROLL));
    lines.setVerticalScrollBarPolicy(BarPolicy(control, WS_VSCROLL));
    if (!HasStyle(control, WS_BORDER)) lines.setFrameStyle(QFrame::NoFrame);
    return lines;
}

QWidget& MakeEdit(CTovControlTemplate const& control, QWidget& host) {
    if (HasStyle(control, ES_MULTILINE)) return MakeLines(control, host);
    auto& edit = NewChild<QLineEdit>(&host);
    edit.setText(TovQString(control.text));
    edit.setReadOnly(HasStyle(control, ES_READONLY));
    if (HasStyle(control, ES_PASSWORD)) edit.setEchoMode(QLineEdit::Password);
    edit.setAlignment(AlignmentOf(control.style & (ES_CENTER | ES_RIGHT)) | Qt::AlignVCenter);
    edit.setFrame(HasStyle(control, WS_BORDER));
    if (HasStyle(control, ES_NUMBER)) {
        static QRegularExpression const digits(QStringLiteral("[0-9]*"));
        edit.setValidator(&NewChild<QRegularExpressionValidator>(digits, &edit));
    }
    return edit;
}

QWidget& MakeButton(CTovControlTemplate const& control, QWidget& host) {
    QString const text = TovQString(control.text);
    unsigned long const type = control.style & BS_TYPEMASK;
    if (type == BS_GROUPBOX) {
        auto& box = NewChild<DialogGroupBox>(&host);
        box.setTitle(text);
        return box;
    }
    bool const isCheck = type == BS_AUTOCHECKBOX || type == BS_AUTO3STATE || type == BS_AUTORADIOBUTTON;
    if (!isCheck || HasStyle(control, BS_PUSHLIKE)) {
        auto& push = NewChild<QPushButton>(text, &host);
        push.setCheckable(isCheck);
        if (isCheck) push.setAutoDefault(false);
        return push;
    }
    if (type == BS_AUTORADIOBUTTON) return NewChild<QRadioButton>(text, &host);
    auto& check = NewChild<QCheckBox>(text, &host);
    check.setTristate(type == BS_AUTO3STATE);
    return check;
}

QWidget& MakeComboBox(CTovControlTemplate const& control, QWidget& host) {
    auto& combo = NewChild<QComboBox>(&host);
    combo.addItems(ItemsOf(control));
    if (HasStyle(control, CBS_SORT)) combo.model()->sort(0);
    bool const isList = HasStyle(control, CBS_DROPDOWNLIST);
    combo.setEditable(!isList);
    combo.setInsertPolicy(QComboBox::NoInsert);
    combo.setCurrentIndex(isList ? combo.findText(TovQString(control.text)) : -1);
    if (!isList) combo.setEditText(TovQString(control.text));
    return combo;
}

QWidget& MakeListBox(CTovControlTemplate const& control, QWidget& host) {
    auto& list = NewChild<QListWidget>(&host);
    list.addItems(ItemsOf(control));
    list.setSortingEnabled(HasStyle(control, LBS_SORT));
    list.setSelectionMode(HasStyle(control, LBS_EXTENDEDSEL) ? QAbstractItemView::ExtendedSelection
                                                             : QAbstractItemView::SingleSelection);
    return list;
}

QWidget& MakeList(CTovControlTemplate const&, QWidget& host) {
    auto& list = NewChild<QTreeWidget>(&host);
    list.setRootIsDecorated(false);
    list.setUniformRowHeights(true);
    return list;
}

QWidget& MakeTree(CTovControlTemplate const&, QWidget& host) {
    auto& tree = NewChild<QTreeWidget>(&host);
    tree.setHeaderHidden(true);
    return tree;
}

QWidget& MakeSpin(CTovControlTemplate const&, QWidget& host) {
    auto& spin = NewChild<QSpinBox>(&host);
    spin.setRange(INT_MIN, INT_MAX);
    return spin;
}

QWidget& MakeProgress(CTovControlTemplate const& control, QWidget& host) {
    auto& progress = NewChild<QProgressBar>(&host);
    progress.setTextVisible(false);
    progress.setValue(0);
    progress.setOrientation(HasStyle(control, PBS_VERTICAL) ? Qt::Vertical : Qt::Horizontal);
    return progress;
}

QWidget& MakeSlider(CTovControlTemplate const& control, QWidget& host) {
    return NewChild<QSlider>(HasStyle(control, TBS_VERT) ? Qt::Vertical : Qt::Horizontal, &host);
}

QWidget& MakeScrollBar(CTovControlTemplate const& control, QWidget& host) {
    return NewChild<QScrollBar>(HasStyle(control, SBS_VERT) ? Qt::Vertical : Qt::Horizontal, &host);
}

QWidget& MakeTabs(CTovControlTemplate const& control, QWidget& host) {
    auto& tabs = NewChild<DialogTabs>(&host);
    for (QString const& title : ItemsOf(control))
        tabs.addTab(&NewChild<QWidget>(), title);
    return tabs;
}

QWidget& MakeDateTime(CTovControlTemplate const&, QWidget& host) {
    auto& edit = NewChild<QDateTimeEdit>(&host);
    edit.setCalendarPopup(true);
    return edit;
}

constexpr struct {
    std::string_view className;
    QWidget& (*make)(CTovControlTemplate const& control, QWidget& host);
} makersOfControls[] = {
    {"Static", MakeLabel},      {"Edit", MakeEdit},           {"Button", MakeButton},
    {"ComboBox", MakeComboBox}, {"ListBox", MakeListBox},     {"List", MakeList},
    {"Tree", MakeTree},         {"Spin", MakeSpin},           {"Progress", MakeProgress},
    {"Slider", MakeSlider},     {"ScrollBar", MakeScrollBar}, {"Tab", MakeTabs},
    {"DateTime", MakeDateTime},
};

}  // namespace

CString DialogGroupBox::GetWindowText() const {
    return TovText(title());
}

void DialogGroupBox::SetWindowText(char const* text) {
    setTitle(TovQString(text));
}

bool DialogGroupBox::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut) return CWndOn::event(event);
    for (QWidget* next = nextInFocusChain(); next != nullptr && next != this;
         next = next->nextInFocusChain()) {
        if (next->parentWidget() != parentWidget() || !next->isVisible() || !next->isEnabled()) continue;
        if ((next->focusPolicy() & Qt::TabFocus) == 0) continue;
        next->setFocus(Qt::ShortcutFocusReason);
        break;
    }
    return true;
}

int DialogTabs::OnCommand(WPARAM wParam, LPARAM lParam) {
    CWnd* const around = GetParent();
    return around != nullptr && TovSendMessage(around->GetSafeHwnd(), WM_COMMAND, wParam, lParam) != 0;
}

QWidget* MakeDialogControl(CTovControlTemplate const& control, QWidget& host) {
    for (auto const& [className, make] : makersOfControls) {
        if (control.className == className) return &make(control, host);
    }
    return nullptr;
}

QString WithoutMnemonic(QString text) {
    for (qsizetype i = text.indexOf(QLatin1Char('&')); i >= 0; i = text.indexOf(QLatin1Char('&'), i + 1))
        text.remove(i, 1);  // the second of two stays
    return text;
}

}  // namespace tov
