// The windows of a form as its user knows them: the widgets between them that only group or scroll are passed
// through.
#pragma once

#include <tov310/window.h>

#include <QAbstractScrollArea>
#include <QWidget>

namespace tov {

// The area that the widget is the viewport of; null for none.
QAbstractScrollArea* AreaOfViewport(QWidget const* widget);

// Whether the widget only groups or scrolls what stands in it.
bool IsTransparent(QWidget const& widget);

// The widget of the window around; null for a top-level one.
QWidget* LogicalParent(QWidget const& widget);

// Those directly in the widget, in the order of the focus.
std::vector<QWidget*> LogicalChildren(QWidget const& widget);

// Whether it shows as soon as the window around does. Pages of a stack count as shown, since the user can
// turn to them.
bool IsShownInParent(QWidget const& widget);

// Turns the stacks around the widget to the pages that it stands on.
void RevealPages(QWidget& widget);

}  // namespace tov
