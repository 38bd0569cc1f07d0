#include <cstdlib>
#include <filesystem>
#include <future>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/platform/ProgramPath.h"
#include "TarnCore/platform/linux/EjectSentence.h"
#include "TarnCore/platform/linux/GioPrompts.h"
#include "TarnCore/platform/linux/LinuxDrives.h"
#include "TarnCore/platform/linux/LinuxVolumes.h"
#include "TarnCore/platform/linux/OpenFileList.h"
#include "TarnCore/platform/linux/ServerFolder.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using namespace std::string_literals;

TEST(OpenFileList, readsTheFieldsOfEveryProcess) {
    const struct {
        const char* what;
        std::string output;
        std::vector<BlockingProcess> processes;
    } cases[] = {
        {"nothing", "", {}},
        {"two processes",
         "p12\ncvim\nn/mnt/a.txt\nn/mnt/b.txt\np7\ncbash\nn/mnt\n",
         {{12, "vim", {"/mnt/a.txt", "/mnt/b.txt"}}, {7, "bash", {"/mnt"}}}},
        {"one without files, the last",
         "p12\ncvim\np7\ncbash\n",
         {{12, "vim", {}}, {7, "bash", {}}}},
        {"no line feed at the end", "p12\ncvim\nn/mnt/a", {{12, "vim", {"/mnt/a"}}}},
        {"fields that were not asked for", "p1\ng1\nR0\nca\nf3\ntREG\nn/x\n", {{1, "a", {"/x"}}}},
        {"files before any process", "n/mnt/a\ncx\np1\n", {{1, "", {}}}},
        {"no process id", "px\ncx\nn/a\np-3\nn/b\np99999999999\nn/c\np5\nn/d\n", {{5, "", {"/d"}}}},
        {"empty lines and fields", "\np1\n\nc\nn\n", {{1, "", {""}}}},
        {"spaces and other letters",
         "p1\nctwo words\nn/mnt/å b\n",
         {{1, "two words", {"/mnt/å b"}}}},
        {"escapes",
         R"(p1
ca\x20b
n/a\nb\\c\xff\t.txt
n/\q\x4\
n/^A\)",
         {{1, "a b", {"/a\nb\\c\xff\t.txt", "/\\q\\x4\\", "/^A\\"}}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(parseOpenFiles(c.output), c.processes);
    }
}

TEST(EjectSentence, tellsABusyVolumeFromOtherFailures) {
    const struct {
        const char* output;
        bool isBusy;
        const char* message;
    } cases[] = {
        {"umount: /mnt/disk: target is busy.\n", true, "Couldn’t eject “D” because it is in use."},
        {"Disk is IN USE by pid 4", true, "Couldn’t eject “D” because it is in use."},
        {"Unmount was dissented by PID 4\n", true, "Couldn’t eject “D” because it is in use."},
        {"umount: /mnt/a b: must be superuser to unmount.\n", false,
         "Couldn’t eject “D”. Must be superuser to unmount."},
        {"one thing\ngio: smb://nas/x: Failed to mount share: Connection refused\n\n", false,
         "Couldn’t eject “D”. Failed to mount share: Connection refused."},
        {"", false, "Couldn’t eject “D”."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.output);
        const EjectResult result = EjectSentence::of("D", c.output);
        EXPECT_EQ(result.outcome == EjectResult::Outcome::busy, c.isBusy);
        EXPECT_EQ(result.message, c.message);
    }
}

TEST(ServerFolder, namesServersAsPeopleDo) {
    const struct {
        const char* folder;
        std::optional<std::string> title;
    } cases[] = {
        {"smb-share:server=nas,share=photos", "photos on nas"},
        {"smb-share:server=nas.local,share=my%20files,user=ada", "my files on nas.local"},
        {"sftp:host=example.org,port=2222,user=ada", "example.org"},
        {"dav:host=cloud.example.org,ssl=true,prefix=%2Fremote.php%2Fdav", "cloud.example.org"},
        {"afp-volume:host=old,user=ada,volume=Media", "Media on old"},
        {"sftp:user=ada", std::nullopt},
        {"sftp:host=%zz", std::nullopt},
        {"sftp:host=", std::nullopt},
        {"a folder", std::nullopt},
        {"odd:name", std::nullopt},
        {":host=x", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.folder);
        EXPECT_EQ(serverTitle(c.folder), c.title);
    }
}

TEST(GioPrompts, waitForTheEndOfTheLineThatAsks) {
    using Kind = GioPrompts::Kind;
    using Prompt = GioPrompts::Prompt;
    const struct {
        const char* what;
        std::vector<std::string> pieces;  ///< As they are read.
        std::vector<Prompt> prompts;
    } cases[] = {
        {"all three",
         {"Enter password for sh", "are on nas:\nUser [ada]", ": ",
          "Domain [WORKGROUP]: ", "Password: "},
         {{Kind::user, "Enter password for share on nas:", "ada", {}},
          {Kind::domain, "", "WORKGROUP", {}},
          {Kind::password, "", "", {}}}},
        {"a warning about the terminal",
         {"Authentication\nWarning! Password will be echoed\nPassword: "},
         {{Kind::password, "Authentication", "", {}}}},
        {"choices",
         {"The host can’t be verified.\nThe key is 12:34.\n[1] Log In Anyway\n",
          "[2] Cancel Login\nChoice: "},
         {{Kind::choice,
           "The host can’t be verified.\nThe key is 12:34.",
           "",
           {"Log In Anyway", "Cancel Login"}}}},
        {"words that only begin like one", {"Password: wrong\nUsers: "}, {}},
        {"a message that looks like one",
         {"Password: \nUser: "},
         {{Kind::user, "Password:", "", {}}}},
        {"broken text", {"\xff\nUser [\xff]: "}, {{Kind::user, "\uFFFD", "\uFFFD", {}}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        GioPrompts reader;
        std::vector<Prompt> prompts;
        for (const std::string& piece : c.pieces)
            if (auto prompt = reader.add(piece)) prompts.push_back(*prompt);
        EXPECT_EQ(prompts, c.prompts);
    }
}

/// Programs of the system replaced by scripts.
class LinuxDrivesTest : public testing::Test {
protected:
    void SetUp() override {
        if (const char* path = std::getenv("PATH")) before = path;
        // The scripts call what the system has.
        setenv("PATH", (bin.url().path() + ":" + before).c_str(), 1);
        // Whatever disks this machine has are left alone.
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    }
    void TearDown() override {
        setenv("PATH", before.c_str(), 1);
        unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }
    void program(const char* name, const std::string& script) const {
        const URL file = bin.file(name, "#!/bin/sh\n" + script);
        ASSERT_EQ(chmod(file.c_str(), 0755), 0);
    }
    std::string quotedLog() const { return "'" + (bin / "log").path() + "'"; }
    static Mount mountOf(const char* fileSystem, bool isNetwork) {
        Mount mount;
        mount.mountPoint = URL::fromPath("/mnt/D");
        mount.fileSystem = fileSystem;
        mount.isNetwork = isNetwork;
        return mount;
    }
    static std::string refusal(Drives& drives, const std::string& address, const Drives::Ask& ask) {
        try {
            drives.connect(address, ask, {});
            return {};
        } catch (const Error& error) {
            return error.what();
        }
    }

    TestFolder bin;
    std::string before;
    LinuxDrives drives;
};

TEST_F(LinuxDrivesTest, unmountsByTheToolForTheKindOfVolume) {
    program("umount", "echo umount $LC_ALL $@ >> " + quotedLog() + "\n");
    program("gio", "echo gio $LANGUAGE $@ >> " + quotedLog() +
                       "\ncase $* in *-f*) echo 'gio: file:///mnt/D: No such mount' >&2; exit 2;; "
                       "esac\n");
    const struct {
        Mount volume;
        bool force;
        const char* calls;
    } cases[] = {
        {mountOf("vfat", false), false, "umount C.UTF-8 -- /mnt/D\n"},
        {mountOf("vfat", false), true, "umount C.UTF-8 -f -l -- /mnt/D\n"},
        {mountOf("nfs4", true), false, "umount C.UTF-8 -- /mnt/D\n"},
        {mountOf("gvfs", true), false, "gio C mount -u -- /mnt/D\n"},
        {mountOf("fuse.sshfs", true), false, "gio C mount -u -- /mnt/D\n"},
        {mountOf("fuse.sshfs", true), true,
         "gio C mount -u -f -- /mnt/D\numount C.UTF-8 -f -l -- /mnt/D\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.volume.fileSystem + (c.force ? " by force" : ""));
        bin.file("log", "");
        EXPECT_EQ(drives.eject(c.volume, "D", c.force).outcome, EjectResult::Outcome::ejected);
        EXPECT_EQ(bin.read("log"), c.calls);
    }
}

TEST_F(LinuxDrivesTest, saysWhetherAVolumeIsBusy) {
    program("umount", "echo \"umount: /mnt/D: target is busy.\" >&2; exit 32\n");
    EXPECT_EQ(
        drives.eject(mountOf("ext4", false), "D", false),
        (EjectResult{EjectResult::Outcome::busy, "Couldn’t eject “D” because it is in use."}));
    program("umount", "echo \"umount: /mnt/D: must be superuser to unmount.\" >&2; exit 1\n");
    EXPECT_EQ(drives.eject(mountOf("ext4", false), "D", false),
              (EjectResult{EjectResult::Outcome::failed,
                           "Couldn’t eject “D”. Must be superuser to unmount."}));
}

TEST_F(LinuxDrivesTest, findsWhoKeepsAVolumeBusy) {
    if (!findProgram("lsof")) GTEST_SKIP() << "there is no lsof here";
    const URL memory = URL::fromPath("/dev/shm");
    const auto mount = LinuxVolumes().mountHolding(memory);
    if (!mount || mount->mountPoint != memory) GTEST_SKIP() << "/dev/shm is no volume here";
    const std::string name = "tarn åb\n\\" + std::to_string(getpid());
    const URL file = memory.appending(name);
    const FileDescriptor open(::open(file.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600));
    ASSERT_TRUE(open);
    const auto processes = drives.blockingProcesses(memory);
    std::filesystem::remove(file.path());
    const auto found =
        std::find_if(processes.begin(), processes.end(),
                     [](const BlockingProcess& process) { return process.pid == getpid(); });
    ASSERT_NE(found, processes.end());
    EXPECT_TRUE(std::string_view(found->command).starts_with("tarn-test")) << found->command;
    EXPECT_EQ(found->files, std::vector{file.path()});
}

/// Lets in ada of the domain OFFICE with the password “s3cret”.
constexpr const char* server = R"sh(
case "$1" in
mount)
    echo "$@" >> LOG
    n=1
    while [ $n -le 2 ]; do
        echo "Enter password for share on nas:"
        printf "User [%s]: " "$(id -un)"; read user || exit 3
        printf "Domain [WORKGROUP]: "; read domain || exit 3
        printf "Password: "; read password || exit 3
        if [ "$user:$domain:$password" = "ada:OFFICE:s3cret" ]; then
            : > MOUNTED; exit 0
        fi
        n=$((n + 1))
    done
    echo "gio: $2: Failed to mount: Permission denied" >&2
    echo "(gio mount:7): GVFS-WARNING **: volume monitor is not supported" >&2
    exit 2;;
info)
    echo "$@" >> LOG
    [ -e MOUNTED ] || { echo "gio: $5: The specified location is not mounted" >&2; exit 1; }
    echo "name: photos"
    echo "local path: /run/user/1/gvfs/smb-share:server=nas,share=my photos";;
esac
)sh";

TEST_F(LinuxDrivesTest, answersTheServerAndFindsItsFolder) {
    std::string script = Text::replacing(server, "LOG", quotedLog());
    script = Text::replacing(script, "MOUNTED", "'" + (bin / "mounted").path() + "'");
    program("gio", script);
    std::vector<ServerQuestion> questions;
    const auto answering = [&questions](const ServerQuestion& question) {
        questions.push_back(question);
        return std::optional(
            ServerAnswer{"OFFICE\\ada", questions.size() > 1 ? "s3cret" : "old", 0});
    };
    EXPECT_EQ(drives.connect("smb://nas/my%20photos", answering, {}),
              URL::fromPath("/run/user/1/gvfs/smb-share:server=nas,share=my photos"));
    ASSERT_EQ(questions.size(), 2u);
    EXPECT_EQ(questions[0].message, "Enter password for share on nas:");
    EXPECT_FALSE(questions[0].user->empty());
    EXPECT_FALSE(questions[0].isRepeated);
    EXPECT_TRUE(questions[1].isRepeated);
    EXPECT_EQ(bin.read("log"),
              "mount smb://nas/my%20photos\ninfo -a standard::name -- smb://nas/my%20photos\n");

    std::filesystem::remove((bin / "mounted").path());
    EXPECT_EQ(refusal(drives, "smb://nas/x",
                      [](const ServerQuestion&) { return std::optional(ServerAnswer{}); }),
              "Couldn’t connect to “nas”. Failed to mount: Permission denied.");
    EXPECT_EQ(refusal(drives, "smb://nas/x",
                      [](const ServerQuestion&) { return std::optional<ServerAnswer>(); }),
              "Couldn’t connect to “nas”.");
}

TEST_F(LinuxDrivesTest, asksWhichOfTheChoices) {
    program("gio", R"(
[ "$1" = info ] && { echo "local path: /run/x"; exit 0; }
printf 'The key is unknown.\n[1] Log In Anyway\n[2] Cancel Login\nChoice: '
read choice && [ "$choice" = 2 ] || exit 2
)");
    std::optional<ServerQuestion> asked;
    EXPECT_EQ(drives.connect("sftp://host",
                             [&asked](const ServerQuestion& question) {
                                 asked = question;
                                 return std::optional(ServerAnswer{"", "", 1});
                             },
                             {}),
              URL::fromPath("/run/x"));
    EXPECT_EQ(asked->message, "The key is unknown.");
    EXPECT_EQ(asked->choices, (std::vector{"Log In Anyway"s, "Cancel Login"s}));
    EXPECT_FALSE(asked->user);
}

TEST_F(LinuxDrivesTest, saysInASentenceWhyThereAreNoServers) {
    const auto ask = [](const ServerQuestion&) { return std::optional<ServerAnswer>(); };
    program("gio", "echo 'gio: smb://nas/x: volume doesn’t implement mount' >&2; exit 2\n");
    EXPECT_EQ(refusal(drives, "smb://nas/x", ask),
              "This computer can’t connect to servers because gvfs isn’t installed. Its packages "
              "are “gvfs-backends” and “gvfs-fuse”.");
    program("gio", "[ $1 = mount ]\n");
    EXPECT_EQ(refusal(drives, "smb://ada@nas", ask),
              "Connected to “nas”, but the address leads to no folder. It must name a share or a "
              "folder that is there, and “gvfs-fuse” must be installed.");
}

TEST_F(LinuxDrivesTest, aServerThatDoesNotAnswerIsGivenUp) {
    program("gio", "echo $$ > " + quotedLog() + "; sleep 1000\n");
    const CancelToken token;
    std::promise<std::string> ended;
    SerialQueue queue("tarn.test");
    queue.run([&] {
        try {
            drives.connect("smb://nas/x", {}, token);
            ended.set_value("connected");
        } catch (const Error& error) {
            ended.set_value(error.what());
        }
    });
    token.cancel();
    EXPECT_EQ(ended.get_future().get(), "Couldn’t connect to “nas”.");
}

}  // namespace
}  // namespace tarn
