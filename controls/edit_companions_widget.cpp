// The spin and the button of an edit.
#include <tov310/edit.h>
#include <tov310/styles.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleHints>
#include <QStyleOptionSpinBox>
#include <QTimerEvent>
#include <QWheelEvent>

namespace tov {

CTovEditButton::CTovEditButton(CTovEdit& edit, QString const& text) : CWndOn(text, &edit) {
    setAutoDefault(false);
    setCursor(Qt::ArrowCursor);
    ModifyStyle(0, BS_PUSHLIKE | BS_CHECKBOX);
    connect(this, &QPushButton::clicked, &edit, [&edit] { edit.DispatchButtonClicked(); });
}

CTovEditSpin::CTovEditSpin(CTovEdit& edit) : CWndOn(&edit), m_edit(edit) {
    setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::NoFocus);
}

int CTovEditSpin::WidthOf(int height) const {
    QStyleOptionSpinBox option;
    option.initFrom(this);
    option.rect = QRect(0, 0, 10 * height, height);
    option.subControls = QStyle::SC_All;
    QRect const up = style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, this);
    return up.width() > 0 ? up.width() : style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
}

void CTovEditSpin::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    int const half = height() / 2;
    for (bool const isUp : {true, false}) {
        QStyleOption option;
        option.initFrom(this);
        option.rect = isUp ? QRect(0, 0, width(), half) : QRect(0, half, width(), height() - half);
        bool const isPressed = m_pressed == (isUp ? 1 : -1);
        option.state.setFlag(QStyle::State_Sunken, isPressed);
        option.state.setFlag(QStyle::State_Raised, !isPressed);
        style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
        // The arrow is centred; styles would fill a wide rectangle with it.
        int const side = std::min(width(), half) - 2;
        option.rect = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, {side, side}, option.rect);
        style()->drawPrimitive(isUp ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, &option,
                               &painter, this);
    }
}

void CTovEditSpin::Step(bool up) {
    m_edit.Text().OnSpinNotification(up ? -1 : 1);
}

void CTovEditSpin::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    m_pressed = event->position().y() < height() / 2.0 ? 1 : -1;
    update();
    // A press on it is a press on the edit.
    if (m_edit.ControlOrChildHasFocus() == 0) m_edit.setFocus(Qt::MouseFocusReason);
    QPointer<CTovEditSpin> const alive(this);
    Step(m_pressed > 0);
    if (!alive || m_pressed == 0) return;
    constexpr int firstRepeat = 300;  // milliseconds
    if (m_timer == 0) m_timer = startTimer(firstRepeat);
}

void CTovEditSpin::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer) return QWidget::timerEvent(event);
    constexpr int nextRepeat = 60;
    killTimer(m_timer);
    m_timer = startTimer(nextRepeat);
    if (!isVisible() || !isEnabled()) return Stop();
    Step(m_pressed > 0);
}

void CTovEditSpin::Stop() {
    if (m_timer != 0) killTimer(m_timer);
    m_timer = 0;
    m_pressed = 0;
    update();
}

void CTovEditSpin::mouseReleaseEvent(QMouseEvent*) {
    Stop();
}

void CTovEditSpin::wheelEvent(QWheelEvent* event) {
    // Whoever scrolls a form does not mean the number under the mouse.
    if (m_edit.ControlOrChildHasFocus() == 0) return event->ignore();
    constexpr int notch = 120;
    m_wheel += event->angleDelta().y();
    int const steps = m_wheel / notch;
    m_wheel -= steps * notch;
    event->accept();
    QPointer<CTovEditSpin> const alive(this);
    for (int i = 0; i < std::abs(steps) && alive; ++i)
        Step(steps > 0);
}

}  // namespace tov
