// Any bytes as a query: never an exception, the text is kept, and what was understood holds
// together and survives being stored. The same bytes as a stored query: read or refused.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string_view>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/search/QueryParser.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

const tarn::QueryParser& parser() {
    static const tarn::QueryParser shared = [] {
        tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
        return tarn::QueryParser(*tarn::Date::fromISO8601("2026-03-18T13:30:00Z"),
                                 tarn::Calendar("Europe/Berlin", 2), tarn::Locale("en_US"));
    }();
    return shared;
}

void checkStored(std::string_view text) {
    const auto json = tarn::JSONText::parse(text);
    if (!json) return;
    try {
        const auto query = json->get<tarn::SearchQuery>();
        require(tarn::JSON(query).get<tarn::SearchQuery>() == query);
    } catch (const std::exception&) {
        // Refused with a reason, which is as good.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const SearchQuery query = parser().parse(text);
    require(query.raw == text);
    if (query.date && query.date->start && query.date->end) {
        require(*query.date->start <= *query.date->end);
    }
    if (query.size) {
        require(query.size->min || query.size->max);
        require(query.size->min.value_or(0) >= 0 && query.size->max.value_or(0) >= 0);
        if (query.size->min && query.size->max) require(*query.size->min <= *query.size->max);
    }
    const auto chips = query.chips();
    require(query.isEmpty() == (query.terms.empty() && chips.empty()));
    for (const SearchChip& chip : chips) {
        require(!chip.label.empty());
        require(query.removing(chip.category).chips().size() + 1 == chips.size());
    }
    if (Text::isValidUTF8(text)) {
        require(JSONText::parse(JSONText::compact(JSON(query))).value().get<SearchQuery>() ==
                query);
    }
    checkStored(text);
    return 0;
}
