#pragma once

#include <cstdint>

#include <QtCore/QString>

/// How many there are of something, in words: “1 item”, “1,204 items”, with the plural forms of the
/// language that is shown. Callable from any thread once the language is chosen.
namespace tarn::Counts {

/// “1.2 MB”, as Format::bytes() has it.
QString bytes(std::int64_t n);
QString items(std::int64_t n);
/// “3 Items”, for buttons, menus and titles.
QString itemsInTitle(std::int64_t n);
QString files(std::int64_t n);
QString results(std::int64_t n);
QString tags(std::int64_t n);
QString sources(std::int64_t n);
QString pages(std::int64_t n);
QString tabs(std::int64_t n);
QString problems(std::int64_t n);
QString rows(std::int64_t n);
QString sheets(std::int64_t n);
QString languages(std::int64_t n);

}  // namespace tarn::Counts
