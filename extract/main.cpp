// tarn-extract [--background]: reads documents for the program that started it, which speaks with
// it as TarnCore/index/ExtractProtocol.h says. Of no use to people.
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <malloc.h>
#include <sched.h>
#include <unistd.h>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/DrawingModules.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/linux/Module.h"
#include "TarnCore/platform/linux/Sandbox.h"
#include "extract/ParentSocket.h"
#include "extract/PreviewAnswers.h"
#include "extract/RefusedMemory.h"

namespace tarn::extract {
namespace {

constexpr int MiB = 1024 * 1024;
/// For pages and pictures that a preview shows.
constexpr Sandbox::Limits limits = {
    .memory = 256 * MiB, .addressSpace = 3072LL * MiB, .descriptors = 64};
/// For texts. A run of the index, with a helper at each of two processors, is to stay below 300 MB.
/// Recognising a screen of 1920 × 1080 pixels takes 51 MiB, one of 2400 × 1800 72.
constexpr std::int64_t besideOthers = 72 * MiB;
/// For the rest, one at a time: 85 for 2,400 pixels a side; what is above that is for large photos
/// in formats that cannot be read in pieces.
constexpr std::int64_t alone = 112 * MiB;
/// What a helper may hold between two files; one that holds more makes room for a fresh one.
constexpr std::size_t mostKept = 56 * MiB;
/// Seconds of processor time for one file, for the case that the parent does not look.
constexpr std::int64_t lastResort = 300;

void lowerPriority() {
    const sched_param none{};
    sched_setscheduler(0, SCHED_IDLE, &none);
    setpriority(PRIO_PROCESS, 0, 19);
    constexpr int idleClass = 3 << 13;  // as of linux/ioprio.h, which older systems lack
    constexpr int thisProcess = 1;
    syscall(SYS_ioprio_set, thisProcess, 0, idleClass);
}

std::vector<URL> readableFolders() {
    std::vector<URL> folders = moduleFolders();
    if (const char* letters = std::getenv("TESSDATA_PREFIX"))
        folders.push_back(URL::fromPath(letters));
    return folders;
}

/// Bytes held of the heap and of what was mapped for large blocks.
std::size_t heldMemory() {
    const struct mallinfo2 info = mallinfo2();
    return info.arena + info.hblkhd;
}

TextExtractor::Reading read(const ParentSocket::Job& job) {
    try {
        const auto& request = job.request;
        return TextExtractor::read(job.file.get(), request.fileName, request.ocr,
                                   request.languages);
    } catch (const std::exception&) {
        return {};  // too little memory, or the disk fails: no text either way
    }
}

std::optional<std::string> answer(PreviewAnswers& answers, const ParentSocket::Job& job) {
    try {
        return answers.answer(*job.question, job.file.get());
    } catch (const std::exception&) {
        return std::nullopt;  // as above
    }
}

int serve() {
    ParentSocket parent{FileDescriptor(ExtractProtocol::socketDescriptor)};
    if (!parent.sayReady()) return EXIT_SUCCESS;
    PreviewAnswers answers({DrawingModules::pages, DrawingModules::fonts, DrawingModules::media});
    while (auto job = parent.next()) {
        Sandbox::limitProcessorTime(lastResort);
        if (job->question) {
            Sandbox::limitMemory(limits.memory);
            const auto reply = answer(answers, *job);
            const bool isLast = heldMemory() > mostKept && !answers.isPlaying();
            if (!parent.reply(reply, isLast) || isLast) break;
            continue;
        }
        answers.forget();
        Sandbox::limitMemory(job->request.isAlone ? alone : besideOthers);
        RefusedMemory::forget();
        const auto reading = read(*job);
        job.reset();
        const bool isLast = heldMemory() > mostKept;
        if (!parent.answer(reading, RefusedMemory::wasAny(), isLast) || isLast) break;
    }
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace tarn::extract

int main(int argc, char** argv) {
    using namespace tarn;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (argc > 1 && std::string_view(argv[1]) == "--background") extract::lowerPriority();
    mallopt(M_ARENA_MAX, 1);  // an arena for each thread of a library is memory for nothing
    // Pictures of the same size follow each other; fresh pages for each take 6 % of the time.
    mallopt(M_MMAP_THRESHOLD, 32 * extract::MiB);
    mallopt(M_TRIM_THRESHOLD, 64 * extract::MiB);
    Platform::setCurrent(makeLinuxPlatform());
    Sandbox::enter(extract::limits, extract::readableFolders());
    const int status = extract::serve();
    // Libraries would take themselves apart for nothing.
    _exit(status);
}
