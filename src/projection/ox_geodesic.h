// The geodesic routines of ox_geodesic.cpp for the library's own use (the
// ellipsoidal azimuthal equidistant projection): the ellipsoid's constants
// computed once, then the inverse and direct problems by Karney's
// algorithms (C. F. F. Karney, "Algorithms for geodesics", J. Geodesy 87,
// 43-55, 2013).  Angles in radians, azimuths clockwise from north, lengths
// in metres.  The exported ox_geodesic_distance and ox_geodesic_coordinate
// add the argument checks and the sphere's closed formulas.
#pragma once

namespace ox::geodesic {

constexpr int kTerms3 = 5;  // terms of the I3 series

// The largest e2 accepted (flattening about 1/50): beyond, the truncation of
// the series would show at the micrometre level on an Earth-sized body.
constexpr double kMaxE2 = 0.04;

// The ellipsoid and the coefficients of I3 for its third flattening.
struct Ellipsoid {
    double a, b, f, f1, e2, ep2, n;
    double etol2;                  // below this ssig12 a short line is solved outright (eq. 51)
    double a3x[kTerms3 + 1];       // A3 = sum_p a3x[p] eps^p
    double c3x[kTerms3][kTerms3];  // C3_l = sum_p c3x[l-1][p-1] eps^p
};

// The constants of the ellipsoid (a, e2), 0 < e2 <= kMaxE2.
void make_ellipsoid(double a, double e2, Ellipsoid &el);

// The inverse problem: the length s12 of the shortest geodesic from (lon1,
// lat1) to (lon2, lat2) and the sines and cosines of its azimuths at both
// ends (at point 2 the direction of travel).  Finite arguments, |lat| <=
// pi/2.  Newton's method within a bracket, at most kMaxIterations (83)
// evaluations, typically 2 to 4.
void inverse(const Ellipsoid &el, double lon1, double lat1, double lon2, double lat2, double &s12, double &salp1,
             double &calp1, double &salp2, double &calp2);

// The direct problem: the point (lon2 in [-pi, pi], lat2) at distance s12
// from (lon1, lat1) along the geodesic that leaves it at azimuth azi1.
// Finite arguments, |lat1| <= pi/2.
void direct(const Ellipsoid &el, double lon1, double lat1, double azi1, double s12, double &lon2, double &lat2);

}  // namespace ox::geodesic
