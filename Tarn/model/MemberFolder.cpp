#include "Tarn/model/MemberFolder.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include "TarnCore/files/ArchiveError.h"

namespace tarn {
namespace {

constexpr const char* beginning = "/Tarn-Members-";

}  // namespace

MemberFolder::MemberFolder()
    : folder_(std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String(beginning) +
                                              QStringLiteral("XXXXXX"))) {
    if (!folder_->isValid()) throw ArchiveError::unreadable("There is no room to unpack it.");
}

MemberFolder::~MemberFolder() = default;

URL MemberFolder::url() const { return URL::fromPath(folder_->path().toStdString()); }

bool MemberFolder::holds(const URL& file) {
    return file.path().find(beginning) != std::string::npos;
}

}  // namespace tarn
