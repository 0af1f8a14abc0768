// Long work that finishes behind other windows reaches the preacher through the freedesktop
// notification service. Run under dbus-run-session: a stand-in service on that private bus
// records what arrives.
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/notifications/DesktopNotifier.h"
#include "desktop/shell/BackgroundTask.h"
#include "desktop/shell/DeskCommands.h"

#include <QDBusConnection>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantMap>
#include <QWidget>

using namespace quillon::desktop;
using namespace quillon::desktop::testing;

class NotificationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList summaries;
    QString application;

public slots:
    uint Notify(const QString& app, uint, const QString&, const QString& summary, const QString& body,
                const QStringList&, const QVariantMap&, int) {
        application = app;
        summaries << summary + u'|' + body;
        return static_cast<uint>(summaries.size());
    }
};

class NotificationTest : public QObject {
    Q_OBJECT

private slots:
    void postsThroughTheNotificationServiceWhenTheWindowIsBehind() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            QSKIP("no session bus; run under dbus-run-session");
        NotificationService service;
        QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &service,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
        QWidget window;
        DesktopNotifier notifier(window);
        QVERIFY(notifier.notify(QStringLiteral("Export Ready"), QStringLiteral("Grace.docx")));
        QTRY_COMPARE(service.summaries, QStringList{QStringLiteral("Export Ready|Grace.docx")});
        QCOMPARE(service.application, QStringLiteral("Quillon"));
        bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
        bus.unregisterObject(QStringLiteral("/org/freedesktop/Notifications"));
    }

    void longWorkThatEndsBehindOtherWindowsIsAnnouncedWithTheControllersWords() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            QSKIP("no session bus; run under dbus-run-session");
        NotificationService service;
        QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &service,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
        DeskFixture desk({sermonTitled("Grace Abounding")});
        MainWindow window(desk.services());
        QTemporaryDir out;
        // The window under test is never the active one, as when the preacher works elsewhere.
        QPointer<BackgroundTask> backup = window.commands().backUpTo(out.path());
        QVERIFY(backup);
        QTRY_COMPARE_WITH_TIMEOUT(service.summaries, QStringList{QStringLiteral("Backup Complete|Saved 1 sermon")},
                                  20000);
        bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
        bus.unregisterObject(QStringLiteral("/org/freedesktop/Notifications"));
    }
};

std::unique_ptr<QObject> makeNotificationTest() {
    return std::make_unique<NotificationTest>();
}

#include "NotificationTest.moc"
