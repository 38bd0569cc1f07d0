// Any bytes as "user-dirs.dirs": folders come out, or none.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "TarnCore/files/UserDirs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto found = tarn::UserDirs::parse(text, tarn::URL::fromPath("/home/ada"));
    for (const auto& [key, folder] : found.folders)
        if (key.empty() || !folder.path().starts_with('/')) std::abort();
    return 0;
}
