#pragma once

class QMainWindow;

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// Keeps the window's size, position, docks and toolbars in the user's preferences, so the desk
/// opens as it was left.
class WindowStateStore {
public:
    static constexpr const char* geometryKey = "Quillon.desktop.windowGeometry";
    static constexpr const char* stateKey = "Quillon.desktop.windowState";

    /// `preferences` must outlive the store.
    explicit WindowStateStore(platform::Preferences& preferences) : m_preferences(preferences) {}

    /// False when nothing was stored (the caller picks a first-start size).
    bool restore(QMainWindow& window) const;
    void save(const QMainWindow& window);

private:
    platform::Preferences& m_preferences;
};

} // namespace quillon::desktop
