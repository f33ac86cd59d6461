/*
 * ox.h -- the public C interface of the ox coordinate reference library.
 *
 * Every object (unit, prime meridian, spheroid, datum, coordinate systems,
 * projections, parameters, transformations, ...) is reached through an opaque
 * `ox_object *` handle.  Each handle carries a type tag; every function checks
 * it and treats a handle of the wrong type exactly like a null handle.
 *
 * Conventions
 *  - A composite object owns the sub-objects handed to its `_new` function and
 *    deletes them with itself.  Accessors return borrowed handles.  `_clone` is
 *    deep.  The caller owns every object it receives.
 *  - Failure is a null handle, 0, a smaller count, the failure NaN of a point,
 *    or an empty string in the caller's buffer.  No error text is produced.
 *  - Name buffers must hold OX_NAME_SIZE characters; object-string buffers must
 *    hold OX_OBJSTRING_SIZE characters (a writer whose text would not fit
 *    leaves "" instead of a partial text).
 *  - Coordinate arrays hold `n` pairs of doubles (x then y, longitude then
 *    latitude) and are converted in place; functions return the number of
 *    points converted.
 *
 * The header compiles as C11 and as C++.
 */
#ifndef OX_H
#define OX_H

#include <stdint.h>

#if defined(_WIN32) && !defined(OX_STATIC)
#  ifdef OX_BUILDING
#    define OX_API __declspec(dllexport)
#  else
#    define OX_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__)
#  define OX_API __attribute__((visibility("default")))
#else
#  define OX_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Types and sizes                                                          */
/* ------------------------------------------------------------------------ */

/** Opaque object handle; the first field of every object is its type tag. */
typedef struct ox_object ox_object;

/** Size of a name buffer: names keep at most 63 characters. */
#define OX_NAME_SIZE 64
/** Size of an object-string buffer that every `_to_string*` may fill. */
#define OX_OBJSTRING_SIZE 8192
/** Number of parameter slots of a projected, vertical or transformation object. */
#define OX_PARAMETER_SLOTS 16

/** Type tags (the value stored first in every object). */
#define OX_TAG_GEOGCS     0x1u
#define OX_TAG_PROJCS     0x2u
#define OX_TAG_GEOXYZCS   0x4u
#define OX_TAG_VERTCS     0x8u
#define OX_TAG_HVCOORDSYS 0x10u
#define OX_TAG_DATUM      0x20u
#define OX_TAG_VDATUM     0x40u
#define OX_TAG_GEOGTRAN   0x80u
#define OX_TAG_UNIT       0x300u
#define OX_TAG_PRIMEM     0x400u
#define OX_TAG_SPHEROID   0x800u
#define OX_TAG_HTMETHOD   0x1000u
#define OX_TAG_METHOD     0x2000u
#define OX_TAG_PROJECTION 0x4000u
#define OX_TAG_PARAMETER  0x8000u
#define OX_TAG_AUTHORITY  0x10000u
#define OX_TAG_ADJHCS     0x20000u
#define OX_TAG_ARRAY      0x40000u

/** Provenance status values (`ox_*_status`). */
#define OX_STATUS_NEW        1  /* built by `_new` */
#define OX_STATUS_STRING     2  /* read from an object string */
#define OX_STATUS_CATALOGUE  4  /* built from the catalogue for the code asked */
#define OX_STATUS_OBJEDIT    8  /* built from an object-edit file line */
#define OX_STATUS_REPLACED  16  /* built for the replacement of a replaced code */
#define OX_STATUS_SUPERSEDED 32 /* a superseded definition kept for compatibility */

/**
 * Projection point routine: radians in and metres out (forward) or metres in
 * and radians out (inverse), relative to the natural origin (no false easting
 * or northing).  `spheroid` is {a, e2}; `parameters` the 16 slot values in
 * radians and metres; `constants_header`/`constants_values` the system's
 * precomputed constants or null.  Returns the number of points converted;
 * failed points receive the failure NaN.  The library's own routines, called
 * through these pointers, compute the constants they need for the call (the
 * driver hands them the constants a system keeps); each refuses parameters
 * that describe no map (every point fails, count 0).
 */
typedef int32_t (*ox_projection_routine)(const double spheroid[2], const double parameters[16],
                                         int32_t n, double *points,
                                         const int32_t *constants_header,
                                         const double *constants_values);

/**
 * Horizon routine: writes at most `max_vertices` vertices of the closed
 * boundary of the region that the projection represents and returns the
 * number of vertices of the whole boundary (a null `vertices` only asks for
 * that number).  A geographic horizon writes (longitude, latitude) pairs in
 * radians; a projected horizon writes the same boundary as (x, y) pairs in
 * metres about the natural origin.  A boundary of several closed rings
 * separates them with one vertex whose coordinates are both NaN (see
 * `ox_generate_horizon` for the order and density).  `spheroid` and
 * `parameters` are as for the point routines.
 */
typedef int32_t (*ox_horizon_routine)(const double spheroid[2], const double parameters[16],
                                      int32_t max_vertices, double *vertices);

/**
 * Transformation method point routine (geographic to geographic, radians
 * about Greenwich).  Both ellipsoids are {a, e2}, always the source system's
 * first; `values` are the 16 parameter values in metres, radians and plain
 * ratios; `heights` may be null; `first`/`second`/`third` are the loaded grid
 * blocks or null.  Returns the number of points converted.
 */
typedef int32_t (*ox_method_routine)(const double ellipsoid1[2], const double ellipsoid2[2],
                                     const double values[16], const char *grid_name,
                                     int32_t n, double *points, double *heights,
                                     void *first, void *second, void *third);

/** Horizontal (planar) transformation routine: affine or projective. */
typedef int32_t (*ox_htmethod_routine)(void *unused, const double *coefficients,
                                       int32_t n, double *points);

/** Directory provider for `ox_objedithome_setfunc`: returns the directory. */
typedef const char *(*ox_directory_provider)(void);

/* ------------------------------------------------------------------------ */
/* Memory and version                                                       */
/* ------------------------------------------------------------------------ */

/** Allocates `size` bytes from the process heap; a size below 1 gives null. */
OX_API void *ox_memalloc(int32_t size);
/** Releases a block from `ox_memalloc` or a list from the library; null is ignored. */
OX_API void ox_memdealloc(void *ptr);
/** The constant version text "Tessaline Version 9.3.0 (Jan  1 1970)". */
OX_API const char *ox_version(void);
/** Copies the version text into `buffer` (at least 64 characters); null buffer: nothing. */
OX_API void ox_version_string(char *buffer);

/* ------------------------------------------------------------------------ */
/* The uniform operation set                                                */
/*                                                                          */
/* Every type T below offers the same operations.  Each checks that its     */
/* handle is non-null and of type T, and treats any other handle like null: */
/* predicates and equality give 0, status gives 0, accessors give null,     */
/* deletion and setters do nothing, names and strings leave "".             */
/*   _del          deletes the object, its parts and its authority          */
/*   _clone        deep copy (status, code and authority copied), or null   */
/*   _eq           1 when names (case, blanks, '-' and '_' ignored), parts  */
/*                 and numbers (relative tolerance 2^-48) are equal         */
/*   _p            1 when the handle is of type T                           */
/*   _name         copies the name into a buffer of OX_NAME_SIZE            */
/*   _status       provenance (OX_STATUS_*)                                 */
/*   _authority    the authority (borrowed; built from the catalogue code   */
/*                 on first use)                                            */
/*   _authority_set replaces the authority; takes ownership (null clears)   */
/*   _to_string    writes the object string (buffer of OX_OBJSTRING_SIZE)   */
/*   _to_string_ext the same with AUTHORITY clauses: option 0 none, 1 on    */
/*                 the outermost object, 2 on every object                  */
/*   _from_string  reads an object string (from the type's keyword on)      */
/* ------------------------------------------------------------------------ */

/* Unit */
/** Deletes a unit with its parts. */
OX_API void ox_unit_del(ox_object *h);
/** Deep copy of a unit, or null. */
OX_API ox_object *ox_unit_clone(const ox_object *h);
/** 1 when two units are equal, else 0. */
OX_API int32_t ox_unit_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a unit. */
OX_API int32_t ox_unit_p(const ox_object *h);
/** Copies the name of a unit ("" for any other handle). */
OX_API void ox_unit_name(const ox_object *h, char *buffer);
/** Provenance of a unit; 0 for any other handle. */
OX_API int32_t ox_unit_status(const ox_object *h);
/** Authority of a unit (borrowed, built lazily), or null. */
OX_API ox_object *ox_unit_authority(ox_object *h);
/** Replaces the authority of a unit; takes ownership. */
OX_API void ox_unit_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a unit. */
OX_API void ox_unit_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a unit with AUTHORITY clauses by option. */
OX_API void ox_unit_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a unit from an object string, or null. */
OX_API ox_object *ox_unit_from_string(const char *text);

/* Prime meridian */
/** Deletes a prime meridian with its parts. */
OX_API void ox_primem_del(ox_object *h);
/** Deep copy of a prime meridian, or null. */
OX_API ox_object *ox_primem_clone(const ox_object *h);
/** 1 when two prime meridians are equal, else 0. */
OX_API int32_t ox_primem_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a prime meridian. */
OX_API int32_t ox_primem_p(const ox_object *h);
/** Copies the name of a prime meridian ("" for any other handle). */
OX_API void ox_primem_name(const ox_object *h, char *buffer);
/** Provenance of a prime meridian; 0 for any other handle. */
OX_API int32_t ox_primem_status(const ox_object *h);
/** Authority of a prime meridian (borrowed, built lazily), or null. */
OX_API ox_object *ox_primem_authority(ox_object *h);
/** Replaces the authority of a prime meridian; takes ownership. */
OX_API void ox_primem_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a prime meridian. */
OX_API void ox_primem_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a prime meridian with AUTHORITY clauses by option. */
OX_API void ox_primem_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a prime meridian from an object string, or null. */
OX_API ox_object *ox_primem_from_string(const char *text);

/* Spheroid */
/** Deletes a spheroid with its parts. */
OX_API void ox_spheroid_del(ox_object *h);
/** Deep copy of a spheroid, or null. */
OX_API ox_object *ox_spheroid_clone(const ox_object *h);
/** 1 when two spheroids are equal, else 0. */
OX_API int32_t ox_spheroid_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a spheroid. */
OX_API int32_t ox_spheroid_p(const ox_object *h);
/** Copies the name of a spheroid ("" for any other handle). */
OX_API void ox_spheroid_name(const ox_object *h, char *buffer);
/** Provenance of a spheroid; 0 for any other handle. */
OX_API int32_t ox_spheroid_status(const ox_object *h);
/** Authority of a spheroid (borrowed, built lazily), or null. */
OX_API ox_object *ox_spheroid_authority(ox_object *h);
/** Replaces the authority of a spheroid; takes ownership. */
OX_API void ox_spheroid_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a spheroid. */
OX_API void ox_spheroid_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a spheroid with AUTHORITY clauses by option. */
OX_API void ox_spheroid_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a spheroid from an object string, or null. */
OX_API ox_object *ox_spheroid_from_string(const char *text);

/* Datum */
/** Deletes a datum with its parts. */
OX_API void ox_datum_del(ox_object *h);
/** Deep copy of a datum, or null. */
OX_API ox_object *ox_datum_clone(const ox_object *h);
/** 1 when two datums are equal, else 0. */
OX_API int32_t ox_datum_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a datum. */
OX_API int32_t ox_datum_p(const ox_object *h);
/** Copies the name of a datum ("" for any other handle). */
OX_API void ox_datum_name(const ox_object *h, char *buffer);
/** Provenance of a datum; 0 for any other handle. */
OX_API int32_t ox_datum_status(const ox_object *h);
/** Authority of a datum (borrowed, built lazily), or null. */
OX_API ox_object *ox_datum_authority(ox_object *h);
/** Replaces the authority of a datum; takes ownership. */
OX_API void ox_datum_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a datum. */
OX_API void ox_datum_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a datum with AUTHORITY clauses by option. */
OX_API void ox_datum_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a datum from an object string, or null. */
OX_API ox_object *ox_datum_from_string(const char *text);

/* Geographic system */
/** Deletes a geographic system with its parts. */
OX_API void ox_geogcs_del(ox_object *h);
/** Deep copy of a geographic system, or null. */
OX_API ox_object *ox_geogcs_clone(const ox_object *h);
/** 1 when two geographic systems are equal, else 0. */
OX_API int32_t ox_geogcs_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a geographic system. */
OX_API int32_t ox_geogcs_p(const ox_object *h);
/** Copies the name of a geographic system ("" for any other handle). */
OX_API void ox_geogcs_name(const ox_object *h, char *buffer);
/** Provenance of a geographic system; 0 for any other handle. */
OX_API int32_t ox_geogcs_status(const ox_object *h);
/** Authority of a geographic system (borrowed, built lazily), or null. */
OX_API ox_object *ox_geogcs_authority(ox_object *h);
/** Replaces the authority of a geographic system; takes ownership. */
OX_API void ox_geogcs_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a geographic system. */
OX_API void ox_geogcs_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a geographic system with AUTHORITY clauses by option. */
OX_API void ox_geogcs_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a geographic system (the first GEOGCS of the text), or null. */
OX_API ox_object *ox_geogcs_from_string(const char *text);

/* Projected system */
/** Deletes a projected system with its parts. */
OX_API void ox_projcs_del(ox_object *h);
/** Deep copy of a projected system, or null. */
OX_API ox_object *ox_projcs_clone(const ox_object *h);
/** 1 when two projected systems are equal, else 0. */
OX_API int32_t ox_projcs_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a projected system. */
OX_API int32_t ox_projcs_p(const ox_object *h);
/** Copies the name of a projected system ("" for any other handle). */
OX_API void ox_projcs_name(const ox_object *h, char *buffer);
/** Provenance of a projected system; 0 for any other handle. */
OX_API int32_t ox_projcs_status(const ox_object *h);
/** Authority of a projected system (borrowed, built lazily), or null. */
OX_API ox_object *ox_projcs_authority(ox_object *h);
/** Replaces the authority of a projected system; takes ownership. */
OX_API void ox_projcs_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a projected system. */
OX_API void ox_projcs_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a projected system with AUTHORITY clauses by option. */
OX_API void ox_projcs_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a projected system from an object string, or null. */
OX_API ox_object *ox_projcs_from_string(const char *text);

/* Parameter */
/** Deletes a parameter with its parts. */
OX_API void ox_parameter_del(ox_object *h);
/** Deep copy of a parameter, or null. */
OX_API ox_object *ox_parameter_clone(const ox_object *h);
/** 1 when two parameters are equal, else 0. */
OX_API int32_t ox_parameter_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a parameter. */
OX_API int32_t ox_parameter_p(const ox_object *h);
/** Copies the name of a parameter ("" for any other handle). */
OX_API void ox_parameter_name(const ox_object *h, char *buffer);
/** Provenance of a parameter; 0 for any other handle. */
OX_API int32_t ox_parameter_status(const ox_object *h);
/** Authority of a parameter (borrowed, built lazily), or null. */
OX_API ox_object *ox_parameter_authority(ox_object *h);
/** Replaces the authority of a parameter; takes ownership. */
OX_API void ox_parameter_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a parameter. */
OX_API void ox_parameter_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a parameter with AUTHORITY clauses by option. */
OX_API void ox_parameter_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a parameter from an object string, or null. */
OX_API ox_object *ox_parameter_from_string(const char *text);

/* Projection */
/** Deletes a projection with its parts. */
OX_API void ox_projection_del(ox_object *h);
/** Deep copy of a projection, or null. */
OX_API ox_object *ox_projection_clone(const ox_object *h);
/** 1 when two projections are equal, else 0. */
OX_API int32_t ox_projection_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a projection. */
OX_API int32_t ox_projection_p(const ox_object *h);
/** Copies the name of a projection ("" for any other handle). */
OX_API void ox_projection_name(const ox_object *h, char *buffer);
/** Provenance of a projection; 0 for any other handle. */
OX_API int32_t ox_projection_status(const ox_object *h);
/** Authority of a projection (borrowed, built lazily), or null. */
OX_API ox_object *ox_projection_authority(ox_object *h);
/** Replaces the authority of a projection; takes ownership. */
OX_API void ox_projection_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a projection. */
OX_API void ox_projection_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a projection with AUTHORITY clauses by option. */
OX_API void ox_projection_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a projection from an object string, or null. */
OX_API ox_object *ox_projection_from_string(const char *text);

/* Transformation method */
/** Deletes a transformation method with its parts. */
OX_API void ox_method_del(ox_object *h);
/** Deep copy of a transformation method, or null. */
OX_API ox_object *ox_method_clone(const ox_object *h);
/** 1 when two transformation methods are equal, else 0. */
OX_API int32_t ox_method_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a transformation method. */
OX_API int32_t ox_method_p(const ox_object *h);
/** Copies the name of a transformation method ("" for any other handle). */
OX_API void ox_method_name(const ox_object *h, char *buffer);
/** Provenance of a transformation method; 0 for any other handle. */
OX_API int32_t ox_method_status(const ox_object *h);
/** Authority of a transformation method (borrowed, built lazily), or null. */
OX_API ox_object *ox_method_authority(ox_object *h);
/** Replaces the authority of a transformation method; takes ownership. */
OX_API void ox_method_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a transformation method. */
OX_API void ox_method_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a transformation method with AUTHORITY clauses by option. */
OX_API void ox_method_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a transformation method from an object string, or null. */
OX_API ox_object *ox_method_from_string(const char *text);

/* Geographic transformation */
/** Deletes a geographic transformation with its parts. */
OX_API void ox_geogtran_del(ox_object *h);
/** Deep copy of a geographic transformation, or null. */
OX_API ox_object *ox_geogtran_clone(const ox_object *h);
/** 1 when two geographic transformations are equal, else 0. */
OX_API int32_t ox_geogtran_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a geographic transformation. */
OX_API int32_t ox_geogtran_p(const ox_object *h);
/** Copies the name of a geographic transformation ("" for any other handle). */
OX_API void ox_geogtran_name(const ox_object *h, char *buffer);
/** Provenance of a geographic transformation; 0 for any other handle. */
OX_API int32_t ox_geogtran_status(const ox_object *h);
/** Authority of a geographic transformation (borrowed, built lazily), or null. */
OX_API ox_object *ox_geogtran_authority(ox_object *h);
/** Replaces the authority of a geographic transformation; takes ownership. */
OX_API void ox_geogtran_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a geographic transformation. */
OX_API void ox_geogtran_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a geographic transformation with AUTHORITY clauses by option. */
OX_API void ox_geogtran_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a geographic transformation from an object string, or null. */
OX_API ox_object *ox_geogtran_from_string(const char *text);

/* Vertical datum */
/** Deletes a vertical datum with its parts. */
OX_API void ox_vdatum_del(ox_object *h);
/** Deep copy of a vertical datum, or null. */
OX_API ox_object *ox_vdatum_clone(const ox_object *h);
/** 1 when two vertical datums are equal, else 0. */
OX_API int32_t ox_vdatum_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a vertical datum. */
OX_API int32_t ox_vdatum_p(const ox_object *h);
/** Copies the name of a vertical datum ("" for any other handle). */
OX_API void ox_vdatum_name(const ox_object *h, char *buffer);
/** Provenance of a vertical datum; 0 for any other handle. */
OX_API int32_t ox_vdatum_status(const ox_object *h);
/** Authority of a vertical datum (borrowed, built lazily), or null. */
OX_API ox_object *ox_vdatum_authority(ox_object *h);
/** Replaces the authority of a vertical datum; takes ownership. */
OX_API void ox_vdatum_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a vertical datum. */
OX_API void ox_vdatum_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a vertical datum with AUTHORITY clauses by option. */
OX_API void ox_vdatum_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a vertical datum from an object string, or null. */
OX_API ox_object *ox_vdatum_from_string(const char *text);

/* Vertical system */
/** Deletes a vertical system with its parts. */
OX_API void ox_vertcs_del(ox_object *h);
/** Deep copy of a vertical system, or null. */
OX_API ox_object *ox_vertcs_clone(const ox_object *h);
/** 1 when two vertical systems are equal, else 0. */
OX_API int32_t ox_vertcs_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a vertical system. */
OX_API int32_t ox_vertcs_p(const ox_object *h);
/** Copies the name of a vertical system ("" for any other handle). */
OX_API void ox_vertcs_name(const ox_object *h, char *buffer);
/** Provenance of a vertical system; 0 for any other handle. */
OX_API int32_t ox_vertcs_status(const ox_object *h);
/** Authority of a vertical system (borrowed, built lazily), or null. */
OX_API ox_object *ox_vertcs_authority(ox_object *h);
/** Replaces the authority of a vertical system; takes ownership. */
OX_API void ox_vertcs_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a vertical system. */
OX_API void ox_vertcs_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a vertical system with AUTHORITY clauses by option. */
OX_API void ox_vertcs_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a vertical system from an object string, or null. */
OX_API ox_object *ox_vertcs_from_string(const char *text);

/* Horizontal and vertical pair */
/** Deletes a horizontal and vertical pair with its parts. */
OX_API void ox_hvcoordsys_del(ox_object *h);
/** Deep copy of a horizontal and vertical pair, or null. */
OX_API ox_object *ox_hvcoordsys_clone(const ox_object *h);
/** 1 when two horizontal and vertical pairs are equal, else 0. */
OX_API int32_t ox_hvcoordsys_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a horizontal and vertical pair. */
OX_API int32_t ox_hvcoordsys_p(const ox_object *h);
/** Copies the name of a horizontal and vertical pair ("" for any other handle). */
OX_API void ox_hvcoordsys_name(const ox_object *h, char *buffer);
/** Provenance of a horizontal and vertical pair; 0 for any other handle. */
OX_API int32_t ox_hvcoordsys_status(const ox_object *h);
/** Authority of a horizontal and vertical pair (borrowed, built lazily), or null. */
OX_API ox_object *ox_hvcoordsys_authority(ox_object *h);
/** Replaces the authority of a horizontal and vertical pair; takes ownership. */
OX_API void ox_hvcoordsys_authority_set(ox_object *h, ox_object *authority);
/** Writes the horizontal system's string, then "," and the vertical system's (no keyword). */
OX_API void ox_hvcoordsys_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a horizontal and vertical pair with AUTHORITY clauses by option. */
OX_API void ox_hvcoordsys_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads HVCOORDSYS[...] or a PROJCS/GEOGCS and a VERTCS side by side, or null. */
OX_API ox_object *ox_hvcoordsys_from_string(const char *text);

/* Geocentric system */
/** Deletes a geocentric system with its parts. */
OX_API void ox_geoxyzcs_del(ox_object *h);
/** Deep copy of a geocentric system, or null. */
OX_API ox_object *ox_geoxyzcs_clone(const ox_object *h);
/** 1 when two geocentric systems are equal, else 0. */
OX_API int32_t ox_geoxyzcs_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a geocentric system. */
OX_API int32_t ox_geoxyzcs_p(const ox_object *h);
/** Copies the name of a geocentric system ("" for any other handle). */
OX_API void ox_geoxyzcs_name(const ox_object *h, char *buffer);
/** Provenance of a geocentric system; 0 for any other handle. */
OX_API int32_t ox_geoxyzcs_status(const ox_object *h);
/** Authority of a geocentric system (borrowed, built lazily), or null. */
OX_API ox_object *ox_geoxyzcs_authority(ox_object *h);
/** Replaces the authority of a geocentric system; takes ownership. */
OX_API void ox_geoxyzcs_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a geocentric system. */
OX_API void ox_geoxyzcs_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a geocentric system with AUTHORITY clauses by option. */
OX_API void ox_geoxyzcs_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a geocentric system from an object string, or null. */
OX_API ox_object *ox_geoxyzcs_from_string(const char *text);

/* Horizontal-transformation method */
/** Deletes a horizontal-transformation method with its parts. */
OX_API void ox_htmethod_del(ox_object *h);
/** Deep copy of a horizontal-transformation method, or null. */
OX_API ox_object *ox_htmethod_clone(const ox_object *h);
/** 1 when two horizontal-transformation methods are equal, else 0. */
OX_API int32_t ox_htmethod_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a horizontal-transformation method. */
OX_API int32_t ox_htmethod_p(const ox_object *h);
/** Copies the name of a horizontal-transformation method ("" for any other handle). */
OX_API void ox_htmethod_name(const ox_object *h, char *buffer);
/** Provenance of a horizontal-transformation method; 0 for any other handle. */
OX_API int32_t ox_htmethod_status(const ox_object *h);
/** Authority of a horizontal-transformation method (borrowed, built lazily), or null. */
OX_API ox_object *ox_htmethod_authority(ox_object *h);
/** Replaces the authority of a horizontal-transformation method; takes ownership. */
OX_API void ox_htmethod_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a horizontal-transformation method. */
OX_API void ox_htmethod_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a horizontal-transformation method with AUTHORITY clauses by option. */
OX_API void ox_htmethod_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a horizontal-transformation method from an object string, or null. */
OX_API ox_object *ox_htmethod_from_string(const char *text);

/* Array */
/** Deletes an array with its parts. */
OX_API void ox_array_del(ox_object *h);
/** Deep copy of an array, or null. */
OX_API ox_object *ox_array_clone(const ox_object *h);
/** 1 when two arrays are equal, else 0. */
OX_API int32_t ox_array_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is an array. */
OX_API int32_t ox_array_p(const ox_object *h);
/** Copies the name of an array ("" for any other handle). */
OX_API void ox_array_name(const ox_object *h, char *buffer);
/** Provenance of an array; 0 for any other handle. */
OX_API int32_t ox_array_status(const ox_object *h);
/** Authority of an array (borrowed, built lazily), or null. */
OX_API ox_object *ox_array_authority(ox_object *h);
/** Replaces the authority of an array; takes ownership. */
OX_API void ox_array_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of an array. */
OX_API void ox_array_to_string(const ox_object *h, char *buffer);
/** Writes the object string of an array (never with an AUTHORITY clause). */
OX_API void ox_array_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads an array from an object string, or null. */
OX_API ox_object *ox_array_from_string(const char *text);

/* Adjusted system */
/** Deletes an adjusted system with its parts. */
OX_API void ox_adjhcs_del(ox_object *h);
/** Deep copy of an adjusted system, or null. */
OX_API ox_object *ox_adjhcs_clone(const ox_object *h);
/** 1 when two adjusted systems are equal, else 0. */
OX_API int32_t ox_adjhcs_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is an adjusted system. */
OX_API int32_t ox_adjhcs_p(const ox_object *h);
/** Copies the name of an adjusted system ("" for any other handle). */
OX_API void ox_adjhcs_name(const ox_object *h, char *buffer);
/** Provenance of an adjusted system; 0 for any other handle. */
OX_API int32_t ox_adjhcs_status(const ox_object *h);
/** Authority of an adjusted system (borrowed, built lazily), or null. */
OX_API ox_object *ox_adjhcs_authority(ox_object *h);
/** Replaces the authority of an adjusted system; takes ownership. */
OX_API void ox_adjhcs_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of an adjusted system. */
OX_API void ox_adjhcs_to_string(const ox_object *h, char *buffer);
/** Writes the object string of an adjusted system (never with AUTHORITY clauses). */
OX_API void ox_adjhcs_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads an adjusted system from an object string, or null. */
OX_API ox_object *ox_adjhcs_from_string(const char *text);

/* Coordinate system (geographic or projected) */
/** Deletes a geographic or projected system with its parts. */
OX_API void ox_coordsys_del(ox_object *h);
/** Deep copy of a geographic or projected system, or null. */
OX_API ox_object *ox_coordsys_clone(const ox_object *h);
/** 1 when two coordinate systems are equal, else 0. */
OX_API int32_t ox_coordsys_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a geographic or projected system. */
OX_API int32_t ox_coordsys_p(const ox_object *h);
/** Copies the name of a geographic or projected system ("" for any other handle). */
OX_API void ox_coordsys_name(const ox_object *h, char *buffer);
/** Always 0 (ask ox_geogcs_status or ox_projcs_status). */
OX_API int32_t ox_coordsys_status(const ox_object *h);
/** Authority of a geographic or projected system (borrowed, built lazily), or null. */
OX_API ox_object *ox_coordsys_authority(ox_object *h);
/** Replaces the authority of a geographic or projected system; takes ownership. */
OX_API void ox_coordsys_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a geographic or projected system. */
OX_API void ox_coordsys_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a geographic or projected system with AUTHORITY clauses by option. */
OX_API void ox_coordsys_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads a projected system when "PROJCS" stands anywhere in the text, else a geographic one. */
OX_API ox_object *ox_coordsys_from_string(const char *text);

/* Datum (horizontal or vertical) */
/** Deletes a datum or vertical datum with its parts. */
OX_API void ox_hvdatum_del(ox_object *h);
/** Deep copy of a datum or vertical datum, or null. */
OX_API ox_object *ox_hvdatum_clone(const ox_object *h);
/** 1 when two datums are equal, else 0. */
OX_API int32_t ox_hvdatum_eq(const ox_object *a, const ox_object *b);
/** 1 when the handle is a datum or vertical datum. */
OX_API int32_t ox_hvdatum_p(const ox_object *h);
/** Copies the name of a datum or vertical datum ("" for any other handle). */
OX_API void ox_hvdatum_name(const ox_object *h, char *buffer);
/** Provenance of a datum or vertical datum; 0 for any other handle. */
OX_API int32_t ox_hvdatum_status(const ox_object *h);
/** Authority of a datum or vertical datum (borrowed, built lazily), or null. */
OX_API ox_object *ox_hvdatum_authority(ox_object *h);
/** Replaces the authority of a datum or vertical datum; takes ownership. */
OX_API void ox_hvdatum_authority_set(ox_object *h, ox_object *authority);
/** Writes the object string of a datum or vertical datum. */
OX_API void ox_hvdatum_to_string(const ox_object *h, char *buffer);
/** Writes the object string of a datum or vertical datum with AUTHORITY clauses by option. */
OX_API void ox_hvdatum_to_string_ext(ox_object *h, int32_t option, char *buffer);
/** Reads the first DATUM or VDATUM of an object string, or null. */
OX_API ox_object *ox_hvdatum_from_string(const char *text);

/* ------------------------------------------------------------------------ */
/* Unit, prime meridian, spheroid, datum                                    */
/* ------------------------------------------------------------------------ */

/** New unit; `factor` (metres or radians per unit) must be above 0. */
OX_API ox_object *ox_unit_new(const char *name, double factor);
/** Size of one unit in metres or radians; 1.0 for a null or wrong handle. */
OX_API double ox_unit_factor(const ox_object *unit);

/** New prime meridian; |longitude| (degrees) must not exceed 180. */
OX_API ox_object *ox_primem_new(const char *name, double longitude);
/** Longitude of the prime meridian in degrees; 0.0 for a null or wrong handle. */
OX_API double ox_primem_longitude(const ox_object *primem);

/** New spheroid from semi-major axis (> 0) and flattening (0 <= f < 1, not the inverse). */
OX_API ox_object *ox_spheroid_new(const char *name, double axis, double flattening);
/** Semi-major axis; 1.0 for a null or wrong handle. */
OX_API double ox_spheroid_axis(const ox_object *spheroid);
/** Flattening; 0.0 for a null or wrong handle. */
OX_API double ox_spheroid_flattening(const ox_object *spheroid);

/** New datum; takes ownership of `spheroid`. */
OX_API ox_object *ox_datum_new(const char *name, ox_object *spheroid);
/** The datum's own spheroid (borrowed); null for a null or wrong handle. */
OX_API ox_object *ox_datum_spheroid(const ox_object *datum);

/* ------------------------------------------------------------------------ */
/* Geographic coordinate system                                             */
/* ------------------------------------------------------------------------ */

/** New geographic system; takes ownership of the datum, prime meridian and angular unit. */
OX_API ox_object *ox_geogcs_new(const char *name, ox_object *datum, ox_object *primem, ox_object *unit);
/** Borrowed datum of a geographic system. */
OX_API ox_object *ox_geogcs_datum(const ox_object *geogcs);
/** Borrowed prime meridian of a geographic system. */
OX_API ox_object *ox_geogcs_primem(const ox_object *geogcs);
/** Borrowed angular unit of a geographic system. */
OX_API ox_object *ox_geogcs_unit(const ox_object *geogcs);

/* ------------------------------------------------------------------------ */
/* Parameters, projections, projected coordinate systems                    */
/* ------------------------------------------------------------------------ */

/** New parameter; its code is looked up in the parameter list by name. */
OX_API ox_object *ox_parameter_new(const char *name, double value);
/** Value of a parameter; 0.0 for a null or wrong handle. */
OX_API double ox_parameter_value(const ox_object *parameter);
/** Sets the value; 1 on success, 0 for a null or wrong handle. */
OX_API int32_t ox_parameter_value_set(ox_object *parameter, double value);
/** Renames a parameter (its code is kept); 1 on success, else 0. */
OX_API int32_t ox_parameter_name_set(ox_object *parameter, const char *name);
/** Slot (0-15) of a parameter; -1 unknown, -2 null or wrong handle. */
OX_API int32_t ox_parameter_index(const ox_object *parameter);
/** Fills `parameters[16]` with the default parameters of a projection; returns how many. */
OX_API int32_t ox_parameter_projection_defaults(ox_object *projection, ox_object *parameters[16]);
/** Fills `parameters[16]` with the default parameters of a transformation method. */
OX_API int32_t ox_parameter_method_defaults(const ox_object *method, ox_object *parameters[16]);

/** New projection; routines absent are taken from the registry entry of that name. */
OX_API ox_object *ox_projection_new(const char *name, ox_projection_routine forward,
                                    ox_projection_routine inverse, ox_horizon_routine horizon);
/** Forward routine of a projection (an identity routine for a null or wrong handle). */
OX_API ox_projection_routine ox_projection_forward(const ox_object *projection);
/** Inverse routine of a projection (an identity routine for a null or wrong handle). */
OX_API ox_projection_routine ox_projection_inverse(const ox_object *projection);
/** Geographic horizon routine (the world horizon for a null or wrong handle). */
OX_API ox_horizon_routine ox_projection_horizon(const ox_object *projection);
/** Projected horizon routine, or null. */
OX_API ox_horizon_routine ox_projection_horizon_pcs(const ox_object *projection);
/** Raster variant of the geographic horizon, or null. */
OX_API ox_horizon_routine ox_projection_horizon_gcs_raster(const ox_object *projection);
/** Raster variant of the projected horizon, or null. */
OX_API ox_horizon_routine ox_projection_horizon_pcs_raster(const ox_object *projection);

/** New projected system; takes ownership of every part and of the 16 handles of `parameters`. */
OX_API ox_object *ox_projcs_new(const char *name, ox_object *geogcs, ox_object *projection,
                                ox_object *parameters[16], ox_object *unit);
/** Borrowed geographic system of a projected system. */
OX_API ox_object *ox_projcs_geogcs(const ox_object *projcs);
/** Borrowed projection of a projected system. */
OX_API ox_object *ox_projcs_projection(const ox_object *projcs);
/** Borrowed linear unit of a projected system. */
OX_API ox_object *ox_projcs_unit(const ox_object *projcs);
/** Copies the 16 borrowed parameter handles into `parameters` (nothing for a null or wrong handle). */
OX_API void ox_projcs_parameters(const ox_object *projcs, ox_object *parameters[16]);
/** Like `ox_projcs_eq` without comparing the two systems' own names. */
OX_API int32_t ox_projcs_eqnn(const ox_object *a, const ox_object *b);
/** Clone with another linear and/or angular unit, parameters converted. */
OX_API ox_object *ox_projcs_clone_alterunits(const ox_object *projcs, const ox_object *linear_unit,
                                             const ox_object *angular_unit);
/** 1 when the system holds projection constants. */
OX_API int32_t ox_projcs_isconstloaded(const ox_object *projcs);
/** Computes and keeps the projection constants; the constants routine's count, or 0. */
OX_API int32_t ox_projcs_load_constants(ox_object *projcs);
/** Deletes the projection constants, if any. */
OX_API void ox_projcs_unload_constants(ox_object *projcs);

/* ------------------------------------------------------------------------ */
/* Projection driver                                                        */
/* ------------------------------------------------------------------------ */

/** Projects `n` (longitude, latitude) pairs in place; returns the count converted. */
OX_API int32_t ox_geog_to_proj(ox_object *projcs, int32_t n, double *coords);
/** Unprojects `n` (x, y) pairs in place; returns the count converted. */
OX_API int32_t ox_proj_to_geog(ox_object *projcs, int32_t n, double *coords);
/**
 * Unprojects with longitudes returned within half a turn of `center` (in the
 * angular unit; ox_delta_center), the centre reduced exactly once per call
 * whatever its size; a centre that is not finite fails every point (count 0).
 */
OX_API int32_t ox_proj_to_geog_center(ox_object *projcs, int32_t n, double *coords, double center);

/* ------------------------------------------------------------------------ */
/* Horizons: the outline of a projected system's map                         */
/* ------------------------------------------------------------------------ */

/**
 * Horizon of a projected system: the closed rings that bound the area its
 * projection represents (the whole globe about the central meridian for the
 * world maps, the band where a series holds, the visible hemisphere, the net
 * of a polyhedral map ...), as one block freed with `ox_horizon_del`.
 *  - Kinds: OX_HORIZON_GEOGRAPHIC gives (longitude, latitude) pairs in the
 *    angular unit of the system's geographic system (longitudes about its
 *    prime meridian, as `ox_geog_to_proj` takes them); OX_HORIZON_PROJECTED
 *    gives (x, y) in the system's linear unit with the false easting and
 *    northing, as `ox_geog_to_proj` returns them.  The two list the same
 *    boundary points in the same order: vertex i of a projected ring is
 *    vertex i of the geographic ring projected (on a polyhedral map, whose
 *    outline runs along both sides of a cut, the copy of the point on the
 *    ring's side of the cut).  The raster kinds, which only
 *    "Fuller" and "Cube" have, give each face of the polyhedral map as a ring
 *    of its own (for warping an image face by face; the plain kinds give the
 *    outline of the whole net).
 *  - Order: every ring runs counter-clockwise around its area (the area on
 *    the left; in a geographic ring, longitude as x), starts at a corner and
 *    ends with its first vertex repeated.
 *  - Density: every side of a ring (a meridian or parallel of a band, an edge
 *    of a face) is cut into 32 equal steps of the routine's parameter; a
 *    boundary point that the projection maps to one point (a pole) repeats.
 */
typedef struct ox_horizon ox_horizon;

/** Horizon kinds for `ox_generate_horizon`. */
#define OX_HORIZON_GEOGRAPHIC        0
#define OX_HORIZON_PROJECTED         1
#define OX_HORIZON_GEOGRAPHIC_RASTER 2
#define OX_HORIZON_PROJECTED_RASTER  3

/** The horizon of a kind of a projected system; null for any other handle, a kind the projection lacks or no memory. */
OX_API ox_horizon *ox_generate_horizon(const ox_object *projcs, int32_t kind);
/** Releases a horizon; null is ignored. */
OX_API void ox_horizon_del(ox_horizon *horizon);
/** The kind a horizon was generated as; -1 for null. */
OX_API int32_t ox_horizon_kind(const ox_horizon *horizon);
/** Number of closed rings of a horizon; 0 for null. */
OX_API int32_t ox_horizon_ring_count(const ox_horizon *horizon);
/** Number of vertices of a ring (first vertex repeated last); 0 for null or a ring out of range. */
OX_API int32_t ox_horizon_ring_size(const ox_horizon *horizon, int32_t ring);
/** Copies at most `max_vertices` (x, y) pairs of a ring into `vertices`; returns how many. */
OX_API int32_t ox_horizon_ring(const ox_horizon *horizon, int32_t ring, int32_t max_vertices, double *vertices);
/** Writes {min x, min y, max x, max y} of every ring into `extent`; 1 on success, 0 for null. */
OX_API int32_t ox_horizon_extent(const ox_horizon *horizon, double extent[4]);

/* ------------------------------------------------------------------------ */
/* Projected-system summary                                                 */
/* ------------------------------------------------------------------------ */

/** Projection families (`ox_pcsinfo.family`). */
#define OX_FAMILY_CYLINDRICAL       0
#define OX_FAMILY_PSEUDOCYLINDRICAL 1
#define OX_FAMILY_CONIC             2
#define OX_FAMILY_PSEUDOCONIC       3
#define OX_FAMILY_AZIMUTHAL         4
#define OX_FAMILY_POLYCONIC         5
#define OX_FAMILY_POLYHEDRAL        6
#define OX_FAMILY_OTHER             7

/** What a projection preserves (`ox_pcsinfo.preserves`); 0 for a compromise. */
#define OX_PRESERVES_SHAPE    1 /* conformal */
#define OX_PRESERVES_AREA     2 /* equal-area */
#define OX_PRESERVES_DISTANCE 4 /* equidistant along some lines */

/**
 * Summary of a projected system for presenting it to a person.  Texts are
 * null-terminated; angles are degrees whatever the system's unit; a value
 * that does not exist is NaN.
 */
typedef struct ox_pcsinfo {
    char name[OX_NAME_SIZE];             /* the projected system's name */
    char projection[OX_NAME_SIZE];       /* its projection's name */
    int32_t projection_code;             /* the registry code, -1 when not registered */
    int32_t family;                      /* OX_FAMILY_* */
    char family_name[32];                /* "Cylindrical", "Pseudocylindrical", ... */
    int32_t preserves;                   /* OX_PRESERVES_* bits */
    char preserves_name[32];             /* "conformal", "equal-area", "equidistant" or "compromise" */
    double central_meridian;             /* degrees from the prime meridian */
    double origin_latitude;              /* degrees */
    double prime_meridian;               /* degrees east of Greenwich */
    double extent[4];                    /* the projected horizon's min x, min y, max x, max y (linear unit) */
    double geographic_extent[4];         /* the horizon's min longitude, min latitude, max longitude, max latitude */
    char linear_unit[OX_NAME_SIZE];      /* the linear unit's name */
    double linear_factor;                /* metres per linear unit */
    char angular_unit[OX_NAME_SIZE];     /* the geographic system's angular unit */
    double angular_factor;               /* radians per angular unit */
    int32_t parameter_count;             /* parameters listed below, in slot order */
    char parameter_names[OX_PARAMETER_SLOTS][OX_NAME_SIZE];
    double parameter_values[OX_PARAMETER_SLOTS]; /* as the system states them (its units) */
} ox_pcsinfo;

/**
 * Fills `info` with the summary of a projected system: its projection's
 * family and what it preserves, the central meridian and the latitude of
 * origin (the projection's parameters where it has them, else the point at
 * its natural origin), the extent of its horizon, its units and its
 * parameters.  1 on success; 0 (and `info` cleared) for a null or wrong
 * handle or a null `info`.
 */
OX_API int32_t ox_pcsinfo_generate(const ox_object *projcs, ox_pcsinfo *info);

/* ------------------------------------------------------------------------ */
/* Ellipsoid mathematics (radians; a in any length unit; e2 = e squared)     */
/* ------------------------------------------------------------------------ */

/** Longitude reduced to [-pi, pi]. */
OX_API double ox_delta(double lambda);
/** Longitude reduced to [center - pi, center + pi]. */
OX_API double ox_delta_center(double lambda, double center);
/** 1 when x and y are equal within the library-wide tolerance 2^-48. */
OX_API int32_t ox_eq(double x, double y);
/** sqrt(1 - e2 sin^2 phi). */
OX_API double ox_w(double e2, double phi);
/** Meridian radius of curvature. */
OX_API double ox_m(double a, double e2, double phi);
/** Prime-vertical radius of curvature. */
OX_API double ox_n(double a, double e2, double phi);
/** Meridian arc length from the equator to phi. */
OX_API double ox_q(double a, double e2, double phi);
/** Quarter meridian (equator to pole). */
OX_API double ox_q90(double a, double e2);
/** Rectifying radius. */
OX_API double ox_rect_r(double a, double e2);
/** Authalic radius. */
OX_API double ox_auth_r(double a, double e2);
/** Geocentric latitude of a geodetic latitude. */
OX_API double ox_phi_to_phig(double e2, double phi);
/** Geodetic latitude of a geocentric latitude. */
OX_API double ox_phig_to_phi(double e2, double psi);
/** Geodetic (phi, lambda, h) to earth-centred Cartesian (x, y, z). */
OX_API void ox_curv_to_cart(double a, double e2, double phi, double lambda, double h,
                            double *x, double *y, double *z);
/** Earth-centred Cartesian (x, y, z) to geodetic (phi, lambda, h). */
OX_API void ox_cart_to_curv(double a, double e2, double x, double y, double z,
                            double *phi, double *lambda, double *h);
/** Conformal latitude of a geodetic latitude. */
OX_API double ox_phi_to_chi(double e2, double phi);
/** Geodetic latitude of a conformal latitude. */
OX_API double ox_chi_to_phi(double e2, double chi);
/** Authalic latitude of a geodetic latitude. */
OX_API double ox_phi_to_beta(double e2, double phi);
/** Geodetic latitude of an authalic latitude. */
OX_API double ox_beta_to_phi(double e2, double beta);
/** Rectifying latitude of a geodetic latitude. */
OX_API double ox_phi_to_mu(double e2, double phi);
/** Geodetic latitude of a rectifying latitude. */
OX_API double ox_mu_to_phi(double e2, double mu);
/** Reduced (parametric) latitude eta of a geodetic latitude: tan eta = sqrt(1 - e2) tan phi. */
OX_API double ox_phi_to_eta(double e2, double phi);
/** Geodetic latitude of a reduced (parametric) latitude. */
OX_API double ox_eta_to_phi(double e2, double eta);

/* ------------------------------------------------------------------------ */
/* Geodesics (the shortest lines on the ellipsoid)                          */
/*                                                                          */
/* Karney's algorithms (J. Geodesy 87, 2013), series to order 6: distances  */
/* within 15 nanometres on the Earth, nearly antipodal points, meridians,   */
/* the equator, the poles and coincident points included; on a sphere       */
/* (|e2| < 2^-48) the closed formulas of spherical trigonometry.  Angles in */
/* radians; azimuths clockwise from north in [-pi, pi]; `a` in any length   */
/* unit (the distance is in the same unit).  Accepted: a finite a > 0,      */
/* 0 <= e2 <= 0.04 (flattening up to about 1/50), finite longitudes,        */
/* latitudes within [-pi/2, pi/2] (the double nearest pi/2 is the pole),    */
/* finite distances and azimuths.  Anything else returns 0 and sets every   */
/* output that is not null to the failure NaN.  Outputs may be null.        */
/* ------------------------------------------------------------------------ */

/**
 * Inverse problem: the length of the shortest geodesic between two points,
 * the azimuth at point 1 towards point 2 (`azimuth12`) and the azimuth at
 * point 2 back towards point 1 (`azimuth21`: the forward azimuth of the
 * geodesic at point 2 plus pi, reduced to (-pi, pi]).  Returns 1, or 0.
 */
OX_API int32_t ox_geodesic_distance(double a, double e2, double lon1, double lat1, double lon2, double lat2,
                                    double *distance, double *azimuth12, double *azimuth21);
/**
 * Direct problem: the point reached from (lon1, lat1) along the geodesic that
 * leaves it at `azimuth` after `distance` (negative: backwards); `lon2` is
 * reduced to [-pi, pi].  Returns 1, or 0.
 */
OX_API int32_t ox_geodesic_coordinate(double a, double e2, double lon1, double lat1, double distance,
                                      double azimuth, double *lon2, double *lat2);

/* ------------------------------------------------------------------------ */
/* Grid references: GEOREF and MGRS                                         */
/*                                                                          */
/* Coordinates are (longitude, latitude) pairs in the angular unit of       */
/* `geogcs`; `refs` is an array of `n` caller-owned texts.  Encoders write  */
/* each reference into its buffer (which must hold OX_GEOREF_SIZE or        */
/* OX_MGRS_SIZE characters; a null entry is skipped) and return the number  */
/* written; a point that cannot be encoded leaves "".  Decoders accept null */
/* entries, write NaN (the failure value) for a reference they cannot read  */
/* and return the number read.  A null or wrong-typed `geogcs`, null arrays */
/* or n < 1 convert nothing (and return 0).                                 */
/* ------------------------------------------------------------------------ */

/** Buffer size for one GEOREF reference (at most 24 characters). */
#define OX_GEOREF_SIZE 32
/** Buffer size for one MGRS reference (at most 30 characters). */
#define OX_MGRS_SIZE 32

/**
 * GEOREF references: four letters (15-degree longitude zone and latitude
 * band, 1-degree steps) and `digits` minute digits per axis, clamped to 2..9
 * (2 whole minutes, then decimals); truncated, or rounded when `round` is not
 * zero.  Latitudes beyond the poles are taken at the pole; NaN or infinite
 * coordinates give "" and are not counted.
 */
OX_API int32_t ox_geog_to_georef(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits,
                                 int32_t round, char **refs);
/**
 * Reads GEOREF references (upper case only; spaces around are ignored, as is
 * anything before the zone letter) to the south-west corner of the cell.
 */
OX_API int32_t ox_georef_to_geog(const ox_object *geogcs, int32_t n, char **refs, double *coords);

/*
 * MGRS modes of the extended functions: a lettering of the 100 km squares,
 * plus flags.
 *  - OX_MGRS_LETTERING_CURRENT: rows lettered from "A" at the equator in odd
 *    zones and from "F" in even zones.
 *  - OX_MGRS_LETTERING_OLDER: the older lettering, rows shifted by ten
 *    letters ("L" at the equator in odd zones, "R" in even zones).
 *  - OX_MGRS_LETTERING_AUTO: the older lettering when the spheroid of
 *    `geogcs` is one of these (semi-major axis within 1 mm, inverse
 *    flattening within 1e-5), else the current one:
 *      Bessel 1841           6377397.155      299.1528128
 *      Bessel Namibia        6377483.865      299.1528128
 *      Clarke 1866           6378206.4        294.9786982139058
 *      Clarke 1880 (RGS)     6378249.145      293.465
 *      Clarke 1880 (Arc)     6378249.145      293.4663077
 *      Clarke 1880           6378249.144808   293.4663076556299
 *      Clarke 1880 (IGN)     6378249.2        293.4660212936294
 *      Clarke 1880 (SGA)     6378249.2        293.46598
 *      Clarke 1880 (Benoit)  6378300.789      293.466315538985
 *      Clarke 1880 (ft)      6378306.3696     293.4663076556299
 *    (the spheroids for which the 100 km squares were lettered the older
 *    way; International 1924 and the modern spheroids use the current one).
 *  - OX_MGRS_CENTER (decoding): the centre of the square instead of its
 *    south-west corner.
 *  - OX_MGRS_SPACES (encoding): "33U XP 12345 67890" instead of
 *    "33UXP1234567890".
 * Any other value refuses the call.
 */
#define OX_MGRS_LETTERING_AUTO    0
#define OX_MGRS_LETTERING_CURRENT 1
#define OX_MGRS_LETTERING_OLDER   2
#define OX_MGRS_CENTER            0x10
#define OX_MGRS_SPACES            0x20

/**
 * MGRS references on the datum of `geogcs` (longitudes taken from its prime
 * meridian to Greenwich): UTM zones between 80S and 84N with the Norway (32V)
 * and Svalbard (31X-37X) exceptions, UPS beyond; `digits` per axis clamped
 * to 0..11 (0: the 100 km square only, 5: metres, 6 to 11: decimetres down
 * to micrometres); truncated, or rounded when `round` is not zero (a carry
 * stays within the point's zone and band).  Automatic lettering.  NaN,
 * infinite or out-of-range (|latitude| > 90 degrees) coordinates give "".
 */
OX_API int32_t ox_geog_to_mgrs(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits,
                               int32_t round, char **refs);
/**
 * Reads MGRS references ("33UXP1234567890", "33U XP 12345 67890", "4QFJ1234";
 * upper case only, equal digit counts) to the south-west corner of the
 * square, with the automatic lettering.  Refused (NaN): any other character,
 * a zone or band that does not exist, a square letter outside the zone's set
 * and a square that lies outside its zone and band.
 */
OX_API int32_t ox_mgrs_to_geog(const ox_object *geogcs, int32_t n, char **refs, double *coords);
/** `ox_geog_to_mgrs` with a mode (lettering, OX_MGRS_SPACES). */
OX_API int32_t ox_geog_to_mgrs_extended(const ox_object *geogcs, int32_t n, const double *coords, int32_t digits,
                                        int32_t round, int32_t mode, char **refs);
/** `ox_mgrs_to_geog` with a mode (lettering, OX_MGRS_CENTER). */
OX_API int32_t ox_mgrs_to_geog_extended(const ox_object *geogcs, int32_t n, char **refs, int32_t mode,
                                        double *coords);

/* ------------------------------------------------------------------------ */
/* Transformation methods and geographic transformations                    */
/* ------------------------------------------------------------------------ */

/** New method; routines absent are taken from the registry entry of that name (exact match). */
OX_API ox_object *ox_method_new(const char *name, ox_method_routine forward, ox_method_routine inverse);
/** Forward routine of a method (a do-nothing routine for a null or wrong handle). */
OX_API ox_method_routine ox_method_forward(const ox_object *method);
/** Inverse routine of a method (a do-nothing routine for a null or wrong handle). */
OX_API ox_method_routine ox_method_inverse(const ox_object *method);

/** New transformation; takes ownership of both systems, the method and the 16 parameter handles. */
OX_API ox_object *ox_geogtran_new(const char *name, ox_object *geogcs1, ox_object *geogcs2,
                                  ox_object *method, ox_object *parameters[16]);
/** Borrowed source geographic system. */
OX_API ox_object *ox_geogtran_geogcs1(const ox_object *geogtran);
/** Borrowed target geographic system. */
OX_API ox_object *ox_geogtran_geogcs2(const ox_object *geogtran);
/** Borrowed method. */
OX_API ox_object *ox_geogtran_method(const ox_object *geogtran);
/** Copies the 16 borrowed parameter handles into `parameters`. */
OX_API void ox_geogtran_parameters(const ox_object *geogtran, ox_object *parameters[16]);
/** 1 when the transformation holds loaded grid constants. */
OX_API int32_t ox_geogtran_isconstloaded(const ox_object *geogtran);
/** Loads the grid constants of a grid method; 1 on success, else 0. */
OX_API int32_t ox_geogtran_load_constants(ox_object *geogtran);
/** Deletes the loaded constants, if any. */
OX_API void ox_geogtran_unload_constants(ox_object *geogtran);

/* ------------------------------------------------------------------------ */
/* Authority                                                                */
/* ------------------------------------------------------------------------ */

/** New authority; `authcode` must be 1 or more; the version keeps 15 characters. */
OX_API ox_object *ox_authority_new(const char *name, int32_t authcode, const char *version);
OX_API void ox_authority_del(ox_object *h);
OX_API ox_object *ox_authority_clone(const ox_object *h);
/** 1 when names (name comparison) and codes are equal; the version is not compared. */
OX_API int32_t ox_authority_eq(const ox_object *a, const ox_object *b);
OX_API int32_t ox_authority_p(const ox_object *h);
OX_API void ox_authority_name(const ox_object *h, char *buffer);
OX_API int32_t ox_authority_status(const ox_object *h);
/** The code within the authority; 0 for a null or wrong handle. */
OX_API int32_t ox_authority_authcode(const ox_object *h);
/** Copies the version text (at most 15 characters) into `buffer`. */
OX_API void ox_authority_version(const ox_object *h, char *buffer);
/** Writes AUTHORITY["name",code]; the version is never written. */
OX_API void ox_authority_to_string(const ox_object *h, char *buffer);
/** Same as `ox_authority_to_string`; the option is ignored. */
OX_API void ox_authority_to_string_ext(ox_object *h, int32_t option, char *buffer);
OX_API ox_object *ox_authority_from_string(const char *text);

/* ------------------------------------------------------------------------ */
/* Vertical, geocentric, horizontal-transformation and adjusted systems     */
/* ------------------------------------------------------------------------ */

/** New vertical datum. */
OX_API ox_object *ox_vdatum_new(const char *name);

/** New vertical system on a datum or vertical datum; takes ownership of every part. */
OX_API ox_object *ox_vertcs_new(const char *name, ox_object *hvdatum, ox_object *parameters[16],
                                ox_object *unit);
/** Borrowed datum (a datum or a vertical datum). */
OX_API ox_object *ox_vertcs_hvdatum(const ox_object *vertcs);
/** Borrowed linear unit. */
OX_API ox_object *ox_vertcs_unit(const ox_object *vertcs);
/** Zeroes `parameters[16]`, then copies the borrowed parameter handles. */
OX_API void ox_vertcs_parameters(const ox_object *vertcs, ox_object *parameters[16]);
/** Clone with another linear unit; the vertical shift is converted. */
OX_API ox_object *ox_vertcs_clone_alterunits(const ox_object *vertcs, const ox_object *unit);

/** New horizontal-plus-vertical pair; either part may be null, not both. */
OX_API ox_object *ox_hvcoordsys_new(ox_object *coordsys, ox_object *vertcs);
/** Borrowed horizontal system (geogcs or projcs), or null. */
OX_API ox_object *ox_hvcoordsys_coordsys(const ox_object *hvcoordsys);
/** Borrowed vertical system, or null. */
OX_API ox_object *ox_hvcoordsys_vertcs(const ox_object *hvcoordsys);

/** New geocentric system. */
OX_API ox_object *ox_geoxyzcs_new(const char *name, ox_object *geogcs, ox_object *unit);
/** Borrowed geographic system of a geocentric system. */
OX_API ox_object *ox_geoxyzcs_geogcs(const ox_object *geoxyzcs);
/** Borrowed linear unit of a geocentric system. */
OX_API ox_object *ox_geoxyzcs_unit(const ox_object *geoxyzcs);

/** New horizontal-transformation method; absent routines come from the registry (exact name). */
OX_API ox_object *ox_htmethod_new(const char *name, ox_htmethod_routine forward,
                                  ox_htmethod_routine inverse);
/** Forward routine (a do-nothing routine for a null or wrong handle). */
OX_API ox_htmethod_routine ox_htmethod_forward(const ox_object *htmethod);
/** Inverse routine (a do-nothing routine for a null or wrong handle). */
OX_API ox_htmethod_routine ox_htmethod_inverse(const ox_object *htmethod);

/** New named array; the `count` values are copied (count 0 allowed). */
OX_API ox_object *ox_array_new(const char *name, int32_t count, const double *values);
/** Number of values; 0 for a null or wrong handle. */
OX_API int32_t ox_array_num_values(const ox_object *array);
/** Borrowed block of values, or null. */
OX_API const double *ox_array_values_pointer(const ox_object *array);
/** Copies the values into `out` (room for `ox_array_num_values` values). */
OX_API void ox_array_values_copy(const ox_object *array, double *out);
/** Overwrites the first `count` values (not checked against the array's count); 1 or 0. */
OX_API int32_t ox_array_values_set(ox_object *array, int32_t count, const double *values);
/** Renames the array; 1 on success, else 0. */
OX_API int32_t ox_array_name_set(ox_object *array, const char *name);
/** Default (identity) coefficients "Coefficients" of an affine or projective method, or null. */
OX_API ox_object *ox_array_htmethod_default(const ox_object *htmethod);

/** New adjusted system: `coordsys` adjusted by `htmethod` with coefficients `array`, in `unit`. */
OX_API ox_object *ox_adjhcs_new(const char *name, ox_object *coordsys, ox_object *htmethod,
                                ox_object *array, ox_object *unit);
/** Borrowed base coordinate system (geogcs or projcs). */
OX_API ox_object *ox_adjhcs_coordsys(const ox_object *adjhcs);
/** Borrowed method. */
OX_API ox_object *ox_adjhcs_htmethod(const ox_object *adjhcs);
/** Borrowed coefficient array. */
OX_API ox_object *ox_adjhcs_array(const ox_object *adjhcs);
/** Borrowed unit of the adjusted coordinates. */
OX_API ox_object *ox_adjhcs_unit(const ox_object *adjhcs);
/**
 * Converts `n` points in place from the adjusted system to its base
 * coordinate system: the coordinates are scaled from the adjusted unit to the
 * base system's unit, then the method's inverse is applied with the array's
 * coefficients.  Returns the count converted (0 when the coefficients cannot
 * be inverted, are too few for the method, or the handle is wrong).
 */
OX_API int32_t ox_adjhcs_to_coordsys(const ox_object *adjhcs, int32_t n, double *points);
/**
 * Converts `n` points in place from the base coordinate system to the
 * adjusted system: the method's forward with the array's coefficients, then
 * scaling from the base unit to the adjusted unit.  Returns the count.
 */
OX_API int32_t ox_coordsys_to_adjhcs(const ox_object *adjhcs, int32_t n, double *points);

/* ------------------------------------------------------------------------ */
/* Catalogue: definition strings, code ranges, factory, predefined lists    */
/* ------------------------------------------------------------------------ */

/** One band of codes issued by one authority (inclusive bounds). */
typedef struct ox_coderange {
    int32_t low;
    int32_t high;
    const char *authority; /* "EPSG", "MAVO" or "CUSTOM" */
    const char *version;   /* "6.13", "9.3.0" or "" */
} ox_coderange;

/** A constant set of code bands for one kind of object. */
typedef struct ox_coderange_set {
    int32_t count;
    const ox_coderange *ranges;
} ox_coderange_set;

/** One entry of a predefined list: the code asked and the built object's name. */
typedef struct ox_predefined_entry {
    int32_t code;
    char name[OX_NAME_SIZE];
} ox_predefined_entry;

/** Code of a definition string ("OX_GCS_WGS_1984") or of leading digits; 0 when unknown. */
OX_API int32_t ox_factory_defstring_to_int(const char *text);
/** Canonical definition string of a code (a constant; never freed), or null. */
OX_API const char *ox_factory_int_to_defstring(int32_t code);

OX_API const ox_coderange_set *ox_factory_coderanges_angular_unit(void);
OX_API const ox_coderange_set *ox_factory_coderanges_linear_unit(void);
OX_API const ox_coderange_set *ox_factory_coderanges_unit(void);
OX_API const ox_coderange_set *ox_factory_coderanges_spheroid(void);
OX_API const ox_coderange_set *ox_factory_coderanges_datum(void);
OX_API const ox_coderange_set *ox_factory_coderanges_primem(void);
OX_API const ox_coderange_set *ox_factory_coderanges_geogcs(void);
OX_API const ox_coderange_set *ox_factory_coderanges_htmethod(void);
OX_API const ox_coderange_set *ox_factory_coderanges_method(void);
OX_API const ox_coderange_set *ox_factory_coderanges_geogtran(void);
OX_API const ox_coderange_set *ox_factory_coderanges_projection(void);
OX_API const ox_coderange_set *ox_factory_coderanges_parameter(void);
OX_API const ox_coderange_set *ox_factory_coderanges_projcs(void);
OX_API const ox_coderange_set *ox_factory_coderanges_vdatum(void);
OX_API const ox_coderange_set *ox_factory_coderanges_vertcs(void);
/** 1 when a band of `set` contains `code` (bounds inclusive), else 0. */
OX_API int32_t ox_factory_coderanges_check(const ox_coderange_set *set, int32_t code);

/* Sorted distinct codes of a kind's definition strings, 0-terminated; free with
 * ox_factory_codelist_del.  `count` (may be null) receives the number of codes. */
OX_API int32_t *ox_factory_geogcs_codelist(int32_t *count);
OX_API int32_t *ox_factory_projcs_codelist(int32_t *count);
OX_API int32_t *ox_factory_vertcs_codelist(int32_t *count);
OX_API int32_t *ox_factory_datum_codelist(int32_t *count);
OX_API int32_t *ox_factory_vdatum_codelist(int32_t *count);
OX_API int32_t *ox_factory_geogtran_codelist(int32_t *count);
OX_API int32_t *ox_factory_angular_unit_codelist(int32_t *count);
OX_API int32_t *ox_factory_linear_unit_codelist(int32_t *count);
OX_API int32_t *ox_factory_primem_codelist(int32_t *count);
OX_API int32_t *ox_factory_spheroid_codelist(int32_t *count);
OX_API int32_t *ox_factory_method_codelist(int32_t *count);
OX_API int32_t *ox_factory_htmethod_codelist(int32_t *count);
OX_API int32_t *ox_factory_projection_codelist(int32_t *count);
OX_API int32_t *ox_factory_parameter_codelist(int32_t *count);
/** Frees a code list. */
OX_API void ox_factory_codelist_del(int32_t *list);

/* Building by code.  Every kind builder takes the codes of its kind's bands
 * and, beyond them, the registry's own codes of the systems the classic bands
 * do not hold: the current EPSG geographic 2D and projected systems, datums,
 * ellipsoids, units and transformations outside the bands (GDA2020 7844 and
 * MGA 7855, JGD2011 6668-6687, NAD83(2011) 6318 and 6350-6627, 5070, 5514,
 * 6933, ...), stamped with authority "EPSG" and the version of the registry
 * the catalogue was derived from ("10.076").  The bands themselves, the
 * generic `ox_factory` and `ox_factory_code` keep to the bands, so
 * `ox_factory(6677)` is still a datum code while `ox_factory_projcs(6677)`
 * is JGD2011 / Japan Plane Rectangular CS IX; these systems carry no
 * definition string. */
/** Builds the object of whatever kind the code's range names, or null. */
OX_API ox_object *ox_factory(int32_t code);
OX_API ox_object *ox_factory_unit(int32_t code);
OX_API ox_object *ox_factory_spheroid(int32_t code);
OX_API ox_object *ox_factory_primem(int32_t code);
OX_API ox_object *ox_factory_datum(int32_t code);
OX_API ox_object *ox_factory_geogcs(int32_t code);
OX_API ox_object *ox_factory_projcs(int32_t code);
OX_API ox_object *ox_factory_vdatum(int32_t code);
OX_API ox_object *ox_factory_vertcs(int32_t code);
OX_API ox_object *ox_factory_geogtran(int32_t code);
OX_API ox_object *ox_factory_projection(int32_t code);
OX_API ox_object *ox_factory_parameter(int32_t code);
OX_API ox_object *ox_factory_method(int32_t code);
OX_API ox_object *ox_factory_htmethod(int32_t code);
/** Catalogue code of an object (looked up once, then stamped on it); 0 when none. */
OX_API int32_t ox_factory_code(ox_object *object);

/* Scores of identification candidates, best first. */
#define OX_IDENTIFY_EXACT 100             /* names and parameters equal */
#define OX_IDENTIFY_PARAMETERS 90         /* parameters and datum name equal, the system named otherwise */
#define OX_IDENTIFY_EQUIVALENT_DATUM 80   /* parameters equal, on a datum of another name and the same figure */

/** One candidate of an identification: a catalogue code and its score. */
typedef struct ox_identify_candidate {
    int32_t code;
    int32_t score;
} ox_identify_candidate;

/* Identification of a projected or geographic system by its parameters: the
 * catalogue systems (the bands and the registry's systems outside them) with
 * the same projection, every parameter within 1e-9 relative (an omitted
 * parameter takes the projection's default), the same spheroid, prime
 * meridian and units, ranked by score and then in catalogue order.  Writes
 * at most `capacity` candidates and returns how many were found (0 for null,
 * another kind or no match).  Candidates of one score come in the order of
 * the words their names share with the object's, then in catalogue order.
 * The catalogue's index is built once, on the first call (some tens of
 * milliseconds), and shared by every thread; a query then takes tens of
 * microseconds. */
/** The catalogue systems equivalent to a PROJCS or GEOGCS, best first; returns the number found. */
OX_API int32_t ox_factory_identify(const ox_object *object, ox_identify_candidate *candidates, int32_t capacity);

/** Sets (null or "" clears) the object-edit directory. */
OX_API void ox_objedithome_setdir(const char *directory);
/** Sets the object-edit directory from a provider; null clears it for good. */
OX_API void ox_objedithome_setfunc(ox_directory_provider provider);

/* Lists of every current catalogue object of a kind, sorted by name; free
 * with ox_table_del.  `count` must not be null. */
OX_API ox_predefined_entry *ox_predefined_projcs(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_geogcs(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_vertcs(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_geogtran(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_datum(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_vdatum(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_spheroid(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_primem(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_projection(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_parameter(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_method(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_htmethod(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_angular_unit(int32_t *count);
OX_API ox_predefined_entry *ox_predefined_linear_unit(int32_t *count);
/** Frees a predefined list; null is ignored. */
OX_API void ox_table_del(ox_predefined_entry *table);

/* ------------------------------------------------------------------------ */
/* Legacy projection files                                                  */
/*                                                                          */
/* The keyword-per-line text of older GIS software, for example             */
/*   Projection    STATEPLANE                                               */
/*   Fipszone      405                                                      */
/*   Datum         NAD83                                                    */
/*   Units         FEET                                                     */
/* Readers return null and writers a negative code on failure; both write   */
/* the outcome (0 or an OX_PRJ_* code) to `error`.  A reader given a null   */
/* `error` returns null and does nothing else.  docs/PRJFILE.md describes   */
/* the keywords, the projection names and their parameter lines.            */
/* ------------------------------------------------------------------------ */

/** No text (null or empty), fewer than two line ends, or a null path or buffer. */
#define OX_PRJ_NO_TEXT (-100)
/** The file cannot be opened, read (a directory, over 1 MiB) or created. */
#define OX_PRJ_CANNOT_OPEN (-101)
/** A line begins with no known keyword, holds a NUL byte or is over 255 characters. */
#define OX_PRJ_UNKNOWN_KEYWORD (-102)
/** More than 16 parameter lines. */
#define OX_PRJ_TOO_MANY_PARAMETERS (-103)
/** A numeric ZUNITS value that is not a finite number above 0. */
#define OX_PRJ_BAD_ZUNITS (-104)
/** No vertical unit: ZUNITS empty or beginning with NO. */
#define OX_PRJ_NO_ZUNITS (-110)
/** Memory exhausted, or the text (or system) cannot be built (or written). */
#define OX_PRJ_CANNOT_BUILD (-200)
/** Size of a buffer that every `_to_prjstring` may fill. */
#define OX_PRJSTRING_SIZE 8192
/** Writer option bit: projection and parameter lines even for UTM, state plane and grid systems. */
#define OX_PRJ_EXPLICIT 1

/** Geographic or projected system of a legacy projection file, or null. */
OX_API ox_object *ox_coordsys_from_prjfile(const char *path, int32_t *error);
/** Geographic or projected system of a legacy projection text, or null. */
OX_API ox_object *ox_coordsys_from_prjstring(const char *text, int32_t *error);
/** Vertical system of the ZUNITS line of a legacy projection file, or null. */
OX_API ox_object *ox_vertcs_from_prjfile(const char *path, int32_t *error);
/** Vertical system of the ZUNITS line of a legacy projection text, or null. */
OX_API ox_object *ox_vertcs_from_prjstring(const char *text, int32_t *error);
/** Horizontal system and vertical system (null without ZUNITS) of a legacy projection file. */
OX_API ox_object *ox_hvcoordsys_from_prjfile(const char *path, int32_t *error);
/** Horizontal system and vertical system (null without ZUNITS) of a legacy projection text. */
OX_API ox_object *ox_hvcoordsys_from_prjstring(const char *text, int32_t *error);
/** Linear unit of the ZUNITS line of a legacy projection file, or null. */
OX_API ox_object *ox_zunit_from_prjfile(const char *path, int32_t *error);
/** Linear unit of the ZUNITS line of a legacy projection text, or null. */
OX_API ox_object *ox_zunit_from_prjstring(const char *text, int32_t *error);
/** Writes a legacy projection file ("Zunits NO"); returns 0 or an OX_PRJ_* code (also in `error`). */
OX_API int32_t ox_coordsys_to_prjfile(const ox_object *coordsys, int32_t option, const char *path, int32_t *error);
/** Writes a legacy projection text into `buffer` (OX_PRJSTRING_SIZE); returns 0 or an OX_PRJ_* code. */
OX_API int32_t ox_coordsys_to_prjstring(const ox_object *coordsys, int32_t option, char *buffer, int32_t *error);
/** As ox_coordsys_to_prjfile, with the ZUNITS line of `vertcs` (null: "NO"). */
OX_API int32_t ox_coordsys_vertcs_to_prjfile(const ox_object *coordsys, const ox_object *vertcs, const char *path,
                                             int32_t *error);
/** As ox_coordsys_to_prjstring, with the ZUNITS line of `vertcs` (null: "NO"). */
OX_API int32_t ox_coordsys_vertcs_to_prjstring(const ox_object *coordsys, const ox_object *vertcs, char *buffer,
                                               int32_t *error);
/** Writes the two halves of a horizontal and vertical pair as a legacy projection file. */
OX_API int32_t ox_hvcoordsys_to_prjfile(const ox_object *hvcoordsys, const char *path, int32_t *error);
/** Writes the two halves of a horizontal and vertical pair as a legacy projection text. */
OX_API int32_t ox_hvcoordsys_to_prjstring(const ox_object *hvcoordsys, char *buffer, int32_t *error);

#ifdef __cplusplus
}
#endif

#endif /* OX_H */
