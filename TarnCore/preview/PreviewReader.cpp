#include "TarnCore/preview/PreviewReader.h"

#include <atomic>
#include <cstdint>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include <fcntl.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/index/ExtractProcess.h"

namespace tarn {

/// Everything but `isEnding` is touched on the queue alone.
struct PreviewReader::State {
    std::atomic<bool> isEnding = false;
    std::unique_ptr<ExtractProcess> helper;
    std::uint64_t asked = 0;
    /// Its thread starts the helper, which dies with it. The last member: it ends first.
    SerialQueue queue{"tarn.preview"};

    Answer ask(const URL& file, const std::string& question, const CancelToken& token) {
        const FileDescriptor opened(
            openQuietly(AT_FDCWD, file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        struct stat facts {};
        if (!opened || fstat(opened.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return {};
        const auto isStopped = [&] { return isEnding || token.isCancelled(); };
        // A helper that dies of what it read before must not be laid to this file.
        for (int attempt = 0; attempt < 2 && !isStopped(); ++attempt) {
            const bool isFresh = !helper || !helper->isUsable();
            if (isFresh && !start()) return {Outcome::missing, {}};
            auto answer = helper->ask(question, opened.get(), secondsForOne, isStopped);
            switch (answer.end) {
                case ExtractProcess::End::text:
                    return {Outcome::answered, std::move(answer.text)};
                case ExtractProcess::End::noText:
                    return {};
                case ExtractProcess::End::late:
                    helper.reset();
                    return {Outcome::killed, {}};
                case ExtractProcess::End::died:
                case ExtractProcess::End::notReady:
                    helper.reset();
                    if (isFresh) return {Outcome::killed, {}};
                    break;
                case ExtractProcess::End::stranger:
                    helper.reset();
                    return {Outcome::missing, {}};
                case ExtractProcess::End::stopped:
                    helper.reset();
                    return {};
            }
        }
        return {};
    }

    bool start() {
        helper.reset();
        const auto program = ExtractProcess::program();
        if (!program) return false;
        try {
            helper = std::make_unique<ExtractProcess>(*program, /*inBackground=*/false);
        } catch (const std::system_error&) {
            return false;
        }
        return true;
    }
};

PreviewReader::PreviewReader() : state_(std::make_unique<State>()) {}

PreviewReader::~PreviewReader() {
    state_->isEnding = true;
    state_->queue.run([state = state_.get()] { state->helper.reset(); });
    state_->queue.flush();
}

void PreviewReader::ask(const URL& file, PreviewProtocol::Question question,
                        const CancelToken& token, std::function<void(Answer)> done) {
    State* state = state_.get();  // The queue ends with it.
    state->queue.run(
        [state, file, question = PreviewProtocol::encode(question), token, done = std::move(done)] {
            if (state->isEnding || token.isCancelled()) return;
            Answer answer = state->ask(file, question, token);
            if (!state->isEnding && !token.isCancelled()) done(std::move(answer));
            const std::uint64_t mine = ++state->asked;
            state->queue.runAfter(idleSeconds, [state, mine] {
                if (mine == state->asked) state->helper.reset();
            });
        });
}

}  // namespace tarn
