// The data home (see ox_datahome.h).  Its buffer is read and written under
// a small spin lock: the first query may initialise it from the environment
// while other threads query too.  The lock is taken once per grid load or
// file-path routine call, never per point.
#include "transform/ox_datahome.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "object/ox_utils.h"
#include "transform/ox_gridfile.h"
#include "ox.h"

namespace ox {
namespace {

struct DataHome {
    char directory[kDataHomeMax + 1];
    bool set;  // set by a call, or read from the environment
};
DataHome g_home = {};
std::atomic_flag g_lock = ATOMIC_FLAG_INIT;

class Lock {
   public:
    Lock() {
        while (g_lock.test_and_set(std::memory_order_acquire)) {
        }
    }
    ~Lock() { g_lock.clear(std::memory_order_release); }
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
};

// Under the lock.
void set_locked(const char *dir) {
    g_home.directory[0] = '\0';
    g_home.set = true;
    if (dir == nullptr) return;
    const size_t n = strnlen(dir, kDataHomeMax + 1);
    if (n == 0 || n > kDataHomeMax) return;
    std::memcpy(g_home.directory, dir, n);
    g_home.directory[n] = '\0';
}

}  // namespace

bool datahome_path(const char *subdirectory, const char *file, char *out, size_t size) {
    if (out == nullptr || size == 0) return false;
    out[0] = '\0';
    char home[kDataHomeMax + 1];
    {
        const Lock lock;
        if (!g_home.set) set_locked(std::getenv("OXDATAHOME"));
        std::memcpy(home, g_home.directory, sizeof home);
    }
    if (home[0] == '\0' || subdirectory == nullptr || file == nullptr || *file == '\0') return false;
    char directory[kDataHomeMax + 64];
    return path_join(home, subdirectory, directory, sizeof directory) && path_join(directory, file, out, size);
}

namespace {

// The text after "Dataset_" (any case), else the whole name; "" for null.
const char *grid_base_name(const char *grid_name) {
    if (grid_name == nullptr) return "";
    static constexpr char kPrefix[] = "DATASET_";
    for (size_t i = 0; i + 1 < sizeof kPrefix; ++i) {
        const char c = grid_name[i];
        if (c == '\0' || (c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) != kPrefix[i]) return grid_name;
    }
    return grid_name + sizeof kPrefix - 1;
}

}  // namespace

bool grid_path(const char *subdirectory, const char *grid_name, const char *extension, bool keep_own,
               char (&out)[kGridPathSize]) {
    out[0] = '\0';
    const char *base = grid_base_name(grid_name);
    const size_t n = std::strlen(base), e = std::strlen(extension);
    if (n == 0 || n > OX_NAME_SIZE || e > 7) return false;
    char file[OX_NAME_SIZE + 8];
    std::memcpy(file, base, n + 1);
    if (!(keep_own && n >= e && text_equal_nocase(base + n - e, extension))) std::memcpy(file + n, extension, e + 1);
    return datahome_path(subdirectory, file, out, kGridPathSize);
}

}  // namespace ox

extern "C" {

OX_API void ox_datahome_setdir(const char *dir) {
    const ox::Lock lock;
    ox::set_locked(dir);
}

OX_API void ox_datahome_setfunc(ox_directory_provider provider) {
    // The provider is called outside the lock: it may call back into the
    // library.
    const char *dir = provider != nullptr ? provider() : nullptr;
    ox_datahome_setdir(dir);
}

}  // extern "C"
