#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {

class MemberFolder;

/// A member of an archive as a file that can be looked at.
///
/// Main thread only. One member at a time is unpacked into a private temporary folder, on a queue
/// of its own; it goes when another one is asked for, with drop(), and with this object.
class MemberFile final : public QObject {
    Q_OBJECT
public:
    /// Bytes, unpacked. More takes longer than one looks at anything, and may fill the disk.
    static constexpr std::int64_t largest = 256'000'000;

    explicit MemberFile(QObject* parent = nullptr);
    ~MemberFile() override;

    /// Asks for a member in place of what was asked for before; ready() or failed() follows, once.
    /// `size` is what the archive says of it.
    void take(const URL& archive, const std::string& member, std::optional<std::int64_t> size);
    void drop();

signals:
    /// The file as its folder lists it. It stays until the next call of take() or drop().
    void ready(const tarn::FileItem& file);
    /// It cannot be shown, for this reason. Empty for a link, which leads out of the archive.
    void failed(const QString& sentence);

private:
    std::uint64_t request_ = 0;  ///< Counts calls; the answer to an older one is dropped.
    CancelToken token_;
    std::unique_ptr<MemberFolder> folder_;  ///< Touched on queue_ only.
    SerialQueue queue_{"tarn.member"};
};

}  // namespace tarn
