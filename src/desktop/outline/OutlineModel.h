#pragma once

#include "model/SermonNote.h"

#include <QAbstractItemModel>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon::desktop {

/// The selected sermon's outline as a tree: topics, their sub-topics, and the sub-topics'
/// scriptures. It reads the sermon from the store on every call and holds no copy; renames and
/// drag-and-drop moves are handed on as requests, and the outline changes when the sermon does.
class OutlineModel : public QAbstractItemModel {
    Q_OBJECT
public:
    enum class Kind { topic, subTopic, scripture };
    enum Role { IdRole = Qt::UserRole + 1, KindRole };

    /// `sermon` gives the sermon on show, or null.
    explicit OutlineModel(std::function<const model::SermonNote*()> sermon, QObject* parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    Qt::DropActions supportedDropActions() const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

    /// Takes the sermon again: a reset when items came or went, else a repaint of every row.
    void refresh();
    /// Whether titles may be edited in place (off in reading mode).
    void setEditable(bool editable) { m_editable = editable; }

    std::optional<model::Uuid> idOf(const QModelIndex& index) const;
    std::optional<Kind> kindOf(const QModelIndex& index) const;
    /// The index of the item with `id`, or an invalid index.
    QModelIndex indexOf(const model::Uuid& id) const;

signals:
    void renameRequested(const quillon::model::Uuid& itemId, const QString& title);
    /// The item was dropped at `row` under `parentId` (none: among the topics).
    void moveRequested(quillon::desktop::OutlineModel::Kind kind, const quillon::model::Uuid& itemId,
                       std::optional<quillon::model::Uuid> parentId, int row);

private:
    /// Where an index points: the topic row, and the sub-topic and scripture rows when deeper.
    struct Address {
        int topic = -1;
        int subTopic = -1;
        int scripture = -1;
    };

    Address addressOf(const QModelIndex& index) const;
    std::vector<model::Uuid> structure() const;
    /// What each row shows, in the order of structure().
    std::vector<std::string> faces() const;

    std::function<const model::SermonNote*()> m_sermon;
    std::vector<model::Uuid> m_structure;
    std::vector<std::string> m_faces;
    bool m_editable = true;
};

/// "John 3:16-18" for an attached scripture.
QString scriptureTitle(const model::SermonScripture& scripture);

} // namespace quillon::desktop
