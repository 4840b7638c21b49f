#include <tov310/dialog_progress.h>

#include "views/progress_steps.h"

#include <tov310/button_event.h>
#include <tov310/device_context.h>
#include <tov310/fitted_text.h>
#include <tov310/messages.h>
#include <tov310/pump.h>
#include <tov310/qt_values.h>
#include <tov310/system.h>

#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include <chrono>

namespace tov {
namespace {

using ProgressClock = std::chrono::steady_clock;

constexpr unsigned idComment = 26500;
constexpr unsigned idBar = 26503;
constexpr unsigned idAbort = 26506;
constexpr unsigned idRoom = 26524;
constexpr unsigned templates[] = {26248, 26251, 26250, 26249};  // by style
constexpr auto breathEvery = std::chrono::milliseconds(10);
constexpr auto longestWaitToBeSeen = std::chrono::milliseconds(1000);

}  // namespace

struct CTovDialogProgress::State {
    ProgressSteps counting;
    int style = eStylePlain;
    HWND parent;
    HWND center;
    CEvent* event = nullptr;
    std::atomic<long> abortCounter{0};
    bool isAbortTold = false;
    std::unique_ptr<CTovButtonEventThread> button;
    QPointer<QProgressBar> bar;
    QPointer<QLabel> comment;
    int commentWidth = 0;
    ProgressClock::time_point lastBreath;
    QMetaObject::Connection leavesParent;
};

CTovDialogProgress::CTovDialogProgress(CWnd* parent, CWnd* center) : m_state(std::make_unique<State>()) {
    AutoDelete(0);
    if (parent != nullptr) m_state->parent = parent->NeedHandle();
    if (center != nullptr) m_state->center = center->NeedHandle();
}

CTovDialogProgress::~CTovDialogProgress() {
    m_state->button.reset();
}

int CTovDialogProgress::View(int steps, CWnd* parent, char const* title, CEvent* event, CWnd* center,
                             int show) {
    if (parent != nullptr) m_state->parent = parent->NeedHandle();
    if (center != nullptr) m_state->center = center->NeedHandle();
    m_state->abortCounter = 0;
    m_state->isAbortTold = false;
    if (std::exchange(m_state->event, event) != event) m_state->button.reset();
    m_state->counting.Begin(0);
    bool const isNew = !GetSafeHwnd();
    if (isNew && Make() == 0) return 0;
    if (MakeButton() == 0) return 0;
    if (title != nullptr && *title != '\0') SetWindowText(title);
    if (isNew && show != 0) ShowWindow(1);
    if (steps != 0) Steps(steps);
    return 1;
}

int CTovDialogProgress::View(int steps, CWnd* parent, HINSTANCE module, unsigned titleId, CEvent* event,
                             CWnd* center, int show) {
    CString title;
    TovLoadResourceString(module, titleId, title);
    return View(steps, parent, title.c_str(), event, center, show);
}

int CTovDialogProgress::Make() {
    State& state = *m_state;
    if (state.style != eStylePlain) ExchangeChildDialogId(idRoom, 1);
    CWnd* const parent = CWnd::FromHandlePermanent(state.parent);
    if (Create(TovGetTovResourceHandle(), templates[state.style], parent) != 1) return 0;
    // A parent that dies takes its children along; this one belongs to whoever works.
    disconnect(state.leavesParent);
    if (parentWidget() != nullptr) {
        state.leavesParent = connect(parentWidget(), &QObject::destroyed, this, [this] {
            bool const isShown = isVisible();
            setParent(nullptr, windowFlags());
            setVisible(isShown);
        });
    }
    return 1;
}

int CTovDialogProgress::MakeButton() {
    State& state = *m_state;
    if (state.event == nullptr || state.button != nullptr) return 1;
    state.button = CTovButtonEvent::CreateThread(idAbort, this, state.event, &state.abortCounter);
    if (state.button != nullptr) return 1;
    Destroy();
    return 0;
}

int CTovDialogProgress::OnInitDialog() {
    CTovDialog::OnInitDialog();
    m_state->bar = qobject_cast<QProgressBar*>(TovWidget(GetDlgItem(idBar)));
    m_state->comment = qobject_cast<QLabel*>(TovWidget(GetDlgItem(idComment)));
    m_state->commentWidth = m_state->comment != nullptr ? m_state->comment->width() : 0;
    QWidget* const abort = TovWidget(GetDlgItem(idAbort));
    if (m_state->event == nullptr && abort != nullptr) {
        abort->hide();
        setFixedSize(width(), height() - abort->height() - 1);
    }
    Center();
    return 0;
}

void CTovDialogProgress::Center() {
    QWidget const* around = TovWidget(m_state->center);
    if (around == nullptr) around = TovWidget(m_state->parent);
    QRect const room = screen()->availableGeometry();
    QRect middle = room;
    QSize frame;  // of a window that is not shown yet, that of another
    if (around != nullptr) {
        QWidget const& window = *around->window();
        frame = window.frameGeometry().size() - window.size();
        middle = around->isWindow() ? window.frameGeometry()
                                    : QRect(around->mapToGlobal(QPoint()), around->size());
    }
    QRect place(QPoint(), size() + frame.expandedTo({0, 0}));
    place.moveCenter(middle.center());
    place.moveLeft(std::max(std::min(place.left(), room.right() - place.width()), room.left()));
    place.moveTop(std::max(std::min(place.top(), room.bottom() - place.height()), room.top()));
    move(place.topLeft());
}

void CTovDialogProgress::Steps(int steps) {
    m_state->counting.Begin(steps);
    if (m_state->bar != nullptr) m_state->bar->setRange(0, std::max(steps, 1));  // 0 to 0 would be restless
    ShowPosition();
}

int CTovDialogProgress::Steps() const {
    return m_state->counting.steps;
}

int CTovDialogProgress::CurrentStep() const {
    return m_state->counting.current;
}

// The bar paints itself at once where that can be seen.
void CTovDialogProgress::ShowPosition() {
    if (m_state->bar != nullptr) m_state->bar->setValue(m_state->counting.position);
}

void CTovDialogProgress::StepIt() {
    m_state->counting.Step();
    ShowPosition();
    Breathe();
}

void CTovDialogProgress::RestartOnOverflow(int restart) {
    m_state->counting.restarts = restart != 0;
}

int CTovDialogProgress::RestartOnOverflow() const {
    return m_state->counting.restarts;
}

void CTovDialogProgress::Comment(char const* text, int step, int adjust) {
    if (QLabel* const label = m_state->comment) {
        CString words = text != nullptr ? text : "";
        if (adjust != 0) {
            auto const device = TovGetSystem()->CreateMemoryDC(TovHandle(label), {1, 1});
            words = TovAdjustString(device.get(), m_state->commentWidth, words.c_str());
        }
        QString const shown = TovQString(words);
        if (label->text() != shown) {
            label->setText(shown);
            if (label->isVisible()) label->repaint();
        }
    }
    if (step != 0 && m_state->counting.steps != 0)
        StepIt();
    else
        Breathe();
}

void CTovDialogProgress::Comment(HINSTANCE module, unsigned id, int step, int adjust) {
    CString text;
    TovLoadResourceString(module, id, text);
    Comment(text.c_str(), step, adjust);
}

int CTovDialogProgress::CommentWidth() const {
    return m_state->commentWidth;
}

int CTovDialogProgress::ShowWindow(int show) {
    QPointer<CTovDialogProgress> const alive(this);
    int const before = CTovDialog::ShowWindow(show);
    if (show == 0 || !alive) return before;
    if (m_state->button != nullptr) TovSendMessage(m_state->button->GetWindow(), WM_TOV_BTNEVENT_CREATEIMAGE);
    auto const end = ProgressClock::now() + longestWaitToBeSeen;
    while (alive && isVisible() && m_state->abortCounter == 0 && ProgressClock::now() < end) {
        TovGetPump()->Pump(GetSafeHwnd());
        if (!alive || windowHandle() == nullptr || windowHandle()->isExposed()) break;
        QThread::msleep(1);
    }
    return before;
}

// Deals with what the user has done to the dialog.
void CTovDialogProgress::Breathe() {
    auto const now = ProgressClock::now();
    if (!GetSafeHwnd() || now - m_state->lastBreath < breathEvery) return;
    QPointer<CTovDialogProgress> const alive(this);
    TovGetPump()->Pump(GetSafeHwnd());
    if (!alive) return;
    m_state->lastBreath = ProgressClock::now();
    if (m_state->abortCounter > 0 && !std::exchange(m_state->isAbortTold, true)) Q_EMIT abortRequested();
}

int CTovDialogProgress::CheckAbort() {
    QPointer<CTovDialogProgress> const alive(this);
    Breathe();
    return !alive || (m_state->event != nullptr && m_state->abortCounter > 0);
}

void CTovDialogProgress::OnOK() {}

void CTovDialogProgress::OnCancel() {
    if (m_state->event == nullptr) return;
    ++m_state->abortCounter;
    m_state->event->SetEvent();
}

void CTovDialogProgress::Destroy() {
    if (GetSafeHwnd()) DestroyWindow();
}

int CTovDialogProgress::DestroyWindow() {
    m_state->button.reset();
    return CTovDialog::DestroyWindow();
}

void CTovDialogProgress::ProgressStyle(eStyles style) {
    m_state->style = style >= eStylePlain && style <= eStyleRoom41 ? style : eStylePlain;
}

}  // namespace tov
