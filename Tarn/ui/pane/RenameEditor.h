#pragma once

#include <QtWidgets/QLineEdit>

namespace tarn {

class NoteBubble;
struct FileItem;

/// The field in which the name of a row is edited in place. Why a name cannot be used stands in a
/// note at the field, while it is typed.
///
/// A child of the rows' viewport. After accepted() it shows the new name and waits, until it is
/// told that the name was refused or it is deleted.
class RenameEditor final : public QLineEdit {
    Q_OBJECT
public:
    RenameEditor(const FileItem& item, QWidget* viewport);
    ~RenameEditor() override;

    /// Over the place where the row draws its name, as wide as the name needs and the viewport
    /// has.
    void place(const QRect& name, bool isCentred);
    /// The name was not taken: says why, and lets the person go on.
    void refuse(const QString& sentence);
    /// What the note says; empty for none.
    QString problem() const;
    /// Which row is to be edited once this one is done: 1 the next, after Tab; -1 the one before,
    /// after Shift+Tab; else 0.
    int step() const { return step_; }

signals:
    /// A name that is another one than before and valid.
    void accepted(const QString& name);
    /// Nothing is to be changed.
    void cancelled();

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void check();
    void accept(bool mayStay);
    void layOut();

    QString oldName_;
    QRect nameRect_;
    int step_ = 0;
    bool isCentred_ = false;
    bool isWaiting_ = false;
    bool isOver_ = false;  ///< cancelled() was emitted.
    NoteBubble* note_;
};

}  // namespace tarn
