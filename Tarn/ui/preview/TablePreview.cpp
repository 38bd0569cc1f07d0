#include "Tarn/ui/preview/TablePreview.h"

#include <algorithm>
#include <optional>

#include <QtCore/QLocale>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QShortcut>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTableView>

#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/PreviewTable.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "TarnCore/preview/DelimitedText.h"
#include "TarnCore/preview/PreviewReader.h"
#include "TarnCore/preview/TextHead.h"

namespace tarn {
namespace {

constexpr int widestColumn = 280;
constexpr int narrowestColumn = 56;
/// Rows that tell how wide a column is.
constexpr int measuredRows = 60;

}  // namespace

TablePreview::TablePreview(PreviewPlace place, QWidget* parent)
    : Preview(place, parent),
      table_(new PreviewTable(this)),
      view_(new QTableView(this)),
      tabs_(new QTabBar(this)),
      note_(new QLabel(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(view_, 1);
    column->addWidget(note_);
    column->addWidget(tabs_);
    view_->setModel(table_);
    view_->setFrameShape(QFrame::NoFrame);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setWordWrap(false);
    view_->setTextElideMode(Qt::ElideRight);
    view_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view_->setAccessibleName(tr("Table"));
    view_->verticalHeader()->setDefaultSectionSize(Metrics::rowCompact);
    view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view_->verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    view_->setCornerButtonEnabled(false);
    if (isSmall()) {
        view_->setFocusPolicy(Qt::NoFocus);
        view_->setSelectionMode(QAbstractItemView::NoSelection);
        view_->verticalHeader()->hide();
        view_->horizontalHeader()->hide();
        view_->setFont(Fonts::small());
        view_->verticalHeader()->setDefaultSectionSize(Metrics::smallestTarget);
    }
    tabs_->setShape(QTabBar::RoundedSouth);
    tabs_->setDrawBase(false);
    tabs_->setExpanding(false);
    tabs_->setUsesScrollButtons(true);
    tabs_->setAccessibleName(tr("Sheets"));
    tabs_->hide();
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->setContentsMargins(Metrics::space12, Metrics::space6, Metrics::space12, Metrics::space6);
    note_->hide();
    setFocusProxy(view_);
    connect(tabs_, &QTabBar::currentChanged, this, [this](int sheet) {
        if (sheet < 0 || static_cast<std::size_t>(sheet) >= sheets_.size()) return;
        const Sheet known = sheets_[static_cast<std::size_t>(sheet)];
        if (known)
            showSheet(sheet, known);
        else
            readSheet(sheet);
    });
    auto* copy = new QShortcut(QKeySequence::Copy, view_, nullptr, nullptr, Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, this, [this] {
        const QItemSelection selection = view_->selectionModel()->selection();
        if (selection.isEmpty()) return;
        const QItemSelectionRange range = selection.first();
        QStringList lines;
        for (int row = range.top(); row <= range.bottom(); ++row) {
            QStringList cells;
            for (int cell = range.left(); cell <= range.right(); ++cell)
                cells.append(table_->index(row, cell).data().toString());
            lines.append(cells.join(u'\t'));
        }
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
    });
}

TablePreview::~TablePreview() = default;

QString TablePreview::fact() const {
    const TableSheet* sheet = table_->sheet();
    if (!sheet) return {};
    if (sheet->names.size() > 1)
        return Counts::sheets(static_cast<std::int64_t>(sheet->names.size()));
    const QString rows = QLocale().toString(table_->rowCount());
    return sheet->isCut ? tr("More than %1 rows").arg(rows) : Counts::rows(table_->rowCount());
}

void TablePreview::load() {
    isReady_ = false;
    sheets_.clear();
    const std::string ext = item().fileExtension();
    if (ext == "csv" || ext == "tsv")
        readText();
    else
        readSheet(0);
}

void TablePreview::readText() {
    inBackground(
        this,
        [item = item()](const CancelToken& token) -> Sheet {
            const auto head = TextHead::read(item.url, TextHead::mostBytes, token);
            if (!head) return nullptr;
            const char mark =
                item.fileExtension() == "tsv" ? '\t' : DelimitedText::separator(head->text);
            TableSheet sheet = DelimitedText::parse(head->text, mark);
            sheet.isCut = sheet.isCut || !head->isWhole;
            return std::make_shared<const TableSheet>(std::move(sheet));
        },
        [](TablePreview& self, const Sheet& sheet) {
            if (sheet)
                self.showSheet(0, sheet);
            else
                emit self.failed(tr("The table cannot be read."));
        });
}

void TablePreview::readSheet(int number) {
    if (!reader_) reader_ = std::make_unique<PreviewReader>();
    PreviewProtocol::Question question;
    question.ask = PreviewProtocol::Ask::sheet;
    question.first = number;
    reader_->ask(
        item().url, question, token(),
        [self = QPointer(this), generation = generation(), number](PreviewReader::Answer answer) {
            Sheet sheet;
            if (answer.outcome == PreviewReader::Outcome::answered)
                if (auto decoded = PreviewProtocol::decodeSheet(answer.bytes))
                    sheet = std::make_shared<const TableSheet>(std::move(*decoded));
            MainThread::post(self, [generation, number, sheet](TablePreview& there) {
                if (generation != there.generation()) return;
                if (sheet)
                    there.showSheet(number, sheet);
                else if (!there.isReady_)
                    emit there.failed(tr("The workbook is damaged or locked."));
            });
        });
}

void TablePreview::showSheet(int number, Sheet sheet) {
    const bool isFirst = !isReady_;
    isReady_ = true;
    if (isFirst) {
        sheets_.assign(sheet->names.size(), nullptr);
        const QSignalBlocker quiet(tabs_);
        while (tabs_->count() > 0) tabs_->removeTab(0);
        for (const std::string& name : sheet->names) tabs_->addTab(plainTitle(displayText(name)));
        tabs_->setVisible(sheet->names.size() > 1 && !isSmall());
    }
    if (static_cast<std::size_t>(number) < sheets_.size())
        sheets_[static_cast<std::size_t>(number)] = sheet;
    if (tabs_->count() > 0 && number != tabs_->currentIndex()) return;
    table_->show(sheet);
    fitColumns();
    view_->scrollToTop();
    note_->setText(
        tr("Only the first %1 rows are shown here.").arg(QLocale().toString(table_->rowCount())));
    note_->setVisible(sheet->isCut && !isSmall());
    emit factChanged();
    if (isFirst) emit ready();
}

void TablePreview::fitColumns() {
    const QFontMetrics metrics(view_->font());
    const int rows = std::min(measuredRows, table_->rowCount());
    for (int column = 0; column < table_->columnCount(); ++column) {
        int width = narrowestColumn;
        for (int row = 0; row < rows && width < widestColumn; ++row)
            width = std::max(
                width, metrics.horizontalAdvance(table_->index(row, column).data().toString()) +
                           2 * Metrics::space12);
        view_->setColumnWidth(column, std::min(width, widestColumn));
    }
}

void TablePreview::clear() {
    table_->show(nullptr);
    sheets_.clear();
    isReady_ = false;
    tabs_->hide();
    note_->hide();
}

}  // namespace tarn
