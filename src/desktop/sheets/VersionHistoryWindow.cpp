#include "desktop/sheets/VersionHistoryWindow.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/sheets/RelativeTime.h"
#include "desktop/shell/EmptyStateOverlay.h"
#include "store/SermonVersionHistory.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace quillon::desktop {

namespace {

QString html(const std::string& text) {
    return QString::fromStdString(text).toHtmlEscaped();
}

/// The snapshot's outline and the start of its manuscript, as the preview pane shows them.
QString previewHtml(const model::SermonNote& sermon) {
    QString page = QStringLiteral("<h3>%1</h3>").arg(html(sermon.title));
    if (!sermon.topics.empty()) {
        page += QStringLiteral("<ol>");
        for (const auto& topic : sermon.topics) {
            page += QStringLiteral("<li><b>%1</b>").arg(html(topic.title));
            if (!topic.subTopics.empty()) {
                page += QStringLiteral("<ul>");
                for (const auto& sub : topic.subTopics)
                    page += QStringLiteral("<li>%1</li>").arg(html(sub.title));
                page += QStringLiteral("</ul>");
            }
            page += QStringLiteral("</li>");
        }
        page += QStringLiteral("</ol>");
    }
    QString notes = QString::fromStdString(sermon.notes);
    if (notes.size() > 600)
        notes = notes.left(600) + QStringLiteral("…");
    if (!notes.isEmpty())
        page += QStringLiteral("<p>%1</p>").arg(notes.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
    return page;
}

} // namespace

VersionHistoryWindow::VersionHistoryWindow(app::SermonNotesViewModel& controller, store::SermonVersionHistory& versions,
                                           QWidget* parent)
    : QDialog(parent), m_controller(controller), m_versions(versions) {
    setObjectName(QStringLiteral("versionHistoryWindow"));
    setWindowTitle(tr("Version History"));
    resize(760, 480);
    m_heading = new QLabel(this);
    m_heading->setWordWrap(true);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("versionList"));
    m_list->setAccessibleName(tr("Earlier versions"));
    new EmptyStateOverlay(*m_list, tr("No earlier versions yet."));
    m_preview = new QTextBrowser(this);
    m_preview->setObjectName(QStringLiteral("versionPreview"));
    m_preview->setAccessibleName(tr("The chosen version"));
    auto* split = new QSplitter(this);
    split->addWidget(m_list);
    split->addWidget(m_preview);
    split->setStretchFactor(1, 1);
    split->setSizes({240, 520});
    auto* buttons = new QDialogButtonBox(this);
    m_restore = buttons->addButton(tr("&Restore This Version"), QDialogButtonBox::ActionRole);
    m_restore->setObjectName(QStringLiteral("versionRestore"));
    buttons->addButton(QDialogButtonBox::Close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_heading);
    layout->addWidget(split, 1);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(m_restore, &QPushButton::clicked, this, &VersionHistoryWindow::restoreChosen);
    connect(m_list, &QListWidget::currentRowChanged, this, &VersionHistoryWindow::showPreview);
    reload();
}

VersionHistoryWindow::~VersionHistoryWindow() = default;

VersionHistoryWindow* VersionHistoryWindow::showFor(QWidget& window, app::SermonNotesViewModel& controller,
                                                    store::SermonVersionHistory& versions) {
    auto* history =
        window.findChild<VersionHistoryWindow*>(QStringLiteral("versionHistoryWindow"), Qt::FindDirectChildrenOnly);
    if (!history) {
        history = new VersionHistoryWindow(controller, versions, &window);
        controller.open(app::Sheet::versionHistory);
        connect(history, &QDialog::finished, history, [history, &controller] {
            controller.close(app::Sheet::versionHistory);
            history->deleteLater();
        });
    }
    history->reload();
    history->show();
    history->raise();
    history->activateWindow();
    return history;
}

void VersionHistoryWindow::reload() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    m_snapshots = sermon ? m_versions.snapshots(sermon->id) : std::vector<store::VersionSnapshot>{};
    if (!sermon)
        m_heading->setText(tr("Choose a sermon to see its earlier versions."));
    else if (m_snapshots.empty())
        m_heading->setText(tr("“%1” has no earlier versions yet. Quillon keeps one as you edit, at most every few "
                              "minutes.")
                               .arg(QString::fromStdString(sermon->title)));
    else
        m_heading->setText(tr("Earlier versions of “%1”").arg(QString::fromStdString(sermon->title)));
    m_list->clear();
    const auto now = model::toDateTime(std::chrono::system_clock::now());
    for (const auto& snapshot : m_snapshots) {
        auto* item = new QListWidgetItem(relativeTime(snapshot.savedAt, now), m_list);
        item->setToolTip(localDateTime(snapshot.savedAt));
    }
    if (!m_snapshots.empty())
        m_list->setCurrentRow(0);
    showPreview();
}

void VersionHistoryWindow::showPreview() {
    const int row = m_list->currentRow();
    const bool chosen = row >= 0 && row < static_cast<int>(m_snapshots.size());
    m_restore->setEnabled(chosen);
    m_preview->setHtml(chosen ? previewHtml(m_snapshots[static_cast<std::size_t>(row)].sermon) : QString());
}

bool VersionHistoryWindow::restoreChosen() {
    const int row = m_list->currentRow();
    if (row < 0 || row >= static_cast<int>(m_snapshots.size()))
        return false;
    bool restored = m_controller.restoreVersion(m_snapshots[static_cast<std::size_t>(row)].sermon);
    reload();
    return restored;
}

} // namespace quillon::desktop
