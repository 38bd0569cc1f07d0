// tarn-bench-QueryParser: how many queries a second the parser reads, and that its time grows with
// the length of the text and no faster. Exit status 1 when a promise is not kept.
#include <cstdio>
#include <string>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/search/QueryParser.h"
#include "bench/Bench.h"

namespace {

using namespace tarn;

/// What people type: bare words, and every filter alone and together.
const std::string queries[] = {"pdfs from last week over 5 mb",
                               "invoice",
                               "screenshots from whatsapp in march",
                               "invoices from gmail",
                               "photos taken with fujifilm in summer 2024",
                               "budget 2025",
                               "large videos",
                               "word documents modified yesterday",
                               "zip files in downloads bigger than 1 gb",
                               "contract containing \"final agreement\"",
                               "letter from alice",
                               "raw photos on external drives",
                               ".psd files from the last 3 months",
                               "spreadsheets between 2024-03-01 and 2024-04-30",
                               "code files opened today",
                               "img_2034.jpg",
                               "tax return 2023 pdf",
                               "résumé of the Zürich office",
                               "music added this month",
                               "old installers in downloads"};

/// One real query after another, up to that many bytes.
std::string longText(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; text.size() < bytes; ++i) text += queries[i % std::size(queries)] + " ";
    return text;
}

}  // namespace

int main() {
    Platform::setCurrent(makeLinuxPlatform());  // the parser knows the user's folders by name
    const Locale locale("en_US");
    const QueryParser parser(Date{800'000'000}, Calendar("UTC", 1), locale);  // in May 2026
    constexpr int rounds = 500;
    const bench::Summary time = bench::measure(9, [&] {
        for (int i = 0; i < rounds; ++i) {
            for (const std::string& query : queries) bench::keep(parser.parse(query));
        }
    });
    const double perSecond = rounds * static_cast<double>(std::size(queries)) / time.median;
    std::printf("%-42s %15.0f /s %36s %7d%s\n", "queries parsed", perSecond, "", 100'000,
                perSecond >= 100'000 ? "" : "  MISSED");

    const std::string small = longText(10'000), large = longText(160'000);
    const auto timeOf = [&](const std::string& text) {
        return bench::measure(5, [&] { bench::keep(parser.parse(text)); }).min;
    };
    const double growth = timeOf(large) / timeOf(small);
    std::printf("%-42s %16.1f × %37s %7d%s\n", "time for 16 times the text", growth, "", 32,
                growth <= 32 ? "" : "  MISSED");
    return perSecond >= 100'000 && growth <= 32 ? 0 : 1;
}
