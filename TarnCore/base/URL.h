#pragma once

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// The location of a file: an absolute path, kept byte for byte.
///
/// A file name is any run of bytes other than '/' and NUL; nothing here assumes UTF-8. The path
/// is always absolute and standardised: one '/' between names, no "." or "..", no '/' at the end
/// except for the root itself. Links are not resolved. A value, free to travel between threads.
class URL {
public:
    /// The root folder, "/".
    URL() : path_("/") {}

    /// Standardises `path`; a relative path is taken from the root. Bytes from the first NUL on
    /// are dropped, since no file name can hold one.
    static URL fromPath(std::string_view path);

    /// Standardises `path`; a relative path is taken from `base`.
    static URL fromPath(std::string_view path, const URL& base);

    /// Reads "file:///a%20b", "file://localhost/a" or "file:/a". Absent for another scheme, another
    /// host, a path that is not absolute, a broken percent escape, or an escaped NUL.
    static std::optional<URL> parse(std::string_view text);

    const std::string& path() const { return path_; }
    const char* c_str() const { return path_.c_str(); }

    /// "file://" and the path, every byte outside the unreserved characters of RFC 3986 and
    /// "/!$&'()*+,;=:@" written as %XX.
    std::string string() const;
    /// The same, behind what `out` holds.
    void appendTo(std::string& out) const;

    /// What follows the last '/'; "/" for the root.
    std::string_view name() const;

    /// What follows the last dot of the name, as written and without the dot; empty for none, for a
    /// dot-file without another dot (".profile") and for a name that ends in a dot.
    std::string_view pathExtension() const;

    /// The name without its extension and the dot before it.
    std::string_view stem() const;

    bool isRoot() const { return path_.size() == 1; }

    /// The folder that holds it; the root is its own parent.
    URL parent() const;

    /// The item called `name` (one name, or a relative path) inside this folder.
    URL appending(std::string_view name) const;

    /// True for the folder itself and everything below it ("/a/b" and "/a/b/c", not "/a/bc").
    bool isInside(const URL& folder) const;

    std::strong_ordering operator<=>(const URL& other) const = default;
    bool operator==(const URL& other) const = default;

private:
    explicit URL(std::string standardised) : path_(std::move(standardised)) {}
    std::string path_;
};

/// The extension of a bare file name, by the rule of URL::pathExtension.
std::string_view pathExtension(std::string_view name);

}  // namespace tarn

template <>
struct std::hash<tarn::URL> {
    std::size_t operator()(const tarn::URL& url) const noexcept {
        return std::hash<std::string>{}(url.path());
    }
};
