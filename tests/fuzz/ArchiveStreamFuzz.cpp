// Any bytes as an archive of any other kind, and as a compressed file: read to the end, member by
// member, or refused with a sentence.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "TarnCore/archive/ArchiveListing.h"
#include "TarnCore/archive/OpenArchive.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/platform/linux/LinuxArchives.h"
#include "tests/fuzz/FuzzBytes.h"
#include "tests/fuzz/Require.h"

namespace {

/// Unpacked bytes read of one input; a few bytes may unpack to gigabytes.
constexpr std::size_t most = 1 << 20;

void readAll(tarn::ArchiveStream& stream) {
    using namespace tarn;
    std::size_t total = 0;
    ArchiveMember member;
    while (OpenArchive::next(stream, member)) {
        ArchiveStream::Block block;
        while (stream.read(block) == ArchiveStream::Result::found) {
            total += block.size;
            require(block.data != nullptr || block.size == 0);
            if (total > most) return;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const LinuxArchives archives;
    for (const auto form : {ArchiveStream::Form::archive, ArchiveStream::Form::singleFile}) {
        auto stream = archives.stream(std::make_shared<FuzzBytes>(data, size), form);
        if (!stream) {
            std::fputs("The module for archives could not be loaded.\n", stderr);
            std::abort();
        }
        try {
            readAll(*stream);
        } catch (const ArchiveError& error) {
            require(std::string(error.what()).ends_with('.'));
        }
    }
    return 0;
}
