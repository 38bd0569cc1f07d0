#include "TarnCore/ops/Subject.h"

#include <cstdint>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"

namespace tarn::Subject {

std::string of(const std::vector<URL>& items) {
    return items.size() == 1 ? Text::quoted(items.front().name()) : Subject::items(items.size());
}

std::string items(std::size_t count) {
    return Format::count(static_cast<std::int64_t>(count), "item");
}

}  // namespace tarn::Subject
