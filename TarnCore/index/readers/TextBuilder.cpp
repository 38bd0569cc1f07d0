#include "TarnCore/index/readers/TextBuilder.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {

bool isSpace(char byte) {
    return byte == ' ' || byte == '\n' || byte == '\t' || byte == '\r' || byte == '\f';
}

/// The length of the white space at `at`, and 2 for a no-break space; 0 when there is none.
std::size_t spaceAt(std::string_view text, std::size_t at) {
    if (isSpace(text[at])) return 1;
    return text[at] == '\xC2' && at + 1 < text.size() && text[at + 1] == '\xA0' ? 2 : 0;
}

}  // namespace

void TextBuilder::addWord(std::string_view word) {
    if (isLineBegun_ && isTabPending_) {
        out_ += '\t';
    } else if (isLineBegun_ && isSpacePending_) {
        out_ += ' ';
    }
    characters_ += isLineBegun_ && (isTabPending_ || isSpacePending_);
    isSpacePending_ = isTabPending_ = false;
    isLineBegun_ = true;
    out_ += word;
    characters_ += static_cast<std::size_t>(std::ranges::count_if(
        word, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

void TextBuilder::add(std::string_view text) {
    if (isFull()) return;
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t length = spaceAt(text, at); length > 0) {
            isSpacePending_ = true;
            at += length;
            continue;
        }
        const std::size_t begin = at;
        while (at < text.size() && spaceAt(text, at) == 0) ++at;
        addWord(text.substr(begin, at - begin));
    }
}

void TextBuilder::addLines(std::string_view text) {
    while (!text.empty() && !isFull()) {
        const std::size_t feed = std::min(text.find('\n'), text.size());
        add(text.substr(0, feed));
        if (feed == text.size()) return;
        lineBreak();
        text.remove_prefix(feed + 1);
    }
}

void TextBuilder::tab() { isTabPending_ = true; }

void TextBuilder::lineBreak() {
    isSpacePending_ = isTabPending_ = false;
    if (!isLineBegun_ || isFull()) return;
    out_ += '\n';
    ++characters_;
    isLineBegun_ = false;
}

std::optional<std::string> TextBuilder::take() {
    if (out_.ends_with('\n')) out_.pop_back();
    if (out_.empty()) return std::nullopt;
    return std::move(out_);
}

}  // namespace tarn
