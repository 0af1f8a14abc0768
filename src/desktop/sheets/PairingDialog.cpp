#include "desktop/sheets/PairingDialog.h"

#include "desktop/mesh/MeshLink.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillon::desktop {

PairingDialog::PairingDialog(MeshLink& mesh, QWidget* parent) : QDialog(parent), m_mesh(mesh) {
    setObjectName(QStringLiteral("pairingDialog"));
    setWindowTitle(tr("Pair with a Screen"));
    auto* intro = new QLabel(tr("Choose the application to pair with, then type the code below into its own "
                                "“Pair with Quillon” screen before the code expires."),
                             this);
    intro->setWordWrap(true);
    m_peer = new QComboBox(this);
    m_peer->setObjectName(QStringLiteral("pairingPeer"));
    m_peer->setAccessibleName(tr("Application to pair with"));
    m_peer->addItem(QStringLiteral("Brenmoor"));
    m_peer->addItem(QStringLiteral("Calvane"));
    m_generate = new QPushButton(tr("&Show a Code"), this);
    m_generate->setObjectName(QStringLiteral("pairingGenerate"));
    m_code = new QLabel(QStringLiteral("––– –––"), this);
    m_code->setObjectName(QStringLiteral("pairingCode"));
    m_code->setAccessibleName(tr("Pairing code"));
    m_code->setAlignment(Qt::AlignCenter);
    m_code->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont big = m_code->font();
    big.setPointSizeF(big.pointSizeF() * 3);
    big.setBold(true);
    big.setStyleHint(QFont::Monospace);
    big.setFamily(QStringLiteral("monospace"));
    m_code->setFont(big);
    m_expiry = new QLabel(this);
    m_expiry->setObjectName(QStringLiteral("pairingExpiry"));
    m_expiry->setAlignment(Qt::AlignCenter);
    m_outcome = new QLabel(this);
    m_outcome->setObjectName(QStringLiteral("pairingOutcome"));
    m_outcome->setAlignment(Qt::AlignCenter);
    m_outcome->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);

    auto* form = new QFormLayout;
    form->addRow(tr("Pair with:"), m_peer);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(form);
    layout->addWidget(m_generate, 0, Qt::AlignRight);
    layout->addSpacing(8);
    layout->addWidget(m_code);
    layout->addWidget(m_expiry);
    layout->addWidget(m_outcome);
    layout->addWidget(buttons);
    resize(440, sizeHint().height());

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_generate, &QPushButton::clicked, this, &PairingDialog::generate);
    connect(&m_clock, &QTimer::timeout, this, &PairingDialog::tick);
    connect(&m_mesh, &MeshLink::pairingSucceeded, this, [this](const QString& peer) {
        m_clock.stop();
        m_expiry->clear();
        m_outcome->setText(tr("Paired with %1.").arg(peer));
    });
    connect(&m_mesh, &MeshLink::pairingFailed, this, [this](const QString& peer, const QString& reason) {
        m_outcome->setText(reason.isEmpty() ? tr("Pairing with %1 failed.").arg(peer)
                                            : tr("Pairing with %1 failed: %2").arg(peer, reason));
    });
    m_clock.setInterval(1000);
}

void PairingDialog::generate() {
    MeshPairingCode code = m_mesh.startPairing(m_peer->currentText());
    QString digits = code.code;
    m_code->setText(digits.size() == 6 ? digits.left(3) + u' ' + digits.mid(3) : digits);
    m_code->setEnabled(true);
    m_expiresAt = code.expiresAt;
    m_outcome->clear();
    m_clock.start();
    tick();
}

QString PairingDialog::shownCode() const {
    return m_code->text().remove(u' ');
}

void PairingDialog::tick() {
    const qint64 left = QDateTime::currentDateTime().secsTo(m_expiresAt);
    if (left <= 0) {
        m_clock.stop();
        m_code->setEnabled(false);
        m_expiry->setText(tr("This code has expired. Show a new one to try again."));
        return;
    }
    m_expiry->setText(tr("Valid until %1 (%2:%3 left)")
                          .arg(QLocale().toString(m_expiresAt.time(), QLocale::ShortFormat))
                          .arg(left / 60)
                          .arg(left % 60, 2, 10, QLatin1Char('0')));
}

} // namespace quillon::desktop
