// Dialogs of resource modules as widgets, in any widget of a host: a dialog, a page, a form.
#pragma once

#include <tov310/dialog_template.h>
#include <tov310/wnd_on.h>

#include <QFont>
#include <QRect>
#include <QWidget>

namespace tov {

// Makes the controls of the template in the host, in the order of the Tab key, and gives the host the
// template's title, font and size; a top-level host without WS_THICKFRAME cannot be resized then. Their ids
// are those of TovWnd(host)->GetDlgItem. Answers 1, or 0 with a host as it was: a class is unknown; the fault
// handler and `message` tell which. Texts that do not fit are told to the fault handler and shown.
TOV_UI_API int TovFillDialog(QWidget* host, CTovDialogTemplate const& dialog, CString* message = nullptr);

// A rectangle of dialog units in pixels, by the font of the dialog. Edges that meet in the one meet in the
// other.
TOV_UI_API QRect TovMapDialogRect(QFont const& font, CRect const& rect);

}  // namespace tov
