#include "platform/menu_view.h"

#include <tov310/hooks.h>
#include <tov310/messages.h>
#include <tov310/painter_dc.h>
#include <tov310/qt_values.h>
#include <tov310/view.h>
#include <tov310/wnd_on.h>

#include <QActionGroup>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStatusTipEvent>
#include <QWidgetAction>

#include <algorithm>
#include <utility>

namespace tov {
namespace {

// The frame that has words for the commands; null for none.
CFrameWnd const* FrameAround(HWND window) {
    CWnd const* const found = CWnd::FromHandlePermanent(window);
    if (found == nullptr) return nullptr;
    if (found->IsKindOf(&CFrameWnd::classCFrameWnd)) return static_cast<CFrameWnd const*>(found);
    return found->GetParentFrame();
}

// An entry that the menu draws itself. The mouse is the menu's.
class DrawnEntry final : public QWidget {
 public:
    DrawnEntry(CMenu& menu, unsigned position, QMenu& view, QAction& action)
        : QWidget(&view),
          m_menu(&menu),
          m_life(menu.Life()),
          m_id(menu.GetMenuItemID(position)),
          m_state(menu.GetMenuState(position, MF_BYPOSITION)),
          m_data(menu.GetMenuItemData(position, MF_BYPOSITION)),
          m_view(view),
          m_action(action) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        connect(&view, &QMenu::hovered, this, [this] { update(); });
        MEASUREITEMSTRUCT item{m_id, 0, 0, m_data};
        menu.MeasureItem(&item);
        constexpr unsigned most = 4096;
        m_size = {static_cast<int>(std::min(item.itemWidth, most)),
                  static_cast<int>(std::min(item.itemHeight, most))};
    }

    QSize sizeHint() const override { return m_size; }
    QSize minimumSizeHint() const override { return m_size; }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        bool const isCurrent = m_view.activeAction() == &m_action;
        if (!m_life.expired()) {
            CTovPainterDC dc(painter);
            DRAWITEMSTRUCT item;
            item.itemID = m_id;
            item.itemState = m_state | (isCurrent ? MF_HILITE : 0);
            item.hDC = &dc;
            item.rcItem = TovRect(rect());
            item.itemData = m_data;
            m_menu->DrawItem(&item);
        }
        if (!isCurrent) return;
        // The marks of the menu's own are none of the keys' and the mouse's.
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }

 private:
    CMenu* m_menu;
    std::weak_ptr<void const> m_life;
    unsigned m_id;
    unsigned m_state;
    WPARAM m_data;
    QMenu& m_view;
    QAction& m_action;
    QSize m_size;
};

QAction* MakeDrawnAction(CMenu& menu, unsigned position, QMenu& view) {
    auto* const action = std::make_unique<QWidgetAction>(&view).release();
    action->setDefaultWidget(std::make_unique<DrawnEntry>(menu, position, view, *action).release());
    return action;
}

void MarkChosen(QAction& action, bool asRadio) {
    action.setCheckable(true);
    // Only members of a group get the mark of one choice among several.
    if (asRadio) action.setActionGroup(std::make_unique<QActionGroup>(&action).release());
    action.setChecked(true);
}

// Closes a menu whose window dies.
class CloseWithWindow final : public CTovSubclassWnd {
 public:
    CloseWithWindow(HWND window, QMenu& view) : m_view(&view) { HookWindow(window); }

    void OnDestroyWindow() override {
        CTovSubclassWnd::OnDestroyWindow();
        if (m_view != nullptr) m_view->close();
    }

 private:
    QPointer<QMenu> m_view;
};

}  // namespace

MenuView::MenuView(CMenu& menu, HWND window, QWidget* parent)
    : QMenu(parent), m_menu(&menu), m_life(menu.Life()), m_window(window) {
    connect(this, &QMenu::aboutToShow, this, [this] {
        if (!std::exchange(m_isFresh, false)) Fill();
        m_isFresh = false;
    });
}

void MenuView::Fill() {
    QPointer<MenuView> const alive(this);
    if (!m_life.expired() && IsWindow(m_window)) {
        TovSendMessage(m_window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(m_menu));
        if (!alive) return;
    }
    // A frame has the states of its commands asked itself, and disables what
    // nobody does. Other windows may do commands in ways that cannot be asked
    // for.
    CWnd* const window = CWnd::FromHandlePermanent(m_window);
    if (!m_life.expired() && window != nullptr && !window->IsKindOf(&CFrameWnd::classCFrameWnd)) {
        TovUpdateMenuStates(*m_menu, *window, 0);
        if (!alive) return;
    }
    for (QObject* const child : QObjectList(children())) {
        if (qobject_cast<QMenu*>(child) != nullptr) child->deleteLater();
    }
    clear();
    m_isFresh = true;
    if (m_life.expired() || !IsWindow(m_window)) return;
    for (unsigned i = 0; i < m_menu->GetMenuItemCount(); ++i)
        addAction(MakeAction(*m_menu, i, m_window, *this));
}

unsigned MenuView::CommandOf(QAction const* action) {
    return action != nullptr ? action->data().toUInt() : 0;
}

QAction* MenuView::MakeAction(CMenu& menu, unsigned position, HWND window, QWidget& parent) {
    unsigned const state = menu.GetMenuState(position, MF_BYPOSITION);
    CString text;
    menu.GetMenuString(position, text, MF_BYPOSITION);
    CMenu* const popup = menu.GetSubMenu(position);
    QAction* action = nullptr;
    if (popup != nullptr) {
        auto* const view = std::make_unique<MenuView>(*popup, window, &parent).release();
        if (auto const* const outer = dynamic_cast<MenuView const*>(&parent))
            view->m_takesRightButton = outer->m_takesRightButton;
        action = view->menuAction();
    } else if ((state & MF_OWNERDRAW) != 0 && qobject_cast<QMenu*>(&parent) != nullptr) {
        action = MakeDrawnAction(menu, position, static_cast<QMenu&>(parent));
    } else {
        action = std::make_unique<QAction>(&parent).release();
    }
    action->setText(TovQString(text));
    action->setEnabled((state & (MF_GRAYED | MF_DISABLED)) == 0);
    if (popup != nullptr) return action;
    action->setSeparator((state & MF_SEPARATOR) != 0);
    if ((state & MF_CHECKED) != 0) MarkChosen(*action, (state & MF_RADIOCHECK) != 0);
    unsigned const id = menu.GetMenuItemID(position);
    action->setData(id);
    CFrameWnd const* const frame = id != 0 ? FrameAround(window) : nullptr;
    if (frame == nullptr) return action;
    CString words;
    frame->GetMessageString(id, words);
    action->setStatusTip(TovQString(words));
    return action;
}

void MenuView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && !m_takesRightButton)
        event->accept();
    else
        QMenu::mouseReleaseEvent(event);
}

int MenuPort::Track(CMenu& menu, POINT const& point, unsigned flags, CWnd& window) {
    HWND const owner = window.GetSafeHwnd();
    if (!owner || !TovIsUserInterfaceThread()) return 0;
    QPointer<QWidget> const widget(TovWidget(&window));
    // The widget may be gone at any time, and its menus with it.
    QPointer<MenuView> const view(std::make_unique<MenuView>(menu, owner, widget).release());
    view->SetTakesRightButton((flags & TPM_RIGHTBUTTON) != 0);
    view->Fill();
    if (!view || view->isEmpty()) {
        delete view.data();
        return 0;
    }
    QObject::connect(view, &QMenu::hovered, view, [widget](QAction const* entry) {
        if (!widget) return;
        QStatusTipEvent words(entry->statusTip());
        QCoreApplication::sendEvent(widget, &words);
    });
    QPoint place(point.x, point.y);
    int const width = view->sizeHint().width();
    if ((flags & TPM_RIGHTALIGN) != 0)
        place.rx() -= width;
    else if ((flags & TPM_CENTERALIGN) != 0)
        place.rx() -= width / 2;
    unsigned command = 0;
    {
        CloseWithWindow const watch(owner, *view);
        command = MenuView::CommandOf(view->exec(place));
    }
    delete view.data();
    if (widget) {
        QStatusTipEvent none{QString()};
        QCoreApplication::sendEvent(widget, &none);
    }
    if ((flags & TPM_RETURNCMD) != 0) return static_cast<int>(command);
    if (command != 0 && (flags & TPM_NONOTIFY) == 0)
        TovSendMessage(owner, WM_COMMAND, TovCommandParam(command, 0));
    return 1;
}

void MenuPort::FillRect(CDC* dc, CRect const& rect, unsigned long color) {
    if (dc != nullptr) dc->FillSolidRect(rect, static_cast<COLORREF>(color));
}

}  // namespace tov
