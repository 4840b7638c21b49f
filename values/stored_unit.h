// What values share about units: which have fields, how they round, and which the profile remembers.
#pragma once

#include <tov310/unit_settings.h>

namespace tov {

// Units whose text is cut into whole units, minutes and seconds.
constexpr bool HasFields(long unit) {
    return unit == TOV_UNIT_DMS || unit == TOV_UNIT_GON;
}

// The decimals to which values are rounded: as in printing, a precision below 1 means 6.
inline int RoundingPrecision(CTovUnitSettings& settings) {
    int const precision = settings.Precision();
    return precision < 1 ? 6 : precision;
}

struct StoredUnit {
    char const* section;
    char const* numberEntry;  // the unit id; what is read
    char const* textEntry;    // its abbreviation, for people who read the file
    int const* units;         // the ids that can be stored, ending with -1

    // The stored unit; -1 when there is none or it is not one of the units.
    long Read() const;

    // Gives the settings the stored unit, or stores the given one and gives it to them when none is stored or
    // it is excluded. A unit that cannot be stored or is excluded does nothing.
    void Choose(CTovUnitSettings& settings, long unit, int const* excluded) const;
};

StoredUnit StoredAngleUnit(char const* section);
StoredUnit StoredDistanceUnit();

}  // namespace tov
