#pragma once

class QAbstractItemView;

namespace tarn {

/// What a key asks of the list below a field that keeps the keyboard.
struct ListKey {
    enum class Wish { none, close, move, choose };
    Wish wish = Wish::none;
    int rows = 0;  ///< How far down a move goes.

    /// `page` is how many rows are seen at once.
    static ListKey of(int key, int page);

    /// Has readers of the screen follow the row that is marked, as they would follow the keyboard.
    static void tellMarked(QAbstractItemView& list, int row);
};

}  // namespace tarn
