#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"

/// How values stand in JSON, everywhere: dates as seconds since 2001, URLs as percent-encoded
/// file:// strings, UUIDs as upper-case strings, absent values left out. Records give to_json and
/// from_json for nlohmann::json in their own header; missing keys take the record's defaults.
namespace tarn {

using JSON = nlohmann::json;

void to_json(JSON& json, const Date& date);
void from_json(const JSON& json, Date& date);
void to_json(JSON& json, const URL& url);
void from_json(const JSON& json, URL& url);
void to_json(JSON& json, const UUID& uuid);
void from_json(const JSON& json, UUID& uuid);

/// Writes JSON straight into a string, for results of 100,000 records. Strings may hold any bytes;
/// what is not UTF-8 is written as U+FFFD. Calls must nest properly; keys are not checked for
/// being unique.
class JSONWriter {
public:
    explicit JSONWriter(std::string& out) : out_(out) {}

    void beginObject() {
        separate();
        out_ += '{';
        first_ = true;
    }
    void endObject() {
        out_ += '}';
        first_ = false;
    }
    void beginArray() {
        separate();
        out_ += '[';
        first_ = true;
    }
    void endArray() {
        out_ += ']';
        first_ = false;
    }
    /// A key without characters that need escaping.
    void key(std::string_view name);

    void string(std::string_view value);
    void boolean(bool value);
    void integer(std::int64_t value);
    /// Shortest form that reads back the same; not finite is written as null.
    void number(double value);
    void null();
    void date(Date value) { number(value.seconds); }
    void url(const URL& value);
    /// A finished piece of JSON, taken as it is.
    void raw(std::string_view json);

private:
    void separate() {
        if (!first_) out_ += ',';
        first_ = false;
    }
    std::string& out_;
    bool first_ = true;
};

namespace JSONText {
/// Two-space indented, broken UTF-8 replaced; ends without a line feed.
std::string pretty(const JSON& json);
std::string compact(const JSON& json);
/// Absent when the text is not JSON. Never throws; nesting deeper than 512 counts as not JSON.
std::optional<JSON> parse(std::string_view text);

/// A path as it stands in stored lists: the path itself where it is UTF-8, else its file:// form,
/// which no absolute path can be mistaken for.
std::string fromPath(const URL& url);
std::optional<URL> toPath(std::string_view text);
}  // namespace JSONText

}  // namespace tarn
