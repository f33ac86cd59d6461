// Replays the files of corpus directories through a fuzz target's entry
// point, so that the seed corpus runs as an ordinary test (with the
// sanitizers when the suite is built with them).
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv) {
    size_t files = 0;
    for (int i = 1; i < argc; ++i) {
        std::error_code ec;
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i], ec)) {
            if (!entry.is_regular_file()) continue;
            std::ifstream in(entry.path(), std::ios::binary);
            const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
            ++files;
        }
        if (ec) {
            std::fprintf(stderr, "cannot read %s\n", argv[i]);
            return 1;
        }
    }
    std::printf("replayed %zu inputs\n", files);
    return files > 0 ? 0 : 1;
}
