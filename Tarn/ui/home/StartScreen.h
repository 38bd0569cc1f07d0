#pragma once

#include <QtWidgets/QWidget>

class QLineEdit;
class QScrollArea;

namespace tarn {

class PaneModel;
class StartPlaces;
class StartSection;
class WindowModel;
struct StartPlace;

/// The place `home`: a large field to search with, and where one may want to go.
class StartScreen final : public QWidget {
    Q_OBJECT
public:
    StartScreen(WindowModel& tab, PaneModel& pane, QWidget* parent);

    /// Gives the keyboard to the field.
    void enter();
    QLineEdit& field() { return *field_; }

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPlaces();
    void connectSection(StartSection& section);
    void open(const StartPlace& place, bool isAside);
    void layOut();

    WindowModel& tab_;
    PaneModel& pane_;
    StartPlaces* places_;
    QScrollArea* scroll_;
    QWidget* content_;
    QLineEdit* field_;
    StartSection* recents_;
    StartSection* workspaces_;
    StartSection* favorites_;
    StartSection* library_;
    StartSection* volumes_;
};

}  // namespace tarn
