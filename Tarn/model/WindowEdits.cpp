#include "Tarn/model/WindowEdits.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/Subject.h"
#include "TarnCore/tags/TagStore.h"

namespace tarn {
namespace {

QString nameText(const URL& url) { return displayText(url.name()); }

PerformedChange done(OperationKind kind, std::string title, std::vector<Step> steps,
                     std::size_t files, const QString& message) {
    PerformedChange change;
    change.entry.kind = kind;
    change.entry.title = std::move(title);
    change.entry.steps = std::move(steps);
    change.entry.fileCount = static_cast<std::int64_t>(files);
    change.message = message;
    return change;
}

ArchiveReader::Watch watching(ActivityTask::Handle& handle) {
    ArchiveReader::Watch watch;
    watch.token = handle.token();
    watch.progress = [&handle](const ArchiveReader::Progress& progress) {
        ArchiveMembers::watch(handle, progress.currentName, progress.doneBytes,
                              progress.totalBytes);
    };
    return watch;
}

}  // namespace

WindowEdits::WindowEdits(WindowModel& window) : window_(window) {}

std::vector<URL> WindowEdits::selectedURLs() const {
    std::vector<URL> urls;
    for (const FileItem& item : window_.active().selectedItems()) urls.push_back(item.url);
    return urls;
}

// --- Names

void WindowEdits::renameSelection() {
    PaneModel& pane = window_.active();
    if (pane.showsMembers()) return;
    const std::vector<URL> urls = selectedURLs();
    if (urls.size() == 1) pane.beginRename(urls.front());
    if (urls.size() > 1) window_.showSheet({WindowSheet::Which::batchRename, urls});
}

void WindowEdits::rename(const URL& url, const std::string& name,
                         std::function<void(const QString&)> done) {
    // A name that is refused is told where it was typed, not in a message at the edge.
    auto refusal = std::make_shared<QString>();
    window_.operations().perform(
        [url, name, refusal] {
            FileChange change;
            try {
                change = FileOps::rename(url, name);
            } catch (const Error& error) {
                *refusal = coreSentence(error.what());
                return PerformedChange();
            }
            PerformedChange renamed =
                tarn::done(OperationKind::rename,
                           "Rename " + Text::quoted(url.name()) + " to " + Text::quoted(name),
                           std::move(change.steps), 1,
                           tr("Renamed “%1” to “%2”").arg(nameText(url), displayText(name)));
            renamed.results = {change.url};
            return renamed;
        },
        [done = std::move(done), refusal](bool) { done(*refusal); });
}

void WindowEdits::renameAll(const std::vector<RenamePreview>& previews,
                            std::function<void(const QString&)> done) {
    auto refusal = std::make_shared<QString>();
    window_.operations().perform(
        [previews, refusal] {
            std::vector<Step> steps;
            try {
                steps = BatchRenamer::apply(previews);
            } catch (const Error& error) {
                *refusal = coreSentence(error.what());
                return PerformedChange();
            }
            const std::size_t files = steps.size();
            PerformedChange renamed = tarn::done(
                OperationKind::batchRename, "Rename " + Subject::items(files), std::move(steps),
                files, tr("Renamed %1").arg(Counts::items(static_cast<std::int64_t>(files))));
            for (const Step& step : renamed.entry.steps) {
                if (const auto* move = std::get_if<Step::Move>(&step.change))
                    renamed.results.push_back(move->to);
            }
            return renamed;
        },
        [done = std::move(done), refusal](bool) { done(*refusal); });
}

// --- New items

void WindowEdits::newFolder() {
    window_.operations().createFolder(tr("New Folder").toStdString(),
                                      [window = QPointer<WindowModel>(&window_)](const URL& made) {
                                          if (window) window->active().renameWhenListed(made);
                                      });
}

void WindowEdits::newFolderWithSelection() {
    window_.operations().createFolderWithSelection(
        tr("New Folder with Items").toStdString(),
        [window = QPointer<WindowModel>(&window_)](const URL& made) {
            if (window) window->active().renameWhenListed(made);
        });
}

void WindowEdits::newFile(const FileTemplate& file) {
    if (!window_.active().location().isFolder()) return;
    auto made = std::make_shared<URL>();
    window_.operations().perform(
        [file, made, folder = window_.active().location().url] {
            FileChange change = Templates::create(file, folder);
            *made = change.url;
            PerformedChange created =
                done(OperationKind::create, "New File " + Text::quoted(change.url.name()),
                     std::move(change.steps), 1, tr("Created “%1”").arg(nameText(change.url)));
            created.results = {change.url};
            return created;
        },
        [made, window = QPointer<WindowModel>(&window_)](bool isDone) {
            if (isDone && window) window->active().renameWhenListed(*made);
        });
}

void WindowEdits::openTemplatesFolder() {
    // Finding it makes it, the first time.
    window_.app().pool().run([window = QPointer<WindowModel>(&window_)] {
        MainThread::post(window, [folder = SupportDirectory::templates()](WindowModel& target) {
            target.active().navigate(Location::folder(folder));
        });
    });
}

// --- Tags

std::vector<URL> WindowEdits::taggableURLs() const {
    return window_.active().showsMembers() ? std::vector<URL>() : selectedURLs();
}

void WindowEdits::changeTags(const std::vector<URL>& urls, const TagWords& words,
                             std::function<std::optional<Step>(const URL&)> change) {
    if (urls.empty()) return;
    window_.operations().perform(
        [urls, words, change = std::move(change)] {
            QString failure;
            std::vector<Step> steps;
            try {
                for (const URL& url : urls) {
                    if (auto step = change(url)) steps.push_back(std::move(*step));
                }
            } catch (const Error& error) {
                // What is done is done, and can be taken back.
                failure = coreSentence(error.what());
            }
            const std::string what = steps.size() == 1
                                         ? Subject::of({std::get<Step::Tags>(steps[0].change).url})
                                         : Subject::items(steps.size());
            const std::size_t files = steps.size();
            PerformedChange tagged =
                done(OperationKind::tag, words.title(what), std::move(steps), files,
                     files == 0 ? QString() : words.message(coreSentence(what)));
            tagged.failure = failure;
            return tagged;
        },
        [urls, window = QPointer<WindowModel>(&window_)](bool) {
            if (!window) return;
            for (const auto& pane : window->panes()) pane->lookAgain(urls);
        });
}

void WindowEdits::addTag(const FinderTag& tag) { addTagTo(taggableURLs(), tag); }

void WindowEdits::addTagTo(const std::vector<URL>& urls, const FinderTag& tag) {
    window_.app().tagColors().remember(tag);
    changeTags(urls,
               {[name = Text::quoted(tag.name)](const std::string& what) {
                    return "Tag " + what + " with " + name;
                },
                [name = tagText(tag.name)](const QString& what) {
                    return tr("Tagged %1 with “%2”").arg(what, name);
                }},
               [tag](const URL& url) { return TagStore::add(tag, url); });
}

void WindowEdits::removeTag(const std::string& tag) {
    changeTags(taggableURLs(),
               {[name = Text::quoted(tag)](const std::string& what) {
                    return "Remove the tag " + name + " from " + what;
                },
                [name = tagText(tag)](const QString& what) {
                    return tr("Removed the tag “%1” from %2").arg(name, what);
                }},
               [tag](const URL& url) { return TagStore::remove(tag, url); });
}

void WindowEdits::removeAllTags() {
    changeTags(taggableURLs(),
               {[](const std::string& what) { return "Remove all tags from " + what; },
                [](const QString& what) { return tr("Removed all tags from %1").arg(what); }},
               [](const URL& url) -> std::optional<Step> {
                   if (TagStore::tags(url).empty()) return std::nullopt;
                   return FileOps::setTags({}, url);
               });
}

void WindowEdits::toggleTag(const FinderTag& tag) {
    const std::vector<FileItem> items = window_.active().selectedItems();
    const bool allHaveIt = std::all_of(items.begin(), items.end(), [&tag](const FileItem& item) {
        return std::find(item.tags.begin(), item.tags.end(), tag.name) != item.tags.end();
    });
    if (allHaveIt)
        removeTag(tag.name);
    else
        addTag(tag);
}

void WindowEdits::newTag() {
    const std::vector<URL> urls = selectedURLs();
    if (!urls.empty()) window_.showSheet({WindowSheet::Which::newTag, urls});
}

// --- Permissions

void WindowEdits::askPermissions() {
    const PaneModel& pane = window_.active();
    if (pane.showsMembers()) return;
    std::vector<URL> urls = selectedURLs();
    if (urls.empty() && pane.location().isFolder()) urls = {pane.location().url};
    if (!urls.empty()) window_.showSheet({WindowSheet::Which::permissions, std::move(urls)});
}

void WindowEdits::changePermissions(const std::vector<URL>& urls, const PermissionChange& change) {
    const std::string what = Subject::of(urls);
    const std::string title = "Change permissions of " + what;
    const auto work = [urls, change, what, title](const CancelToken& token) {
        std::vector<Step> steps;
        QString failure;
        try {
            Permissions::change(urls, change, token, steps);
        } catch (const Error& error) {
            failure = coreSentence(error.what());
        }
        const std::size_t files = steps.size();
        PerformedChange changed =
            done(OperationKind::permissions, title, std::move(steps), files,
                 files == 0 ? QString() : tr("Changed permissions of %1").arg(coreSentence(what)));
        changed.failure = failure;
        return changed;
    };
    if (change.isDeep)
        performLong(coreSentence(title),
                    [work](ActivityTask::Handle& handle) { return work(handle.token()); });
    else
        window_.operations().perform([work] { return work({}); });
}

// --- Archives

void WindowEdits::performLong(const QString& title, Change work) {
    auto change = std::make_shared<PerformedChange>();
    window_.app().activities().add(
        title,
        [work = std::move(work), change](ActivityTask::Handle& handle) {
            try {
                *change = work(handle);
            } catch (const std::exception& error) {
                // Whoever stops a job knows that it is stopped.
                if (!handle.token().isCancelled()) change->failure = coreSentence(error.what());
            }
        },
        [change, window = QPointer<WindowModel>(&window_),
         app = QPointer<AppModel>(&window_.app())](bool ran) {
            if (!ran) return;
            if (window)
                window->operations().perform([change] { return *change; });
            else if (app && !change->entry.steps.empty())
                app->history().record(change->entry);
        });
}

void WindowEdits::compressSelection() {
    const std::vector<URL> urls = selectedURLs();
    if (urls.empty() || window_.active().showsMembers()) return;
    const std::string what = Subject::of(urls);
    const std::string title = "Compress " + what;
    performLong(coreSentence(title), [urls, what, title](ActivityTask::Handle& handle) {
        const URL made = ArchiveReader::compress(urls, watching(handle));
        PerformedChange change =
            done(OperationKind::compress, title, {Step::create(made)}, urls.size(),
                 tr("Compressed %1 as “%2”").arg(coreSentence(what), nameText(made)));
        change.results = {made};
        return change;
    });
}

void WindowEdits::extractSelection() {
    PaneModel& pane = window_.active();
    if (pane.showsMembers()) return extractMembers(true);
    for (const FileItem& item : pane.selectedItems()) {
        if (item.isDirectory || !item.isBrowsable()) continue;
        const std::string title = "Extract " + Text::quoted(item.url.name());
        performLong(coreSentence(title), [url = item.url, title](ActivityTask::Handle& handle) {
            const URL made = ArchiveReader::extractAll(url, watching(handle));
            PerformedChange change =
                done(OperationKind::extract, title, {Step::create(made)}, 1,
                     tr("Extracted “%1” as “%2”").arg(nameText(url), nameText(made)));
            change.results = {made};
            return change;
        });
    }
}

void WindowEdits::extractMembers(bool onlySelection) {
    PaneModel& pane = window_.active();
    if (!pane.showsMembers()) return;
    const URL archive = pane.location().url;
    const std::string name = Text::quoted(archive.name());
    const std::vector<std::string> members =
        onlySelection ? pane.selectedMembers() : std::vector<std::string>();
    if (onlySelection && members.empty()) return;
    performLong(coreSentence("Extract from " + name), [archive, name,
                                                       members](ActivityTask::Handle& handle) {
        std::vector<URL> made;
        if (members.empty())
            made = {ArchiveReader::extractAll(archive, watching(handle))};
        else
            made = ArchiveReader::extract(archive, members, archive.parent(), watching(handle));
        std::vector<Step> steps;
        for (const URL& url : made) steps.push_back(Step::create(url));
        const std::string what = Subject::of(made);
        PerformedChange change =
            done(OperationKind::extract, "Extract " + what + " from " + name, std::move(steps),
                 made.size(),
                 tr("Extracted %1 to “%2”")
                     .arg(coreSentence(what), displayText(Paths::displayName(archive.parent()))));
        change.results = std::move(made);
        return change;
    });
}

void WindowEdits::takeMembers(const std::vector<std::string>& members, bool readOnly,
                              std::function<void(const std::vector<URL>&)> then) {
    PaneModel& pane = window_.active();
    if (!pane.showsMembers() || members.empty()) return;
    const URL archive = pane.location().url;
    auto taken = std::make_shared<std::vector<URL>>();
    auto failure = std::make_shared<QString>();
    takingTitle_ =
        tr("Unpacking %1…")
            .arg(members.size() == 1
                     ? tr("“%1”").arg(displayText(members[0].substr(members[0].rfind('/') + 1)))
                     : Counts::items(std::ssize(members)));
    taking_ = &window_.app().activities().add(
        tr("Extract from “%1”").arg(displayText(archive.name())),
        [archive, members, readOnly, taken, failure,
         source = &window_.app().archiveMembers()](ActivityTask::Handle& handle) {
            try {
                *taken = source->take(archive, members, readOnly, &handle);
            } catch (const std::exception& error) {
                if (!handle.token().isCancelled()) *failure = coreSentence(error.what());
            }
        },
        [taken, failure, then = std::move(then),
         window = QPointer<WindowModel>(&window_)](bool ran) {
            if (!window) return;
            emit window->edits().takingChanged();
            if (!ran) return;
            if (!failure->isEmpty())
                window->operations().perform([failure] {
                    PerformedChange nothing;
                    nothing.failure = *failure;
                    return nothing;
                });
            else if (!taken->empty())
                then(*taken);
        });
    emit takingChanged();
}

QString WindowEdits::taking() const {
    return taking_ && !taking_->isStopped() ? takingTitle_ : QString();
}

void WindowEdits::stopTaking() {
    if (!taking_) return;
    taking_->stop();
    emit takingChanged();
}

void WindowEdits::copyMembers() {
    takeMembers(window_.active().selectedMembers(), false,
                [app = QPointer<AppModel>(&window_.app())](const std::vector<URL>& taken) {
                    if (app) app->clipboard().set(FileMime::make({taken, false}));
                });
}

void WindowEdits::openMembers(const std::vector<std::string>& members) {
    takeMembers(members, true,
                [window = QPointer<WindowModel>(&window_)](const std::vector<URL>& taken) {
                    if (!window) return;
                    // An archive in an archive opens like any other.
                    if (taken.size() == 1 && FileItem::isArchiveBrowsable(taken.front()))
                        window->active().navigate(Location::archive(taken.front(), {}));
                    else
                        emit window->openFilesRequested(taken);
                });
}

}  // namespace tarn
