// The subcommands of the `ox` tool.  Each returns the process exit status.
#pragma once

#include <cstdint>
#include <cstdio>

#include "ox.h"

namespace oxtool {

struct Command {
    const char *name;
    const char *synopsis;  // one line for the overview
    const char *help;      // full help text of the subcommand
    int (*run)(int argc, char **argv);  // argv[0] is the subcommand's name
};

// Reads a whole file ("-" for standard input) into a string; false on failure.
bool read_text(const char *path, char *buffer, size_t size);
// Reads the object of an object string by its leading keyword; gives the
// object's delete and writer functions.  Null when the text is not readable.
ox_object *read_any(const char *text, void (**del)(ox_object *), void (**write)(ox_object *, int32_t, char *));

// A kind of object: its name on the command line, its keyword, its test,
// builder, reader, writer and delete function.
struct ObjectKind {
    const char *name;
    const char *keyword;
    int32_t (*is)(const ox_object *);
    ox_object *(*build)(int32_t);
    ox_object *(*read)(const char *);
    void (*write)(ox_object *, int32_t, char *);
    void (*del)(ox_object *);
};
extern const ObjectKind kObjectKinds[];
extern const int kObjectKindCount;
// The kind of that name ("projcs", "datum", ...), or null.
const ObjectKind *object_kind(const char *name);
// The kind of an object, or null.
const ObjectKind *kind_of(const ox_object *h);

// A catalogue object named on the command line: "EPSG:7855", a plain code
// ("7855") or a definition string ("OX_PCS_GDA_1994_MGA_ZONE_55", whose
// prefix also gives the kind).
struct CatalogueName {
    int32_t code = 0;
    const ObjectKind *kind = nullptr;  // from a definition string's prefix
};
// False when the text names no catalogue object in these forms.
bool parse_system(const char *arg, CatalogueName *out);
// The object of a name: of `kind` when given (or when the name's prefix
// says), else the first that builds of the coordinate-system kinds
// (projected, geographic, vertical), the kind of the code's range and the
// other kinds.  `built` (may be null) receives the kind.  Null when nothing
// builds.
ox_object *catalogue_object(const CatalogueName &name, const ObjectKind *kind, const ObjectKind **built);

// The projected system of a catalogue name; null for anything else.
ox_object *catalogue_projcs(const char *arg);

// The object string of an object with as many AUTHORITY clauses as still
// read back (every object, else the outermost one, else none); false when
// not even the plain text reads back.
bool readable_text(ox_object *h, char text[OX_OBJSTRING_SIZE]);

// The projected system that a command-line argument names: a catalogue code
// or definition string, an object string starting with PROJCS, or the name of
// a file that holds one.  Null when none can be read.
ox_object *load_projcs(const char *arg);

int cmd_version(int argc, char **argv);
int cmd_parse(int argc, char **argv);
int cmd_defaults(int argc, char **argv);
int cmd_project(int argc, char **argv);
int cmd_unproject(int argc, char **argv);
int cmd_info(int argc, char **argv);
int cmd_list(int argc, char **argv);
int cmd_code(int argc, char **argv);
int cmd_identify(int argc, char **argv);
int cmd_prjfile(int argc, char **argv);
int cmd_georef(int argc, char **argv);
int cmd_mgrs(int argc, char **argv);
int cmd_geodesic(int argc, char **argv);
int cmd_horizon(int argc, char **argv);

// Writes the summary of a projected system (ox_pcsinfo_generate) as lines
// that start with "# "; nothing for any other object.
void print_pcs_summary(FILE *out, const ox_object *projcs);

}  // namespace oxtool
