#include "desktop/outline/OutlineModel.h"

#include <QMimeData>

namespace quillon::desktop {

namespace {

// An index's internal id names its parent: 0 for a topic, the topic's row + 1 for a sub-topic,
// and (topic row + 1) << 32 | (sub-topic row + 1) for a scripture.
constexpr quintptr topLevel = 0;
constexpr int rowBits = 32;
const QString itemMimeType = QStringLiteral("application/x-quillon-outline-item");

quintptr subTopicParent(int topicRow) {
    return static_cast<quintptr>(topicRow) + 1;
}
quintptr scriptureParent(int topicRow, int subTopicRow) {
    return (static_cast<quintptr>(topicRow) + 1) << rowBits | (static_cast<quintptr>(subTopicRow) + 1);
}

template <typename List>
int count(const List& list) {
    return static_cast<int>(list.size());
}

template <typename List>
auto* at(List& list, int row) {
    return row >= 0 && row < count(list) ? &list[static_cast<std::size_t>(row)] : nullptr;
}

} // namespace

QString scriptureTitle(const model::SermonScripture& scripture) {
    QString title = QStringLiteral("%1 %2:%3")
                        .arg(QString::fromStdString(scripture.bookName))
                        .arg(scripture.chapter)
                        .arg(scripture.startVerse);
    if (scripture.endVerse > scripture.startVerse)
        title += QStringLiteral("-%1").arg(scripture.endVerse);
    return title;
}

OutlineModel::OutlineModel(std::function<const model::SermonNote*()> sermon, QObject* parent)
    : QAbstractItemModel(parent), m_sermon(std::move(sermon)) {
    m_structure = structure();
    m_faces = faces();
}

OutlineModel::Address OutlineModel::addressOf(const QModelIndex& index) const {
    Address address;
    if (!index.isValid())
        return address;
    const quintptr parent = index.internalId();
    if (parent == topLevel) {
        address.topic = index.row();
    } else if (parent >> rowBits == 0) {
        address.topic = static_cast<int>(parent) - 1;
        address.subTopic = index.row();
    } else {
        address.topic = static_cast<int>(parent >> rowBits) - 1;
        address.subTopic = static_cast<int>(parent & 0xffffffffU) - 1;
        address.scripture = index.row();
    }
    return address;
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, 0, topLevel);
    Address address = addressOf(parent);
    if (address.subTopic < 0)
        return createIndex(row, 0, subTopicParent(address.topic));
    return createIndex(row, 0, scriptureParent(address.topic, address.subTopic));
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const {
    Address address = addressOf(child);
    if (address.subTopic < 0)
        return {};
    if (address.scripture < 0)
        return createIndex(address.topic, 0, topLevel);
    return createIndex(address.subTopic, 0, subTopicParent(address.topic));
}

int OutlineModel::rowCount(const QModelIndex& parent) const {
    const model::SermonNote* sermon = m_sermon();
    if (!sermon || parent.column() > 0)
        return 0;
    if (!parent.isValid())
        return count(sermon->topics);
    Address address = addressOf(parent);
    const model::SermonTopic* topic = at(sermon->topics, address.topic);
    if (!topic)
        return 0;
    if (address.subTopic < 0)
        return count(topic->subTopics);
    if (address.scripture >= 0)
        return 0;
    const model::SermonSubTopic* subTopic = at(topic->subTopics, address.subTopic);
    return subTopic ? count(subTopic->scriptures) : 0;
}

int OutlineModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const {
    const model::SermonNote* sermon = m_sermon();
    if (!sermon || !index.isValid())
        return {};
    Address address = addressOf(index);
    const model::SermonTopic* topic = at(sermon->topics, address.topic);
    const model::SermonSubTopic* subTopic = topic ? at(topic->subTopics, address.subTopic) : nullptr;
    const model::SermonScripture* scripture = subTopic ? at(subTopic->scriptures, address.scripture) : nullptr;
    if (!topic || (address.subTopic >= 0 && !subTopic) || (address.scripture >= 0 && !scripture))
        return {};
    if (role == KindRole)
        return static_cast<int>(scripture ? Kind::scripture : subTopic ? Kind::subTopic : Kind::topic);
    if (role == IdRole)
        return QString::fromStdString(scripture  ? scripture->id.text()
                                      : subTopic ? subTopic->id.text()
                                                 : topic->id.text());
    if (role == Qt::ToolTipRole && scripture)
        return scriptureTitle(*scripture) + QStringLiteral(" (") +
               QString::fromUtf8(model::rawValue(scripture->version)) + u')';
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};
    if (scripture)
        return scriptureTitle(*scripture);
    const std::string& title = subTopic ? subTopic->title : topic->title;
    if (title.empty() && role == Qt::DisplayRole)
        return subTopic ? tr("Untitled sub-topic") : tr("Untitled topic");
    return QString::fromStdString(title);
}

bool OutlineModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || kindOf(index) == Kind::scripture)
        return false;
    std::optional<model::Uuid> id = idOf(index);
    QString title = value.toString().trimmed();
    if (!id || title.isEmpty() || title == index.data(Qt::EditRole).toString())
        return false;
    emit renameRequested(*id, title);
    return true;
}

Qt::ItemFlags OutlineModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    if (m_editable && kindOf(index) != Kind::scripture)
        flags |= Qt::ItemIsEditable;
    return flags;
}

Qt::DropActions OutlineModel::supportedDropActions() const {
    return Qt::MoveAction;
}

QStringList OutlineModel::mimeTypes() const {
    return {itemMimeType};
}

QMimeData* OutlineModel::mimeData(const QModelIndexList& indexes) const {
    if (indexes.size() != 1)
        return nullptr;
    auto* data = new QMimeData;
    data->setData(itemMimeType, indexes.front().data(IdRole).toString().toUtf8());
    return data;
}

bool OutlineModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                   const QModelIndex& parent) const {
    if (action != Qt::MoveAction || !data || !data->hasFormat(itemMimeType))
        return false;
    auto id = model::Uuid::parse(data->data(itemMimeType).toStdString());
    QModelIndex dragged = id ? indexOf(*id) : QModelIndex();
    if (!dragged.isValid())
        return false;
    // An item moves among its own kind: topics at the top, sub-topics under a topic, scriptures
    // under a sub-topic.
    Kind kind = *kindOf(dragged);
    if (!parent.isValid())
        return kind == Kind::topic;
    std::optional<Kind> parentKind = kindOf(parent);
    return (kind == Kind::subTopic && parentKind == Kind::topic) ||
           (kind == Kind::scripture && parentKind == Kind::subTopic);
}

bool OutlineModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    auto id = model::Uuid::parse(data->data(itemMimeType).toStdString());
    QModelIndex dragged = indexOf(*id);
    int target = row < 0 ? rowCount(parent) : row;
    // Dropping below its own place within the same list counts the slot it leaves.
    if (dragged.parent() == parent && target > dragged.row())
        --target;
    emit moveRequested(*kindOf(dragged), *id, idOf(parent), target);
    return false;
}

std::optional<model::Uuid> OutlineModel::idOf(const QModelIndex& index) const {
    QString text = index.data(IdRole).toString();
    if (text.isEmpty())
        return std::nullopt;
    return model::Uuid::parse(text.toStdString());
}

std::optional<OutlineModel::Kind> OutlineModel::kindOf(const QModelIndex& index) const {
    QVariant kind = index.data(KindRole);
    if (!kind.isValid())
        return std::nullopt;
    return static_cast<Kind>(kind.toInt());
}

QModelIndex OutlineModel::indexOf(const model::Uuid& id) const {
    const model::SermonNote* sermon = m_sermon();
    if (!sermon)
        return {};
    for (int t = 0; t < count(sermon->topics); ++t) {
        const auto& topic = sermon->topics[static_cast<std::size_t>(t)];
        if (topic.id == id)
            return index(t, 0);
        for (int s = 0; s < count(topic.subTopics); ++s) {
            const auto& subTopic = topic.subTopics[static_cast<std::size_t>(s)];
            if (subTopic.id == id)
                return index(s, 0, index(t, 0));
            for (int p = 0; p < count(subTopic.scriptures); ++p) {
                if (subTopic.scriptures[static_cast<std::size_t>(p)].id == id)
                    return index(p, 0, index(s, 0, index(t, 0)));
            }
        }
    }
    return {};
}

std::vector<model::Uuid> OutlineModel::structure() const {
    std::vector<model::Uuid> ids;
    const model::SermonNote* sermon = m_sermon();
    if (!sermon)
        return ids;
    ids.push_back(sermon->id);
    for (const auto& topic : sermon->topics) {
        ids.push_back(topic.id);
        for (const auto& subTopic : topic.subTopics) {
            ids.push_back(subTopic.id);
            for (const auto& scripture : subTopic.scriptures)
                ids.push_back(scripture.id);
        }
        ids.push_back({});
    }
    return ids;
}

std::vector<std::string> OutlineModel::faces() const {
    std::vector<std::string> shown;
    const model::SermonNote* sermon = m_sermon();
    if (!sermon)
        return shown;
    for (const auto& topic : sermon->topics) {
        shown.push_back(topic.title);
        for (const auto& subTopic : topic.subTopics) {
            shown.push_back(subTopic.title);
            for (const auto& scripture : subTopic.scriptures) {
                std::string face = scriptureTitle(scripture).toStdString();
                face += model::rawValue(scripture.version);
                shown.push_back(std::move(face));
            }
        }
    }
    return shown;
}

void OutlineModel::refresh() {
    std::vector<model::Uuid> now = structure();
    std::vector<std::string> shown = faces();
    if (now != m_structure) {
        beginResetModel();
        m_structure = std::move(now);
        m_faces = std::move(shown);
        endResetModel();
        return;
    }
    // A change elsewhere in the sermon (its manuscript, say) leaves the outline as drawn.
    if (shown == m_faces)
        return;
    m_faces = std::move(shown);
    // Same items in the same places: titles changed, so every row repaints.
    std::function<void(const QModelIndex&)> touch = [&](const QModelIndex& parent) {
        int rows = rowCount(parent);
        if (rows == 0)
            return;
        emit dataChanged(index(0, 0, parent), index(rows - 1, 0, parent));
        for (int row = 0; row < rows; ++row)
            touch(index(row, 0, parent));
    };
    touch({});
}

} // namespace quillon::desktop
