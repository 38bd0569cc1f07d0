#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/platform/FontDrawing.h"
#include "TarnCore/platform/MediaDecoding.h"
#include "TarnCore/platform/PageDrawing.h"
#include "TarnCore/preview/PreviewProtocol.h"

namespace tarn::extract {

/// Answers what PreviewProtocol asks about an open file. Keeps the document or font that was asked
/// about last, since page follows page. For one thread.
class PreviewAnswers {
public:
    /// What draws and decodes; each may be null or give null, and its questions have no answer
    /// then. They are called when first needed.
    struct Drawing {
        std::function<const PageDrawing*()> pages;
        std::function<const FontDrawing*()> fonts;
        std::function<const MediaDecoding*()> media;
    };
    explicit PreviewAnswers(Drawing drawing);
    ~PreviewAnswers();

    /// Absent for nonsense, and when the file is not what was asked for. The descriptor stays the
    /// caller's. Throws std::system_error when the disk fails.
    std::optional<std::string> answer(std::string_view question, int file);
    /// Lets go of the last file.
    void forget();
    /// It is being played, and whoever ends now would have to find the place again.
    bool isPlaying() const;

    /// Bytes; larger files are not looked into, unless they are played.
    static constexpr std::int64_t largestFile = 1'000'000'000;

private:
    struct Opened;

    Opened* opened(int file);
    std::optional<std::string> pages(const PreviewProtocol::Question& question, int file);
    std::optional<std::string> fonts(const PreviewProtocol::Question& question, int file);
    std::optional<std::string> media(const PreviewProtocol::Question& question, int file);
    std::optional<std::string> sheet(const PreviewProtocol::Question& question, int file);

    Drawing drawing_;
    std::unique_ptr<Opened> last_;
};

}  // namespace tarn::extract
