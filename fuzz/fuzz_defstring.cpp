// Fuzz target: definition strings ("OX_GCS_WGS_1984", "4326", junk) and the
// conversions between them and codes.  A text that names a code must turn
// back into a name that names the same code; the object of the code is
// built, written, cloned (the clone must be equal) and deleted.
#include <cstddef>
#include <cstdint>
#include <string>

#include "ox.h"

namespace {

struct Kind {
    int32_t (*is)(const ox_object *);
    void (*write)(ox_object *, int32_t, char *);
    ox_object *(*clone)(const ox_object *);
    int32_t (*eq)(const ox_object *, const ox_object *);
    void (*del)(ox_object *);
};
const Kind kKinds[] = {
    {ox_coordsys_p, ox_coordsys_to_string_ext, ox_coordsys_clone, ox_coordsys_eq, ox_coordsys_del},
    {ox_geogtran_p, ox_geogtran_to_string_ext, ox_geogtran_clone, ox_geogtran_eq, ox_geogtran_del},
    {ox_vertcs_p, ox_vertcs_to_string_ext, ox_vertcs_clone, ox_vertcs_eq, ox_vertcs_del},
    {ox_hvdatum_p, ox_hvdatum_to_string_ext, ox_hvdatum_clone, ox_hvdatum_eq, ox_hvdatum_del},
    {ox_spheroid_p, ox_spheroid_to_string_ext, ox_spheroid_clone, ox_spheroid_eq, ox_spheroid_del},
    {ox_primem_p, ox_primem_to_string_ext, ox_primem_clone, ox_primem_eq, ox_primem_del},
    {ox_unit_p, ox_unit_to_string_ext, ox_unit_clone, ox_unit_eq, ox_unit_del},
    {ox_method_p, ox_method_to_string_ext, ox_method_clone, ox_method_eq, ox_method_del},
    {ox_htmethod_p, ox_htmethod_to_string_ext, ox_htmethod_clone, ox_htmethod_eq, ox_htmethod_del},
    {ox_projection_p, ox_projection_to_string_ext, ox_projection_clone, ox_projection_eq, ox_projection_del},
    {ox_parameter_p, ox_parameter_to_string_ext, ox_parameter_clone, ox_parameter_eq, ox_parameter_del},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);  // NUL-terminated copy
    const int32_t code = ox_factory_defstring_to_int(text.c_str());
    if (code == 0) return 0;
    if (const char *name = ox_factory_int_to_defstring(code))
        if (ox_factory_defstring_to_int(name) != code) __builtin_trap();  // the canonical name names the code
    ox_object *h = ox_factory(code);
    if (h == nullptr) return 0;
    for (const Kind &k : kKinds) {
        if (!k.is(h)) continue;
        static char buffer[OX_OBJSTRING_SIZE];
        k.write(h, 2, buffer);
        ox_object *copy = k.clone(h);
        if (copy == nullptr || k.eq(h, copy) != 1) __builtin_trap();
        k.del(copy);
        k.del(h);
        return 0;
    }
    __builtin_trap();  // a code built an object of no known kind
}
