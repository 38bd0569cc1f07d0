#include "extract/ParentSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/socket.h>
#include <sys/uio.h>

namespace tarn::extract {
namespace {

using ExtractProtocol::Header;
using ExtractProtocol::headerSize;
using ExtractProtocol::Kind;

/// Up to `room` bytes with the descriptor that came with them, if any; 0 at the end of all.
std::size_t receive(int socket, char* into, std::size_t room, FileDescriptor& file) {
    iovec part = {into, room};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    ssize_t got = -1;
    do {
        got = recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    } while (got < 0 && errno == EINTR);
    const cmsghdr* attached = got > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
    if (attached && attached->cmsg_level == SOL_SOCKET && attached->cmsg_type == SCM_RIGHTS &&
        attached->cmsg_len == CMSG_LEN(sizeof(int))) {
        int descriptor = -1;
        std::memcpy(&descriptor, CMSG_DATA(attached), sizeof descriptor);
        file = FileDescriptor(descriptor);
    }
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

}  // namespace

std::optional<ParentSocket::Job> ParentSocket::next() {
    std::array<char, headerSize + ExtractProtocol::mostRequestBytes> bytes;
    Job job;
    std::size_t filled = 0;
    std::size_t wanted = headerSize;
    std::optional<Header> header;
    while (filled < wanted) {
        const std::size_t got =
            receive(socket_.get(), &bytes[filled], bytes.size() - filled, job.file);
        if (got == 0) return std::nullopt;
        filled += got;
        if (header || filled < headerSize) continue;
        header = ExtractProtocol::decodeHeader({bytes.data(), filled});
        if (!header || (header->kind != Kind::request && header->kind != Kind::question))
            return std::nullopt;
        wanted += header->length;
    }
    // The parent waits for its answer before it sends more.
    if (filled > wanted || !job.file) return std::nullopt;
    const std::string_view payload(&bytes[headerSize], filled - headerSize);
    if (header->kind == Kind::question) {
        job.question = std::string(payload);
        return job;
    }
    auto request = ExtractProtocol::decodeRequest(*header, payload);
    if (!request) return std::nullopt;
    job.request = std::move(*request);
    return job;
}

bool ParentSocket::sayReady() { return send({Kind::ready, 0, 0}, {}); }

bool ParentSocket::answer(const TextExtractor::Reading& reading, bool lacksMemory, bool isLast) {
    const std::uint32_t flags = ExtractProtocol::flags(reading) |
                                (lacksMemory ? ExtractProtocol::lacksMemory : 0) |
                                (isLast ? ExtractProtocol::isLast : 0);
    if (!reading.text) return send({Kind::noText, flags, 0}, {});
    return send({Kind::text, flags, static_cast<std::uint32_t>(reading.text->size())},
                *reading.text);
}

bool ParentSocket::reply(const std::optional<std::string>& answer, bool isLast) {
    const std::uint32_t flags = isLast ? ExtractProtocol::isLast : 0;
    if (!answer || answer->size() > ExtractProtocol::mostAnswerBytes)
        return send({Kind::noText, flags, 0}, {});
    return send({Kind::answer, flags, static_cast<std::uint32_t>(answer->size())}, *answer);
}

bool ParentSocket::send(const Header& header, std::string_view payload) {
    auto front = encode(header);
    std::array<iovec, 2> parts = {
        {{front.data(), front.size()}, {const_cast<char*>(payload.data()), payload.size()}}};
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    while (parts[0].iov_len + parts[1].iov_len > 0) {
        const ssize_t sent = sendmsg(socket_.get(), &message, MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) return false;
        auto left = static_cast<std::size_t>(std::max<ssize_t>(sent, 0));
        for (iovec& part : parts) {
            const std::size_t taken = std::min(left, part.iov_len);
            part.iov_base = static_cast<char*>(part.iov_base) + taken;
            part.iov_len -= taken;
            left -= taken;
        }
    }
    return true;
}

}  // namespace tarn::extract
