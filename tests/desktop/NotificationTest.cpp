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
    /// Serves on the session bus for its lifetime, so a failing test leaves the name free.
    NotificationService() {
        m_serving = m_bus.registerObject(path, this, QDBusConnection::ExportAllSlots) && m_bus.registerService(name);
    }
    ~NotificationService() override {
        m_bus.unregisterService(name);
        m_bus.unregisterObject(path);
    }
    bool isServing() const { return m_serving; }

    QStringList summaries;
    QString application;

    static inline const QString name = QStringLiteral("org.freedesktop.Notifications");
    static inline const QString path = QStringLiteral("/org/freedesktop/Notifications");

public slots:
    uint Notify(const QString& app, uint, const QString&, const QString& summary, const QString& body,
                const QStringList&, const QVariantMap&, int) {
        application = app;
        summaries << summary + u'|' + body;
        return static_cast<uint>(summaries.size());
    }

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
    bool m_serving = false;
};

class NotificationTest : public QObject {
    Q_OBJECT

private slots:
    void postsThroughTheNotificationServiceWhenTheWindowIsBehind() {
        if (!QDBusConnection::sessionBus().isConnected())
            QSKIP("no session bus; run under dbus-run-session");
        NotificationService service;
        QVERIFY(service.isServing());
        QWidget window;
        DesktopNotifier notifier(window);
        QVERIFY(notifier.notify(QStringLiteral("Export Ready"), QStringLiteral("Grace.docx")));
        QTRY_COMPARE(service.summaries, QStringList{QStringLiteral("Export Ready|Grace.docx")});
        QCOMPARE(service.application, QStringLiteral("Quillon"));
    }

    void longWorkThatEndsBehindOtherWindowsIsAnnouncedWithTheControllersWords() {
        if (!QDBusConnection::sessionBus().isConnected())
            QSKIP("no session bus; run under dbus-run-session");
        NotificationService service;
        QVERIFY(service.isServing());
        DeskFixture desk({sermonTitled("Grace Abounding")});
        MainWindow window(desk.services());
        QTemporaryDir out;
        // The window under test is never the active one, as when the preacher works elsewhere.
        QPointer<BackgroundTask> backup = window.commands().backUpTo(out.path());
        QVERIFY(backup);
        QTRY_COMPARE_WITH_TIMEOUT(service.summaries, QStringList{QStringLiteral("Backup Complete|Saved 1 sermon")},
                                  20000);
    }
};

std::unique_ptr<QObject> makeNotificationTest() {
    return std::make_unique<NotificationTest>();
}

#include "NotificationTest.moc"
