// The kinds of object the fuzz targets build, with what they do to each:
// test, write, clone, compare and delete.
#pragma once

#include <cstdint>

#include "ox.h"

namespace fuzz {

struct Kind {
    int32_t (*is)(const ox_object *);
    void (*write)(ox_object *, int32_t, char *);
    ox_object *(*clone)(const ox_object *);
    int32_t (*eq)(const ox_object *, const ox_object *);
    void (*del)(ox_object *);
};

inline constexpr Kind kKinds[] = {
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

}  // namespace fuzz
