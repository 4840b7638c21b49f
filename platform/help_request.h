// What a user wants help about.
#pragma once

#include <tov310/dialog_extensions.h>

#include <QPoint>
#include <QWidget>

namespace tov {

// About a widget in the host, or the host itself (also null), pointed to at a place of the screen. The topic
// is that of the widget or of the nearest one around it that has one.
HELPINFO HelpRequest(QWidget* about, QWidget const& host, QPoint const& place);

}  // namespace tov
