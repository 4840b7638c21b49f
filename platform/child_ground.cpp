#include "platform/child_ground.h"

#include "platform/focus_order.h"

#include <QGridLayout>
#include <QPointer>

#include <memory>

namespace tov {

ChildGround::ChildGround(QWidget& host, CWnd const& placeholder) : m_host(host) {
    QWidget* const widget = TovWidget(&placeholder);
    if (widget == nullptr) return;
    m_before = widget->previousInFocusChain();
    QWidget* const around = widget->parentWidget();
    if (around == nullptr || around->layout() == nullptr) return;
    auto ground = std::make_unique<QWidget>(around);
    std::unique_ptr<QLayoutItem> const taken(around->layout()->replaceWidget(widget, ground.get()));
    if (taken == nullptr) return;  // it stands there by its rectangle
    ground->setSizePolicy(widget->sizePolicy());
    auto* const layout = std::make_unique<QGridLayout>(ground.get()).release();
    layout->setContentsMargins(0, 0, 0, 0);
    if (around->isVisible()) ground->show();
    m_ground = ground.release();
}

void ChildGround::Prepare(CWnd const& child) const {
    QWidget* const widget = TovWidget(&child);
    if (widget == nullptr) return;
    widget->setParent(m_ground != nullptr ? m_ground.data() : &m_host, Qt::Widget);
    if (m_ground != nullptr) {
        static_cast<QGridLayout&>(*m_ground->layout()).addWidget(widget, 0, 0);
        // The host's code may delete what the cell is in, and the dialog is somebody else's.
        QPointer<QWidget> const host(&m_host);
        QObject::connect(m_ground.data(), &QObject::destroyed, widget,
                         [host, widget] { widget->setParent(host, Qt::Widget); });
    }
    if (m_before != nullptr) PutBehindInFocus(*m_before, *widget);
}

}  // namespace tov
