#include "platform/announcer.h"

#include <tov310/qt_values.h>
#include <tov310/wnd_on.h>

#include <QAccessible>
#include <QAccessibleWidget>

#include <memory>

namespace tov {
namespace {

// A tool tip is one to a screen reader too.
class AccessibleTip final : public QAccessibleWidget {
 public:
    explicit AccessibleTip(QWidget* tip) : QAccessibleWidget(tip, QAccessible::ToolTip) {}
    ~AccessibleTip() override = default;
};

QAccessibleInterface* MakeAccessibleTip(QString const& className, QObject* object) {
    if (className != QLatin1String("tov::CTovWndToolTip")) return nullptr;
    return std::make_unique<AccessibleTip>(qobject_cast<QWidget*>(object)).release();  // the toolkit's
}

}  // namespace

Announcer::Announcer() {
    QAccessible::installFactory(MakeAccessibleTip);
}

void Announcer::Announce(HWND window, char const* text) {
    QWidget* const widget = TovWidget(window);
    if (widget == nullptr || text == nullptr || *text == '\0') return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent announcement(widget, TovQString(text));
    QAccessible::updateAccessibility(&announcement);
#else
    // What came before announcements: a name that has changed, of an object that appears and calls.
    widget->setAccessibleName(TovQString(text));
    for (QAccessible::Event const kind : {QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent event(widget, kind);
        QAccessible::updateAccessibility(&event);
    }
#endif
}

}  // namespace tov
