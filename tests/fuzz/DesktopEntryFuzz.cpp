// Any bytes as the desktop entry of a program, and as a list of who opens what.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/commands/KeyFile.h"
#include "Tarn/commands/MimeApps.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<tarn::URL> files = {tarn::URL::fromPath("/a b"),
                                          tarn::URL::fromPath("/\xff")};
    if (const auto entry = tarn::DesktopEntry::parse(text, "x.desktop")) {
        tarn::require(!entry->exec.empty());
        for (const auto& words : entry->commands(files)) tarn::require(!words.empty());
        // Without files, nothing of them is left over.
        for (const std::string& word : entry->command({}))
            tarn::require(word.find("/a b") == word.npos);
    }
    const std::string chosen = tarn::MimeApps::prefer(text, "x/y", "t.desktop");
    const auto keys = tarn::KeyFile::group(chosen, "Default Applications");
    tarn::require(tarn::KeyFile::value(keys, "x/y").starts_with("t.desktop;"));
    const std::string back = tarn::MimeApps::giveUp(chosen, "x/y", "t.desktop");
    const auto left = tarn::KeyFile::group(back, "Default Applications");
    tarn::require(tarn::KeyFile::value(left, "x/y").find("t.desktop;t.desktop;") ==
                  std::string::npos);
    return 0;
}
