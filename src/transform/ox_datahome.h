// The data home: the process-wide directory under which the grid methods
// find their files (subdirectories "nadcon", "harn" and "ntv2"), set by
// ox_datahome_setdir / ox_datahome_setfunc or, until either is called, read
// once from the environment variable "OXDATAHOME".
#pragma once

#include <cstddef>

namespace ox {

// Longest data home: a directory of 256 characters or more leaves none.
inline constexpr size_t kDataHomeMax = 255;

// The path of `file` in `subdirectory` of the data home: the data home, the
// platform's separator (only when the data home does not end with one),
// the subdirectory, the separator, the file.  False (and "") when there is
// no data home or the path does not fit in `size` characters.
bool datahome_path(const char *subdirectory, const char *file, char *out, size_t size);

// The grid's base name from a method's grid name: the text after "Dataset_"
// (compared without regard to case), else the whole name.  Empty for a null
// name.
const char *grid_base_name(const char *grid_name);

}  // namespace ox
