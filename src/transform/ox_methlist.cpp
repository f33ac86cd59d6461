// The transformation method registry, the method object, the default
// parameters of a method and the grid constants of a transformation.
#include "transform/ox_methlist.h"

#include <cstddef>
#include <cstring>

#include "object/ox_object.h"
#include "object/ox_registry.h"
#include "projection/ox_parmlist.h"
#include "transform/ox_methods.h"

namespace ox {

namespace {


constexpr MethRow kRows[] = {
    {{kMethLongitudeRotation, kEpsg, kEpsgVersion, "Longitude_Rotation"}, method_unavailable, method_unavailable,
     nullptr},
    {{kMethBursaWolf, kMavo, kMavoVersion, "Bursa_Wolf"}, method_unavailable, method_unavailable, nullptr},
    {{kMethPositionVector, kEpsg, kEpsgVersion, "Position_Vector"}, method_unavailable, method_unavailable, nullptr},
    {{kMethCoordinateFrame, kEpsg, kEpsgVersion, "Coordinate_Frame"}, method_unavailable, method_unavailable, nullptr},
    {{kMethGeocentricTranslation, kEpsg, kEpsgVersion, "Geocentric_Translation"}, method_unavailable,
     method_unavailable, nullptr},
    {{kMethMolodensky, kEpsg, kEpsgVersion, "Molodensky"}, method_unavailable, method_unavailable, nullptr},
    {{kMethMolodenskyAbridged, kEpsg, kEpsgVersion, "Molodensky_Abridged"}, method_unavailable, method_unavailable,
     nullptr},
    {{kMethMolodenskyBadekas, kEpsg, kEpsgVersion, "Molodensky_Badekas"}, method_unavailable, method_unavailable,
     nullptr},
    {{kMethNadcon, kEpsg, kEpsgVersion, "NADCON"}, method_unavailable, method_unavailable, loader_unavailable},
    {{kMethHarn, kMavo, kMavoVersion, "HARN"}, method_unavailable, method_unavailable, loader_unavailable},
    {{kMethNtv2, kEpsg, kEpsgVersion, "NTv2"}, method_unavailable, method_unavailable, loader_unavailable},
};

const Method *method_rec(const ox_object *h) { return rec<Method>(h, OX_TAG_METHOD); }

// The method constructor with all three routine slots; code and authority
// from the row of the same name when there is one.
ox_object *method_make(const char *name, const Fn fn[kMethSlots]) {
    Method *m = alloc_rec<Method>(kMethodDesc, name);
    if (m == nullptr) return nullptr;
    std::memcpy(m->fn, fn, sizeof m->fn);
    if (const MethRow *r = methlist_find_by_name(name)) registry_stamp(&m->h, *r);
    return &m->h;
}

ox_object *make_from_row(const MethRow &r, int32_t status) {
    const Fn fn[kMethSlots] = {reinterpret_cast<Fn>(r.forward), reinterpret_cast<Fn>(r.inverse),
                               reinterpret_cast<Fn>(r.load_constants)};
    ox_object *h = method_make(r.name, fn);
    if (h != nullptr) h->status = status;
    return h;
}

constexpr FieldDesc kFields[] = {fd_fns(offsetof(Method, fn), kMethSlots, 2)};

ox_object *build(const Parts &p) { return p.have_fns ? method_make(p.name, p.fn) : methlist_new_by_name(p.name); }

}  // namespace

const TypeDesc kMethodDesc = {OX_TAG_METHOD, "METHOD", sizeof(Method), kFields, 1, 2, true, true, nullptr, build,
                              nullptr, nullptr, nullptr};

OX_METHOD_ROUTINE(method_nothing) {
    (void)ellipsoid1, (void)ellipsoid2, (void)values, (void)grid_name, (void)points, (void)heights;
    (void)first, (void)second, (void)third;
    return n;
}

OX_METHOD_ROUTINE(method_unavailable) {
    (void)ellipsoid1, (void)ellipsoid2, (void)values, (void)grid_name, (void)n, (void)points, (void)heights;
    (void)first, (void)second, (void)third;
    return 0;
}

OX_LOADER_ROUTINE(loader_unavailable) {
    (void)block, (void)grid_name;
    return 0;
}

std::span<const MethRow> methlist_rows() { return kRows; }

const MethRow *methlist_find_by_name(const char *name) {
    return registry_find_name(std::span<const MethRow>(kRows), name, NameMatch::kExact);
}

const MethRow *methlist_find_by_code(int32_t code) { return registry_find_code(std::span<const MethRow>(kRows), code); }

ox_object *methlist_new_by_code(int32_t code) {
    const MethRow *r = methlist_find_by_code(code);
    return r ? make_from_row(*r, OX_STATUS_CATALOGUE) : nullptr;
}

ox_object *methlist_new_by_name(const char *name) {
    const MethRow *r = methlist_find_by_name(name);
    return r ? make_from_row(*r, OX_STATUS_STRING) : nullptr;
}

LoadConstantsRoutine method_load_constants(const ox_object *method) {
    const Method *m = method_rec(method);
    return m ? reinterpret_cast<LoadConstantsRoutine>(m->fn[kMethLoadConstants]) : nullptr;
}

}  // namespace ox

OX_DEFINE_COMMON_OPS(method, OX_TAG_METHOD, ox::kMethodDesc)

extern "C" {

OX_API ox_object *ox_method_new(const char *name, ox_method_routine forward, ox_method_routine inverse) {
    if (name == nullptr) return nullptr;
    if (forward == nullptr || inverse == nullptr) {
        const ox::MethRow *r = ox::methlist_find_by_name(name);
        if (r == nullptr) return nullptr;
        forward = r->forward;
        inverse = r->inverse;
    }
    const ox::Fn fn[ox::kMethSlots] = {reinterpret_cast<ox::Fn>(forward), reinterpret_cast<ox::Fn>(inverse), nullptr};
    return ox::method_make(name, fn);
}

OX_API ox_method_routine ox_method_forward(const ox_object *method) {
    const ox::Method *m = ox::method_rec(method);
    return m ? reinterpret_cast<ox_method_routine>(m->fn[ox::kMethForward]) : ox::method_nothing;
}

OX_API ox_method_routine ox_method_inverse(const ox_object *method) {
    const ox::Method *m = ox::method_rec(method);
    return m ? reinterpret_cast<ox_method_routine>(m->fn[ox::kMethInverse]) : ox::method_nothing;
}

OX_API int32_t ox_parameter_method_defaults(const ox_object *method, ox_object *parameters[16]) {
    if (parameters == nullptr || !ox::is_type(method, OX_TAG_METHOD)) return 0;
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) parameters[i] = nullptr;
    using namespace ox;
    static constexpr int32_t kTranslations[] = {kParXAxisTranslation, kParYAxisTranslation, kParZAxisTranslation};
    static constexpr int32_t kSevenParameters[] = {kParXAxisTranslation, kParYAxisTranslation,
                                                   kParZAxisTranslation, kParXAxisRotation,
                                                   kParYAxisRotation,    kParZAxisRotation,
                                                   kParScaleDifference};
    static constexpr int32_t kBadekas[] = {kParXAxisTranslation,       kParYAxisTranslation,
                                           kParZAxisTranslation,       kParXAxisRotation,
                                           kParYAxisRotation,          kParZAxisRotation,
                                           kParXCoordOfRotationOrigin, kParYCoordOfRotationOrigin,
                                           kParZCoordOfRotationOrigin, kParScaleDifference};
    static constexpr int32_t kGrid[] = {kParDataset};
    const int32_t *codes = nullptr;
    int count = 0;
    switch (method->code) {
        case kMethGeocentricTranslation: case kMethMolodensky: case kMethMolodenskyAbridged:
            codes = kTranslations, count = 3;
            break;
        case kMethPositionVector: case kMethCoordinateFrame: case kMethBursaWolf:
            codes = kSevenParameters, count = 7;
            break;
        case kMethMolodenskyBadekas: codes = kBadekas, count = 10; break;
        case kMethNadcon: case kMethNtv2: case kMethHarn: codes = kGrid, count = 1; break;
        default: return 0;
    }
    int made = 0;
    for (int i = 0; i < count; ++i)
        if (ox_object *p = parmlist_new_by_code(codes[i])) {
            parameters[ox_parameter_index(p)] = p;
            ++made;
        }
    return made;
}

}  // extern "C"
