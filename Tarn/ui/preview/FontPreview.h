#pragma once

#include <memory>
#include <vector>

#include <QtGui/QImage>

#include "Tarn/ui/preview/Preview.h"
#include "TarnCore/preview/PreviewReader.h"

namespace tarn {

class FontView;

/// What the letters of a font file look like: a sentence in several sizes, and below it all that
/// the font has. Drawn by `tarn-extract`; the font is never given to the window's own text.
class FontPreview final : public Preview {
    Q_OBJECT
public:
    explicit FontPreview(PreviewPlace place, QWidget* parent = nullptr);
    ~FontPreview() override;

    QString fact() const override;
    FontView& view() { return *view_; }

    /// The sentence that shows most of what the font has: one with all letters of an alphabet that
    /// it knows, else its first characters.
    static QString sample(const FontFacts& facts);

protected:
    void load() override;
    void clear() override;

private:
    template <class Show>
    void ask(const PreviewProtocol::Question& question, Show show);
    void showFacts(const PreviewReader::Answer& answer);
    void meetWish();

    FontView* view_;
    std::unique_ptr<PreviewReader> reader_;
    FontFacts facts_;
    bool isAsking_ = false;
    bool isReady_ = false;
};

}  // namespace tarn
