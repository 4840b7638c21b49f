#include "sphere.h"

#include <cmath>

namespace survey {

// T. Vincenty, Direct and inverse solutions of geodesics on the ellipsoid with application of nested
// equations, Survey Review 23 (1975) 88-93, equations 14 to 16 with no flattening: sine and cosine of the
// angle are both computed, so that it is as exact for neighbours and antipodes as in between. (The law of
// cosines loses neighbours, and the haversine loses antipodes.)
double CentralAngle(double latitude1, double longitude1, double latitude2, double longitude2) {
    double const sin1 = std::sin(latitude1);
    double const cos1 = std::cos(latitude1);
    double const sin2 = std::sin(latitude2);
    double const cos2 = std::cos(latitude2);
    double const turn = longitude2 - longitude1;
    double const sine = std::hypot(cos2 * std::sin(turn), cos1 * sin2 - sin1 * cos2 * std::cos(turn));
    double const cosine = sin1 * sin2 + cos1 * cos2 * std::cos(turn);
    return std::atan2(sine, cosine);
}

double GreatCircleDistance(tov::CTovValueAngleLat const& latitude1, tov::CTovValueAngleLon const& longitude1,
                           tov::CTovValueAngleLat const& latitude2,
                           tov::CTovValueAngleLon const& longitude2) {
    return meanEarthRadius * CentralAngle(latitude1.GetDouble(), longitude1.GetDouble(),
                                          latitude2.GetDouble(), longitude2.GetDouble());
}

}  // namespace survey
