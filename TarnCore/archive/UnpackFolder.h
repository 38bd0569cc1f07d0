#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/ops/ChangeJournal.h"

namespace tarn {

/// A hidden new folder in which an archive is unpacked before its content gets a place; what is
/// still in it when it goes is deleted, after a crash by the next program that starts. Failures
/// throw std::system_error.
class UnpackFolder {
public:
    /// Inside `parent`, which must exist.
    explicit UnpackFolder(const URL& parent);
    ~UnpackFolder();
    UnpackFolder(const UnpackFolder&) = delete;
    UnpackFolder& operator=(const UnpackFolder&) = delete;

    const URL& url() const { return url_; }
    /// Of what lies in it, in the order of bytes.
    std::vector<std::string> names() const;
    /// Deletes what lies in it.
    void clear();

    /// Gives one of its items the first name that is free among `wanted`, "wanted 2", …
    URL moveOut(std::string_view path, const URL& wanted);
    /// The same for the folder itself.
    URL moveWhole(const URL& wanted);

private:
    std::optional<ChangeJournal> journal_;
    URL url_;
    bool isMoved_ = false;
};

}  // namespace tarn
