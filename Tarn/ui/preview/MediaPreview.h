#pragma once

#include "Tarn/ui/preview/MediaPlayer.h"
#include "Tarn/ui/preview/Preview.h"

class QLabel;
class QSlider;
class QToolButton;

namespace tarn {

class MediaStage;
class TabularLabel;

/// Sound or a film with what it takes to play it. Nothing begins by itself, and a film has no sound
/// until that is asked for.
class MediaPreview final : public Preview {
    Q_OBJECT
public:
    explicit MediaPreview(PreviewPlace place, QWidget* parent = nullptr);
    ~MediaPreview() override;

    QString fact() const override;
    int heightFor(int width) const override;
    MediaPlayer& player() { return *player_; }

protected:
    void load() override;
    void clear() override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* addButton(QWidget* bar, const char* symbol);
    void showOpened();
    void updateButtons();
    void updateTime();
    void toggle();

    MediaPlayer* player_;
    MediaStage* stage_;
    QLabel* title_;
    QLabel* caption_;
    QWidget* bar_;
    QToolButton* play_ = nullptr;
    QToolButton* sound_ = nullptr;
    QSlider* slider_ = nullptr;
    TabularLabel* time_ = nullptr;
    bool isReady_ = false;
};

}  // namespace tarn
