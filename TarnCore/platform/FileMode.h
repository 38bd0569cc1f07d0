#pragma once

#include <cstdint>
#include <string>

#include "TarnCore/base/URL.h"

namespace tarn {

struct FileAttributes;

/// Who may do what with an item. Callable from any thread.
namespace FileMode {

/// Gives the item other permission bits (07777). `seen` is how it was found: another item that has
/// come in its place since is left alone (ESTALE), and a link is never followed (ELOOP). Throws
/// std::system_error.
void set(const URL& url, const FileAttributes& seen, std::uint32_t mode);

/// True when this process may change the permissions of such an item: it is the user's own.
bool canSet(const FileAttributes& item);

/// What the user may do with the item, whichever way that is granted.
struct Access {
    bool reads = false;
    bool writes = false;
    bool runs = false;  ///< For a folder: goes in.
};
Access access(const URL& url);

/// The name of a user or a group; the number where nobody has it. May ask a server.
std::string userName(std::uint32_t id);
std::string groupName(std::uint32_t id);

}  // namespace FileMode

}  // namespace tarn
