// The preparation shared by the two transformation drivers.
#include "transform/ox_geog_driver.h"

#include <cmath>
#include <cstddef>

#include "object/ox_object.h"
#include "projection/ox_math.h"
#include "transform/ox_methlist.h"

namespace ox {

namespace {

constexpr double kRadiansPerArcSecond = 4.84813681109536e-6;  // pi / 648000
constexpr double kRatioPerPpm = 1e-6;
constexpr int kRotationSlots[] = {3, 4, 5};
constexpr int kScaleSlot = 6;
constexpr int kTurnSlot = 5;
constexpr int kGridSlot = 15;

struct SystemFacts {
    double a, e2;    // ellipsoid
    double pm;       // prime meridian, radians
    double factor;   // radians per angular unit
    const ox_object *datum;
};

bool facts_of(const ox_object *geogcs, SystemFacts &s) {
    s.datum = ox_geogcs_datum(geogcs);
    const ox_object *spheroid = ox_datum_spheroid(s.datum);
    const double f = ox_spheroid_flattening(spheroid);
    s.a = ox_spheroid_axis(spheroid);
    s.e2 = f * (2.0 - f);
    s.pm = ox_primem_longitude(ox_geogcs_primem(geogcs)) * kDegree;
    s.factor = ox_unit_factor(ox_geogcs_unit(geogcs));
    // Units and meridians that no point can be converted by.
    return s.datum != nullptr && std::isfinite(s.pm) && std::isfinite(s.factor) && s.factor > 0.0;
}

}  // namespace

TransformCall::TransformCall(ox_object *geogtran, bool inverse) {
    Geogtran *g = rec<Geogtran>(geogtran, OX_TAG_GEOGTRAN);
    if (g == nullptr) return;
    SystemFacts s1, s2;
    if (!facts_of(g->geogcs1, s1) || !facts_of(g->geogcs2, s2)) return;
    ellipsoid1[0] = s1.a, ellipsoid1[1] = s1.e2;
    ellipsoid2[0] = s2.a, ellipsoid2[1] = s2.e2;
    const SystemFacts &from = inverse ? s2 : s1, &to = inverse ? s1 : s2;
    units = {from.factor, to.factor, from.pm, to.pm, false};
    routine = inverse ? ox_method_inverse(g->method) : ox_method_forward(g->method);
    units_routine = methlist_units_routine(routine);

    switch (obj_code(g->method)) {
        case kMethLongitudeRotation:
            // The method makes the meridian change itself, between systems
            // on one datum only.
            if (ox_datum_eq(s1.datum, s2.datum) == 0) return;
            values[kTurnSlot] = from.pm - to.pm;
            break;
        case kMethNadcon: case kMethNtv2: case kMethHarn:
            // Grids are loaded on first use; no meridian change.
            if (g->constants == nullptr) ox_geogtran_load_constants(geogtran);
            if (g->constants == nullptr) return;
            grid_name = g->params[kGridSlot] != nullptr ? g->params[kGridSlot]->name : "";
            first = gt_first(g->constants);
            second = gt_second(g->constants);
            third = gt_third(g->constants);
            break;
        default:
            for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) values[i] = ox_parameter_value(g->params[i]);
            for (int slot : kRotationSlots) values[slot] *= kRadiansPerArcSecond;
            values[kScaleSlot] *= kRatioPerPpm;
            shift_in = from.pm != 0.0;
            shift_out = to.pm != 0.0;
            units.shift = shift_in || shift_out;
            break;
    }
    ready = true;
}

int32_t TransformCall::run(int32_t n, double *points, double *heights) const {
    if (!ready) return 0;
    if (n >= 1 && points == nullptr) return 0;
    // The library's own routines take the units into their point loop.
    if (units_routine != nullptr)
        return units_routine(ellipsoid1, ellipsoid2, values, grid_name, n, points, heights, first, second, third,
                             &units);
    // Any other routine: a pass before and a pass after.
    const size_t count = n > 0 ? static_cast<size_t>(n) : 0;
    for (size_t i = 0; i < count; ++i) {
        double &lon = points[2 * i], &lat = points[2 * i + 1];
        lon *= units.in_factor;
        lat *= units.in_factor;
        if (shift_in) lon = ox_delta(lon + units.pm_in);
    }
    const int32_t result = routine(ellipsoid1, ellipsoid2, values, grid_name, n, points, heights, first, second,
                                   third);
    for (size_t i = 0; i < count; ++i) {
        double &lon = points[2 * i], &lat = points[2 * i + 1];
        if (shift_out) lon = ox_delta(lon - units.pm_out);
        lon /= units.out_factor;
        lat /= units.out_factor;
    }
    return result;
}

}  // namespace ox
