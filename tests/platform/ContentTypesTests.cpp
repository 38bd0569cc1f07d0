#include <set>

#include "TarnCore/platform/UniformTypes.h"
#include "TarnCore/platform/linux/LinuxContentTypes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// The table alone: no database, nothing remembered.
LinuxContentTypes tableOnly() {
    return LinuxContentTypes(nullptr, URL::fromPath("/nonexistent/cache"), "key", true);
}

TEST(UniformTypes, theTableIsSound) {
    std::set<std::string_view> identifiers;
    for (const auto& row : UniformTypes::declarations())
        EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier;
    for (const auto& row : UniformTypes::declarations()) {
        SCOPED_TRACE(row.identifier);
        const auto index = UniformTypes::indexOf(row.identifier);
        ASSERT_TRUE(index);
        EXPECT_TRUE(UniformTypes::lineage(*index)[*index]);
        // A parent that is misspelt would silently lose its descendants.
        std::string_view rest = row.parents;
        while (!rest.empty()) {
            const auto parent = rest.substr(0, rest.find(' '));
            EXPECT_TRUE(identifiers.contains(parent)) << parent;
            rest =
                parent.size() == rest.size() ? std::string_view() : rest.substr(parent.size() + 1);
        }
    }
}

TEST(LinuxContentTypes, knowCommonNamesWithoutTheDatabase) {
    const auto types = tableOnly();
    const struct {
        const char* name;
        std::optional<std::string> type;
    } cases[] = {
        {"report.pdf", "com.adobe.pdf"},
        {"IMG_0001.CR2", "com.canon.cr2-raw-image"},
        {"main.ts", "com.microsoft.typescript"},          // not a translator's catalogue
        {"00001.MTS", "public.mpeg-2-transport-stream"},  // a camera's film
        {"App.swift", "public.swift-source"},
        {"page.webarchive", "com.apple.webarchive"},
        {"Xcode.xip", "com.apple.xip-archive"},
        {"backup.tar.gz", "org.gnu.gnu-zip-tar-archive"},
        {"backup.TAR.XZ", "org.tukaani.tar-xz-archive"},
        {"notes.tar.old.gz", "org.gnu.gnu-zip-archive"},
        {".tar.gz", "org.gnu.gnu-zip-archive"},
        {"a.C", "public.c-plus-plus-source"},  // and "a.c" is not
        {"a.c", "public.c-source"},
        {"Makefile", "public.make-source"},
        {"README", "public.plain-text"},
        {"readme.", std::nullopt},
        {".profile", std::nullopt},
        {"", std::nullopt},
        {"broken\xff.\xfe", std::nullopt},
        {"line\nfeed.txt", "public.plain-text"},
        {"a.averyveryverylongextensionthatisnone", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(types.typeForName(c.name), c.type);
    }
}

TEST(LinuxContentTypes, conformToTheirAncestors) {
    const auto types = tableOnly();
    const struct {
        std::string_view type;
        std::string_view ancestor;
        bool conforms;
    } cases[] = {
        {"public.jpeg", ContentType::image, true},
        {"com.canon.cr2-raw-image", ContentType::image, true},
        {"com.canon.cr2-raw-image", ContentType::rawImage, true},
        {"public.zip-archive", ContentType::archive, true},
        // A container inside is no reason to be found among archives.
        {"org.openxmlformats.wordprocessingml.document", ContentType::archive, false},
        {"public.iso-image", ContentType::diskImage, true},
        {"public.python-script", ContentType::script, true},
        {"public.python-script", ContentType::sourceCode, true},
        {"public.svg-image", ContentType::image, true},
        {"com.apple.application-bundle", ContentType::application, true},
        {"com.apple.application-bundle", ContentType::package, true},
        {"org.appimage.bundle", ContentType::application, true},
        {"com.microsoft.windows-executable", ContentType::application, false},
        {"com.adobe.pdf", ContentType::text, false},
        {"com.adobe.pdf", ContentType::pdf, true},
        {ContentType::image, "public.jpeg", false},
        {"dyn.mime.image/x-unheard-of", ContentType::image, true},
        {"dyn.mime.text/x-unheardofsrc", ContentType::sourceCode, true},
        {"dyn.mime.application/x-foo-compressed-tar", ContentType::archive, true},
        {"dyn.mime.application/x-foo", ContentType::text, false},
        {"unheard.of", ContentType::data, false},
        {"unheard.of", "unheard.of", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " is a " + std::string(c.ancestor));
        EXPECT_EQ(types.conforms(c.type, c.ancestor), c.conforms);
    }
}

TEST(ContentTypeCache, survivesItsFileAndRefusesOthers) {
    ContentTypeCache cache;
    cache.extensions = {{"foo", "dyn.mime.application/x-foo"}, {"junk", std::nullopt}};
    cache.types = {{"dyn.mime.application/x-foo", {"Foo-Dokument", {"public.data"}}},
                   {"com.adobe.pdf", {"PDF-Dokument", {}}}};
    const std::string text = cache.print("de /usr/share=1");
    EXPECT_EQ(ContentTypeCache::parse(text, "de /usr/share=1"), cache);
    EXPECT_EQ(ContentTypeCache::parse(text, "de /usr/share=2"), std::nullopt);
    // Every broken beginning of the file is refused, or is a smaller cache.
    for (std::size_t length = 0; length < text.size(); ++length) {
        const auto part = ContentTypeCache::parse(text.substr(0, length), "de /usr/share=1");
        EXPECT_TRUE(!part || text[length - 1] == '\n') << length;
    }
    const TestFolder folder;
    cache.save(folder / "new/folder/cache", "key");
    EXPECT_EQ(ContentTypeCache::load(folder / "new/folder/cache", "key"), cache);
    EXPECT_EQ(ContentTypeCache::load(folder / "missing", "key"), std::nullopt);
}

}  // namespace
}  // namespace tarn
