#pragma once

#include <string_view>
#include <vector>

#include <QtCore/QObject>

#include "TarnCore/base/JSON.h"
#include "TarnCore/files/JSONStore.h"

namespace tarn {

/// What lists can tell of a row, each in a column of its own.
enum class PaneColumn { name, modified, size, kind, folder, created, added, tags, source };
inline constexpr int paneColumnCount = 9;

/// Which columns lists have besides the name, in which order and how wide: for all panes alike.
///
/// Main thread only. "list-columns.json" holds an array of objects: "column" ("modified", …),
/// "isShown", and "width" where the user has dragged it, in logical pixels.
class ListColumns final : public QObject {
    Q_OBJECT
public:
    struct Column {
        PaneColumn which = PaneColumn::modified;
        bool isShown = true;
        int width = 0;  ///< 0 as long as the usual texts decide it.
        bool operator==(const Column&) const = default;
    };

    explicit ListColumns(QObject* parent = nullptr);

    /// Each but the name once, in their order.
    const std::vector<Column>& columns() const { return columns_; }
    const Column& column(PaneColumn which) const;
    void setShown(PaneColumn which, bool isShown);
    void setWidth(PaneColumn which, int width);
    /// To a place among the columns, 0 for the one behind the name.
    void move(PaneColumn which, int to);
    void reset();
    void flush() { store_.flush(); }

    static std::vector<Column> standard();

signals:
    void changed();

private:
    void set(std::vector<Column> columns);

    std::vector<Column> columns_;
    JSONStore<std::vector<Column>> store_;
};

void to_json(JSON& json, const ListColumns::Column& column);
/// A column of a newer version reads as `name`, which is never among them.
void from_json(const JSON& json, ListColumns::Column& column);

}  // namespace tarn
