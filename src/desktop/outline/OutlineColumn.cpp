#include "desktop/outline/OutlineColumn.h"

#include "desktop/outline/OutlineModel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QToolButton>
#include <QVBoxLayout>

#include <functional>

namespace quillon::desktop {

namespace {

QString capitalised(const QString& name) {
    return name.left(1).toUpper() + name.mid(1);
}

// Reports the current item wherever it comes from (click, keys, code) and survives the model being
// taken away while the column has nothing to show.
class OutlineListView : public QListView {
public:
    using QListView::QListView;
    std::function<void(const QModelIndex&)> onCurrentChanged;

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
        QListView::currentChanged(current, previous);
        if (onCurrentChanged)
            onCurrentChanged(current);
    }
};

} // namespace

OutlineColumn::OutlineColumn(OutlineModel& model, const QString& name, const QString& heading,
                             const QString& addPlaceholder, QWidget* parent)
    : QWidget(parent), m_model(model) {
    setObjectName(name + QStringLiteral("Column"));
    m_heading = new QLabel(heading, this);
    QFont font = m_heading->font();
    font.setBold(true);
    m_heading->setFont(font);
    m_delete = new QToolButton(this);
    m_delete->setObjectName(QStringLiteral("delete") + capitalised(name) + QStringLiteral("Button"));
    m_delete->setText(QStringLiteral("−"));
    m_delete->setToolTip(tr("Delete the chosen %1").arg(heading.toLower()));
    m_delete->setAccessibleName(m_delete->toolTip());
    m_delete->setAutoRaise(true);

    auto* list = new OutlineListView(this);
    m_list = list;
    m_list->setObjectName(name + QStringLiteral("List"));
    m_list->setAccessibleName(heading);
    m_list->setModel(&m_model);
    m_list->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setDefaultDropAction(Qt::MoveAction);
    m_list->setTextElideMode(Qt::ElideRight);
    // Long titles end in "…" (the whole title is in the tooltip) rather than scroll sideways.
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->installEventFilter(this);

    m_add = new QLineEdit(this);
    m_add->setObjectName(QStringLiteral("add") + capitalised(name) + QStringLiteral("Field"));
    m_add->setPlaceholderText(addPlaceholder);
    m_add->setAccessibleName(addPlaceholder);

    auto* header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->addWidget(m_heading, 1);
    header->addWidget(m_delete);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addLayout(header);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_add);

    list->onCurrentChanged = [this](const QModelIndex&) {
        if (auto id = currentId(); id && !m_settingCurrent)
            emit itemChosen(*id);
    };
    connect(m_list, &QListView::clicked, this, [this](const QModelIndex& index) {
        if (auto id = m_model.idOf(index))
            emit itemChosen(*id);
    });
    connect(m_add, &QLineEdit::returnPressed, this, [this] {
        QString text = m_add->text().trimmed();
        if (text.isEmpty())
            return;
        m_add->clear();
        emit addRequested(text);
    });
    connect(m_delete, &QToolButton::clicked, this, [this] {
        if (auto id = currentId())
            emit deleteRequested(*id);
    });
}

void OutlineColumn::setRoot(const QModelIndex& root, bool canAdd) {
    m_settingCurrent = true;
    // A column with nothing chosen to its left shows nothing (an invalid root would mean the topics).
    if (!canAdd) {
        m_list->setModel(nullptr);
    } else {
        if (m_list->model() != &m_model)
            m_list->setModel(&m_model);
        m_list->setRootIndex(root);
    }
    m_settingCurrent = false;
    m_add->setEnabled(canAdd && !m_list->property("reading").toBool());
}

void OutlineColumn::setCurrent(const std::optional<model::Uuid>& id) {
    if (!m_list->model()) {
        m_delete->setEnabled(false);
        return;
    }
    m_settingCurrent = true;
    QModelIndex index = id ? m_model.indexOf(*id) : QModelIndex();
    if (index.isValid() && index.parent() == m_list->rootIndex()) {
        m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    } else {
        m_list->selectionModel()->clear();
    }
    m_delete->setEnabled(index.isValid() && !m_list->property("reading").toBool());
    m_settingCurrent = false;
}

void OutlineColumn::setReading(bool reading) {
    m_list->setProperty("reading", reading);
    m_add->setVisible(!reading);
    m_delete->setVisible(!reading);
    m_list->setDragDropMode(reading ? QAbstractItemView::NoDragDrop : QAbstractItemView::InternalMove);
}

std::optional<model::Uuid> OutlineColumn::currentId() const {
    QModelIndex index = m_list->currentIndex();
    if (!m_list->model() || !index.isValid() || index.parent() != m_list->rootIndex())
        return std::nullopt;
    return m_model.idOf(index);
}

bool OutlineColumn::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_list && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete && !m_list->property("reading").toBool()) {
        if (auto id = currentId())
            emit deleteRequested(*id);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quillon::desktop
