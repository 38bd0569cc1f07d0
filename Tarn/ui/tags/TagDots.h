#pragma once

#include <vector>

#include <QtCore/QRectF>
#include <QtGui/QColor>
#include <QtGui/QIcon>

#include "TarnCore/tags/FinderTag.h"

class QPainter;

/// The coloured dots of tags.
namespace tarn::TagDots {

/// More tags than this show as the first ones.
inline constexpr std::size_t mostShown = 3;

/// Of a row of dots; 0 without tags.
int width(std::size_t tags);
/// The dots of the tags in their order, each lapping over the one behind it, centred in height at
/// the left of `rect`. `ground` is what lies below.
void paint(QPainter& painter, const QRectF& rect, const std::vector<TagColor>& tags,
           const QColor& ground);

/// How a tag stands with what is selected.
enum class Share { none, some, all };
/// One dot, large, with a mark for its share.
void paintLarge(QPainter& painter, const QRectF& rect, TagColor color, Share share);
/// The same for menus.
QIcon icon(TagColor color, Share share);

}  // namespace tarn::TagDots
