#include "TarnCore/index/readers/OfficeText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <vector>

#include "TarnCore/index/readers/OfficePackage.h"
#include "TarnCore/index/readers/TextBuilder.h"
#include "TarnCore/index/readers/XMLScanner.h"

namespace tarn::OfficeText {
namespace {

template <std::size_t count>
bool isOneOf(std::string_view name, const std::string_view (&names)[count]) {
    return std::ranges::find(names, name) != std::end(names);
}

/// Leaves out some elements with everything in them.
class SkippingHandler : public XMLScanner::Handler {
public:
    void begin(std::string_view name, const XMLScanner::Attributes& attributes) final {
        if (skipped_ > 0 || isSkipped(name)) {
            ++skipped_;
        } else {
            opened(name, attributes);
        }
    }
    void end(std::string_view name) final {
        if (skipped_ > 0) {
            --skipped_;
        } else {
            closed(name);
        }
    }
    void text(std::string_view text) final {
        if (skipped_ == 0) said(text);
    }

private:
    virtual bool isSkipped(std::string_view name) const = 0;
    virtual void opened(std::string_view name, const XMLScanner::Attributes& attributes) = 0;
    virtual void closed(std::string_view name) = 0;
    virtual void said(std::string_view text) = 0;

    std::size_t skipped_ = 0;
};

/// Paragraphs "p" of runs "t", as documents, slides, drawings and comments have them.
class ParagraphHandler final : public SkippingHandler {
public:
    explicit ParagraphHandler(TextBuilder& out) : out_(out) {}
    bool isDone() const override { return out_.isFull(); }

private:
    bool isSkipped(std::string_view name) const override {
        // Tabs in "pPr" are places, not characters; a fallback says the same once more.
        static constexpr std::string_view skipped[] = {"pPr", "Fallback", "binData", "binaryData",
                                                       "rPh"};
        return isOneOf(name, skipped);
    }
    void opened(std::string_view name, const XMLScanner::Attributes& /*attributes*/) override {
        if (name == "t") {
            ++runs_;
        } else if (name == "tab" || name == "ptab") {
            out_.tab();
        } else if (name == "br" || name == "cr") {
            out_.lineBreak();
        } else if (name == "noBreakHyphen") {
            out_.add("-");
        }
    }
    void closed(std::string_view name) override {
        if (name == "t") {
            runs_ -= runs_ > 0;
        } else if (name == "p" || name == "comment") {
            out_.lineBreak();
        }
    }
    void said(std::string_view text) override {
        if (runs_ > 0) out_.add(text);
    }

    TextBuilder& out_;
    std::size_t runs_ = 0;
};

/// The strings that the cells of a workbook share.
class SharedStrings final : public SkippingHandler {
public:
    std::string_view operator[](std::size_t index) const {
        return index < ends_.size() ? std::string_view(all_).substr(
                                          index == 0 ? 0 : ends_[index - 1],
                                          ends_[index] - (index == 0 ? 0 : ends_[index - 1]))
                                    : std::string_view();
    }
    bool isDone() const override { return all_.size() > mostBytes || ends_.size() > mostStrings; }

private:
    static constexpr std::size_t mostBytes = TextExtractor::maxCharacters * 8;
    static constexpr std::size_t mostStrings = TextExtractor::maxCharacters;
    static constexpr std::size_t longest = 32'767;  // characters of a cell

    bool isSkipped(std::string_view name) const override { return name == "rPh"; }
    void opened(std::string_view name, const XMLScanner::Attributes& /*attributes*/) override {
        if (name == "t") ++runs_;
    }
    void closed(std::string_view name) override {
        if (name == "t") {
            runs_ -= runs_ > 0;
        } else if (name == "si") {
            all_ += string_.take().value_or("");
            ends_.push_back(all_.size());
            string_ = TextBuilder();
        }
    }
    void said(std::string_view text) override {
        if (runs_ > 0 && string_.length() < longest) string_.add(text);
    }

    // Put together here, so that a million cells with one string of spaces cost nothing.
    TextBuilder string_;
    std::string all_;
    std::vector<std::size_t> ends_;  ///< Of each string in `all_`.
    std::size_t runs_ = 0;
};

/// The cells of a sheet.
class SheetHandler final : public SkippingHandler {
public:
    SheetHandler(TextBuilder& out, const SharedStrings& strings) : out_(out), strings_(strings) {}
    bool isDone() const override { return out_.isFull(); }

private:
    static constexpr std::size_t longestValue = 1 << 20;  // a cell has 32,767 characters at most

    bool isSkipped(std::string_view name) const override { return name == "f" || name == "rPh"; }
    void opened(std::string_view name, const XMLScanner::Attributes& attributes) override {
        if (name == "c") {
            isShared_ = attributes["t"] == "s";
            value_.clear();
        } else if (name == "v" || name == "t") {
            ++values_;
        }
    }
    void closed(std::string_view name) override {
        if (name == "v" || name == "t") {
            values_ -= values_ > 0;
        } else if (name == "c") {
            out_.add(isShared_ ? shared() : std::string_view(value_));
            out_.tab();
        } else if (name == "row") {
            out_.lineBreak();
        }
    }
    void said(std::string_view text) override {
        if (values_ > 0 && value_.size() < longestValue) value_ += text;
    }
    std::string_view shared() const {
        std::size_t index = 0;
        const char* const end = value_.data() + value_.size();
        const auto [stop, error] = std::from_chars(value_.data(), end, index);
        return error == std::errc() && stop == end ? strings_[index] : std::string_view();
    }

    TextBuilder& out_;
    const SharedStrings& strings_;
    std::string value_;
    std::size_t values_ = 0;
    bool isShared_ = false;
};

/// The paragraphs and headings of OpenDocument.
class OpenDocumentHandler final : public SkippingHandler {
public:
    explicit OpenDocumentHandler(TextBuilder& out) : out_(out) {}
    bool isDone() const override { return out_.isFull(); }

private:
    bool isSkipped(std::string_view name) const override {
        // What was deleted and can still be taken back; programs; pictures.
        static constexpr std::string_view skipped[] = {"tracked-changes", "scripts", "script",
                                                       "binary-data", "event-listeners"};
        return isOneOf(name, skipped);
    }
    void opened(std::string_view name, const XMLScanner::Attributes& /*attributes*/) override {
        if (name == "p" || name == "h") {
            ++paragraphs_;
        } else if (name == "s") {
            out_.space();
        } else if (name == "tab") {
            out_.tab();
        } else if (name == "line-break") {
            out_.lineBreak();
        }
    }
    void closed(std::string_view name) override {
        if (name != "p" && name != "h") return;
        paragraphs_ -= paragraphs_ > 0;
        out_.lineBreak();
    }
    void said(std::string_view text) override {
        if (paragraphs_ > 0) out_.add(text);
    }

    TextBuilder& out_;
    std::size_t paragraphs_ = 0;
};

class OfficeReader {
public:
    explicit OfficeReader(OfficePackage& package) : package_(package) {}

    /// False when a member is damaged.
    bool read() {
        if (package_.has("content.xml")) {
            OpenDocumentHandler handler(out_);
            return scan("content.xml", handler);
        }
        // The main part of some programs is "document2.xml".
        if (!package_.numbered("word/document", ".xml").empty()) {
            return scanAll({"word/document", "word/header", "word/footer", "word/footnotes",
                            "word/endnotes", "word/comments"});
        }
        if (!package_.numbered("ppt/slides/slide", ".xml").empty())
            return scanAll(
                {"ppt/slides/slide", "ppt/notesSlides/notesSlide", "ppt/comments/comment"});
        return readWorkbook();
    }

    std::optional<std::string> take() { return out_.take(); }

private:
    bool readWorkbook() {
        SharedStrings strings;
        if (package_.has("xl/sharedStrings.xml") && !scan("xl/sharedStrings.xml", strings))
            return false;
        for (const std::string& name : package_.numbered("xl/worksheets/sheet", ".xml")) {
            SheetHandler handler(out_, strings);
            if (!scan(name, handler)) return false;
            out_.lineBreak();
        }
        return scanAll({"xl/comments", "xl/drawings/drawing"});
    }

    bool scanAll(std::initializer_list<std::string_view> names) {
        for (const std::string_view begin : names) {
            for (const std::string& name : package_.numbered(begin, ".xml")) {
                ParagraphHandler handler(out_);
                if (out_.isFull()) return true;
                if (!scan(name, handler)) return false;
                out_.lineBreak();
            }
        }
        return true;
    }

    bool scan(std::string_view name, XMLScanner::Handler& handler) {
        XMLScanner scanner(handler);
        const bool isWhole =
            package_.read(name, [&](std::string_view bytes) { return scanner.push(bytes); });
        return isWhole && scanner.finish();
    }

    OfficePackage& package_;
    TextBuilder out_;
};

}  // namespace

std::optional<std::string> read(const FileBytes& bytes) {
    auto package = OfficePackage::open(bytes);
    if (!package) return std::nullopt;
    OfficeReader reader(*package);
    return reader.read() ? reader.take() : std::nullopt;
}

std::optional<std::string> readWordML(std::string_view bytes) {
    TextBuilder out;
    ParagraphHandler handler(out);
    XMLScanner scanner(handler);
    scanner.push(bytes);
    return scanner.finish() ? out.take() : std::nullopt;
}

}  // namespace tarn::OfficeText
