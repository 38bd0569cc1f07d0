#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Binary property lists ("bplist00"): an 8-byte header, objects, a table of offsets, and a 32-byte
/// trailer, all big-endian. File attributes hold arrays of strings, web archives dictionaries.
namespace tarn::PropertyList {

/// Looks into a binary property list without unpacking it, since objects may be shared by many and
/// even hold themselves. A value over bytes that are not its own. Never throws and never reads
/// outside of them, whatever they are.
class Document {
public:
    /// A number of an object, which need not exist.
    using Object = std::uint64_t;

    /// Absent when the bytes are not a binary property list.
    static std::optional<Document> open(std::string_view bytes);

    Object top() const { return top_; }
    bool exists(Object object) const;
    /// Of a dictionary; absent when it is none, or has no such key.
    std::optional<Object> member(Object dictionary, std::string_view key) const;
    /// Of an array; absent when it is none.
    std::optional<std::vector<Object>> items(Object array) const;
    /// In UTF-8; absent when it is no string.
    std::optional<std::string> string(Object object) const;
    /// Absent when it is no data.
    std::optional<std::string_view> data(Object object) const;

private:
    struct Head;
    Document() = default;
    std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t size) const;
    std::optional<std::string_view> slice(std::uint64_t at, std::uint64_t size) const;
    std::optional<std::uint64_t> place(Object object) const;
    std::optional<Head> head(Object object) const;
    std::optional<std::string> string(const Head& head) const;

    std::string_view bytes_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t offsetTable_ = 0;
    Object top_ = 0;
};

/// The strings of a top-level array, in UTF-8; members that are not strings are skipped. Absent
/// when the bytes are not a binary property list with an array at its top. Never throws and never
/// reads outside `bytes`, whatever they are.
std::optional<std::vector<std::string>> stringArray(std::string_view bytes);

/// The binary property list of an array of strings: ASCII strings as such, others as UTF-16.
std::string encode(const std::vector<std::string>& strings);

}  // namespace tarn::PropertyList
