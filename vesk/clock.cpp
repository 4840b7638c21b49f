#include "vesk/clock.h"

#include <ctime>

namespace tov {

void VeskReadTimeZone() {
    tzset();
}

}  // namespace tov
