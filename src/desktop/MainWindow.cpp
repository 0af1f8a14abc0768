#include "desktop/MainWindow.h"

#include "app/ControllerTexts.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/companions/Companions.h"
#include "desktop/editor/SpellChecker.h"
#include "desktop/sermon/SermonView.h"
#include "desktop/sheets/NewSermonDialog.h"
#include "desktop/shell/ControllerBridge.h"
#include "desktop/shell/ExportRunner.h"
#include "desktop/shell/ToastOverlay.h"
#include "desktop/sidebar/SermonSidebar.h"
#include "platform/ApplicationIdentity.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <QtConcurrent>

namespace quillon::desktop {

namespace {

constexpr int noSermonPage = 0;
constexpr int sermonPage = 1;

struct ExportChoice {
    app::ExportFormat format;
    const char* label;
    const char* filter;
    const char* extension;
};

constexpr ExportChoice exportChoices[] = {
    {app::ExportFormat::word, "&Word Document…", "Word document (*.docx)", "docx"},
    {app::ExportFormat::powerPoint, "&PowerPoint Slides…", "PowerPoint presentation (*.pptx)", "pptx"},
    {app::ExportFormat::pdf, "P&DF Hand-out…", "PDF document (*.pdf)", "pdf"},
    {app::ExportFormat::rtf, "&RTF Document…", "Rich text (*.rtf)", "rtf"},
    {app::ExportFormat::markdown, "&Markdown…", "Markdown (*.md)", "md"},
};

QDockWidget* makeDock(const QString& title, const QString& name, QWidget* content, QMainWindow* window) {
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName(name);
    dock->setWidget(content);
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    return dock;
}

QString safeFileName(const std::string& title) {
    QString name = QString::fromStdString(title).trimmed();
    name.replace(QRegularExpression(QStringLiteral("[/\\\\:*?\"<>|]")), QStringLiteral("-"));
    return name.isEmpty() ? QStringLiteral("Sermon") : name;
}

bool isOpenable(const QString& file) {
    static const QStringList suffixes = {"quillet", "vrnsermons", "docx", "md", "txt", "rtf"};
    return suffixes.contains(QFileInfo(file).suffix().toLower());
}

} // namespace

MainWindow::MainWindow(DeskServices& services, QWidget* parent)
    : QMainWindow(parent), m_services(services), m_spelling(std::make_unique<SpellChecker>()),
      m_stateStore(services.preferences()),
      m_sermonModel(services.manager(), [&services] { return services.storage().mediaFolder(); }) {
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
    m_meshStatus = new QLabel(tr("Screens: none connected"), this);
    m_meshStatus->setObjectName(QStringLiteral("meshStatus"));
    m_meshStatus->setToolTip(tr("Calvane and Brenmoor on this network receive the verses sent to the screen"));
    statusBar()->addPermanentWidget(m_saveStatus);
    statusBar()->addPermanentWidget(m_meshStatus);

    buildDocks();
    buildMenus();
    connectController();
    new Companions(*this, services);

    if (!m_stateStore.restore(*this)) {
        QRect available = screen() ? screen()->availableGeometry() : QRect(0, 0, 1280, 800);
        resize(available.size().boundedTo(QSize(1400, 880)));
        resizeDocks({m_sidebarDock, m_bibleDock}, {270, 400}, Qt::Horizontal);
    }
    onLibraryChanged();
    onInterfaceChanged();
    loadSpellingVocabulary();
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
    connect(m_bridge, &ControllerBridge::statusDidPost, this, &MainWindow::onStatus);
    connect(m_bridge, &ControllerBridge::sheetDidChange, this, &MainWindow::onSheet);
    connect(m_sidebar, &SermonSidebar::sermonActivated, this,
            [&controller](const model::Uuid& id) { controller.selectSermon(id); });
    connect(m_biblePanel, &BiblePanel::attachRequested, this, [&controller](const QString& reference) {
        const auto& selection = controller.selection();
        if (!selection.sermonId || !selection.subTopicId)
            return;
        if (auto id = controller.addScripture(*selection.sermonId, *selection.subTopicId, reference.toStdString()))
            controller.selectScripture(*id);
    });
    connect(m_sermonView, &SermonView::linkActivated, this, [&controller](const QString& url) {
        if (url.startsWith(QStringLiteral("quillscripture://")))
            controller.openScriptureLink(url.toStdString());
        else
            QDesktopServices::openUrl(QUrl(url));
    });
}

// Menus -----------------------------------------------------------------------------------------

void MainWindow::buildMenus() {
    buildFileMenu();
    buildEditMenu();
    buildSermonMenu();
    buildViewMenu();
    buildHelpMenu();
    buildSidebarMenu();

    QToolBar* tools = addToolBar(tr("Tools"));
    tools->setObjectName(QStringLiteral("mainToolBar"));
    tools->setMovable(false);
    for (QAction* action : findChildren<QAction*>()) {
        if (action->property("onToolBar").toBool())
            tools->addAction(action);
    }
}

void MainWindow::buildFileMenu() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* create = file->addAction(tr("&New Sermon…"), QKeySequence::New, this, &MainWindow::newSermon);
    create->setObjectName(QStringLiteral("newSermonAction"));
    create->setProperty("onToolBar", true);
    QAction* open = file->addAction(tr("&Open…"), QKeySequence::Open, this, &MainWindow::openDocument);
    open->setObjectName(QStringLiteral("openAction"));
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    m_recentMenu->setObjectName(QStringLiteral("recentMenu"));
    file->addAction(tr("&Import…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I), this, &MainWindow::importFile);
    file->addSeparator();
    QMenu* exports = file->addMenu(tr("&Export"));
    for (const ExportChoice& choice : exportChoices) {
        QAction* action =
            exports->addAction(tr(choice.label), this, [this, format = choice.format] { exportSermon(format); });
        action->setObjectName(QStringLiteral("export_") + QString::fromLatin1(choice.extension));
        m_needsSermon << action;
        if (choice.format == app::ExportFormat::word)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    }
    exports->addSeparator();
    exports->addAction(tr("Whole &Library Archive…"), this, &MainWindow::exportArchive);
    file->addSeparator();
    file->addAction(tr("&Back Up Library…"), this, &MainWindow::backUp);
    file->addAction(tr("Restore from Bac&kup…"), this, &MainWindow::restore);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
    quit->setObjectName(QStringLiteral("quitAction"));
}

void MainWindow::buildEditMenu() {
    app::SermonNotesViewModel& controller = m_services.controller();
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    m_undo =
        edit->addAction(tr("&Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z), this, [&controller] { controller.undo(); });
    m_undo->setObjectName(QStringLiteral("undoAction"));
    m_undo->setProperty("onToolBar", true);
    m_redo = edit->addAction(tr("&Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), this,
                             [&controller] { controller.redo(); });
    m_redo->setObjectName(QStringLiteral("redoAction"));
    m_redo->setProperty("onToolBar", true);
    edit->addSeparator();
    QAction* find = edit->addAction(tr("&Find Sermons"), QKeySequence::Find, this, [this] {
        m_sidebarDock->show();
        m_sidebar->filterField()->setFocus();
        m_sidebar->filterField()->selectAll();
    });
    find->setObjectName(QStringLiteral("findAction"));
}

void MainWindow::buildSermonMenu() {
    app::SermonNotesViewModel& controller = m_services.controller();
    QMenu* sermon = menuBar()->addMenu(tr("&Sermon"));
    m_pin = sermon->addAction(tr("&Pin"), this, [this, &controller] {
        for (const auto& id : m_sidebar->selectedIds())
            controller.setPinned(id, m_pin->isChecked());
    });
    m_pin->setCheckable(true);
    m_hide = sermon->addAction(tr("&Hide"), this, [this, &controller] {
        for (const auto& id : m_sidebar->selectedIds())
            controller.setHidden(id, m_hide->isChecked());
    });
    m_hide->setCheckable(true);
    QAction* duplicate =
        sermon->addAction(tr("&Duplicate"), QKeySequence(Qt::CTRL | Qt::Key_D), this, &MainWindow::duplicateSelected);
    QAction* tag = sermon->addAction(tr("&Tag Selected…"), this, [this, &controller] {
        bool ok = false;
        QString name = QInputDialog::getText(this, tr("Tag Sermons"), tr("Tag:"), QLineEdit::Normal, {}, &ok);
        if (ok && !name.trimmed().isEmpty())
            controller.applyTag(name.trimmed().toStdString(), m_sidebar->selectedIds());
    });
    sermon->addSeparator();
    QAction* trash = sermon->addAction(tr("Move to &Trash…"), this, [this, &controller] {
        auto ids = m_sidebar->selectedIds();
        if (!ids.empty())
            controller.requestMoveToTrash(ids);
    });
    trash->setObjectName(QStringLiteral("moveToTrashAction"));
    m_needsSermon << m_pin << m_hide << duplicate << tag << trash;
}

void MainWindow::buildViewMenu() {
    app::SermonNotesViewModel& controller = m_services.controller();
    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* layouts = new QActionGroup(this);
    m_classic = view->addAction(tr("&Classic Columns"), this,
                                [&controller] { controller.setLayoutStyle(app::AppLayoutStyle::classic); });
    m_classic->setObjectName(QStringLiteral("classicLayoutAction"));
    m_modern = view->addAction(tr("&Outline Tree"), this,
                               [&controller] { controller.setLayoutStyle(app::AppLayoutStyle::modernOutline); });
    m_modern->setObjectName(QStringLiteral("modernLayoutAction"));
    for (QAction* action : {m_classic, m_modern}) {
        action->setCheckable(true);
        layouts->addAction(action);
    }
    view->addSeparator();
    m_readingMode = view->addAction(tr("&Reading Mode"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R), this,
                                    [this, &controller] { controller.setReadingMode(m_readingMode->isChecked()); });
    m_readingMode->setObjectName(QStringLiteral("readingModeAction"));
    m_readingMode->setCheckable(true);
    m_readingMode->setProperty("onToolBar", true);
    m_compactLayout = view->addAction(tr("Co&mpact Layout"), this, [this, &controller] {
        controller.setCompactLayout(m_compactLayout->isChecked());
    });
    m_compactLayout->setObjectName(QStringLiteral("compactLayoutAction"));
    m_compactLayout->setCheckable(true);
    view->addSeparator();
    QAction* sidebar = m_sidebarDock->toggleViewAction();
    sidebar->setText(tr("&Sermons"));
    sidebar->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S));
    view->addAction(sidebar);
    QAction* bible = m_bibleDock->toggleViewAction();
    bible->setText(tr("&Bible"));
    bible->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_B));
    bible->setObjectName(QStringLiteral("toggleBiblePanelAction"));
    bible->setProperty("onToolBar", true);
    view->addAction(bible);
    QAction* searchBible =
        view->addAction(tr("Search the &Bible"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F), this, [this] {
            m_bibleDock->show();
            m_biblePanel->searchField()->setFocus();
            m_biblePanel->searchField()->selectAll();
        });
    searchBible->setObjectName(QStringLiteral("searchBibleAction"));
}

void MainWindow::buildHelpMenu() {
    app::SermonNotesViewModel& controller = m_services.controller();
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("Run &Self-Test"), this, [this, &controller] {
        QStringList lines;
        for (const auto& result : controller.runSelfTest()) {
            lines << QString::fromStdString(result.line());
            if (!result.sentence.empty())
                lines << QString::fromStdString(result.sentence);
        }
        QMessageBox::information(this, tr("Self-Test"), lines.join(u'\n'));
    });
    help->addAction(tr("&About Quillon"), this, [this] {
        QMessageBox::about(
            this, tr("About Quillon"),
            tr("<b>Quillon</b> %1<br>A sermon-preparation desk.").arg(QApplication::applicationVersion()));
    });
}

void MainWindow::buildSidebarMenu() {
    m_sidebarMenu = new QMenu(this);
    m_sidebarMenu->addAction(m_pin);
    m_sidebarMenu->addAction(m_hide);
    for (QAction* action : m_needsSermon) {
        if (action != m_pin && action != m_hide)
            m_sidebarMenu->addAction(action);
    }
    m_sidebar->setContextMenu(m_sidebarMenu);
    connect(m_sidebar, &SermonSidebar::selectionCountChanged, this, &MainWindow::updateActions);
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
    updateActions();
}

void MainWindow::onSermonChanged() {
    m_sermonModel.reload();
    m_sermonView->syncContent();
    const auto& manager = m_services.manager();
    m_saveStatus->setText(QString::fromStdString(manager.lastSyncStatus()));
    updateTitle();
    updateActions();
}

void MainWindow::onLibraryChanged() {
    m_sermonModel.reload();
    const auto& manager = m_services.manager();
    QString root = QString::fromStdString(m_services.storage().root().string());
    m_sidebar->setStatus(
        QString::fromStdString(manager.lastSyncStatus()),
        (m_services.storage().isUsingCloud() ? tr("Sync folder: %1") : tr("Local library: %1")).arg(root));
    onSelectionChanged();
    rebuildRecentMenu();
}

void MainWindow::onInterfaceChanged() {
    const auto& state = m_services.controller().interfaceState();
    m_sermonView->syncInterface();
    m_classic->setChecked(state.layoutStyle == app::AppLayoutStyle::classic);
    m_modern->setChecked(state.layoutStyle == app::AppLayoutStyle::modernOutline);
    m_readingMode->setChecked(state.readingMode);
    m_compactLayout->setChecked(state.compactLayout);
    m_biblePanel->setCanAttach(m_services.controller().selection().subTopicId.has_value() && !state.readingMode);
    rebuildRecentMenu();
}

void MainWindow::onStatus(const QString& title, const QString& detail, bool isAlert) {
    if (!isAlert) {
        m_toast->showToast(title, detail);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Warning, title, detail, QMessageBox::Ok, this);
    box->setObjectName(QStringLiteral("statusAlert"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this] { m_services.controller().close(app::Sheet::statusAlert); });
    box->open();
}

void MainWindow::confirm(const QString& name, const QString& title, const QString& message, const QString& action,
                         std::function<void()> accepted, std::function<void()> rejected) {
    auto* box = new QMessageBox(QMessageBox::Question, title, message, QMessageBox::Cancel, this);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* yes = box->addButton(action, QMessageBox::DestructiveRole);
    yes->setObjectName(name + QStringLiteral("Accept"));
    box->setDefaultButton(QMessageBox::Cancel);
    connect(box, &QMessageBox::finished, this,
            [box, yes, accepted = std::move(accepted), rejected = std::move(rejected)] {
                if (box->clickedButton() == yes)
                    accepted();
                else
                    rejected();
            });
    box->open();
}

void MainWindow::onSheet(int sheet, bool open) {
    app::SermonNotesViewModel& controller = m_services.controller();
    if (!open)
        return;
    switch (static_cast<app::Sheet>(sheet)) {
    case app::Sheet::deleteConfirmation:
        confirm(
            QStringLiteral("deleteConfirmation"), tr("Delete?"), QString::fromStdString(controller.deletionMessage()),
            tr("Delete"), [&controller] { controller.confirmDeletion(); },
            [&controller] { controller.cancelDeletion(); });
        break;
    case app::Sheet::sermonDeleteConfirmation:
        confirm(
            QStringLiteral("trashConfirmation"), tr("Move to Trash?"),
            QString::fromStdString(controller.trashConfirmationMessage()), tr("Move to Trash"),
            [&controller] { controller.confirmMoveToTrash(); }, [&controller] { controller.cancelMoveToTrash(); });
        break;
    case app::Sheet::restoreBackupConfirmation:
        confirm(
            QStringLiteral("restoreConfirmation"), tr("Restore?"), QString::fromStdString(controller.restoreQuestion()),
            tr("Restore"), [&controller] { controller.confirmRestore(); },
            [&controller] { controller.cancelRestore(); });
        break;
    default:
        break;
    }
}

void MainWindow::updateActions() {
    app::SermonNotesViewModel& controller = m_services.controller();
    m_undo->setEnabled(controller.canUndo());
    m_redo->setEnabled(controller.canRedo());
    const bool hasSermon = controller.selectedSermon() != nullptr || !m_sidebar->selectedIds().empty();
    for (QAction* action : m_needsSermon)
        action->setEnabled(hasSermon);
    auto ids = m_sidebar->selectedIds();
    const auto& manager = m_services.manager();
    m_pin->setChecked(!ids.empty() && manager.pinnedSermonIds().contains(ids.front()));
    m_hide->setChecked(!ids.empty() && manager.hiddenSermonIds().contains(ids.front()));
}

void MainWindow::updateTitle() {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    QString product = QString::fromUtf8(platform::applicationName);
    QString title = sermon && !sermon->title.empty() ? QString::fromStdString(sermon->title) : QString();
    setWindowTitle(title.isEmpty() ? product : title + QStringLiteral(" — ") + product);
}

void MainWindow::rebuildRecentMenu() {
    m_recentMenu->clear();
    const auto& recent = m_services.controller().interfaceState().recentSermonFiles;
    for (const std::string& file : recent) {
        QString path = QString::fromStdString(file);
        m_recentMenu->addAction(QFileInfo(path).fileName(), this, [this, path] { openFiles({path}); })
            ->setToolTip(path);
    }
    m_recentMenu->setEnabled(!recent.empty());
}

void MainWindow::loadSpellingVocabulary() {
    if (!m_spelling->isAvailable())
        return;
    connect(&m_vocabulary, &QFutureWatcher<std::set<std::string>>::finished, this, [this] {
        m_spelling->accept(m_vocabulary.result());
        m_sermonView->recheckSpelling();
    });
    m_vocabulary.setFuture(QtConcurrent::run([loader = &m_services.bibles()] { return bibleVocabulary(*loader); }));
}

// Commands --------------------------------------------------------------------------------------

void MainWindow::newSermon() {
    NewSermonDialog dialog(m_services.controller().newSermonStorageNote(), this);
    if (dialog.exec() == QDialog::Accepted)
        m_services.controller().createSermon(dialog.form());
}

void MainWindow::openDocument() {
    QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Open Sermon"), {}, tr("Quillon sermons (*.quillet *.vrnsermons)"));
    openFiles(files);
}

void MainWindow::importFile() {
    QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Import"), {}, tr("Sermons and outlines (*.quillet *.vrnsermons *.docx *.md *.txt *.rtf)"));
    openFiles(files);
}

void MainWindow::openFiles(const QStringList& files) {
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
    app::SermonNotesViewModel& controller = m_services.controller();
    for (const QString& file : files) {
        std::filesystem::path path = file.toStdString();
        QString suffix = QFileInfo(file).suffix().toLower();
        if (suffix == QStringLiteral("quillet"))
            controller.openDocument(path);
        else if (suffix == QStringLiteral("vrnsermons"))
            controller.importArchive(path);
        else
            controller.importOutlineDocument(path);
    }
}

bool MainWindow::exportSelected(app::ExportFormat format, const QString& file) {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    return sermon && m_exports->start(*sermon, format, file.toStdString());
}

void MainWindow::exportSermon(app::ExportFormat format) {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    if (!sermon)
        return;
    const ExportChoice* choice = nullptr;
    for (const ExportChoice& candidate : exportChoices) {
        if (candidate.format == format)
            choice = &candidate;
    }
    QString suggested = safeFileName(sermon->title) + u'.' + QString::fromLatin1(choice->extension);
    QString file = QFileDialog::getSaveFileName(this, tr("Export Sermon"), suggested, tr(choice->filter));
    if (!file.isEmpty())
        exportSelected(format, file);
}

void MainWindow::exportArchive() {
    QString file = QFileDialog::getSaveFileName(this, tr("Export Library"), QStringLiteral("Quillon.vrnsermons"),
                                                tr("Quillon library archive (*.vrnsermons)"));
    if (!file.isEmpty())
        m_services.controller().exportLibraryArchive(file.toStdString());
}

void MainWindow::backUp() {
    QString folder = QFileDialog::getExistingDirectory(this, tr("Choose Backup Location"));
    if (!folder.isEmpty())
        m_services.controller().backUp(folder.toStdString());
}

void MainWindow::restore() {
    QString folder = QFileDialog::getExistingDirectory(this, tr("Choose a Backup to Restore"));
    if (!folder.isEmpty())
        m_services.controller().requestRestore(folder.toStdString());
}

void MainWindow::duplicateSelected() {
    app::SermonNotesViewModel& controller = m_services.controller();
    const model::SermonNote* sermon = controller.selectedSermon();
    if (!sermon)
        return;
    model::SermonNote copy = controller.store().duplicate(*sermon);
    onLibraryChanged();
    controller.selectSermon(copy.id);
}

// Window ----------------------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    m_stateStore.save(*this);
    QMainWindow::closeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && std::all_of(urls.begin(), urls.end(), [](const QUrl& url) {
            return url.isLocalFile() && isOpenable(url.toLocalFile());
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
