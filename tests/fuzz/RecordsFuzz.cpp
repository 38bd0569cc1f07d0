// Any bytes as the file of a store: each record is read or refused with an exception, and one that
// was read survives being written.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/SessionState.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/StoredList.h"
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

/// A list that was not changed is written as it was read, whatever it held.
template <class Record>
void readAndWriteList(const JSON& json) {
    try {
        require(JSON(json.get<StoredList<Record>>()) == json);
    } catch (const std::exception&) {
        require(!json.is_array());
    }
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
    readAndWriteList<Favorite>(*json);
    readAndWriteList<SmartFolder>(*json);
    readAndWriteList<Workspace>(*json);
    readAndWriteList<std::string>(*json);
    return 0;
}
