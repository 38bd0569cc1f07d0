#pragma once

#include <map>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// The errno that `body` throws; 0 when it does not.
template <class Body>
int errorOf(const Body& body) {
    try {
        body();
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

/// Reads a folder to its end, in which no name may come twice.
inline std::map<std::string, FileType> contents(FolderReader& reader) {
    std::map<std::string, FileType> names;
    for (auto batch = reader.read(); !batch.empty(); batch = reader.read())
        for (const FolderEntry& entry : batch)
            EXPECT_TRUE(names.emplace(entry.view(), entry.type).second) << entry.name;
    return names;
}

}  // namespace tarn
