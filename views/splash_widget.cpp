#include <tov310/application.h>
#include <tov310/painter_dc.h>
#include <tov310/pump.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/window_messages.h>
#include <tov310/wnd_splash.h>

#include <QCloseEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QThread>
#include <QWindow>

#include <utility>

namespace tov {
namespace {

constexpr WPARAM timeOutTimer = 4711;

CWnd* MainWindow() {
    CWinApp const* const application = TovGetApp();
    return application != nullptr ? CWnd::FromHandlePermanent(application->GetMainWnd()) : nullptr;
}

QRect InTheMiddle(QWidget const* parent, QSize const& size) {
    QScreen const* const screen = parent != nullptr ? parent->screen() : QGuiApplication::primaryScreen();
    QRect place(QPoint(), size);
    if (screen != nullptr) place.moveCenter(screen->geometry().center());
    return place;
}

bool IsClickOrKey(unsigned message) {
    return message == WM_KEYDOWN || message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN ||
           message == WM_MBUTTONDOWN;
}

}  // namespace

CTovWndSplash::CTovWndSplash(int topmost, unsigned int timeOut, int clickEnds)
    : m_topmost(topmost), m_timeOut(timeOut), m_clickEnds(clickEnds) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false);
}

CTovWndSplash::CTovWndSplash(HINSTANCE module, unsigned int id, int topmost, unsigned int timeOut,
                             int clickEnds)
    : CTovWndSplash(topmost, timeOut, clickEnds) {
    m_module = module;
    m_id = id;
}

CTovWndSplash::CTovWndSplash(char const* path, int topmost, unsigned int timeOut, int clickEnds)
    : CTovWndSplash(topmost, timeOut, clickEnds) {
    m_path = path != nullptr ? path : "";
}

CTovWndSplash::CTovWndSplash(CTovDib const& image, int topmost, unsigned int timeOut, int clickEnds)
    : CTovWndSplash(topmost, timeOut, clickEnds) {
    m_dib.Create(&image);
}

CTovWndSplash::~CTovWndSplash() {
    EnableParent();
}

int CTovWndSplash::LoadImage() {
    if (m_dib.GetCrBits() != nullptr) return 1;
    if (!m_path.empty()) return m_dib.Create(nullptr, m_path.c_str(), 1);
    return m_id != 0 ? m_dib.Create(nullptr, m_module, m_id, 1) : 0;
}

int CTovWndSplash::Create(CWnd* parent, unsigned long style, unsigned long exStyle, int disableParent) {
    if (m_isMade != 0 || LoadImage() == 0) return 0;
    if (parent == nullptr) parent = MainWindow();
    QWidget* const owner = TovWidget(parent);
    if (m_topmost != 0) exStyle |= WS_EX_TOPMOST;
    Qt::WindowFlags flags = Qt::SplashScreen | Qt::FramelessWindowHint;
    if ((exStyle & WS_EX_TOPMOST) != 0) flags |= Qt::WindowStaysOnTopHint;
    setWindowFlags(flags);
    setGeometry(InTheMiddle(owner, {m_dib.GetWidth(), m_dib.GetHeight()}));
    m_isMade = TovHandle(this) ? 1 : 0;
    if (m_isMade == 0) return 0;
    ModifyStyle(WS_VISIBLE, style & ~WS_VISIBLE);
    ModifyStyleEx(0, exStyle);
    if (owner != nullptr) {
        m_ownerEnds = connect(owner, &QObject::destroyed, this, [this] { DestroyWindow(); });
        winId();  // has the window of the desktop made, which is to lie above the owner's
        windowHandle()->setTransientParent(owner->window()->windowHandle());
        if (disableParent != 0 && parent->EnableWindow(0) != 0) m_disabled = parent->GetSafeHwnd();
    }
    if (m_timeOut != noTimeOut) SetTimer(timeOutTimer, m_timeOut);
    HWND const self = GetSafeHwnd();
    if ((style & WS_VISIBLE) != 0) ShowNow();
    return IsWindow(self);
}

// The program will not come to its main loop soon, so the picture is brought to the screen here.
void CTovWndSplash::ShowNow() {
    show();
    constexpr int longest = 250;  // milliseconds; a desktop may refuse to show anything at all
    QElapsedTimer waited;
    waited.start();
    HWND const self = GetSafeHwnd();
    // What the pump lets through may end the splash, or delete it.
    while (IsWindow(self) && !windowHandle()->isExposed() && waited.elapsed() < longest) {
        TovGetPump()->Pump(self);
        QThread::msleep(1);
    }
    if (!IsWindow(self)) return;
    repaint();
    TovGetPump()->Pump(self);
}

int CTovWndSplash::DestroyWindow() {
    EnableParent();
    disconnect(m_ownerEnds);
    m_isMade = 0;
    int const result = CWndOn::DestroyWindow();
    if (result != 0) Q_EMIT ended();
    return result;
}

void CTovWndSplash::EnableParent() {
    CWnd* const parent = CWnd::FromHandlePermanent(std::exchange(m_disabled, {}));
    if (parent != nullptr) parent->EnableWindow(1);
}

LRESULT CTovWndSplash::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER && wParam == timeOutTimer) {
        KillTimer(timeOutTimer);
        close();
        return 0;
    }
    if (m_timeOut != noTimeOut && m_clickEnds != 0 && IsClickOrKey(message))
        TovPostMessage(GetSafeHwnd(), WM_CLOSE);
    return CWndOn::WindowProc(message, wParam, lParam);
}

bool CTovWndSplash::event(QEvent* event) {
    // The toolkit prepares every widget in its next loop; this one is no window before it is made one.
    if (event->type() == QEvent::Polish && m_isMade == 0) return QWidget::event(event);
    return CWndOn::event(event);
}

void CTovWndSplash::closeEvent(QCloseEvent* event) {
    CWndOn::closeEvent(event);
    if (event->isAccepted() && !testAttribute(Qt::WA_DeleteOnClose)) DestroyWindow();
}

void CTovWndSplash::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    CTovPainterDC dc(painter);
    m_drawDib.DrawDib(&dc, &m_dib, TovRect(rect()));
}

}  // namespace tov
