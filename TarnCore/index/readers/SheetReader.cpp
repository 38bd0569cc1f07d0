#include "TarnCore/index/readers/SheetReader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/index/readers/CellFormat.h"
#include "TarnCore/index/readers/OfficePackage.h"
#include "TarnCore/index/readers/SheetBuilder.h"
#include "TarnCore/index/readers/XMLScanner.h"

namespace tarn::SheetReader {
namespace {

using Attributes = XMLScanner::Attributes;

constexpr std::size_t mostStrings = 1'000'000;
constexpr std::size_t mostStringBytes = 64'000'000;
constexpr std::size_t mostStyles = 65'536;
constexpr std::size_t longestValue = 4 * TableSheet::longestCell;

std::size_t number(std::string_view text, std::size_t otherwise) {
    std::size_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? value : otherwise;
}

/// Which sheets there are, and where.
class Workbook final : public XMLScanner::Handler {
public:
    struct Sheet {
        std::string name;
        std::string relation;
    };
    std::vector<Sheet> sheets;
    bool from1904 = false;

    void begin(std::string_view name, const Attributes& attributes) override {
        if (name == "workbookPr") {
            const std::string_view value = attributes["date1904"];
            from1904 = value == "1" || value == "true";
        } else if (name == "sheet" && sheets.size() < TableSheet::mostSheets) {
            sheets.push_back({std::string(attributes["name"]), std::string(attributes["id"])});
        }
    }
    void end(std::string_view) override {}
    void text(std::string_view) override {}
};

/// Which part each relation means.
class Relations final : public XMLScanner::Handler {
public:
    std::map<std::string, std::string, std::less<>> targets;

    void begin(std::string_view name, const Attributes& attributes) override {
        if (name == "Relationship" && targets.size() < 2 * TableSheet::mostSheets)
            targets.emplace(attributes["Id"], attributes["Target"]);
    }
    void end(std::string_view) override {}
    void text(std::string_view) override {}
};

/// The format of each style that cells name by its number.
class Styles final : public XMLScanner::Handler {
public:
    std::vector<CellFormat> formats;

    void begin(std::string_view name, const Attributes& attributes) override {
        if (name == "cellXfs") {
            isInside_ = true;
        } else if (name == "numFmt" && codes_.size() < mostStyles) {
            codes_[number(attributes["numFmtId"], 0)] =
                CellFormat::fromCode(attributes["formatCode"]);
        } else if (name == "xf" && isInside_ && formats.size() < mostStyles) {
            const std::size_t id = number(attributes["numFmtId"], 0);
            const auto own = codes_.find(id);
            formats.push_back(own != codes_.end() ? own->second
                                                  : CellFormat::builtIn(static_cast<int>(
                                                        std::min<std::size_t>(id, 10'000))));
        }
    }
    void end(std::string_view name) override {
        if (name == "cellXfs") isInside_ = false;
    }
    void text(std::string_view) override {}

private:
    std::map<std::size_t, CellFormat> codes_;
    bool isInside_ = false;
};

/// The strings that cells share.
class Strings final : public XMLScanner::Handler {
public:
    std::vector<std::string> strings;

    void begin(std::string_view name, const Attributes&) override {
        if (name == "rPh") ++phonetic_;
        if (name == "t") ++texts_;
    }
    void end(std::string_view name) override {
        if (name == "rPh") phonetic_ -= phonetic_ > 0;
        if (name == "t") texts_ -= texts_ > 0;
        if (name == "si") strings.push_back(std::exchange(string_, {}));
    }
    void text(std::string_view text) override {
        if (texts_ == 0 || phonetic_ > 0 || string_.size() > longestValue) return;
        string_ += text;
        bytes_ += text.size();
    }
    bool isDone() const override {
        return strings.size() >= mostStrings || bytes_ > mostStringBytes;
    }

private:
    std::string string_;
    std::size_t bytes_ = 0;
    std::size_t texts_ = 0;
    std::size_t phonetic_ = 0;
};

/// The column of "BC12", 0 being "A"; `otherwise` when it names none.
std::size_t columnOf(std::string_view reference, std::size_t otherwise) {
    std::size_t column = 0;
    std::size_t letters = 0;
    for (const char c : reference) {
        if (c < 'A' || c > 'Z' || letters == 3) break;
        column = column * 26 + static_cast<std::size_t>(c - 'A') + 1;
        ++letters;
    }
    return letters > 0 ? column - 1 : otherwise;
}

class Cells final : public XMLScanner::Handler {
public:
    Cells(TableSheet& sheet, const std::vector<std::string>& strings,
          const std::vector<CellFormat>& formats, bool from1904)
        : builder_(sheet), strings_(strings), formats_(formats), from1904_(from1904) {}
    bool isDone() const override { return builder_.isFull(); }

    void begin(std::string_view name, const Attributes& attributes) override {
        if (name == "row") {
            // Numbers begin with 1, and a row without one follows the last.
            row_ = std::max(nextRow_, number(attributes["r"], nextRow_ + 1) - 1);
            nextRow_ = row_ + 1;
            nextColumn_ = 0;
        } else if (name == "c") {
            column_ = std::max(nextColumn_, columnOf(attributes["r"], nextColumn_));
            nextColumn_ = column_ + 1;
            type_ = std::string(attributes["t"]);
            style_ = number(attributes["s"], 0);
            value_.clear();
        } else if (name == "v" || name == "t") {
            ++values_;
        } else if (name == "rPh") {
            ++phonetic_;
        }
    }
    void end(std::string_view name) override {
        if (name == "v" || name == "t") values_ -= values_ > 0;
        if (name == "rPh") phonetic_ -= phonetic_ > 0;
        if (name == "c") builder_.add(row_, column_, shown());
    }
    void text(std::string_view text) override {
        if (values_ > 0 && phonetic_ == 0 && value_.size() < longestValue) value_ += text;
    }

private:
    std::string shown() const {
        if (type_ == "s") {
            const std::size_t index = number(value_, strings_.size());
            return index < strings_.size() ? strings_[index] : std::string();
        }
        if (type_ == "b") return value_ == "1" ? "TRUE" : "FALSE";
        if (!type_.empty() && type_ != "n") return value_;
        const CellFormat format = style_ < formats_.size() ? formats_[style_] : CellFormat{};
        return format.shown(value_, from1904_);
    }

    SheetBuilder builder_;
    const std::vector<std::string>& strings_;
    const std::vector<CellFormat>& formats_;
    bool from1904_;
    std::size_t row_ = 0;
    std::size_t nextRow_ = 0;
    std::size_t column_ = 0;
    std::size_t nextColumn_ = 0;
    std::string type_;
    std::size_t style_ = 0;
    std::string value_;
    std::size_t values_ = 0;
    std::size_t phonetic_ = 0;
};

/// OpenDocument has the text of each cell as it is shown, and says how often it is repeated.
class OpenDocumentCells final : public XMLScanner::Handler {
public:
    OpenDocumentCells(TableSheet& sheet, std::size_t wanted)
        : sheet_(sheet), builder_(sheet), wanted_(wanted) {}

    void begin(std::string_view name, const Attributes& attributes) override {
        if (name == "table") {
            // A table inside a cell is a part of that.
            if (++tables_ == 1 && sheet_.names.size() < TableSheet::mostSheets)
                sheet_.names.emplace_back(attributes["name"]);
            isWanted_ = sheet_.names.size() == wanted_ + 1;
        } else if (name == "table-row" && tables_ == 1) {
            repeatedRows_ = number(attributes["number-rows-repeated"], 1);
            column_ = 0;
            cells_.clear();
        } else if ((name == "table-cell" || name == "covered-table-cell") && tables_ == 1) {
            repeatedCells_ = number(attributes["number-columns-repeated"], 1);
            text_.clear();
            paragraphs_ = 0;
        } else if (name == "annotation") {
            ++skipped_;
        } else if (name == "p" && tables_ == 1 && skipped_ == 0) {
            if (paragraphs_++ > 0) text_ += '\n';
            ++open_;
        } else if (open_ > 0 && skipped_ == 0) {
            if (name == "s")
                text_.append(std::min<std::size_t>(number(attributes["c"], 1), 100), ' ');
            if (name == "tab") text_ += '\t';
            if (name == "line-break") text_ += '\n';
        }
    }
    void end(std::string_view name) override {
        if (name == "table") {
            tables_ -= tables_ > 0;
            row_ = 0;
        } else if (name == "annotation") {
            skipped_ -= skipped_ > 0;
        } else if (name == "p" && tables_ == 1 && skipped_ == 0) {
            open_ -= open_ > 0;
        } else if ((name == "table-cell" || name == "covered-table-cell") && tables_ == 1) {
            endCell();
        } else if (name == "table-row" && tables_ == 1) {
            endRow();
        }
    }
    void text(std::string_view text) override {
        if (isWanted_ && open_ > 0 && skipped_ == 0 && text_.size() < longestValue) text_ += text;
    }

private:
    void endCell() {
        const std::size_t times = std::min(repeatedCells_, TableSheet::mostColumns);
        if (!text_.empty() && isWanted_)
            for (std::size_t i = 0; i < times; ++i) cells_.emplace_back(column_ + i, text_);
        column_ += std::min(repeatedCells_, 2 * TableSheet::mostColumns);
        text_.clear();
    }
    void endRow() {
        const std::size_t times =
            cells_.empty() || !isWanted_ ? 0 : std::min(repeatedRows_, TableSheet::mostRows);
        for (std::size_t i = 0; i < times && !builder_.isFull(); ++i)
            for (const auto& [column, text] : cells_) builder_.add(row_ + i, column, text);
        row_ += std::min(repeatedRows_, 2 * TableSheet::mostRows);
    }

    TableSheet& sheet_;
    SheetBuilder builder_;
    std::size_t wanted_;
    bool isWanted_ = false;
    std::size_t tables_ = 0;
    std::size_t skipped_ = 0;
    std::size_t open_ = 0;
    std::size_t paragraphs_ = 0;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::size_t repeatedRows_ = 1;
    std::size_t repeatedCells_ = 1;
    std::string text_;
    std::vector<std::pair<std::size_t, std::string>> cells_;  ///< Of the row.
};

bool scan(OfficePackage& package, std::string_view name, XMLScanner::Handler& handler) {
    XMLScanner scanner(handler);
    const bool isWhole =
        package.read(name, [&](std::string_view bytes) { return scanner.push(bytes); });
    return isWhole && scanner.finish();
}

/// The part that a relation of the workbook leads to.
std::string partOf(const std::string& target) {
    if (target.starts_with('/')) return target.substr(1);
    return "xl/" + target;
}

std::optional<TableSheet> readWorkbook(OfficePackage& package, std::size_t wanted) {
    Workbook workbook;
    Relations relations;
    if (!scan(package, "xl/workbook.xml", workbook) ||
        !scan(package, "xl/_rels/workbook.xml.rels", relations) || wanted >= workbook.sheets.size())
        return std::nullopt;
    const auto target = relations.targets.find(workbook.sheets[wanted].relation);
    if (target == relations.targets.end()) return std::nullopt;
    Styles styles;
    if (package.has("xl/styles.xml") && !scan(package, "xl/styles.xml", styles))
        return std::nullopt;
    Strings strings;
    if (package.has("xl/sharedStrings.xml") && !scan(package, "xl/sharedStrings.xml", strings))
        return std::nullopt;
    TableSheet sheet;
    for (const Workbook::Sheet& one : workbook.sheets) sheet.names.push_back(one.name);
    Cells cells(sheet, strings.strings, styles.formats, workbook.from1904);
    if (!scan(package, partOf(target->second), cells)) return std::nullopt;
    return sheet;
}

}  // namespace

std::optional<TableSheet> read(const FileBytes& bytes, int sheet) {
    if (sheet < 0) return std::nullopt;
    auto package = OfficePackage::open(bytes);
    if (!package) return std::nullopt;
    const auto wanted = static_cast<std::size_t>(sheet);
    if (!package->has("content.xml")) return readWorkbook(*package, wanted);
    TableSheet table;
    OpenDocumentCells cells(table, wanted);
    if (!scan(*package, "content.xml", cells) || wanted >= table.names.size()) return std::nullopt;
    return table;
}

}  // namespace tarn::SheetReader
