// Any bytes as what lsof prints of open files.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/platform/linux/OpenFileList.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::size_t bytes = 0;
    for (const tarn::BlockingProcess& process : tarn::parseOpenFiles(text)) {
        tarn::require(process.pid > 0);
        bytes += process.command.size();
        for (const std::string& file : process.files) bytes += file.size();
    }
    tarn::require(bytes <= size);
    return 0;
}
