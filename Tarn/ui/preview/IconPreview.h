#pragma once

#include <optional>

#include "Tarn/ui/preview/Preview.h"

class QLabel;

namespace tarn {

/// The icon of an item, large, with what is known of it: for folders, which say how much is in
/// them, and for everything that cannot be looked into.
class IconPreview final : public Preview {
    Q_OBJECT
public:
    explicit IconPreview(PreviewPlace place, QWidget* parent = nullptr);

    /// Why there is no more to see; empty for no reason that is worth a word.
    void setSentence(const QString& sentence);
    QString sentence() const;
    QString fact() const override { return fact_; }
    int heightFor(int width) const override;

protected:
    void load() override;
    void clear() override;
    void changeEvent(QEvent* event) override;

private:
    class Picture;
    void applyFonts();
    void showFacts();
    void countItems();

    Picture* picture_;
    QLabel* name_;
    QLabel* facts_;
    QLabel* sentence_;
    QString fact_;
};

}  // namespace tarn
