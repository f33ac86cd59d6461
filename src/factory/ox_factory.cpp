// The factory: the kind-builder shape shared by every catalogue kind, and
// the generic builder that dispatches on the code's range.
#include "factory/ox_factory.h"

namespace ox {
namespace {

// Object-edit look-ups nest (a datum line builds its spheroid, which may come
// from the spheroid file); the kinds form no cycle, but the depth is bounded
// all the same so that no file can make a look-up recurse without end.
constexpr int kMaxEditDepth = 8;
thread_local int t_edit_depth = 0;

struct DepthGuard {
    DepthGuard() { ++t_edit_depth; }
    ~DepthGuard() { --t_edit_depth; }
};

}  // namespace

ox_object *factory_build(const KindBuilder &kind, int32_t code) {
    // 1. Object-edit line.
    if (kind.edit_bit != 0 && t_edit_depth < kMaxEditDepth) {
        DepthGuard guard;
        EditLine line;
        const EditFind found = objedit_find(kind.edit_bit, code, &line);
        if (found == EditFind::kFailed) return nullptr;
        if (found == EditFind::kFound) {
            ox_object *h = kind.from_edit(line);
            if (h != nullptr) {
                if (kind.stamp_edited) stamp(h, kind.ranges(), code);
                obj_set_status(h, OX_STATUS_OBJEDIT);
                return h;
            }
            if (kind.edit_failure_final) return nullptr;
        }
    }
    // 2. Catalogue.
    if (ox_object *h = kind.from_catalogue(code)) {
        stamp_catalogue(h, kind.ranges(), code);
        const bool superseded = kind.superseded != nullptr && cat::contains(*kind.superseded, code);
        obj_set_status(h, superseded ? OX_STATUS_SUPERSEDED : OX_STATUS_CATALOGUE);
        return h;
    }
    // 3. Replaced code: the replacement, stamped with its own code.
    if (kind.replaced != nullptr) {
        const int32_t replacement = cat::replacement(*kind.replaced, code);
        if (replacement != 0) {
            if (ox_object *h = kind.from_catalogue(replacement)) {
                stamp_catalogue(h, kind.ranges(), replacement);
                obj_set_status(h, OX_STATUS_REPLACED);
                return h;
            }
        }
    }
    // 4. Special superseded definitions.
    return kind.special != nullptr ? kind.special(code) : nullptr;
}

bool factory_params(const cat::ParamValue *values, int count, ox_object *params[OX_PARAMETER_SLOTS]) {
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) params[i] = nullptr;
    for (int i = 0; i < count; ++i) {
        ox_object *p = ox_factory_parameter(values[i].code);
        if (p == nullptr) {
            params_delete(params);
            return false;
        }
        ox_parameter_value_set(p, values[i].value);
        if (values[i].name != nullptr) ox_parameter_name_set(p, values[i].name);
        if (!put_parameter(params, p)) {
            params_delete(params);
            return false;
        }
    }
    return true;
}

const KindInfo *kind_info(uint32_t tag) {
    // In the order in which the reverse look-up tests an object's kind.
    static const KindInfo kinds[kReverseKinds] = {
        {0, OX_TAG_PROJCS, ox_factory_coderanges_projcs, ox_factory_projcs, kEditProjcs},
        {1, OX_TAG_GEOGCS, ox_factory_coderanges_geogcs, ox_factory_geogcs, kEditGeogcs},
        {2, OX_TAG_VERTCS, ox_factory_coderanges_vertcs, ox_factory_vertcs, kEditVertcs},
        {3, OX_TAG_GEOGTRAN, ox_factory_coderanges_geogtran, ox_factory_geogtran, kEditGeogtran},
        {4, OX_TAG_DATUM, ox_factory_coderanges_datum, ox_factory_datum, kEditDatum},
        {5, OX_TAG_VDATUM, ox_factory_coderanges_vdatum, ox_factory_vdatum, kEditVdatum},
        {6, OX_TAG_SPHEROID, ox_factory_coderanges_spheroid, ox_factory_spheroid, kEditSpheroid},
        {7, OX_TAG_PRIMEM, ox_factory_coderanges_primem, ox_factory_primem, kEditPrimem},
        {8, OX_TAG_PROJECTION, ox_factory_coderanges_projection, ox_factory_projection, 0},
        {9, OX_TAG_PARAMETER, ox_factory_coderanges_parameter, ox_factory_parameter, 0},
        {10, OX_TAG_METHOD, ox_factory_coderanges_method, ox_factory_method, 0},
        {11, OX_TAG_HTMETHOD, ox_factory_coderanges_htmethod, ox_factory_htmethod, 0},
        {12, OX_TAG_UNIT, ox_factory_coderanges_unit, ox_factory_unit, kEditUnit},
    };
    for (const KindInfo &k : kinds)
        if (k.tag == tag) return &k;
    return nullptr;
}

}  // namespace ox

extern "C" OX_API ox_object *ox_factory(int32_t code) {
    struct Dispatch {
        const ox_coderange_set *(*ranges)();
        ox_object *(*build)(int32_t);
    };
    static const Dispatch order[] = {
        {ox_factory_coderanges_geogcs, ox_factory_geogcs},
        {ox_factory_coderanges_projcs, ox_factory_projcs},
        {ox_factory_coderanges_vertcs, ox_factory_vertcs},
        {ox_factory_coderanges_datum, ox_factory_datum},
        {ox_factory_coderanges_vdatum, ox_factory_vdatum},
        {ox_factory_coderanges_geogtran, ox_factory_geogtran},
        {ox_factory_coderanges_linear_unit, ox_factory_unit},
        {ox_factory_coderanges_angular_unit, ox_factory_unit},
        {ox_factory_coderanges_primem, ox_factory_primem},
        {ox_factory_coderanges_spheroid, ox_factory_spheroid},
        {ox_factory_coderanges_method, ox_factory_method},
        {ox_factory_coderanges_htmethod, ox_factory_htmethod},
        {ox_factory_coderanges_projection, ox_factory_projection},
        {ox_factory_coderanges_parameter, ox_factory_parameter},
    };
    for (const Dispatch &d : order)
        if (ox_factory_coderanges_check(d.ranges(), code)) return d.build(code);
    return nullptr;
}
