#include "TarnCore/ops/Permissions.h"

#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/FileMode.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::Permissions {
namespace {

constexpr std::uint32_t enterFolder = 0500;  ///< What its owner needs to read what is inside.

FileSystem& files() { return *Platform::current().files; }

FileOpError refusal(const std::exception& error, const URL& url) {
    return FileOpError::failed(
        FileOps::friendly(error, "change permissions of " + Text::quoted(url.name())));
}

class Changer {
public:
    Changer(const PermissionChange& what, const CancelToken& token, std::vector<Step>& done)
        : what_(what), token_(token), done_(done) {}

    void changeNamed(const URL& url) {
        // Who names a link means what it leads to.
        const auto target = files().resolved(url);
        const auto item = target ? files().attributes(*target, Links::keep) : std::nullopt;
        if (item)
            change(*target, *item, false);
        else
            note(FileOpError::missing(url.name()));
    }

    void throwFailure() const {
        if (failure_) throw *failure_;
    }

private:
    void change(const URL& url, const FileAttributes& item, bool isInside) {
        if (token_.isCancelled() || item.type == FileType::symlink) return;
        const bool isFolder = item.type == FileType::directory;
        std::uint32_t given = what_.given;
        if (isInside && !isFolder && (item.mode & runBits) == 0) given &= ~runBits;
        const std::uint32_t mode = (item.mode & ~what_.taken) | given;
        const bool goesIn = isFolder && what_.isDeep;
        // A folder that is closed by this is gone through first, one that is opened afterwards.
        const bool isClosed = goesIn && (mode & enterFolder) != enterFolder;
        if (isClosed) changeInside(url);
        if (mode != item.mode && !token_.isCancelled()) {
            try {
                FileMode::set(url, item, mode);
                done_.push_back(Step::permissions(url, item.mode, mode));
            } catch (const std::system_error& error) {
                note(refusal(error, url));
            }
        }
        if (goesIn && !isClosed) changeInside(url);
    }

    void changeInside(const URL& folder) {
        std::vector<std::pair<URL, FileAttributes>> children;
        try {
            const auto reader = files().openFolder(folder);
            for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
                for (const FolderEntry& entry : batch) {
                    if (const auto item = reader->attributes(entry.name, Links::keep))
                        children.emplace_back(folder.appending(entry.view()), *item);
                }
            }
        } catch (const std::system_error& error) {
            note(refusal(error, folder));
        }
        for (const auto& [url, item] : children) change(url, item, true);
    }

    /// The first is told; what can be done is done all the same.
    void note(FileOpError failure) {
        if (!failure_) failure_ = std::move(failure);
    }

    const PermissionChange& what_;
    const CancelToken& token_;
    std::vector<Step>& done_;
    std::optional<FileOpError> failure_;
};

}  // namespace

std::string text(std::uint32_t mode) {
    std::string letters = "rwxrwxrwx";
    for (std::size_t i = 0; i < letters.size(); ++i)
        if ((mode & (0400U >> i)) == 0) letters[i] = '-';
    const struct {
        std::uint32_t bit;
        std::size_t at;
        char letter;
    } specials[] = {{04000, 2, 's'}, {02000, 5, 's'}, {01000, 8, 't'}};
    for (const auto& [bit, at, letter] : specials) {
        if ((mode & bit) == 0) continue;
        letters[at] = letters[at] == 'x' ? letter : static_cast<char>(letter - 'a' + 'A');
    }
    return letters;
}

void change(const std::vector<URL>& items, const PermissionChange& what, const CancelToken& token,
            std::vector<Step>& done) {
    Changer changer(what, token, done);
    for (const URL& url : items) changer.changeNamed(url);
    changer.throwFailure();
}

void write(const URL& url, std::uint32_t mode) {
    if (!FileOps::exists(url)) throw FileOpError::missing(url.name());
    try {
        FileMode::set(url, files().requireAttributes(url, Links::keep), mode);
    } catch (const std::system_error& error) {
        throw refusal(error, url);
    }
}

}  // namespace tarn::Permissions
