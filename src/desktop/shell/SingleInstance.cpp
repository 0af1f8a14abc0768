#include "desktop/shell/SingleInstance.h"

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QVariant>

#include <unistd.h>

namespace quillon::desktop {

namespace {

// One absolute path a line, then an empty line: the running window knows the request is whole.
QByteArray encode(const QStringList& files) {
    QByteArray bytes;
    for (const QString& file : files)
        bytes += file.toUtf8() + '\n';
    return bytes + '\n';
}

} // namespace

QString SingleInstance::socketName(const QString& libraryKey) {
    QByteArray digest = QCryptographicHash::hash(libraryKey.toUtf8(), QCryptographicHash::Sha256).toHex().left(12);
    return QStringLiteral("io.veltra.qln-%1-%2").arg(getuid()).arg(QString::fromLatin1(digest));
}

SingleInstance::SingleInstance(QString name, QObject* parent) : QObject(parent), m_name(std::move(name)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::handToRunning(const QStringList& files, int timeoutMs) const {
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    socket.write(encode(files));
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    // The running window answers once it has read the whole request.
    return socket.waitForReadyRead(timeoutMs) && socket.readAll().startsWith("ok");
}

bool SingleInstance::listen() {
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(m_name)) {
        // A socket left by a process that died: nobody answered handToRunning, so take it over.
        QLocalServer::removeServer(m_name);
        if (!m_server->listen(m_name))
            return false;
    }
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::onConnection);
    return true;
}

void SingleInstance::onConnection() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            QByteArray buffered = socket->property("buffered").toByteArray() + socket->readAll();
            if (!buffered.endsWith("\n\n") && buffered != "\n") {
                socket->setProperty("buffered", buffered);
                return;
            }
            QStringList files;
            for (const QByteArray& line : buffered.split('\n')) {
                if (!line.isEmpty())
                    files << QString::fromUtf8(line);
            }
            socket->write("ok\n");
            socket->flush();
            emit filesReceived(files);
        });
    }
}

} // namespace quillon::desktop
