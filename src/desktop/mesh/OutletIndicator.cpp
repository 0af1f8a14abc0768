#include "desktop/mesh/OutletIndicator.h"

#include "desktop/mesh/MeshLink.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quillon::desktop {

OutletIndicator::OutletIndicator(MeshLink& mesh, QWidget* parent)
    : QWidget(parent), m_mesh(mesh), m_row(new QHBoxLayout(this)) {
    setObjectName(QStringLiteral("outletStatus"));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(12);
    connect(&m_mesh, &MeshLink::stateChanged, this, &OutletIndicator::refresh);
    connect(&m_poll, &QTimer::timeout, this, &OutletIndicator::refresh);
    m_poll.start(1000);
    refresh();
}

void OutletIndicator::refresh() {
    const QList<MeshOutletStatus> outlets = m_mesh.outletStatuses();
    setVisible(!outlets.isEmpty());
    for (const MeshOutletStatus& outlet : outlets) {
        QLabel* label = labelFor(outlet.name);
        if (label->text() == outlet.headline && label->toolTip() == outlet.details)
            continue;
        label->setText(outlet.headline);
        label->setToolTip(outlet.details);
        label->setAccessibleName(outlet.headline);
        label->setAccessibleDescription(outlet.details);
    }
}

QLabel* OutletIndicator::labelFor(const QString& name) {
    if (QLabel* known = m_labels.value(name))
        return known;
    auto* label = new QLabel(this);
    label->setObjectName(QStringLiteral("outletStatus:") + name);
    m_row->addWidget(label);
    m_labels.insert(name, label);
    return label;
}

} // namespace quillon::desktop
