#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// A long job that a panel shows: what it does, how far it has come, and a way to hold or stop it.
///
/// Main thread only, but for what Handle says. Belongs to the list that began it.
class ActivityTask final : public QObject {
    Q_OBJECT
public:
    /// What the job's thread holds of it. Callable from any thread.
    class Handle {
    public:
        const CancelToken& token() const { return token_; }
        /// Tells how far the job has come; no more than one report is ever under way. Returns
        /// after a pause is over.
        void report(const QString& detail, std::optional<double> fraction);

    private:
        friend class ActivityTask;
        struct Report {
            QString detail;
            std::optional<double> fraction;
        };
        CancelToken token_;
        std::mutex mutex_;
        std::condition_variable resumed_;
        bool isPaused_ = false;
        bool isPosted_ = false;
        Report latest_;
        QPointer<ActivityTask> task_;  ///< Used on the main thread only.
    };

    explicit ActivityTask(QString title, std::string symbol, QObject* parent = nullptr);
    /// Stops the job; whoever runs it waits for it.
    ~ActivityTask() override;

    const std::shared_ptr<Handle>& handle() const { return handle_; }

    UUID id() const { return id_; }
    const QString& title() const { return title_; }
    /// Name of its icon.
    const std::string& symbol() const { return symbol_; }
    /// Goes on by itself another time: nothing is lost when the program ends meanwhile.
    bool isService() const { return isService_; }
    void setService(bool isService) { isService_ = isService; }
    const QString& detail() const { return detail_; }
    /// 0 to 1; absent while unknown.
    std::optional<double> fraction() const { return fraction_; }
    /// By the user.
    bool isPaused() const { return isPaused_; }
    bool canPause() const { return canPause_; }
    void setCanPause(bool canPause) { canPause_ = canPause; }
    void pause();
    /// Where the job holds itself, this only tells the user why it still waits.
    void resume();
    /// Why the job holds itself just now, as a line for the user: “Waiting for mains power”.
    const std::optional<QString>& power() const { return power_; }
    void setPower(std::optional<QString> reason);
    /// The user asked it to go on while `power` held it.
    bool resumeRefused() const { return resumeRefused_; }
    /// What Handle::report tells, from one who is on the main thread.
    void tell(const QString& detail, std::optional<double> fraction);
    void stop();
    bool isStopped() const { return handle_->token().isCancelled(); }

signals:
    void changed();

private:
    void take();
    /// Lets the job go on, to its end.
    void release();

    UUID id_ = UUID::random();
    QString title_;
    std::string symbol_;
    bool isService_ = false;
    QString detail_;
    std::optional<double> fraction_;
    bool isPaused_ = false;
    bool canPause_ = true;
    bool resumeRefused_ = false;
    std::optional<QString> power_;
    std::shared_ptr<Handle> handle_;
};

}  // namespace tarn
