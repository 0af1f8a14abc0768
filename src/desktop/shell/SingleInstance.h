#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <filesystem>

class QLocalServer;

namespace quillon::desktop {

/// Keeps one window per library: the first process listens on a local socket named for the user
/// and the library, and a later start hands its files to it and exits.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    /// The socket name for `libraryKey` (the --library folder, or empty for the preferences' choice).
    static QString socketName(const QString& libraryKey);

    explicit SingleInstance(QString name, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Hands `files` to a running instance; true when one took them (the caller then exits).
    bool handToRunning(const QStringList& files, int timeoutMs = 1000) const;
    /// Starts listening; false when the name could not be claimed.
    bool listen();

signals:
    /// A later start asked this window to come forward and open `files` (absolute paths).
    void filesReceived(const QStringList& files);

private:
    void onConnection();

    QString m_name;
    QLocalServer* m_server = nullptr;
};

} // namespace quillon::desktop
