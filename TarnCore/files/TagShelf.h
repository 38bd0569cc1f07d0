#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/StoreFile.h"

namespace tarn {

/// The tags of items that can keep none themselves: links, and what lies on disks without extended
/// attributes. Callable from any thread; several processes may share one.
///
/// A JSON array of objects: "path" (as JSONText::fromPath writes it), "device", "inode", "created"
/// where the disk tells, and "tags", stored strings. An entry belongs to what is at its path,
/// unless both the inode and the date of creation are others: then another file has taken the name.
/// (Disks without attributes may number their files anew whenever they are mounted.) An item that
/// another program has moved is found by device and inode.
class TagShelf {
public:
    explicit TagShelf(URL file) : state_(State{StoreFile(std::move(file)), {}, {}, {}}) {}
    /// "tags-elsewhere.json" in the support folder.
    static TagShelf& shared();

    std::vector<std::string> tags(const URL& url) const;
    /// Throws std::system_error when the item cannot be looked at or the list not be written.
    void set(const URL& url, const std::vector<std::string>& stored);
    /// What is tagged of an item and all that is in it, by the path below it.
    std::vector<std::pair<std::string, std::vector<std::string>>> tagsInside(const URL& url) const;
    /// An item, with all that is in it, has got another place.
    void moved(const URL& from, const URL& to);

private:
    struct Entry {
        URL url;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::optional<Date> created;
        std::vector<std::string> tags;
    };
    struct State {
        StoreFile file;
        std::vector<Entry> entries;
        std::unordered_map<URL, std::size_t> byPath;
        std::map<std::pair<std::uint64_t, std::uint64_t>, std::size_t> byInode;
    };
    static std::vector<Entry> parse(const StoreFile::Content& content);
    static std::string text(const std::vector<Entry>& entries);
    static void take(State& state, std::vector<Entry> entries);
    static const Entry* find(const State& state, const URL& url);
    template <class Edit>
    void change(const Edit& edit);

    Guarded<State> state_;
};

}  // namespace tarn
