#include "desktop/mesh/MeshIndicator.h"

#include "desktop/mesh/MeshLink.h"

namespace quillon::desktop {

MeshIndicator::MeshIndicator(MeshLink& mesh, QWidget* parent) : QToolButton(parent), m_mesh(mesh) {
    setObjectName(QStringLiteral("meshStatus"));
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);
    connect(&m_mesh, &MeshLink::stateChanged, this, &MeshIndicator::refresh);
    connect(this, &QToolButton::clicked, this, &MeshIndicator::pairingRequested);
    refresh();
}

void MeshIndicator::refresh() {
    setText(m_mesh.statusText());
    QString live = m_mesh.liveReference();
    QString tip = m_mesh.isRunning()
                      ? tr("Brenmoor: %1\nCalvane: %2")
                            .arg(m_mesh.isBrenmoorConnected() ? tr("connected") : tr("not connected"),
                                 m_mesh.isCalvaneConnected() ? tr("connected") : tr("not connected"))
                      : tr("The scripture mesh is not running; Brenmoor and Calvane cannot receive verses.");
    if (!live.isEmpty())
        tip += tr("\nOn screen: %1").arg(live);
    setToolTip(tip + tr("\nClick to pair with a screen."));
    setAccessibleName(tr("Screens"));
    setAccessibleDescription(tip);
}

} // namespace quillon::desktop
