#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <QtCore/QString>

#include "Tarn/model/DriveService.h"
#include "Tarn/model/records/Location.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// The parts of the sidebar, each below a heading that folds it, in their order. The Trash stands
/// below all of them.
enum class SidebarSection { favorites, smartFolders, tags, volumes, network, none };

namespace SidebarSections {

/// In the language of the window.
QString title(SidebarSection section);
/// As folded sections are remembered: "smartFolders".
std::string_view name(SidebarSection section);

}  // namespace SidebarSections

/// One row of the sidebar: a heading, or a place to go to.
struct SidebarRow {
    enum class Kind {
        heading,
        place,     ///< One that every sidebar has.
        favorite,  ///< One that the user has put there.
        smartFolder,
        tag,
        volume,
        server,   ///< One that was connected to before and is not now.
        connect,  ///< The way to other servers.
        trash
    };
    /// Whether a volume has said how full it is.
    enum class Answer { none, waiting, ready, silent };

    Kind kind = Kind::place;
    SidebarSection section = SidebarSection::none;
    QString title;
    std::string symbol;
    Location location;       ///< Of all but headings, servers and the way to them.
    bool isFolded = false;   ///< Of a heading.
    bool isBuiltIn = false;  ///< Of a smart folder.
    UUID id;                 ///< Of a favourite or a smart folder.
    FinderTag tag;
    std::string address;  ///< Of a server.
    std::optional<Volume> volume;
    bool isEjecting = false;
    Answer answer = Answer::none;
    std::int64_t total = 0;      ///< Bytes, of a volume.
    std::int64_t available = 0;  ///< Bytes.
    QString detail;              ///< Of the Trash: “3 items · 12 MB”.

    bool operator==(const SidebarRow&) const = default;
    /// The same row, whatever is known of it by now.
    bool isSame(const SidebarRow& other) const;
    /// There is a button that takes it off the machine.
    bool isEjectable() const { return volume && volume->isEjectable && !isEjecting; }
    /// The user has put it where it is.
    bool isMovable() const {
        return kind == Kind::favorite || (kind == Kind::smartFolder && !isBuiltIn);
    }
    /// One can go there.
    bool isPlace() const {
        return kind != Kind::heading && kind != Kind::server && kind != Kind::connect;
    }
    /// What stands or is read beside the title: “213 GB of 512 GB available”, “Not responding”.
    /// Empty when nothing is known.
    QString note() const;
};

}  // namespace tarn
