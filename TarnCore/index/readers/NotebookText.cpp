#include "TarnCore/index/readers/NotebookText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/index/readers/TextBuilder.h"

namespace tarn::NotebookText {
namespace {

/// Takes what is wanted out of the notebook as it is parsed, so that its pictures are never kept.
/// The names are those of nlohmann::json_sax.
class Handler {
public:
    using number_integer_t = nlohmann::json::number_integer_t;
    using number_unsigned_t = nlohmann::json::number_unsigned_t;
    using number_float_t = nlohmann::json::number_float_t;
    using string_t = nlohmann::json::string_t;
    using binary_t = nlohmann::json::binary_t;

    std::optional<std::string> take() { return isNotebook_ ? out_.take() : std::nullopt; }
    bool isFull() const { return out_.isFull(); }

    bool null() { return !isFull(); }
    bool boolean(bool /*value*/) { return !isFull(); }
    bool number_integer(number_integer_t /*value*/) { return !isFull(); }
    bool number_unsigned(number_unsigned_t /*value*/) { return !isFull(); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) { return !isFull(); }
    bool binary(binary_t& /*value*/) { return !isFull(); }
    bool string(const string_t& value) {
        if (isWanted()) {
            out_.addLines(value);
            // Members of a list are lines with their ends, or pieces of one.
            if (!keys_.back().isArray) out_.lineBreak();
        }
        return !isFull();
    }
    bool key(const string_t& key) {
        if (keys_.empty()) return false;
        keys_.back().key = key.substr(0, longestKey);
        if (keys_.size() == 1 && (key == "cells" || key == "worksheets")) isNotebook_ = true;
        return true;
    }
    bool start_object(std::size_t /*size*/) { return open(false); }
    bool start_array(std::size_t /*size*/) { return open(true); }
    bool end_object() { return close(); }
    bool end_array() {
        if (isWanted()) out_.lineBreak();
        return close();
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::json::exception& /*error*/) {
        return false;
    }

private:
    static constexpr std::size_t longestKey = 64;
    static constexpr std::size_t deepest = 64;
    struct Level {
        bool isArray = false;
        std::string key{};
    };

    bool open(bool isArray) {
        keys_.push_back({isArray});
        return keys_.size() <= deepest;
    }
    bool close() {
        if (!keys_.empty()) keys_.pop_back();
        return !isFull();
    }

    /// The names on the way from the top to here: the key of every object.
    bool isWanted() const {
        std::vector<std::string_view> path;
        for (const Level& level : keys_)
            if (!level.isArray) path.push_back(level.key);
        if (!path.empty() && path[0] == "worksheets") path.erase(path.begin());
        if (path.size() < 2 || path[0] != "cells") return false;
        const auto is = [&](std::initializer_list<std::string_view> names) {
            return std::ranges::equal(path.begin() + 1, path.end(), names.begin(), names.end());
        };
        return is({"source"}) || is({"input"}) || is({"outputs", "text"}) ||
               is({"outputs", "data", "text/plain"}) || is({"outputs", "data", "text/markdown"}) ||
               is({"outputs", "ename"}) || is({"outputs", "evalue"});
    }

    TextBuilder out_;
    std::vector<Level> keys_;
    bool isNotebook_ = false;
};

}  // namespace

std::optional<std::string> read(std::string_view bytes) {
    Handler handler;
    const bool isWhole = nlohmann::json::sax_parse(bytes.begin(), bytes.end(), &handler);
    return isWhole || handler.isFull() ? handler.take() : std::nullopt;
}

}  // namespace tarn::NotebookText
