#pragma once

#include <string>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/TreeWriter.h"

namespace tarn {

/// openat2 beneath the folder's descriptor; where the kernel lacks it, one openat with O_NOFOLLOW
/// for each name of a path.
class LinuxTreeWriter final : public TreeWriter {
public:
    explicit LinuxTreeWriter(FileDescriptor folder) : root_(std::move(folder)) {}

    void createFolder(std::string_view path) override;
    void writeFile(std::string_view path, std::string_view content,
                   const NewItemFacts& facts) override;
    std::unique_ptr<NewFile> createFile(std::string_view path, const NewItemFacts& facts) override;
    void createLink(std::string_view path, const std::string& target,
                    const std::optional<UnixTime>& modified) override;
    void createHardLink(std::string_view path, std::string_view existing) override;
    void finishFolder(std::string_view path, const NewItemFacts& facts) override;
    void removeFile(std::string_view path) override;

private:
    /// The last name of a path, and a descriptor of the folder that it is in.
    struct Place {
        int folder;
        std::string name;
    };
    enum class Missing { create, fail };
    Place place(std::string_view path, Missing missing);
    FileDescriptor openFolder(const std::string& path, Missing missing) const;
    FileDescriptor openByNames(const std::string& path, Missing missing) const;

    FileDescriptor root_;
    /// The folder used last, since archives are mostly in the order of folders.
    std::string lastPath_;
    FileDescriptor last_;
};

}  // namespace tarn
