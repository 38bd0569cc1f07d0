#pragma once

#include <QtWidgets/QListView>

class QCompleter;

namespace tarn {

/// The list below a field of what its text may go on to: a card, like the menus. Only the row that
/// the arrow keys or the pointer chose is marked; the keyboard stays in the field.
class OfferList final : public QListView {
    Q_OBJECT
public:
    /// Gives `completer` such a list, which belongs to it.
    static void install(QCompleter& completer);

protected:
    bool event(QEvent* event) override;

private:
    OfferList();
};

}  // namespace tarn
