#include "TarnCore/index/readers/WebArchiveText.h"

#include <utility>
#include <vector>

#include "TarnCore/base/Base64.h"
#include "TarnCore/base/PropertyList.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/readers/HTMLText.h"
#include "TarnCore/index/readers/XMLScanner.h"

namespace tarn::WebArchiveText {
namespace {

constexpr std::string_view mainResource = "WebMainResource", dataKey = "WebResourceData",
                           typeKey = "WebResourceMIMEType",
                           encodingKey = "WebResourceTextEncodingName";

struct Resource {
    std::string data;
    std::string type;
    std::string encoding;
};

/// Finds the main resource in a property list in XML.
class ListHandler final : public XMLScanner::Handler {
public:
    Resource& resource() { return resource_; }

    void begin(std::string_view name, const XMLScanner::Attributes& /*attributes*/) override {
        if (name == "dict" || name == "array") {
            keys_.emplace_back();
        } else {
            value_.clear();
            isValue_ = name == "key" || isWanted();
        }
    }
    void end(std::string_view name) override {
        isValue_ = false;
        if (name == "dict" || name == "array") {
            if (keys_.size() == 2 && keys_[0] == mainResource) isDone_ = true;
            if (!keys_.empty()) keys_.pop_back();
        } else if (name == "key") {
            if (!keys_.empty()) keys_.back() = std::exchange(value_, {});
        } else if (isWanted()) {
            if (name == "data" && keys_[1] == dataKey) resource_.data = Base64::decode(value_);
            if (name == "string" && keys_[1] == typeKey) resource_.type = value_;
            if (name == "string" && keys_[1] == encodingKey) resource_.encoding = value_;
        }
    }
    void text(std::string_view text) override {
        if (isValue_) value_ += text;
    }
    bool isDone() const override { return isDone_; }

private:
    bool isWanted() const { return keys_.size() == 2 && keys_[0] == mainResource; }

    Resource resource_;
    std::vector<std::string> keys_;  ///< The last key of each open dictionary.
    std::string value_;
    bool isValue_ = false;
    bool isDone_ = false;
};

std::optional<Resource> resourceOf(std::string_view bytes) {
    if (const auto list = PropertyList::Document::open(bytes)) {
        const auto resource = list->member(list->top(), mainResource);
        const auto member = [&](std::string_view key) {
            return resource ? list->member(*resource, key) : std::nullopt;
        };
        const auto string = [&](std::string_view key) {
            const auto object = member(key);
            return object ? list->string(*object).value_or("") : std::string();
        };
        const auto object = member(dataKey);
        const auto data = object ? list->data(*object) : std::nullopt;
        if (!data) return std::nullopt;
        return Resource{std::string(*data), string(typeKey), string(encodingKey)};
    }
    ListHandler handler;
    XMLScanner scanner(handler);
    scanner.push(bytes);
    if (!scanner.finish()) return std::nullopt;
    return std::move(handler.resource());
}

}  // namespace

std::optional<std::string> read(std::string_view bytes) {
    auto resource = resourceOf(bytes);
    if (!resource) return std::nullopt;
    const std::string type = Text::lowercasedASCII(resource->type);
    if (type == "text/plain") return PlainText::text(std::move(resource->data));
    if (type.empty() || type.find("html") != type.npos)
        return HTMLText::read(resource->data, resource->encoding);
    return std::nullopt;
}

}  // namespace tarn::WebArchiveText
