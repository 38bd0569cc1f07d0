#pragma once

class QLineEdit;

namespace tarn::ClearButton {

/// Puts a ✕ at the end of a field that empties it, and says so to those who cannot see it.
void add(QLineEdit& field);

}  // namespace tarn::ClearButton
