#include "TarnCore/archive/ZipCompressor.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <sys/stat.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOpError.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/ZipWriter.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::ZipCompressor {
namespace {

/// Files up to this size are packed whole, several at once.
constexpr std::int64_t largestWhole = 4 << 20;
/// What is packed at once before it is written, at most.
constexpr std::int64_t largestBatch = 16 << 20;
constexpr std::size_t longestBatch = 4096;
constexpr std::size_t filesAtATime = 32;

/// Something to be put into the archive.
struct Source {
    URL url;
    std::string name;  ///< In the archive.
    FileAttributes attributes;
};

[[noreturn]] void failReading(const URL& url, const std::system_error& error) {
    throw FileOpError::failed("Couldn’t compress. " + Text::quoted(Text::sanitized(url.name())) +
                              " can’t be read. " + systemErrorSentence(error.code().value()));
}

ZipWriter::Facts facts(const FileAttributes& attributes) {
    std::uint32_t type = S_IFREG;
    if (attributes.type == FileType::directory) type = S_IFDIR;
    if (attributes.type == FileType::symlink) type = S_IFLNK;
    return {.mode = type | attributes.mode,
            .modified = UnixTime{attributes.modified.unixSeconds()}};
}

/// Everything below some items, in the order in which it is to be written.
class Collector {
public:
    explicit Collector(const ArchiveWatch& watch) : watch_(watch) {}

    void add(const URL& url, const std::string& name) {
        try {
            add({url, name, files().requireAttributes(url, Links::keep)});
        } catch (const std::system_error& error) {
            failReading(url, error);
        }
    }
    std::vector<Source> sources;
    std::int64_t bytes = 0;

private:
    static const FileSystem& files() { return *Platform::current().files; }

    void add(Source source) {
        if (watch_.token.isCancelled()) throw ArchiveError::cancelled();
        switch (source.attributes.type) {
            case FileType::file:
                bytes += source.attributes.size;
                break;
            case FileType::directory: {
                const URL url = source.url;
                source.name += '/';
                const std::string prefix = source.name;
                sources.push_back(std::move(source));
                addChildren(url, prefix);
                return;
            }
            case FileType::symlink:
                break;
            default:
                return;
        }
        sources.push_back(std::move(source));
    }

    void addChildren(const URL& folder, const std::string& prefix) {
        std::vector<Source> children;
        try {
            const auto reader = files().openFolder(folder);
            for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
                for (const FolderEntry& entry : batch) {
                    // What vanishes meanwhile is not there any more.
                    if (auto attributes = reader->attributes(entry.name, Links::keep)) {
                        const std::string name(entry.view());
                        children.push_back({folder.appending(name), prefix + name, *attributes});
                    }
                }
            }
        } catch (const std::system_error& error) {
            failReading(folder, error);
        }
        std::ranges::sort(children, {}, &Source::name);
        for (Source& child : children) add(std::move(child));
    }

    const ArchiveWatch& watch_;
};

class Compressing {
public:
    Compressing(ZipWriter& writer, ArchiveMeter& meter) : writer_(writer), meter_(meter) {}

    void add(const std::vector<Source>& sources) {
        for (std::size_t first = 0; first < sources.size();) {
            meter_.check();
            if (isLarge(sources[first])) {
                addLarge(sources[first++]);
                continue;
            }
            std::size_t last = first;
            for (std::int64_t bytes = 0; last < sources.size() && !isLarge(sources[last]) &&
                                         bytes < largestBatch && last - first < longestBatch;
                 ++last) {
                bytes += sources[last].attributes.size;
            }
            addBatch(std::span(sources).subspan(first, last - first));
            first = last;
        }
    }

private:
    static bool isLarge(const Source& source) {
        return source.attributes.type == FileType::file && source.attributes.size > largestWhole;
    }

    void addLarge(const Source& source) {
        std::shared_ptr<const FileBytes> content;
        try {
            content = Platform::current().archives->open(source.url, Links::keep);
        } catch (const std::system_error& error) {
            failReading(source.url, error);
        }
        writer_.addFile(source.name, *content, facts(source.attributes), [&](std::int64_t bytes) {
            meter_.check();
            meter_.add(bytes, 0, source.name);
        });
        meter_.add(0, 1, source.name);
    }

    void addBatch(std::span<const Source> batch) {
        std::vector<ZipWriter::Packed> packed(batch.size());
        Guarded<std::exception_ptr> failure;
        const std::size_t tasks = (batch.size() + filesAtATime - 1) / filesAtATime;
        TaskPool::shared().forEach(tasks, [&](std::size_t task) {
            try {
                auto deflater = takeDeflater();
                const std::size_t end = std::min(batch.size(), (task + 1) * filesAtATime);
                for (std::size_t i = task * filesAtATime; i < end && !meter_.isCancelled(); ++i) {
                    packed[i] = pack(batch[i], *deflater);
                    meter_.add(static_cast<std::int64_t>(packed[i].size), 1, batch[i].name);
                }
                idle_.lock()->push_back(std::move(deflater));
            } catch (...) {
                *failure.lock() = std::current_exception();
            }
        });
        if (const auto first = failure.lock(); *first) std::rethrow_exception(*first);
        meter_.check();
        for (ZipWriter::Packed& member : packed) writer_.add(std::move(member));
    }

    std::unique_ptr<Deflater> takeDeflater() {
        const auto idle = idle_.lock();
        if (idle->empty()) return std::make_unique<Deflater>();
        auto taken = std::move(idle->back());
        idle->pop_back();
        return taken;
    }

    static ZipWriter::Packed pack(const Source& source, Deflater& deflater) {
        const ZipWriter::Facts kept = facts(source.attributes);
        if (source.attributes.type == FileType::directory)
            return {.name = source.name, .facts = kept, .bytes = {}};
        try {
            if (source.attributes.type == FileType::symlink) {
                const std::string target = Platform::current().files->linkTarget(source.url);
                return ZipWriter::pack(deflater, source.name, target, kept);
            }
            const auto file = Platform::current().archives->open(source.url, Links::keep);
            std::string content(static_cast<std::size_t>(file->size()), '\0');
            content.resize(file->read(0, content));
            return ZipWriter::pack(deflater, source.name, content, kept);
        } catch (const std::system_error& error) {
            failReading(source.url, error);
        }
    }

    ZipWriter& writer_;
    ArchiveMeter& meter_;
    Guarded<std::vector<std::unique_ptr<Deflater>>> idle_;
};

/// A file under a hidden name, which is deleted unless it gets its real one.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const URL& folder)
        : name_(ChangeJournal::temporaryName(".tarn-compress-")), url_(folder.appending(name_)) {
        try {
            journal_ = ChangeJournal::ofLeftovers(name_);
            journal_->addFolder(folder);
        } catch (const std::system_error&) {
            // Without the note a crash leaves the file behind, which costs no one anything else.
        }
        file_ = Platform::current().archives->writer(folder)->createFile(name_, {});
    }
    ~UnfinishedFile() {
        file_.reset();
        if (isMoved_) return;
        try {
            Platform::current().files->removeFile(url_);
        } catch (const std::system_error&) {
            if (journal_) journal_->leaveToRepair();
        }
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    NewFile& file() { return *file_; }

    URL moveTo(const URL& wanted) {
        file_->finish();
        for (;;) {
            URL free = FileOps::uniqueURL(wanted);
            try {
                Platform::current().files->move(url_, free);
                isMoved_ = true;
                return free;
            } catch (const std::system_error& error) {
                // Another program was faster.
                if (error.code() != std::errc::file_exists) throw;
            }
        }
    }

private:
    std::string name_;
    URL url_;
    std::optional<ChangeJournal> journal_;
    std::unique_ptr<NewFile> file_;
    bool isMoved_ = false;
};

/// A name for an item beside those that are taken, as FileOps makes names free.
std::string freeName(const std::string& name, std::unordered_set<std::string>& taken) {
    if (taken.insert(name).second) return name;
    const NameParts parts = FileOps::split(name);
    for (int number = 2;; ++number) {
        std::string next = FileOps::join(parts.base + " " + std::to_string(number), parts.ext);
        if (taken.insert(next).second) return next;
    }
}

URL wantedName(const std::vector<URL>& urls) {
    const URL folder = urls[0].parent();
    if (urls.size() > 1) return folder.appending("Archive.zip");
    // A folder's name has no extension, whatever dots are in it.
    const std::string base = FileOps::isDirectory(urls[0]) ? std::string(urls[0].name())
                                                           : FileOps::split(urls[0].name()).base;
    return folder.appending(base + ".zip");
}

}  // namespace

URL compress(const std::vector<URL>& urls, const ArchiveWatch& watch) {
    if (urls.empty()) throw FileOpError::failed("Nothing to compress.");
    Collector collector(watch);
    std::unordered_set<std::string> taken;
    for (const URL& url : urls) {
        const std::string name = freeName(std::string(url.name()), taken);
        collector.add(url, urls.size() > 1 ? "Archive/" + name : name);
    }
    try {
        UnfinishedFile unfinished(urls[0].parent());
        ArchiveMeter meter(watch, collector.bytes);
        ZipWriter writer(unfinished.file());
        Compressing(writer, meter).add(collector.sources);
        writer.finish();
        meter.check();
        const URL made = unfinished.moveTo(wantedName(urls));
        meter.finish();
        return made;
    } catch (const std::system_error& error) {
        throw FileOpError::failed("Couldn’t compress. " +
                                  systemErrorSentence(error.code().value()));
    }
}

}  // namespace tarn::ZipCompressor
