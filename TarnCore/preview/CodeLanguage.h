#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tarn {

/// How one language of code is written, as far as colours need it.
///
/// This is no grammar: it knows comments, strings, numbers and the words that are the language's
/// own, which is what the eye looks for. Everything is ASCII and lives as long as the program.
struct CodeLanguage {
    enum class Form : std::uint8_t {
        code,      ///< Words, strings, comments.
        markup,    ///< Tags: HTML and XML.
        keyed,     ///< A key before ":" or "=" on each line: YAML, TOML, settings.
        json,      ///< Keys are strings before a ":".
        style,     ///< CSS: a word before ":" is a property.
        markdown,  ///< Text with headings, code, emphasis and links.
        patch,     ///< Lines that were added and removed.
    };
    /// What begins a string and ends it. A string ends with its line unless it `isLong`.
    struct String {
        std::string_view open;
        std::string_view close;
        bool escapes = true;  ///< A backslash takes the next character's meaning.
        bool isLong = false;
    };

    std::string_view name;      ///< "C++", "Python".
    std::string_view suffixes;  ///< Extensions and whole names in lower case, between spaces.
    Form form = Form::code;
    std::string_view keywords{};  ///< Between spaces.
    std::string_view values{};    ///< Constants and types that come with it, between spaces.
    std::string_view lineComments[2]{};
    std::string_view blockOpen{};
    std::string_view blockClose{};
    std::span<const String> strings{};
    bool ignoresCase = false;
    bool nestsComments = false;
    char directive = 0;  ///< Begins a line for the preprocessor ('#'), or an annotation ('@').

    /// By extension, else by the whole name ("Makefile"), else by the first line ("#!/bin/sh").
    /// Null when none is known.
    static const CodeLanguage* of(std::string_view fileName, std::string_view firstLine);
    static std::span<const CodeLanguage> all();
};

}  // namespace tarn
