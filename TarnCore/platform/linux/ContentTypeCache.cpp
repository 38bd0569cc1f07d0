#include "TarnCore/platform/linux/ContentTypeCache.h"

#include <cstdio>
#include <system_error>

#include <fcntl.h>

#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/PrivateFolders.h"
#include "TarnCore/base/Text.h"
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

}  // namespace

std::optional<ContentTypeCache> ContentTypeCache::parse(std::string_view text,
                                                        std::string_view key) {
    const std::string first = header(key);
    if (!text.starts_with(first)) return std::nullopt;
    text.remove_prefix(first.size());
    text = text.substr(0, text.rfind('\n') + 1);
    ContentTypeCache cache;
    for (const std::string_view line : Text::split(text, '\n')) {
        const auto fields = Text::split(line, '\t');
        if (fields.size() == 3 && fields[0] == "E" && !fields[1].empty()) {
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
        }
    }
    return cache;
}

std::string ContentTypeCache::print(std::string_view key) const {
    std::string out = header(key);
    for (const auto& [extension, type] : extensions) out += line(extension, type);
    for (const auto& [identifier, type] : types) out += line(identifier, type);
    return out;
}

std::string ContentTypeCache::header(std::string_view key) {
    return std::string(signature) + '\t' + field(key) + '\n';
}

std::string ContentTypeCache::line(std::string_view extension,
                                   const std::optional<std::string>& type) {
    return "E\t" + field(extension) + '\t' + field(type.value_or("")) + '\n';
}

std::string ContentTypeCache::line(std::string_view identifier, const Type& type) {
    return "T\t" + field(identifier) + '\t' + field(type.description) + '\t' +
           field(Text::join(type.lineage, " ")) + '\n';
}

ContentTypeCache ContentTypeCacheFile::load() {
    try {
        auto cache = ContentTypeCache::parse(LinuxFileSystem().readFile(file_, largestFile), key_);
        if (!cache) return {};
        fd_ = FileDescriptor(open(file_.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW));
        return std::move(*cache);
    } catch (const std::system_error&) {
        return {};
    }
}

void ContentTypeCacheFile::create() {
    PrivateFolders::make(file_.parent());
    std::string temporary = file_.path() + ".XXXXXX";
    fd_ = FileDescriptor(mkostemp(temporary.data(), O_APPEND | O_CLOEXEC));
    if (!fd_) return;
    if (FileIO::writeAll(fd_.get(), ContentTypeCache::header(key_)) == 0 &&
        rename(temporary.c_str(), file_.c_str()) == 0)
        return;
    unlink(temporary.c_str());
    fd_.close();
}

void ContentTypeCacheFile::append(std::string_view lines) {
    if (hasFailed_) return;
    if (!fd_) create();
    hasFailed_ = !fd_ || FileIO::writeAll(fd_.get(), lines) != 0;
}

}  // namespace tarn
