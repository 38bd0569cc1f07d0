// Any bytes as the file of a store: each record is read or refused with an exception, and one that
// was read survives being written.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/SessionState.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/base/JSON.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarn;

template <class Record>
void readAndWrite(const JSON& json) {
    JSON written;
    try {
        written = json.get<Record>();
    } catch (const std::exception&) {
        return;  // a store keeps such a file aside
    }
    // Never what was written by ourselves may be refused, or change on the way.
    require(JSON(written.get<Record>()) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto json = JSONText::parse({reinterpret_cast<const char*>(data), size});
    if (!json) return 0;
    readAndWrite<AppSettings>(*json);
    readAndWrite<SessionState>(*json);
    readAndWrite<std::vector<Favorite>>(*json);
    readAndWrite<std::vector<SmartFolder>>(*json);
    readAndWrite<std::vector<Workspace>>(*json);
    readAndWrite<FolderViewPrefs>(*json);
    return 0;
}
