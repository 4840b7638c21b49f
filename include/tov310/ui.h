// Everything that libTov310 adds to libTov310Core: classes for Qt. Numbers of messages and hooks are not among it,
// since whoever derives from these classes gets along without; core.h has them with all the rest.
#pragma once

#include <tov310/accelerator_keys.h>
#include <tov310/button_event.h>
#include <tov310/dialog_builder.h>
#include <tov310/dialog_progress.h>
#include <tov310/dib_image.h>
#include <tov310/dlg_tool_bar.h>
#include <tov310/edit.h>
#include <tov310/form_guard.h>
#include <tov310/header_ctrl.h>
#include <tov310/input_control_container.h>
#include <tov310/list_ctrl.h>
#include <tov310/number_edits.h>
#include <tov310/painter_dc.h>
#include <tov310/prop_page.h>
#include <tov310/prop_sheet.h>
#include <tov310/qt_values.h>
#include <tov310/size_gripper.h>
#include <tov310/string_edits.h>
#include <tov310/switched_edit.h>
#include <tov310/tool_bar.h>
#include <tov310/tov_dialog.h>
#include <tov310/tov_form_view.h>
#include <tov310/tov_form_view_cv.h>
#include <tov310/tov_frame.h>
#include <tov310/tov_html_view.h>
#include <tov310/tov_printer.h>
#include <tov310/tov_scroll_view.h>
#include <tov310/tov_view.h>
#include <tov310/value_edits.h>
#include <tov310/wnd_on.h>
#include <tov310/wnd_splash.h>
#include <tov310/wnd_tool_tip.h>
