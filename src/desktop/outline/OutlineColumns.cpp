#include "desktop/outline/OutlineColumns.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/outline/BookCompleter.h"
#include "desktop/outline/OutlineColumn.h"
#include "desktop/outline/OutlineModel.h"

#include <QCompleter>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QResizeEvent>
#include <QSplitter>
#include <QStringListModel>

#include <cmath>

namespace quillon::desktop {

OutlineColumns::OutlineColumns(app::SermonNotesViewModel& controller, OutlineModel& model, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_model(model) {
    setObjectName(QStringLiteral("classicOutline"));
    m_topics = new OutlineColumn(model, QStringLiteral("topic"), tr("Topics"), tr("Add topic"), this);
    m_subTopics = new OutlineColumn(model, QStringLiteral("subTopic"), tr("Sub-topics"), tr("Add sub-topic"), this);
    m_scriptures =
        new OutlineColumn(model, QStringLiteral("scripture"), tr("Scriptures"), tr("Add scripture (John 3:16)"), this);
    m_scriptures->addField()->setCompleter(bookCompleter(m_scriptures));
    const auto& state = m_controller.interfaceState();
    m_topics->setMaximumWidth(static_cast<int>(app::InterfaceState::topicColumnWidthCap));
    m_subTopics->setMaximumWidth(static_cast<int>(app::InterfaceState::subtopicColumnWidthCap));
    m_scriptures->setMaximumWidth(static_cast<int>(app::InterfaceState::scriptureColumnWidthCap));

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("outlineColumnsSplitter"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(m_topics);
    m_splitter->addWidget(m_subTopics);
    m_splitter->addWidget(m_scriptures);
    m_splitter->setSizes({static_cast<int>(state.topicColumnWidth), static_cast<int>(state.subtopicColumnWidth),
                          static_cast<int>(state.scriptureColumnWidth)});
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_splitter);

    connect(m_topics, &OutlineColumn::itemChosen, this, [this](const model::Uuid& id) {
        if (!m_syncing)
            m_controller.selectTopic(id);
    });
    connect(m_subTopics, &OutlineColumn::itemChosen, this, [this](const model::Uuid& id) {
        if (!m_syncing)
            m_controller.selectSubTopic(id);
    });
    connect(m_scriptures, &OutlineColumn::itemChosen, this, [this](const model::Uuid& id) {
        if (!m_syncing)
            m_controller.selectScripture(id);
    });
    connect(m_topics, &OutlineColumn::addRequested, this, [this](const QString& title) {
        const auto& selection = m_controller.selection();
        if (!selection.sermonId)
            return;
        if (auto id = m_controller.addTopic(*selection.sermonId, title.toStdString()))
            m_controller.selectTopic(*id);
    });
    connect(m_subTopics, &OutlineColumn::addRequested, this, [this](const QString& title) {
        const auto& selection = m_controller.selection();
        if (!selection.sermonId || !selection.topicId)
            return;
        if (auto id = m_controller.addSubTopic(*selection.sermonId, *selection.topicId, title.toStdString()))
            m_controller.selectSubTopic(*id);
    });
    connect(m_scriptures, &OutlineColumn::addRequested, this, &OutlineColumns::addScripture);
    connect(m_topics, &OutlineColumn::deleteRequested, this,
            [this](const model::Uuid& id) { m_controller.requestDeletion(app::DeleteType::topic, id); });
    connect(m_subTopics, &OutlineColumn::deleteRequested, this,
            [this](const model::Uuid& id) { m_controller.requestDeletion(app::DeleteType::subTopic, id); });
    connect(m_scriptures, &OutlineColumn::deleteRequested, this,
            [this](const model::Uuid& id) { m_controller.requestDeletion(app::DeleteType::scripture, id); });
    connect(m_splitter, &QSplitter::splitterMoved, this, &OutlineColumns::saveWidths);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &OutlineColumns::sync);
    sync();
}

void OutlineColumns::setTrailingWidget(QWidget* widget) {
    m_splitter->addWidget(widget);
    for (int column = 0; column < 3; ++column)
        m_splitter->setStretchFactor(column, 0);
    m_splitter->setStretchFactor(3, 1);
    m_widthsPending = true;
    applyWidths();
}

void OutlineColumns::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_widthsPending)
        applyWidths();
}

void OutlineColumns::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_widthsPending)
        applyWidths();
}

void OutlineColumns::applyWidths() {
    if (m_splitter->count() < 4)
        return;
    // The columns keep their remembered widths and the details take what is left, once there is
    // room for both (until then QSplitter would shrink the columns in proportion).
    const auto& state = m_controller.interfaceState();
    const QList<int> columns = {static_cast<int>(state.topicColumnWidth), static_cast<int>(state.subtopicColumnWidth),
                                static_cast<int>(state.scriptureColumnWidth)};
    const int rest = m_splitter->width() - columns[0] - columns[1] - columns[2] - 3 * m_splitter->handleWidth();
    if (rest < 160)
        return;
    m_widthsPending = false;
    m_splitter->setSizes(columns + QList<int>{rest});
}

void OutlineColumns::addScripture(const QString& typed) {
    const auto& selection = m_controller.selection();
    if (!selection.sermonId || !selection.subTopicId)
        return;
    if (auto id = m_controller.addScripture(*selection.sermonId, *selection.subTopicId, typed.toStdString()))
        m_controller.selectScripture(*id);
    else
        m_scriptures->addField()->setText(typed);
}

void OutlineColumns::sync() {
    m_syncing = true;
    const auto& selection = m_controller.selection();
    const bool hasSermon = selection.sermonId.has_value();
    QModelIndex topic = selection.topicId ? m_model.indexOf(*selection.topicId) : QModelIndex();
    QModelIndex subTopic = selection.subTopicId ? m_model.indexOf(*selection.subTopicId) : QModelIndex();
    m_topics->setRoot({}, hasSermon);
    m_subTopics->setRoot(topic, topic.isValid());
    m_scriptures->setRoot(subTopic, subTopic.isValid());
    m_topics->setCurrent(selection.topicId);
    m_subTopics->setCurrent(selection.subTopicId);
    m_scriptures->setCurrent(selection.scriptureId);
    m_syncing = false;
}

void OutlineColumns::setReading(bool reading) {
    for (OutlineColumn* column : {m_topics, m_subTopics, m_scriptures})
        column->setReading(reading);
    sync();
}

void OutlineColumns::saveWidths() {
    QList<int> sizes = m_splitter->sizes();
    if (sizes.size() < 3)
        return;
    m_controller.setTopicColumnWidth(sizes[0]);
    m_controller.setSubtopicColumnWidth(sizes[1]);
    m_controller.setScriptureColumnWidth(sizes[2]);
}

} // namespace quillon::desktop
