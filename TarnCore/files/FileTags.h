#pragma once

#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The tags of a file as stored strings ("Work\n4"), wherever the disk lets them be kept: in its
/// attributes (TagAttribute), else in a list of our own (TagShelf). Callable from any thread.
namespace FileTags {

enum class Kind { link, other };

/// Tags that only other programs of the desktop have written come as their bare names. A link has
/// its own tags, not those of what it leads to. Empty when there are none or they cannot be read.
std::vector<std::string> read(const URL& url);
/// The same for who knows whether it is a link.
std::vector<std::string> read(const URL& url, Kind kind);

/// Replaces the tags; none takes the attribute away. The mirror for other programs follows, as far
/// as the disk lets it. Throws std::system_error, ENOENT when nothing is there.
void write(const std::vector<std::string>& stored, const URL& url);

/// An item, with all that is in it, has got another place: for who has moved it. Costs next to
/// nothing as long as every disk keeps its tags itself. Never throws.
void moved(const URL& from, const URL& to);

/// An item was copied with all that is in it: its copy gets what the disk of the original could not
/// keep, wherever the disk of the copy lets it be kept. Costs as little, and never throws.
void copied(const URL& from, const URL& to);

}  // namespace FileTags

}  // namespace tarn
