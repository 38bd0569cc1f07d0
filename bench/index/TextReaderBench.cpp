// tarn-bench-TextReader [PICTURE...]: what reading documents in helpers costs: the way there and
// back, pages of PDF a second, and screens of 1920 × 1080 pixels that show these pictures.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/index/TextReader.h"
#include "TarnCore/platform/linux/LinuxTextRecognition.h"
#include "bench/Bench.h"
#include "tests/index/HelperProcesses.h"
#include "tests/support/PDFDocument.h"

namespace {

using namespace tarn;

constexpr int screenWidth = 1920;
constexpr int screenHeight = 1080;
constexpr int pages = 300;

/// A folder that goes with everything in it.
class Folder {
public:
    Folder() : path_((std::filesystem::temp_directory_path() / "tarn-bench-XXXXXX").native()) {
        if (mkdtemp(path_.data()) == nullptr) std::abort();
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    URL file(const std::string& name, const std::string& bytes) const {
        std::ofstream(path_ + "/" + name, std::ios::binary) << bytes;
        return URL::fromPath(path_ + "/" + name);
    }

private:
    std::string path_;
};

std::string contents(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void append(std::string& bytes, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i & 255);
}

/// A picture in the middle of a screen of the shade of its corner, as a BMP file.
std::string screen(const GrayPicture& picture) {
    std::string bytes = "BM";
    for (const std::uint32_t number : {0U, 0U, 1078U, 40U}) append(bytes, number, 4);
    append(bytes, screenWidth, 4);
    append(bytes, screenHeight, 4);
    append(bytes, 1 | 8 << 16, 4);
    for (const std::uint32_t number : {0U, 0U, 2835U, 2835U, 256U, 0U}) append(bytes, number, 4);
    for (std::uint32_t shade = 0; shade < 256; ++shade) append(bytes, shade * 0x010101, 4);
    const int left = (screenWidth - picture.width) / 2;
    const int top = (screenHeight - picture.height) / 2;
    for (int y = screenHeight - 1; y >= 0; --y) {
        for (int x = 0; x < screenWidth; ++x) {
            const bool inside =
                x >= left && x < left + picture.width && y >= top && y < top + picture.height;
            const int at = inside ? (y - top) * picture.width + x - left : 0;
            bytes += static_cast<char>(picture.pixels[static_cast<std::size_t>(at)]);
        }
    }
    return bytes;
}

std::string longDocument() {
    PDFDocument document;
    for (int page = 0; page < pages; ++page) {
        std::vector<std::string> lines;
        for (int line = 0; line < 38; ++line)
            lines.push_back("Line " + std::to_string(line) + " of page " + std::to_string(page) +
                            " says what every other line says, too, but for its numbers.");
        document.addText(lines);
    }
    return document.bytes();
}

/// Seconds that the helpers of this process have worked.
double processorOfHelpers() {
    double sum = 0;
    for (const pid_t helper : helperProcesses()) {
        clockid_t clock{};
        timespec time{};
        if (clock_getcpuclockid(helper, &clock) == 0 && clock_gettime(clock, &time) == 0)
            sum += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }
    return sum;
}

/// The most memory that a helper of this process has held, in MiB.
long peakOfHelpers() {
    long peak = 0;
    for (const pid_t helper : helperProcesses()) {
        std::ifstream status("/proc/" + std::to_string(helper) + "/status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("VmHWM:")) peak = std::max(peak, std::atol(&line[6]) / 1024);
    }
    return peak;
}

/// Each file `times` times, shared out among the helpers.
void measure(const std::string& name, const std::vector<URL>& files, int times, double unitsAFile,
             const char* unit, std::size_t processes) {
    TextReader reader({.ocr = true, .languages = {}, .processes = processes, .background = false});
    TaskPool pool(processes);
    const CancelToken token;
    std::size_t characters = 0;
    // Starting the helpers and their libraries is not counted.
    pool.forEach(processes,
                 [&](std::size_t) { characters = reader.read(files[0], 1, token).text.size(); });
    const auto count = files.size() * static_cast<std::size_t>(times);
    const double workedBefore = processorOfHelpers();
    const double seconds = bench::measureOnce([&] {
        pool.forEach(count, [&](std::size_t i) { reader.read(files[i % files.size()], 1, token); });
    });
    const double worked = processorOfHelpers() - workedBefore;
    const double units = unitsAFile * static_cast<double>(count);
    std::printf(
        "%-20s helpers: %zu  %9.1f us, of the processor %9.1f us each  %9.1f %s a second  "
        "(%zu bytes a file, helpers up to %ld MiB)\n",
        name.c_str(), processes, seconds / units * 1e6, worked / units * 1e6, units / seconds, unit,
        characters, peakOfHelpers());
}

}  // namespace

int main(int argc, char** argv) {
    const Folder folder;
    const URL page = folder.file("page.html", "<p>One line.</p>");
    const URL document = folder.file("document.pdf", longDocument());
    std::vector<URL> screens;
    for (int i = 1; i < argc; ++i) {
        const auto picture = LinuxTextRecognition().load(contents(argv[i]), screenHeight);
        if (!picture) {
            std::fprintf(stderr, "tarn-bench-TextReader: %s is no picture\n", argv[i]);
            return 1;
        }
        screens.push_back(folder.file(std::to_string(i) + ".bmp", screen(*picture)));
    }
    for (const std::size_t processes : {std::size_t{1}, std::size_t{2}}) {
        measure("way there and back", {page}, 5000, 1, "files", processes);
        measure("PDF", {document}, 4, pages, "pages", processes);
        if (!screens.empty()) measure("screens", screens, 5, 1, "screens", processes);
    }
    return 0;
}
