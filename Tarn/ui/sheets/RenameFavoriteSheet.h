#pragma once

#include "Tarn/model/records/Favorite.h"
#include "Tarn/ui/sheets/NameSheet.h"

namespace tarn {

class WindowModel;

/// Asks what a favourite is to be called. Its folder keeps its own name, which an empty one brings
/// back.
class RenameFavoriteSheet final : public NameSheet {
    Q_OBJECT
public:
    RenameFavoriteSheet(QWidget& window, WindowModel& model, Favorite favorite);

protected:
    Verdict judge(const std::string& name) const override;
    void take(const std::string& name) override;

private:
    WindowModel& model_;
    Favorite favorite_;
};

}  // namespace tarn
