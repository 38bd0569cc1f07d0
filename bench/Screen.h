#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tarn::bench {

/// A display of its own in memory (Xvfb), and what is on it. Nothing is asked of the programs that
/// draw there, so that all of them are measured in the same way.
class Screen {
public:
    static constexpr int width = 1280;
    static constexpr int height = 800;

    /// `folder` is for its files. Throws std::runtime_error when Xvfb cannot be started.
    explicit Screen(const std::string& folder);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// For the variable DISPLAY.
    const std::string& name() const { return name_; }

    /// The pixels of every fourth line, which is enough to tell texts and icons apart.
    using Picture = std::vector<std::uint32_t>;
    Picture picture() const;
    /// The same into memory that is there.
    void take(Picture& picture) const;

private:
    static constexpr int lineStep = 4;

    std::string name_;
    pid_t server_ = -1;
    const unsigned char* file_ = nullptr;  ///< Xvfb's frame buffer, as an XWD file.
    std::size_t fileSize_ = 0;
    std::size_t pixels_ = 0;  ///< Where they begin.
    std::size_t bytesPerLine_ = 0;
};

/// The part of the pixels, 0 to 1, in which two pictures differ.
double difference(const Screen::Picture& a, const Screen::Picture& b);

}  // namespace tarn::bench
