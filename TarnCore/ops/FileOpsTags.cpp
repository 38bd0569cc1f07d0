#include <system_error>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/ops/FileOps.h"

namespace tarn::FileOps {
namespace {

/// Two writers of one file would read the same old tags, and one of them would be lost.
Guarded<int>& writing() {
    static Guarded<int> guard;
    return guard;
}

void writeUnguarded(const std::vector<std::string>& stored, const URL& url) {
    if (!exists(url)) throw FileOpError::missing(url.name());
    try {
        FileTags::write(stored, url);
    } catch (const std::system_error& error) {
        throw FileOpError::failed(friendly(error, "change tags on " + Text::quoted(url.name())));
    }
}

}  // namespace

Step setTags(const std::vector<std::string>& stored, const URL& url) {
    const auto lock = writing().lock();
    std::vector<std::string> before = FileTags::read(url);
    writeUnguarded(stored, url);
    return Step::tags(url, std::move(before), stored);
}

void writeTags(const std::vector<std::string>& stored, const URL& url) {
    const auto lock = writing().lock();
    writeUnguarded(stored, url);
}

}  // namespace tarn::FileOps
