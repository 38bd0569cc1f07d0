#include "Tarn/ui/quicksearch/QuickSearch.h"

#include "Tarn/model/AppModel.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/ui/desktop/AppRequests.h"
#include "Tarn/ui/quicksearch/QuickSearchKey.h"
#include "Tarn/ui/quicksearch/QuickSearchPanel.h"

namespace tarn {
namespace {

QuickSearch* shared = nullptr;

}  // namespace

QuickSearch::QuickSearch(AppModel& app, const QDBusConnection& portalBus, xcb_connection_t* display,
                         QObject* parent)
    : QObject(parent), app_(app), key_(std::make_unique<QuickSearchKey>(app, portalBus, display)) {
    shared = this;
    const auto stay = [this] {
        const bool wants = key_->state() == QuickSearchKey::State::ready;
        if (wants && !staying_)
            staying_.emplace();
        else if (!wants)
            staying_.reset();
    };
    connect(key_.get(), &QuickSearchKey::changed, this, stay);
    connect(key_.get(), &QuickSearchKey::pressed, this, &QuickSearch::open);
    stay();
}

QuickSearch::~QuickSearch() {
    if (panel_) panel_->disconnect(this);
    delete panel_;
    if (shared == this) shared = nullptr;
}

QuickSearch* QuickSearch::current() { return shared; }

QuickSearchPanel* QuickSearch::panel() const { return panel_; }

void QuickSearch::open(const std::string& activationToken) {
    if (panel_) return AppRequests::raise(*panel_, activationToken);
    panel_ = new QuickSearchPanel(app_);
    connect(panel_, &QuickSearchPanel::openRequested, this, &QuickSearch::openItem);
    connect(panel_, &QuickSearchPanel::revealRequested, this, [this](const FileItem& item) {
        emit placeRequested(Location::folder(item.url.parent()), {item.url});
    });
    showing_.emplace();
    connect(panel_, &QObject::destroyed, this, [this] { showing_.reset(); });
    panel_->prepare();
    AppRequests::raise(*panel_, activationToken);
}

void QuickSearch::openItem(const FileItem& item) {
    if (!item.isBrowsable())
        emit fileRequested(item.url);
    else if (item.isDirectory)
        emit placeRequested(Location::folder(item.url), {});
    else
        emit placeRequested(Location::archive(item.url, {}), {});
}

}  // namespace tarn
