// The current time format, as the values of time ask for it.
#pragma once

#include <tov310/resources.h>
#include <tov310/types.h>

namespace tov {

// Reads the current format from the profile where that has not been done; any thread may.
void EnsureCurrentTimeFormat();

// A format from a resource module, or from the built-in one where it lacks it; null names the current one.
CString FormatFromResource(HINSTANCE module, unsigned id);

}  // namespace tov
