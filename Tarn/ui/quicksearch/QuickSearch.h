#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QEventLoopLocker>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtDBus/QDBusConnection>

struct xcb_connection_t;

namespace tarn {

class AppModel;
class QuickSearchKey;
class QuickSearchPanel;
class URL;
struct FileItem;
struct Location;

/// The quick search: its keys, and its panel, which any program can be in front of.
///
/// Main thread only. While keys open it, the program goes on without a window.
class QuickSearch final : public QObject {
    Q_OBJECT
public:
    /// `portalBus` is used for nothing else; `display` is null without an X server. Both and `app`
    /// outlive it.
    QuickSearch(AppModel& app, const QDBusConnection& portalBus, xcb_connection_t* display,
                QObject* parent = nullptr);
    ~QuickSearch() override;

    /// The one of this process; null where there is none, as in tests of other parts.
    static QuickSearch* current();

    QuickSearchKey& key() { return *key_; }
    /// Null while it is not shown.
    QuickSearchPanel* panel() const;

    /// Shows the panel, or brings the one that is shown to the front. `activationToken` lets it
    /// take the keyboard where a desktop asks for one.
    void open(const std::string& activationToken = {});

signals:
    /// A folder, or an archive, is to be shown in a window; `select` in it, where it is not empty.
    void placeRequested(const tarn::Location& place, const std::vector<tarn::URL>& select);
    void fileRequested(const tarn::URL& file);

private:
    void openItem(const FileItem& item);

    AppModel& app_;
    std::unique_ptr<QuickSearchKey> key_;
    QPointer<QuickSearchPanel> panel_;
    std::optional<QEventLoopLocker> staying_;  ///< While there are keys.
    std::optional<QEventLoopLocker> showing_;  ///< While there is a panel, which is no window.
};

}  // namespace tarn
