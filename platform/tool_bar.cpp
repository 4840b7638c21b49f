#include <tov310/tool_bar.h>

#include "platform/menu_view.h"

#include <tov310/cmd_ui.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/view.h>

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace tov {
namespace {

class ButtonState final : public CCmdUI {
public:
  explicit ButtonState(QAction &button) : m_button(&button) {
    m_nID = MenuView::CommandOf(&button);
  }

  void Enable(int on) override {
    CCmdUI::Enable(on);
    if (m_button != nullptr)
      m_button->setEnabled(on != 0);
  }
  void SetCheck(int check) override {
    if (m_button == nullptr)
      return;
    m_button->setCheckable(true);
    m_button->setChecked(check != 0);
  }
  void SetRadio(int on) override { SetCheck(on); }
  void SetText(char const *) override {}

private:
  QPointer<QAction> m_button;
};

} // namespace

CTovToolBar::CTovToolBar(QWidget *parent) : CWndOn(parent) {
  connect(this, &QToolBar::actionTriggered, this, &CTovToolBar::Press);
}

CTovToolBar::~CTovToolBar() { disconnect(m_idle); }

void CTovToolBar::SetButtons(std::span<unsigned const> commands) {
  clear();
  for (unsigned const command : commands) {
    QAction *const button =
        command != 0 ? addAction(QString()) : addSeparator();
    button->setData(command);
  }
  if (isVisible()) {
    SetWords();
    UpdateStates();
  }
}

QAction *CTovToolBar::ButtonOf(unsigned command) const {
  for (QAction *const button : actions()) {
    if (command != 0 && MenuView::CommandOf(button) == command)
      return button;
  }
  return nullptr;
}

CWnd *CTovToolBar::Target() const {
  CFrameWnd *const frame = GetParentFrame();
  return frame != nullptr ? frame : GetParent();
}

void CTovToolBar::UpdateStates() {
  QPointer<CTovToolBar> const alive(this);
  for (QPointer<QAction> const button : actions()) {
    CWnd *const target = alive ? Target() : nullptr;
    if (target == nullptr)
      return;
    if (button && MenuView::CommandOf(button) != 0)
      ButtonState(*button).DoUpdate(target, 1);
  }
}

void CTovToolBar::Press(QAction const *button) {
  CWnd const *const target = Target();
  unsigned const command = MenuView::CommandOf(button);
  if (target != nullptr && command != 0)
    TovPostMessage(target->GetSafeHwnd(), WM_COMMAND,
                   TovCommandParam(command, 0));
}

void CTovToolBar::SetWords() {
  CFrameWnd const *const frame = GetParentFrame();
  for (QAction *const button : actions()) {
    unsigned const command = MenuView::CommandOf(button);
    if (frame == nullptr || command == 0)
      continue;
    CString words;
    frame->GetMessageString(command, words);
    button->setStatusTip(TovQString(words));
    frame->GetToolTipString(command, words);
    button->setText(TovQString(words));
  }
}

void CTovToolBar::showEvent(QShowEvent *event) {
  CWndOn::showEvent(event);
  SetWords();
  UpdateStates();
  disconnect(m_idle);
  if (auto *const dispatcher = QAbstractEventDispatcher::instance())
    m_idle = connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
                     &CTovToolBar::UpdateStates);
}

void CTovToolBar::hideEvent(QHideEvent *event) {
  disconnect(m_idle);
  CWndOn::hideEvent(event);
}

} // namespace tov
