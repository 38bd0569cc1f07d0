#include "bench/Screen.h"

#include <csignal>
#include <cstring>
#include <stdexcept>

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn::bench {
namespace {

/// A field of the header of an XWD file (X11/XWDFile.h): big-endian words.
std::size_t field(const unsigned char* file, int number) {
    const unsigned char* at = file + number * 4;
    return std::size_t{at[0]} << 24 | std::size_t{at[1]} << 16 | std::size_t{at[2]} << 8 | at[3];
}
constexpr int headerSize = 0;
constexpr int bitsPerPixel = 11;
constexpr int bytesPerLine = 12;
constexpr int colourCount = 19;
constexpr std::size_t bytesPerColour = 12;

}  // namespace

Screen::Screen(const std::string& folder) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe for the display");
    server_ = fork();
    if (server_ == 0) {
        close(ends[0]);
        const std::string number = std::to_string(ends[1]);
        const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
        const int silence = open("/dev/null", O_WRONLY);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(silence, stream);
        execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", size.c_str(),
               "-nolisten", "tcp", "-noreset", "-fbdir", folder.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    char number[16] = {};
    std::size_t got = 0;
    for (ssize_t size; got < sizeof number - 1 &&
                       (size = read(ends[0], number + got, sizeof number - 1 - got)) > 0;)
        got += static_cast<std::size_t>(size);
    close(ends[0]);
    if (got == 0) throw std::runtime_error("Xvfb could not be started.");
    name_ = ":" + std::string(number, strcspn(number, "\n"));

    const std::string path = folder + "/Xvfb_screen0";
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat facts {};
    if (file < 0 || fstat(file, &facts) != 0)
        throw std::runtime_error("Xvfb keeps no frame buffer in " + path);
    fileSize_ = static_cast<std::size_t>(facts.st_size);
    void* mapped = mmap(nullptr, fileSize_, PROT_READ, MAP_SHARED, file, 0);
    close(file);
    if (mapped == MAP_FAILED) throw std::runtime_error("no memory for the frame buffer");
    file_ = static_cast<const unsigned char*>(mapped);
    pixels_ = field(file_, headerSize) + field(file_, colourCount) * bytesPerColour;
    bytesPerLine_ = field(file_, bytesPerLine);
    if (field(file_, bitsPerPixel) != 32 || pixels_ + bytesPerLine_ * height > fileSize_)
        throw std::runtime_error("Xvfb’s frame buffer is not as expected.");
}

Screen::~Screen() {
    if (file_) munmap(const_cast<unsigned char*>(file_), fileSize_);
    if (server_ <= 0) return;
    kill(server_, SIGTERM);
    waitpid(server_, nullptr, 0);
}

void Screen::take(Picture& picture) const {
    picture.resize(std::size_t{width} * (height / lineStep));
    for (int line = 0; line < height / lineStep; ++line)
        std::memcpy(picture.data() + std::size_t{width} * line,
                    file_ + pixels_ + bytesPerLine_ * line * lineStep, std::size_t{width} * 4);
}

Screen::Picture Screen::picture() const {
    Picture picture;
    take(picture);
    return picture;
}

double difference(const Screen::Picture& a, const Screen::Picture& b) {
    std::size_t different = 0;
    for (std::size_t i = 0; i < a.size(); ++i) different += a[i] != b[i];
    return static_cast<double>(different) / static_cast<double>(a.size());
}

}  // namespace tarn::bench
