#pragma once

#include <memory>
#include <optional>

#include "Tarn/ui/preview/Preview.h"
#include "TarnCore/preview/TextHead.h"

class QLabel;
class QPushButton;

namespace tarn {

class CodeView;
class TextReader;

/// Text as it stands, in whatever encoding, code in colours; or the text of a document, which
/// `tarn-extract` gets out of it. A long text shows its beginning and offers more.
class TextPreview final : public Preview {
    Q_OBJECT
public:
    /// What the widget shows of a file: its own bytes, or the text that is in a document.
    enum class Source { bytes, document };
    TextPreview(Source source, PreviewPlace place, QWidget* parent = nullptr);
    ~TextPreview() override;

    CodeView& view() { return *view_; }

    static constexpr std::int64_t firstBytes = 1'000'000;
    static constexpr std::int64_t firstSmallBytes = 64'000;  ///< Beside the files.

protected:
    void load() override;
    void clear() override;

private:
    void readBytes(std::int64_t bytes);
    void readDocument();
    void showHead(const std::optional<TextHead>& head);
    void showNote();

    Source source_;
    CodeView* view_;
    QWidget* foot_;
    QLabel* note_;
    QPushButton* more_;
    std::shared_ptr<TextReader> reader_;
    QString shown_;
    std::int64_t asked_ = 0;        ///< Bytes.
    std::optional<TextHead> head_;  ///< Without its text.
};

}  // namespace tarn
