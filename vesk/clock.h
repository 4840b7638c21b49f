// Time as the platform keeps it.
#pragma once

namespace tov {

// Reads the time zone of the process into the run-time library.
void VeskReadTimeZone();

}  // namespace tov
