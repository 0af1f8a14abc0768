#include "desktop/sheets/TrashWindow.h"

#include "desktop/shell/Plural.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/sheets/RelativeTime.h"
#include "desktop/shell/EmptyStateOverlay.h"
#include "model/Uuid.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quillon::desktop {

namespace {

constexpr int idRole = Qt::UserRole;

std::vector<model::Uuid> chosenIds(const QListWidget& list) {
    std::vector<model::Uuid> ids;
    for (const QListWidgetItem* item : list.selectedItems()) {
        if (auto id = model::Uuid::parse(item->data(idRole).toString().toStdString()))
            ids.push_back(*id);
    }
    return ids;
}

} // namespace

TrashWindow::TrashWindow(app::SermonNotesViewModel& controller, QWidget* parent)
    : QDialog(parent), m_controller(controller) {
    setObjectName(QStringLiteral("trashWindow"));
    setWindowTitle(tr("Trash"));
    resize(520, 420);
    m_explanation = new QLabel(this);
    m_explanation->setWordWrap(true);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("trashList"));
    m_list->setAccessibleName(tr("Sermons in the trash"));
    new EmptyStateOverlay(*m_list, tr("The trash is empty."));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setAlternatingRowColors(true);
    auto* buttons = new QDialogButtonBox(this);
    m_putBack = buttons->addButton(tr("&Put Back"), QDialogButtonBox::ActionRole);
    m_putBack->setObjectName(QStringLiteral("trashPutBack"));
    m_delete = buttons->addButton(tr("&Delete Permanently…"), QDialogButtonBox::DestructiveRole);
    m_delete->setObjectName(QStringLiteral("trashDelete"));
    buttons->addButton(QDialogButtonBox::Close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_explanation);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(m_putBack, &QPushButton::clicked, this, &TrashWindow::putBackSelected);
    connect(m_delete, &QPushButton::clicked, this, &TrashWindow::deleteSelected);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &TrashWindow::updateButtons);
    connect(m_list, &QListWidget::itemActivated, this, &TrashWindow::putBackSelected);
    reload();
}

TrashWindow* TrashWindow::showFor(QWidget& window, app::SermonNotesViewModel& controller) {
    auto* trash = window.findChild<TrashWindow*>(QStringLiteral("trashWindow"), Qt::FindDirectChildrenOnly);
    if (!trash) {
        trash = new TrashWindow(controller, &window);
        controller.open(app::Sheet::trash);
        connect(trash, &QDialog::finished, trash, [trash, &controller] {
            controller.close(app::Sheet::trash);
            trash->deleteLater();
        });
    }
    trash->reload();
    trash->show();
    trash->raise();
    trash->activateWindow();
    return trash;
}

void TrashWindow::reload() {
    auto entries = m_controller.trash().allTrashed();
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.trashedAt > b.trashedAt; });
    const int days = m_controller.trashRetentionDays();
    m_explanation->setText(
        entries.empty()
            ? tr("The trash is empty.")
            : counted(days, tr("Sermons stay in the trash for %1 day, then they are removed automatically."),
                      tr("Sermons stay in the trash for %1 days, then they are removed automatically.")));
    m_list->clear();
    const auto now = model::toDateTime(std::chrono::system_clock::now());
    for (const auto& entry : entries) {
        QString title = QString::fromStdString(entry.sermon.title);
        if (title.isEmpty())
            title = tr("Untitled Sermon");
        auto* item =
            new QListWidgetItem(tr("%1\nTrashed %2").arg(title, relativeTime(entry.trashedAt, now).toLower()), m_list);
        item->setData(idRole, QString::fromStdString(entry.sermon.id.text()));
        item->setToolTip(localDateTime(entry.trashedAt));
    }
    updateButtons();
}

int TrashWindow::putBackSelected() {
    int restored = 0;
    for (const model::Uuid& id : chosenIds(*m_list))
        restored += m_controller.restoreFromTrash(id) ? 1 : 0;
    reload();
    return restored;
}

void TrashWindow::deleteSelected() {
    const auto ids = chosenIds(*m_list);
    if (ids.empty())
        return;
    auto answer = QMessageBox::question(this, tr("Delete Permanently?"),
                                        counted(static_cast<long long>(ids.size()),
                                                tr("%1 sermon will be deleted permanently. This cannot be undone."),
                                                tr("%1 sermons will be deleted permanently. This cannot be undone.")),
                                        QMessageBox::Cancel | QMessageBox::Yes, QMessageBox::Cancel);
    if (answer != QMessageBox::Yes)
        return;
    for (const model::Uuid& id : ids)
        m_controller.trash().deletePermanently(id);
    reload();
}

void TrashWindow::updateButtons() {
    const bool chosen = !m_list->selectedItems().isEmpty();
    m_putBack->setEnabled(chosen);
    m_delete->setEnabled(chosen);
}

} // namespace quillon::desktop
