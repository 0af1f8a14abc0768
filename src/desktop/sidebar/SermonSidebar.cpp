#include "desktop/sidebar/SermonSidebar.h"

#include "desktop/shell/EmptyStateOverlay.h"
#include "desktop/sidebar/SermonListDelegate.h"
#include "desktop/sidebar/SermonListModel.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QVBoxLayout>

namespace quillon::desktop {

SermonSidebar::SermonSidebar(SermonListModel& model, QWidget* parent) : QWidget(parent), m_model(model) {
    setObjectName(QStringLiteral("sermonSidebar"));
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("sidebarFilter"));
    m_filter->setPlaceholderText(tr("Filter sermons"));
    m_filter->setAccessibleName(tr("Filter sermons"));
    m_filter->setClearButtonEnabled(true);

    m_list = new QListView(this);
    m_list->setObjectName(QStringLiteral("sermonList"));
    m_list->setAccessibleName(tr("Sermons"));
    m_list->setModel(&m_model);
    m_list->setItemDelegate(new SermonListDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_showHidden = new QCheckBox(tr("Show hidden sermons"), this);
    m_showHidden->setObjectName(QStringLiteral("showHiddenToggle"));
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("sermonCount"));
    m_syncStatus = new QLabel(this);
    m_syncStatus->setObjectName(QStringLiteral("syncStatus"));
    m_syncStatus->setWordWrap(true);
    m_storageRoot = new QLabel(this);
    m_storageRoot->setObjectName(QStringLiteral("storageRoot"));
    m_storageRoot->setTextInteractionFlags(Qt::TextSelectableByMouse);
    for (QLabel* label : {m_count, m_syncStatus, m_storageRoot}) {
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * 0.9);
        label->setFont(font);
        label->setForegroundRole(QPalette::PlaceholderText);
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    m_empty = new EmptyStateOverlay(*m_list);
    m_empty->setObjectName(QStringLiteral("sermonListEmpty"));
    layout->addWidget(m_filter);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_showHidden);
    layout->addWidget(m_count);
    layout->addWidget(m_syncStatus);
    layout->addWidget(m_storageRoot);

    connect(m_filter, &QLineEdit::textChanged, this, &SermonSidebar::onFilterChanged);
    connect(m_showHidden, &QCheckBox::toggled, this, [this](bool show) {
        m_model.setShowHidden(show);
        restoreCurrentAfterReset();
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SermonSidebar::onCurrentRowChanged);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { emit selectionCountChanged(static_cast<int>(selectedIds().size())); });
    connect(m_list, &QListView::customContextMenuRequested, this, [this](const QPoint& point) {
        if (m_contextMenu && m_list->indexAt(point).isValid())
            m_contextMenu->popup(m_list->viewport()->mapToGlobal(point));
    });
    connect(&m_model, &QAbstractItemModel::modelReset, this, &SermonSidebar::restoreCurrentAfterReset);
    restoreCurrentAfterReset();
}

void SermonSidebar::onFilterChanged(const QString& text) {
    m_model.setFilterText(text);
}

void SermonSidebar::restoreCurrentAfterReset() {
    m_count->setText(m_model.rowCount() == m_model.totalCount()
                         ? (m_model.totalCount() == 1 ? tr("1 sermon") : tr("%1 sermons").arg(m_model.totalCount()))
                         : tr("%1 of %2 sermons").arg(m_model.rowCount()).arg(m_model.totalCount()));
    updateEmptyText();
    showCurrent(m_current);
}

void SermonSidebar::updateEmptyText() {
    // An empty sidebar is either a new library or a filter that matches nothing; say which.
    QString filter = m_filter->text().trimmed();
    if (!filter.isEmpty())
        m_empty->setEmptyText(tr("No sermons match “%1”.").arg(filter));
    else if (m_model.totalCount() > 0)
        m_empty->setEmptyText(tr("Every sermon is hidden. Tick “Show hidden sermons” to see them."));
    else
        m_empty->setEmptyText(tr("No sermons yet. Choose File › New Sermon… to write one."));
}

void SermonSidebar::showCurrent(const std::optional<model::Uuid>& id) {
    m_current = id;
    m_settingCurrent = true;
    int row = id ? m_model.rowOf(*id) : -1;
    if (row < 0) {
        m_list->selectionModel()->clear();
    } else {
        QModelIndex index = m_model.index(row);
        if (m_list->currentIndex() != index || !m_list->selectionModel()->isSelected(index))
            m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    }
    m_settingCurrent = false;
}

void SermonSidebar::onCurrentRowChanged() {
    if (m_settingCurrent)
        return;
    std::optional<model::Uuid> id = m_model.idAt(m_list->currentIndex().row());
    if (!id || id == m_current)
        return;
    m_current = id;
    emit sermonActivated(*id);
}

std::vector<model::Uuid> SermonSidebar::selectedIds() const {
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(), [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    std::vector<model::Uuid> ids;
    for (const QModelIndex& index : rows) {
        if (auto id = m_model.idAt(index.row()))
            ids.push_back(*id);
    }
    return ids;
}

void SermonSidebar::setStatus(const QString& syncStatus, const QString& storageRoot) {
    m_syncStatus->setText(syncStatus);
    m_syncStatus->setVisible(!syncStatus.isEmpty());
    m_storageRoot->setText(storageRoot);
    m_storageRoot->setToolTip(storageRoot);
}

} // namespace quillon::desktop
