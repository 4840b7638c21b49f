#include <tov310/dlg_tool_bar.h>

#include "views/tool_bar_place.h"

#include <tov310/dialog.h>
#include <tov310/dialog_metrics.h>
#include <tov310/dib_image.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/toolbar_bmp.h>
#include <tov310/wnd_on.h>

#include <QAction>
#include <QLayout>

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

 protected:
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

CTovDlgToolBar::CTovDlgToolBar(CDialog* dialog) : m_dialog(dialog) {}

CTovDlgToolBar::~CTovDlgToolBar() {
    CTovDlgToolBar::Destroy();
}

int CTovDlgToolBar::Create(HINSTANCE module, unsigned toolbarId, unsigned controlId, int arrangeFlags,
                           unsigned long style) {
    QWidget* const host = m_dialog != nullptr && m_dialog->GetSafeHwnd() ? TovWidget(m_dialog) : nullptr;
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
        if (HICON const icon = resource.ExtractIcon(command)) button->setIcon(TovQIcon(icon));
        made->widgetForAction(button)->setFixedSize(TovQSize(resource.ButtonSize()));
        HWND const target = m_dialog->GetSafeHwnd();
        QObject::connect(button, &QAction::triggered, made.get(), [target, command] {
            TovPostMessage(target, WM_COMMAND, TovCommandParam(command, BN_CLICKED));
        });
    }
    if ((style & WS_DISABLED) != 0) made->setEnabled(false);
    m_bar = made.release();  // the dialog's
    ArrangeToolbar(arrangeFlags);
    m_bar->show();
    return 1;
}

// A button of it may be what has asked for it.
void CTovDlgToolBar::Destroy() {
    if (m_bar == nullptr) return;
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
    CPoint const place = PlaceOf(TovSize(size), arrangeFlags);
    m_bar->setGeometry(QRect(TovQPoint(place), size));
}

CPoint CTovDlgToolBar::PlaceOf(CSize const& bar, int arrangeFlags) const {
    bool const isInDialog = dynamic_cast<CDialog*>(m_dialog->GetParent()) != nullptr;
    int const margin = isInDialog ? 0 : CTovDialogMetrics::Margin();
    return ToolBarPlaceInDialog(m_dialog->GetClientRect(), bar, margin, (arrangeFlags & eTop) != 0,
                                (arrangeFlags & eLeft) != 0);
}

}  // namespace tov
