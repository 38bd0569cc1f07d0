#pragma once

#include <optional>
#include <string_view>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class QProgressBar;
class QToolButton;
class QVBoxLayout;

namespace tarn {

class TabularLabel;

/// Something that goes on, in the panel of transfers: what it does, how far it has come, and the
/// buttons to hold and to stop it.
class JobRow : public QWidget {
    Q_OBJECT
public:
    QString detail() const;

protected:
    JobRow(const QString& title, std::string_view symbol, QWidget* parent);

    /// Shows how the job stands by now. Called through refresh() only.
    virtual void showState() = 0;
    void refresh();
    /// So much later that the numbers can be read.
    void refreshSoon();

    const QString& title() const { return title_; }
    /// From 0 to 1; absent while nobody knows.
    void setFraction(std::optional<double> fraction);
    void setDetail(const QString& detail);
    /// `text` is the word for what the button does.
    void setPause(const char* symbol, const QString& text);
    void setStop(const QString& text);

    QToolButton& pauseButton() { return *pause_; }
    QToolButton& stopButton() { return *stop_; }
    QProgressBar& bar() { return *bar_; }
    TabularLabel& detailLabel() { return *detail_; }
    /// The lines beside the symbol.
    QVBoxLayout& lines() { return *lines_; }

private:
    QString title_;
    QToolButton* pause_;
    QToolButton* stop_;
    QProgressBar* bar_;
    TabularLabel* detail_;
    QVBoxLayout* lines_;
    QTimer timer_;
    QElapsedTimer sinceShown_;
};

}  // namespace tarn
