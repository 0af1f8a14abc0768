#include "desktop/MainWindow.h"

#include "desktop/DeskServices.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/sidebar/SermonSidebar.h"
#include "platform/ApplicationIdentity.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>

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
    : QMainWindow(parent), m_services(services), m_stateStore(services.preferences()),
      m_sermonModel(services.manager(), [&services] { return services.storage().mediaFolder(); }) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(QIcon(QStringLiteral(":/quillon/io.veltra.qln.svg")));
    setDockNestingEnabled(true);

    m_sidebar = new SermonSidebar(m_sermonModel, this);
    m_sidebarDock = makeDock(tr("Sermons"), QStringLiteral("sidebarDock"), m_sidebar, this);
    addDockWidget(Qt::LeftDockWidgetArea, m_sidebarDock);

    m_biblePanel = new BiblePanel(
        services.bibles(), [&services]() -> intelligence::CommentaryLibrary& { return services.commentaries(); });
    m_bibleDock = makeDock(tr("Bible"), QStringLiteral("biblePanelDock"), m_biblePanel, this);
    addDockWidget(Qt::RightDockWidgetArea, m_bibleDock);

    m_sermonArea = new QStackedWidget(this);
    m_sermonArea->setObjectName(QStringLiteral("sermonArea"));
    m_noSermon = new QLabel(tr("No Sermon Selected"), m_sermonArea);
    m_noSermon->setObjectName(QStringLiteral("noSermonSelected"));
    m_noSermon->setAlignment(Qt::AlignCenter);
    m_noSermon->setForegroundRole(QPalette::PlaceholderText);
    QFont emptyFont = m_noSermon->font();
    emptyFont.setPointSizeF(emptyFont.pointSizeF() * 1.6);
    m_noSermon->setFont(emptyFont);
    m_sermonPlaceholder = new QLabel(m_sermonArea);
    m_sermonPlaceholder->setObjectName(QStringLiteral("sermonPage"));
    m_sermonPlaceholder->setAlignment(Qt::AlignCenter);
    m_sermonArea->insertWidget(noSermonPage, m_noSermon);
    m_sermonArea->insertWidget(sermonPage, m_sermonPlaceholder);
    setCentralWidget(m_sermonArea);

    m_saveStatus = new QLabel(this);
    m_saveStatus->setObjectName(QStringLiteral("saveStatus"));
    statusBar()->addPermanentWidget(m_saveStatus);

    buildMenus();
    connect(m_sidebar, &SermonSidebar::sermonActivated, this, &MainWindow::selectSermon);

    if (!m_stateStore.restore(*this)) {
        QRect available = screen() ? screen()->availableGeometry() : QRect(0, 0, 1280, 800);
        resize(available.size().boundedTo(QSize(1360, 860)));
        resizeDocks({m_sidebarDock, m_bibleDock}, {280, 420}, Qt::Horizontal);
    }
    refresh();
}

MainWindow::~MainWindow() = default;

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    quit->setObjectName(QStringLiteral("quitAction"));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* sidebar = m_sidebarDock->toggleViewAction();
    sidebar->setText(tr("&Sermons"));
    sidebar->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S));
    view->addAction(sidebar);
    QAction* bible = m_bibleDock->toggleViewAction();
    bible->setText(tr("&Bible"));
    bible->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_B));
    bible->setObjectName(QStringLiteral("toggleBiblePanelAction"));
    view->addAction(bible);
    QAction* filter = view->addAction(tr("&Filter Sermons"), this, [this] {
        m_sidebarDock->show();
        m_sidebar->filterField()->setFocus();
        m_sidebar->filterField()->selectAll();
    });
    filter->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
    QAction* searchBible = view->addAction(tr("Search the &Bible"), this, [this] {
        m_bibleDock->show();
        m_biblePanel->searchField()->setFocus();
        m_biblePanel->searchField()->selectAll();
    });
    searchBible->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_B));
}

void MainWindow::refresh() {
    m_sermonModel.reload();
    const auto& manager = m_services.manager();
    m_sidebar->setStatus(QString::fromStdString(manager.lastSyncStatus()),
                         QString::fromStdString(m_services.storage().root().string()));
    showCurrentSermon();
}

void MainWindow::selectSermon(const model::Uuid& id) {
    m_services.manager().setCurrentSermonId(id);
    showCurrentSermon();
}

void MainWindow::showCurrentSermon() {
    const auto& manager = m_services.manager();
    std::optional<model::Uuid> id = manager.currentSermonId();
    const model::SermonNote* sermon = id ? manager.sermon(*id) : nullptr;
    m_sidebar->showCurrent(sermon ? std::optional(sermon->id) : std::nullopt);
    if (!sermon) {
        m_sermonArea->setCurrentIndex(noSermonPage);
    } else {
        m_sermonPlaceholder->setText(QString::fromStdString(sermon->title));
        m_sermonArea->setCurrentIndex(sermonPage);
    }
    updateTitle();
}

void MainWindow::updateTitle() {
    const auto& manager = m_services.manager();
    std::optional<model::Uuid> id = manager.currentSermonId();
    const model::SermonNote* sermon = id ? manager.sermon(*id) : nullptr;
    QString product = QString::fromUtf8(platform::applicationName);
    setWindowTitle(sermon ? QString::fromStdString(sermon->title) + QStringLiteral(" — ") + product : product);
}

void MainWindow::openFiles(const QStringList& files) {
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
    Q_UNUSED(files);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    m_stateStore.save(*this);
    QMainWindow::closeEvent(event);
}

} // namespace quillon::desktop
