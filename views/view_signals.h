// What the classes of views on the screen do alike.
#pragma once

#include <tov310/qt_values.h>
#include <tov310/view_extensions.h>

#include <QAbstractScrollArea>
#include <QScrollBar>

namespace tov {

template <class View>
void EmitViewNotice(View& view, eTovViewNotice notice) {
    switch (notice) {
        case eTovViewNotice::kInitialUpdate:
            Q_EMIT view.initialUpdated();
            break;
        case eTovViewNotice::kDocument:
            Q_EMIT view.documentChanged();
            break;
        case eTovViewNotice::kActivation:
            Q_EMIT view.activationChanged(view.IsViewActive() != 0);
            break;
    }
}

inline CPoint ScrolledBy(QAbstractScrollArea const& area) {
    return {area.horizontalScrollBar()->value(), area.verticalScrollBar()->value()};
}

}  // namespace tov
