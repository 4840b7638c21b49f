// The spin and the button of an edit.
#include <tov310/edit.h>
#include <tov310/qt_values.h>
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

#include <utility>

namespace tov {

CTovEditButton::CTovEditButton(CTovEdit& edit, QString const& text) : CWndOn(text, &edit) {
    setAutoDefault(false);
    setFlat(edit.IsInline() != 0);
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

// --- In the edit

CTovEditButton* CTovEdit::GetEditButton() const {
    return m_button;
}

CTovEditSpin* CTovEdit::GetEditSpin() const {
    return m_spin;
}

int CTovEdit::CreateEditButton(char const* label) {
    if (m_button != nullptr) return 1;
    m_button = std::make_unique<CTovEditButton>(*this, TovQString(label)).release();  // its child
    connect(m_button, &QObject::destroyed, this, [this] {
        m_button.clear();
        PlaceCompanions();
    });
    m_button->setEnabled(GetReadOnlyMode() == 0);
    PlaceCompanions();
    m_button->show();
    setTabOrder(this, m_button);
    OnDlgCtrlChildAdded(TovHandle(m_button));
    return 1;
}

void CTovEdit::DeleteEditButton() {
    delete m_button;
}

int CTovEdit::CreateSpinButton() {
    if (m_spin != nullptr) return 1;
    m_spin = std::make_unique<CTovEditSpin>(*this).release();
    connect(m_spin, &QObject::destroyed, this, [this] {
        m_spin.clear();
        PlaceCompanions();
    });
    m_spin->setEnabled(GetReadOnlyMode() == 0);
    PlaceCompanions();
    m_spin->show();
    OnDlgCtrlChildAdded(TovHandle(m_spin));
    SpinButtonSetBuddy();
    return 1;
}

void CTovEdit::DeleteSpinButton() {
    delete m_spin;
}

void CTovEdit::EnableCompanions(int enable) {
    if (m_button != nullptr) m_button->setEnabled(enable != 0);
    if (m_spin != nullptr) m_spin->setEnabled(enable != 0);
}

// They lie at the right, the spin within the frame of the edit and the button behind it.
void CTovEdit::PlaceCompanions() {
    int const frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    QSize const label =
        m_button != nullptr ? fontMetrics().size(Qt::TextShowMnemonic, m_button->text()) : QSize();
    m_text.companions.buttonWidth = m_button != nullptr ? CTovEditCompanions::ButtonWidth(TovSize(label)) : 0;
    m_text.companions.spinWidth = m_spin != nullptr ? m_spin->WidthOf(height()) + frame : 0;
    CRect const whole{0, 0, width(), height()};
    int margin = 0;
    if (m_button != nullptr) {
        m_button->setGeometry(TovQRect(m_text.companions.Button(whole)));
        margin += m_text.companions.buttonWidth;
    }
    if (m_spin != nullptr) {
        CRect place = m_text.companions.Spin(whole);
        place.top += frame;
        place.bottom -= frame;
        if (m_button == nullptr) place.right -= frame;
        m_spin->setGeometry(TovQRect(place));
        margin += m_text.companions.spinWidth;
    }
    // The rest of the margins is the host's.
    QMargins margins = textMargins();
    margins.setRight(margins.right() + margin - std::exchange(m_companionMargin, margin));
    if (margins == textMargins()) return;
    setTextMargins(margins);
    updateGeometry();
}

}  // namespace tov
