#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::bench {

struct TreeCounts {
    std::size_t files = 0;
    std::size_t folders = 0;
};

/// Makes the trees that the benchmarks walk: the same names, sizes and dates every time, on every
/// machine. Sizes are those of sparse files, so that a tree costs little more than its inodes.
/// Everything throws std::system_error when the disk refuses; nothing that exists is overwritten.
class TreeMaker {
public:
    explicit TreeMaker(std::uint64_t seed = 1) : state_(seed) {}

    /// A home folder of somebody who never tidies up: photos, music, projects, documents,
    /// downloads, and about 2 % hidden files. Close to `files` files, 7 to 8 of them to a folder.
    /// `folder` must not exist.
    TreeCounts home(const std::string& folder, std::size_t files);

    /// One folder of exactly `files` files, of mixed kinds. `folder` must not exist.
    TreeCounts flat(const std::string& folder, std::size_t files);

private:
    struct Area;

    TreeCounts plant(const std::string& folder, const Area& area, std::size_t files);
    void makeFile(int folder, const std::string& name, std::string_view extension);
    std::string name(const Area& area, std::size_t number, std::string_view extension);
    std::string words(std::size_t count, std::string_view separator);
    std::int64_t size(std::string_view extension);

    std::uint64_t next();
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }
    bool chance(std::size_t percent) { return below(100) < percent; }
    template <class List>
    auto pick(const List& list) {
        return list[below(std::size(list))];
    }

    std::uint64_t state_;
};

}  // namespace tarn::bench
