// Packed angles: an angle with its minutes and seconds in one double.
//
// A packed sexagesimal number holds the degrees before the point and behind it two digits of minutes, two of
// seconds and the decimals of the seconds: 12.3456789 is 12 degrees 34 minutes 56.789 seconds. A packed gon
// number is the plain number of gon: its two digit pairs behind the point are c (hundredths) and cc
// (ten-thousandths).
//
// Rounding is half away from zero, and exact: it is the packed double itself that is rounded, not a product
// of it. Up to 19 digits behind the point of the packed number are told apart. A zero result is never
// negative. What is not finite passes through the conversions and splits into zeros.
#pragma once

#include <tov310/export.h>

namespace tov {

// Packed degrees, minutes and seconds to radians. The digits of degrees and minutes are those of the number
// rounded to 10 decimals, and the seconds are the exact rest, so that the binary value 1.1499999999999999 of
// "1.15" is 1 degree 15 minutes.
TOV_CORE_API double VeskPackedDmsToRad(double packed);

// Radians to packed degrees, minutes and seconds with so many digits behind the point of the packed number;
// -1 does not round. Fewer than 4 digits round the angle to 10 seconds (3), a minute (2), 10 minutes (1) or a
// degree (0). What rounds up to 60 is carried. With limit the result stays below a circle.
TOV_CORE_API double VeskRadToPackedDms(double radians, int decimals, unsigned long limit);

// The same for gon; decimals round the gon.
TOV_CORE_API double VeskPackedGonToRad(double gon);
TOV_CORE_API double VeskRadToPackedGon(double radians, int decimals, unsigned long limit);

// Cuts a packed number into sign (1 or -1) and magnitudes. The seconds are rounded to so many decimals, 60 is
// carried into the minutes and these into the degrees; decimals -1 do not round. With limit the degrees stay
// below 360. Degrees that fit no int are limited to the largest.
TOV_CORE_API void VeskSplitPackedDms(double packed, int& sign, int& degrees, int& minutes, double& seconds,
                                     int decimals, int limit);

// The same for gon, c and cc, with carries at 100 and a circle of 400.
TOV_CORE_API void VeskSplitPackedGon(double packed, int& sign, int& gon, int& c, double& cc, int decimals,
                                     int limit);

// Inverse of the splits. Minutes and seconds may be of any size and are carried.
TOV_CORE_API double VeskJoinPackedDms(int sign, int degrees, int minutes, double seconds);
TOV_CORE_API double VeskJoinPackedGon(int sign, int gon, int c, double cc);

// Decimal degrees: the signed sum of degrees, minutes / 60 and seconds / 3600.
TOV_CORE_API double VeskJoinDecimalDeg(int sign, int degrees, int minutes, double seconds);

}  // namespace tov
