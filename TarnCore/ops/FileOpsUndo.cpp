#include <algorithm>
#include <system_error>
#include <unordered_set>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/AddedDate.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/Permissions.h"
#include "TarnCore/ops/TwoPhaseMove.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::FileOps {
namespace {

FileSystem& files() { return *Platform::current().files; }

std::string quotedName(const URL& url) { return Text::quoted(url.name()); }

const Step::Move* asMove(const Step& step) { return std::get_if<Step::Move>(&step.change); }

[[noreturn]] void throwFailedMove(const std::exception& error, const URL& item) {
    throw FileOpError::failed(friendly(error, "move " + quotedName(item)));
}

/// Whoever only gets another name stays where it is.
void noteArrival(const URL& from, const URL& to) {
    if (from.parent() != to.parent()) AddedDate::note(to);
}

/// One item from where it is to where it shall be, with the folders above.
void moveBack(const URL& from, const URL& to) {
    if (!exists(from)) throw FileOpError::missing(from.name());
    if (exists(to) && !sameFile(from, to)) throw FileOpError::nameTaken(to.name());
    try {
        files().createFolders(to.parent());
        moveHandlingCase(from, to);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::file_exists) throw FileOpError::nameTaken(to.name());
        throwFailedMove(error, from);
    }
    noteArrival(from, to);
}

/// The Trash keeps a note of each item that it holds.
void forgetTrashed(const URL& url) {
    if (const auto& trash = Platform::current().trash) trash->forget(url);
}

/// Items in the desktop's Trash are put there by the Trash alone, which notes where they were.
bool isInDesktopTrash(const URL& url) {
    const auto own = privateTrash();
    return Paths::isInTrash(url) && !(own && url.isInside(*own));
}

/// Removes the folder that held one item of the private trash, when it is empty now.
void tidyPrivateTrash(const std::vector<Step>& steps) {
    const auto trash = privateTrash();
    if (!trash) return;
    const auto tidy = [&](const URL& place) {
        const URL folder = place.parent();
        if (folder.parent() != *trash) return;
        try {
            files().removeFolder(folder);
        } catch (const std::system_error&) {
            // Still in use, or gone.
        }
    };
    for (const Step& step : steps) {
        if (const auto* move = asMove(step)) {
            tidy(move->from);
            tidy(move->to);
        } else if (const auto* create = std::get_if<Step::Create>(&step.change)) {
            if (create->trashedAt) tidy(*create->trashedAt);
        }
    }
}

/// True when one item lies inside another, so that the order of the moves matters.
bool isNested(const Moves& pairs) {
    std::unordered_set<URL> places;
    for (const auto& [from, to] : pairs) {
        places.insert(from);
        places.insert(to);
    }
    std::unordered_set<URL> clear;  // Folders with no such place above.
    const auto liesInside = [&](URL url) {
        while (!url.isRoot()) {
            url = url.parent();
            if (places.contains(url)) return true;
            if (!clear.insert(url).second) return false;
        }
        return false;
    };
    return std::ranges::any_of(places, liesInside);
}

void moveAll(const Moves& pairs) {
    if (isNested(pairs)) {
        for (const auto& [from, to] : pairs) moveBack(from, to);
        return;
    }
    swapSafeMove(pairs);
    for (const auto& [from, to] : pairs) noteArrival(from, to);
}

void undo(Step& step) {
    if (const auto* move = asMove(step)) {
        moveBack(move->to, move->from);
        forgetTrashed(move->to);
    } else if (const auto* tags = std::get_if<Step::Tags>(&step.change)) {
        writeTags(tags->before, tags->url);
    } else if (const auto* bits = std::get_if<Step::Permissions>(&step.change)) {
        Permissions::write(bits->url, bits->before);
    } else {
        auto& create = std::get<Step::Create>(step.change);
        if (!exists(create.url)) throw FileOpError::missing(create.url.name());
        create.trashedAt = trash(create.url);
    }
}

void redo(Step& step) {
    if (auto* move = std::get_if<Step::Move>(&step.change)) {
        if (isInDesktopTrash(move->to)) {
            if (!exists(move->from)) throw FileOpError::missing(move->from.name());
            move->to = trash(move->from);
        } else {
            moveBack(move->from, move->to);
            forgetTrashed(move->from);
        }
    } else if (const auto* tags = std::get_if<Step::Tags>(&step.change)) {
        writeTags(tags->after, tags->url);
    } else if (const auto* bits = std::get_if<Step::Permissions>(&step.change)) {
        Permissions::write(bits->url, bits->after);
    } else {
        auto& create = std::get<Step::Create>(step.change);
        if (!create.trashedAt) throw FileOpError::missing(create.url.name());
        moveBack(*create.trashedAt, create.url);
        forgetTrashed(*create.trashedAt);
    }
}

}  // namespace

void swapSafeMove(const Moves& pairs) {
    if (pairs.empty()) return;
    std::unordered_set<URL> sources;
    for (const auto& [from, to] : pairs) {
        if (!exists(from)) throw FileOpError::missing(from.name());
        sources.insert(from);
    }
    bool exchangesNames = false;
    for (const auto& [from, to] : pairs) {
        const bool isSource = sources.contains(to);
        exchangesNames |= isSource;
        if (isSource || !exists(to)) continue;
        if (!sameFile(from, to)) throw FileOpError::nameTaken(to.name());
        exchangesNames = true;
    }
    const TwoPhaseMove::Failure failure = exchangesNames
                                              ? TwoPhaseMove::run(pairs, ChangeJournal::moving)
                                              : TwoPhaseMove::runDirectly(pairs);
    if (const auto& fatal = failure.notPutBack) {
        try {
            std::rethrow_exception(fatal);
        } catch (const std::exception& error) {
            throw FileOpError::failed(friendly(error, "move the items back"));
        }
    }
    if (!failure.error) return;
    const auto& [from, to] = pairs[failure.at];
    try {
        std::rethrow_exception(failure.error);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::file_exists) throw FileOpError::nameTaken(to.name());
        throwFailedMove(error, from);
    } catch (const std::exception& error) {
        throwFailedMove(error, from);
    }
}

std::vector<Step> revert(const std::vector<Step>& steps) {
    std::vector<Step> result = steps;
    if (std::ranges::all_of(steps, asMove)) {
        Moves pairs;
        for (auto step = steps.rbegin(); step != steps.rend(); ++step)
            pairs.emplace_back(asMove(*step)->to, asMove(*step)->from);
        moveAll(pairs);
        for (const auto& [trashed, place] : pairs) forgetTrashed(trashed);
    } else {
        for (auto step = result.rbegin(); step != result.rend(); ++step) undo(*step);
    }
    tidyPrivateTrash(steps);
    return result;
}

std::vector<Step> reapply(const std::vector<Step>& steps) {
    std::vector<Step> result = steps;
    const bool isPlain = std::ranges::all_of(steps, [](const Step& step) {
        const Step::Move* move = asMove(step);
        return move != nullptr && !isInDesktopTrash(move->to);
    });
    if (isPlain) {
        Moves pairs;
        for (const Step& step : steps) pairs.emplace_back(asMove(step)->from, asMove(step)->to);
        moveAll(pairs);
        for (const auto& [from, to] : pairs) forgetTrashed(from);
    } else {
        for (Step& step : result) redo(step);
    }
    tidyPrivateTrash(steps);
    for (Step& step : result)
        if (auto* create = std::get_if<Step::Create>(&step.change)) create->trashedAt.reset();
    return result;
}

bool canRevert(const std::vector<Step>& steps) {
    std::unordered_set<URL> leaving;  // Names that are free once all have moved.
    if (std::ranges::all_of(steps, asMove))
        for (const Step& step : steps) leaving.insert(asMove(step)->to);
    return std::ranges::all_of(steps, [&](const Step& step) {
        if (const auto* move = asMove(step))
            return exists(move->to) && (!exists(move->from) || leaving.contains(move->from) ||
                                        sameFile(move->from, move->to));
        if (const auto* create = std::get_if<Step::Create>(&step.change))
            return exists(create->url);
        if (const auto* bits = std::get_if<Step::Permissions>(&step.change))
            return exists(bits->url);
        return exists(std::get<Step::Tags>(step.change).url);
    });
}

}  // namespace tarn::FileOps
