#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/platform/linux/LinuxFileCopy.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Outcome = FileCopy::Outcome;

int errorOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const std::system_error& error) {
        return error.code().value();
    }
    return 0;
}

struct stat factsOf(const URL& url) {
    struct stat facts = {};
    EXPECT_EQ(lstat(url.c_str(), &facts), 0) << url.path();
    return facts;
}

std::vector<std::string> namesIn(const TestFolder& folder, std::string_view relative) {
    std::vector<std::string> names;
    const std::string command = folder.url().appending(relative).path();
    for (const auto& entry : std::filesystem::recursive_directory_iterator(command))
        names.push_back(entry.path().string().substr(command.size() + 1));
    std::ranges::sort(names);
    return names;
}

class FileCopyTest : public testing::Test {
protected:
    TestFolder folder;
    LinuxFileCopy copying;
    std::vector<std::pair<URL, int>> failures;
    std::vector<URL> lost;
    std::int64_t doneBytes = 0;
    std::int64_t doneItems = 0;

    FileCopy::Watch watch() {
        FileCopy::Watch watch;
        watch.progress = [this](std::int64_t moreBytes, std::int64_t moreItems) {
            doneBytes += moreBytes;
            doneItems += moreItems;
            return true;
        };
        watch.failed = [this](const URL& url, int errnum) { failures.emplace_back(url, errnum); };
        watch.attributesLost = [this](const URL& url) { lost.push_back(url); };
        watch.reportsEachItem = true;
        return watch;
    }
    void setTimes(const URL& url, long seconds, long nanoseconds) const {
        const timespec times[2] = {{seconds - 5, 7}, {seconds, nanoseconds}};
        ASSERT_EQ(utimensat(AT_FDCWD, url.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }
};

TEST_F(FileCopyTest, keepsNamesDataModesAndTimes) {
    folder.file("from/line\nfeed", "a");
    folder.file("from/broken\xff", "bb");
    folder.file("from/" + std::string(255, 'n'), std::string(300'000, 'x'));
    folder.file("from/empty");
    folder.file("from/deep/deeper/file", "ccc");
    folder.folder("from/bare");
    folder.link("from/link", "deep");
    folder.link("from/dangling", "no/such/place");
    ASSERT_EQ(mkfifo((folder / "from/pipe").c_str(), 0640), 0);
    const struct {
        const char* name;
        mode_t mode;
    } items[] = {
        {"line\nfeed", 0644},  {"broken\xff", 04755}, {"empty", 0400}, {"deep/deeper/file", 0666},
        {"deep/deeper", 0555}, {"deep", 01777},       {"bare", 02750}, {"pipe", 0622},
        {"link", 0777},        {"dangling", 0777},    {"", 0711}};
    long second = 1'000'000'000;
    for (const auto& item : items) {
        const URL url = (folder / "from").appending(item.name);
        if (item.mode != 0777) {
            ASSERT_EQ(chmod(url.c_str(), item.mode), 0) << item.name;
        }
        setTimes(url, ++second, 123'456'789);
    }

    EXPECT_EQ(copying.copy(folder / "from", folder / "to", watch()), Outcome::complete);

    EXPECT_EQ(namesIn(folder, "to"), namesIn(folder, "from"));
    for (const auto& item : items) {
        SCOPED_TRACE(item.name);
        const struct stat from = factsOf((folder / "from").appending(item.name));
        const struct stat to = factsOf((folder / "to").appending(item.name));
        EXPECT_EQ(to.st_mode, from.st_mode);
        EXPECT_EQ(to.st_size, S_ISDIR(to.st_mode) ? to.st_size : from.st_size);
        EXPECT_EQ(to.st_mtim.tv_sec, from.st_mtim.tv_sec);
        EXPECT_EQ(to.st_mtim.tv_nsec, from.st_mtim.tv_nsec);
    }
    EXPECT_EQ(folder.read("to/" + std::string(255, 'n')), std::string(300'000, 'x'));
    EXPECT_EQ(folder.read("to/deep/deeper/file"), "ccc");
    EXPECT_EQ(doneBytes, 1 + 2 + 300'000 + 3 + 4 + 13);
    EXPECT_EQ(doneItems, 8);
    EXPECT_TRUE(failures.empty());
    EXPECT_TRUE(lost.empty());
}

/// An access list as the kernel takes it: version 2, then tag, permissions and id of each entry.
std::string accessList(std::uint32_t user) {
    struct Entry {
        std::uint16_t tag, permissions;
        std::uint32_t id;
    };
    constexpr std::uint32_t none = 0xffffffff;
    const std::uint32_t version = 2;
    const Entry entries[] = {
        {0x01, 6, none}, {0x02, 7, user}, {0x04, 4, none}, {0x10, 7, none}, {0x20, 0, none}};
    std::string bytes(reinterpret_cast<const char*>(&version), sizeof version);
    bytes.append(reinterpret_cast<const char*>(entries), sizeof entries);
    return bytes;
}

std::string attribute(const URL& url, const char* name) {
    char value[4096];
    const ssize_t size = lgetxattr(url.c_str(), name, value, sizeof value);
    return size < 0 ? std::string("-") : std::string(value, static_cast<std::size_t>(size));
}

TEST_F(FileCopyTest, keepsAttributesAndAccessLists) {
    folder.file("from/sub/read-only", "x");
    const struct {
        const char* item;
        const char* name;
        std::string value;
    } cases[] = {
        {"from/sub/read-only", "user.com.apple.metadata:_kMDItemUserTags", std::string("a\0b", 3)},
        {"from/sub/read-only", "user.empty", ""},
        {"from/sub", "user.xdg.tags", "red"},
        {"from", "user.xdg.tags", "blue"},
        {"from/sub/read-only", "system.posix_acl_access", accessList(1234)},
        {"from/sub", "system.posix_acl_default", accessList(4321)},
    };
    for (const auto& c : cases) {
        if (lsetxattr((folder / c.item).c_str(), c.name, c.value.data(), c.value.size(), 0) != 0)
            GTEST_SKIP() << c.name << ": " << std::strerror(errno);
    }
    // The copy comes to its place now.
    ASSERT_EQ(lsetxattr((folder / "from/sub").c_str(), "user.tarn.added", "1.5", 3, 0), 0);
    ASSERT_EQ(chmod((folder / "from/sub/read-only").c_str(), 0440), 0);

    EXPECT_EQ(copying.copy(folder / "from", folder / "to", watch()), Outcome::complete);
    EXPECT_EQ(attribute(folder / "to/sub", "user.tarn.added"), "-");
    EXPECT_EQ(attribute(folder / "from/sub", "user.tarn.added"), "1.5");

    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string copy = "to" + std::string(c.item).substr(4);
        EXPECT_EQ(attribute(folder / copy, c.name), attribute(folder / c.item, c.name));
    }
    EXPECT_EQ(attribute(folder / "to/sub/read-only", "user.empty"), "");
    // The list that files in a folder inherit must not change those that are copied into it.
    EXPECT_EQ(attribute(folder / "to/sub", "system.posix_acl_access"), "-");
}

TEST_F(FileCopyTest, aListInheritedFromTheTargetIsNotTakenOn) {
    const std::string list = accessList(77);
    folder.folder("target");
    if (lsetxattr((folder / "target").c_str(), "system.posix_acl_default", list.data(), list.size(),
                  0) != 0)
        GTEST_SKIP() << std::strerror(errno);
    folder.file("from/file", "x");
    folder.file("single", "y");

    copying.copy(folder / "from", folder / "target/to", watch());
    copying.copy(folder / "single", folder / "target/single", watch());

    for (const char* copy : {"target/to", "target/to/file", "target/single"}) {
        SCOPED_TRACE(copy);
        EXPECT_EQ(attribute(folder / copy, "system.posix_acl_access"), "-");
        EXPECT_EQ(attribute(folder / copy, "system.posix_acl_default"), "-");
        EXPECT_EQ(factsOf(folder / copy).st_mode & 077,
                  S_ISDIR(factsOf(folder / copy).st_mode) ? 055 : 044);
    }
}

TEST_F(FileCopyTest, ownersAndHoles) {
    const URL file = folder.sparseFile("from", 4 << 20);
    const int descriptor = open(file.c_str(), O_WRONLY);
    ASSERT_EQ(pwrite(descriptor, "middle", 6, 2 << 20), 6);
    close(descriptor);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(file.c_str(), 12345, 54321), 0);
        ASSERT_EQ(chmod(file.c_str(), 06755), 0);
    }

    copying.copy(file, folder / "to", watch());

    const struct stat from = factsOf(file), to = factsOf(folder / "to");
    EXPECT_EQ(to.st_size, from.st_size);
    EXPECT_LE(to.st_blocks, from.st_blocks);
    EXPECT_EQ(to.st_uid, from.st_uid);
    EXPECT_EQ(to.st_gid, from.st_gid);
    EXPECT_EQ(to.st_mode, from.st_mode);
    EXPECT_EQ(folder.read("to"), folder.read("from"));
    EXPECT_EQ(doneBytes, from.st_size);
}

TEST_F(FileCopyTest, namesOfOneFileStayNamesOfOneFile) {
    folder.file("a/one", "same");
    folder.folder("a/sub");
    folder.folder("b");
    ASSERT_EQ(link((folder / "a/one").c_str(), (folder / "a/sub/two").c_str()), 0);
    ASSERT_EQ(link((folder / "a/one").c_str(), (folder / "b/three").c_str()), 0);
    ASSERT_EQ(link((folder / "a/one").c_str(), (folder / "four").c_str()), 0);
    folder.folder("to");
    auto kept = watch();
    kept.record = copying.makeRecord(FileCopy::Purpose::copy);

    for (const char* item : {"four", "a", "b"})
        EXPECT_EQ(copying.copy(folder / item, (folder / "to").appending(item), kept),
                  Outcome::complete);

    const struct stat first = factsOf(folder / "to/four");
    EXPECT_NE(first.st_ino, factsOf(folder / "four").st_ino);
    EXPECT_EQ(first.st_nlink, 4U);
    for (const char* name : {"to/a/one", "to/a/sub/two", "to/b/three"})
        EXPECT_EQ(factsOf(folder / name).st_ino, first.st_ino) << name;
    EXPECT_EQ(doneBytes, 16);
}

TEST_F(FileCopyTest, reportsWhatCannotBeCopiedAndCopiesTheRest) {
    folder.file("from/a", "a");
    folder.file("from/z/z", "z");
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, (folder / "from/socket").c_str());
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(descriptor);

    EXPECT_EQ(copying.copy(folder / "from", folder / "to", watch()), Outcome::partial);
    EXPECT_EQ(failures, (std::vector{std::pair(folder / "from/socket", FileCopy::notCopyable)}));
    EXPECT_EQ(namesIn(folder, "to"), (std::vector<std::string>{"a", "z", "z/z"}));

    failures.clear();
    auto whole = watch();
    whole.stopsAtFailure = true;
    EXPECT_EQ(errorOf([&] { copying.copy(folder / "from", folder / "whole", whole); }),
              FileCopy::notCopyable);
    EXPECT_EQ(errorOf([&] { copying.copy(folder / "from/socket", folder / "s", watch()); }),
              FileCopy::notCopyable);
    EXPECT_EQ(namesIn(folder, "").size(), 4U + 1 + 4) << "only from and to, and nothing hidden";
}

TEST_F(FileCopyTest, neverReplacesAnything) {
    folder.file("from", "new");
    folder.file("to", "old");
    EXPECT_EQ(errorOf([&] { copying.copy(folder / "from", folder / "to", watch()); }), EEXIST);

    // Somebody else is faster.
    auto late = watch();
    folder.file("tree/file", "x");
    late.progress = [&](std::int64_t, std::int64_t) {
        folder.file("copy", "theirs");
        return true;
    };
    EXPECT_EQ(errorOf([&] { copying.copy(folder / "tree", folder / "copy", late); }), EEXIST);
    late.nextName = [&](const URL& taken) {
        EXPECT_EQ(taken, folder / "copy");
        return folder / "copy 2";
    };
    EXPECT_EQ(copying.copy(folder / "tree", folder / "copy", late), Outcome::complete);
    EXPECT_EQ(folder.read("to"), "old");
    EXPECT_EQ(folder.read("copy"), "theirs");
    EXPECT_EQ(folder.read("copy 2/file"), "x");
    EXPECT_EQ(namesIn(folder, "").size(), 7U);
}

TEST_F(FileCopyTest, aStoppedCopyLeavesNothing) {
    for (int i = 0; i < 300; ++i)
        folder.file("from/" + std::to_string(i % 10) + "/" + std::to_string(i), "content");
    ASSERT_EQ(chmod((folder / "from/3").c_str(), 0555), 0);
    folder.file("big", std::string(20 << 20, 'b'));
    folder.folder("to");
    for (const char* item : {"from", "big"}) {
        SCOPED_TRACE(item);
        for (const int after : {1, 2, 150}) {
            int calls = 0;
            auto stopping = watch();
            stopping.progress = [&](std::int64_t, std::int64_t) {
                if (calls == 0) {
                    EXPECT_FALSE(namesIn(folder, "to").empty());
                }
                return ++calls < after;
            };
            const Outcome outcome = copying.copy(folder / item, folder / "to/copy", stopping);
            if (calls < after) {
                EXPECT_EQ(outcome, Outcome::complete);
                copying.remove(folder / "to/copy");
            } else {
                EXPECT_EQ(outcome, Outcome::stopped);
            }
            EXPECT_EQ(namesIn(folder, "to"), std::vector<std::string>());
        }
    }
}

class FileBatchTest : public FileCopyTest {
protected:
    /// Both threads, or one that reports each file.
    FileCopy::Watch batchWatch(bool oneThread) {
        FileCopy::Watch batch = watch();
        batch.reportsEachItem = oneThread;
        batch.progress = [this](std::int64_t bytes, std::int64_t items) {
            const std::lock_guard lock(mutex);
            doneBytes += bytes;
            doneItems += items;
            return !stopsAfter || doneItems < *stopsAfter;
        };
        return batch;
    }
    std::vector<FileCopy::FileOrder> orders(int count) {
        std::vector<FileCopy::FileOrder> files;
        for (int i = 0; i < count; ++i) {
            const std::string name = "file\n" + std::to_string(i) + "\xff";
            files.push_back({folder.file("from" + std::to_string(i % 3) + "/" + name, name), name});
        }
        return files;
    }
    std::mutex mutex;
    std::optional<std::int64_t> stopsAfter;
};

TEST_F(FileBatchTest, keepsWhatASingleCopyKeepsAndReplacesNothing) {
    const URL link = folder.link("from2/link", "mine");
    for (const bool oneThread : {true, false}) {
        SCOPED_TRACE(oneThread);
        const std::string to = oneThread ? "one" : "two";
        folder.file(to + "/taken", "theirs");
        const std::string list = accessList(77);
        const bool hasLists = lsetxattr((folder / to).c_str(), "system.posix_acl_default",
                                        list.data(), list.size(), 0) == 0;
        auto files = orders(40);
        const mode_t modes[] = {0644, 0400, 04755, 0666};
        for (std::size_t i = 0; i < files.size(); ++i) {
            ASSERT_EQ(chmod(files[i].from.c_str(), modes[i % 4]), 0);
            setTimes(files[i].from, 1'000'000'000 + static_cast<long>(i), 987'654'321);
        }
        const bool hasAttributes =
            lsetxattr(files[5].from.c_str(), "user.xdg.tags", "red", 3, 0) == 0;
        files.push_back({folder.file("from0/mine", "mine"), "taken"});
        files.push_back({folder / "from1/gone", "gone"});
        files.push_back({link, "link"});
        doneItems = 0;

        EXPECT_EQ(copying.copyFiles(files, folder / to, batchWatch(oneThread)), Outcome::complete);

        EXPECT_EQ(files[40].errnum, EEXIST);
        EXPECT_EQ(files[41].errnum, ENOENT);
        EXPECT_EQ(files[42].errnum, FileCopy::changedMeanwhile) << "it is no file any more";
        EXPECT_EQ(folder.read(to + "/taken"), "theirs");
        EXPECT_EQ(namesIn(folder, to).size(), 41U) << "nothing is left of the work";
        EXPECT_EQ(doneItems, 41) << "with the one whose name was taken";
        for (std::size_t i = 0; i < 40; ++i) {
            SCOPED_TRACE(i);
            EXPECT_EQ(files[i].errnum, 0);
            EXPECT_EQ(folder.read(to + "/" + files[i].name), files[i].name);
            const struct stat copy = factsOf((folder / to).appending(files[i].name));
            EXPECT_EQ(copy.st_mode & 07777, modes[i % 4]);
            EXPECT_EQ(copy.st_mtim.tv_sec, 1'000'000'000 + static_cast<long>(i));
            EXPECT_EQ(copy.st_mtim.tv_nsec, 987'654'321);
            if (hasLists) {
                EXPECT_EQ(
                    attribute((folder / to).appending(files[i].name), "system.posix_acl_access"),
                    "-");
            }
        }
        if (hasAttributes) {
            EXPECT_EQ(attribute((folder / to).appending(files[5].name), "user.xdg.tags"), "red");
        }
    }
}

TEST_F(FileBatchTest, whatAStopLeavesIsWhole) {
    folder.folder("to");
    auto files = orders(600);
    stopsAfter = 300;
    EXPECT_EQ(copying.copyFiles(files, folder / "to", batchWatch(false)), Outcome::stopped);
    std::size_t copied = 0;
    for (const FileCopy::FileOrder& file : files) {
        if (file.errnum == 0) {
            ++copied;
            EXPECT_EQ(folder.read("to/" + file.name), file.name);
        } else {
            EXPECT_EQ(file.errnum, ECANCELED);
        }
    }
    EXPECT_EQ(namesIn(folder, "to").size(), copied);
    EXPECT_LT(copied, 600U);
}

TEST_F(FileCopyTest, copiesTreesOfAnyDepthAndRemovesThem) {
    // Deeper than folders are held open, with something left to do on the way back, and in the end
    // longer than any path that the kernel takes.
    constexpr int depth = 250;
    folder.folder("from");
    int at = open((folder / "from").c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < depth; ++i) {
        ASSERT_EQ(mkdirat(at, "down-here-it-goes-on", 0755), 0);
        ASSERT_EQ(mkdirat(at, "side", 0755), 0);
        close(openat(at, "side/file", O_CREAT | O_WRONLY, 0644));
        const int next = openat(at, "down-here-it-goes-on", O_RDONLY | O_DIRECTORY);
        close(at);
        at = next;
    }
    close(at);
    for (const bool oneThread : {true, false}) {
        auto deep = watch();
        deep.reportsEachItem = oneThread;
        doneItems = 0;
        std::mutex mutex;
        deep.progress = [&](std::int64_t, std::int64_t more) {
            const std::lock_guard lock(mutex);
            doneItems += more;
            return true;
        };
        EXPECT_EQ(copying.copy(folder / "from", folder / "to", deep), Outcome::complete);
        EXPECT_EQ(doneItems, depth);
        EXPECT_TRUE(failures.empty());
        copying.remove(folder / "to");
        EXPECT_FALSE(folder.exists("to"));
    }
    copying.remove(folder / "from");
    EXPECT_FALSE(folder.exists("from"));
}

TEST_F(FileCopyTest, removesOnlyWhatWasCopied) {
    folder.file("from/same", "1");
    folder.file("from/sub/same", "2");
    folder.file("from/sub/changed", "3");
    folder.link("from/link", "same");
    ASSERT_EQ(link((folder / "from/same").c_str(), (folder / "from/second name").c_str()), 0);
    auto moving = watch();
    moving.record = copying.makeRecord(FileCopy::Purpose::move);
    ASSERT_EQ(copying.copy(folder / "from", folder / "to", moving), Outcome::complete);

    folder.file("from/sub/changed", "longer");
    folder.file("from/new/file", "4");
    EXPECT_EQ(errorOf([&] { copying.removeCopied(folder / "from", *moving.record); }),
              FileCopy::changedMeanwhile);
    EXPECT_EQ(namesIn(folder, "from"),
              (std::vector<std::string>{"new", "new/file", "sub", "sub/changed"}));
    EXPECT_EQ(namesIn(folder, "to").size(), 6U);
}

TEST_F(FileCopyTest, movesAcrossAllOrNothing) {
    folder.file("from/a", "1");
    folder.file("from/sub/b", "2");
    ASSERT_EQ(copying.moveAcross(folder / "from", folder / "to", watch()), Outcome::complete);
    EXPECT_FALSE(folder.exists("from"));
    EXPECT_EQ(folder.read("to/sub/b"), "2");

    auto stopping = watch();
    stopping.progress = [](std::int64_t, std::int64_t) { return false; };
    EXPECT_EQ(copying.moveAcross(folder / "to", folder / "back", stopping), Outcome::stopped);
    EXPECT_EQ(namesIn(folder, ""), (std::vector<std::string>{"to", "to/a", "to/sub", "to/sub/b"}));
}

TEST_F(FileCopyTest, aFileThatChangesMeanwhileIsReported) {
    folder.file("from/big", std::string(40 << 20, 'b'));
    folder.file("from/other", "x");
    auto changing = watch();
    bool isFirst = true;
    changing.progress = [&](std::int64_t more, std::int64_t) {
        if (more > 1'000'000 && std::exchange(isFirst, false)) {
            EXPECT_EQ(truncate((folder / "from/big").c_str(), 30 << 20), 0);
        }
        return true;
    };
    EXPECT_EQ(copying.copy(folder / "from", folder / "to", changing), Outcome::partial);
    EXPECT_EQ(failures, (std::vector{std::pair(folder / "from/big", FileCopy::changedMeanwhile)}));
    EXPECT_EQ(namesIn(folder, "to"), std::vector<std::string>{"other"});
}

TEST_F(FileCopyTest, aTreeIsNotCopiedIntoItself) {
    folder.file("from/a", "x");
    folder.folder("from/sub");
    EXPECT_EQ(copying.copy(folder / "from", folder / "from/sub/copy", watch()), Outcome::partial);
    EXPECT_EQ(failures.size(), 1U);
    EXPECT_FALSE(folder.exists("from/sub/copy/sub/copy/sub"));
}

TEST_F(FileCopyTest, aFullDiskEndsTheCopyAndGetsItsRoomBack) {
    const URL disk = folder.folder("disk");
    if (geteuid() != 0 || mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "A disk can be mounted by root only.";
    for (int i = 0; i < 40; ++i)
        folder.file("from/" + std::to_string(i / 10) + "/" + std::to_string(i),
                    std::string(100'000, 'x'));
    folder.file("small", "fits");

    EXPECT_EQ(errorOf([&] { copying.copy(folder / "from", disk.appending("to"), watch()); }),
              ENOSPC);
    EXPECT_EQ(namesIn(folder, "disk"), std::vector<std::string>());
    EXPECT_EQ(copying.copy(folder / "small", disk.appending("small"), watch()), Outcome::complete);
    EXPECT_EQ(errorOf([&] { copying.moveAcross(folder / "from", disk.appending("to"), watch()); }),
              ENOSPC);
    EXPECT_EQ(namesIn(folder, "from").size(), 44U);
    EXPECT_EQ(umount2(disk.c_str(), MNT_DETACH), 0);
}

}  // namespace
}  // namespace tarn
