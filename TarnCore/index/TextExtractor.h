#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Gets the readable text out of a file, on the calling thread and in this process. Files that may
/// be hostile are read through a TextReader instead, which has this done in a helper program.
namespace TextExtractor {

/// How a file is read. The name of the case is stored in the index.
enum class Method { plain, html, office, rich, pdf, image };

std::string_view name(Method method);
std::optional<Method> methodNamed(std::string_view name);

/// By the extension; absent for files that have no text we can read.
std::optional<Method> method(const URL& url);
std::optional<Method> method(std::string_view fileName);

/// Bytes; larger files are not read.
std::int64_t sizeLimit(Method method);

/// Characters kept from one file; longer texts are cut.
inline constexpr std::size_t maxCharacters = 2'000'000;

/// Languages of recognition as BCP 47 tags ("en-US"); the default of `extract`.
inline constexpr std::string_view defaultOCRLanguages[] = {"en-US"};

/// The text as UTF-8, cut to `maxCharacters`; absent when the file is no readable document, is too
/// large, or has none. Pictures and pages without text are recognised only with `ocr`.
std::optional<std::string> extract(const URL& url, bool ocr,
                                   std::span<const std::string> languages = {});

/// Programs and libraries that some formats are read by, each of which may be missing.
enum class Tool {
    documents,    ///< Poppler, for PDF.
    recognition,  ///< Tesseract with data for a language, for text in pictures.
    word          ///< catdoc, for the old word-processing format.
};

/// What reading a file came to.
struct Reading {
    std::optional<std::string> text{};  ///< As `extract` gives it.
    /// It is a picture, or has pages without text of their own: what it says depends on
    /// recognition.
    bool hasPictures = false;
    /// What would have been needed. Recognition only where it was asked for.
    std::optional<Tool> missing{};
};

/// The same for what was opened for reading already, as for a process that may open nothing; the
/// descriptor stays the caller's. `fileName` says how it is read.
Reading read(int file, std::string_view fileName, bool ocr,
             std::span<const std::string> languages = {});

}  // namespace TextExtractor

}  // namespace tarn
