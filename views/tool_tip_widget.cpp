#include "platform/pass_click.h"

#include <tov310/announce.h>
#include <tov310/qt_values.h>
#include <tov310/system.h>
#include <tov310/wnd_tool_tip.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QToolTip>
#include <QWindow>

namespace tov {
namespace {

using Tip = CTovToolTipText;

CRect ScreenAround(QPoint const& place) {
    QScreen const* screen = QGuiApplication::screenAt(place);
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? TovRect(screen->availableGeometry()) : CRect{};
}

}  // namespace

CTovWndToolTip::CTovWndToolTip() {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false);
}

CTovWndToolTip::~CTovWndToolTip() = default;

int CTovWndToolTip::CreatePopUp(CWnd* parent) {
    return Create(parent, 1);
}

int CTovWndToolTip::CreatePopUpNA(CWnd* parent) {
    return Create(parent, 0);
}

int CTovWndToolTip::Create(CWnd* parent, int canBeActivated) {
    QWidget* const owner = TovWidget(parent);
    if (m_isMade != 0 || (parent != nullptr && owner == nullptr)) return 0;
    m_parent = TovHandle(owner);
    m_canBeActivated = canBeActivated;
    // The owner is followed and does not become the parent, which would delete it.
    Qt::WindowFlags const kind = canBeActivated != 0 ? Qt::Tool : Qt::ToolTip;
    setWindowFlags(kind | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    if (owner != nullptr) {
        owner->installEventFilter(this);
        connect(owner, &QObject::destroyed, this, [this] { DestroyWindow(); });
    }
    if (canBeActivated != 0) {
        NoteActive(QGuiApplication::focusWindow());
        m_follows = connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &CTovWndToolTip::NoteActive);
    }
    TakeFont();
    m_isMade = TovHandle(this) ? 1 : 0;
    return m_isMade;
}

int CTovWndToolTip::DestroyWindow() {
    if (QWidget* const owner = TovWidget(m_parent)) {
        owner->removeEventFilter(this);
        disconnect(owner, nullptr, this, nullptr);
    }
    disconnect(m_follows);
    m_parent = {};
    m_isMade = 0;
    Hide();
    return CWndOn::DestroyWindow();
}

// The toolkit's tips may get another one at any time.
void CTovWndToolTip::TakeFont() {
    QFont const font = QToolTip::font();
    if (font == m_toolkitFont) return;
    m_toolkitFont = font;
    setFont(font);
}

void CTovWndToolTip::ShowLeftTop(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eLeft, Tip::eTop);
}

void CTovWndToolTip::ShowLeftCentered(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eLeft, Tip::eMiddle);
}

void CTovWndToolTip::ShowLeftBottom(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eLeft, Tip::eBottom);
}

void CTovWndToolTip::ShowCenteredTop(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eCentered, Tip::eTop);
}

void CTovWndToolTip::ShowCenteredCentered(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eCentered, Tip::eMiddle);
}

void CTovWndToolTip::ShowCenteredBottom(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eCentered, Tip::eBottom);
}

void CTovWndToolTip::ShowRightTop(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eRight, Tip::eTop);
}

void CTovWndToolTip::ShowRightCentered(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eRight, Tip::eMiddle);
}

void CTovWndToolTip::ShowRightBottom(char const* text, int x, int y) {
    Show(text, {x, y}, Tip::eRight, Tip::eBottom);
}

void CTovWndToolTip::ShowAt(QString const& text, QPoint const& place, Tip::eAcross across, Tip::eDown down) {
    Show(TovText(text).c_str(), TovPoint(place), across, down);
}

void CTovWndToolTip::Show(char const* text, CPoint const& place, Tip::eAcross across, Tip::eDown down) {
    if (m_isMade == 0 || (m_parent && !IsWindow(m_parent))) return;
    TakeFont();
    m_text.Update(text, [this](CString const& shown) {
        QFontMetrics const metrics = fontMetrics();
        return CSize{metrics.horizontalAdvance(TovQString(shown)), metrics.height()};
    });
    CRect const rect = m_text.RectangleAt(place.x, place.y, across, down);
    if (m_isHidden != 0 && m_text.DisplayText().empty()) return;
    if (m_text.Show(rect) == 0) return;
    m_isHidden = 0;
    setGeometry(TovQRect(Tip::KeptInside(rect, ScreenAround(TovQPoint(place)))));
    QWidget const* const owner = TovWidget(m_parent);
    winId();  // has the window of the desktop made, which is to lie above the owner's
    if (owner != nullptr) windowHandle()->setTransientParent(owner->window()->windowHandle());
    show();
    raise();
    repaint();
    if (m_text.DisplayText().empty() || m_said == m_text.DisplayText()) return;
    m_said = m_text.DisplayText();
    TovGetAnnounce()->Announce(GetSafeHwnd(), text);
}

void CTovWndToolTip::Hide() {
    m_text.Hide();
    m_said.clear();
    m_isHidden = 1;  // before the mouse is told to leave
    hide();
}

int CTovWndToolTip::HideOnClick(int* right) const {
    if (right != nullptr) *right = m_hideOnRightClick;
    return m_hideOnLeftClick;
}

void CTovWndToolTip::HideOnClick(int left, int right) {
    m_hideOnLeftClick = left;
    m_hideOnRightClick = right;
}

bool CTovWndToolTip::event(QEvent* event) {
    // The toolkit prepares every widget in its next loop; this one is no window before it is made one.
    if (event->type() == QEvent::Polish && m_isMade == 0) return QWidget::event(event);
    return CWndOn::event(event);
}

bool CTovWndToolTip::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && watched == TovWidget(m_parent)) Hide();
    return CWndOn::eventFilter(watched, event);
}

void CTovWndToolTip::changeEvent(QEvent* event) {
    CWndOn::changeEvent(event);
    // The text is measured anew when it is shown the next time.
    if (event->type() == QEvent::FontChange) m_isHidden != 0 ? m_text.Hide() : Hide();
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) GiveActivationBack(10);
}

// None is active while another program is.
void CTovWndToolTip::NoteActive(QWindow* window) {
    if (window != nullptr && window != windowHandle()) m_activeBefore = window;
}

// The desktop takes no notice of it while it is in the middle of the other change.
void CTovWndToolTip::GiveActivationBack(int tries) {
    QTimer::singleShot(20, this, [this, tries] {
        if (tries == 0 || !isActiveWindow() || m_activeBefore == nullptr) return;
        m_activeBefore->requestActivate();
        GiveActivationBack(tries - 1);
    });
}

// By whomever.
void CTovWndToolTip::hideEvent(QHideEvent* event) {
    CWndOn::hideEvent(event);
    if (m_isHidden == 0) Hide();
}

void CTovWndToolTip::leaveEvent(QEvent* event) {
    CWndOn::leaveEvent(event);
    if (m_isHidden != 0 || m_hideOnLeave == 0) return;
    Hide();
    QPointer<QWidget> const alive(this);
    OnToolTipMouseLeave();
    if (alive) Q_EMIT toolTipMouseLeave();
}

void CTovWndToolTip::mousePressEvent(QMouseEvent* event) {
    bool const hides = (event->button() == Qt::LeftButton && m_hideOnLeftClick != 0) ||
                       (event->button() == Qt::RightButton && m_hideOnRightClick != 0);
    if (!hides) return;
    Hide();
    PassPressOn(*event);
}

void CTovWndToolTip::paintEvent(QPaintEvent*) {
    ITovSystem& system = *TovGetSystem();
    QPainter painter(this);
    QColor const ink = TovQColor(system.GetSysColor(COLOR_INFOTEXT));
    painter.fillRect(rect(), ink);  // what is left of it is the frame, whole at every scale
    painter.fillRect(rect().adjusted(1, 1, -1, -1), TovQColor(system.GetSysColor(COLOR_INFOBK)));
    painter.setPen(ink);
    constexpr int corner = 2;
    QRect const place = rect().adjusted(corner, corner, -corner, -corner);
    QString const shown =
        fontMetrics().elidedText(TovQString(m_text.DisplayText()), Qt::ElideRight, place.width());
    painter.drawText(place, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, shown);
}

}  // namespace tov
