#include "desktop/shell/DeskMenus.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/sidebar/SermonSidebar.h"

#include <QAction>
#include <QActionGroup>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolBar>

namespace quillon::desktop {

namespace {

struct ExportEntry {
    app::ExportFormat format;
    const char* label;
    const char* name;
};

constexpr ExportEntry exportEntries[] = {
    {app::ExportFormat::word, QT_TR_NOOP("&Word Document…"), "export_docx"},
    {app::ExportFormat::powerPoint, QT_TR_NOOP("&PowerPoint Slides…"), "export_pptx"},
    {app::ExportFormat::pdf, QT_TR_NOOP("P&DF Hand-out…"), "export_pdf"},
    {app::ExportFormat::rtf, QT_TR_NOOP("&RTF Document…"), "export_rtf"},
    {app::ExportFormat::markdown, QT_TR_NOOP("&Markdown…"), "export_md"},
};

/// The toolbar's commands, in order; a null entry is a separator.
constexpr const char* toolBarCommands[] = {"newSermonAction", "undoAction",        "redoAction",
                                           nullptr,           "readingModeAction", "toggleBiblePanelAction",
                                           nullptr,           "sendToScreenAction"};

} // namespace

DeskMenus::DeskMenus(const DeskParts& parts) : QObject(parts.window), m_parts(parts) {
    QMenuBar* bar = m_parts.window->menuBar();
    const char* titles[] = {QT_TR_NOOP("&File"), QT_TR_NOOP("&Edit"),  QT_TR_NOOP("&Sermon"),
                            QT_TR_NOOP("&View"), QT_TR_NOOP("Se&tup"), QT_TR_NOOP("&Help")};
    for (std::size_t i = 0; i < m_menus.size(); ++i)
        m_menus[i] = bar->addMenu(tr(titles[i]));
    buildFileMenu();
    buildEditMenu();
    buildSermonMenu();
    buildViewMenu();
    buildSetupMenu();
    buildHelpMenu();
    buildToolBar();
    buildSidebarMenu();
    rebuildRecentMenu();
}

DeskMenus::~DeskMenus() = default;

QAction* DeskMenus::named(QAction* action, const char* name) {
    action->setObjectName(QString::fromLatin1(name));
    return action;
}

QAction* DeskMenus::add(DeskMenu which, const char* name, const QString& text, const QKeySequence& shortcut,
                        std::function<void()> run) {
    QAction* action = menu(which)->addAction(text);
    action->setShortcut(shortcut);
    if (run)
        connect(action, &QAction::triggered, this, std::move(run));
    return named(action, name);
}

QAction* DeskMenus::command(const QString& name) const {
    for (QAction* action : commands()) {
        if (action->objectName() == name)
            return action;
    }
    return nullptr;
}

QList<QAction*> DeskMenus::commands() const {
    QList<QAction*> all;
    std::function<void(QMenu*)> collect = [&](QMenu* menu) {
        for (QAction* action : menu->actions()) {
            if (action->menu())
                collect(action->menu());
            else if (!action->isSeparator() && !action->objectName().isEmpty())
                all << action;
        }
    };
    for (QMenu* menu : m_menus)
        collect(menu);
    return all;
}

void DeskMenus::buildFileMenu() {
    DeskCommands* commands = m_parts.commands;
    QMenu* file = menu(DeskMenu::file);
    add(DeskMenu::file, "newSermonAction", tr("&New Sermon…"), QKeySequence::New,
        [commands] { commands->newSermon(); });
    add(DeskMenu::file, "newFromRecordingAction", tr("New Sermon from &Recording…"), {},
        [commands] { commands->newSermonFromRecording(); });
    add(DeskMenu::file, "openAction", tr("&Open…"), QKeySequence::Open, [commands] { commands->openDocument(); });
    m_recent = file->addMenu(tr("Open &Recent"));
    m_recent->setObjectName(QStringLiteral("recentMenu"));
    add(DeskMenu::file, "importAction", tr("&Import…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I),
        [commands] { commands->importFile(); });
    file->addSeparator();
    QMenu* exports = file->addMenu(tr("&Export"));
    exports->setObjectName(QStringLiteral("exportMenu"));
    for (const ExportEntry& entry : exportEntries) {
        QAction* action = exports->addAction(tr(entry.label), this,
                                             [commands, format = entry.format] { commands->exportSermon(format); });
        named(action, entry.name);
        m_needsSermon << action;
        if (entry.format == app::ExportFormat::word)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    }
    exports->addSeparator();
    named(exports->addAction(tr("Whole &Library Archive…"), this, [commands] { commands->exportArchive(); }),
          "exportArchiveAction");
    m_needsSermon << add(DeskMenu::file, "printAction", tr("&Print…"), QKeySequence::Print,
                         [commands] { commands->print(); });
    file->addSeparator();
    add(DeskMenu::file, "backUpAction", tr("&Back Up Library…"), {}, [commands] { commands->backUp(); });
    add(DeskMenu::file, "restoreAction", tr("Restore from Bac&kup…"), {}, [commands] { commands->restore(); });
    file->addSeparator();
    add(DeskMenu::file, "quitAction", tr("&Quit"), QKeySequence::Quit, [window = m_parts.window] { window->close(); });
}

void DeskMenus::buildEditMenu() {
    app::SermonNotesViewModel& controller = m_parts.services->controller();
    add(DeskMenu::edit, "undoAction", tr("&Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z),
        [&controller] { controller.undo(); });
    add(DeskMenu::edit, "redoAction", tr("&Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z),
        [&controller] { controller.redo(); });
    menu(DeskMenu::edit)->addSeparator();
    add(DeskMenu::edit, "findAction", tr("&Find…"), QKeySequence::Find,
        [commands = m_parts.commands] { commands->showSearch(); });
    add(DeskMenu::edit, "filterSermonsAction", tr("&Filter Sermons"), QKeySequence(Qt::CTRL | Qt::Key_L),
        [parts = m_parts] {
            parts.sidebarDock->show();
            parts.sidebar->filterField()->setFocus(Qt::ShortcutFocusReason);
            parts.sidebar->filterField()->selectAll();
        });
    add(DeskMenu::edit, "searchBibleAction", tr("Search the &Bible"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
        [parts = m_parts] {
            parts.bibleDock->show();
            parts.biblePanel->searchField()->setFocus(Qt::ShortcutFocusReason);
            parts.biblePanel->searchField()->selectAll();
        });
}

void DeskMenus::buildSermonMenu() {
    DeskCommands* commands = m_parts.commands;
    QAction* pin = add(DeskMenu::sermon, "pinAction", tr("&Pin"), {}, {});
    pin->setCheckable(true);
    connect(pin, &QAction::triggered, this, [commands](bool on) { commands->setPinned(on); });
    QAction* hide = add(DeskMenu::sermon, "hideAction", tr("&Hide"), {}, {});
    hide->setCheckable(true);
    connect(hide, &QAction::triggered, this, [commands](bool on) { commands->setHidden(on); });
    QAction* duplicate = add(DeskMenu::sermon, "duplicateAction", tr("&Duplicate"), QKeySequence(Qt::CTRL | Qt::Key_D),
                             [commands] { commands->duplicateSelected(); });
    QAction* tag = add(DeskMenu::sermon, "tagAction", tr("&Tag Selected…"), QKeySequence(Qt::CTRL | Qt::Key_T),
                       [commands] { commands->tagSelected(); });
    QAction* history =
        add(DeskMenu::sermon, "versionHistoryAction", tr("&Version History…"),
            QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_H), [commands] { commands->showVersionHistory(); });
    menu(DeskMenu::sermon)->addSeparator();
    QAction* send = add(DeskMenu::sermon, "sendToScreenAction", tr("&Send to Screen"),
                        QKeySequence(Qt::CTRL | Qt::Key_Return), [commands] { commands->sendToScreen(); });
    send->setToolTip(tr("Put the selected scripture on Brenmoor and Calvane (Ctrl+Return)"));
    menu(DeskMenu::sermon)->addSeparator();
    QAction* trash = add(DeskMenu::sermon, "moveToTrashAction", tr("Move to &Trash…"),
                         QKeySequence(Qt::CTRL | Qt::Key_Backspace), [commands] { commands->moveSelectedToTrash(); });
    m_needsSermon << pin << hide << duplicate << tag << history << trash;
}

void DeskMenus::buildViewMenu() {
    app::SermonNotesViewModel& controller = m_parts.services->controller();
    QMenu* view = menu(DeskMenu::view);
    auto* layouts = new QActionGroup(this);
    QAction* classic =
        add(DeskMenu::view, "classicLayoutAction", tr("&Classic Columns"), QKeySequence(Qt::CTRL | Qt::Key_1),
            [&controller] { controller.setLayoutStyle(app::AppLayoutStyle::classic); });
    QAction* modern = add(DeskMenu::view, "modernLayoutAction", tr("&Outline Tree"), QKeySequence(Qt::CTRL | Qt::Key_2),
                          [&controller] { controller.setLayoutStyle(app::AppLayoutStyle::modernOutline); });
    for (QAction* action : {classic, modern}) {
        action->setCheckable(true);
        layouts->addAction(action);
    }
    view->addSeparator();
    QAction* reading = add(DeskMenu::view, "readingModeAction", tr("&Reading Mode"),
                           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R), {});
    reading->setCheckable(true);
    connect(reading, &QAction::triggered, this, [&controller](bool on) { controller.setReadingMode(on); });
    QAction* compact = add(DeskMenu::view, "compactLayoutAction", tr("Co&mpact Layout"), {}, {});
    compact->setCheckable(true);
    connect(compact, &QAction::triggered, this, [&controller](bool on) { controller.setCompactLayout(on); });
    view->addSeparator();
    QAction* sidebar = named(m_parts.sidebarDock->toggleViewAction(), "toggleSidebarAction");
    sidebar->setText(tr("&Sermons"));
    sidebar->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_S));
    view->addAction(sidebar);
    QAction* bible = named(m_parts.bibleDock->toggleViewAction(), "toggleBiblePanelAction");
    bible->setText(tr("&Bible"));
    bible->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_B));
    view->addAction(bible);
}

void DeskMenus::buildSetupMenu() {
    DeskCommands* commands = m_parts.commands;
    add(DeskMenu::setup, "trashAction", tr("&Trash…"), {}, [commands] { commands->showTrash(); });
    add(DeskMenu::setup, "pairAction", tr("&Pair with a Screen…"), {}, [commands] { commands->pairWithScreen(); });
    add(DeskMenu::setup, "selfTestAction", tr("Run &Self-Test"), {}, [commands] { commands->runSelfTest(); });
}

void DeskMenus::buildHelpMenu() {
    DeskCommands* commands = m_parts.commands;
    add(DeskMenu::help, "aboutAction", tr("&About Quillon"), {}, [commands] { commands->about(); });
}

void DeskMenus::buildToolBar() {
    QToolBar* tools = m_parts.window->addToolBar(tr("Tools"));
    tools->setObjectName(QStringLiteral("mainToolBar"));
    tools->setMovable(false);
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const char* name : toolBarCommands) {
        if (!name) {
            tools->addSeparator();
            continue;
        }
        if (QAction* action = command(QString::fromLatin1(name)))
            tools->addAction(action);
    }
}

void DeskMenus::buildSidebarMenu() {
    auto* context = new QMenu(m_parts.window);
    context->setObjectName(QStringLiteral("sidebarMenu"));
    for (const char* name : {"pinAction", "hideAction", "duplicateAction", "tagAction"})
        context->addAction(command(QString::fromLatin1(name)));
    QMenu* exports = context->addMenu(tr("&Export"));
    for (const ExportEntry& entry : exportEntries)
        exports->addAction(command(QString::fromLatin1(entry.name)));
    context->addSeparator();
    context->addAction(command(QStringLiteral("moveToTrashAction")));
    m_parts.sidebar->setContextMenu(context);
    connect(m_parts.sidebar, &SermonSidebar::selectionCountChanged, this, &DeskMenus::update);
}

void DeskMenus::update() {
    app::SermonNotesViewModel& controller = m_parts.services->controller();
    const auto& state = controller.interfaceState();
    command(QStringLiteral("undoAction"))->setEnabled(controller.canUndo());
    command(QStringLiteral("redoAction"))->setEnabled(controller.canRedo());
    const auto ids = m_parts.sidebar->selectedIds();
    const bool hasSermon = controller.selectedSermon() != nullptr || !ids.empty();
    for (QAction* action : m_needsSermon)
        action->setEnabled(hasSermon);
    const auto& manager = m_parts.services->manager();
    command(QStringLiteral("pinAction"))->setChecked(!ids.empty() && manager.pinnedSermonIds().contains(ids.front()));
    command(QStringLiteral("hideAction"))->setChecked(!ids.empty() && manager.hiddenSermonIds().contains(ids.front()));
    command(QStringLiteral("classicLayoutAction"))->setChecked(state.layoutStyle == app::AppLayoutStyle::classic);
    command(QStringLiteral("modernLayoutAction"))->setChecked(state.layoutStyle == app::AppLayoutStyle::modernOutline);
    command(QStringLiteral("readingModeAction"))->setChecked(state.readingMode);
    command(QStringLiteral("compactLayoutAction"))->setChecked(state.compactLayout);
    command(QStringLiteral("sendToScreenAction"))->setEnabled(controller.selection().scriptureId.has_value());
    const int count = static_cast<int>(ids.size());
    command(QStringLiteral("moveToTrashAction"))
        ->setText(count > 1 ? tr("Move %1 Sermons to &Trash…").arg(count) : tr("Move to &Trash…"));
}

void DeskMenus::rebuildRecentMenu() {
    m_recent->clear();
    const auto& recent = m_parts.services->controller().interfaceState().recentSermonFiles;
    for (const std::string& file : recent) {
        QString path = QString::fromStdString(file);
        m_recent
            ->addAction(QFileInfo(path).fileName(), this,
                        [commands = m_parts.commands, path] { commands->openFiles({path}); })
            ->setToolTip(path);
    }
    m_recent->setEnabled(!recent.empty());
}

} // namespace quillon::desktop
