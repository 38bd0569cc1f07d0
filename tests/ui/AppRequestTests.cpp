#include <gtest/gtest.h>

#include "Tarn/ui/desktop/AppRequest.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

URL at(std::string_view path) { return URL::fromPath(path); }

TEST(AppRequest, takesTheWordsOfACommandLine) {
    const char* id = "7A2D0000-0000-0000-0000-000000000001";
    const struct {
        std::vector<std::string> words;
        AppRequest request;
    } cases[] = {
        {{}, {}},
        {{"a", "/b/../c", "./d/"}, {.paths = {at("/here/a"), at("/c"), at("/here/d")}}},
        {{"file:///x%20y/%FF", "/file:///z"}, {.paths = {at("/x y/\xff"), at("/file:/z")}}},
        // What only looks like a URI is a file of that name.
        {{"file://elsewhere/x", "http://x"},
         {.paths = {at("/here/file:/elsewhere/x"), at("/here/http:/x")}}},
        {{"a\nb", "\xff"}, {.paths = {at("/here/a\nb"), at("/here/\xff")}}},
        {{"--new-window", "--quick-search"}, {.wantsWindow = true, .wantsQuickSearch = true}},
        {{"--select", "a", "/b"}, {.items = {at("/here/a"), at("/b")}}},
        {{"a", "--", "--select", "--odd"},
         {.paths = {at("/here/a"), at("/here/--select"), at("/here/--odd")}}},
        {{std::string("--workspace=") + id}, {.workspace = UUID::parse(id)}},
        {{"--service"}, {.isService = true}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.words));
        EXPECT_EQ(AppRequest::parse(c.words, at("/here")), c.request);
        EXPECT_EQ(c.request.isPlain(), c.words.empty());
    }
    for (const char* wrong : {"--odd", "--workspace=taxes", "--workspace="}) {
        SCOPED_TRACE(wrong);
        EXPECT_THROW(AppRequest::parse({wrong}, at("/here")), Error);
    }
}

TEST(AppRequest, knowsThePlacesThatOtherProgramsName) {
    const struct {
        const char* uri;
        std::optional<URL> place;
    } cases[] = {
        {"file:///a/b", at("/a/b")},
        {"file:///%FF", at("/\xff")},
        {"/a b", at("/a b")},
        {"trash:///", Paths::trash()},
        {"smb://server/x", std::nullopt},
        {"a/b", std::nullopt},
        {"", std::nullopt},
        {"file:///%zz", std::nullopt},
        {"file:///a%00b", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.uri);
        EXPECT_EQ(AppRequest::place(c.uri), c.place);
    }
}

}  // namespace
}  // namespace tarn
