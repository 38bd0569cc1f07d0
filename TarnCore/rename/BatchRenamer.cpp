#include "TarnCore/rename/BatchRenamer.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TwoPhaseMove.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/rename/PreparedRule.h"
#include "TarnCore/rename/TargetFolders.h"

namespace tarn {

void to_json(JSON& json, const RenamePreview& preview) {
    json = JSON::object();
    json["id"] = preview.id;
    json["oldName"] = preview.oldName;
    json["newName"] = preview.newName;
    JSONFields::write(json, "problem", preview.problem);
}

namespace BatchRenamer {
namespace {

/// A second thread has to make its own patterns and formats before it can help.
constexpr std::size_t worthTwoThreads = 1000;

/// The most bytes a file name may have on the disks of this system.
constexpr std::size_t longestFileName = 255;

/// Not for `photoTaken`.
std::optional<Date> dateOf(const FileAttributes& attributes, DateSource source) {
    return source == DateSource::created ? attributes.created : attributes.modified;
}

/// The dates that rules want. The disk is asked from within the folder of the file before, most
/// often the same, which spares it the way there. One thread at a time.
class FileDates {
public:
    explicit FileDates(const Dates* given) : given_(given) {}

    std::optional<Date> dateFor(const PreparedRule& rule, const URL& url) {
        const auto source = rule.dateSource();
        if (!source) return std::nullopt;
        if (given_) {
            const auto found = given_->find(url);
            if (found != given_->end()) return found->second;
        }
        if (*source == DateSource::photoTaken) return photoDate(url);
        if (const auto attributes = lookAt(url)) return dateOf(*attributes, *source);
        return date(url, *source);
    }

private:
    /// Absent when the folder cannot be opened, too.
    std::optional<FileAttributes> lookAt(const URL& url) {
        const std::string_view parent =
            std::string_view(url.path()).substr(0, url.path().size() - url.name().size());
        if (parent != folder_) {
            folder_ = parent;
            reader_ = nullptr;
            try {
                reader_ = Platform::current().files->openFolder(url.parent());
            } catch (const std::system_error&) {
                // It may be entered but not read.
            }
        }
        // The name is the end of the path, and so ends with a NUL.
        return reader_ ? reader_->attributes(url.name().data(), Links::keep) : std::nullopt;
    }

    const Dates* given_;
    std::string folder_;
    std::unique_ptr<FolderReader> reader_;
};

/// The new name, and the first thing that a rule could not do.
RenamePreview renamed(const URL& url, std::size_t index, std::vector<PreparedRule>& rules,
                      bool includeExtension, FileDates& dates) {
    RenamePreview preview{url, std::string(url.name()), {}, {}};
    NameParts parts{preview.oldName, {}};
    if (!includeExtension) parts = FileOps::split(preview.oldName);
    for (PreparedRule& rule : rules) {
        auto outcome = rule.apply(parts.base, index, dates.dateFor(rule, url));
        parts.base = std::move(outcome.name);
        if (!preview.problem) preview.problem = std::move(outcome.problem);
    }
    preview.newName =
        includeExtension ? std::move(parts.base) : FileOps::join(parts.base, parts.ext);
    return preview;
}

/// The new names of some files of the batch, and their whole paths in lower case.
struct Renamed {
    std::vector<RenamePreview> previews;
    std::vector<std::string> targets;
};

Renamed renamedPart(const std::vector<URL>& urls, std::size_t begin, std::size_t end,
                    const std::vector<RenameRule>& rules, bool includeExtension,
                    const Dates* given) {
    std::vector<PreparedRule> prepared(rules.begin(), rules.end());
    FileDates dates(given);
    Renamed part;
    part.previews.reserve(end - begin);
    part.targets.reserve(end - begin);
    std::string_view folder;  // Of the file before, most often the same.
    std::string loweredFolder;
    for (std::size_t i = begin; i < end; ++i) {
        const std::string_view path = urls[i].path();
        const std::string_view parent = path.substr(0, path.size() - urls[i].name().size());
        if (parent != folder) {
            folder = parent;
            loweredFolder = Text::lowercased(parent);
        }
        part.previews.push_back(renamed(urls[i], i, prepared, includeExtension, dates));
        part.targets.push_back(loweredFolder + Text::lowercased(part.previews.back().newName));
    }
    return part;
}

/// True when a name of the batch is wanted by another file of it, or on some disks its own name in
/// another case.
bool exchangesNames(const TwoPhaseMove::Moves& moves) {
    std::unordered_set<std::string> leaving;
    leaving.reserve(moves.size());
    for (const auto& [from, to] : moves) leaving.insert(Text::lowercased(from.path()));
    return std::ranges::any_of(moves, [&](const auto& move) {
        return leaving.contains(Text::lowercased(move.second.path()));
    });
}

bool isTakenName(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::system_error& error) {
        return error.code() == std::errc::file_exists;
    } catch (const std::exception&) {
        return false;
    }
}

/// "2026:03:15 12:00:00" on the clock of this computer's time zone.
std::optional<Date> dateOfPhoto(std::string_view text) {
    constexpr std::string_view pattern = "0000:00:00 00:00:00";
    if (text.size() != pattern.size()) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !isDigit : text[i] != pattern[i]) return std::nullopt;
    }
    const auto number = [&](std::size_t at, std::size_t length) {
        int value = 0;
        for (const char digit : text.substr(at, length)) value = value * 10 + (digit - '0');
        return value;
    };
    const CivilDay day{number(0, 4), number(5, 2), number(8, 2)};
    const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
    // A camera whose clock was never set writes noughts.
    if (!day.isValid() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    return Calendar::current(Locale::current()).at(day, hour, minute, second);
}

/// What makes a name impossible wherever it is.
std::optional<std::string> nameProblem(const RenamePreview& preview) {
    const std::string& name = preview.newName;
    if (Text::trimmed(name).empty()) return "Name would be empty";
    // A name that has a colon already may keep it as it stands.
    if (preview.changed() && name.find_first_of(std::string_view("/:\0", 3)) != name.npos) {
        return "Names can’t contain “/” or “:”";
    }
    if (name.starts_with('.') && !preview.oldName.starts_with('.')) {
        return "Name would start with a dot and be hidden";
    }
    return std::nullopt;
}

bool isOneName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos &&
           name.find('\0') == name.npos;
}

[[noreturn]] void fail(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& error) {
        throw FileOpError::failed(FileOps::friendly(error, "rename the files"));
    }
}

}  // namespace

std::vector<RenamePreview> preview(const std::vector<URL>& urls,
                                   const std::vector<RenameRule>& rules, bool includeExtension,
                                   const Dates* dates) {
    const std::size_t parts = urls.size() < worthTwoThreads ? 1 : 2;
    std::vector<Renamed> named(parts);
    TargetFolders folders(urls);
    const bool readsAhead = parts > 1;
    TaskPool::shared().forEach(parts + (readsAhead ? 1 : 0), [&](std::size_t part) {
        if (part == parts) return folders.readAhead();
        named[part] = renamedPart(urls, urls.size() * part / parts,
                                  urls.size() * (part + 1) / parts, rules, includeExtension, dates);
    });

    std::vector<RenamePreview> previews = std::move(named[0].previews);
    previews.reserve(urls.size());
    std::unordered_map<std::string_view, int> counts;
    counts.reserve(urls.size());
    std::vector<const int*> countOf;  // Into the table, whose entries stay where they are.
    countOf.reserve(urls.size());
    for (Renamed& part : named) {
        if (&part != named.data()) std::ranges::move(part.previews, std::back_inserter(previews));
        for (const std::string& target : part.targets) {
            int& count = counts[target];
            ++count;
            countOf.push_back(&count);
        }
    }

    for (std::size_t i = 0; i < previews.size(); ++i) {
        RenamePreview& preview = previews[i];
        const auto problem = [&]() -> std::optional<std::string> {
            if (auto found = nameProblem(preview)) return found;
            if (*countOf[i] > 1) return "Same name as another file in this rename";
            if (preview.newName.size() > longestFileName &&
                Text::lowercased(preview.newName) == Text::lowercased(preview.oldName)) {
                return "Name is too long";
            }
            if (preview.changed() && folders.isTaken(preview.id, preview.newName)) {
                return "A file with this name already exists";
            }
            return std::nullopt;
        }();
        if (problem) preview.problem = problem;
    }
    return previews;
}

std::string apply(const RenameRule& rule, std::string_view name, std::size_t index, const URL& url,
                  const Dates* dates) {
    PreparedRule prepared(rule);
    return prepared.apply(name, index, FileDates(dates).dateFor(prepared, url)).name;
}

std::optional<Date> date(const URL& url, DateSource source) {
    if (source == DateSource::photoTaken) return photoDate(url);
    const auto attributes = Platform::current().files->attributes(url, Links::keep);
    return attributes ? dateOf(*attributes, source) : std::nullopt;
}

std::optional<Date> photoDate(const URL& url) {
    const auto taken = Platform::current().metadata->read(url).photoTaken;
    return taken ? dateOfPhoto(*taken) : std::nullopt;
}

std::vector<Step> apply(const std::vector<RenamePreview>& previews) {
    TwoPhaseMove::Moves moves;
    std::vector<Step> steps;
    for (const RenamePreview& preview : previews) {
        if (!preview.changed()) continue;
        // A target beside the file, whatever a preview says that was not made here.
        if (!isOneName(preview.newName)) throw FileOpError::invalidCharacters();
        const URL target = preview.id.parent().appending(preview.newName);
        moves.emplace_back(preview.id, target);
        steps.push_back(Step::move(preview.id, target));
    }
    if (moves.empty()) return {};
    const bool twoPhases = exchangesNames(moves);
    auto failure = twoPhases ? TwoPhaseMove::run(moves, ChangeJournal::renaming)
                             : TwoPhaseMove::runDirectly(moves);
    // A disk may take two names for one for other reasons than their case.
    if (!twoPhases && failure.error && !failure.notPutBack && isTakenName(failure.error))
        failure = TwoPhaseMove::run(moves, ChangeJournal::renaming);
    if (failure.error) fail(failure.error);
    return steps;
}

}  // namespace BatchRenamer

}  // namespace tarn
