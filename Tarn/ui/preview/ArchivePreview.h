#pragma once

#include "Tarn/model/PreviewMembers.h"
#include "Tarn/ui/preview/Preview.h"

class QLabel;
class QTreeView;

namespace tarn {

/// What is in an archive: every member with its size, folders before what is in them.
class ArchivePreview final : public Preview {
    Q_OBJECT
public:
    explicit ArchivePreview(PreviewPlace place, QWidget* parent = nullptr);

    QString fact() const override;
    PreviewMembers& members() { return *members_; }

protected:
    void load() override;
    void clear() override;

private:
    PreviewMembers* members_;
    QTreeView* list_;
};

}  // namespace tarn
