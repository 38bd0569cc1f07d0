#include "Tarn/model/MemberFile.h"

#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/MemberFolder.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/files/ListingError.h"

namespace tarn {
namespace {

std::int64_t bytesBelow(const std::string& folder) {
    namespace fs = std::filesystem;
    std::int64_t bytes = 0;
    std::error_code error;  // Files come and get their names meanwhile.
    for (auto at = fs::recursive_directory_iterator(folder, error);
         !error && at != fs::recursive_directory_iterator(); at.increment(error)) {
        std::error_code ignored;
        const auto size = at->is_regular_file(ignored) ? at->file_size(ignored) : 0;
        if (!ignored) bytes += static_cast<std::int64_t>(size);
    }
    return bytes;
}

/// Not every archive says how large a member is, nor is it true of every one that does. So what
/// has been written is counted.
URL unpacked(const URL& archive, const std::string& member, const URL& folder,
             const CancelToken& token, bool& isTooLarge) {
    ArchiveReader::Watch watch;
    watch.token = token;
    watch.progress = [&](const ArchiveReader::Progress&) {
        isTooLarge |= bytesBelow(folder.path()) > MemberFile::largest;
        if (isTooLarge) token.cancel();
    };
    const auto made = ArchiveReader::extract(archive, {member}, folder.appending("member"), watch);
    // The archive is another one meanwhile.
    if (made.empty()) throw ListingError::notFound(member.substr(member.rfind('/') + 1));
    return made.front();
}

}  // namespace

MemberFile::MemberFile(QObject* parent) : QObject(parent) {}

MemberFile::~MemberFile() {
    drop();
    queue_.flush();
}

void MemberFile::drop() {
    ++request_;
    token_.cancel();
    queue_.run([this] { folder_.reset(); });
}

void MemberFile::take(const URL& archive, const std::string& member,
                      std::optional<std::int64_t> size) {
    drop();
    const QString tooLarge = tr("It is too large to be shown from inside of the archive.");
    if (size.value_or(0) > largest) {
        emit failed(tooLarge);
        return;
    }
    token_ = CancelToken();
    queue_.run([this, archive, member, tooLarge, token = token_, request = request_,
                self = QPointer<MemberFile>(this)] {
        if (token.isCancelled()) return;
        std::optional<FileItem> item;
        std::string problem;
        bool isTooLarge = false;
        try {
            folder_ = std::make_unique<MemberFolder>();
            item = FileItem::load(unpacked(archive, member, folder_->url(), token, isTooLarge));
            if (item && item->isSymlink) item.reset();
        } catch (const Error& error) {
            problem = error.what();
        }
        const QString said = isTooLarge ? tooLarge : coreSentence(problem);
        MainThread::post(self, [request, item = std::move(item), said](MemberFile& there) {
            if (request != there.request_) return;
            if (item)
                emit there.ready(*item);
            else
                emit there.failed(said);
        });
    });
}

}  // namespace tarn
