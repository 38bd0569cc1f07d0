#pragma once

#include <functional>
#include <vector>

#include <QtCore/QString>
#include <QtWidgets/QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QVBoxLayout;

namespace tarn {

class AppModel;
class WrappingCheckBox;
struct AppSettings;

/// A page of settings, each a row that shows what is stored and stores what is chosen, at once.
class SettingsForm : public QWidget {
    Q_OBJECT
public:
    explicit SettingsForm(AppModel& app, QWidget* parent = nullptr);

    /// A smaller text that explains what stands above it.
    static QLabel* makeNote(const QString& text = {});

protected:
    struct Choice {
        QString title;
        int value = 0;  ///< Of the enumeration.
    };
    /// One that the page shows and stores by itself.
    WrappingCheckBox* addSwitch(const QString& text);
    /// An empty note below a switch, in line with its text.
    QLabel* addNoteOf(const WrappingCheckBox& box);
    QCheckBox* addSwitch(const QString& text, bool AppSettings::*field, const QString& note = {});
    /// A list of which one is chosen, behind its label.
    template <class Enumeration>
    QComboBox* addChoice(const QString& label, Enumeration AppSettings::*field,
                         const std::vector<Choice>& choices) {
        return addChoices(
            label, choices,
            [field](const AppSettings& settings) { return static_cast<int>(settings.*field); },
            [field](AppSettings& settings, int value) {
                settings.*field = static_cast<Enumeration>(value);
            });
    }
    /// A list that the page fills and stores by itself.
    QComboBox* addList(const QString& label);
    /// Any other control behind its label.
    void addRow(QLabel& label, QWidget& control);
    void addNote(const QString& text);
    void addGap();

    AppModel& app() { return app_; }
    QVBoxLayout* column() const { return column_; }
    void change(const std::function<void(AppSettings&)>& change);
    /// What is stored has changed.
    virtual void showSettings();
    /// Gives all lists the width that their texts need. After they were filled anew.
    void fitLists();
    /// To be called at the end of the constructor of a page.
    void start();

private:
    QComboBox* addChoices(const QString& label, const std::vector<Choice>& choices,
                          std::function<int(const AppSettings&)> read,
                          std::function<void(AppSettings&, int)> write);

    AppModel& app_;
    QVBoxLayout* column_;
    std::vector<QComboBox*> lists_;
    std::vector<std::function<void(const AppSettings&)>> rows_;  ///< Each shows its own.
};

}  // namespace tarn
