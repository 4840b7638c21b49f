// Everything of libTov310Core.
#pragma once

#include <tov310/angle.h>
#include <tov310/application.h>
#include <tov310/base64.h>
#include <tov310/cmd_ui.h>
#include <tov310/compare.h>
#include <tov310/distance.h>
#include <tov310/export.h>
#include <tov310/format.h>
#include <tov310/geometry.h>
#include <tov310/menu.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/object.h>
#include <tov310/packed_angle.h>
#include <tov310/path.h>
#include <tov310/plugin.h>
#include <tov310/profile.h>
#include <tov310/requirements.h>
#include <tov310/resources.h>
#include <tov310/smart_ptr.h>
#include <tov310/system_error.h>
#include <tov310/types.h>
#include <tov310/unit_settings.h>
#include <tov310/value.h>
#include <tov310/window.h>
