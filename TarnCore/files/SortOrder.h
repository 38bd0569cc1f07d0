#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ListedName.h"

namespace tarn {

enum class SortField { name, modified, created, added, size, kind, source, tags };

inline constexpr std::array allSortFields = {
    SortField::name, SortField::modified, SortField::created, SortField::added,
    SortField::size, SortField::kind,     SortField::source,  SortField::tags};

namespace SortFields {
std::string_view rawValue(SortField field);
std::optional<SortField> fromRawValue(std::string_view raw);
std::string_view title(SortField field);
/// The direction a field takes when it is first picked: dates and sizes begin at the far end.
bool startsAscending(SortField field);
/// "A to Z", "Newest First", …
std::string_view directionTitle(SortField field, bool ascending);
}  // namespace SortFields

/// How a list is ordered.
struct SortOrder {
    SortField field = SortField::name;
    bool ascending = true;
    bool foldersFirst = true;
    bool operator==(const SortOrder&) const = default;

    /// Lookups in caches, never walks of the disk.
    using FolderSize = std::function<std::optional<std::int64_t>(const URL&)>;
    using Source = std::function<std::optional<std::string>(const URL&)>;

    /// Stable. Equal items follow their names, A to Z, in either direction. Large lists build
    /// their keys on every processor.
    std::vector<FileItem> sort(std::vector<FileItem> items, const FolderSize& folderSize = {},
                               const Source& source = {}) const;

    /// The same as positions in `items`, for callers that must not move the items.
    std::vector<std::uint32_t> sortedIndexes(const std::vector<FileItem>& items,
                                             const FolderSize& folderSize = {},
                                             const Source& source = {}) const;
    std::vector<std::uint32_t> sortedIndexes(const std::vector<const FileItem*>& items,
                                             const FolderSize& folderSize = {},
                                             const Source& source = {}) const;

    /// Bare names by name, whatever `field` says; direction and foldersFirst as above.
    void sort(std::vector<ListedName>& names) const;
    std::vector<std::uint32_t> sortedIndexes(const std::vector<ListedNameView>& names) const;
};

void to_json(JSON& json, const SortOrder& order);
void from_json(const JSON& json, SortOrder& order);

}  // namespace tarn

template <>
struct std::hash<tarn::SortOrder> {
    std::size_t operator()(const tarn::SortOrder& order) const noexcept {
        return static_cast<std::size_t>(order.field) * 4 + (order.ascending ? 2 : 0) +
               (order.foldersFirst ? 1 : 0);
    }
};
