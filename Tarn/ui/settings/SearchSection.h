#pragma once

#include <QtCore/QPointer>

#include "Tarn/ui/settings/SettingsForm.h"

class QPushButton;

namespace tarn {

class HotKeyField;
class QuickSearchKey;

/// Where searches look, and the keys of the quick search.
class SearchSection final : public SettingsForm {
    Q_OBJECT
public:
    explicit SearchSection(AppModel& app, QWidget* parent = nullptr);

private:
    void addQuickSearch();
    void showSettings() override;
    /// What the keys have come to.
    void showKey();

    QPointer<QuickSearchKey> key_;  ///< Null where there is no quick search.
    HotKeyField* field_ = nullptr;
    QLabel* state_ = nullptr;
    QPushButton* ask_ = nullptr;
    QString refusal_;  ///< Why the keys pressed last cannot be taken.
};

}  // namespace tarn
