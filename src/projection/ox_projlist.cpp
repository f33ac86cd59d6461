// The projection registry and the projection object.
#include "projection/ox_projlist.h"

#include <cstddef>
#include <cstring>

#include "object/ox_strings.h"
#include "object/ox_utils.h"
#include "projection/ox_projections.h"

namespace ox {

namespace {


#define OX_ROW(code, name, fwd, inv, hz, hzpcs, hzgr, hzpr, consts) \
    {code, kMavo, kMavoVersion, name, fwd, inv, hz, hzpcs, hzgr, hzpr, consts}
// A row with the world horizon only.
// A row with a geographic horizon and that horizon projected by the row's
// own forward routine.
#define OX_HORIZON_ROW(code, name, fwd, inv, hz, consts) \
    OX_ROW(code, name, fwd, inv, hz, (horizon_projected<hz, fwd>), nullptr, nullptr, consts)
#define OX_WORLD_ROW(code, name, fwd, inv, consts) OX_HORIZON_ROW(code, name, fwd, inv, horizon_world, consts)
// A row whose projection family has no routines yet: it converts nothing.
#define OX_PENDING(code, name) \
    OX_ROW(code, name, proj_unavailable, proj_unavailable, horizon_world, nullptr, nullptr, nullptr, nullptr)

constexpr ProjRow kRows[] = {
    OX_WORLD_ROW(43001, "Plate_Carree", plate_carree_forward, plate_carree_inverse, nullptr),
    OX_WORLD_ROW(43002, "Equidistant_Cylindrical",
                 equidistant_cylindrical_forward, equidistant_cylindrical_inverse, nullptr),
    OX_WORLD_ROW(43003, "Miller_Cylindrical", miller_cylindrical_forward, miller_cylindrical_inverse, nullptr),
    OX_HORIZON_ROW(43004, "Mercator", mercator_forward, mercator_inverse, horizon_mercator, mercator_constants),
    OX_HORIZON_ROW(43005, "Gauss_Kruger", gauss_kruger_forward, gauss_kruger_inverse, horizon_transverse_mercator,
                   gauss_kruger_constants),
    OX_HORIZON_ROW(43006, "Transverse_Mercator", gauss_kruger_forward, gauss_kruger_inverse,
                   horizon_transverse_mercator, gauss_kruger_constants),
    OX_HORIZON_ROW(43056, "Transverse_Mercator_Complex", tm_complex_forward, tm_complex_inverse,
                   horizon_transverse_mercator_complex, tm_complex_constants),
    OX_PENDING(43007, "Albers"),
    OX_PENDING(43008, "Sinusoidal"),
    OX_PENDING(43009, "Mollweide"),
    OX_PENDING(43010, "Eckert_VI"),
    OX_PENDING(43011, "Eckert_V"),
    OX_PENDING(43012, "Eckert_IV"),
    OX_PENDING(43013, "Eckert_III"),
    OX_PENDING(43014, "Eckert_II"),
    OX_PENDING(43015, "Eckert_I"),
    OX_WORLD_ROW(43016, "Gall_Stereographic",
                 gall_stereographic_forward, gall_stereographic_inverse, gall_stereographic_constants),
    OX_WORLD_ROW(43017, "Behrmann", behrmann_forward, behrmann_inverse, behrmann_constants),
    OX_PENDING(43018, "Winkel_I"),
    OX_PENDING(43019, "Winkel_II"),
    OX_PENDING(43020, "Lambert_Conformal_Conic"),
    OX_PENDING(43021, "Polyconic"),
    OX_PENDING(43022, "Quartic_Authalic"),
    OX_PENDING(43023, "Loximuthal"),
    OX_PENDING(43024, "Bonne"),
    OX_PENDING(43036, "Hotine_Oblique_Mercator_Azimuth_Natural_Origin"),
    OX_PENDING(43037, "Hotine_Oblique_Mercator_Azimuth_Center"),
    OX_PENDING(43025, "Hotine_Oblique_Mercator_Two_Point_Natural_Origin"),
    OX_PENDING(43035, "Hotine_Oblique_Mercator_Two_Point_Center"),
    OX_PENDING(43026, "Stereographic"),
    OX_PENDING(43050, "Stereographic_North_Pole"),
    OX_PENDING(43051, "Stereographic_South_Pole"),
    OX_PENDING(43027, "Equidistant_Conic"),
    OX_PENDING(43028, "Cassini"),
    OX_PENDING(43029, "Van_der_Grinten_I"),
    OX_PENDING(43030, "Robinson"),
    OX_PENDING(43057, "Robinson_Legacy"),
    OX_PENDING(43031, "Two_Point_Equidistant"),
    OX_PENDING(43032, "Azimuthal_Equidistant"),
    OX_PENDING(43033, "Lambert_Azimuthal_Equal_Area"),
    OX_WORLD_ROW(43034, "Cylindrical_Equal_Area",
                 cylindrical_eqarea_forward, cylindrical_eqarea_inverse, cylindrical_eqarea_constants),
    OX_PENDING(43038, "Double_Stereographic"),
    OX_PENDING(43039, "Krovak"),
    OX_PENDING(43040, "New_Zealand_Map_Grid"),
    OX_PENDING(43041, "Orthographic"),
    OX_PENDING(43042, "Winkel_Tripel"),
    OX_PENDING(43043, "Aitoff"),
    OX_PENDING(43044, "Hammer_Aitoff"),
    OX_PENDING(43045, "Flat_Polar_Quartic"),
    OX_PENDING(43046, "Craster_Parabolic"),
    OX_PENDING(43047, "Gnomonic"),
    OX_PENDING(43048, "Times"),
    OX_PENDING(43049, "Vertical_Near_Side_Perspective"),
    OX_PENDING(43052, "Fuller"),
    OX_PENDING(43053, "Rectified_Skew_Orthomorphic_Natural_Origin"),
    OX_PENDING(43054, "Rectified_Skew_Orthomorphic_Center"),
    OX_PENDING(43055, "Cube"),
    OX_PENDING(43058, "Local"),
    OX_PENDING(43059, "Goode_Homolosine"),
};
#undef OX_PENDING
#undef OX_WORLD_ROW
#undef OX_ROW
constexpr int kRowCount = sizeof kRows / sizeof kRows[0];
static_assert(kRowCount == 59, "the registry has 59 projections");

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
    for (const ProjRow &r : kRows)
        if (name_eq(name, r.name)) return &r;
    return nullptr;
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
    obj_set_code(h, r.code, r.authority_name, r.authority_version);
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

const ProjRow *projlist_rows(int *count) {
    if (count != nullptr) *count = kRowCount;
    return kRows;
}

const ProjRow *projlist_find_by_name(const char *name) {
    for (const Alias &a : kAliases)
        if (name_eq(name, a.alias)) {
            name = a.name;
            break;
        }
    return find_exact(name);
}

const ProjRow *projlist_find_by_code(int32_t code) {
    for (const ProjRow &r : kRows)
        if (r.code == code) return &r;
    return nullptr;
}

void projlist_set_code(ox_object *projection) {
    if (!is_type(projection, OX_TAG_PROJECTION)) return;
    if (const ProjRow *r = find_exact(projection->name))
        obj_set_code(projection, r->code, r->authority_name, r->authority_version);
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
