#pragma once

#include <memory>
#include <optional>

#include "Tarn/ui/preview/PageView.h"
#include "Tarn/ui/preview/Preview.h"
#include "TarnCore/preview/PreviewReader.h"

class QLabel;

namespace tarn {

/// The pages of a PDF document, drawn by `tarn-extract` as they are scrolled to.
class PDFPreview final : public Preview {
    Q_OBJECT
public:
    explicit PDFPreview(PreviewPlace place, QWidget* parent = nullptr);
    ~PDFPreview() override;

    QString fact() const override;
    int heightFor(int width) const override;
    PageView& pages() { return *pages_; }

protected:
    void load() override;
    void clear() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Question = PreviewProtocol::Question;
    using Answer = PreviewReader::Answer;

    /// Calls `show(self, answer)` here, unless another file is shown by then.
    template <class Show>
    void ask(const Question& question, Show show);
    void showPages(const Answer& answer);
    void askForRest();
    void meetWish();
    void showPicture(const PageView::Wish& wish, const Answer& answer);
    void updateNumber();

    PageView* pages_;
    QLabel* number_;
    /// Kept from file to file: waiting for it to end would hold up the window.
    std::unique_ptr<PreviewReader> reader_;
    int count_ = 0;
    bool isAsking_ = false;
    bool isReady_ = false;
    bool knowsSizes_ = false;
};

}  // namespace tarn
