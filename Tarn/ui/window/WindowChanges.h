#pragma once

#include <functional>
#include <memory>

#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace tarn {

class AppModel;
class ConflictSheet;
class QuestionSheet;
class TabGroup;
class TransferList;
class TransferModel;
class TransfersButton;
class TransfersPanel;
class WindowModel;

/// What a window shows of the changes that are made to files, whichever tab began them: the
/// transfers, the questions they ask, and the question before they are stopped.
class WindowChanges final : public QObject {
    Q_OBJECT
public:
    /// `button` opens the transfers; it is a part of `window`.
    WindowChanges(TabGroup& group, QWidget& window, TransfersButton& button);
    ~WindowChanges() override;

    /// The tab that commands are for; null for none.
    void follow(WindowModel* tab);

    /// Asks before the last window goes while files are being transferred, packed or unpacked; true
    /// when it may go at once. Otherwise the window is closed later, if the person wants it.
    bool mayClose();
    /// Closes all windows, after the same question; the next start finds them all.
    void quit();

private:
    void ask();
    bool isAskedHere(const TransferModel& transfer) const;
    bool isBusy() const;
    void askToStop(const QString& sentence, const QString& yes, std::function<void()> then);
    void goOnWhenIdle();

    TabGroup& group_;
    AppModel& app_;
    QWidget& window_;
    TransferList& transfers_;
    TransfersButton& button_;
    TransfersPanel* panel_;
    QPointer<WindowModel> tab_;
    std::unique_ptr<QObject> following_;  ///< Ends the connections to the tab.
    QPointer<ConflictSheet> conflict_;
    QPointer<QuestionSheet> question_;
    std::function<void()> whenIdle_;  ///< What waits for the work that is being stopped.
};

}  // namespace tarn
