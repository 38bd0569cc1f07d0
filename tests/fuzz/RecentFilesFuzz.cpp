// Any bytes as the desktop's list of recently used files.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

#include <unistd.h>

#include "TarnCore/platform/linux/BookmarkList.h"
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

    // What a note is made in is read again with it, and nothing is lost.
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const tarn::BookmarkUse use = {tarn::URL::fromPath("/a b"), "text/plain", "Tarn", "tarn %u",
                                   tarn::Date()};
    if (const auto noted = tarn::noteInBookmarkList(text, use)) {
        const auto before = tarn::parseBookmarkList(text);
        const auto after = tarn::parseBookmarkList(*noted);
        tarn::require(after.size() >= before.size() && after.size() <= before.size() + 1);
        tarn::require(std::ranges::any_of(
            after, [&use](const tarn::RecentFile& file) { return file.url == use.url; }));
        tarn::require(tarn::noteInBookmarkList(*noted, use).has_value());
    }
    return 0;
}
