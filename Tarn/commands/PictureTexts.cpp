#include "Tarn/commands/PictureTexts.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtCore/QPointer>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/WindowModel.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/index/TextReader.h"

namespace tarn::PictureTexts {
namespace {

struct Texts {
    std::vector<std::string> found;
    std::string problem;  ///< Why nothing could be read here.
    bool isComplete = false;
};

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::PictureTexts)
};

void tell(WindowModel& window, const QString& message, bool isError) {
    Toast toast;
    toast.message = message;
    toast.symbol = isError ? "exclamationmark.triangle" : "text.viewfinder";
    toast.isError = isError;
    window.showToast(std::move(toast));
}

void finish(WindowModel& window, const Texts& texts, std::size_t asked) {
    if (texts.found.empty()) {
        if (!texts.problem.empty()) return tell(window, coreSentence(texts.problem), true);
        return tell(window,
                    asked == 1 ? Words::tr("No text was found in the picture.")
                               : Words::tr("No text was found in the pictures."),
                    true);
    }
    auto data = std::make_unique<QMimeData>();
    data->setText(QString::fromStdString(Text::join(texts.found, "\n\n")));
    window.app().clipboard().set(std::move(data));
    tell(window,
         texts.found.size() == 1 ? Words::tr("Copied the text of one picture.")
                                 : Words::tr("Copied the texts of %n pictures.", nullptr,
                                             static_cast<int>(texts.found.size())),
         false);
}

}  // namespace

void copy(WindowModel& window) {
    std::vector<FileItem> pictures;
    for (FileItem& item : window.active().selectedItems())
        if (item.kind == FileKind::image) pictures.push_back(std::move(item));
    if (pictures.empty()) return;
    const std::size_t asked = pictures.size();
    TextReader::Options options;
    options.ocr = true;
    options.languages = window.app().settings().ocrLanguages;
    auto texts = std::make_shared<Texts>();
    window.app().activities().add(
        Words::tr("Copy Text from Images"),
        [options, pictures = std::move(pictures), texts](ActivityTask::Handle& handle) {
            TextReader reader(options);
            std::size_t done = 0;
            for (const FileItem& picture : pictures) {
                if (handle.token().isCancelled()) return;
                handle.report(displayText(picture.url.name()),
                              static_cast<double>(done++) / static_cast<double>(pictures.size()));
                const auto result =
                    reader.read(picture.url, picture.size.value_or(0), handle.token());
                const std::string text(Text::trimmed(result.text));
                if (!text.empty()) texts->found.push_back(text);
            }
            texts->problem = reader.problem();
            texts->isComplete = !handle.token().isCancelled();
        },
        [texts, asked, self = QPointer(&window)](bool ran) {
            if (ran && self && texts->isComplete) finish(*self, *texts, asked);
        });
}

}  // namespace tarn::PictureTexts
