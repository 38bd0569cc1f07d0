#include "TarnCore/platform/WindowSocket.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr std::size_t longestMessage = 16 * 1024;
/// A caller sends its request at once. Milliseconds.
constexpr int patience = 200;

/// A folder of the user's that nobody else may enter.
bool isPrivateFolder(const URL& url) {
    struct stat status;
    return lstat(url.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == getuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::optional<URL> runtimeFolder() {
    const char* given = std::getenv("XDG_RUNTIME_DIR");
    if (given != nullptr && *given == '/')
        if (URL url = URL::fromPath(given); isPrivateFolder(url)) return url;
    const URL url = URL::fromPath("/tmp/tarn-" + std::to_string(getuid()));
    if (mkdir(url.c_str(), S_IRWXU) != 0 && errno != EEXIST) return std::nullopt;
    return isPrivateFolder(url) ? std::optional(url) : std::nullopt;
}

/// An address holds some 100 bytes, so the root of an isolated run enters as a number (FNV-1a).
std::string socketName() {
    const char* root = std::getenv("TARN_ISOLATED_ROOT");
    if (root == nullptr || *root == '\0') return "tarn-window";
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(root, nullptr), &std::free);
    std::uint64_t hash = 14695981039346656037U;
    for (const char byte : std::string_view(real ? real.get() : root))
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "tarn-window-%016llx",
                  static_cast<unsigned long long>(hash));
    return text.data();
}

std::optional<sockaddr_un> addressOf(const URL& url) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (url.path().size() >= sizeof address.sun_path) return std::nullopt;
    std::memcpy(address.sun_path, url.c_str(), url.path().size());
    return address;
}

FileDescriptor newSocket(int flags) {
    return FileDescriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | flags, 0));
}

std::optional<std::string> receive(int fd, int milliseconds) {
    pollfd waiting = {fd, POLLIN, 0};
    int ready = 0;
    do ready = poll(&waiting, 1, milliseconds);
    while (ready < 0 && errno == EINTR);
    if (ready <= 0) return std::nullopt;
    std::string text(longestMessage, '\0');
    const ssize_t got = recv(fd, text.data(), text.size(), 0);
    if (got <= 0) return std::nullopt;
    text.resize(static_cast<std::size_t>(got));
    return text;
}

bool isOfThisUser(int fd) {
    ucred peer = {};
    socklen_t size = sizeof peer;
    return getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == getuid();
}

}  // namespace

std::unique_ptr<WindowSocket> WindowSocket::listen() {
    const auto folder = runtimeFolder();
    if (!folder) return nullptr;
    const URL url = folder->appending(socketName() + ".socket");
    const auto address = addressOf(url);
    if (!address) return nullptr;
    FileDescriptor lock(open(folder->appending(socketName() + ".lock").c_str(),
                             O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!lock || flock(lock.get(), LOCK_EX | LOCK_NB) != 0) return nullptr;
    unlink(url.c_str());  // Of a window that crashed, since nobody holds the lock.
    FileDescriptor socket = newSocket(SOCK_NONBLOCK);
    if (!socket ||
        bind(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        ::listen(socket.get(), SOMAXCONN) != 0)
        return nullptr;
    return std::unique_ptr<WindowSocket>(new WindowSocket(url, std::move(socket), std::move(lock)));
}

WindowSocket::~WindowSocket() { unlink(url_.c_str()); }

std::optional<WindowSocket::Call> WindowSocket::accept() const {
    Call call;
    call.socket_ = FileDescriptor(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!call.socket_ || !isOfThisUser(call.socket_.get())) return std::nullopt;
    auto request = receive(call.socket_.get(), patience);
    if (!request) return std::nullopt;
    call.request_ = *std::move(request);
    return call;
}

void WindowSocket::Call::answer(std::string_view text) const {
    // The caller may have gone; then nobody is left to be told.
    [[maybe_unused]] const ssize_t sent =
        send(socket_.get(), text.data(), std::min(text.size(), longestMessage), MSG_NOSIGNAL);
}

std::optional<std::string> WindowSocket::ask(std::string_view request, double timeout) {
    const auto folder = runtimeFolder();
    if (!folder) return std::nullopt;
    const auto address = addressOf(folder->appending(socketName() + ".socket"));
    if (!address) return std::nullopt;
    const FileDescriptor socket = newSocket(0);
    if (!socket ||
        connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        !isOfThisUser(socket.get()) ||
        send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL) < 0)
        return std::nullopt;
    return receive(socket.get(), static_cast<int>(timeout * 1000));
}

}  // namespace tarn
