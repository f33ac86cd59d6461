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

// Room for any path datahome_path can give.
inline constexpr size_t kGridPathSize = 1024;

// The path of a grid file in `subdirectory` of the data home: the grid's
// base name (the text of a method's grid name after "Dataset_", compared
// without regard to case, else the whole name) followed by `extension`,
// unless `keep_own` is set and the name already ends with it (compared
// without regard to case).  False (and "") for an empty or overlong name,
// or when datahome_path gives none.
bool grid_path(const char *subdirectory, const char *grid_name, const char *extension, bool keep_own,
               char (&out)[kGridPathSize]);

}  // namespace ox
