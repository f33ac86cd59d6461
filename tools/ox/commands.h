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

// The projected system of a catalogue code ("32633") or definition string
// ("OX_PCS_WGS_1984_UTM_ZONE_33N"); null for anything else.
ox_object *catalogue_projcs(const char *arg);

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
int cmd_georef(int argc, char **argv);
int cmd_mgrs(int argc, char **argv);
int cmd_geodesic(int argc, char **argv);

}  // namespace oxtool
