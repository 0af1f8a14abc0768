#include "desktop/companions/Companions.h"

#include "app/InterfaceState.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/assistant/AssistantSheet.h"
#include "desktop/assistant/ModelStatusButton.h"
#include "desktop/assistant/SnapshotRouter.h"
#include "desktop/diagnostics/DiagnosticsWindow.h"
#include "desktop/help/HelpWindow.h"
#include "desktop/notifications/DesktopNotifier.h"
#include "desktop/onboarding/OnboardingDialog.h"
#include "desktop/palette/CommandPalette.h"
#include "desktop/preach/PreachPreviewPanel.h"
#include "desktop/settings/SettingsWindow.h"
#include "platform/Paths.h"

#include <QAction>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>

namespace quillon::desktop {

Companions::Companions(QMainWindow& window, DeskServices& services)
    : QObject(&window), m_window(window), m_services(services), m_router(snapshotRouter(services.preferences())) {
    setObjectName(QStringLiteral("companions"));
    addPreachPreview();
    addAssistant();
    addSettings();
    addHelp();
    addOnboarding();
    addPalette();
    addNotifications();
}

Companions::~Companions() = default;

QMenu* Companions::menuBefore(const QString& title, const QString& objectName) {
    if (auto* existing = m_window.menuBar()->findChild<QMenu*>(objectName))
        return existing;
    auto* menu = new QMenu(title, m_window.menuBar());
    menu->setObjectName(objectName);
    const QList<QAction*> menus = m_window.menuBar()->actions();
    // Help stays last, where every desktop keeps it.
    QAction* help = menus.isEmpty() ? nullptr : menus.last();
    m_window.menuBar()->insertMenu(help, menu);
    return menu;
}

void Companions::addPreachPreview() {
    m_preachPreview = new PreachPreviewPanel(m_services, m_router);
    auto* scroll = new QScrollArea;
    scroll->setWidget(m_preachPreview);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    m_preachDock = new QDockWidget(tr("Preach Preview"), &m_window);
    m_preachDock->setObjectName(QStringLiteral("preachPreviewDock"));
    m_preachDock->setWidget(scroll);
    m_window.addDockWidget(Qt::RightDockWidgetArea, m_preachDock);
    if (auto* bible = m_window.findChild<QDockWidget*>(QStringLiteral("biblePanelDock")))
        m_window.tabifyDockWidget(bible, m_preachDock);

    QAction* toggle = m_preachDock->toggleViewAction();
    toggle->setText(tr("&Preach Preview"));
    toggle->setObjectName(QStringLiteral("preachPreviewAction"));
    toggle->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_P));
    connect(toggle, &QAction::triggered, this, [this](bool shown) {
        if (shown)
            m_preachDock->raise();
    });
    menuBefore(tr("&Tools"), QStringLiteral("toolsMenu"))->addAction(toggle);
}

void Companions::addAssistant() {
    QMenu* menu = menuBefore(tr("&Assistant"), QStringLiteral("assistantMenu"));
    for (const app::AssistantFeatureDescription& feature : app::assistantFeatures()) {
        QAction* action =
            menu->addAction(tr(feature.title) + QStringLiteral("…"), this, [this, id = feature.id] { openSheet(id); });
        action->setObjectName(QStringLiteral("assistant:") + QString::fromUtf8(feature.title));
        action->setStatusTip(QString::fromUtf8(feature.summary));
        if (feature.id == app::AssistantFeatureId::askYourLibrary)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L));
    }
    m_modelStatus = new ModelStatusButton(m_router, m_window.statusBar());
    m_window.statusBar()->addPermanentWidget(m_modelStatus);
    connect(m_modelStatus, &QToolButton::clicked, this, [this] { openSettings(QStringLiteral("Model server")); });
}

void Companions::addSettings() {
    QAction* settings =
        menuBefore(tr("&Tools"), QStringLiteral("toolsMenu"))
            ->addAction(tr("&Settings…"), QKeySequence(Qt::CTRL | Qt::Key_Comma), this, [this] { openSettings(); });
    settings->setObjectName(QStringLiteral("settingsAction"));
    settings->setMenuRole(QAction::PreferencesRole);
}

QMenu* Companions::helpMenu() const {
    const QList<QAction*> menus = m_window.menuBar()->actions();
    return menus.isEmpty() ? nullptr : menus.last()->menu();
}

void Companions::addHelp() {
    QMenu* help = helpMenu();
    if (!help)
        return;
    QAction* first = help->actions().isEmpty() ? nullptr : help->actions().first();
    auto* open = new QAction(tr("Quillon &Help"), help);
    open->setObjectName(QStringLiteral("helpAction"));
    open->setShortcut(QKeySequence::HelpContents);
    connect(open, &QAction::triggered, this, [this] { openHelp(); });
    help->insertAction(first, open);
    auto* diagnostics = new QAction(tr("&Diagnostics…"), help);
    diagnostics->setObjectName(QStringLiteral("diagnosticsAction"));
    connect(diagnostics, &QAction::triggered, this, [this] { openDiagnostics(); });
    help->insertAction(first, diagnostics);
    help->insertSeparator(first);
}

void Companions::addNotifications() {
    // Long work (BackgroundTask) finds the notifier among the window's children when it ends.
    m_notifier = new DesktopNotifier(m_window, this);
}

void Companions::addOnboarding() {
    if (QMenu* help = helpMenu()) {
        QAction* welcome = new QAction(tr("&Welcome to Quillon…"), help);
        welcome->setObjectName(QStringLiteral("onboardingAction"));
        connect(welcome, &QAction::triggered, this, [this] { openOnboarding(); });
        const QList<QAction*> actions = help->actions();
        help->insertAction(actions.size() > 1 ? actions.at(1) : nullptr, welcome);
    }
    if (!m_services.preferences().boolean(OnboardingDialog::shownKey, false))
        // Once the window is on screen, so the welcome opens over it.
        QTimer::singleShot(0, this, [this] { openOnboarding(); });
}

OnboardingDialog* Companions::openOnboarding() {
    auto* dialog = new OnboardingDialog(m_services, snapshotRouter(m_services.preferences()), &m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    return dialog;
}

DiagnosticsWindow* Companions::openDiagnostics() {
    auto* window =
        new DiagnosticsWindow(m_services, snapshotRouter(m_services.preferences()), platform::logFile(), &m_window);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return window;
}

HelpWindow* Companions::openHelp() {
    if (!m_help)
        m_help = new HelpWindow(m_router, &m_window);
    m_help->show();
    m_help->raise();
    m_help->activateWindow();
    return m_help;
}

void Companions::addPalette() {
    m_palette = new CommandPalette(*m_window.menuBar(), &m_window);
    QAction* open =
        menuBefore(tr("&Tools"), QStringLiteral("toolsMenu"))->addAction(tr("&Command Palette…"), this, [this] {
            m_palette->open();
        });
    open->setObjectName(QStringLiteral("paletteAction"));
    open->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_K), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P)});
    open->setShortcutContext(Qt::ApplicationShortcut);
}

SettingsWindow* Companions::openSettings(const QString& group) {
    if (!m_settings) {
        m_settings = new SettingsWindow(m_services.preferences(), &m_window);
        connect(m_settings, &SettingsWindow::settingChanged, this, [this](const QString& key) {
            if (key.startsWith(QStringLiteral("Quillon.intelligence"))) {
                m_router = snapshotRouter(m_services.preferences());
                m_preachPreview->setRouter(m_router);
                m_modelStatus->setRouter(m_router);
            }
            if (key.startsWith(QStringLiteral("Quillon.pace")))
                m_preachPreview->refreshNow();
            applyInterfaceSetting(key);
        });
    }
    m_settings->show();
    m_settings->raise();
    m_settings->activateWindow();
    if (!group.isEmpty())
        m_settings->showGroup(group);
    return m_settings;
}

void Companions::applyInterfaceSetting(const QString& key) {
    // The controller keeps the look of the desk and writes it back: it must hear of the change, or the
    // window would not follow and its next save would undo the setting.
    const std::string changed = key.toStdString();
    using State = app::InterfaceState;
    if (changed != State::compactLayoutKey && changed != State::readingModeKey && changed != State::layoutStyleKey &&
        changed != State::topicColumnWidthKey && changed != State::subtopicColumnWidthKey &&
        changed != State::scriptureColumnWidthKey)
        return;
    const State wanted = State::read(m_services.preferences());
    app::SermonNotesViewModel& controller = m_services.controller();
    controller.setCompactLayout(wanted.compactLayout);
    controller.setReadingMode(wanted.readingMode);
    controller.setLayoutStyle(wanted.layoutStyle);
    controller.setTopicColumnWidth(wanted.topicColumnWidth);
    controller.setSubtopicColumnWidth(wanted.subtopicColumnWidth);
    controller.setScriptureColumnWidth(wanted.scriptureColumnWidth);
}

AssistantSheet* Companions::openSheet(app::AssistantFeatureId feature) {
    // A router of its own, over the model settings as they are now, however they were changed.
    auto* sheet = new AssistantSheet(feature, m_services, snapshotRouter(m_services.preferences()), &m_window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &AssistantSheet::sourceActivated, this, &Companions::openSource);
    sheet->show();
    return sheet;
}

void Companions::openSource(const QString& link) {
    if (link.startsWith(QStringLiteral("sermon:"))) {
        if (auto id = model::Uuid::parse(link.mid(7).toStdString()))
            m_services.controller().selectSermon(*id);
        return;
    }
    if (!link.startsWith(QStringLiteral("bible:")))
        return;
    auto* dock = m_window.findChild<QDockWidget*>(QStringLiteral("biblePanelDock"));
    auto* field = dock ? dock->findChild<QLineEdit*>(QStringLiteral("bibleSearchField")) : nullptr;
    if (!field)
        return;
    dock->show();
    dock->raise();
    field->setText(link.mid(6));
    emit field->returnPressed();
}

} // namespace quillon::desktop
