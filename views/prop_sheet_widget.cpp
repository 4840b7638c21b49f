#include <tov310/prop_sheet.h>

#include "platform/focus_guard.h"
#include "platform/focus_order.h"
#include "platform/help_request.h"

#include <tov310/dlg_tool_bar.h>
#include <tov310/help_app.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/tov_dialog.h>

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QTabBar>
#include <QVBoxLayout>
#include <QWhatsThis>

#include <algorithm>
#include <utility>

namespace tov {
namespace {

enum : unsigned {
    textOk = 26100,
    textCancel = 26101,
    textApply = 27001,
    textBack = 27002,
    textNext = 27003,
    textFinish = 27004,
};

QString ButtonText(unsigned id) {
    CString text;
    TovLoadResourceString(TovGetTovResourceHandle(), id, text);
    return TovQString(text);
}

}  // namespace

// Leaves the keys that turn its pages to the sheet, which asks first.
class CTovPropSheet::SheetTabs : public QTabWidget {
 public:
    using QTabWidget::QTabWidget;

 protected:
    void keyPressEvent(QKeyEvent* event) override { event->ignore(); }
};

CTovPropSheet::CTovPropSheet(QWidget* parent)
    : CWndOn(parent), m_tabs(std::make_unique<SheetTabs>(this).release()) {
    auto* const column = std::make_unique<QVBoxLayout>(this).release();
    column->addWidget(m_tabs, 1);
    if (parent != nullptr) m_originalParent = TovHandle(parent->window());
    connect(m_tabs, &QTabWidget::currentChanged, this, &CTovPropSheet::OnTabChanged);
}

CTovPropSheet::CTovPropSheet(char const* caption, CWnd* parent, unsigned selectPage)
    : CTovPropSheet(TovWidget(parent)) {
    SetUp(caption, selectPage);
}

CTovPropSheet::CTovPropSheet(HINSTANCE module, unsigned caption, CWnd* parent, unsigned selectPage)
    : CTovPropSheet(TovWidget(parent)) {
    SetUp(module, caption, selectPage);
}

CTovPropSheet::~CTovPropSheet() {
    EndPages();
    for (auto const& [page, record] : m_records) {
        // One that was its child before goes with it.
        if (record.widget && (!record.parentBefore || !isAncestorOf(record.parentBefore)) &&
            record.parentBefore != this)
            record.widget->setParent(record.parentBefore);
    }
}

void CTovPropSheet::Construct(char const* caption, CWnd* parent, unsigned selectPage) {
    setParent(TovWidget(parent), windowFlags());
    m_originalParent = parent != nullptr ? parent->NeedHandle() : HWND{};
    SetUp(caption, selectPage);
}

void CTovPropSheet::Construct(HINSTANCE module, unsigned caption, CWnd* parent, unsigned selectPage) {
    Construct("", parent, selectPage);
    SetUp(module, caption, selectPage);
}

void CTovPropSheet::SetUp(char const* caption, unsigned selectPage) {
    setWindowTitle(TovQString(caption));
    SetFirstPage(static_cast<int>(selectPage));
}

void CTovPropSheet::SetUp(HINSTANCE module, unsigned caption, unsigned selectPage) {
    CString text;
    TovLoadResourceString(module, caption, text);
    SetUp(text.c_str(), selectPage);
}

CWnd* CTovPropSheet::GetOwner() const {
    return isWindow() && parentWidget() != nullptr ? TovWnd(parentWidget()->window()) : GetParent();
}

int CTovPropSheet::CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId,
                                 unsigned arrangeFlags) {
    if (m_toolbar == nullptr) m_toolbar = std::make_shared<CTovDlgToolBar>(this);
    return m_toolbar->Create(module, bitmapId, controlId, static_cast<int>(arrangeFlags), 0);
}

void CTovPropSheet::EnableToolbar(int enable) {
    QToolBar* const bar = m_toolbar != nullptr ? m_toolbar->ToolBar() : nullptr;
    if (bar != nullptr) bar->setEnabled(enable != 0);
}

int CTovPropSheet::IsToolbarEnabled() const {
    QToolBar const* const bar = m_toolbar != nullptr ? m_toolbar->ToolBar() : nullptr;
    return bar != nullptr && bar->isEnabled();
}

QTabWidget* CTovPropSheet::GetTabWidget() const {
    return m_tabs;
}

QPushButton* CTovPropSheet::GetButton(int id) const {
    auto const found = m_buttons.find(id);
    return found != m_buttons.end() ? found->second : nullptr;
}

QPushButton* CTovPropSheet::MakeButton(int id, unsigned text, int place) {
    auto* const button = std::make_unique<QPushButton>(ButtonText(text), this).release();
    button->setProperty(tovIdProperty, id);
    m_buttons[id] = button;
    m_buttonRow->addWidget(button, 0, place + 1);
    return button;
}

void CTovPropSheet::MakeButtons() {
    if (m_buttonRow != nullptr) return;
    m_buttonRow = std::make_unique<QGridLayout>().release();
    m_buttonRow->setColumnStretch(0, 1);
    static_cast<QVBoxLayout*>(layout())->addLayout(m_buttonRow);
    if (IsWizard() != 0) {
        MakeButton(ID_WIZBACK, textBack, 0)->setAutoDefault(false);
        MakeButton(ID_WIZNEXT, textNext, 1);
        MakeButton(ID_WIZFINISH, textFinish, 1);
        MakeButton(IDCANCEL, textCancel, 2);
        m_tabs->tabBar()->hide();
        m_tabs->setDocumentMode(true);
        auto* const rule = std::make_unique<QFrame>(this).release();
        rule->setFrameStyle(static_cast<int>(QFrame::HLine) | static_cast<int>(QFrame::Sunken));
        static_cast<QVBoxLayout*>(layout())->insertWidget(1, rule);
        ShowWizardButtons(GetShownWizardButtons());
    } else {
        MakeButton(IDOK, textOk, 0);
        MakeButton(IDCANCEL, textCancel, 1);
        MakeButton(ID_APPLY_NOW, textApply, 2);
        UpdateApply();
        ShowDefaultButton();
    }
    int width = 0;
    for (auto const& [id, button] : m_buttons)
        width = std::max(width, button->sizeHint().width());
    for (auto const& [id, button] : m_buttons)
        button->setMinimumWidth(width);
}

void CTovPropSheet::PlaceButton(int id, int place) {
    QPushButton* const button = GetButton(id);
    if (button == nullptr) return;
    button->setVisible(place >= 0);
    m_buttonRow->removeWidget(button);
    if (place >= 0) m_buttonRow->addWidget(button, 0, place + 1);
}

void CTovPropSheet::ShowWizardButtons(unsigned long buttons) {
    QPushButton* const finish = GetButton(ID_WIZFINISH);
    if (finish == nullptr) return;
    QPushButton* const next = GetButton(ID_WIZNEXT);
    bool const isLast = (buttons & (PSWIZB_FINISH | PSWIZB_DISABLEDFINISH)) != 0;
    QPushButton* const shown = isLast ? finish : next;
    QPushButton* const other = isLast ? next : finish;
    bool const hadFocus = other->hasFocus();
    GetButton(ID_WIZBACK)->setEnabled((buttons & PSWIZB_BACK) != 0);
    next->setEnabled((buttons & PSWIZB_NEXT) != 0);
    finish->setEnabled((buttons & PSWIZB_FINISH) != 0);
    shown->show();
    ShowDefaultButton();
    if (hadFocus && shown->isEnabled()) shown->setFocus();
    other->hide();
}

void CTovPropSheet::RemoveContextHelpButton(int remove) {
    m_isContextHelpRemoved = remove != 0;
    // A window that is shown would be hidden by that.
    if (m_isReady && !isVisible()) setWindowFlag(Qt::WindowContextHelpButtonHint, remove == 0);
}

// Makes it and lets the host see it, once.
bool CTovPropSheet::Prepare() {
    if (m_isReady) return true;
    TovWnd(this);  // is born now
    MakeButtons();
    m_isReady = true;
    QPointer<CTovPropSheet> const alive(this);
    auto const end = m_end;
    int const takesFirst = InitDialog();
    if (!alive || !m_isReady || (end != nullptr && end->has_value())) return false;
    if (takesFirst != 0) FocusFirstControl();
    return true;
}

int CTovPropSheet::OnInitDialog() {
    setWindowFlag(Qt::WindowContextHelpButtonHint, m_isContextHelpRemoved == 0);
    ModifyStyleEx(m_isContextHelpRemoved != 0 ? WS_EX_CONTEXTHELP : 0,
                  m_isContextHelpRemoved != 0 ? 0 : WS_EX_CONTEXTHELP);
    return CTovSheetOf::OnInitDialog();
}

LRESULT CTovPropSheet::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_MOVE || message == WM_SIZE) {
        for (int i = 0; i < GetPageCount(); ++i) {
            if (auto* const page = dynamic_cast<CTovPropPage*>(GetPage(i))) page->HideTooltip();
        }
    }
    HWND const self = GetSafeHwnd();
    LRESULT const result = CTovSheetOf::WindowProc(message, wParam, lParam);
    if (message == WM_TOV_POST_INITDIALOG && IsWindow(self)) Q_EMIT initialized();
    return result;
}

int CTovPropSheet::EnableOkButton() {
    QPointer<CTovPropSheet> const alive(this);
    int const isEnabled = CTovSheetOf::EnableOkButton();
    if (alive && std::exchange(m_okEnabled, isEnabled) != isEnabled) Q_EMIT okButtonEnabled(isEnabled != 0);
    return isEnabled;
}

void CTovPropSheet::FocusFirstControl() {
    auto* const page = dynamic_cast<QWidget*>(GetActivePage());
    if (page == nullptr) return;
    for (QWidget* w = page->nextInFocusChain(); w != nullptr && w != page; w = w->nextInFocusChain()) {
        if ((w->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || !page->isAncestorOf(w)) continue;
        if (!w->isEnabledTo(this) || !w->isVisibleTo(page)) continue;
        w->setFocus(Qt::TabFocusReason);
        return;
    }
}

int CTovPropSheet::CreatePage(CPropertyPage& page) {
    auto* const own = dynamic_cast<CTovPropPage*>(&page);
    if (own == nullptr) return CTovSheetOf::CreatePage(page);
    QPointer<CTovPropSheet> const alive(this);
    if (own->Make() == 0 || !alive) return 0;
    // The button that Enter presses is the sheet's.
    for (QPushButton* const button : own->findChildren<QPushButton*>()) {
        if (button->isDefault()) button->setDefault(false);
    }
    ShowDefaultButton();
    return 1;
}

void CTovPropSheet::ShowDefaultButton() {
    bool const finishes = (GetShownWizardButtons() & (PSWIZB_FINISH | PSWIZB_DISABLEDFINISH)) != 0;
    QPushButton* const button = GetButton(IsWizard() == 0 ? IDOK : finishes ? ID_WIZFINISH : ID_WIZNEXT);
    if (button != nullptr) button->setDefault(true);
}

void CTovPropSheet::ShowPage(int index) {
    auto* const page = dynamic_cast<QWidget*>(GetPage(index));
    bool const isOther = page != nullptr && m_tabs->currentWidget() != page;
    m_isShowingPage = true;
    if (isOther) m_tabs->setCurrentWidget(page);
    m_isShowingPage = false;
    if (isOther && IsWizard() != 0 && isVisible()) FocusFirstControl();
    if (std::exchange(m_shownPage, GetPage(index)) != GetPage(index)) Q_EMIT currentChanged(index);
}

// By the user, or by somebody who gives the focus to a control on another page.
void CTovPropSheet::OnTabChanged(int tab) {
    if (!m_isShowingPage && m_isReady) SetActivePage(tab);
}

void CTovPropSheet::PageAdded(int index) {
    CTovSheetOf::PageAdded(index);
    auto* const page = dynamic_cast<QWidget*>(GetPage(index));
    if (page == nullptr) return;
    m_isShowingPage = true;
    m_tabs->addTab(page, page->windowIcon(), page->windowTitle());
    m_isShowingPage = false;
    connect(page, &QWidget::windowTitleChanged, this,
            [this, page](QString const& title) { m_tabs->setTabText(m_tabs->indexOf(page), title); });
    connect(page, &QWidget::windowIconChanged, this,
            [this, page](QIcon const& icon) { m_tabs->setTabIcon(m_tabs->indexOf(page), icon); });
}

void CTovPropSheet::PageRemoved(CPropertyPage& page, int index) {
    CTovSheetOf::PageRemoved(page, index);
    m_records.erase(&page);
    if (m_shownPage == &page) m_shownPage = nullptr;
    auto* const widget = dynamic_cast<QWidget*>(&page);
    if (widget == nullptr) return;
    widget->disconnect(this);
    m_isShowingPage = true;
    m_tabs->removeTab(m_tabs->indexOf(widget));
    m_isShowingPage = false;
}

void CTovPropSheet::AddPage(CPropertyPage* page) {
    auto* const widget = dynamic_cast<QWidget*>(page);
    if (widget != nullptr && page->GetParentSheet() != this) {
        if (page->GetParentSheet() != nullptr) page->GetParentSheet()->RemovePage(page);
        m_records[page] = {widget, widget->parentWidget()};
    }
    CWndOn::AddPage(page);
}

void CTovPropSheet::RemovePage(CPropertyPage* page) {
    auto const found = m_records.find(page);
    PageRecord const record = found != m_records.end() ? found->second : PageRecord{};
    CWndOn::RemovePage(page);
    if (record.widget && page->GetParentSheet() == nullptr) record.widget->setParent(record.parentBefore);
}

void CTovPropSheet::ShowTab(unsigned page, int show) {
    m_isShowingPage = true;
    m_tabs->setTabVisible(static_cast<int>(page), show != 0);
    if (auto* const shown = dynamic_cast<QWidget*>(GetActivePage())) m_tabs->setCurrentWidget(shown);
    m_isShowingPage = false;
}

int CTovPropSheet::DoModal() {
    if (m_end != nullptr) {
        TovReportFault("a sheet was to be shown modally while it is");
        return -1;
    }
    QPointer<CTovPropSheet> const alive(this);
    QPointer<QWidget> const owner(parentWidget() != nullptr ? parentWidget()->window()
                                                            : QApplication::activeWindow());
    auto const end = std::make_shared<std::optional<int>>();
    m_end = end;
    m_isModeless = 0;
    bool const isShown = Prepare();
    if (isShown) {
        // A parent that dies takes its children along; this one belongs to whoever waits for it here.
        QMetaObject::Connection leave;
        if (parentWidget() != nullptr) {
            leave = connect(parentWidget(), &QObject::destroyed, this,
                            [this] { setParent(nullptr, windowFlags()); });
        }
        CWndOn::exec();
        disconnect(leave);
    }
    int const result = end->value_or(IDCANCEL);
    if (!alive) return result;
    m_end = nullptr;
    if (isShown && m_wasActive && owner && owner->isVisible()) owner->activateWindow();
    DestroyWindow();
    return result;
}

int CTovPropSheet::exec() {
    int const result = DoModal();
    return result == IDOK || result == ID_WIZFINISH ? static_cast<int>(Accepted) : Rejected;
}

int CTovPropSheet::Create() {
    if (m_isReady) return 0;
    m_isModeless = 1;
    return Prepare() ? 1 : 0;
}

void CTovPropSheet::EndDialog(int result) {
    QPointer<CTovPropSheet> const alive(this);
    done(result);
    if (alive && m_isModeless != 0) DestroyWindow();
}

void CTovPropSheet::done(int result) {
    if (m_end != nullptr && !m_end->has_value()) *m_end = result;
    QPointer<CTovPropSheet> const alive(this);
    CWndOn::done(result);
    if (alive && result == ID_WIZFINISH) Q_EMIT accepted();
    if (alive && result == IDCANCEL) Q_EMIT rejected();
}

void CTovPropSheet::setVisible(bool visible) {
    if (visible && !Prepare()) return;
    if (!visible && isVisible()) m_wasActive = isActiveWindow();
    CWndOn::setVisible(visible);
}

int CTovPropSheet::DestroyWindow() {
    QPointer<CTovPropSheet> const alive(this);
    CTovDialog::EndDialogsOf(*this);
    if (!alive) return 1;
    int const result = CWndOn::DestroyWindow();
    if (!alive || GetSafeHwnd()) return result;  // or somebody is told of its end, further out
    m_isReady = false;
    m_okEnabled = -1;
    EndSheet();
    EndPages();
    m_shownPage = nullptr;
    return result;
}

void CTovPropSheet::Command(int id) {
    if (!GetSafeHwnd()) {
        EndDialog(id);
        return;
    }
    QPushButton const* const button = GetButton(id);
    if (button != nullptr && !button->isEnabled()) return;
    TovSendMessage(GetSafeHwnd(), WM_COMMAND, TovCommandParam(static_cast<unsigned>(id), BN_CLICKED),
                   static_cast<LPARAM>(TovHandle(GetButton(id)).id));
}

// In a wizard it is the button that Enter presses.
void CTovPropSheet::accept() {
    unsigned long const last = PSWIZB_FINISH | PSWIZB_DISABLEDFINISH;
    bool const finishes = (GetShownWizardButtons() & last) != 0;
    Command(IsWizard() == 0 ? IDOK : finishes ? ID_WIZFINISH : ID_WIZNEXT);
}

void CTovPropSheet::reject() {
    Command(IDCANCEL);
}

// To the next page with a tab, round and round.
void CTovPropSheet::TurnTab(int step) {
    CWnd* const bar = TovWnd(m_tabs->tabBar());
    QPointer<CTovPropSheet> const alive(this);
    if (!MayBeReached(*bar, 0) || !alive) return;
    int const count = GetPageCount();
    for (int i = 1; i < count; ++i) {
        int const page = (GetActiveIndex() + step * i + count * count) % count;
        if (IsPageHidden(page) != 0 || !m_tabs->isTabEnabled(page)) continue;
        SetActivePage(page);
        return;
    }
}

void CTovPropSheet::keyPressEvent(QKeyEvent* event) {
    bool const isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    bool const turns = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (turns && event->modifiers().testFlag(Qt::ControlModifier) && IsWizard() == 0) {
        TurnTab(event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    } else if (isEnter && (event->modifiers() & ~Qt::KeypadModifier) == 0) {
        QPushButton const* const ok = GetButton(IDOK);
        // Back is none that the toolkit would press.
        if (QPushButton* const back = GetButton(ID_WIZBACK); back != nullptr && back->hasFocus())
            back->click();
        else if (QPushButton* const button = DefaultButtonOf(*this))
            button->click();
        else if (ok != nullptr && ok->isHidden() && qobject_cast<QPushButton*>(focusWidget()) == nullptr)
            accept();
    } else if (event->key() == Qt::Key_F1 && (event->modifiers() & ~Qt::ShiftModifier) == 0 &&
               CTovHelpApp::Get() != nullptr) {
        ShowHelp(focusWidget(), QCursor::pos());
    } else {
        CWndOn::keyPressEvent(event);
    }
}

bool CTovPropSheet::event(QEvent* event) {
    bool const hasHelp = CTovHelpApp::Get() != nullptr;
    if (event->type() == QEvent::EnterWhatsThisMode) {
        HelpState(1);
    } else if (event->type() == QEvent::QueryWhatsThis && hasHelp) {
        event->accept();
        return true;
    } else if (event->type() == QEvent::WhatsThis && hasHelp) {
        auto const& help = static_cast<QHelpEvent const&>(*event);
        QWhatsThis::leaveWhatsThisMode();
        ShowHelp(childAt(help.pos()), help.globalPos());
        event->accept();
        return true;
    }
    return CWndOn::event(event);
}

// The page that is shown knows what there is.
void CTovPropSheet::ShowHelp(QWidget* about, QPoint const& place) {
    auto* const page = dynamic_cast<CTovPropPage*>(GetActivePage());
    if (page == nullptr) return;
    page->NoteHelpButton(HelpState());
    HelpState(0);
    page->OnHelpInfo(HelpRequest(about, *this, place));
}

CTovPropSheetCV::~CTovPropSheetCV() = default;

void CTovPropSheetCV::OnEmptyFieldsChanged(int emptyFields) {
    QPointer<CTovPropSheetCV> const alive(this);
    CTovSheetCVOf::OnEmptyFieldsChanged(emptyFields);
    if (alive) Q_EMIT emptyFieldsChanged(emptyFields != 0);
}

void CTovPropSheetCV::OnDisabledOkButtonClicked(unsigned id) {
    QPointer<CTovPropSheetCV> const alive(this);
    CTovSheetCVOf::OnDisabledOkButtonClicked(id);
    if (alive) Q_EMIT disabledOkButtonClicked(id);
}

}  // namespace tov
