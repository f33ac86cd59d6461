// Support of the projection point loops: the instruction-set level chosen
// from the processor, and storing a projection's constants.
#include "projection/ox_projmath.h"

#include <atomic>

#include "projection/ox_projections.h"

namespace ox {

namespace {

int processor_level() {
#if OX_ISA_VARIANTS
    __builtin_cpu_init();
    if (__builtin_cpu_supports("x86-64-v4")) return 3;
    if (__builtin_cpu_supports("x86-64-v3")) return 2;
    if (__builtin_cpu_supports("x86-64-v2")) return 1;
#endif
    return 0;
}

constexpr int kUndetermined = -1;
std::atomic<int> g_level{kUndetermined};

}  // namespace

int point_loop_level() {
    int level = g_level.load(std::memory_order_relaxed);
    if (level == kUndetermined) {
        level = processor_level();
        g_level.store(level, std::memory_order_relaxed);
    }
    return level;
}

int point_loop_level_limit(int level) {
    const int own = processor_level();
    const int use = level == kExactLevel ? kExactLevel : (level < 0 || level > own ? own : level);
    g_level.store(use, std::memory_order_relaxed);
    return use;
}

namespace {

// The library's routines that can take the driver's units.
struct UnitsPair {
    ox_projection_routine plain;
    UnitsRoutine with_units;
};
constexpr UnitsPair kUnitsRoutines[] = {
    {gauss_kruger_forward, gauss_kruger_forward_units},
    {gauss_kruger_inverse, gauss_kruger_inverse_units},
    {mercator_forward, mercator_forward_units},
    {mercator_inverse, mercator_inverse_units},
    {plate_carree_forward, plate_carree_forward_units},
    {plate_carree_inverse, plate_carree_inverse_units},
    {equidistant_cylindrical_forward, equidistant_cylindrical_forward_units},
    {equidistant_cylindrical_inverse, equidistant_cylindrical_inverse_units},
    {miller_cylindrical_forward, miller_cylindrical_forward_units},
    {miller_cylindrical_inverse, miller_cylindrical_inverse_units},
    {gall_stereographic_forward, gall_stereographic_forward_units},
    {gall_stereographic_inverse, gall_stereographic_inverse_units},
    {cylindrical_eqarea_forward, cylindrical_eqarea_forward_units},
    {cylindrical_eqarea_inverse, cylindrical_eqarea_inverse_units},
    {behrmann_forward, behrmann_forward_units},
    {behrmann_inverse, behrmann_inverse_units},
};

}  // namespace

UnitsRoutine units_routine_of(ox_projection_routine routine) {
    for (const UnitsPair &p : kUnitsRoutines)
        if (p.plain == routine) return p.with_units;
    return nullptr;
}

int32_t store_constants(PcsConstants *c, const double *values, int32_t count) {
    double *out = pcs_alloc(c, count);
    if (out == nullptr) return 0;
    for (int32_t i = 0; i < count; ++i) out[i] = values[i];
    return count;
}

}  // namespace ox
