#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn {

/// Reads the text of files for indexes and searches: plain text on the calling thread, every other
/// format in `tarn-extract`, a helper program that has little memory, little time, no network and
/// nothing it may write. One that dies is started anew; the file that killed it gives no text.
///
/// Callable from any thread; each call waits for its own file. Helpers start when first needed and
/// end when idle or with the reader. The destructor stops what is being read and waits.
class TextReader {
public:
    struct Options {
        bool ocr = false;                    ///< Recognise text in pictures and scanned pages.
        std::vector<std::string> languages;  ///< BCP 47; empty means English.
        std::size_t processes = 0;           ///< Helpers at once; 0: one a processor.
        bool background = false;             ///< Helpers run with idle priority.
    };
    explicit TextReader(Options options);
    ~TextReader();
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;

    enum class Outcome {
        read,       ///< `text` is what the file says; empty when it says nothing.
        noText,     ///< No format we read, too large, damaged, encrypted, unreadable.
        unable,     ///< What would read it is missing, as `problem` says; try again later.
        killed,     ///< The helper died or took too long: not to be tried again unchanged.
        cancelled,  ///< The token was set, or the reader is ending.
    };
    struct Result {
        Outcome outcome = Outcome::noText;
        std::string text{};
        /// It is a picture, or has pages without text of their own.
        bool hasPictures = false;
        /// Text in its pictures was asked for, but there is nothing to recognise it with.
        bool lacksRecognition = false;
    };
    /// `size` is the file's, in bytes, as the caller knows it.
    Result read(const URL& url, std::int64_t size, const CancelToken& token);

    std::size_t processCount() const;

    /// What could not be read here for want of a program or a library, as a finished sentence;
    /// empty when all is well. The last one found out, but that nothing but plain text can be read
    /// (`tarn-extract` is missing, or does not start) goes before everything else.
    std::string problem() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
