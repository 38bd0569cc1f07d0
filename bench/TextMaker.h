#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::bench {

/// Makes the documents that are indexed and searched in benchmarks: the same every time. Words come
/// as often as in real text (Zipf's law, 60,000 of them), about one in thirty with a letter that is
/// not ASCII.
class TextMaker {
public:
    explicit TextMaker(std::uint64_t seed = 1);

    /// Stands in every fifth document.
    static constexpr std::string_view commonWord = "harbourmaster";
    /// Stands in one document of a thousand; its words alone stand in more.
    static constexpr std::string_view rarePhrase = "cobalt lantern";

    /// `count` documents in folders of a hundred: nine tenths plain (txt, md, csv, log), in
    /// "plain", the others html, docx, odt, rtf and eml, in "rich"; 15 KB of text each in the mean.
    /// The folder must not exist. Throws std::system_error when the disk refuses.
    void documents(const std::string& folder, std::size_t count);

    /// Paragraphs of about so many bytes.
    std::string text(std::size_t bytes);

private:
    std::uint64_t next();
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }
    std::string word();
    std::string_view pick();
    std::size_t length();

    std::uint64_t state_;
    std::vector<std::string> words_;
    /// Word numbers, each as often as it is likely, in 2^20 entries.
    std::vector<std::uint32_t> table_;
};

}  // namespace tarn::bench
