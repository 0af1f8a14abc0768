#pragma once

class QApplication;

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// Gives the desk the system's light or dark look. "Quillon.appearance" ("light" or "dark")
/// overrides the system; otherwise a GTK theme named dark ("Adwaita:dark", "Yaru-dark") or a
/// platform palette that is already dark makes it dark. High-DPI scaling is Qt's own.
void applyAppearance(QApplication& application, const platform::Preferences& preferences);

/// True when the palette's window colour is dark.
bool isDarkPalette();

} // namespace quillon::desktop
