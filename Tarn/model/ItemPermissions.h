#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Who may do what with some items, as it is shown and changed for all of them at once.
struct ItemPermissions {
    Q_DECLARE_TR_FUNCTIONS(tarn::ItemPermissions)
public:
    std::size_t count = 0;  ///< Items that are still there.
    std::uint32_t all = 0;  ///< Permission bits that every item has.
    std::uint32_t any = 0;  ///< Permission bits that at least one has.
    bool hasFiles = false;
    bool hasFolders = false;
    bool canChange = false;  ///< They are all the user's own.
    QString owner;           ///< A name; empty where they have several.
    QString group;           ///< The same.
    /// What the user may do with a single item, in words; empty for several.
    QString access;

    /// Asks the disk and who knows the names of users; not on the main thread. Links are followed.
    static ItemPermissions read(const std::vector<URL>& urls);

    /// “rwxr-x---”, with “?” where the items differ.
    QString bits() const;
};

}  // namespace tarn
