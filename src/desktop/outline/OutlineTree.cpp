#include "desktop/outline/OutlineTree.h"

#include "desktop/outline/BookCompleter.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/outline/OutlineModel.h"

#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>
#include <QVBoxLayout>

namespace quillon::desktop {

OutlineTree::OutlineTree(app::SermonNotesViewModel& controller, OutlineModel& model, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_model(model) {
    setObjectName(QStringLiteral("modernOutline"));
    m_view = new QTreeView(this);
    m_view->setObjectName(QStringLiteral("outlineTree"));
    m_view->setAccessibleName(tr("Outline"));
    m_view->setModel(&m_model);
    m_view->header()->hide();
    m_view->setDragDropMode(QAbstractItemView::InternalMove);
    m_view->setDefaultDropAction(Qt::MoveAction);
    m_view->setDropIndicatorShown(true);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_view->installEventFilter(this);
    m_addTopic = new QLineEdit(this);
    m_addTopic->setObjectName(QStringLiteral("addOutlineTopicField"));
    m_addTopic->setPlaceholderText(tr("Add topic"));
    m_addTopic->setAccessibleName(tr("Add topic"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_addTopic);

    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) { choose(index); });
    connect(m_view, &QTreeView::customContextMenuRequested, this, &OutlineTree::showMenu);
    connect(m_addTopic, &QLineEdit::returnPressed, this, [this] {
        const auto& selection = m_controller.selection();
        QString title = m_addTopic->text().trimmed();
        if (!selection.sermonId || title.isEmpty())
            return;
        m_addTopic->clear();
        if (auto id = m_controller.addTopic(*selection.sermonId, title.toStdString()))
            m_controller.selectTopic(*id);
    });
    connect(&m_model, &OutlineModel::moveRequested, this,
            [this](OutlineModel::Kind kind, const model::Uuid& id, std::optional<model::Uuid> parent, int row) {
                const auto& selection = m_controller.selection();
                if (!selection.sermonId || row < 0)
                    return;
                auto to = static_cast<std::size_t>(row);
                if (kind == OutlineModel::Kind::topic)
                    m_controller.moveTopic(*selection.sermonId, id, to);
                else if (kind == OutlineModel::Kind::subTopic)
                    m_controller.moveSubTopic(*selection.sermonId, id, to, parent);
                else
                    m_controller.moveScripture(*selection.sermonId, id, to, parent);
            });
    connect(&m_model, &QAbstractItemModel::modelReset, this, &OutlineTree::sync);
    sync();
}

void OutlineTree::choose(const QModelIndex& index) {
    if (m_syncing)
        return;
    std::optional<model::Uuid> id = m_model.idOf(index);
    std::optional<OutlineModel::Kind> kind = m_model.kindOf(index);
    if (!id || !kind)
        return;
    if (kind == OutlineModel::Kind::topic)
        m_controller.selectTopic(*id);
    else if (kind == OutlineModel::Kind::subTopic)
        m_controller.selectSubTopic(*id);
    else
        m_controller.selectScripture(*id);
}

void OutlineTree::sync() {
    m_syncing = true;
    m_view->expandAll();
    const auto& selection = m_controller.selection();
    std::optional<model::Uuid> deepest = selection.scriptureId  ? selection.scriptureId
                                         : selection.subTopicId ? selection.subTopicId
                                                                : selection.topicId;
    QModelIndex index = deepest ? m_model.indexOf(*deepest) : QModelIndex();
    if (index.isValid())
        m_view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    else
        m_view->selectionModel()->clear();
    m_addTopic->setEnabled(selection.sermonId.has_value() && !m_reading);
    m_syncing = false;
}

void OutlineTree::setReading(bool reading) {
    m_reading = reading;
    m_addTopic->setVisible(!reading);
    m_view->setDragDropMode(reading ? QAbstractItemView::NoDragDrop : QAbstractItemView::InternalMove);
    sync();
}

void OutlineTree::deleteCurrent() {
    QModelIndex index = m_view->currentIndex();
    std::optional<model::Uuid> id = m_model.idOf(index);
    std::optional<OutlineModel::Kind> kind = m_model.kindOf(index);
    if (!id || !kind || m_reading)
        return;
    app::DeleteType type = kind == OutlineModel::Kind::topic      ? app::DeleteType::topic
                           : kind == OutlineModel::Kind::subTopic ? app::DeleteType::subTopic
                                                                  : app::DeleteType::scripture;
    m_controller.requestDeletion(type, *id);
}

void OutlineTree::showMenu(const QPoint& point) {
    QModelIndex index = m_view->indexAt(point);
    std::optional<model::Uuid> id = m_model.idOf(index);
    std::optional<OutlineModel::Kind> kind = m_model.kindOf(index);
    const auto& selection = m_controller.selection();
    if (!id || !kind || !selection.sermonId || m_reading)
        return;
    QMenu menu(this);
    const model::Uuid sermonId = *selection.sermonId;
    if (kind == OutlineModel::Kind::topic) {
        menu.addAction(tr("Add Sub-topic…"), this, [this, sermonId, id] {
            QString title = QInputDialog::getText(this, tr("Add Sub-topic"), tr("Title:"));
            if (!title.trimmed().isEmpty())
                m_controller.addSubTopic(sermonId, *id, title.trimmed().toStdString());
        });
    } else if (kind == OutlineModel::Kind::subTopic) {
        menu.addAction(tr("Add Scripture…"), this, [this, sermonId, id] {
            QString typed = askForReference(this);
            if (!typed.isEmpty())
                m_controller.addScripture(sermonId, *id, typed.toStdString());
        });
    }
    menu.addAction(tr("Delete"), QKeySequence::Delete, this, &OutlineTree::deleteCurrent);
    menu.exec(m_view->viewport()->mapToGlobal(point));
}

bool OutlineTree::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        deleteCurrent();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quillon::desktop
