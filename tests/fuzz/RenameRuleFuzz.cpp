// Any bytes as a list of rules for names, and as a name: rules are read or refused with an
// exception, come back from their stored form unchanged, and make a name of bounded length.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/rename/PreparedRule.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto json = JSONText::parse(bytes);
    if (!json) return 0;
    std::vector<RenameRule> rules;
    try {
        rules = json->get<std::vector<RenameRule>>();
    } catch (const std::exception&) {
        return 0;
    }
    require(JSON(rules).get<std::vector<RenameRule>>() == rules);

    constexpr std::size_t longestOnDisk = 255;
    for (std::string name : {std::string("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa Photo 12\xff.e\xcc\x81"),
                             std::string(bytes.substr(0, longestOnDisk)), std::string()}) {
        for (const RenameRule& rule : rules) {
            PreparedRule prepared(rule);
            const std::string before = name;
            auto outcome = prepared.apply(name, 3, Date{7.5e8});
            require(!outcome.problem || outcome.name == before);
            require(outcome.name.size() <= PreparedRule::longestName);
            name = std::move(outcome.name);
        }
    }
    return 0;
}
