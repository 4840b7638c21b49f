// Everything of libTov310 and libTov310Core but the numbers of messages, the hooks, and what is made of them:
// whoever derives from the library's classes for Qt gets along without those. They are in messages.h,
// window_messages.h and hooks.h.
#pragma once

#include <tov310/qt_values.h>
#include <tov310/wnd_on.h>
