#include "desktop/MainWindow.h"

#include "app/ControllerTexts.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/companions/Companions.h"
#include "desktop/editor/SpellChecker.h"
#include "desktop/mesh/MeshIndicator.h"
#include "desktop/mesh/MeshLink.h"
#include "desktop/mesh/OutletIndicator.h"
#include "desktop/outline/OutlineModel.h"
#include "desktop/scripture/ScripturePanel.h"
#include "desktop/sermon/DetailArea.h"
#include "desktop/sermon/SermonView.h"
#include "desktop/shell/ControllerBridge.h"
#include "desktop/shell/ControllerDialogs.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/shell/DeskMenus.h"
#include "desktop/shell/ExportRunner.h"
#include "desktop/shell/ToastOverlay.h"
#include "desktop/sidebar/SermonSidebar.h"
#include "platform/ApplicationIdentity.h"

#include <QCloseEvent>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFutureWatcher>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QtConcurrent>

// The icon and other resources live in this static library; a static library's resources must
// be registered by hand, from the global namespace.
static void registerDeskResources() {
    Q_INIT_RESOURCE(desktop);
}

namespace quillon::desktop {

namespace {

constexpr int noSermonPage = 0;
constexpr int sermonPage = 1;

QDockWidget* makeDock(const QString& title, const QString& name, QWidget* content, QMainWindow* window) {
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName(name);
    dock->setWidget(content);
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    return dock;
}

} // namespace

MainWindow::MainWindow(DeskServices& services, QWidget* parent)
    : QMainWindow(parent), m_services(services), m_spelling(SpellChecker::withoutDictionary()),
      m_stateStore(services.preferences()),
      m_sermonModel(services.manager(), [&services] { return services.storage().mediaFolder(); }) {
    registerDeskResources();
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(QIcon(QStringLiteral(":/quillon/io.veltra.qln.svg")));
    setDockNestingEnabled(true);
    setAcceptDrops(true);
    m_bridge = new ControllerBridge(services.controller(), this);

    m_sermonArea = new QStackedWidget(this);
    m_sermonArea->setObjectName(QStringLiteral("sermonArea"));
    m_noSermon = new QLabel(QString::fromUtf8(app::noSermonSelectedText), m_sermonArea);
    m_noSermon->setObjectName(QStringLiteral("noSermonSelected"));
    m_noSermon->setAlignment(Qt::AlignCenter);
    m_noSermon->setForegroundRole(QPalette::PlaceholderText);
    QFont emptyFont = m_noSermon->font();
    emptyFont.setPointSizeF(emptyFont.pointSizeF() * 1.6);
    m_noSermon->setFont(emptyFont);
    m_sermonView = new SermonView(services.controller(), services.bibles(), m_spelling.get(), m_sermonArea);
    m_sermonArea->insertWidget(noSermonPage, m_noSermon);
    m_sermonArea->insertWidget(sermonPage, m_sermonView);
    setCentralWidget(m_sermonArea);
    m_toast = new ToastOverlay(m_sermonArea);
    m_exports = new ExportRunner(services.controller(), services.verseText(), this);

    m_saveStatus = new QLabel(this);
    m_saveStatus->setObjectName(QStringLiteral("saveStatus"));
    m_mesh = new MeshLink(services.preferences(), this);
    m_meshStatus = new MeshIndicator(*m_mesh, this);
    statusBar()->addPermanentWidget(m_saveStatus);
    statusBar()->addPermanentWidget(m_meshStatus);
    statusBar()->addPermanentWidget(new OutletIndicator(*m_mesh, this));

    buildDocks();
    m_commands = new DeskCommands(*this, services, *m_sidebar, *m_exports);
    m_commands->setMesh(m_mesh);
    m_dialogs = new ControllerDialogs(*this, services.controller(), *m_commands, *m_toast);
    m_menus = new DeskMenus({this, &services, m_commands, m_sidebar, m_sidebarDock, m_bibleDock, m_biblePanel});
    connectController();
    new Companions(*this, services);

    if (!m_stateStore.restore(*this)) {
        QRect available = screen() ? screen()->availableGeometry() : QRect(0, 0, 1280, 800);
        resize(available.size().boundedTo(QSize(1400, 880)));
        resizeDocks({m_sidebarDock, m_bibleDock}, {270, 400}, Qt::Horizontal);
    }
    onLibraryChanged();
    onInterfaceChanged();
    // Reading the dictionary takes longer than showing the window: spelling is marked once it is in.
    QTimer::singleShot(0, this, &MainWindow::loadSpellingVocabulary);
}

MainWindow::~MainWindow() {
    // The Bible's words are read from the services, which the window only borrows.
    m_vocabulary.waitForFinished();
}

void MainWindow::buildDocks() {
    m_sidebar = new SermonSidebar(m_sermonModel, this);
    m_sidebarDock = makeDock(tr("Sermons"), QStringLiteral("sidebarDock"), m_sidebar, this);
    addDockWidget(Qt::LeftDockWidgetArea, m_sidebarDock);
    m_biblePanel = new BiblePanel(m_services.bibles(), [services = &m_services]() -> intelligence::CommentaryLibrary& {
        return services->commentaries();
    });
    m_bibleDock = makeDock(tr("Bible"), QStringLiteral("biblePanelDock"), m_biblePanel, this);
    addDockWidget(Qt::RightDockWidgetArea, m_bibleDock);
}

void MainWindow::connectController() {
    app::SermonNotesViewModel& controller = m_services.controller();
    connect(m_bridge, &ControllerBridge::selectionDidChange, this, &MainWindow::onSelectionChanged);
    connect(m_bridge, &ControllerBridge::sermonDidChange, this, &MainWindow::onSermonChanged);
    connect(m_bridge, &ControllerBridge::libraryDidChange, this, &MainWindow::onLibraryChanged);
    connect(m_bridge, &ControllerBridge::interfaceStateDidChange, this, &MainWindow::onInterfaceChanged);
    connect(m_bridge, &ControllerBridge::statusDidPost, m_dialogs, &ControllerDialogs::onStatus);
    connect(m_bridge, &ControllerBridge::sheetDidChange, m_dialogs, &ControllerDialogs::onSheet);
    connect(m_sidebar, &SermonSidebar::sermonActivated, this,
            [&controller](const model::Uuid& id) { controller.selectSermon(id); });
    connect(m_biblePanel, &BiblePanel::attachRequested, this, [&controller](const QString& reference) {
        const auto& selection = controller.selection();
        if (!selection.sermonId || !selection.subTopicId)
            return;
        if (auto id = controller.addScripture(*selection.sermonId, *selection.subTopicId, reference.toStdString()))
            controller.selectScripture(*id);
    });
    connect(m_meshStatus, &MeshIndicator::pairingRequested, m_commands, &DeskCommands::pairWithScreen);
    connect(m_mesh, &MeshLink::scriptureReceived, this, &MainWindow::focusReference);
    connect(m_commands, &DeskCommands::referenceRequested, this, &MainWindow::showInBible);
    connect(m_sermonView->detailArea()->scripturePanel(), &ScripturePanel::sendToScreenRequested, m_commands,
            &DeskCommands::sendToScreen);
    connect(m_sermonView, &SermonView::linkActivated, this, [&controller](const QString& url) {
        if (url.startsWith(QStringLiteral("quillscripture://")))
            controller.openScriptureLink(url.toStdString());
        else
            QDesktopServices::openUrl(QUrl(url));
    });
}

// Following the controller ---------------------------------------------------------------------

void MainWindow::onSelectionChanged() {
    const auto& controller = m_services.controller();
    const auto& selection = controller.selection();
    const model::SermonNote* sermon = controller.selectedSermon();
    m_sidebar->showCurrent(sermon ? std::optional(sermon->id) : std::nullopt);
    m_sermonArea->setCurrentIndex(sermon ? sermonPage : noSermonPage);
    m_sermonView->syncSelection();
    m_biblePanel->setCanAttach(selection.subTopicId.has_value() && !controller.interfaceState().readingMode);
    updateTitle();
    m_menus->update();
}

void MainWindow::onSermonChanged(const model::Uuid& id) {
    m_sermonModel.reloadSermon(id);
    m_sermonView->syncContent();
    const auto& manager = m_services.manager();
    m_saveStatus->setText(QString::fromStdString(manager.lastSyncStatus()));
    updateTitle();
    m_menus->update();
}

void MainWindow::onLibraryChanged() {
    m_sermonModel.reload();
    const auto& manager = m_services.manager();
    QString root = QString::fromStdString(m_services.storage().root().string());
    m_sidebar->setStatus(
        QString::fromStdString(manager.lastSyncStatus()),
        (m_services.storage().isUsingCloud() ? tr("Sync folder: %1") : tr("Local library: %1")).arg(root));
    onSelectionChanged();
    m_menus->rebuildRecentMenu();
}

void MainWindow::onInterfaceChanged() {
    const auto& state = m_services.controller().interfaceState();
    m_sermonView->syncInterface();
    m_biblePanel->setCanAttach(m_services.controller().selection().subTopicId.has_value() && !state.readingMode);
    m_menus->update();
    m_menus->rebuildRecentMenu();
}

void MainWindow::updateTitle() {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    QString product = QString::fromUtf8(platform::applicationName);
    QString title = sermon && !sermon->title.empty() ? QString::fromStdString(sermon->title) : QString();
    setWindowTitle(title.isEmpty() ? product : title + QStringLiteral(" — ") + product);
}

void MainWindow::loadSpellingVocabulary() {
    connect(&m_vocabulary, &QFutureWatcher<std::shared_ptr<SpellChecker>>::finished, this, [this] {
        if (!m_vocabulary.result()->isAvailable())
            return;
        m_spelling->take(*m_vocabulary.result());
        m_sermonView->recheckSpelling();
    });
    m_vocabulary.setFuture(QtConcurrent::run([loader = &m_services.bibles()] {
        auto opened = std::make_shared<SpellChecker>();
        if (opened->isAvailable())
            opened->accept(bibleVocabulary(*loader));
        return opened;
    }));
}

// Mesh ------------------------------------------------------------------------------------------

void MainWindow::startMesh() {
    m_mesh->start();
}

void MainWindow::focusReference(const QString& reference) {
    app::SermonNotesViewModel& controller = m_services.controller();
    if (const model::SermonNote* sermon = controller.selectedSermon()) {
        for (const auto& topic : sermon->topics) {
            for (const auto& sub : topic.subTopics) {
                for (const auto& scripture : sub.scriptures) {
                    if (scriptureTitle(scripture) == reference) {
                        controller.selectScripture(scripture.id);
                        return;
                    }
                }
            }
        }
    }
    showInBible(reference);
}

void MainWindow::showInBible(const QString& reference) {
    m_bibleDock->show();
    m_biblePanel->searchField()->setText(reference);
    m_biblePanel->search(reference);
}

// Commands --------------------------------------------------------------------------------------

void MainWindow::openFiles(const QStringList& files) {
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
    m_commands->openFiles(files);
}

bool MainWindow::exportSelected(app::ExportFormat format, const QString& file) {
    return m_commands->exportSelected(format, file);
}

// Window ----------------------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    m_stateStore.save(*this);
    QMainWindow::closeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && std::all_of(urls.begin(), urls.end(), [](const QUrl& url) {
            return url.isLocalFile() && DeskCommands::isOpenable(url.toLocalFile());
        }))
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        files << url.toLocalFile();
    openFiles(files);
    event->acceptProposedAction();
}

} // namespace quillon::desktop
