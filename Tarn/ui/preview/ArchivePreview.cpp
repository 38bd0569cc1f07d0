#include "Tarn/ui/preview/ArchivePreview.h"

#include <algorithm>
#include <optional>

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTreeView>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/files/FileKind.h"

namespace tarn {
namespace {

/// Deeper members stand no further to the right: the names must keep some room.
constexpr int deepestIndent = 8;
constexpr int deepestSmallIndent = 3;
constexpr const char* widestSize = "888.88 MB";

struct Listed {
    PreviewMembers::Members members;
    QString problem;
};

/// Enough of an item for its icon.
FileItem itemFor(const ArchiveEntry& entry) {
    FileItem item;
    item.name = std::string(entry.name());
    item.url = URL::fromPath("/").appending(item.name);
    item.isDirectory = entry.isDirectory;
    item.kind = FileKinds::classify(std::nullopt, item.url.pathExtension(), entry.isDirectory,
                                    /*isPackage=*/false);
    return item;
}

class MemberDelegate final : public QStyledItemDelegate {
public:
    MemberDelegate(const PreviewMembers& members, bool isSmall, QObject* parent)
        : QStyledItemDelegate(parent), members_(members), isSmall_(isSmall) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {0, Metrics::rowCompact};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const Colors& colors = Colors::current();
        painter->save();
        painter->setFont(option.font);
        QRect room = option.rect.adjusted(Metrics::space8, 0, -Metrics::space8, 0);
        const QString text = index.data().toString();
        if (index.column() == PreviewMembers::name) {
            const PreviewMembers::Member& member = members_.member(index.row());
            const int indent = isSmall_
                                   ? std::min(member.depth, deepestSmallIndent) * Metrics::space8
                                   : std::min(member.depth, deepestIndent) * Metrics::space16;
            const bool isMirrored = option.direction == Qt::RightToLeft;
            const auto takeFront = [&](int width) {
                isMirrored ? room.setRight(room.right() - width)
                           : room.setLeft(room.left() + width);
            };
            takeFront(indent);
            const int side = Metrics::iconSmall;
            const int x = isMirrored ? room.right() - side : room.left();
            const QRect icon(x, room.center().y() - side / 2, side, side);
            Icons::forItem(itemFor(member.entry)).paint(painter, icon);
            takeFront(side + Metrics::space6);
            painter->setPen(colors.text);
            painter->drawText(room, Qt::AlignVCenter | Qt::TextSingleLine | Qt::AlignLeading,
                              option.fontMetrics.elidedText(text, Qt::ElideMiddle, room.width()));
        } else {
            painter->setPen(colors.secondary);
            Fonts::drawTabular(*painter, room,
                               option.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight,
                               text);
        }
        painter->restore();
    }

private:
    const PreviewMembers& members_;
    bool isSmall_;
};

}  // namespace

ArchivePreview::ArchivePreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent), members_(new PreviewMembers(this)), list_(new QTreeView(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(list_);
    list_->setModel(members_);
    list_->setItemDelegate(new MemberDelegate(*members_, isSmall(), list_));
    list_->setRootIsDecorated(false);
    list_->setIndentation(0);
    list_->setUniformRowHeights(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setAccessibleName(tr("Members of the archive"));
    list_->setFocusPolicy(isSmall() ? Qt::NoFocus : Qt::StrongFocus);
    new FocusOutline(*list_);
    QHeaderView* header = list_->header();
    header->setAccessibleName(tr("Columns"));
    header->setStretchLastSection(false);
    header->setSectionResizeMode(PreviewMembers::name, QHeaderView::Stretch);
    header->setSectionResizeMode(PreviewMembers::size, QHeaderView::Fixed);
    header->resizeSection(
        PreviewMembers::size,
        Fonts::textWidth(Fonts::body(), QString::fromUtf8(widestSize)) + 2 * Metrics::space12);
    header->setVisible(!isSmall());
    setFocusProxy(list_);
}

QString ArchivePreview::fact() const {
    const int files = members_->files();
    if (files == 0) return {};
    return tr("%1, %2 unpacked").arg(Counts::files(files), Counts::bytes(members_->bytes()));
}

void ArchivePreview::load() {
    inBackground(
        this,
        [url = item().url](const CancelToken& token) -> Listed {
            try {
                return {PreviewMembers::arranged(ArchiveReader::entries(url, token)), {}};
            } catch (const Error& error) {
                return {nullptr, coreSentence(error.what())};
            }
        },
        [](ArchivePreview& self, const Listed& listed) {
            if (!listed.members) {
                emit self.failed(listed.problem);
                return;
            }
            self.members_->show(listed.members);
            self.list_->scrollToTop();
            emit self.factChanged();
            emit self.ready();
        });
}

void ArchivePreview::clear() {
    members_->show(std::make_shared<std::vector<PreviewMembers::Member>>());
}

}  // namespace tarn
