#include "units.h"

#include "text.h"

#include <tov310/unit_settings.h>

#include <algorithm>
#include <string>

namespace survey {
namespace {

// Named by the abbreviation that the library prints, where it prints one and only for that unit.
constexpr Unit angleUnits[] = {
    {"dec", tov::TOV_UNIT_DEGREES, "degrees", 5},
    {"dms", tov::TOV_UNIT_DMS, "degrees, minutes and seconds", 1},
    {"deg", tov::TOV_UNIT_PACKED_DMS, "the same as one number, D.MMSS", 5},
    {"grad", tov::TOV_UNIT_GRADS, "grads, 400 to the circle", 5},
    {"gonc", tov::TOV_UNIT_GON, "gon, c and cc", 1},
    {"gon", tov::TOV_UNIT_PACKED_GON, "the same as one number", 5},
    {"rev", tov::TOV_UNIT_REVOLUTIONS, "revolutions", 7},
    {"rad", tov::TOV_UNIT_RADIANS, "radians", 6},
};

constexpr Unit distanceUnits[] = {
    {"m", tov::TOV_UNIT_METRES, "metres", 1},
    {"fts", tov::TOV_UNIT_US_SURVEY_FEET, "US survey feet, 1200/3937 m", 1},
    {"fti", tov::TOV_UNIT_INTERNATIONAL_FEET, "international feet, 0.3048 m", 1},
};

}  // namespace

std::span<Unit const> AngleUnits() {
    return angleUnits;
}

std::span<Unit const> DistanceUnits() {
    return distanceUnits;
}

Unit const* FindUnit(std::span<Unit const> units, std::string_view name) {
    auto const found = std::ranges::find_if(units, [wanted = Folded(name)](Unit const& unit) {
        return wanted == unit.name || wanted == std::to_string(unit.id);
    });
    return found != units.end() ? &*found : nullptr;
}

Unit const* FindUnit(std::span<Unit const> units, long id) {
    auto const found = std::ranges::find(units, id, &Unit::id);
    return found != units.end() ? &*found : nullptr;
}

int PrecisionFor(long unit, int decimals) {
    return unit == tov::TOV_UNIT_DMS || unit == tov::TOV_UNIT_GON ? decimals + 5 : decimals;
}

}  // namespace survey
