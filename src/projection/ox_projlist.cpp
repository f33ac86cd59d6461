// The projection registry and the projection object.
#include "projection/ox_projlist.h"

#include <cstddef>
#include <cstring>

#include "object/ox_strings.h"
#include "object/ox_utils.h"
#include "object/ox_registry.h"
#include "projection/ox_horizon.h"

namespace ox {

// The projections in the registry's stored order, one line each: X(D) for a
// projection defined by D (its row kProjectionD is made in D's own file),
// PENDING(code, name, parameters) for a registered projection whose routines
// are not written yet (it converts nothing).
#define OX_PROJECTION_LIST(X, PENDING)                                                  \
    X(PlateCarree)                                                                      \
    X(EquidistantCylindrical)                                                           \
    X(MillerCylindrical)                                                                \
    X(Mercator)                                                                         \
    X(GaussKruger)                                                                      \
    X(TransverseMercator)                                                               \
    X(TransverseMercatorComplex)                                                        \
    X(Albers)                                                                           \
    X(Sinusoidal)                                                                       \
    X(Mollweide)                                                                        \
    X(EckertVI)                                                                         \
    X(EckertV)                                                                          \
    X(EckertIV)                                                                         \
    X(EckertIII)                                                                        \
    X(EckertII)                                                                         \
    X(EckertI)                                                                          \
    X(GallStereographic)                                                                \
    X(Behrmann)                                                                         \
    X(WinkelI)                                                                          \
    X(WinkelII)                                                                         \
    X(LambertConformalConic)                                                            \
    X(Polyconic)                                                                        \
    X(QuarticAuthalic)                                                                  \
    X(Loximuthal)                                                                       \
    X(Bonne)                                                                            \
    X(HotineAzimuthNaturalOrigin)                                                       \
    X(HotineAzimuthCenter)                                                              \
    X(HotineTwoPointNaturalOrigin)                                                      \
    X(HotineTwoPointCenter)                                                             \
    X(Stereographic)                                                                    \
    X(StereographicNorthPole)                                                           \
    X(StereographicSouthPole)                                                           \
    X(EquidistantConic)                                                                 \
    X(Cassini)                                                                          \
    X(VanDerGrinten)                                                                    \
    X(Robinson)                                                                         \
    X(RobinsonLegacy)                                                                   \
    X(TwoPointEquidistant)                                                              \
    X(AzimuthalEquidistant)                                                             \
    X(LambertAzimuthalEqualArea)                                                        \
    X(CylindricalEqualArea)                                                             \
    X(DoubleStereographic)                                                              \
    X(Krovak)                                                                           \
    X(NewZealandMapGrid)                                                                \
    X(Orthographic)                                                                     \
    X(WinkelTripel)                                                                     \
    X(Aitoff)                                                                           \
    X(HammerAitoff)                                                                     \
    X(FlatPolarQuartic)                                                                 \
    X(CrasterParabolic)                                                                 \
    X(Gnomonic)                                                                         \
    X(Times)                                                                            \
    X(VerticalPerspective)                                                              \
    X(FullerProjection)                                                                 \
    X(RectifiedSkewNaturalOrigin)                                                       \
    X(RectifiedSkewCenter)                                                              \
    X(CubeProjection)                                                                   \
    X(Local)                                                                            \
    X(GoodeHomolosine)

namespace {

#define OX_DECLARE(D) extern const ProjRow kProjection##D;
#define OX_SKIP(code, name, parameters)
}  // namespace
OX_PROJECTION_LIST(OX_DECLARE, OX_SKIP)
namespace {

#define OX_PENDING_ROW(code, name, parameters)                                                         \
    constexpr ProjRow kPending##code = {{code, kMavo, kMavoVersion, name}, proj_unavailable, proj_unavailable, \
                                        horizon_world, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,  \
                                        parameter_sets::parameters, Family::kOther, Preserves::kNothing};
#define OX_NOTHING(D)
OX_PROJECTION_LIST(OX_NOTHING, OX_PENDING_ROW)

#define OX_ROW_POINTER(D) &kProjection##D,
#define OX_PENDING_POINTER(code, name, parameters) &kPending##code,
constexpr const ProjRow *kRows[] = {OX_PROJECTION_LIST(OX_ROW_POINTER, OX_PENDING_POINTER)};
static_assert(sizeof kRows / sizeof kRows[0] == 59, "the registry has 59 projections");
#undef OX_DECLARE
#undef OX_SKIP
#undef OX_PENDING_ROW
#undef OX_NOTHING
#undef OX_ROW_POINTER
#undef OX_PENDING_POINTER

struct Alias {
    const char *alias;
    const char *name;
};
constexpr Alias kAliases[] = {
    {"Albers_Equal_Area_Conic", "Albers"},
    {"Albers_Conical_Equal_Area", "Albers"},
    {"Gall", "Gall_Stereographic"},
    {"Hotine_Oblique_Mercator", "Hotine_Oblique_Mercator_Azimuth_Natural_Origin"},
    {"Lambert_Conformal_Conic_1SP", "Lambert_Conformal_Conic"},
    {"Lambert_Conformal_Conic_2SP", "Lambert_Conformal_Conic"},
};

const ProjRow *find_exact(const char *name) {
    return registry_find_name(std::span<const ProjRow *const>(kRows), name, NameMatch::kLoose);
}

Projection *projection_rec(const ox_object *h) {
    return is_type(h, OX_TAG_PROJECTION) ? reinterpret_cast<Projection *>(const_cast<ox_object *>(h)) : nullptr;
}

ox_object *make_from_row(const ProjRow &r, int32_t status) {
    const Fn fn[kProjSlots] = {
        reinterpret_cast<Fn>(r.forward),     reinterpret_cast<Fn>(r.inverse),
        reinterpret_cast<Fn>(r.horizon),     reinterpret_cast<Fn>(r.horizon_pcs),
        reinterpret_cast<Fn>(r.horizon_gcs_raster), reinterpret_cast<Fn>(r.horizon_pcs_raster),
        reinterpret_cast<Fn>(r.constants),
    };
    ox_object *h = projection_make(r.name, fn);
    if (h == nullptr) return nullptr;
    h->status = status;
    registry_stamp(h, r);
    return h;
}

constexpr FieldDesc kFields[] = {fd_fns(offsetof(Projection, fn), kProjSlots, 3)};

ox_object *build(const Parts &p) {
    return p.have_fns ? projection_make(p.name, p.fn) : projlist_new_by_name(p.name);
}

}  // namespace

const TypeDesc kProjectionDesc = {OX_TAG_PROJECTION, "PROJECTION", sizeof(Projection), kFields, 1, 2, true,
                                  true, nullptr, build, nullptr, nullptr, nullptr};

// Copies every point unchanged.
OX_PROJECTION_ROUTINE(proj_identity) {
    (void)spheroid;
    (void)parameters;
    (void)points;
    (void)constants_header;
    (void)constants_values;
    return n > 0 ? n : 0;
}

OX_PROJECTION_ROUTINE(proj_unavailable) {
    (void)spheroid;
    (void)parameters;
    (void)constants_header;
    (void)constants_values;
    const double nan = failure_nan();
    for (int32_t i = 0; i < 2 * n; ++i) points[i] = nan;
    return 0;
}

std::span<const ProjRow *const> projlist_rows() { return kRows; }

const ProjRow *projlist_find_by_name(const char *name) {
    for (const Alias &a : kAliases)
        if (name_eq(name, a.alias)) {
            name = a.name;
            break;
        }
    return find_exact(name);
}

const ProjRow *projlist_find_by_code(int32_t code) {
    return registry_find_code(std::span<const ProjRow *const>(kRows), code);
}

UnitsRoutine projlist_units_routine(ox_projection_routine routine) {
    if (routine == nullptr) return nullptr;
    for (const ProjRow *r : kRows) {
        if (r->forward == routine) return r->forward_units;
        if (r->inverse == routine) return r->inverse_units;
    }
    return nullptr;
}

void projlist_set_code(ox_object *projection) {
    if (!is_type(projection, OX_TAG_PROJECTION)) return;
    if (const ProjRow *r = find_exact(projection->name))
        registry_stamp(projection, *r);
}

ox_object *projlist_new_by_code(int32_t code) {
    const ProjRow *r = projlist_find_by_code(code);
    return r ? make_from_row(*r, OX_STATUS_CATALOGUE) : nullptr;
}

ox_object *projlist_new_by_name(const char *name) {
    const ProjRow *r = projlist_find_by_name(name);
    return r ? make_from_row(*r, OX_STATUS_STRING) : nullptr;
}

ox_object *projection_make(const char *name, const Fn fn[kProjSlots]) {
    Projection *p = alloc_rec<Projection>(kProjectionDesc, name);
    if (p == nullptr) return nullptr;
    std::memcpy(p->fn, fn, sizeof p->fn);
    if (p->fn[kProjHorizon] == nullptr) p->fn[kProjHorizon] = reinterpret_cast<Fn>(horizon_world);
    projlist_set_code(&p->h);
    return &p->h;
}

ConstantsRoutine projection_constants(const ox_object *projection) {
    const Projection *p = projection_rec(projection);
    return p ? reinterpret_cast<ConstantsRoutine>(p->fn[kProjConstants]) : nullptr;
}

}  // namespace ox

OX_DEFINE_COMMON_OPS(projection, OX_TAG_PROJECTION, ox::kProjectionDesc)

extern "C" {

OX_API ox_object *ox_projection_new(const char *name, ox_projection_routine forward, ox_projection_routine inverse,
                                    ox_horizon_routine horizon) {
    if (name == nullptr) return nullptr;
    ox::Fn fn[ox::kProjSlots] = {};
    if (forward == nullptr || inverse == nullptr) {
        const ox::ProjRow *r = ox::projlist_find_by_name(name);
        if (r == nullptr) return nullptr;
        forward = r->forward;
        inverse = r->inverse;
    }
    fn[ox::kProjForward] = reinterpret_cast<ox::Fn>(forward);
    fn[ox::kProjInverse] = reinterpret_cast<ox::Fn>(inverse);
    fn[ox::kProjHorizon] = reinterpret_cast<ox::Fn>(horizon);
    return ox::projection_make(name, fn);
}

OX_API ox_projection_routine ox_projection_forward(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_projection_routine>(p->fn[ox::kProjForward]) : ox::proj_identity;
}

OX_API ox_projection_routine ox_projection_inverse(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_projection_routine>(p->fn[ox::kProjInverse]) : ox::proj_identity;
}

OX_API ox_horizon_routine ox_projection_horizon(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_horizon_routine>(p->fn[ox::kProjHorizon]) : ox::horizon_world;
}

OX_API ox_horizon_routine ox_projection_horizon_pcs(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_horizon_routine>(p->fn[ox::kProjHorizonPcs]) : nullptr;
}

OX_API ox_horizon_routine ox_projection_horizon_gcs_raster(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_horizon_routine>(p->fn[ox::kProjHorizonGcsRaster]) : nullptr;
}

OX_API ox_horizon_routine ox_projection_horizon_pcs_raster(const ox_object *projection) {
    const ox::Projection *p = ox::projection_rec(projection);
    return p ? reinterpret_cast<ox_horizon_routine>(p->fn[ox::kProjHorizonPcsRaster]) : nullptr;
}

}  // extern "C"
