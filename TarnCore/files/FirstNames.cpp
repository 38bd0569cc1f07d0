#include "TarnCore/files/FirstNames.h"

#include <algorithm>
#include <utility>

#include "TarnCore/base/Collation.h"

namespace tarn {

FirstNames::FirstNames(const SortOrder& order, std::size_t count) : order_(order), count_(count) {}

bool FirstNames::isBefore(std::string_view name, bool isDirectory, std::uint32_t position,
                          const Name& other) const {
    if (order_.foldersFirst && isDirectory != other.isDirectory) return isDirectory;
    const int order = Collation::compare(name, other.text);
    if (order == 0) return position < other.position;
    return (order < 0) == order_.ascending;
}

void FirstNames::add(std::string_view name, bool isDirectory, std::uint32_t position) {
    if (hasWorst_ && !isBefore(name, isDirectory, position, names_[count_ - 1])) return;
    names_.push_back({std::string(name), isDirectory, position});
    if (names_.size() >= 2 * count_) dropLast();
}

void FirstNames::add(FirstNames&& other, std::uint32_t shift) {
    for (const Name& name : other.names_) add(name.text, name.isDirectory, name.position + shift);
}

bool FirstNames::mayTake(std::string_view name) const {
    return !hasWorst_ || isBefore(name, /*isDirectory=*/true, 0, names_[count_ - 1]);
}

void FirstNames::dropLast() {
    const auto worst = names_.begin() + static_cast<std::ptrdiff_t>(count_ - 1);
    std::nth_element(names_.begin(), worst, names_.end(), before());
    names_.resize(count_);
    hasWorst_ = true;
}

std::vector<std::uint32_t> FirstNames::positions() {
    std::sort(names_.begin(), names_.end(), before());
    if (names_.size() > count_) names_.resize(count_);
    std::vector<std::uint32_t> positions;
    positions.reserve(names_.size());
    for (const Name& name : names_) positions.push_back(name.position);
    return positions;
}

}  // namespace tarn
