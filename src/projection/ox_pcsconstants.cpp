#include "projection/ox_pcsconstants.h"

#include "object/ox_memory.h"
#include "object/ox_object.h"
#include "object/ox_strings.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_projlist.h"

namespace ox {

double *pcs_alloc(PcsConstants *c, int32_t count) {
    if (c == nullptr || count < 1) return nullptr;
    auto *header = mem_new_array<int32_t>(2);
    auto *values = mem_new_array<double>(static_cast<size_t>(count));
    if (header == nullptr || values == nullptr) {
        mem_free(header);
        mem_free(values);
        return nullptr;
    }
    mem_free(c->header);
    mem_free(c->values);
    header[0] = 2;
    header[1] = count;
    c->header = header;
    c->values = values;
    return values;
}

PcsConstants *pcs_new() {
    auto *c = static_cast<PcsConstants *>(mem_alloc(sizeof(PcsConstants)));
    if (c != nullptr) *c = PcsConstants{kPcsConstantsTag, nullptr, nullptr, nullptr};
    return c;
}

void pcs_delete(PcsConstants *c) {
    if (c == nullptr) return;
    mem_free(c->header);
    mem_free(c->values);
    c->type = 0;
    mem_free(c);
}

namespace {

constexpr int kSlotSecondParallel = OX_SLOT(standard_parallel_2);
constexpr int kSlotFirstParallel = OX_SLOT(standard_parallel_1);
constexpr int kSlotScaleFactor = OX_SLOT(scale_factor);
constexpr int kSlotXScale = OX_SLOT(x_scale);
constexpr int kSlotYScale = OX_SLOT(y_scale);
constexpr int kSlotHeight = OX_SLOT(height);

const Parameter *parameter_rec(const ox_object *h) { return rec<Parameter>(h, OX_TAG_PARAMETER); }

}  // namespace

void projcs_setup(const ox_object *projcs, ProjSetup *s) {
    const ox_object *geogcs = ox_projcs_geogcs(projcs);
    const ox_object *spheroid = ox_datum_spheroid(ox_geogcs_datum(geogcs));
    const double f = ox_spheroid_flattening(spheroid);
    s->spheroid[0] = ox_spheroid_axis(spheroid);
    s->spheroid[1] = f * (2.0 - f);
    s->angular_factor = ox_unit_factor(ox_geogcs_unit(geogcs));
    s->linear_factor = ox_unit_factor(ox_projcs_unit(projcs));

    ox_object *handles[OX_PARAMETER_SLOTS] = {};
    ox_projcs_parameters(projcs, handles);
    const Parameter *p[OX_PARAMETER_SLOTS];
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) {
        p[i] = parameter_rec(handles[i]);
        s->parameters[i] = p[i] ? p[i]->value : 0.0;
    }
    for (int slot : kAngularSlots) s->parameters[slot] *= s->angular_factor;
    for (int slot : kLinearSlots) s->parameters[slot] *= s->linear_factor;
    if (p[kSlotHeight] && name_eq(p[kSlotHeight]->h.name, "Height")) s->parameters[kSlotHeight] *= s->linear_factor;
    if (!p[kSlotScaleFactor]) s->parameters[kSlotScaleFactor] = 1.0;
    if (!p[kSlotSecondParallel]) s->parameters[kSlotSecondParallel] = s->parameters[kSlotFirstParallel];
    if (!p[kSlotXScale]) s->parameters[kSlotXScale] = 1.0;
    if (!p[kSlotYScale]) s->parameters[kSlotYScale] = 1.0;
}

int32_t projcs_load_constants_from(ox_object *projcs, const ProjSetup &s) {
    Projcs *p = rec<Projcs>(projcs, OX_TAG_PROJCS);
    if (p == nullptr) return 0;
    pcs_delete(p->constants);
    p->constants = nullptr;
    const ConstantsRoutine routine = projection_constants(p->projection);
    if (routine == nullptr) return 0;
    PcsConstants *c = pcs_new();
    if (c == nullptr) return 0;
    const int32_t count = routine(c, s.spheroid, s.parameters);
    if (count > 0 && c->header != nullptr && c->values != nullptr) {
        p->constants = c;
        return count;
    }
    pcs_delete(c);
    return 0;
}

const PcsConstants *projcs_constants_in_use(ox_object *projcs, const ProjSetup &s) {
    Projcs *p = rec<Projcs>(projcs, OX_TAG_PROJCS);
    if (p == nullptr) return nullptr;
    if (p->constants == nullptr && projection_constants(p->projection) != nullptr) projcs_load_constants_from(projcs, s);
    return p->constants;
}

}  // namespace ox

extern "C" OX_API int32_t ox_projcs_load_constants(ox_object *projcs) {
    if (!ox::is_type(projcs, OX_TAG_PROJCS)) return 0;
    ox::ProjSetup s;
    ox::projcs_setup(projcs, &s);
    return ox::projcs_load_constants_from(projcs, s);
}
