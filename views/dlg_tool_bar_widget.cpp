#include <tov310/dlg_tool_bar.h>

#include "views/tool_bar_place.h"

#include <tov310/dialog.h>
#include <tov310/dialog_metrics.h>
#include <tov310/dib_image.h>
#include <tov310/messages.h>
#include <tov310/property_sheet.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/toolbar_bmp.h>
#include <tov310/wnd_on.h>

#include <QAction>
#include <QEvent>
#include <QLayout>

#include <functional>
#include <memory>

namespace tov {
namespace {

// The short name behind a line end, else the whole.
QString TipOf(HINSTANCE module, unsigned command) {
    CString words;
    TovLoadResourceString(module, command, words);
    return TovQString(words.substr(words.find('\n') + 1));
}

}  // namespace

class CTovDlgToolBar::Bar final : public CWndOn<QToolBar, CWnd> {
 public:
    explicit Bar(QWidget* parent) : CWndOn(parent) {
        setMovable(false);
        setFloatable(false);
        setContextMenuPolicy(Qt::PreventContextMenu);
        layout()->setContentsMargins(0, 0, 0, 0);
        layout()->setSpacing(0);
    }
    bool IsOver() const { return m_isOver; }

    std::function<void()> onMove;  // of what the bar stands beside

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        bool const hasMoved = event->type() == QEvent::Move || event->type() == QEvent::Show;
        if (hasMoved && watched != this && !m_isOver && onMove) onMove();
        return CWndOn::eventFilter(watched, event);
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_DESTROY) {
            m_isOver = true;
            deleteLater();
        }
        return CWndOn::WindowProc(message, wParam, lParam);
    }

 private:
    bool m_isOver = false;
};

CTovDlgToolBar::CTovDlgToolBar(CDialog* dialog) : m_host(dialog), m_dialog(dialog) {}

CTovDlgToolBar::CTovDlgToolBar(CPropertySheet* sheet) : m_host(sheet), m_sheet(sheet) {}

CTovDlgToolBar::~CTovDlgToolBar() {
    delete m_bar.data();
}

int CTovDlgToolBar::Create(HINSTANCE module, unsigned toolbarId, unsigned controlId, int arrangeFlags,
                           unsigned long style) {
    QWidget* const host = m_host != nullptr && m_host->GetSafeHwnd() ? TovWidget(m_host) : nullptr;
    if (module == nullptr) module = TovGetTovResourceHandle();
    CTovToolbarBmp resource;
    if (ToolBar() != nullptr || host == nullptr || resource.LoadBitmap(module, toolbarId) == 0) return 0;
    if (resource.ButtonCount() == 0) return 0;
    Destroy();
    auto made = std::make_unique<Bar>(host);
    made->SetDlgCtrlID(static_cast<int>(controlId));
    made->setIconSize(TovQSize(resource.ImageSize()));
    for (unsigned const command : resource.IdVector()) {
        if (command == 0) {
            made->addSeparator();
            continue;
        }
        QAction* const button = made->addAction(TipOf(module, command));
        button->setData(command);
        HWND const target = m_host->GetSafeHwnd();
        QObject::connect(button, &QAction::triggered, made.get(), [target, command] {
            TovPostMessage(target, WM_COMMAND, TovCommandParam(command, BN_CLICKED));
        });
        QSize const size = TovQSize(resource.ButtonSize());
        made->widgetForAction(button)->setFixedHeight(size.height());
        // Without a picture it shows its words.
        HICON const icon = resource.ExtractIcon(command);
        if (icon == nullptr) continue;
        button->setIcon(TovQIcon(icon));
        made->widgetForAction(button)->setFixedWidth(size.width());
    }
    if ((style & WS_DISABLED) != 0) made->setEnabled(false);
    if (QWidget* const leader = m_sheet != nullptr ? TovWidget(FirstButton()) : nullptr) {
        leader->installEventFilter(made.get());
        made->onMove = [this, arrangeFlags] { ArrangeToolbar(arrangeFlags); };
    }
    m_bar = made.release();  // the host's
    ArrangeToolbar(arrangeFlags);
    m_bar->show();
    return 1;
}

// A button of it may be what has asked for it.
void CTovDlgToolBar::Destroy() {
    if (m_bar == nullptr) return;
    static_cast<Bar*>(m_bar.data())->onMove = nullptr;
    m_bar->hide();
    m_bar->setParent(nullptr);
    m_bar->deleteLater();
    m_bar = nullptr;
}

QToolBar* CTovDlgToolBar::ToolBar() const {
    auto* const bar = static_cast<Bar*>(m_bar.data());
    return bar != nullptr && !bar->IsOver() ? bar : nullptr;
}

QAction* CTovDlgToolBar::ButtonOf(unsigned command) const {
    QToolBar const* const bar = ToolBar();
    if (bar == nullptr || command == 0) return nullptr;
    for (QAction* const button : bar->actions()) {
        if (button->data().toUInt() == command) return button;
    }
    return nullptr;
}

int CTovDlgToolBar::EnableButton(unsigned command, int enable) {
    QAction* const button = ButtonOf(command);
    if (button != nullptr) button->setEnabled(enable != 0);
    return button != nullptr;
}

void CTovDlgToolBar::ArrangeToolbar(int arrangeFlags) {
    if (ToolBar() == nullptr) return;
    QSize const size = m_bar->sizeHint() + QSize(0, 2);
    CSize const bar = TovSize(size);
    CPoint const place = m_sheet != nullptr ? PlaceInSheet(bar) : PlaceInDialog(bar, arrangeFlags);
    m_bar->setGeometry(QRect(TovQPoint(place), size));
}

CPoint CTovDlgToolBar::PlaceInDialog(CSize const& bar, int arrangeFlags) const {
    bool const isPage = dynamic_cast<CPropertyPage*>(m_dialog) != nullptr;
    bool const isInDialog = !isPage && dynamic_cast<CDialog*>(m_dialog->GetParent()) != nullptr;
    int const margin = isInDialog ? 0 : CTovDialogMetrics::Margin();
    return ToolBarPlaceInDialog(m_dialog->GetClientRect(), bar, margin, (arrangeFlags & eTop) != 0,
                                (arrangeFlags & eLeft) != 0);
}

// The one that the bar stands beside; none in a sheet without buttons.
HWND CTovDlgToolBar::FirstButton() const {
    for (int const id : {IDCANCEL, IDOK, ID_APPLY_NOW, ID_WIZFINISH, ID_WIZNEXT}) {
        if (HWND const button = m_sheet->GetDlgItem(id)) return button;
    }
    return {};
}

CPoint CTovDlgToolBar::PlaceInSheet(CSize const& bar) const {
    if (QLayout* const layout = TovWidget(m_sheet)->layout()) layout->activate();
    auto const corner = [this](CWnd const* window) -> std::optional<CPoint> {
        if (window == nullptr || !window->GetSafeHwnd()) return {};
        CRect const rect = window->GetWindowRect();
        return m_sheet->ScreenToClient({rect.left, rect.top});
    };
    std::optional<CPoint> const button = corner(CWnd::FromHandlePermanent(FirstButton()));
    std::optional<CPoint> const page = corner(m_sheet->GetPage(0));
    std::optional<int> buttonTop;
    std::optional<int> pageLeft;
    if (button.has_value()) buttonTop = button->y;
    if (page.has_value()) pageLeft = page->x;
    return ToolBarPlaceInSheet(m_sheet->GetClientRect(), bar, CTovDialogMetrics::Margin(), buttonTop,
                               pageLeft);
}

}  // namespace tov
