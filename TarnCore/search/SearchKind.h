#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tarn {

/// The kinds of file that a query may ask for.
enum class SearchKind {
    pdf,
    image,
    photo,
    screenshot,
    screenRecording,
    video,
    audio,
    document,
    spreadsheet,
    presentation,
    archive,
    installer,
    raw,
    code,
    folder,
    app,
    text,
    font,
    ebook
};

inline constexpr std::array allSearchKinds = {SearchKind::pdf,
                                              SearchKind::image,
                                              SearchKind::photo,
                                              SearchKind::screenshot,
                                              SearchKind::screenRecording,
                                              SearchKind::video,
                                              SearchKind::audio,
                                              SearchKind::document,
                                              SearchKind::spreadsheet,
                                              SearchKind::presentation,
                                              SearchKind::archive,
                                              SearchKind::installer,
                                              SearchKind::raw,
                                              SearchKind::code,
                                              SearchKind::folder,
                                              SearchKind::app,
                                              SearchKind::text,
                                              SearchKind::font,
                                              SearchKind::ebook};

namespace SearchKinds {
/// The case name, as stored: "screenRecording".
std::string_view rawValue(SearchKind kind);
std::optional<SearchKind> fromRawValue(std::string_view raw);
/// Plural, for chips: "Screen recordings".
std::string_view label(SearchKind kind);
}  // namespace SearchKinds

}  // namespace tarn
