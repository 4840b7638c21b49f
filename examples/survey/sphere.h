// Distances on the sphere.
#pragma once

#include <tov310/angle.h>

namespace survey {

// Mean radius R1 of the earth in metres, (2a + b) / 3: H. Moritz, Geodetic Reference System 1980, Journal of
// Geodesy 74 (2000) 128-133, adopted by the IUGG; 6371008.7714 there.
inline constexpr double meanEarthRadius = 6371008.8;

// The angle between two places as seen from the centre, in radians from 0 to pi; all arguments in radians.
double CentralAngle(double latitude1, double longitude1, double latitude2, double longitude2);

// Length of the great circle between two places, in metres. The earth is no sphere: on its surface the
// distance may be half a percent more or less.
double GreatCircleDistance(tov::CTovValueAngleLat const& latitude1, tov::CTovValueAngleLon const& longitude1,
                           tov::CTovValueAngleLat const& latitude2, tov::CTovValueAngleLon const& longitude2);

}  // namespace survey
