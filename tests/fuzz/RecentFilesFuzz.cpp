// Any bytes as the desktop's list of recently used files.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include <unistd.h>

#include "TarnCore/platform/linux/LinuxRecentFiles.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/dev/shm/tarn-fuzz-recent-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const tarn::LinuxRecentFiles list(tarn::URL::fromPath(path));
    for (const tarn::RecentFile& file : list.all()) {
        tarn::require(list.lastVisited(file.url).has_value());
    }
    unlink(path.c_str());
    return 0;
}
