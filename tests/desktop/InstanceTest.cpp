#include "desktop/shell/SingleInstance.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QtConcurrent>

#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace quillon::desktop;

class InstanceTest : public QObject {
    Q_OBJECT

private slots:
    void nobodyListeningMeansThisStartRunsTheWindow() {
        SingleInstance instance(SingleInstance::socketName(QStringLiteral("/nobody/listens/here")));
        QVERIFY(!instance.handToRunning({QStringLiteral("/tmp/a.quillet")}, 200));
    }

    void socketNameDependsOnTheLibrary() {
        QCOMPARE(SingleInstance::socketName(QStringLiteral("/a")), SingleInstance::socketName(QStringLiteral("/a")));
        QVERIFY(SingleInstance::socketName(QStringLiteral("/a")) != SingleInstance::socketName(QStringLiteral("/b")));
        QVERIFY(SingleInstance::socketName({}) != SingleInstance::socketName(QStringLiteral("/a")));
    }

    void filesReachTheRunningWindowWhole_data() {
        QTest::addColumn<QStringList>("files");
        QTest::newRow("nothing: just come forward") << QStringList{};
        QTest::newRow("one sermon") << QStringList{"/home/ann/Easter.quillet"};
        QTest::newRow("spaces and accents")
            << QStringList{"/home/ann/Sermons à lire/Pâques 2025.quillet", "/home/ann/Quillon.vrnsermons"};
    }
    void filesReachTheRunningWindowWhole() {
        QFETCH(QStringList, files);
        QString name = SingleInstance::socketName(QStringLiteral("instance-test-%1").arg(QTest::currentDataTag()));
        SingleInstance running(name);
        QVERIFY(running.listen());
        QSignalSpy received(&running, &SingleInstance::filesReceived);
        // The later start blocks while it waits for the answer, so it runs on another thread.
        QFuture<bool> handed =
            QtConcurrent::run([name, files] { return SingleInstance(name).handToRunning(files, 5000); });
        QVERIFY(received.wait(5000));
        QCOMPARE(received.at(0).at(0).toStringList(), files);
        QTRY_VERIFY(handed.isFinished());
        QVERIFY(handed.result());
    }

    void aSocketLeftByADeadWindowIsTakenOver() {
        QString name = SingleInstance::socketName(QStringLiteral("instance-test-stale"));
        // A window killed outright leaves its socket file behind, bound to nobody.
        QByteArray path = (QDir::tempPath() + u'/' + name).toUtf8();
        int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
        QCOMPARE(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        ::close(fd);
        QVERIFY(QFileInfo::exists(QString::fromUtf8(path)));
        QVERIFY(!SingleInstance(name).handToRunning({}, 200));
        SingleInstance next(name);
        QVERIFY(next.listen());
    }
};

std::unique_ptr<QObject> makeInstanceTest() {
    return std::make_unique<InstanceTest>();
}

#include "InstanceTest.moc"
