#include "TarnCore/platform/linux/MountTable.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"

namespace tarn {
namespace {

using namespace std::string_view_literals;

/// A line of the table, with what is needed to tell which mount lies on which.
struct Line {
    Mount mount;
    int id = 0;
    int parent = 0;
};

int number(std::string_view text) {
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The kernel writes space, tab, line feed, backslash and "#" as \040 and the like.
std::string unescaped(std::string_view text) {
    std::string out;
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) &&
            isOctal(text[i + 2]) && isOctal(text[i + 3])) {
            out += static_cast<char>((text[i + 1] - '0') << 6 | (text[i + 2] - '0') << 3 |
                                     (text[i + 3] - '0'));
            i += 3;
        } else {
            out += text[i];
        }
    }
    return out;
}

bool hasOption(std::string_view options, std::string_view option) {
    for (const std::string_view one : Text::split(options, ','))
        if (one == option) return true;
    return false;
}

bool isBelow(const URL& url, const char* folder) { return url.isInside(URL::fromPath(folder)); }

bool isPseudo(const Mount& mount) {
    static const std::unordered_set<std::string_view> always = {
        "autofs",   "binder",       "binfmt_misc", "bpf",       "cgroup",      "cgroup2",
        "configfs", "debugfs",      "devpts",      "devtmpfs",  "efivarfs",    "fuse.lxcfs",
        "fusectl",  "hugetlbfs",    "mqueue",      "nsfs",      "fuse.portal", "proc",
        "pstore",   "rpc_pipefs",   "securityfs",  "selinuxfs", "smackfs",     "sysfs",
        "tracefs",  "fuse.snapfuse"};
    if (always.contains(mount.fileSystem)) return true;
    // A folder of the user may well be kept in memory; these are the system's own.
    if (mount.fileSystem == "tmpfs" || mount.fileSystem == "ramfs")
        return isBelow(mount.mountPoint, "/run") || isBelow(mount.mountPoint, "/dev") ||
               isBelow(mount.mountPoint, "/sys") || isBelow(mount.mountPoint, "/proc");
    if (mount.fileSystem == "squashfs")
        return isBelow(mount.mountPoint, "/snap") || isBelow(mount.mountPoint, "/var/lib/snapd");
    return false;
}

bool isNetwork(const Mount& mount) {
    static const std::unordered_set<std::string_view> always = {"9p",
                                                                "afs",
                                                                "beegfs",
                                                                "ceph",
                                                                "cifs",
                                                                "coda",
                                                                "davfs",
                                                                "fuse.ceph",
                                                                "fuse.curlftpfs",
                                                                "fuse.davfs2",
                                                                "fuse.gvfsd-fuse",
                                                                "fuse.glusterfs",
                                                                "fuse.goofys",
                                                                "fuse.rclone",
                                                                "fuse.s3fs",
                                                                "fuse.sshfs",
                                                                "glusterfs",
                                                                "gpfs",
                                                                "lustre",
                                                                "ncpfs",
                                                                "nfs",
                                                                "nfs4",
                                                                "orangefs",
                                                                "smb2",
                                                                "smb3",
                                                                "smbfs"};
    return always.contains(mount.fileSystem);
}

bool isRemovable(const Mount& mount) {
    if (mount.fileSystem == "fuse.gvfsd-fuse") return true;
    return isBelow(mount.mountPoint, "/media") || isBelow(mount.mountPoint, "/run/media") ||
           isBelow(mount.mountPoint, "/mnt");
}

std::optional<Line> parseLine(std::string_view text) {
    // 36 35 98:0 /root /mount/point rw,noatime shared:1 - ext4 /dev/sda1 rw,errors=continue
    const auto fields = Text::split(text, ' ');
    std::size_t separator = 6;
    while (separator < fields.size() && fields[separator] != "-"sv) ++separator;
    if (separator + 3 >= fields.size()) return std::nullopt;
    const std::string point = unescaped(fields[4]);
    if (!point.starts_with('/') || point.ends_with("//deleted")) return std::nullopt;

    Line line;
    line.id = number(fields[0]);
    line.parent = number(fields[1]);
    const auto device = fields[2];
    const std::size_t colon = device.find(':');
    if (colon == device.npos) return std::nullopt;
    Mount& mount = line.mount;
    mount.device = makedev(static_cast<unsigned>(number(device.substr(0, colon))),
                           static_cast<unsigned>(number(device.substr(colon + 1))));
    mount.mountPoint = URL::fromPath(point);
    mount.fileSystem = unescaped(fields[separator + 1]);
    mount.source = unescaped(fields[separator + 2]);
    mount.isReadOnly = hasOption(fields[5], "ro") || hasOption(fields[separator + 3], "ro");
    mount.recordsAccessTimes = !hasOption(fields[5], "noatime");
    mount.isPseudo = isPseudo(mount);
    mount.isNetwork = isNetwork(mount);
    mount.isRemovable = !mount.isPseudo && isRemovable(mount);
    return line;
}

/// A mount is out of reach when another one lies on its folder, or when on the way down to it
/// another one was mounted on the same folder or further up in the same file system.
std::vector<bool> hidden(const std::vector<Line>& lines) {
    std::unordered_map<int, std::size_t> byId;
    std::unordered_multimap<int, std::size_t> byParent;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        byId.emplace(lines[i].id, i);
        byParent.emplace(lines[i].parent, i);
    }
    const auto isCovered = [&](int fileSystem, const Line* except, const URL& point) {
        const auto [begin, end] = byParent.equal_range(fileSystem);
        return std::any_of(begin, end, [&](const auto& entry) {
            const Line& other = lines[entry.second];
            // The very first file system calls itself its parent.
            return &other != except && other.id != fileSystem &&
                   point.isInside(other.mount.mountPoint);
        });
    };
    std::vector<bool> result(lines.size(), false);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        result[i] = isCovered(lines[i].id, nullptr, lines[i].mount.mountPoint);
        // No way up is longer than the table; a table with a circle is no table of the kernel.
        const Line* step = &lines[i];
        for (std::size_t n = 0; n < lines.size() && !result[i]; ++n) {
            result[i] = isCovered(step->parent, step, step->mount.mountPoint);
            const auto parent = byId.find(step->parent);
            if (parent == byId.end() || lines[parent->second].parent == step->parent) break;
            step = &lines[parent->second];
        }
    }
    return result;
}

/// The table of a process whose root is a folder of a mount (as after chroot) does not name that
/// mount, although everything that no other one holds lies on it.
void addRoot(std::vector<Mount>& mounts) {
    if (std::ranges::any_of(mounts, [](const Mount& mount) { return mount.mountPoint.isRoot(); }))
        return;
    struct stat status {};
    struct statvfs facts {};
    if (stat("/", &status) != 0 || statvfs("/", &facts) != 0) return;
    Mount root;
    root.device = status.st_dev;
    root.isReadOnly = (facts.f_flag & ST_RDONLY) != 0;
    root.recordsAccessTimes = (facts.f_flag & ST_NOATIME) == 0;
    mounts.insert(mounts.begin(), std::move(root));
}

}  // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
    std::vector<Line> lines;
    for (const std::string_view one : Text::split(text, '\n'))
        if (auto line = parseLine(one)) lines.push_back(std::move(*line));
    const auto isHidden = hidden(lines);
    std::vector<Mount> mounts;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (!isHidden[i]) mounts.push_back(std::move(lines[i].mount));
    return mounts;
}

std::vector<Mount> currentMounts() {
    constexpr std::size_t longest = 16'000'000;
    try {
        auto mounts = parseMountInfo(
            LinuxFileSystem().readFile(URL::fromPath("/proc/self/mountinfo"), longest));
        addRoot(mounts);
        return mounts;
    } catch (const std::system_error&) {
        return {};
    }
}

}  // namespace tarn
