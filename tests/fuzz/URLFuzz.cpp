// Any bytes as a path and as the text of a URL: what is made of them stays within the rules of URL
// and survives being written and read.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/base/URL.h"
#include "tests/fuzz/Require.h"

namespace {

using tarn::require;

void checkRules(const tarn::URL& url) {
    const std::string_view path = url.path();
    require(path.starts_with('/') && path.find('\0') == path.npos);
    require(path.find("//") == path.npos && (path.size() == 1 || !path.ends_with('/')));
    for (const std::string_view dots : {"/./", "/../"}) require(path.find(dots) == path.npos);
    require(!path.ends_with("/.") && !path.ends_with("/.."));

    require(tarn::URL::parse(url.string()) == url);
    require(tarn::URL::fromPath(path) == url);
    require(url.isRoot() || url.parent().appending(url.name()) == url);
    require(url.isInside(url.parent()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkRules(tarn::URL::fromPath(text));
    checkRules(tarn::URL::fromPath(text, tarn::URL::fromPath("/base/folder")));
    if (const auto url = tarn::URL::parse(text)) checkRules(*url);
    return 0;
}
