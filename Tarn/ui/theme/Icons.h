#pragma once

#include <string_view>

#include <QtGui/QIcon>

#include "TarnCore/files/FileItem.h"

class QPainter;

/// Our own icons, drawn from vectors at the size and ratio of the screen. Main thread only.
namespace tarn::Icons {

/// Which colour of the palette a symbol takes; it follows the palette when that changes.
enum class Tint { text, secondary, accent, danger, onAccent };

/// A one-colour icon of our set by its name ("folder.fill", "chevron.left"). An unknown name gives
/// the plain sheet "doc".
QIcon symbol(std::string_view name, Tint tint = Tint::text);
bool hasSymbol(std::string_view name);

/// The coloured icon of a file or folder: what it is, seen at a glance. Costs a few look-ups; the
/// disk is not touched.
QIcon forItem(const FileItem& item);

/// The program itself.
QIcon application();

/// The coloured icon of a folder that carries a symbol ("house", "arrow.down"); none when empty.
QIcon folder(std::string_view symbol = {});

}  // namespace tarn::Icons
