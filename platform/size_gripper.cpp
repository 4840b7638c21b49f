#include <tov310/size_gripper.h>

#include <tov310/hooks.h>
#include <tov310/window_messages.h>

#include <QEvent>

namespace tov {

// Sees the parent's size change.
class CTovSizeGripper::CSubclassParent final : public CTovSubclassWnd {
 public:
    explicit CSubclassParent(CTovSizeGripper& gripper) : m_gripper(gripper) {}

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SIZE) m_gripper.SnapToBottomRight();
        return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }

 private:
    CTovSizeGripper& m_gripper;
};

CTovSizeGripper::CTovSizeGripper(QWidget* parent)
    : CWndOn(parent), m_SubclassParent(std::make_unique<CSubclassParent>(*this)) {
    FollowParent();
}

CTovSizeGripper::~CTovSizeGripper() = default;

void CTovSizeGripper::SnapToBottomRight() {
    QWidget const* const parent = parentWidget();
    if (parent == nullptr) return;
    QSize const size = sizeHint();
    setGeometry(QRect(parent->rect().bottomRight() - QPoint(size.width() - 1, size.height() - 1), size));
    raise();
}

void CTovSizeGripper::FollowParent() {
    m_SubclassParent->UnhookWindow();
    m_SubclassParent->HookWindow(TovHandle(parentWidget()));
    SnapToBottomRight();
}

bool CTovSizeGripper::event(QEvent* event) {
    bool const handled = CWndOn::event(event);
    if (event->type() == QEvent::ParentChange) FollowParent();
    return handled;
}

}  // namespace tov
