#pragma once

#include <vector>

#include "Tarn/ui/sheets/Sheet.h"

class QStackedWidget;

namespace tarn {

class AppModel;
class PageDots;

/// What someone is shown who starts the program for the first time, in a few pages: what can be
/// typed, what is indexed, which keys there are. The page that was left is the first to be shown
/// again; after the last one, or when it is skipped, it does not come back.
class OnboardingSheet final : public Sheet {
    Q_OBJECT
public:
    OnboardingSheet(AppModel& app, QWidget& window);

    int page() const;
    int pageCount() const;
    QPushButton* next() const { return next_; }
    QPushButton* back() const { return back_; }
    QPushButton* skip() const { return skip_; }

protected:
    void escape() override;
    void layOut() override;

private:
    void addPage(const QString& title, QWidget* content);
    QWidget* makeExamples();
    QWidget* makeIndexing();
    QWidget* makeKeys();
    void show(int page);
    void end();

    AppModel& app_;
    std::vector<QString> titles_;
    QStackedWidget* pages_;
    PageDots* dots_;
    QPushButton* skip_;
    QPushButton* back_;
    QPushButton* next_;
};

}  // namespace tarn
