#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/DrawnPicture.h"
#include "TarnCore/platform/FontDrawing.h"
#include "TarnCore/platform/MediaDecoding.h"
#include "TarnCore/platform/PageDrawing.h"
#include "TarnCore/preview/TableSheet.h"

/// What a window asks `tarn-extract` about a file to show what is in it, and how the answers are
/// written: the questions and answers of ExtractProtocol. Numbers are in little-endian order; a
/// text or a list has its count in 4 bytes in front.
///
/// The side that asks believes the other one nothing: every decoder checks what it reads, and is
/// absent for what makes no sense.
namespace tarn::PreviewProtocol {

enum class Ask : std::uint8_t {
    pages = 1,   ///< Of a document: how many pages, and how large `count` of them are from `first`.
    page,        ///< The picture of page `first`, `width` × `height` pixels.
    pageText,    ///< The text of page `first`.
    font,        ///< What font it is; face `first`.
    fontLine,    ///< `text` with the font, `height` pixels high, at most `width` wide.
    fontGrid,    ///< The characters of `text` in cells of `height` pixels, `width` in a row.
    sheet,       ///< Rows and columns of sheet `first`.
    media,       ///< What sound or film it is.
    mediaCover,  ///< Its cover, or a picture of the film, within `width` × `height`.
    /// The next piece of it, which is due at `first` milliseconds or later: pictures within
    /// `width` × `height`, none at 0; sound when `text` is "sound". Where `count` is 1 it is looked
    /// for from there, otherwise it follows the last piece, unless there was none.
    mediaPiece,
};

struct Question {
    Ask ask = Ask::pages;
    std::int32_t first = 0;
    std::int32_t count = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::string text{};  ///< UTF-8.
    bool operator==(const Question&) const = default;
};
std::string encode(const Question& question);
std::optional<Question> decodeQuestion(std::string_view bytes);

struct Pages {
    std::int32_t count = 0;
    bool needsPassword = false;  ///< Then there are no pages.
    std::string title;
    std::vector<PageSize> sizes;  ///< Of those that were asked for; nothing for a damaged page.
    bool operator==(const Pages&) const = default;
};
std::string encode(const Pages& pages);
std::optional<Pages> decodePages(std::string_view bytes);

std::string encode(const DrawnPicture& picture);
std::optional<DrawnPicture> decodePicture(std::string_view bytes);

std::string encode(const PageText& text);
std::optional<PageText> decodePageText(std::string_view bytes);

std::string encode(const FontFacts& facts);
std::optional<FontFacts> decodeFontFacts(std::string_view bytes);

std::string encode(const TableSheet& sheet);
std::optional<TableSheet> decodeSheet(std::string_view bytes);

std::string encode(const MediaFacts& facts);
std::optional<MediaFacts> decodeMediaFacts(std::string_view bytes);

std::string encode(const MediaPiece& piece);
std::optional<MediaPiece> decodeMediaPiece(std::string_view bytes);

}  // namespace tarn::PreviewProtocol
