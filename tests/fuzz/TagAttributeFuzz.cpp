// Any bytes as the attributes that hold a file's tags: names come out, or none.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/files/TagAttribute.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto stored = TagAttribute::decode(bytes);
    if (stored) {
        for (const std::string& tag : *stored) require(tag.starts_with(TagAttribute::name(tag)));
        require(TagAttribute::names(bytes, "mirror").size() == stored->size());
        const auto again = TagAttribute::decode(PropertyList::encode(*stored));
        require(again && again->size() == stored->size());
    } else {
        require(TagAttribute::names(bytes, "mirror").size() == 1);
    }
    for (const std::string& name : TagAttribute::mirrorNames(bytes))
        require(!name.empty() && name.find(',') == name.npos);
    return 0;
}
