#include "Tarn/model/PreviewFacts.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/preview/PreviewKind.h"
#include "TarnCore/sources/SourceResolver.h"

namespace tarn {
namespace {

QString qstring(const std::string& text) { return QString::fromStdString(text); }

class Lines {
public:
    void add(const QString& label, const QString& value) {
        if (!value.isEmpty()) lines.push_back({label, value});
    }
    void add(const QString& label, const std::optional<Date>& date) {
        if (date) add(label, qstring(Format::date(date)));
    }
    void add(const QString& label, const std::optional<std::string>& text) {
        if (text) add(label, displayText(*text));
    }
    std::vector<PreviewFact> lines;
};

/// "2.4 MB (2,412,345 bytes)"; the second part only where it says more.
QString sizeText(std::int64_t bytes) {
    const QString rounded = Counts::bytes(bytes);
    if (bytes < 1000) return rounded;
    return PreviewFacts::tr("%1 (%2 bytes)").arg(rounded, QLocale().toString(qlonglong{bytes}));
}

QString takenText(const std::string& exif) {
    const QDateTime taken =
        QDateTime::fromString(qstring(exif).left(19), QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    return taken.isValid() ? QLocale().toString(taken, QLocale::ShortFormat) : QString();
}

QString dimensions(const ItemMetadata& metadata) {
    if (!metadata.pixelWidth || !metadata.pixelHeight) return {};
    const QLocale locale;
    return PreviewFacts::tr("%1 × %2").arg(locale.toString(*metadata.pixelWidth),
                                           locale.toString(*metadata.pixelHeight));
}

void addMetadata(Lines& out, const ItemMetadata& metadata) {
    out.add(PreviewFacts::tr("Dimensions"), dimensions(metadata));
    if (metadata.duration)
        out.add(PreviewFacts::tr("Duration"), qstring(Format::duration(*metadata.duration)));
    out.add(PreviewFacts::tr("Title"), metadata.title);
    out.add(PreviewFacts::tr("Artist"), metadata.artist);
    out.add(PreviewFacts::tr("Album"), metadata.album);
    out.add(PreviewFacts::tr("Camera"), metadata.camera());
    out.add(PreviewFacts::tr("Lens"), metadata.lens);
    if (metadata.photoTaken) out.add(PreviewFacts::tr("Taken"), takenText(*metadata.photoTaken));
    if (metadata.pages) out.add(PreviewFacts::tr("Pages"), QLocale().toString(*metadata.pages));
    QStringList codecs;
    for (const std::string& codec : metadata.codecs) codecs.append(displayText(codec));
    out.add(PreviewFacts::tr("Codecs"), codecs.join(QStringLiteral(", ")));
}

void addSource(Lines& out, const PreviewFacts& facts) {
    if (facts.source) out.add(PreviewFacts::tr("Source"), displayText(facts.source->name));
    if (!facts.whereFroms.empty())
        out.add(PreviewFacts::tr("Where From"), displayText(facts.whereFroms.front()));
    if (facts.whereFroms.size() > 1 && facts.whereFroms[1] != facts.whereFroms[0])
        out.add(PreviewFacts::tr("Page"), displayText(facts.whereFroms[1]));
}

void addPermissions(Lines& out, const ItemPermissions& found) {
    if (found.count == 0) return;
    out.add(PreviewFacts::tr("Owner"), found.owner);
    out.add(PreviewFacts::tr("Access"), found.access + u'\n' + found.bits());
}

}  // namespace

PreviewFacts PreviewFacts::read(const FileItem& item) {
    PreviewFacts facts;
    const Platform& platform = Platform::current();
    facts.whereFroms = SourceResolver::whereFroms(item.url);
    facts.source = SourceResolver::source(item.url);
    // Poppler stays out of this process: the preview of the pages counts them.
    const bool hasMetadata = !item.isDirectory && PreviewKinds::of(item) != PreviewKind::pdf &&
                             (item.kind == FileKind::image || item.kind == FileKind::video ||
                              item.kind == FileKind::audio);
    if (hasMetadata) facts.metadata = platform.metadata->read(item.url);
    facts.permissions = ItemPermissions::read({item.url});
    facts.metadata.lastOpened = platform.metadata->lastOpened(item.url);
    if (item.isSymlink) {
        try {
            facts.linkTarget = platform.files->linkTarget(item.url);
        } catch (const std::system_error&) {
            facts.linkTarget.reset();  // It has just gone.
        }
    }
    return facts;
}

std::vector<PreviewFact> PreviewFacts::lines(const FileItem& item, const PreviewFacts* facts,
                                             const QString& found) {
    Lines out;
    out.add(tr("Kind"), kindText(item));
    if (!item.isDirectory && item.size) out.add(tr("Size"), sizeText(*item.size));
    switch (PreviewKinds::of(item)) {
        case PreviewKind::pdf:
        case PreviewKind::folder:
        case PreviewKind::archive:
        case PreviewKind::table:
        case PreviewKind::font:
            out.add(tr("Contents"), found);
            break;
        case PreviewKind::image:
            if (!facts || !facts->metadata.pixelWidth) out.add(tr("Dimensions"), found);
            break;
        default:
            break;
    }
    if (facts) addMetadata(out, facts->metadata);
    out.add(tr("Created"), item.created);
    out.add(tr("Modified"), item.modified);
    out.add(tr("Added"), item.added);
    if (facts) {
        out.add(tr("Opened"), facts->metadata.lastOpened);
        addSource(out, *facts);
        out.add(tr("Link To"), facts->linkTarget);
    }
    out.add(tr("Where"), displayText(Paths::abbreviate(item.url.parent())));
    if (facts) addPermissions(out, facts->permissions);
    return out.lines;
}

std::vector<PreviewFact> PreviewFacts::lines(const std::vector<FileItem>& items) {
    std::array<std::int64_t, allFileKinds.size()> counts{};
    std::int64_t bytes = 0;
    bool hasFolders = false;
    std::optional<Date> oldest;
    std::optional<Date> newest;
    for (const FileItem& item : items) {
        ++counts[static_cast<std::size_t>(item.kind)];
        hasFolders |= item.isDirectory;
        bytes += item.isDirectory ? 0 : item.size.value_or(0);
        if (!item.modified) continue;
        if (!oldest || *item.modified < *oldest) oldest = item.modified;
        if (!newest || *newest < *item.modified) newest = item.modified;
    }
    Lines out;
    out.add(hasFolders ? tr("Size of Files") : tr("Total Size"), sizeText(bytes));
    QStringList kinds;
    for (const FileKind kind : allFileKinds) {
        const std::int64_t count = counts[static_cast<std::size_t>(kind)];
        if (count == 0) continue;
        const QString title = coreText(FileKinds::title(kind));
        kinds.append(tr("%1: %2").arg(title, QLocale().toString(qlonglong{count})));
    }
    out.add(tr("Kinds"), kinds.join(u'\n'));
    if (oldest && newest && Format::date(oldest) != Format::date(newest)) {
        out.add(tr("Oldest"), oldest);
        out.add(tr("Newest"), newest);
    } else {
        out.add(tr("Modified"), newest);
    }
    return out.lines;
}

}  // namespace tarn
