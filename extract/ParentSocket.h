#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/index/ExtractProtocol.h"

namespace tarn::extract {

/// The helper's end of what ExtractProtocol describes.
class ParentSocket {
public:
    explicit ParentSocket(FileDescriptor socket) : socket_(std::move(socket)) {}

    struct Job {
        /// What is to be read, unless there is a question.
        ExtractProtocol::Request request;
        std::optional<std::string> question;
        FileDescriptor file;
    };
    /// Waits for the next request; absent when the parent is gone or breaks the rules.
    std::optional<Job> next();

    bool sayReady();
    /// False when the parent is gone.
    bool answer(const TextExtractor::Reading& reading, bool lacksMemory, bool isLast);
    /// The same to a question. Longer answers than the protocol has room for count as none.
    bool reply(const std::optional<std::string>& answer, bool isLast);

private:
    bool send(const ExtractProtocol::Header& header, std::string_view payload);

    FileDescriptor socket_;
};

}  // namespace tarn::extract
