#include "Tarn/model/ListColumns.h"

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSONFields.h"

namespace tarn {
namespace {

/// In the order of the enumeration.
constexpr std::array<std::string_view, paneColumnCount> rawValues = {
    "name", "modified", "size", "kind", "folder", "created", "added", "tags", "source"};

/// What is stored with nothing missing and nothing twice.
std::vector<ListColumns::Column> complete(const std::vector<ListColumns::Column>& stored) {
    std::vector<ListColumns::Column> all;
    const auto add = [&all](const ListColumns::Column& column) {
        const bool isNew =
            std::ranges::find(all, column.which, &ListColumns::Column::which) == all.end();
        if (isNew && column.which != PaneColumn::name) all.push_back(column);
    };
    for (const auto& column : stored) add(column);
    for (const auto& column : ListColumns::standard()) add(column);
    return all;
}

}  // namespace

ListColumns::ListColumns(QObject* parent) : QObject(parent), store_("list-columns.json", standard) {
    columns_ = complete(store_.value());
}

std::vector<ListColumns::Column> ListColumns::standard() {
    return {{PaneColumn::modified, true}, {PaneColumn::size, true},     {PaneColumn::kind, true},
            {PaneColumn::folder, true},   {PaneColumn::created, false}, {PaneColumn::added, false},
            {PaneColumn::source, false},  {PaneColumn::tags, false}};
}

const ListColumns::Column& ListColumns::column(PaneColumn which) const {
    return *std::ranges::find(columns_, which, &Column::which);
}

void ListColumns::set(std::vector<Column> columns) {
    if (columns == columns_) return;
    columns_ = std::move(columns);
    store_.set(columns_);
    emit changed();
}

void ListColumns::setShown(PaneColumn which, bool isShown) {
    auto columns = columns_;
    std::ranges::find(columns, which, &Column::which)->isShown = isShown;
    set(std::move(columns));
}

void ListColumns::setWidth(PaneColumn which, int width) {
    auto columns = columns_;
    std::ranges::find(columns, which, &Column::which)->width = std::max(0, width);
    set(std::move(columns));
}

void ListColumns::move(PaneColumn which, int to) {
    auto columns = columns_;
    const auto from = std::ranges::find(columns, which, &Column::which);
    const Column column = *from;
    columns.erase(from);
    columns.insert(columns.begin() + std::clamp(to, 0, static_cast<int>(columns.size())), column);
    set(std::move(columns));
}

void ListColumns::reset() { set(standard()); }

void to_json(JSON& json, const ListColumns::Column& column) {
    json = JSON{{"column", rawValues[static_cast<std::size_t>(column.which)]},
                {"isShown", column.isShown}};
    if (column.width > 0) json["width"] = column.width;
}

void from_json(const JSON& json, ListColumns::Column& column) {
    std::string raw;
    JSONFields::read(json, "column", raw);
    const auto found = std::ranges::find(rawValues, raw);
    column.which = found == rawValues.end() ? PaneColumn::name
                                            : static_cast<PaneColumn>(found - rawValues.begin());
    JSONFields::read(json, "isShown", column.isShown);
    JSONFields::read(json, "width", column.width);
}

}  // namespace tarn
