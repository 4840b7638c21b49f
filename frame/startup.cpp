// What happens when the library is loaded.
#include "vesk/clock.h"

namespace tov {
namespace {

// Values of time may be used by the first line of a host's main, so the zone of the process is read here.
[[maybe_unused]] bool const zoneRead = (VeskReadTimeZone(), true);

}  // namespace
}  // namespace tov
