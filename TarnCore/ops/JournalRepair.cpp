#include "TarnCore/ops/JournalRepair.h"

#include <algorithm>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <sys/file.h>
#include <sys/stat.h>

#include <dirent.h>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::JournalRepair {
namespace {

/// A disk that has not been seen for so long does not come back. Seconds.
constexpr std::int64_t longestKept = 30 * 86'400;
/// Making a note takes milliseconds. Seconds.
constexpr std::int64_t longestMaking = 60;

/// What stands before the UUID of every temporary name.
constexpr std::string_view temporaryPrefix = ".tarn-";
constexpr std::size_t lengthOfUUID = 36;

FileSystem& files() { return *Platform::current().files; }

struct Leftovers {
    URL folder;
    std::string prefix;
};

struct Item {
    ChangeJournal::Move move;
    std::uint64_t inode = 0;

    bool isAt(const URL& url) const {
        const auto found = files().attributes(url, Links::keep);
        return found && found->inode == inode;
    }
};

/// Where an item was when the program ended.
enum class Stop { atStart, between, arrived, lost };

Stop stopOf(const Item& item) {
    const ChangeJournal::Move& move = item.move;
    if (move.temporary != move.from && FileOps::exists(move.temporary)) return Stop::between;
    if (item.isAt(move.from)) return Stop::atStart;
    if (item.isAt(move.to)) return Stop::arrived;
    // On another disk it is another file, and some disks number their files afresh.
    const bool isAtStart = FileOps::exists(move.from);
    const bool hasArrived = FileOps::exists(move.to);
    if (isAtStart == hasArrived) return Stop::lost;
    return isAtStart ? Stop::atStart : Stop::arrived;
}

bool tryMove(const URL& from, const URL& to) {
    try {
        FileOps::moveHandlingCase(from, to);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

/// Under its old name, or next to whatever has that name now: never under a name nobody sees.
bool putBack(const URL& from, const URL& to) {
    if (tryMove(from, to)) return true;
    try {
        return FileOps::exists(from) && tryMove(from, FileOps::uniqueURL(to));
    } catch (const std::system_error&) {
        return false;
    }
}

/// All or none: with every item arrived the change is done, else all go back.
void repairMoves(const std::vector<Item>& items, Repaired& result) {
    std::vector<Stop> stops;
    stops.reserve(items.size());
    for (const Item& item : items) stops.push_back(stopOf(item));
    if (std::ranges::all_of(stops, [](Stop stop) { return stop == Stop::arrived; })) return;

    for (std::size_t i = items.size(); i-- > 0;) {
        const ChangeJournal::Move& move = items[i].move;
        if (stops[i] != Stop::arrived || move.temporary == move.from) continue;
        if (tryMove(move.to, move.temporary)) stops[i] = Stop::between;
    }
    for (std::size_t i = items.size(); i-- > 0;) {
        const ChangeJournal::Move& move = items[i].move;
        if (stops[i] == Stop::atStart) continue;
        const bool isBack = stops[i] == Stop::between   ? putBack(move.temporary, move.from)
                            : stops[i] == Stop::arrived ? tryMove(move.to, move.from)
                                                        : false;
        if (isBack)
            ++result.items;
        else
            result.isFinished = false;
    }
}

void repairLeftovers(const Leftovers& leftovers, Repaired& result) {
    // A note that was tampered with must not name the user's files.
    if (!leftovers.prefix.starts_with(temporaryPrefix) ||
        leftovers.prefix.size() < temporaryPrefix.size() + lengthOfUUID)
        return;
    std::vector<std::string> names;
    try {
        const auto reader = files().openFolder(leftovers.folder);
        for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
            for (const FolderEntry& entry : batch)
                if (entry.view().starts_with(leftovers.prefix)) names.emplace_back(entry.view());
    } catch (const std::system_error&) {
        result.isFinished = false;  // Perhaps its disk is plugged in again later.
        return;
    }
    TreeRemoval how;
    how.unlocksFolders = true;
    for (const std::string& name : names) {
        try {
            const TreeRemoved removed = files().removeTree(leftovers.folder.appending(name), how);
            ++result.items;
            if (removed.kept > 0) result.isFinished = false;
        } catch (const std::system_error&) {
            // Gone by itself.
        }
    }
}

/// One line; false when it is not understood.
bool readLine(std::string_view line, std::vector<Item>& items, std::vector<Leftovers>& leftovers) {
    const auto json = JSONText::parse(line);
    if (!json) return false;
    try {
        if (json->contains("move")) {
            const JSON& fields = json->at("move");
            items.push_back({{fields.at("from").get<URL>(), fields.at("to").get<URL>(),
                              fields.at("temporary").get<URL>()},
                             static_cast<std::uint64_t>(fields.at("inode").get<std::int64_t>())});
        } else if (json->contains("leftovers")) {
            const JSON& fields = json->at("leftovers");
            leftovers.push_back(
                {fields.at("folder").get<URL>(), fields.at("prefix").get<std::string>()});
        }
        return true;
    } catch (const std::exception&) {  // The library's exceptions, and those of the records.
        return false;
    }
}

/// The work of one note that no program holds any more.
std::size_t repairFile(const URL& url) {
    const FileDescriptor fd(open(url.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!fd) return 0;
    struct stat status;
    // Another program that starts now may have been faster: then the file has no name any more.
    if (flock(fd.get(), LOCK_EX | LOCK_NB) != 0 || fstat(fd.get(), &status) != 0 ||
        status.st_nlink == 0)
        return 0;
    const std::int64_t age = time(nullptr) - status.st_mtim.tv_sec;
    if (!url.name().ends_with(extension)) {
        // Without its name a note is not in force; another program may just be making it.
        if (age > longestMaking) unlink(url.c_str());
        return 0;
    }
    const std::optional<std::string> note = FileIO::readAll(fd.get());
    if (!note) return 0;
    const Repaired repaired = repair(*note);
    if (repaired.isFinished || age > longestKept) unlink(url.c_str());
    return repaired.items;
}

}  // namespace

URL folder() { return SupportDirectory::location().appending("Unfinished"); }

Repaired repair(std::string_view note) {
    std::vector<Item> items;
    std::vector<Leftovers> leftovers;
    for (const std::string_view line : Text::split(note, '\n'))
        if (!line.empty()) readLine(line, items, leftovers);
    Repaired result;
    if (!items.empty()) repairMoves(items, result);
    for (const Leftovers& one : leftovers) repairLeftovers(one, result);
    return result;
}

std::size_t run() {
    const URL notes = folder();
    const std::unique_ptr<DIR, int (*)(DIR*)> reader(opendir(notes.c_str()), closedir);
    if (!reader) return 0;
    std::vector<std::string> names;
    while (const dirent* entry = readdir(reader.get()))
        if (std::string_view(entry->d_name).find(extension) != std::string_view::npos)
            names.emplace_back(entry->d_name);
    std::size_t items = 0;
    for (const std::string& name : names) items += repairFile(notes.appending(name));
    return items;
}

}  // namespace tarn::JournalRepair
