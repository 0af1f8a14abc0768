#pragma once

#include <QDateTime>
#include <QFutureWatcher>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// A pairing code as the pairing dialog shows it.
struct MeshPairingCode {
    QString peerName;
    /// Six digits.
    QString code;
    QDateTime expiresAt;
};

/// One screen outlet (the live page, OpenLP, BibleSync) as the status bar shows it, in the words
/// `quillon mesh serve` prints.
struct MeshOutletStatus {
    /// "live page", "OpenLP", "BibleSync".
    QString name;
    /// "live page: serving".
    QString headline;
    /// The status line and what a closer look adds, one per line.
    QString details;
    bool failing = false;
};

/// The scripture mesh inside the desk: the bridge to Brenmoor and Calvane runs on its own network
/// thread and reports here on the interface thread; the screens the preferences switch on (the live
/// page, OpenLP, BibleSync) follow every passage sent. Nothing of it may stop the desk: a listener
/// or discovery that fails is logged and the window carries on without the screens.
class MeshLink : public QObject {
    Q_OBJECT
public:
    explicit MeshLink(platform::Preferences& preferences, QObject* parent = nullptr);
    ~MeshLink() override;

    /// Opens the listeners and starts browsing in the background (asking the Secret Service for
    /// the pairings can take a moment); stateChanged() follows when the mesh runs.
    void start();
    bool isRunning() const;
    /// Puts the passage on every connected screen.
    void announce(const QString& reference, const QString& book, const QString& version, const QString& text);
    /// A fresh six-digit code for `peerName` ("Brenmoor", "Calvane").
    MeshPairingCode startPairing(const QString& peerName);

    bool isBrenmoorConnected() const;
    bool isCalvaneConnected() const;
    /// The passage last sent to the screens ("John 3:16 (KJV)"), or empty.
    QString liveReference() const;
    /// One line for the status bar: which peers are connected.
    QString statusText() const;
    /// Each outlet the preferences switched on, in the order they started; empty before start().
    /// Reads only the outlets' kept state, so it never waits on the network.
    QList<MeshOutletStatus> outletStatuses() const;

signals:
    /// A peer connected, left, verified or linked; read the state again.
    void stateChanged();
    /// A peer asks the desk to show `reference` ("John 3:16").
    void scriptureReceived(const QString& reference);
    void pairingSucceeded(const QString& peerName);
    void pairingFailed(const QString& peerName, const QString& reason);

private:
    struct Parts;
    void connectParts(Parts& parts);
    Parts& parts();

    platform::Preferences& m_preferences;
    std::shared_ptr<Parts> m_parts;
    QFutureWatcher<std::shared_ptr<Parts>>* m_starting = nullptr;
};

} // namespace quillon::desktop
