#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/ExtractProtocol.h"

namespace tarn {

/// A running `tarn-extract`, as its parent sees it. For one thread at a time. It ends, with what it
/// started, when the object goes.
class ExtractProcess {
public:
    /// The program: beside this one, or where it is installed. Absent when it is not there.
    static std::optional<URL> program();

    /// Throws std::system_error. The helper dies with the thread that starts it, so that must live
    /// as long as its work.
    ExtractProcess(const URL& program, bool inBackground);
    ~ExtractProcess();
    ExtractProcess(const ExtractProcess&) = delete;
    ExtractProcess& operator=(const ExtractProcess&) = delete;

    enum class End {
        text,      ///< `text` is what the file says, or the answer to what was asked.
        noText,    ///< It says nothing that can be read.
        notReady,  ///< The helper ended before it had looked at the file, or did not begin.
        stranger,  ///< The helper is of another version than this program.
        died,      ///< It ended, or answered nonsense, while it read the file.
        late,      ///< It took more time than it had.
        stopped,   ///< `isStopped` said so.
    };
    struct Answer {
        End end = End::died;
        std::string text{};  ///< UTF-8; of an answer any bytes.
        /// Of `text` and `noText`; its text is absent, being above.
        TextExtractor::Reading reading{};
        bool lacksMemory = false;  ///< Some text may be missing for want of it.
    };
    /// Has the file read, in at most `seconds` of processor time and four times that of the clock;
    /// `isStopped` is asked every 50 ms. After any end but `text` and `noText` the helper is of no
    /// more use.
    Answer read(const ExtractProtocol::Request& request, int file, double seconds,
                const std::function<bool()>& isStopped);

    /// Asks something else about the file, with the same limits and ends.
    Answer ask(std::string_view question, int file, double seconds,
               const std::function<bool()>& isStopped);

    /// False when it has ended or has said that it does.
    bool isUsable() const { return isUsable_; }
    /// Why it was not ready, as a finished sentence. Ends it.
    std::string whyNotReady();
    /// Files that it has given an answer for.
    std::size_t answered() const { return answered_; }
    pid_t id() const { return id_; }

private:
    class Wait;
    /// Fills `bytes` behind what it holds until there are `size`; an end where that fails.
    std::optional<End> receive(std::string& bytes, std::size_t size, const Wait& wait);
    std::optional<End> receiveReady(const Wait& wait);
    Answer receiveAnswer(ExtractProtocol::Kind kind, const Wait& wait);
    Answer exchange(const std::string& frame, ExtractProtocol::Kind kind, int file, double seconds,
                    const std::function<bool()>& isStopped);
    bool send(const std::string& frame, int file);
    /// Returns what wait() says of it; 0 when that was asked before.
    int kill();

    FileDescriptor socket_;
    pid_t id_ = -1;
    bool isReady_ = false;
    bool wasSlow_ = false;  ///< To say that it is ready.
    bool isUsable_ = true;
    std::size_t answered_ = 0;
};

}  // namespace tarn
