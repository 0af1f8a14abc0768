#include "desktop/mesh/MeshLink.h"

// The bridge has a member function named emit, which Qt's keyword macro would erase; this file
// signals with Q_EMIT instead.
#undef emit
#include "mesh/ScriptureBridge.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"
#include "screens/OutletWording.h"
#include "screens/ScreenOutlets.h"

#include <QCoreApplication>
#include <QPointer>
#include <QtConcurrent>

#include <spdlog/spdlog.h>

namespace quillon::desktop {

struct MeshLink::Parts {
    platform::SecretStore secrets{
        mesh::SuiteMeshPairingStore::serviceName(),
        platform::SecretStore::defaultFallbackFile(mesh::SuiteMeshPairingStore::serviceName())};
    mesh::SuiteMeshPairingStore pairings;
    mesh::ScriptureBridge bridge;
    /// The screens beyond the mesh (the live page, OpenLP, BibleSync) that the preferences switch on.
    std::shared_ptr<screens::OutletHub> outlets;
    bool running = false;

    Parts(platform::Preferences& preferences, mesh::Executor executor)
        : pairings(secrets, preferences),
          bridge(mesh::MeshSettings::fromPreferences(preferences), pairings, std::move(executor)) {}
};

namespace {

/// Runs the bridge's callbacks on the interface thread, and drops them once the link is gone.
mesh::Executor interfaceThread(QObject* owner) {
    return [guard = QPointer<QObject>(owner)](std::function<void()> task) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, task = std::move(task)] {
                if (guard)
                    task();
            },
            Qt::QueuedConnection);
    };
}

} // namespace

MeshLink::MeshLink(platform::Preferences& preferences, QObject* parent) : QObject(parent), m_preferences(preferences) {}

MeshLink::~MeshLink() {
    if (m_starting)
        m_starting->waitForFinished();
    if (m_parts)
        m_parts->bridge.stop();
}

void MeshLink::connectParts(Parts& parts) {
    parts.bridge.onIncomingScripture = [this](const mesh::MeshScriptureReference& reference, const auto&) {
        Q_EMIT scriptureReceived(QString::fromStdString(reference.description()));
    };
    parts.bridge.onEvent = [this](const mesh::MeshEvent& event) {
        using Kind = mesh::MeshEvent::Kind;
        const QString peer = QString::fromStdString(event.peer);
        if (event.kind == Kind::pairingSucceeded)
            Q_EMIT pairingSucceeded(peer);
        else if (event.kind == Kind::pairingFailed)
            Q_EMIT pairingFailed(peer, QString::fromStdString(event.detail));
        Q_EMIT stateChanged();
    };
}

MeshLink::Parts& MeshLink::parts() {
    if (m_starting)
        m_starting->waitForFinished();
    if (!m_parts) {
        m_parts = std::make_shared<Parts>(m_preferences, interfaceThread(this));
        connectParts(*m_parts);
    }
    return *m_parts;
}

void MeshLink::start() {
    if (m_parts || m_starting)
        return;
    m_starting = new QFutureWatcher<std::shared_ptr<Parts>>(this);
    connect(m_starting, &QFutureWatcher<std::shared_ptr<Parts>>::finished, this, [this] {
        m_parts = m_starting->result();
        m_starting->deleteLater();
        m_starting = nullptr;
        Q_EMIT stateChanged();
    });
    m_starting->setFuture(QtConcurrent::run([this, executor = interfaceThread(this)] {
        auto made = std::make_shared<Parts>(m_preferences, executor);
        connectParts(*made);
        try {
            made->outlets = screens::attachScreenOutlets(made->bridge, m_preferences);
            made->bridge.start();
            made->running = true;
        } catch (const std::exception& error) {
            spdlog::error("The scripture mesh could not start: {}", error.what());
        }
        return made;
    }));
}

bool MeshLink::isRunning() const {
    return m_parts && m_parts->running;
}

void MeshLink::announce(const QString& reference, const QString& book, const QString& version, const QString& text) {
    if (!isRunning())
        return;
    m_parts->bridge.announce(
        mesh::LiveScripture{reference.toStdString(), book.toStdString(), version.toStdString(), text.toStdString()});
    Q_EMIT stateChanged();
}

MeshPairingCode MeshLink::startPairing(const QString& peerName) {
    mesh::PairingCode code = parts().bridge.startBootstrap(peerName.toStdString());
    auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(code.expiresAt.time_since_epoch()).count();
    return {QString::fromStdString(code.peerName), QString::fromStdString(code.code),
            QDateTime::fromMSecsSinceEpoch(millis)};
}

bool MeshLink::isBrenmoorConnected() const {
    return isRunning() && m_parts->bridge.isBrenmoorConnected();
}

bool MeshLink::isCalvaneConnected() const {
    return isRunning() && m_parts->bridge.isCalvaneConnected();
}

QString MeshLink::liveReference() const {
    if (!isRunning())
        return {};
    auto live = m_parts->bridge.liveReference();
    return live ? QStringLiteral("%1 (%2)").arg(QString::fromStdString(live->reference),
                                                QString::fromStdString(live->version))
                : QString();
}

QString MeshLink::statusText() const {
    if (!isRunning())
        return m_starting ? tr("Screens: starting…") : tr("Screens: off");
    auto mark = [](bool on) { return on ? QStringLiteral("●") : QStringLiteral("○"); };
    return tr("Brenmoor %1  Calvane %2").arg(mark(isBrenmoorConnected()), mark(isCalvaneConnected()));
}

QList<MeshOutletStatus> MeshLink::outletStatuses() const {
    QList<MeshOutletStatus> result;
    if (!m_parts || !m_parts->outlets)
        return result;
    for (const auto& status : m_parts->outlets->statuses()) {
        QStringList details{QString::fromStdString(screens::outletStatusLine(status))};
        for (const auto& line : screens::outletDetails(status))
            details << QString::fromStdString(line);
        result.push_back({QString::fromStdString(status.name), QString::fromStdString(screens::outletHeadline(status)),
                          details.join(u'\n'), status.state.failing});
    }
    return result;
}

} // namespace quillon::desktop
