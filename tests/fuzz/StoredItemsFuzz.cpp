// Any bytes as a stored item or order: it is refused with an exception of the library or of the
// record, or it is understood and reads back the same once it was written. Keys that are not known
// stay when they are to be kept.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/JSONStore.h"
#include "TarnCore/files/SortOrder.h"

namespace {

using tarn::JSON;

void require(bool holds) {
    if (!holds) std::abort();
}

template <class Record>
std::optional<Record> read(const JSON& document) {
    try {
        return document.get<Record>();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

template <class Record>
void check(const JSON& document) {
    const auto record = read<Record>(document);
    if (!record) return;
    const JSON understood = *record;
    const auto again = tarn::StoredJSON::parse<JSON>(tarn::StoredJSON::text(understood));
    require(again && read<Record>(*again) == record);

    require(tarn::StoredJSON::keepingUnchanged<JSON>(understood, document, understood) == document);
    JSON changed = understood;
    changed["changed"] = true;
    const JSON kept = tarn::StoredJSON::keepingUnchanged<JSON>(changed, document, understood);
    for (const auto& [key, value] : document.items()) require(kept.contains(key));
    for (const auto& [key, value] : changed.items()) require(kept.contains(key));
    require(read<Record>(kept) == record);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto document = tarn::StoredJSON::parse<JSON>(text);
    if (!document || !document->is_object()) return 0;
    check<tarn::FileItem>(*document);
    check<tarn::SortOrder>(*document);
    return 0;
}
