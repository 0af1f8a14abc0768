#pragma once

#include <QToolButton>

namespace quillon::desktop {

class MeshLink;

/// The status bar's word on the screens: Brenmoor and Calvane, each filled when connected, the
/// passage on screen in its tooltip. A click opens the pairing dialog.
class MeshIndicator : public QToolButton {
    Q_OBJECT
public:
    MeshIndicator(MeshLink& mesh, QWidget* parent = nullptr);

    void refresh();

signals:
    void pairingRequested();

private:
    MeshLink& m_mesh;
};

} // namespace quillon::desktop
