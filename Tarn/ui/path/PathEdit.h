#pragma once

#include <cstdint>

#include <QtWidgets/QLineEdit>

#include "TarnCore/base/URL.h"

class QCompleter;
class QStandardItemModel;

namespace tarn {

/// The path as text, with the folders it may go on to offered below. Looking things up happens
/// on the pool; an answer to an older text is dropped.
class PathEdit final : public QLineEdit {
    Q_OBJECT
public:
    explicit PathEdit(QWidget* parent = nullptr);

    /// Shows `folder` as text; relative input is taken from it.
    void begin(const URL& folder);
    void setIncludeHidden(bool include) { includeHidden_ = include; }
    /// True while the typed text leads nowhere.
    bool leadsNowhere() const { return leadsNowhere_; }

signals:
    void resolved(const tarn::URL& url, bool isFolder);
    void leadsNowhereChanged();
    void cancelled();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void offer();
    void showOffers();
    void resolve();
    void completePrefix();
    void setLeadsNowhere(bool nowhere);

    URL base_;
    QString initial_;
    QString commonPrefix_;
    bool includeHidden_ = false;
    bool leadsNowhere_ = false;
    std::uint64_t generation_ = 0;
    QStandardItemModel* offers_;
    QCompleter* completer_;
};

}  // namespace tarn
