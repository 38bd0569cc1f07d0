#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

/// One tag of a text in XML, with the places in the text where its parts stand, so that it can be
/// changed and everything around it left as it is.
struct XMLTag {
    struct Attribute {
        std::string_view name;
        std::size_t begin = 0;  ///< Of the value, behind its quote.
        std::size_t end = 0;
    };
    std::string_view name;  ///< As written, with its prefix.
    std::size_t begin = 0;  ///< Of '<'.
    std::size_t end = 0;    ///< Behind '>'.
    bool isEnd = false;     ///< "</name>"
    bool isEmpty = false;   ///< "<name/>"
    std::vector<Attribute> attributes;

    const Attribute* attribute(std::string_view wanted) const;
};

/// Goes from tag to tag. Comments, sections of plain text, declarations and instructions are passed
/// over. Anything may stand in the text; reading never fails, and ends at a tag that does not end.
class XMLTagReader {
public:
    /// `text` outlives the tags.
    explicit XMLTagReader(std::string_view text) : text_(text) {}
    std::optional<XMLTag> next();

private:
    bool skip(std::string_view begin, std::string_view end);
    std::optional<XMLTag> read();

    std::string_view text_;
    std::size_t at_ = 0;
};

namespace XMLText {

/// What the five named entities and those by number stand for; others stay as they are.
std::string unescaped(std::string_view text);
/// For the inside of an attribute in double quotes.
std::string escaped(std::string_view text);

}  // namespace XMLText

}  // namespace tarn
