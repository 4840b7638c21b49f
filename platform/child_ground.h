// The place in a dialog where other dialogs take turns.
#pragma once

#include <tov310/wnd_on.h>

namespace tov {

// Where the placeholder stands in a layout, a widget comes into its cell that has room for each of them; else
// they lie in the host by their rectangles. With Tab they are reached where the placeholder was.
class ChildGround {
 public:
    // Before the placeholder goes.
    ChildGround(QWidget& host, CWnd const& placeholder);

    // Before the window is made.
    void Prepare(CWnd const& child) const;

 private:
    QWidget& m_host;
    QPointer<QWidget> m_ground;  // null without a layout
    QPointer<QWidget> m_before;  // in the order of Tab
};

}  // namespace tov
