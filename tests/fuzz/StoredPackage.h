#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TarnCore/base/Deflate.h"

namespace tarn {

/// A zip file of stored members that is good: nothing that a fuzzer changes at random would have
/// its checksum.
class StoredPackage {
public:
    StoredPackage& add(std::string_view name, std::string_view content) {
        members_.emplace_back(name, content);
        return *this;
    }

    std::string bytes() const {
        std::string out;
        std::string directory;
        for (const auto& [name, content] : members_) {
            directory += "PK\1\2";
            append(directory, 20, 2);
            directory += facts(name, content);
            directory.append(10, '\0');  // comment, disk, attributes
            append(directory, out.size(), 4);
            directory += name;
            out += "PK\3\4" + facts(name, content) + name + content;
        }
        const std::size_t start = out.size();
        out += directory;
        out += "PK\5\6";
        append(out, 0, 4);
        append(out, members_.size(), 2);
        append(out, members_.size(), 2);
        append(out, directory.size(), 4);
        append(out, start, 4);
        append(out, 0, 2);
        return out;
    }

private:
    static void append(std::string& out, std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i) out += static_cast<char>(value >> (i * 8) & 0xFF);
    }
    /// What the local header of a member and its entry in the directory have in common.
    static std::string facts(std::string_view name, std::string_view content) {
        std::string out;
        append(out, 20, 2);   // version
        out.append(8, '\0');  // flags, method, time and date
        append(out, crc32(0, content), 4);
        append(out, content.size(), 4);
        append(out, content.size(), 4);
        append(out, name.size(), 2);
        append(out, 0, 2);
        return out;
    }

    std::vector<std::pair<std::string, std::string>> members_;
};

}  // namespace tarn
