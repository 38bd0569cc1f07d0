// Any bytes as a zip file: it is refused with a sentence, or its members lie inside of it and are
// shown as clean paths in folders that are there.
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>

#include "TarnCore/archive/ArchiveListing.h"
#include "TarnCore/archive/MemberPath.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/files/ZipDirectory.h"
#include "tests/fuzz/FuzzBytes.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const FuzzBytes bytes(data, size);
    try {
        const auto directory = ZipDirectory::read(bytes, size % 2 == 0 ? "en_US" : "ja_JP");
        for (const ZipMember& member : directory.members()) {
            require(member.offset < size && member.end <= size && member.offset <= member.end);
        }
        const auto entries = ArchiveListing::entries(directory);
        std::unordered_set<std::string> folders = {""};
        for (const ArchiveEntry& entry : entries)
            if (entry.isDirectory) folders.insert(entry.path);
        for (const ArchiveEntry& entry : entries) {
            require(MemberPath::cleaned(entry.path) == entry.path && !entry.path.empty());
            require(folders.contains(std::string(entry.parent())));
        }
    } catch (const ArchiveError&) {
    }
    return 0;
}
