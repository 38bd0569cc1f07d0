#include <array>

#include <sys/socket.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/index/readers/OpenFile.h"
#include "extract/ParentSocket.h"
#include "tests/support/TestFolder.h"

namespace tarn::extract {
namespace {

class ParentSocketTest : public testing::Test {
protected:
    ParentSocketTest() : socket(makePair()) {}

    FileDescriptor makePair() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        parent = FileDescriptor(ends[0]);
        return FileDescriptor(ends[1]);
    }
    void send(std::string_view bytes, int file = -1) {
        iovec part = {const_cast<char*>(bytes.data()), bytes.size()};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        if (file >= 0) {
            message.msg_control = control.data();
            message.msg_controllen = control.size();
            cmsghdr* attached = CMSG_FIRSTHDR(&message);
            *attached = {CMSG_LEN(sizeof(int)), SOL_SOCKET, SCM_RIGHTS};
            *reinterpret_cast<int*>(CMSG_DATA(attached)) = file;
        }
        EXPECT_EQ(sendmsg(parent.get(), &message, 0), static_cast<ssize_t>(bytes.size()));
    }

    FileDescriptor parent;
    ParentSocket socket;
};

const ExtractProtocol::Request request = {true, "a.rtf", {"en", "de"}, true};

TEST_F(ParentSocketTest, receivesARequestInPieces) {
    const TestFolder folder;
    const FileDescriptor file(open(folder.file("a", "content").c_str(), O_RDONLY | O_CLOEXEC));
    const std::string frame = encode(request);
    send(frame.substr(0, 5), file.get());
    send(frame.substr(5, 9));
    send(frame.substr(14));
    const auto job = socket.next();
    ASSERT_TRUE(job);
    EXPECT_EQ(job->request, request);
    EXPECT_EQ(OpenFile::of(job->file.get(), 100).value().bytes(), "content");
}

TEST_F(ParentSocketTest, endsWhenTheParentBreaksTheRules) {
    const std::string frame = encode(request);
    const struct {
        const char* name;
        std::string bytes;
        bool withFile;
    } cases[] = {
        {"no file", frame, false},
        {"two requests at once", frame + frame, true},
        {"an answer", std::string("TX\x02\x04", 4) + std::string(8, '\0'), true},
        {"half a request", frame.substr(0, frame.size() - 1), true},
        {"nonsense", std::string(30, 'x'), true},
        {"nothing", "", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        socket = ParentSocket(makePair());
        if (!c.bytes.empty()) send(c.bytes, c.withFile ? STDIN_FILENO : -1);
        parent.close();
        EXPECT_FALSE(socket.next());
    }
    EXPECT_FALSE(socket.sayReady());
}

}  // namespace
}  // namespace tarn::extract
