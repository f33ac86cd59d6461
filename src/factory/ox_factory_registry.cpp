// Factory builders of the registry kinds: projections, parameters,
// transformation methods and horizontal-transformation methods are built
// from their registries, with status 4 and the registry's authority.
#include "object/ox_object.h"
#include "projection/ox_parmlist.h"
#include "projection/ox_projlist.h"
#include "transform/ox_htmethlist.h"
#include "transform/ox_methlist.h"

extern "C" {

OX_API ox_object *ox_factory_projection(int32_t code) { return ox::projlist_new_by_code(code); }
OX_API ox_object *ox_factory_parameter(int32_t code) { return ox::parmlist_new_by_code(code); }
OX_API ox_object *ox_factory_method(int32_t code) { return ox::methlist_new_by_code(code); }
OX_API ox_object *ox_factory_htmethod(int32_t code) { return ox::htmethlist_new_by_code(code); }

}  // extern "C"
