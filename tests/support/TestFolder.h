#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// A temporary folder on the real disk, removed with everything in it when it goes. Links in it
/// are never followed on the way.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const URL& url() const { return url_; }
    URL operator/(std::string_view relative) const { return url_.appending(relative); }

    /// Makes the file and the folders above it. Fails the test when it cannot.
    URL file(std::string_view relative, std::string_view content = {},
             std::optional<Date> modified = std::nullopt) const;
    /// A file of that many bytes, without writing them.
    URL sparseFile(std::string_view relative, std::int64_t size) const;
    URL folder(std::string_view relative) const;
    URL link(std::string_view relative, std::string_view target) const;
    void setModified(const URL& url, Date modified) const;
    std::string read(std::string_view relative) const;
    bool exists(std::string_view relative) const;

private:
    URL url_;
};

}  // namespace tarn
