#include "desktop/WindowStateStore.h"

#include "platform/Preferences.h"

#include <QByteArray>
#include <QMainWindow>

namespace quillon::desktop {

namespace {

QByteArray stored(const platform::Preferences& preferences, const char* key) {
    std::string text = preferences.string(key);
    return QByteArray::fromBase64(QByteArray::fromStdString(text));
}

} // namespace

bool WindowStateStore::restore(QMainWindow& window) const {
    QByteArray geometry = stored(m_preferences, geometryKey);
    bool restored = !geometry.isEmpty() && window.restoreGeometry(geometry);
    QByteArray state = stored(m_preferences, stateKey);
    if (!state.isEmpty())
        window.restoreState(state);
    return restored;
}

void WindowStateStore::save(const QMainWindow& window) {
    m_preferences.set(geometryKey, window.saveGeometry().toBase64().toStdString());
    m_preferences.set(stateKey, window.saveState().toBase64().toStdString());
}

} // namespace quillon::desktop
