#include <gtest/gtest.h>

#include "TarnCore/index/readers/WebArchiveText.h"

namespace tarn {
namespace {

std::string list(std::string_view resource) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//A//DTD 1.0//EN\" \"http://a/list.dtd\">\n"
           "<plist version=\"1.0\"><dict>"
           "<key>WebSubresources</key><array><dict><key>WebResourceData</key><data>eA==</data></"
           "dict></array>"
           "<key>WebMainResource</key><dict>" +
           std::string(resource) + "</dict></dict></plist>";
}

TEST(WebArchiveText, isReadFromXML) {
    const struct {
        const char* name;
        std::string bytes;
        const char* text;
    } cases[] = {
        {"a page",
         list("<key>WebResourceData</key><data>\n\tPHA+R3LD\n\tvMOfZTwvcD4=\n</data>"
              "<key>WebResourceMIMEType</key><string>text/html</string>"),
         "Grüße"},
        {"in its encoding",
         list("<key>WebResourceTextEncodingName</key><string>windows-1251</string>"
              "<key>WebResourceData</key><data>z/Do</data>"),
         "При"},
        {"plain text",
         list("<key>WebResourceMIMEType</key><string>text/plain</string>"
              "<key>WebResourceData</key><data>YSA8IGI=</data>"),
         "a < b"},
        {"a picture",
         list("<key>WebResourceMIMEType</key><string>image/png</string>"
              "<key>WebResourceData</key><data>YSA8IGI=</data>"),
         nullptr},
        {"nothing in it", list(""), nullptr},
        {"another list", "<plist><dict><key>a</key><data>YQ==</data></dict></plist>", nullptr},
        {"torn before its page", list("<key>WebResourceData</key><data>PHA+").substr(0, 350),
         nullptr},
        {"no list", "WebMainResource", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.text) {
            EXPECT_EQ(WebArchiveText::read(c.bytes), c.text);
        } else {
            EXPECT_EQ(WebArchiveText::read(c.bytes), std::nullopt);
        }
    }
}

}  // namespace
}  // namespace tarn
