#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/preview/PreviewProtocol.h"

namespace tarn {

/// Asks `tarn-extract` what is in files: the program that is locked in reads what strangers wrote,
/// so that a file which kills its reader, or takes for ever, leaves a window without a picture.
///
/// Callable from any thread. Questions are answered one after the other, in their order, by a
/// helper that starts with the first one and ends when it has had nothing to do for a while. The
/// destructor drops what was not answered and waits for what is being asked, at most 50 ms.
class PreviewReader {
public:
    PreviewReader();
    ~PreviewReader();
    PreviewReader(const PreviewReader&) = delete;
    PreviewReader& operator=(const PreviewReader&) = delete;

    enum class Outcome {
        answered,
        nothing,  ///< The file is not of that kind, cannot be read, or is damaged.
        killed,   ///< The helper died of it or took too long.
        missing,  ///< There is no helper on this machine.
    };
    struct Answer {
        Outcome outcome = Outcome::nothing;
        std::string bytes;  ///< For a decoder of PreviewProtocol.
    };
    /// Calls `done` on a thread of the reader, unless `token` was set before.
    void ask(const URL& file, PreviewProtocol::Question question, const CancelToken& token,
             std::function<void(Answer)> done);

    static constexpr double secondsForOne = 10;  ///< Of processor time, for one question.
    static constexpr double idleSeconds = 20;    ///< Before the helper ends.

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
