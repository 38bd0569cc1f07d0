#pragma once

#include <string>
#include <vector>

#include "Tarn/model/ServerConnection.h"
#include "Tarn/ui/sheets/Sheet.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace tarn {

class BusyLine;
class WindowModel;

/// Asks for the address of a server, or one of those that were connected to before; then for what
/// the server wants to know; and shows its folder in the active pane.
class ConnectServerSheet final : public Sheet {
    Q_OBJECT
public:
    /// Connects at once to an address that is not empty.
    ConnectServerSheet(QWidget& window, WindowModel& model, const std::string& address);
    QWidget* firstField() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeServers();
    void makeQuestion();
    void showServers();
    void check();
    void apply();
    void begin();
    void ask(const ServerQuestion& question);
    void reply();
    void arrive(const URL& folder);
    void fail(const QString& sentence);
    void setWaiting(bool isWaiting);
    void forgetServer();

    WindowModel& model_;
    ServerConnection connection_;
    QLineEdit* address_;
    QLabel* note_;
    QListWidget* servers_;
    QWidget* question_;
    QLabel* message_;
    QVBoxLayout* choices_;
    QLineEdit* user_;
    QLineEdit* password_;
    BusyLine* busy_;
    QPushButton* apply_;
    std::vector<QRadioButton*> choiceButtons_;
    bool isAsked_ = false;  ///< The server waits for an answer.
};

}  // namespace tarn
