#include "Tarn/ui/transfers/TransferText.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "TarnCore/files/Format.h"

namespace tarn::TransferText {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::TransferText)
};

QString formatted(const std::string& text) { return QString::fromStdString(text); }

QString doneOfTotal(const TransferProgress& progress) {
    if (progress.totalBytes > 0)
        return Words::tr("%1 of %2")
            .arg(Counts::bytes(progress.doneBytes), Counts::bytes(progress.totalBytes));
    if (progress.totalItems > 0)
        return Words::tr("%1 of %2", "number of items")
            .arg(QString::number(progress.doneItems), Counts::items(progress.totalItems));
    return {};
}

}  // namespace

QString detail(const TransferProgress& progress, std::optional<double> secondsLeft, bool isQueued) {
    const QString separator = QStringLiteral(" · ");
    if (isQueued) return Words::tr("Waiting for another transfer between these disks");
    switch (progress.state) {
        case TransferState::queued:
        case TransferState::scanning:
            return Words::tr("Preparing…");
        case TransferState::waiting:
            return Words::tr("Waiting for your answer");
        case TransferState::finished:
            return Words::tr("Done");
        case TransferState::cancelled:
            return Words::tr("Stopped");
        case TransferState::paused:
        case TransferState::running:
            break;
    }
    if (progress.isFinishingWriting) return Words::tr("Finishing writing…");
    QStringList parts;
    if (progress.state == TransferState::paused) parts << Words::tr("Paused");
    if (const QString done = doneOfTotal(progress); !done.isEmpty()) parts << done;
    if (progress.state == TransferState::running) {
        if (progress.bytesPerSecond > 0 && progress.totalBytes > 0)
            parts << formatted(Format::speed(progress.bytesPerSecond));
        if (secondsLeft) parts << coreSentence(Format::timeRemaining(secondsLeft));
    }
    return parts.join(separator);
}

QString failures(TransferKind kind, std::size_t count) {
    const QString items = Counts::items(static_cast<std::int64_t>(count));
    return kind == TransferKind::copy ? Words::tr("%1 couldn’t be copied").arg(items)
                                      : Words::tr("%1 couldn’t be moved").arg(items);
}

const char* symbol(TransferKind kind) {
    switch (kind) {
        case TransferKind::copy:
            return "doc.on.doc";
        case TransferKind::move:
            return "arrow.right.doc.on.clipboard";
        case TransferKind::trash:
            return "trash";
    }
    return "doc.on.doc";
}

}  // namespace tarn::TransferText
