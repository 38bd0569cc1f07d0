#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tarn {

/// Reads the names of zip files that were made before names were Unicode: bytes in the code page
/// that the maker's system used, which the file does not tell. It is taken to be the one of the
/// user's language, as the archives that people meet mostly come from their own country.
/// One thread at a time.
class ZipNames {
public:
    /// `language` is an ICU identifier ("de_DE", "ja").
    explicit ZipNames(std::string_view language);
    ~ZipNames();
    ZipNames(const ZipNames&) = delete;
    ZipNames& operator=(const ZipNames&) = delete;

    /// As UTF-8. Bytes that mean nothing in the code page become U+FFFD.
    std::string decode(std::string_view raw);

    /// The name of the code page of a language, as ICU knows it.
    static const char* codePage(std::string_view language);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
