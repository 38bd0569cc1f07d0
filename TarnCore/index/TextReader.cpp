#include "TarnCore/index/TextReader.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <future>
#include <iterator>
#include <set>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/ExtractProcess.h"
#include "TarnCore/index/PlainText.h"

namespace tarn {
namespace {

using std::chrono::steady_clock;
using TextExtractor::Method;
using TextExtractor::Tool;

/// Bytes; readers look at documents where the system has mapped them, which takes memory like any
/// other, so that a larger one is read while nothing else is.
constexpr std::int64_t largestBesideOthers = 24 << 20;
constexpr auto betweenQuestions = std::chrono::milliseconds(50);
constexpr std::chrono::seconds idleTime(20);

/// Seconds of processor time for one file. A document that takes longer is broken or is made to; a
/// long one of scanned pages is read as far as it gets.
double timeLimit(Method method, bool ocr) {
    switch (method) {
        case Method::pdf:
            return ocr ? 180 : 60;
        case Method::image:
            return 60;
        default:
            return 20;
    }
}

std::string sentence(Tool missing) {
    switch (missing) {
        case Tool::documents:
            return "PDF documents can’t be read because Poppler isn’t installed.";
        case Tool::recognition:
            return "Text in pictures can’t be recognised because Tesseract, or its data for the "
                   "languages that are set, isn’t installed.";
        case Tool::word:
            return "Documents of the format “doc” can’t be read because “catdoc” isn’t installed.";
    }
    return {};
}

/// A file as it is now; one that was changed is another.
using Identity = std::tuple<dev_t, ino_t, time_t, long, off_t>;

struct OpenFile {
    FileDescriptor descriptor;
    Identity identity;
    std::int64_t size = 0;
};

/// Opens a plain file without waiting for anything (a pipe, a terminal).
std::optional<OpenFile> openFile(const char* path) {
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    FileDescriptor file(openQuietly(AT_FDCWD, path, flags));
    struct stat facts {};
    if (!file || fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    const Identity identity(facts.st_dev, facts.st_ino, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec,
                            facts.st_size);
    return OpenFile{std::move(file), identity, facts.st_size};
}

/// The file in which a document has its text: itself, or the one in the folder that an "rtfd" is.
URL fileOfText(const URL& url) {
    return Text::lowercasedASCII(url.pathExtension()) == "rtfd" ? url.appending("TXT.rtf") : url;
}

/// What can hold all that is kept of it, from the beginning; absent when it cannot be read.
std::optional<std::string> beginning(const OpenFile& file) {
    constexpr auto most = static_cast<std::int64_t>(ExtractProtocol::mostTextBytes);
    // One more than its size, so that the end is seen without another call.
    std::string bytes(static_cast<std::size_t>(std::min(file.size + 1, most)), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(file.descriptor.get(), &bytes[filled], bytes.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

}  // namespace

struct TextReader::State {
    using Helper = std::unique_ptr<ExtractProcess>;
    struct Idle {
        Helper helper;
        steady_clock::time_point since;
    };
    struct Pool {
        std::vector<Idle> idle;  ///< The one used last is behind.
        std::size_t busy = 0;    ///< Places taken: each helper at work, or about to be, has one.
        std::size_t waitingForAll = 0;  ///< Threads that want every place.
        std::size_t readers = 0;
        bool isStopping = false;
        bool isWatched = false;  ///< `endIdle` will be called.
        std::set<Identity> killers;
        std::string problem;      ///< Of the helper.
        std::string toolProblem;  ///< Of what it needs.
        bool isStranger = false;  ///< The helper cannot be spoken with.
    };

    explicit State(Options given)
        : options(std::move(given)),
          processes(options.processes ? options.processes
                                      : std::max(1U, std::thread::hardware_concurrency())),
          program(ExtractProcess::program()) {
        if (!program)
            pool.lock()->problem =
                "Documents can’t be read because the program “tarn-extract” isn’t installed.";
    }

    ~State() {
        std::vector<Idle> ending;
        auto held = pool.lock();
        held->isStopping = true;
        changed.notify_all();
        changed.wait(held.mutex(), [&] { return held->readers == 0; });
        ending.swap(held->idle);
    }

    bool isStopped(const CancelToken& token) const {
        return token.isCancelled() || pool.lock()->isStopping;
    }

    std::size_t places(const ExtractProtocol::Request& request) const {
        return request.isAlone ? processes : 1;
    }

    /// A helper's place is free, or all are for one that is to be alone; false when the reading is
    /// to end. Who waits for all goes first, since others come all the time.
    bool takePlace(const ExtractProtocol::Request& request, const CancelToken& token) {
        std::vector<Idle> ending;  // outside of the lock
        auto held = pool.lock();
        held->waitingForAll += request.isAlone;
        bool isTaken = false;
        while (!isTaken && !held->isStopping && !token.isCancelled()) {
            isTaken = held->busy + places(request) <= processes &&
                      (request.isAlone || held->waitingForAll == 0);
            if (!isTaken) changed.wait_for(held.mutex(), betweenQuestions);
        }
        held->waitingForAll -= request.isAlone;
        if (!isTaken) return false;
        held->busy += places(request);
        // Those that wait for work have memory, too.
        if (request.isAlone) ending.swap(held->idle);
        return true;
    }

    void leavePlace(const ExtractProtocol::Request& request, Helper helper) {
        {
            auto held = pool.lock();
            held->busy -= places(request);
            if (helper && helper->isUsable() && !held->isStopping) {
                held->idle.push_back({std::move(helper), steady_clock::now()});
                if (!std::exchange(held->isWatched, true)) watchIdle();
            }
        }
        changed.notify_all();
    }

    void watchIdle() {
        queue.runAfter(std::chrono::duration<double>(idleTime).count(), [this] { endIdle(); });
    }

    void endIdle() {
        std::vector<Idle> ending;
        const auto held = pool.lock();
        const auto before = steady_clock::now() - idleTime;
        const auto rest =
            std::ranges::find_if(held->idle, [&](const Idle& one) { return one.since > before; });
        std::move(held->idle.begin(), rest, std::back_inserter(ending));
        held->idle.erase(held->idle.begin(), rest);
        held->isWatched = !held->idle.empty();
        if (held->isWatched) watchIdle();
    }

    Helper idleHelper() {
        const auto held = pool.lock();
        if (held->idle.empty()) return nullptr;
        Helper helper = std::move(held->idle.back().helper);
        held->idle.pop_back();
        return helper;
    }

    /// Null when it does not start. On the queue, since a helper dies with the thread that started
    /// it, and the caller's may end before the reader.
    Helper newHelper() {
        std::promise<Helper> promise;
        queue.run([&] {
            try {
                promise.set_value(std::make_unique<ExtractProcess>(*program, options.background));
            } catch (const std::system_error& error) {
                sayProblem(systemErrorSentence(error.code().value()));
                promise.set_value(nullptr);
            }
        });
        return promise.get_future().get();
    }

    void sayProblem(const std::string& reason) {
        pool.lock()->problem =
            "Documents can’t be read because “tarn-extract” doesn’t start. " + reason;
    }

    void sayStranger() {
        auto held = pool.lock();
        held->isStranger = true;
        held->problem =
            "Documents can’t be read because “tarn-extract” is of another version than Tarn.";
    }

    /// What became of a file, and whether more memory may make more of it.
    struct Attempt {
        Result result;
        bool lacksMemory = false;
    };

    /// Beside others first, unless it is large; what does not fit there gets all the memory for
    /// itself.
    Result readInHelper(ExtractProtocol::Request request, double seconds, const OpenFile& file,
                        const CancelToken& token) {
        if (!program || pool.lock()->isStranger) return {.outcome = Outcome::unable};
        if (pool.lock()->killers.contains(file.identity)) return {.outcome = Outcome::killed};
        request.isAlone = file.size > largestBesideOthers;
        Attempt attempt = attemptIn(request, seconds, file, token);
        if (attempt.lacksMemory && !request.isAlone) {
            request.isAlone = true;
            attempt = attemptIn(request, seconds, file, token);
        }
        if (attempt.result.outcome == Outcome::killed) pool.lock()->killers.insert(file.identity);
        return std::move(attempt.result);
    }

    Attempt attemptIn(const ExtractProtocol::Request& request, double seconds, const OpenFile& file,
                      const CancelToken& token) {
        if (!takePlace(request, token)) return {{.outcome = Outcome::cancelled}};
        Helper helper = idleHelper();
        Attempt attempt = attemptWith(helper, request, seconds, file, token);
        leavePlace(request, std::move(helper));
        return attempt;
    }

    /// With a new helper where the given one may be to blame.
    Attempt attemptWith(Helper& helper, const ExtractProtocol::Request& request, double seconds,
                        const OpenFile& file, const CancelToken& token) {
        for (;;) {
            if (!helper) helper = newHelper();
            if (!helper) return {{.outcome = Outcome::unable}};
            // A helper that died may have read a part of it.
            lseek(file.descriptor.get(), 0, SEEK_SET);
            auto answer = helper->read(request, file.descriptor.get(), seconds,
                                       [&] { return isStopped(token); });
            // What died may have been damaged by an earlier file, or have been ended while it had
            // nothing to do, so that only a fresh one's death tells of this file.
            const bool isFresh = helper->answered() == 0;
            const bool lacksMemory = answer.lacksMemory;
            switch (answer.end) {
                case ExtractProcess::End::text:
                case ExtractProcess::End::noText:
                    return {resultOf(std::move(answer), request), lacksMemory};
                case ExtractProcess::End::late:
                    return {{.outcome = Outcome::killed}};
                case ExtractProcess::End::stopped:
                    return {{.outcome = Outcome::cancelled}};
                case ExtractProcess::End::stranger:
                    sayStranger();
                    return {{.outcome = Outcome::unable}};
                case ExtractProcess::End::notReady:
                    if (isFresh) {
                        sayProblem(helper->whyNotReady());
                        return {{.outcome = Outcome::unable}};
                    }
                    break;
                case ExtractProcess::End::died:
                    // Some libraries end where they get no memory.
                    if (isFresh) return {{.outcome = Outcome::killed}, true};
                    break;
            }
            helper.reset();
        }
    }

    Result resultOf(ExtractProcess::Answer answer, const ExtractProtocol::Request& request) {
        Result result{
            .outcome = answer.end == ExtractProcess::End::text ? Outcome::read : Outcome::noText,
            .text = std::move(answer.text),
            .hasPictures = answer.reading.hasPictures,
            .lacksRecognition = answer.reading.missing == Tool::recognition};
        if (const auto missing = answer.reading.missing) {
            pool.lock()->toolProblem = sentence(*missing);
            // The other pages of a document were read.
            const bool isRest =
                result.lacksRecognition && TextExtractor::method(request.fileName) == Method::pdf;
            if (!isRest) result.outcome = Outcome::unable;
        }
        return result;
    }

    const Options options;
    const std::size_t processes;
    const std::optional<URL> program;
    Guarded<Pool> pool;
    std::condition_variable changed;
    SerialQueue queue{"tarn.extract"};  // goes first, so that nothing it runs outlives the rest
};

TextReader::TextReader(Options options) : state_(std::make_unique<State>(std::move(options))) {}

TextReader::~TextReader() = default;

std::size_t TextReader::processCount() const { return state_->processes; }

std::string TextReader::problem() const {
    const auto held = state_->pool.lock();
    return held->problem.empty() ? held->toolProblem : held->problem;
}

TextReader::Result TextReader::read(const URL& url, std::int64_t size, const CancelToken& token) {
    const auto method = TextExtractor::method(url);
    if (!method || size > TextExtractor::sizeLimit(*method)) return {};
    if (*method == Method::image && !state_->options.ocr) return {};
    ++state_->pool.lock()->readers;
    Result result;
    if (state_->isStopped(token)) {
        result.outcome = Outcome::cancelled;
    } else if (const URL textURL = fileOfText(url); const auto file = openFile(textURL.c_str())) {
        if (file->size > TextExtractor::sizeLimit(*method)) {
            // Grown since the caller looked.
        } else if (PlainText::isPlain(textURL.name())) {
            auto bytes = beginning(*file);
            auto text = bytes ? PlainText::text(std::move(*bytes)) : std::nullopt;
            if (text) result = {.outcome = Outcome::read, .text = std::move(*text)};
        } else {
            const ExtractProtocol::Request request = {
                state_->options.ocr, std::string(textURL.name()), state_->options.languages};
            result = state_->readInHelper(request, timeLimit(*method, request.ocr), *file, token);
        }
    }
    const auto held = state_->pool.lock();  // so that the reader does not go before this is said
    --held->readers;
    state_->changed.notify_all();
    return result;
}

}  // namespace tarn
