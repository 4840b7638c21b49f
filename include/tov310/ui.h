// Everything of libTov310 and libTov310Core but the numbers of messages, the hooks, and what is made of them:
// whoever derives from the library's classes for Qt gets along without those. They are in messages.h,
// window_messages.h and hooks.h.
#pragma once

#include <tov310/accelerator_keys.h>
#include <tov310/button_event.h>
#include <tov310/dialog_builder.h>
#include <tov310/dib_image.h>
#include <tov310/edit.h>
#include <tov310/number_edits.h>
#include <tov310/painter_dc.h>
#include <tov310/qt_values.h>
#include <tov310/size_gripper.h>
#include <tov310/string_edits.h>
#include <tov310/switched_edit.h>
#include <tov310/tool_bar.h>
#include <tov310/tov_dialog.h>
#include <tov310/tov_frame.h>
#include <tov310/value_edits.h>
#include <tov310/wnd_on.h>
#include <tov310/wnd_splash.h>
#include <tov310/wnd_tool_tip.h>
