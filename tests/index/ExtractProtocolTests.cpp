#include <algorithm>

#include "TarnCore/index/ExtractProtocol.h"
#include "tests/support/TestFolder.h"

namespace tarn::ExtractProtocol {
namespace {

std::optional<Request> roundTrip(const Request& request) {
    const std::string frame = encode(request);
    const auto header = decodeHeader(frame);
    if (!header || headerSize + header->length != frame.size()) return std::nullopt;
    return decodeRequest(*header, std::string_view(frame).substr(headerSize));
}

TEST(ExtractProtocol, requestsSurviveTheWay) {
    const Request cases[] = {
        {true, "a.pdf", {"en-US", "de"}},
        {false, "", {}},
        {false, "line\nfeed, comma,\xFF\xFE.html", {"zh-Hant"}},
        {true, std::string(255, 'x'), {}},
        {false, "large.png", {}, true},
    };
    for (const Request& request : cases) {
        SCOPED_TRACE(request.fileName);
        EXPECT_EQ(roundTrip(request), request);
    }
}

TEST(ExtractProtocol, whatIsTooLongLosesWhatMattersLeast) {
    const Request request = {false, std::string(9000, 'x') + ".rtf",
                             std::vector<std::string>(5000, "en-US")};
    const auto read = roundTrip(request);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->fileName.ends_with("xx.rtf"));
    EXPECT_FALSE(read->languages.empty());
    EXPECT_TRUE(
        std::ranges::all_of(read->languages, [](const auto& one) { return one == "en-US"; }));
}

TEST(ExtractProtocol, answersSayWhatDependsOnRecognitionAndWhatIsMissing) {
    using TextExtractor::Tool;
    const std::optional<Tool> tools[] = {std::nullopt, Tool::documents, Tool::recognition,
                                         Tool::word};
    for (const auto& missing : tools) {
        for (const bool hasPictures : {false, true}) {
            const auto bytes = encode(Header{
                Kind::noText, flags({.hasPictures = hasPictures, .missing = missing}) | isLast, 0});
            const auto header = decodeHeader({bytes.data(), bytes.size()});
            ASSERT_TRUE(header);
            const auto read = reading(header->flags);
            EXPECT_EQ(read.hasPictures, hasPictures);
            EXPECT_EQ(read.missing, missing);
        }
    }
}

TEST(ExtractProtocol, refusesHeadersThatMakeNoSense) {
    const auto bytes = [](const Header& header) {
        const auto encoded = encode(header);
        return std::string(encoded.begin(), encoded.end());
    };
    const auto mostText = static_cast<std::uint32_t>(mostTextBytes);
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"magic", "XT" + bytes({Kind::ready, 0, 0}).substr(2)},
        {"version", std::string("TX\x01\x01", 4) + std::string(8, '\0')},
        {"kind 0", bytes({static_cast<Kind>(0), 0, 0})},
        {"kind 5", bytes({static_cast<Kind>(5), 0, 0})},
        {"ready with a payload", bytes({Kind::ready, 0, 1})},
        {"ready with a flag", bytes({Kind::ready, 1, 0})},
        {"no text, yet text", bytes({Kind::noText, 0, 1})},
        {"too much text", bytes({Kind::text, 0, mostText + 1})},
        {"unknown flag", bytes({Kind::text, 64, 1})},
        {"empty request", bytes({Kind::request, 0, 0})},
        {"long request", bytes({Kind::request, 0, mostRequestBytes + 1})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(decodeHeader(c.bytes), std::nullopt);
    }
    EXPECT_TRUE(decodeHeader(bytes({Kind::text, isLast, mostText})));
}

TEST(ExtractProtocol, refusesRequestsThatMakeNoSense) {
    const auto header = [](std::size_t length) {
        return Header{Kind::request, 0, static_cast<std::uint32_t>(length)};
    };
    const std::string_view cases[] = {
        std::string_view("\x00", 1),  // shorter than its fixed part
        std::string_view("\x02\x00"
                         "a",
                         3),  // a name longer than what follows
    };
    for (const std::string_view payload : cases)
        EXPECT_EQ(decodeRequest(header(payload.size()), payload), std::nullopt);
    const std::string longName = std::string("\xFF\xFF", 2) + std::string(4000, 'x');
    EXPECT_EQ(decodeRequest(header(longName.size()), longName), std::nullopt);
}

}  // namespace
}  // namespace tarn::ExtractProtocol
