// The status bar's word on the screens beyond the mesh, fed by a real live page on loopback.
#include "desktop/mesh/OutletIndicator.h"
#include "desktop/DeskFixture.h"
#include "desktop/mesh/MeshLink.h"
#include "platform/Preferences.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

quint16 freeLoopbackPort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

} // namespace

class OutletIndicatorTest : public QObject {
    Q_OBJECT
private slots:
    void showsEachOutletSwitchedOnAndFollowsItsState() {
        DeskFixture desk;
        const quint16 port = freeLoopbackPort();
        QVERIFY(port != 0);
        platform::Preferences& preferences = desk.services().preferences();
        preferences.set("Quillon.screens.livePage", true);
        preferences.set("Quillon.screens.livePage.port", port);
        MeshLink mesh(preferences);
        QWidget statusBar;
        auto* indicator = new OutletIndicator(mesh, &statusBar);
        QVERIFY2(!indicator->isVisibleTo(&statusBar), "nothing to show before the outlets start");

        mesh.start();
        QLabel* page = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((page = indicator->findChild<QLabel*>(QStringLiteral("outletStatus:live page"))),
                                 10000);
        QCOMPARE(page->text(), QStringLiteral("live page: serving"));
        QVERIFY(indicator->isVisibleTo(&statusBar));
        QCOMPARE(page->accessibleName(), page->text());
        const QString url = QStringLiteral("http://127.0.0.1:%1/").arg(port);
        QVERIFY2(page->toolTip().startsWith(QStringLiteral("live page: serving ") + url), qPrintable(page->toolTip()));
        QVERIFY2(page->toolTip().contains(QStringLiteral("(0 open)")), qPrintable(page->toolTip()));
        QCOMPARE(page->accessibleDescription(), page->toolTip());
        // OpenLP and BibleSync are off, so they have no label.
        QCOMPARE(indicator->findChildren<QLabel*>().size(), 1);

        // A tab opening the page changes the outlet's state; the label follows unasked.
        QTcpSocket tab;
        tab.connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(tab.waitForConnected(5000));
        QTRY_VERIFY2_WITH_TIMEOUT(page->toolTip().contains(QStringLiteral("(1 open)")), qPrintable(page->toolTip()),
                                  5000);
    }

    void hidesWhenNoOutletIsOn() {
        DeskFixture desk;
        MeshLink mesh(desk.services().preferences());
        QWidget statusBar;
        auto* indicator = new OutletIndicator(mesh, &statusBar);
        QSignalSpy started(&mesh, &MeshLink::stateChanged);
        mesh.start();
        QVERIFY(started.wait(10000));
        indicator->refresh();
        QVERIFY(!indicator->isVisibleTo(&statusBar));
        QVERIFY(indicator->findChildren<QLabel*>().isEmpty());
    }
};

std::unique_ptr<QObject> makeOutletIndicatorTest() {
    return std::make_unique<OutletIndicatorTest>();
}

#include "OutletIndicatorTest.moc"
