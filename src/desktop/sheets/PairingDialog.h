#pragma once

#include <QDateTime>
#include <QDialog>
#include <QTimer>

class QComboBox;
class QLabel;
class QPushButton;

namespace quillon::desktop {

class MeshLink;

/// Pairs the desk with Brenmoor or Calvane: the preacher chooses the peer, Quillon shows a
/// six-digit code and how long it stays valid, and the preacher types it into the peer's own
/// "Pair with Quillon" screen. The dialog says when the pairing succeeded or the code expired.
class PairingDialog : public QDialog {
    Q_OBJECT
public:
    PairingDialog(MeshLink& mesh, QWidget* parent = nullptr);

    /// Asks the bridge for a fresh code for the chosen peer and shows it.
    void generate();
    QString shownCode() const;

private:
    void tick();

    MeshLink& m_mesh;
    QComboBox* m_peer = nullptr;
    QLabel* m_code = nullptr;
    QLabel* m_expiry = nullptr;
    QLabel* m_outcome = nullptr;
    QPushButton* m_generate = nullptr;
    QDateTime m_expiresAt;
    QTimer m_clock;
};

} // namespace quillon::desktop
