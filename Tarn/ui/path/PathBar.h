#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QtWidgets/QWidget>

#include "Tarn/model/records/Location.h"
#include "TarnCore/base/URL.h"

class QToolButton;

namespace tarn {

class CrumbButton;
class PathEdit;
struct FileDrop;

/// Where the pane is: the folders on the way as buttons, or the path as text. What has no room is
/// folded on the left into a menu. The disk is never touched on the main thread.
class PathBar final : public QWidget {
    Q_OBJECT
public:
    explicit PathBar(QWidget* parent = nullptr);
    ~PathBar() override;

    /// Shows a folder. Ends editing.
    void setLocation(const URL& folder);
    /// Shows a folder inside an archive, "" for its top; the archive is one of the crumbs.
    void setArchive(const URL& archive, const std::string& inside);
    /// Shows a place that is no folder: one crumb.
    void setPlace(std::string_view symbol, const QString& title);
    const URL& location() const { return location_; }
    void setIncludeHidden(bool include);

    /// Turns the crumbs into text, all selected.
    void beginEditing();
    /// Back to the crumbs; what was typed is dropped.
    void endEditing();
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// In a tab of its own.
    void chosenAside(const tarn::Location& place);
    void folderChosen(const tarn::URL& folder);
    void archiveChosen(const tarn::URL& archive, const std::string& inside);
    /// The typed path is a file: its folder is meant, with the file selected.
    void fileChosen(const tarn::URL& file);
    /// Files were let go over one of the crumbs.
    void dropped(const tarn::FileDrop& drop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Crumb {
        URL url;
        std::optional<std::string> inside;  ///< The path inside the archive `url`.
        CrumbButton* button;
    };
    void rebuild();
    void layoutCrumbs();
    void showFolded();
    void choose(const URL& url, const std::optional<std::string>& inside);
    CrumbButton* makeButton(const QString& text, std::string_view symbol);
    void addCrumb(const QString& text, std::string_view symbol, const URL& url,
                  const std::optional<std::string>& inside = std::nullopt);
    void addFolders(const URL& folder);

    URL location_;
    std::optional<std::string> inside_;  ///< `location_` is an archive.
    QString placeTitle_;                 ///< Empty while a folder is shown.
    std::string placeSymbol_;
    std::vector<Crumb> crumbs_;
    std::size_t firstShown_ = 0;
    QToolButton* folded_;
    PathEdit* edit_;
};

}  // namespace tarn
