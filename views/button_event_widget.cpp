#include <tov310/button_event.h>
#include <tov310/messages.h>
#include <tov310/pump.h>
#include <tov310/qt_values.h>

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>

#include <tuple>
#include <utility>

namespace tov {

CTovButtonEventThread::CTovButtonEventThread(HWND button) : CTovWinThread(button) {}

CTovButtonEventThread::~CTovButtonEventThread() {
    std::unique_ptr<QWidget> const button(TovWidget(GetWindow()));
}

void CTovButtonEventThread::Pump() {
    TovGetPump()->Pump(GetWindow());
}

std::unique_ptr<CTovButtonEventThread> CTovButtonEvent::CreateThread(unsigned int id, CWnd* dialog,
                                                                     CEvent* event,
                                                                     std::atomic<long>* abortCounter) {
    if (dialog == nullptr) return nullptr;
    QWidget* const real = TovWidget(dialog->GetDlgItem(static_cast<int>(id)));
    if (real == nullptr) return nullptr;
    auto button = std::make_unique<CTovButtonEvent>(*real, event, abortCounter);
    auto thread = std::make_unique<CTovButtonEventThread>(TovHandle(button.get()));
    std::ignore = button.release();  // the thread's; the dialog, if it ends before, takes it along
    return thread;
}

CTovButtonEvent::CTovButtonEvent(QWidget& real, CEvent* event, std::atomic<long>* abortCounter)
    : CWndOn(real.parentWidget()), m_real(&real), m_event(event), m_abortCounter(abortCounter) {
    setFocusPolicy(real.focusPolicy());
    real.installEventFilter(this);
    connect(&real, &QObject::destroyed, this, &QWidget::hide);
    connect(this, &QAbstractButton::pressed, this, [this] {
        if (m_abortCounter != nullptr) ++*m_abortCounter;
        if (m_event != nullptr) m_event->SetEvent();
        LookDown(true);
    });
    connect(this, &QAbstractButton::released, this, [this] { LookDown(false); });
    LieOverReal();
    if (real.hasFocus()) setFocus();
}

CTovButtonEvent::~CTovButtonEvent() {
    if (m_real != nullptr && hasFocus()) m_real->setFocus();
}

void CTovButtonEvent::LieOverReal() {
    FollowReal();
    raise();
    // As a window of its own the real one has no place for it.
    setVisible(!m_real->isHidden() && !m_real->isWindow());
}

void CTovButtonEvent::FollowReal() {
    setGeometry(m_real->geometry());
    setEnabled(m_real->isEnabled());
    CreateImage(nullptr);
}

int CTovButtonEvent::CreateImage(CRect const* rect) {
    if (m_real == nullptr) return 0;
    // A button that was never shown is told its size by the copying.
    if (std::exchange(m_isCopying, true)) return 1;
    QRect const part = rect != nullptr ? TovQRect(*rect) & m_real->rect() : m_real->rect();
    m_image = m_real->grab(part);
    m_isCopying = false;
    m_imagePlace = part.topLeft();
    update();
    if (QAccessibleInterface const* const real = QAccessible::queryAccessibleInterface(m_real)) {
        setAccessibleName(real->text(QAccessible::Name));
        setAccessibleDescription(real->text(QAccessible::Description));
    }
    return 1;
}

void CTovButtonEvent::LookDown(bool isDown) {
    auto* const button = qobject_cast<QAbstractButton*>(m_real);
    if (button == nullptr) return;
    button->setDown(isDown);
    CreateImage(nullptr);
}

LRESULT CTovButtonEvent::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TOV_BTNEVENT_CREATEIMAGE) return CreateImage(nullptr);
    return CWndOn::WindowProc(message, wParam, lParam);
}

bool CTovButtonEvent::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_real) {
        switch (event->type()) {
            case QEvent::ParentChange:
                if (!m_real->isWindow()) setParent(m_real->parentWidget());
                LieOverReal();
                break;
            case QEvent::Show:
            case QEvent::Hide:
            case QEvent::ZOrderChange:
                LieOverReal();
                break;
            case QEvent::Move:
            case QEvent::Resize:
            case QEvent::EnabledChange:
            case QEvent::PaletteChange:
            case QEvent::StyleChange:
            case QEvent::FontChange:
                FollowReal();
                break;
            default:
                break;
        }
    }
    return CWndOn::eventFilter(watched, event);
}

void CTovButtonEvent::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Escape:  // would close the dialog in the middle of the work
            if (!event->isAutoRepeat()) click();
            return;
        default:
            CWndOn::keyPressEvent(event);
    }
}

void CTovButtonEvent::paintEvent(QPaintEvent*) {
    QPainter(this).drawPixmap(m_imagePlace, m_image);
}

}  // namespace tov
