#include "Tarn/ui/thumbnails/HelperPictures.h"

#include <future>
#include <memory>
#include <utility>

#include <QtCore/QSize>

#include "Tarn/ui/preview/DrawnImage.h"
#include "TarnCore/base/Guarded.h"

namespace tarn {

using PreviewProtocol::Ask;
using PreviewProtocol::Question;

bool HelperPictures::draws(PreviewKind kind) {
    return kind == PreviewKind::pdf || kind == PreviewKind::media;
}

std::shared_ptr<HelperPictures> HelperPictures::shared() {
    static Guarded<std::weak_ptr<HelperPictures>> kept;
    auto held = kept.lock();
    auto helper = held->lock();
    if (!helper) {
        helper = std::make_shared<HelperPictures>();
        *held = helper;
    }
    return helper;
}

std::optional<PreviewReader::Answer> HelperPictures::ask(const URL& file, const Question& question,
                                                         const CancelToken& token) {
    auto promise = std::make_shared<std::promise<PreviewReader::Answer>>();
    std::future<PreviewReader::Answer> answer = promise->get_future();
    reader_.ask(file, question, token, [promise = std::move(promise)](PreviewReader::Answer given) {
        promise->set_value(std::move(given));
    });
    try {
        PreviewReader::Answer given = answer.get();
        if (given.outcome == PreviewReader::Outcome::missing) return std::nullopt;
        return given;
    } catch (const std::future_error&) {
        return std::nullopt;  // Nobody wants to know any more.
    }
}

std::optional<QImage> HelperPictures::picture(const URL& file, PreviewKind kind, int size,
                                              const CancelToken& token) {
    Question question = {.ask = Ask::mediaCover, .width = size, .height = size};
    if (kind == PreviewKind::pdf) {
        const auto answer = ask(file, {.ask = Ask::pages, .count = 1}, token);
        if (!answer) return std::nullopt;
        const auto pages = PreviewProtocol::decodePages(answer->bytes);
        if (!pages || pages->sizes.empty()) return QImage();
        const QSizeF page(pages->sizes[0].width, pages->sizes[0].height);
        if (page.isEmpty()) return QImage();
        const QSize pixels =
            page.scaled(size, size, Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
        question = {.ask = Ask::page, .width = pixels.width(), .height = pixels.height()};
    }
    const auto answer = ask(file, question, token);
    if (!answer) return std::nullopt;
    const auto drawn = PreviewProtocol::decodePicture(answer->bytes);
    return drawn ? DrawnImage::image(*drawn) : QImage();
}

}  // namespace tarn
