#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

/// The words that a name is to contain, folded and reduced to stems once, so that hundreds of
/// thousands of names can be tested. A value that is only read, callable from any thread.
///
/// A term matches anywhere in a name, without regard to case and diacritics. Its stem is the term
/// less the ending of a plural, which is enough where parts of words match.
class NameTerms {
public:
    explicit NameTerms(const std::vector<std::string>& terms);

    bool isEmpty() const { return stems_.empty(); }
    const std::vector<std::string>& stems() const { return stems_; }

    bool allIn(std::string_view name) const;
    /// The positions of the terms that the name lacks, in order.
    std::vector<std::size_t> missingFrom(std::string_view name) const;

    /// "photos" gives "photo", "stories" gives "stor", "glass" stays. `folded` is folded already.
    static std::string stem(const std::string& folded);

private:
    std::vector<std::string> stems_;
};

}  // namespace tarn
