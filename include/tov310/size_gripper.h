// The corner by which a window is made larger.
#pragma once

#include <tov310/export.h>
#include <tov310/window.h>
#include <tov310/wnd_on.h>

#include <QSizeGrip>

#include <memory>

namespace tov {

// Stands at the bottom right of its parent, above what stands there, and stays in that corner whatever size
// the parent takes. Pulling it changes the size of the top-level window; while that fills the screen the
// gripper is not shown.
class TOV_UI_API CTovSizeGripper : public CWndOn<QSizeGrip, CWnd> {
    Q_OBJECT
    TOV_DYNAMIC(CTovSizeGripper, CWnd)
 public:
    explicit CTovSizeGripper(QWidget* parent);
    ~CTovSizeGripper() override;

    // Goes to the corner, in its usual size. Nothing to do without a parent.
    void SnapToBottomRight();

 protected:
    bool event(QEvent* event) override;

 private:
    class CSubclassParent;
    void FollowParent();

    std::unique_ptr<CSubclassParent> m_SubclassParent;
};

}  // namespace tov
