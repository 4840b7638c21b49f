// The units of the library under names for the command line.
#pragma once

#include <span>
#include <string_view>

namespace survey {

struct Unit {
    std::string_view name;
    long id;
    std::string_view meaning;
    int decimals;  // that suit the places of a table to the second, or distances on the earth
};

std::span<Unit const> AngleUnits();
std::span<Unit const> DistanceUnits();

// The unit of that name, in any case, or with that id; null where there is none.
Unit const* FindUnit(std::span<Unit const> units, std::string_view name);
Unit const* FindUnit(std::span<Unit const> units, long id);

// The library counts decimals of seconds (and of cc) from 5 up: what its Precision is to be for so many.
int PrecisionFor(long unit, int decimals);

}  // namespace survey
