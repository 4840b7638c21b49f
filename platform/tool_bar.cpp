#include <tov310/tool_bar.h>

#include "platform/menu_view.h"

#include <tov310/cmd_ui.h>
#include <tov310/dib_image.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/toolbar_bmp.h>
#include <tov310/view.h>

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace tov {
namespace {

class ButtonState final : public CCmdUI {
 public:
    explicit ButtonState(QAction& button) : m_button(&button) { m_nID = MenuView::CommandOf(&button); }

    void Enable(int on) override {
        CCmdUI::Enable(on);
        if (m_button != nullptr) m_button->setEnabled(on != 0);
    }
    void SetCheck(int check) override {
        if (m_button == nullptr) return;
        m_button->setCheckable(true);
        m_button->setChecked(check != 0);
    }
    void SetRadio(int on) override { SetCheck(on); }
    void SetText(char const*) override {}

 private:
    QPointer<QAction> m_button;
};

}  // namespace

CTovToolBar::CTovToolBar(QWidget* parent) : CWndOn(parent) {
    connect(this, &QToolBar::actionTriggered, this, &CTovToolBar::Press);
}

CTovToolBar::~CTovToolBar() {
    disconnect(m_idle);
}

void CTovToolBar::SetButtons(std::span<unsigned const> commands) {
    // Taken out by clear(), the buttons would stay with the bar all its life.
    for (QAction* const before : actions()) {
        if (before->parent() == this) before->deleteLater();
    }
    clear();
    for (unsigned const command : commands) {
        QAction* const button = command != 0 ? addAction(QString()) : addSeparator();
        button->setData(command);
    }
    if (isVisible()) {
        SetWords();
        UpdateStates();
    }
}

int CTovToolBar::LoadToolBar(HINSTANCE module, unsigned id) {
    std::vector<unsigned> commands;
    if (CTovToolbarBmp::LoadVectorOfIDs(module, id, commands) == 0) return 0;
    SetButtons(commands);
    LoadBitmap(module, id);
    return 1;
}

int CTovToolBar::LoadBitmap(HINSTANCE module, unsigned id) {
    CTovToolbarBmp pictures;
    if (pictures.LoadBitmap(module, id) == 0 || pictures.Bitmap().GetWidth() == 0) return 0;
    setIconSize(TovQSize(pictures.ImageSize()));
    for (unsigned const command : pictures.IdVector()) {
        QAction* const button = ButtonOf(command);
        if (button == nullptr) continue;
        if (HICON const icon = pictures.ExtractIcon(command)) button->setIcon(TovQIcon(icon));
    }
    return 1;
}

int CTovToolBar::AddBitmap(int count, HINSTANCE module, unsigned id) {
    CTovBitmap bitmap;
    if (count <= 0 || bitmap.LoadBitmap(module, id) == 0) return -1;
    QPixmap const strip = TovPixmap(bitmap);
    int const width = strip.width() / count;
    if (width == 0) return -1;
    int used = 0;
    for (QAction* const button : actions()) {
        if (used == count) break;
        if (button->isSeparator() || !button->icon().isNull()) continue;
        button->setIcon(strip.copy(used * width, 0, width, strip.height()));
        ++used;
    }
    return used;
}

QAction* CTovToolBar::ButtonOf(unsigned command) const {
    for (QAction* const button : actions()) {
        if (command != 0 && MenuView::CommandOf(button) == command) return button;
    }
    return nullptr;
}

CWnd* CTovToolBar::Target() const {
    CFrameWnd* const frame = GetParentFrame();
    return frame != nullptr ? frame : GetParent();
}

void CTovToolBar::UpdateStates() {
    QPointer<CTovToolBar> const alive(this);
    for (QPointer<QAction> const button : actions()) {
        CWnd* const target = alive ? Target() : nullptr;
        if (target == nullptr) return;
        if (button && MenuView::CommandOf(button) != 0) ButtonState(*button).DoUpdate(target, 1);
    }
}

void CTovToolBar::Press(QAction const* button) {
    CWnd const* const target = Target();
    unsigned const command = MenuView::CommandOf(button);
    if (target != nullptr && command != 0)
        TovPostMessage(target->GetSafeHwnd(), WM_COMMAND, TovCommandParam(command, 0));
}

void CTovToolBar::SetWords() {
    CFrameWnd const* const frame = GetParentFrame();
    for (QAction* const button : actions()) {
        unsigned const command = MenuView::CommandOf(button);
        if (frame == nullptr || command == 0) continue;
        CString words;
        frame->GetMessageString(command, words);
        button->setStatusTip(TovQString(words));
        frame->GetToolTipString(command, words);
        button->setText(TovQString(words));
    }
}

void CTovToolBar::showEvent(QShowEvent* event) {
    CWndOn::showEvent(event);
    SetWords();
    UpdateStates();
    disconnect(m_idle);
    if (auto* const dispatcher = QAbstractEventDispatcher::instance())
        m_idle =
            connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &CTovToolBar::UpdateStates);
}

void CTovToolBar::hideEvent(QHideEvent* event) {
    disconnect(m_idle);
    CWndOn::hideEvent(event);
}

}  // namespace tov
