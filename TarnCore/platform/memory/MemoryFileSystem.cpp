#include "TarnCore/platform/memory/MemoryFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "TarnCore/base/PageBuffer.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::size_t longestName = 255;
constexpr int mostLinks = 40;

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "memory disk");
}

}  // namespace

MemoryFileSystem::MemoryFileSystem() { addFolder(URL()); }

MemoryFileSystem::Node& MemoryFileSystem::Disk::add(const URL& url, FileType type) {
    if (!url.isRoot() && !nodes.contains(url.parent())) add(url.parent(), FileType::directory);
    Node& node = nodes[url];
    node = {};
    node.attributes.type = type;
    node.attributes.mode = type == FileType::directory ? 0755 : 0644;
    node.attributes.device = 1;
    node.attributes.inode = ++lastInode;
    node.attributes.created = Date{};
    return node;
}

void MemoryFileSystem::addFile(const URL& url, std::string_view content, Date modified) {
    const auto disk = disk_.lock();
    Node& node = disk->add(url, FileType::file);
    node.content = content;
    node.attributes.size = static_cast<std::int64_t>(content.size());
    node.attributes.allocatedSize = (node.attributes.size + 4095) / 4096 * 4096;
    node.attributes.modified = node.attributes.accessed = node.attributes.changed = modified;
    node.attributes.created = modified;
}

void MemoryFileSystem::addFolder(const URL& url, Date modified) {
    const auto disk = disk_.lock();
    Node& node = disk->add(url, FileType::directory);
    node.attributes.modified = node.attributes.accessed = node.attributes.changed = modified;
    node.attributes.created = modified;
}

void MemoryFileSystem::addLink(const URL& url, std::string_view target) {
    const auto disk = disk_.lock();
    Node& node = disk->add(url, FileType::symlink);
    node.content = target;
    node.attributes.size = static_cast<std::int64_t>(target.size());
}

void MemoryFileSystem::remove(const URL& url) {
    std::erase_if(disk_.lock()->nodes,
                  [&](const auto& entry) { return entry.first.isInside(url); });
}

void MemoryFileSystem::setAttributes(const URL& url, const FileAttributes& attributes) {
    const auto disk = disk_.lock();
    const auto found = disk->nodes.find(url);
    if (found == disk->nodes.end()) fail(ENOENT);
    const FileAttributes before = std::exchange(found->second.attributes, attributes);
    found->second.attributes.type = before.type;
    found->second.attributes.size = before.size;
    found->second.attributes.inode = before.inode;
}

void MemoryFileSystem::failWith(const URL& url, int errnum) {
    disk_.lock()->failures[url] = errnum;
}

void MemoryFileSystem::setBatchSize(std::size_t count) { disk_.lock()->batchSize = count; }

std::vector<URL> MemoryFileSystem::opened() const { return disk_.lock()->opened; }

URL MemoryFileSystem::Disk::find(const URL& url, Links links) const {
    URL here;
    std::vector<std::string> rest;
    const auto push = [&](std::string_view path) {
        const auto names = Text::split(path, '/');
        for (auto name = names.rbegin(); name != names.rend(); ++name)
            if (!name->empty() && *name != ".") rest.emplace_back(*name);
    };
    push(url.path());
    int followed = 0;
    while (!rest.empty()) {
        const std::string name = std::move(rest.back());
        rest.pop_back();
        if (nodes.at(here).attributes.type != FileType::directory) fail(ENOTDIR);
        if (name.size() > longestName) fail(ENAMETOOLONG);
        if (name == "..") {
            here = here.parent();
            continue;
        }
        const URL next = here.appending(name);
        if (const auto failure = failures.find(next); failure != failures.end() && failure->second)
            fail(failure->second);
        const auto found = child(next);
        if (found == nodes.end()) fail(ENOENT);
        const bool isLink = found->second.attributes.type == FileType::symlink;
        if (isLink && (!rest.empty() || links == Links::follow)) {
            if (++followed > mostLinks) fail(ELOOP);
            if (found->second.content.starts_with('/')) here = URL();
            push(found->second.content);
            continue;
        }
        here = found->first;
    }
    return here;
}

const MemoryFileSystem::Node& MemoryFileSystem::Disk::node(const URL& url, Links links) const {
    return nodes.at(find(url, links));
}

class MemoryFileSystem::Reader final : public FolderReader {
public:
    Reader(const MemoryFileSystem& files, URL folder) : files_(files), folder_(std::move(folder)) {
        const auto disk = files_.disk_.lock();
        batchSize_ = disk->batchSize;
        for (auto it = disk->nodes.upper_bound(folder_); it != disk->nodes.end(); ++it) {
            // Names that sort before "/" may stand between a folder and what is in it.
            if (!it->first.path().starts_with(folder_.path())) break;
            if (it->first.parent() != folder_) continue;
            names_.emplace_back(it->first.name());
            types_.push_back(it->second.attributes);
        }
    }

    std::span<const FolderEntry> read() override {
        batch_.clear();
        for (; at_ < names_.size() && batch_.size() < batchSize_; ++at_)
            batch_.push_back({names_[at_].c_str(), static_cast<std::uint32_t>(names_[at_].size()),
                              types_[at_].type, types_[at_].inode});
        return batch_;
    }
    std::unique_ptr<FolderReader> splitOff() override {
        if (!isWhole_ || at_ > 0 || names_.size() < 2) return nullptr;
        isWhole_ = false;
        auto later = std::make_unique<Reader>(*this);
        later->at_ = names_.size() / 2;
        names_.resize(later->at_);
        return later;
    }
    std::optional<FileAttributes> attributes(const char* name, Links links) const override {
        return files_.attributes(folder_.appending(name), links);
    }
    FileAttributes attributes() const override {
        return files_.requireAttributes(folder_, Links::keep);
    }
    std::unique_ptr<FolderReader> open(const char* name) const override {
        const URL child = folder_.appending(name);
        const FileType type = files_.requireAttributes(child, Links::keep).type;
        if (type == FileType::symlink) fail(ELOOP);
        return files_.openFolder(child);
    }
    std::string_view readFile(const char* name, std::size_t limit,
                              PageBuffer& buffer) const override {
        const URL child = folder_.appending(name);
        const FileType type = files_.requireAttributes(child, Links::keep).type;
        if (type == FileType::symlink) fail(ELOOP);
        const std::string content = files_.readFile(child, limit);
        buffer.grow(content.size(), 0);
        std::copy(content.begin(), content.end(), buffer.data());
        return {buffer.data(), content.size()};
    }

private:
    const MemoryFileSystem& files_;
    URL folder_;
    std::vector<std::string> names_;
    std::vector<FileAttributes> types_;
    std::vector<FolderEntry> batch_;
    std::size_t batchSize_ = 0;
    std::size_t at_ = 0;
    bool isWhole_ = true;  ///< No part is another's.
};

std::unique_ptr<FolderReader> MemoryFileSystem::openFolder(const URL& folder) const {
    URL found;
    {
        const auto disk = disk_.lock();
        found = disk->find(folder, Links::follow);
        if (disk->nodes.at(found).attributes.type != FileType::directory) fail(ENOTDIR);
        disk->opened.push_back(found);
    }
    return std::make_unique<Reader>(*this, std::move(found));
}

std::optional<FileAttributes> MemoryFileSystem::attributes(const URL& url, Links links) const {
    try {
        return requireAttributes(url, links);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

FileAttributes MemoryFileSystem::requireAttributes(const URL& url, Links links) const {
    return disk_.lock()->node(url, links).attributes;
}

std::string MemoryFileSystem::linkTarget(const URL& url) const {
    const auto disk = disk_.lock();
    const Node& node = disk->node(url, Links::keep);
    if (node.attributes.type != FileType::symlink) fail(EINVAL);
    return node.content;
}

std::optional<URL> MemoryFileSystem::resolved(const URL& url) const {
    try {
        return disk_.lock()->find(url, Links::follow);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

std::string MemoryFileSystem::readFile(const URL& url, std::size_t limit) const {
    const auto disk = disk_.lock();
    const Node& node = disk->node(url, Links::follow);
    if (node.attributes.type == FileType::directory) fail(EISDIR);
    return node.content.substr(0, limit);
}

bool MemoryFileSystem::isReadableFolder(const URL& url) const {
    const auto found = attributes(url, Links::follow);
    return found && found->type == FileType::directory;
}

}  // namespace tarn
