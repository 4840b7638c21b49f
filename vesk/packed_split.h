// The exact split of a packed angle into whole numbers, from which both the numeric split and the printed
// text are made.
#pragma once

#include <cstdint>

namespace tov {

// How a circle is divided.
struct AngleSystem {
    unsigned circle;   // in whole units
    unsigned minutes;  // in a whole unit
    unsigned seconds;  // in a minute
};

inline constexpr AngleSystem sexagesimal{360, 60, 60};
inline constexpr AngleSystem centesimal{400, 100, 100};

// More decimals of the seconds are not told apart; a packed double has fewer in any case.
inline constexpr int maxSplitDecimals = 15;

inline constexpr std::uint64_t powersOfTen[] = {1,
                                                10,
                                                100,
                                                1000,
                                                10000,
                                                100000,
                                                1000000,
                                                10000000,
                                                100000000,
                                                1000000000,
                                                10000000000,
                                                100000000000,
                                                1000000000000,
                                                10000000000000,
                                                100000000000000,
                                                1000000000000000,
                                                10000000000000000,
                                                100000000000000000,
                                                1000000000000000000,
                                                10000000000000000000U};

struct PackedParts {
    bool negative = false;
    int whole = 0;              // degrees or gon
    int minutes = 0;            // or c
    std::uint64_t seconds = 0;  // or cc, in units of the last decimal
    int decimals = 0;           // of the seconds, 0 to maxSplitDecimals
};

// Rounds the packed number once, half away from zero, to the decimals (which are limited to their range),
// then cuts and carries. With limit the whole units stay below the circle.
PackedParts SplitPacked(double packed, int decimals, bool limit, AngleSystem const& system);

}  // namespace tov
