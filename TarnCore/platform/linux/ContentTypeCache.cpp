#include "TarnCore/platform/linux/ContentTypeCache.h"

#include <cstdio>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/linux/FileDescriptor.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"

namespace tarn {
namespace {

constexpr std::string_view signature = "tarn content types 1";
constexpr std::size_t largestFile = 4'000'000;

/// A field must not end its line or itself.
std::string field(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        if (c == '\t' || c == '\n') c = ' ';
    return out;
}

bool writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void makeFolders(const URL& folder) {
    if (folder.isRoot() || mkdir(folder.c_str(), 0700) == 0 || errno != ENOENT) return;
    makeFolders(folder.parent());
    mkdir(folder.c_str(), 0700);
}

}  // namespace

std::optional<ContentTypeCache> ContentTypeCache::parse(std::string_view text,
                                                        std::string_view key) {
    if (!text.ends_with('\n')) return std::nullopt;
    text.remove_suffix(1);
    ContentTypeCache cache;
    bool isFirst = true;
    for (const std::string_view line : Text::split(text, '\n')) {
        const auto fields = Text::split(line, '\t');
        if (isFirst) {
            if (fields.size() != 2 || fields[0] != signature || fields[1] != field(key))
                return std::nullopt;
            isFirst = false;
        } else if (fields.size() == 3 && fields[0] == "E" && !fields[1].empty()) {
            std::optional<std::string> type;
            if (!fields[2].empty()) type = fields[2];
            cache.extensions.emplace(fields[1], std::move(type));
        } else if (fields.size() == 4 && fields[0] == "T" && !fields[1].empty()) {
            Type type;
            type.description = fields[2];
            if (!fields[3].empty())
                for (const std::string_view word : Text::split(fields[3], ' '))
                    type.lineage.emplace_back(word);
            cache.types.emplace(fields[1], std::move(type));
        } else {
            return std::nullopt;
        }
    }
    return cache;
}

std::string ContentTypeCache::print(std::string_view key) const {
    std::string out(signature);
    out += '\t';
    out += field(key);
    out += '\n';
    for (const auto& [extension, type] : extensions) {
        out += "E\t" + field(extension) + '\t' + field(type.value_or("")) + '\n';
    }
    for (const auto& [identifier, type] : types) {
        out += "T\t" + field(identifier) + '\t' + field(type.description) + '\t' +
               field(Text::join(type.lineage, " ")) + '\n';
    }
    return out;
}

std::optional<ContentTypeCache> ContentTypeCache::load(const URL& file, std::string_view key) {
    try {
        return parse(LinuxFileSystem().readFile(file, largestFile), key);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

void ContentTypeCache::save(const URL& file, std::string_view key) const {
    makeFolders(file.parent());
    std::string temporary = file.path() + ".XXXXXX";
    const FileDescriptor fd(mkostemp(temporary.data(), O_CLOEXEC));
    if (!fd) return;
    if (!writeAll(fd.get(), print(key)) || rename(temporary.c_str(), file.c_str()) != 0)
        unlink(temporary.c_str());
}

}  // namespace tarn
