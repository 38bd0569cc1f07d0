#include "Tarn/ui/inspector/TagEditor.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/inspector/TagChip.h"
#include "Tarn/ui/search/FlowLayout.h"
#include "Tarn/ui/tags/TagMenu.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

TagEditor::TagEditor(QWidget* parent)
    : QWidget(parent), flow_(new FlowLayout(this, Metrics::space4)), add_(new QToolButton(this)) {
    flow_->setContentsMargins(0, 0, 0, 0);
    add_->setAutoRaise(true);
    add_->setIcon(Icons::symbol("plus", Icons::Tint::secondary));
    add_->setIconSize({Metrics::space12, Metrics::space12});
    add_->setText(tr("Add Tag"));
    add_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    add_->setMinimumHeight(Metrics::chipHeight);
    add_->setFocusPolicy(Qt::StrongFocus);
    connect(add_, &QToolButton::clicked, this, &TagEditor::openMenu);
    flow_->addWidget(add_);
    setAccessibleName(tr("Tags"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void TagEditor::setItems(WindowModel* window, const std::vector<FileItem>& items) {
    window_ = window;
    for (QWidget* chip : chips_) {
        flow_->removeWidget(chip);
        chip->hide();
        chip->deleteLater();  // It may be the one that was clicked.
    }
    chips_.clear();
    flow_->removeWidget(add_);
    std::vector<std::pair<std::string, std::size_t>> tags;  // with how many items have it
    for (const FileItem& item : items) {
        for (const std::string& name : item.tags) {
            const auto found = std::find_if(tags.begin(), tags.end(),
                                            [&](const auto& tag) { return tag.first == name; });
            if (found == tags.end())
                tags.emplace_back(name, 1);
            else
                ++found->second;
        }
    }
    for (const auto& [name, count] : tags) {
        const auto carrier = std::find_if(items.begin(), items.end(), [&name](const auto& item) {
            return std::find(item.tags.begin(), item.tags.end(), name) != item.tags.end();
        });
        const TagColor color =
            window ? window->app().tagColors().color(name, carrier->url) : TagColor::none;
        auto* chip = new TagChip({name, color}, count == items.size(), this);
        connect(chip, &TagChip::removeRequested, this, [this, name = name] {
            if (window_) window_->edits().removeTag(name);
        });
        chips_.push_back(chip);
        flow_->addWidget(chip);
        chip->show();
    }
    flow_->addWidget(add_);
    add_->setText(tags.empty() ? tr("Add Tag") : QString());
    add_->setToolButtonStyle(tags.empty() ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
    add_->setAccessibleName(tr("Add Tag"));
    add_->setToolTip(tr("Add Tag"));
    add_->setVisible(window != nullptr);
    setFixedHeight(flow_->heightForWidth(std::max(1, width())));
}

void TagEditor::openMenu() {
    if (!window_) return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    TagMenu::addNames(*menu, *window_);
    menu->popup(add_->mapToGlobal(QPoint(0, add_->height() + Metrics::space4)));
}

void TagEditor::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // As many lines as the chips need at this width.
    setFixedHeight(flow_->heightForWidth(width()));
}

}  // namespace tarn
