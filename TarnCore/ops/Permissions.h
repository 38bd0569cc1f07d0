#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/Step.h"

namespace tarn {

/// What shall become of the permission bits of items; those named in neither set stay as they are.
struct PermissionChange {
    std::uint32_t given = 0;  ///< Bits that each item gets.
    std::uint32_t taken = 0;  ///< Bits that each item loses.
    /// Also everything inside of folders. Files there are made to run only where they could be run
    /// by somebody before; links are left alone.
    bool isDeep = false;

    bool operator==(const PermissionChange&) const = default;
};

namespace Permissions {

/// The bits of "run", for a folder "go in", of all three.
inline constexpr std::uint32_t runBits = 0111;

/// "rwxr-x---", with "s" and "t" as `ls` writes them.
std::string text(std::uint32_t mode);

/// Changes the items in order, what can be changed of them; the first failure is thrown at the end,
/// as FileOpError. `done` receives the steps of what was changed, also then; an item that has these
/// permissions already is no step. A link is followed where it was named itself. Blocks; stops
/// between items when cancelled.
void change(const std::vector<URL>& items, const PermissionChange& what, const CancelToken& token,
            std::vector<Step>& done);

/// For taking a step back and for doing it again. Throws FileOpError.
void write(const URL& url, std::uint32_t mode);

}  // namespace Permissions

}  // namespace tarn
