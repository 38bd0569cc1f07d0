#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include "Tarn/model/OCRLanguages.h"
#include "TarnCore/base/URL.h"

class QComboBox;
class QLabel;
class QListWidget;
class QMenu;
class QProgressBar;
class QPushButton;

namespace tarn {

class ContentIndexService;
class QuestionSheet;
class WindowModel;
class WrappingCheckBox;
struct AppSettings;

/// The settings of the index of file contents, and what it holds.
class IndexSection final : public QWidget {
    Q_OBJECT
public:
    /// Questions are put over `window`.
    IndexSection(WindowModel& model, QWidget& window, QWidget* parent = nullptr);

    /// As if the folder was chosen in the dialog.
    void addFolder(const URL& folder);
    void leaveOut(const URL& folder);

    /// What the index holds: “12,345 files with text · 320 MB · last read: Today at 14:03”.
    static QString contents(const ContentIndexService& index);
    /// What is being done about it: “Reading 1,200 of 34,000 files”.
    static QString activity(const ContentIndexService& index);

private:
    enum class Row { included, excluded };
    struct Folder {
        URL url;
        Row kind = Row::included;
    };

    void makeSwitches();
    void makeFolders();
    void makeStatus();
    void change(const std::function<void(AppSettings&)>& change);
    void showSettings();
    void showFolders();
    void showStatus();
    void showLanguages();
    void takeLanguages(std::vector<OCRLanguages::Language> languages);
    void toggleLanguage(const std::string& tag, bool isOn);
    void choose(const QString& title, void (IndexSection::*then)(const URL&));
    void removeChosen();
    void rebuild();
    void followChosen();
    QuestionSheet* ask(const QString& title, const QString& sentence, const QString& yes);

    WindowModel& model_;
    QWidget& window_;
    ContentIndexService& index_;
    WrappingCheckBox* on_;
    WrappingCheckBox* ocr_;
    QPushButton* languagesButton_;
    QMenu* languagesMenu_;
    QListWidget* list_;
    QPushButton* add_;
    QPushButton* leaveOut_;
    QPushButton* remove_;
    QComboBox* budget_;
    QLabel* contents_;
    QLabel* activity_;
    QProgressBar* bar_;
    QPushButton* rebuild_;
    std::vector<Folder> folders_;  ///< Those of the list.
    std::vector<OCRLanguages::Language> languages_;
};

}  // namespace tarn
