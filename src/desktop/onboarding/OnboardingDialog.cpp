#include "desktop/onboarding/OnboardingDialog.h"

#include "app/SettingsCatalogue.h"
#include "desktop/DeskServices.h"
#include "intelligence/LocalModelSettings.h"
#include "orvane/ModelRouter.h"
#include "store/SampleSermons.h"

#include <QFileDialog>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace quillon::desktop {

namespace {

QLabel* bodyLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

OnboardingDialog::OnboardingDialog(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router, QWidget* parent)
    : QDialog(parent), m_services(services), m_router(std::move(router)) {
    setObjectName(QStringLiteral("onboarding"));
    setWindowTitle(tr("Welcome to Quillon"));
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(samplesPage());
    m_pages->addWidget(storagePage());
    m_pages->addWidget(modelPage());
    m_pages->addWidget(meshPage());

    m_skip = new QPushButton(tr("Skip"), this);
    m_skip->setObjectName(QStringLiteral("onboardingSkip"));
    m_back = new QPushButton(tr("Back"), this);
    m_next = new QPushButton(tr("Next"), this);
    m_next->setObjectName(QStringLiteral("onboardingNext"));
    m_next->setDefault(true);
    connect(m_skip, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_back, &QPushButton::clicked, this, &OnboardingDialog::back);
    connect(m_next, &QPushButton::clicked, this, &OnboardingDialog::next);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_skip);
    buttons->addStretch();
    buttons->addWidget(m_back);
    buttons->addWidget(m_next);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pages, 1);
    layout->addLayout(buttons);
    resize(560, 380);
    services.preferences().set(shownKey, true);
    updateButtons();
}

QWidget* OnboardingDialog::page(const QString& title, const QString& body, QWidget* extra) {
    auto* widget = new QWidget(this);
    auto* heading = new QLabel(title, widget);
    QFont big = heading->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    big.setBold(true);
    heading->setFont(big);
    auto* layout = new QVBoxLayout(widget);
    layout->addWidget(heading);
    layout->addSpacing(8);
    layout->addWidget(bodyLabel(body, widget));
    if (extra) {
        extra->setParent(widget);
        layout->addWidget(extra);
    }
    layout->addStretch();
    return widget;
}

QWidget* OnboardingDialog::samplesPage() {
    QStringList titles;
    for (const store::SampleSermonDefinition& sample : store::sampleSermonDefinitions())
        titles << QStringLiteral("• ") + QString::fromStdString(sample.title);
    return page(tr("Welcome to Quillon"),
                tr("Quillon is your desk for preparing sermons: outlines, scripture, notes, and the time it takes to "
                   "preach them.\n\nTo show how a finished outline looks, your list starts with these sample "
                   "sermons:\n%1\n\nOpen one to look around; hide them in Settings once you have your own.")
                    .arg(titles.join(u'\n')));
}

QWidget* OnboardingDialog::storagePage() {
    auto* extra = new QWidget;
    auto* layout = new QVBoxLayout(extra);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* choose = new QPushButton(tr("Choose a Sync Folder…"), extra);
    choose->setObjectName(QStringLiteral("onboardingSyncFolder"));
    m_syncNote = bodyLabel({}, extra);
    m_syncNote->setObjectName(QStringLiteral("onboardingSyncNote"));
    layout->addWidget(choose, 0, Qt::AlignLeft);
    layout->addWidget(m_syncNote);
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString folder = QFileDialog::getExistingDirectory(this, tr("Choose a Sync Folder"));
        if (folder.isEmpty())
            return;
        const auto* setting = app::SettingsCatalogue::find("Quillon.storage.syncFolder");
        const auto refused = app::SettingsCatalogue::apply(m_services.preferences(), *setting, folder.toStdString());
        m_syncNote->setText(refused ? QString::fromStdString(*refused)
                                    : tr("Sermons will be kept in %1 from the next start.").arg(folder));
    });
    return page(tr("Where your sermons are kept"),
                tr("Every change is saved as you type, in this folder:\n%1\n\nTo have your sermons on several "
                   "computers, choose a folder your sync service keeps (Nextcloud, Syncthing or similar). You can "
                   "change it later in Settings under Storage.")
                    .arg(QString::fromStdString(m_services.storage().root().string())),
                extra);
}

QWidget* OnboardingDialog::modelPage() {
    const auto settings = intelligence::LocalModelSettings::fromPreferences(m_services.preferences());
    m_model = bodyLabel(tr("Checking whether a model server answers…"), this);
    m_model->setObjectName(QStringLiteral("onboardingModel"));
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, endpoint = settings.endpoint] {
        watcher->deleteLater();
        const QString address = QString::fromStdString(endpoint);
        m_model->setText(watcher->result()
                             ? tr("A model server answers at %1. The assistant’s sheets will use it.").arg(address)
                             : tr("No model server answers at %1. The assistant’s sheets still work: each gives its "
                                  "model-free answer and says so.\n\nTo start one, install llama.cpp and run:\n"
                                  "llama-server -m your-model.gguf --port 8080\nor point Quillon at another server in "
                                  "Settings under Model server.")
                                   .arg(address));
        emit modelChecked();
    });
    watcher->setFuture(QtConcurrent::run([router = m_router] {
        return router->currentAvailability().readiness(orvane::IntelligenceBackendKind::onDevice).isReady();
    }));
    return page(tr("The assistant and your model server"),
                tr("Quillon can ask a language model running on your own computer for discussion questions, titles, "
                   "tags and more. Nothing is sent to the internet."),
                m_model);
}

QWidget* OnboardingDialog::meshPage() {
    return page(tr("Screens and the mesh"),
                tr("Presentation software on your network, such as Calvane and Brenmoor, finds Quillon by itself. "
                   "Send to Screen shows the selected passage on every connected screen.\n\nTo let only your own "
                   "devices in, turn on “Trust paired devices only” in Settings under Mesh and pair each device with "
                   "the six-digit code Quillon shows.\n\nYou can open this welcome again from the Help menu."));
}

int OnboardingDialog::pageCount() const {
    return m_pages->count();
}

int OnboardingDialog::currentPage() const {
    return m_pages->currentIndex();
}

void OnboardingDialog::next() {
    if (m_pages->currentIndex() + 1 >= m_pages->count()) {
        accept();
        return;
    }
    m_pages->setCurrentIndex(m_pages->currentIndex() + 1);
    updateButtons();
}

void OnboardingDialog::back() {
    m_pages->setCurrentIndex(std::max(0, m_pages->currentIndex() - 1));
    updateButtons();
}

QString OnboardingDialog::modelSentence() const {
    return m_model->text();
}

void OnboardingDialog::updateButtons() {
    const bool last = m_pages->currentIndex() + 1 == m_pages->count();
    m_back->setEnabled(m_pages->currentIndex() > 0);
    m_next->setText(last ? tr("Start Writing") : tr("Next"));
    m_skip->setVisible(!last);
}

} // namespace quillon::desktop
