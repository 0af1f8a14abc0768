#include "desktop/notifications/DesktopNotifier.h"

#include "platform/ApplicationIdentity.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>
#include <QWidget>

namespace quillon::desktop {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
/// How long the notice stays, in milliseconds, where the service honours it.
constexpr int shownFor = 8000;

} // namespace

DesktopNotifier::DesktopNotifier(QWidget& window, QObject* parent) : QObject(parent), m_window(&window) {
    setObjectName(QStringLiteral("desktopNotifier"));
}

bool DesktopNotifier::notify(const QString& title, const QString& body) {
    if (m_window && m_window->isActiveWindow())
        return false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage message = QDBusMessage::createMethodCall(QString::fromLatin1(service), QString::fromLatin1(path),
                                                          QString::fromLatin1(service), QStringLiteral("Notify"));
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), QString::fromUtf8(platform::applicationIdentifier));
    message << QString::fromUtf8(platform::applicationName) << 0u << QString::fromUtf8(platform::applicationIdentifier)
            << title << body << QStringList() << hints << shownFor;
    // Asynchronous: a missing service costs the desk nothing.
    if (!bus.send(message))
        return false;
    emit posted(title, body);
    return true;
}

} // namespace quillon::desktop
