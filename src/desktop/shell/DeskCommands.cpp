#include "desktop/shell/DeskCommands.h"

#include "desktop/shell/Plural.h"

#include "app/OutlineEditing.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/mesh/MeshLink.h"
#include "desktop/outline/OutlineModel.h"
#include "desktop/scripture/ScripturePanel.h"
#include "desktop/search/DeskSearch.h"
#include "desktop/sheets/NewSermonDialog.h"
#include "desktop/sheets/PairingDialog.h"
#include "desktop/sheets/TrashWindow.h"
#include "desktop/sheets/VersionHistoryWindow.h"
#include "desktop/shell/BackgroundTask.h"
#include "desktop/shell/ExportRunner.h"
#include "desktop/shell/RecordingImport.h"
#include "desktop/shell/SermonPrinter.h"
#include "desktop/sidebar/SermonSidebar.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStatusBar>
#include <QWidget>

namespace quillon::desktop {

namespace {

struct ExportFile {
    app::ExportFormat format;
    const char* filter;
    const char* extension;
};

constexpr ExportFile exportFiles[] = {
    {app::ExportFormat::word, "Word document (*.docx)", "docx"},
    {app::ExportFormat::powerPoint, "PowerPoint presentation (*.pptx)", "pptx"},
    {app::ExportFormat::pdf, "PDF document (*.pdf)", "pdf"},
    {app::ExportFormat::rtf, "Rich text (*.rtf)", "rtf"},
    {app::ExportFormat::markdown, "Markdown (*.md)", "md"},
};

/// The controller's last message, for the notification of work that finished behind other windows.
std::optional<TaskNotice> noticeOf(const app::SermonNotesViewModel& controller) {
    const auto& message = controller.lastStatus();
    if (!message)
        return std::nullopt;
    return TaskNotice{QString::fromStdString(message->title), QString::fromStdString(message->detail)};
}

QString safeFileName(const std::string& title) {
    QString name = QString::fromStdString(title).trimmed();
    name.replace(QRegularExpression(QStringLiteral("[/\\\\:*?\"<>|]")), QStringLiteral("-"));
    return name.isEmpty() ? QStringLiteral("Sermon") : name;
}

} // namespace

DeskCommands::DeskCommands(QWidget& window, DeskServices& services, SermonSidebar& sidebar, ExportRunner& exports)
    : QObject(&window), m_window(window), m_services(services), m_sidebar(sidebar), m_exports(exports),
      m_printer(new SermonPrinter(window, services.controller(), services.verseText(), this)),
      m_recording(new RecordingImport(window, services)) {}

DeskCommands::~DeskCommands() = default;

bool DeskCommands::isOpenable(const QString& file) {
    static const QStringList suffixes = {"quillet", "vrnsermons", "docx", "md", "txt", "rtf"};
    return suffixes.contains(QFileInfo(file).suffix().toLower());
}

void DeskCommands::newSermon() {
    NewSermonDialog dialog(m_services.controller().newSermonStorageNote(), &m_window);
    if (dialog.exec() == QDialog::Accepted)
        m_services.controller().createSermon(dialog.form());
}

void DeskCommands::openDocument() {
    openFiles(QFileDialog::getOpenFileNames(&m_window, tr("Open Sermon"), {},
                                            tr("Quillon sermons (*.quillet *.vrnsermons)")));
}

void DeskCommands::importFile() {
    openFiles(QFileDialog::getOpenFileNames(
        &m_window, tr("Import"), {}, tr("Sermons and outlines (*.quillet *.vrnsermons *.docx *.md *.txt *.rtf)")));
}

void DeskCommands::openFiles(const QStringList& files) {
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

bool DeskCommands::exportSelected(app::ExportFormat format, const QString& file) {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    if (!sermon || !m_exports.start(*sermon, format, file.toStdString()))
        return false;
    // The window stays usable meanwhile; the status bar says what is under way until the toast.
    if (auto* window = qobject_cast<QMainWindow*>(&m_window)) {
        window->statusBar()->showMessage(tr("Exporting “%1”…").arg(QString::fromStdString(sermon->title)));
        connect(&m_exports, &ExportRunner::finished, window->statusBar(), &QStatusBar::clearMessage,
                Qt::SingleShotConnection);
    }
    return true;
}

void DeskCommands::exportSermon(app::ExportFormat format) {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    if (!sermon)
        return;
    const ExportFile* choice = &exportFiles[0];
    for (const ExportFile& candidate : exportFiles) {
        if (candidate.format == format)
            choice = &candidate;
    }
    QString suggested = safeFileName(sermon->title) + u'.' + QString::fromLatin1(choice->extension);
    QString file = QFileDialog::getSaveFileName(&m_window, tr("Export Sermon"), suggested, tr(choice->filter));
    if (!file.isEmpty())
        exportSelected(format, file);
}

void DeskCommands::exportArchive() {
    QString file = QFileDialog::getSaveFileName(&m_window, tr("Export Library"), QStringLiteral("Quillon.vrnsermons"),
                                                tr("Quillon library archive (*.vrnsermons)"));
    if (!file.isEmpty())
        exportArchiveTo(file);
}

bool DeskCommands::exportArchiveTo(const QString& file) {
    return m_exports.startArchive(file.toStdString());
}

void DeskCommands::print() {
    if (const model::SermonNote* sermon = m_services.controller().selectedSermon())
        m_printer->print(*sermon);
}

void DeskCommands::backUp() {
    app::SermonNotesViewModel& controller = m_services.controller();
    if (controller.store().sermons().empty()) {
        // The controller's own alert; no folder is asked for an empty library.
        controller.prepareBackUp({});
        return;
    }
    QString folder = QFileDialog::getExistingDirectory(&m_window, tr("Choose Backup Location"));
    if (!folder.isEmpty())
        backUpTo(folder);
}

BackgroundTask* DeskCommands::backUpTo(const QString& folder, bool continueWhenLow) {
    app::SermonNotesViewModel& controller = m_services.controller();
    m_backupFolder = folder.toStdString();
    auto job = controller.prepareBackUp(*m_backupFolder, continueWhenLow);
    if (!job)
        return nullptr;
    return BackgroundTask::start<app::BackupOutcome>(
        &m_window, tr("Backing up the library…"),
        [&controller, job = std::move(*job)](std::stop_token stop, const BackgroundTask::Progress&) {
            return controller.writeBackUp(job, stop);
        },
        [&controller](app::BackupOutcome outcome) -> std::optional<TaskNotice> {
            if (outcome.cancelled)
                return std::nullopt;
            controller.finishBackUp(outcome);
            return noticeOf(controller);
        });
}

void DeskCommands::backUpAnyway() {
    if (m_backupFolder)
        backUpTo(QString::fromStdString(m_backupFolder->string()), true);
}

void DeskCommands::restore() {
    QString folder = QFileDialog::getExistingDirectory(&m_window, tr("Choose a Backup to Restore"));
    if (!folder.isEmpty())
        restoreFrom(folder);
}

void DeskCommands::restoreFrom(const QString& folder) {
    m_services.controller().requestRestore(folder.toStdString());
}

BackgroundTask* DeskCommands::restoreConfirmed() {
    app::SermonNotesViewModel& controller = m_services.controller();
    auto folder = controller.takeConfirmedRestore();
    if (!folder)
        return nullptr;
    const QString name = QFileInfo(QString::fromStdString(folder->string())).fileName();
    return BackgroundTask::start<app::RestoreRead>(
        &m_window, tr("Reading “%1”…").arg(name),
        [folder = *folder](std::stop_token stop, const BackgroundTask::Progress&) {
            return app::SermonNotesViewModel::readBackup(folder, stop);
        },
        [&controller](app::RestoreRead read) -> std::optional<TaskNotice> {
            // Cancelled while reading: the library was never touched.
            if (read.cancelled)
                return std::nullopt;
            controller.finishRestore(std::move(read));
            return noticeOf(controller);
        });
}

void DeskCommands::newSermonFromRecording(const QString& file) {
    m_recording->start(file);
}

void DeskCommands::duplicateSelected() {
    app::SermonNotesViewModel& controller = m_services.controller();
    if (const model::SermonNote* sermon = controller.selectedSermon())
        controller.duplicateSermon(sermon->id);
}

void DeskCommands::setPinned(bool pinned) {
    for (const auto& id : m_sidebar.selectedIds())
        m_services.controller().setPinned(id, pinned);
}

void DeskCommands::setHidden(bool hidden) {
    for (const auto& id : m_sidebar.selectedIds())
        m_services.controller().setHidden(id, hidden);
}

void DeskCommands::tagSelected() {
    auto ids = m_sidebar.selectedIds();
    if (ids.empty())
        return;
    bool ok = false;
    QString name = QInputDialog::getText(
        &m_window, tr("Tag Sermons"),
        counted(static_cast<long long>(ids.size()), tr("Tag for %1 sermon:"), tr("Tag for %1 sermons:")),
        QLineEdit::Normal, {}, &ok);
    if (ok && !name.trimmed().isEmpty())
        m_services.controller().applyTag(name.trimmed().toStdString(), ids);
}

void DeskCommands::moveSelectedToTrash() {
    auto ids = m_sidebar.selectedIds();
    if (ids.empty()) {
        if (const model::SermonNote* sermon = m_services.controller().selectedSermon())
            ids.push_back(sermon->id);
    }
    if (!ids.empty())
        m_services.controller().requestMoveToTrash(ids);
}

void DeskCommands::showTrash() {
    TrashWindow::showFor(m_window, m_services.controller());
}

void DeskCommands::showVersionHistory() {
    VersionHistoryWindow::showFor(m_window, m_services.controller(), m_services.versions());
}

void DeskCommands::runSelfTest() {
    QStringList lines;
    bool healthy = true;
    for (const auto& result : m_services.controller().runSelfTest()) {
        lines << QString::fromStdString(result.line());
        if (!result.sentence.empty()) {
            healthy = false;
            lines << QString::fromStdString(result.sentence);
        }
    }
    auto* box = new QMessageBox(healthy ? QMessageBox::Information : QMessageBox::Warning, tr("Self-Test"),
                                lines.join(u'\n'), QMessageBox::Ok, &m_window);
    box->setObjectName(QStringLiteral("selfTestResult"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void DeskCommands::about() {
    QMessageBox::about(&m_window, tr("About Quillon"),
                       tr("<b>Quillon</b> %1<br>A sermon-preparation desk.").arg(QApplication::applicationVersion()));
}

void DeskCommands::sendToScreen() {
    app::SermonNotesViewModel& controller = m_services.controller();
    const model::SermonNote* sermon = controller.selectedSermon();
    const auto& selection = controller.selection();
    const model::SermonScripture* scripture =
        sermon && selection.scriptureId ? app::findScripture(*sermon, *selection.scriptureId) : nullptr;
    auto* statusBar =
        qobject_cast<QMainWindow*>(&m_window) ? qobject_cast<QMainWindow*>(&m_window)->statusBar() : nullptr;
    auto say = [statusBar](const QString& text) {
        if (statusBar)
            statusBar->showMessage(text, 5000);
    };
    if (!scripture)
        return say(tr("Choose a scripture to send to the screen."));
    if (!m_mesh || !m_mesh->isRunning())
        return say(tr("The screens are not connected; the scripture mesh is not running."));
    const QString reference = scriptureTitle(*scripture);
    const QString version = QString::fromUtf8(model::rawValue(scripture->version));
    m_mesh->announce(reference, QString::fromStdString(scripture->bookName), version,
                     passageText(m_services.bibles(), *scripture));
    say(tr("Sent %1 (%2) to the screens.").arg(reference, version));
}

void DeskCommands::showSearch() {
    DeskSearch* search = DeskSearch::showFor(m_window, m_services);
    if (search->property("connected").toBool())
        return;
    search->setProperty("connected", true);
    connect(search, &DeskSearch::sermonChosen, this,
            [this](const model::Uuid& id) { m_services.controller().selectSermon(id); });
    connect(search, &DeskSearch::referenceChosen, this, &DeskCommands::referenceRequested);
}

void DeskCommands::pairWithScreen() {
    if (!m_mesh)
        return;
    auto* dialog = m_window.findChild<PairingDialog*>(QStringLiteral("pairingDialog"), Qt::FindDirectChildrenOnly);
    if (!dialog) {
        dialog = new PairingDialog(*m_mesh, &m_window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace quillon::desktop
