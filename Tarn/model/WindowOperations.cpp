#include "Tarn/model/WindowOperations.h"

#include <algorithm>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TransferOutcome.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/Subject.h"
#include "TarnCore/ops/TrashContents.h"

namespace tarn {
namespace {

QString nameText(const URL& url) { return displayText(url.name()); }

std::vector<URL> urlsOf(const std::vector<FileItem>& items) {
    std::vector<URL> urls;
    urls.reserve(items.size());
    for (const FileItem& item : items) urls.push_back(item.url);
    return urls;
}

std::string_view symbolOf(TransferKind kind) {
    switch (kind) {
        case TransferKind::copy:
            return symbol(OperationKind::copy);
        case TransferKind::move:
            return symbol(OperationKind::move);
        case TransferKind::trash:
            return symbol(OperationKind::trash);
    }
    return symbol(OperationKind::move);
}

}  // namespace

WindowOperations::WindowOperations(WindowModel& window) : window_(window), app_(window.app()) {}

WindowOperations::~WindowOperations() = default;

// --- The clipboard

void WindowOperations::put(bool isCut) {
    const auto urls = urlsOf(window_.active().selectedItems());
    if (urls.empty()) return;
    app_.clipboard().set(FileMime::make({urls, isCut}));
}

void WindowOperations::copySelection() { put(false); }

void WindowOperations::cutSelection() { put(true); }

bool WindowOperations::canPaste() const {
    if (!window_.active().location().isFolder()) return false;
    const QMimeData* data = app_.clipboard().data();
    return data && FileMime::read(*data).has_value();
}

void WindowOperations::paste() {
    if (window_.active().location().isFolder()) pasteInto(window_.active().location().url);
}

void WindowOperations::pasteInto(const URL& folder) {
    const QMimeData* data = app_.clipboard().data();
    const auto files = data ? FileMime::read(*data) : std::nullopt;
    if (!files) return;
    if (!files->isCut) return copyTo(files->urls, folder);
    // What was cut is pasted once.
    app_.clipboard().set(nullptr);
    moveTo(files->urls, folder);
}

void WindowOperations::pasteMoving() {
    const QMimeData* data = app_.clipboard().data();
    const auto files = data ? FileMime::read(*data) : std::nullopt;
    if (!files || !window_.active().location().isFolder()) return;
    app_.clipboard().set(nullptr);
    moveTo(files->urls, window_.active().location().url);
}

// --- Transfers

void WindowOperations::copyTo(std::vector<URL> urls, const URL& folder) {
    if (Paths::isInTrash(folder)) return complain(tr("Files can’t be copied into the Trash."));
    transfer(TransferKind::copy, std::move(urls), folder);
}

void WindowOperations::moveTo(std::vector<URL> urls, const URL& folder) {
    if (Paths::isInTrash(folder)) return trash(std::move(urls));
    std::erase_if(urls, [&folder](const URL& url) { return url.parent() == folder; });
    transfer(TransferKind::move, std::move(urls), folder);
}

void WindowOperations::trash(std::vector<URL> urls) {
    const auto isThere = [](const URL& url) { return Paths::isInTrash(url); };
    if (!urls.empty() && std::all_of(urls.begin(), urls.end(), isThere))
        return complain(
            urls.size() == 1
                ? tr("“%1” is in the Trash already.").arg(nameText(urls.front()))
                : tr("%1 are in the Trash already.").arg(Counts::items(std::ssize(urls))));
    std::erase_if(urls, isThere);
    transfer(TransferKind::trash, std::move(urls), std::nullopt);
}

void WindowOperations::trashSelection() { trash(urlsOf(window_.active().selectedItems())); }

void WindowOperations::putBackSelection() {
    perform([urls = urlsOf(window_.active().selectedItems())] {
        PerformedChange change;
        change.entry.kind = OperationKind::move;
        for (const URL& url : urls) {
            try {
                FileChange done = TrashContents::putBack(url);
                change.entry.steps.insert(change.entry.steps.end(), done.steps.begin(),
                                          done.steps.end());
                change.results.push_back(std::move(done.url));
            } catch (const Error& error) {
                // The others can be put back all the same.
                if (change.failure.isEmpty()) change.failure = coreSentence(error.what());
            }
        }
        if (change.results.empty()) return change;
        const std::string what = Subject::of(change.results);
        change.entry.title = "Put back " + what;
        change.entry.fileCount = static_cast<std::int64_t>(change.results.size());
        change.message = tr("Put back %1").arg(coreSentence(what));
        return change;
    });
}

void WindowOperations::transfer(TransferKind kind, std::vector<URL> urls,
                                std::optional<URL> folder) {
    if (urls.empty()) return;
    TransferModel& added = app_.transfers().add(
        kind, std::move(urls), std::move(folder),
        [self = QPointer(this)](const TransferModel& transfer, const TransferResult& result,
                                std::optional<UUID> entry) {
            if (self) self->transferEnded(transfer, result, entry);
        });
    added.setWindowID(window_.id());
}

void WindowOperations::transferEnded(const TransferModel& transfer, const TransferResult& result,
                                     std::optional<UUID> entry) {
    if (transfer.kind() != TransferKind::trash) select(result.resultURLs);
    const QString sentence = TransferOutcome::sentence(transfer, result);
    if (TransferOutcome::isFailure(result))
        complain(sentence, entry);
    else if (entry)
        say(sentence, symbolOf(transfer.kind()), entry);
}

// --- Changes

void WindowOperations::createFolder(std::string name, std::function<void(const URL&)> then) {
    if (!window_.active().location().isFolder()) return;
    auto made = std::make_shared<URL>();
    perform(
        [folder = window_.active().location().url, name = std::move(name), made] {
            FileChange change = FileOps::createFolder(folder, name);
            *made = change.url;
            PerformedChange done;
            done.entry.kind = OperationKind::create;
            done.entry.title = "New folder " + Text::quoted(change.url.name());
            done.entry.steps = std::move(change.steps);
            done.entry.fileCount = 1;
            done.message = tr("Created the folder “%1”").arg(nameText(change.url));
            done.results = {change.url};
            return done;
        },
        [then = std::move(then), made](bool isDone) {
            if (isDone && then) then(*made);
        });
}

void WindowOperations::createFolderWithSelection(std::string name,
                                                 std::function<void(const URL&)> then) {
    const auto urls = urlsOf(window_.active().selectedItems());
    if (!window_.active().location().isFolder() || urls.empty()) return;
    auto made = std::make_shared<URL>();
    perform(
        [folder = window_.active().location().url, name = std::move(name), urls, made] {
            FileChange change = FileOps::createFolder(urls, folder, name);
            *made = change.url;
            PerformedChange done;
            done.entry.kind = OperationKind::create;
            done.entry.title = "New folder " + Text::quoted(change.url.name()) + " with " +
                               Subject::items(urls.size());
            done.entry.steps = std::move(change.steps);
            done.entry.fileCount = static_cast<std::int64_t>(urls.size());
            done.message =
                tr("Moved %1 to “%2”").arg(coreSentence(Subject::of(urls)), nameText(change.url));
            done.results = {change.url};
            return done;
        },
        [then = std::move(then), made](bool isDone) {
            if (isDone && then) then(*made);
        });
}

void WindowOperations::duplicateSelection() {
    const auto urls = urlsOf(window_.active().selectedItems());
    if (urls.empty()) return;
    perform([urls] {
        PerformedChange done;
        done.entry.kind = OperationKind::duplicate;
        try {
            for (const URL& url : urls) {
                FileChange change = FileOps::duplicate(url);
                done.entry.steps.insert(done.entry.steps.end(), change.steps.begin(),
                                        change.steps.end());
                done.results.push_back(std::move(change.url));
            }
        } catch (const Error& error) {
            done.failure = coreSentence(error.what());
        }
        const std::string what = done.results.size() == urls.size()
                                     ? Subject::of(urls)
                                     : Subject::items(done.results.size());
        done.entry.title = "Duplicate " + what;
        done.entry.fileCount = static_cast<std::int64_t>(done.results.size());
        done.message = tr("Duplicated %1").arg(coreSentence(what));
        return done;
    });
}

void WindowOperations::rename(const URL& url, std::string newName) {
    if (url.name() == newName) return;
    perform([url, newName = std::move(newName)] {
        FileChange change = FileOps::rename(url, newName);
        PerformedChange done;
        done.entry.kind = OperationKind::rename;
        done.entry.title = "Rename " + Text::quoted(url.name()) + " to " + Text::quoted(newName);
        done.entry.steps = std::move(change.steps);
        done.entry.fileCount = 1;
        done.message = tr("Renamed “%1” to “%2”").arg(nameText(url), displayText(newName));
        done.results = {change.url};
        return done;
    });
}

void WindowOperations::perform(std::function<PerformedChange()> work,
                               std::function<void(bool)> then) {
    app_.pool().run([work = std::move(work), then = std::move(then), self = QPointer(this),
                     app = QPointer(&app_)] {
        PerformedChange change;
        bool isDone = true;
        try {
            change = work();
        } catch (const std::exception& error) {
            change.failure = coreSentence(error.what());
            isDone = false;
        }
        MainThread::post(app, [change = std::move(change), then, isDone, self](AppModel& model) {
            // The change stands, and is recorded, also when its window has gone meanwhile.
            if (!change.entry.steps.empty()) model.history().record(change.entry);
            if (self) self->changed(change);
            if (self && then) then(isDone);
        });
    });
}

void WindowOperations::changed(const PerformedChange& change) {
    std::optional<UUID> entry;
    if (!change.entry.steps.empty()) entry = change.entry.id;
    select(change.results);
    if (!change.failure.isEmpty())
        complain(change.failure, entry);
    else if (!change.message.isEmpty())
        say(change.message, symbol(change.entry.kind), entry);
}

void WindowOperations::select(const std::vector<URL>& results) {
    if (results.empty()) return;
    for (const auto& pane : window_.panes()) {
        if (pane->location() != Location::folder(results.front().parent())) continue;
        pane->selectWhenListed(results);
        return;
    }
}

// --- Taking back

void WindowOperations::undo() {
    app_.history().undo([self = QPointer(this)](const HistoryModel::Outcome& outcome) {
        if (!self) return;
        if (!outcome.failure.isEmpty()) return self->complain(outcome.failure);
        self->say(outcome.entry ? tr("Undone: %1").arg(coreSentence(outcome.entry->title))
                                : tr("There is nothing to undo."),
                  "arrow.uturn.backward");
    });
}

void WindowOperations::undo(const UUID& entry) {
    app_.history().undo(entry, [self = QPointer(this)](const HistoryModel::Outcome& outcome) {
        if (!self) return;
        if (!outcome.failure.isEmpty()) return self->complain(outcome.failure);
        self->say(outcome.entry ? tr("Undone: %1").arg(coreSentence(outcome.entry->title))
                                : tr("This change has been undone already."),
                  "arrow.uturn.backward");
    });
}

void WindowOperations::redo() {
    app_.history().redo([self = QPointer(this)](const HistoryModel::Outcome& outcome) {
        if (!self) return;
        if (!outcome.failure.isEmpty()) return self->complain(outcome.failure);
        self->say(outcome.entry ? tr("Done again: %1").arg(coreSentence(outcome.entry->title))
                                : tr("There is nothing to redo."),
                  "arrow.uturn.forward");
    });
}

// --- Telling

void WindowOperations::say(const QString& message, std::string_view symbol,
                           std::optional<UUID> undo) {
    Toast toast;
    toast.message = message;
    toast.symbol = symbol;
    toast.undoable = undo.has_value();
    toast.undoID = undo;
    window_.showToast(std::move(toast));
}

void WindowOperations::complain(const QString& sentence, std::optional<UUID> undo) {
    Toast toast;
    toast.message = sentence;
    toast.symbol = "exclamationmark.triangle";
    toast.isError = true;
    toast.undoable = undo.has_value();
    toast.undoID = undo;
    window_.showToast(std::move(toast));
}

}  // namespace tarn
