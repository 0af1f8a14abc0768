#pragma once

#include "model/Uuid.h"

#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QListView;
class QToolButton;

namespace quillon::desktop {

class OutlineModel;

/// One column of the classic layout: a heading, the items of one level of the outline under the
/// item chosen to its left, a field that adds an item, and a button that deletes the chosen one.
class OutlineColumn : public QWidget {
    Q_OBJECT
public:
    /// `name` forms the object names ("topic" gives "topicList", "addTopicField", "deleteTopicButton").
    OutlineColumn(OutlineModel& model, const QString& name, const QString& heading, const QString& addPlaceholder,
                  QWidget* parent = nullptr);

    /// Shows the children of `root`; the column is empty and cannot add when `root` is unusable.
    void setRoot(const QModelIndex& root, bool canAdd);
    void setCurrent(const std::optional<model::Uuid>& id);
    void setReading(bool reading);
    QLineEdit* addField() const { return m_add; }
    QListView* list() const { return m_list; }

signals:
    void itemChosen(const quillon::model::Uuid& id);
    void addRequested(const QString& text);
    void deleteRequested(const quillon::model::Uuid& id);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::optional<model::Uuid> currentId() const;

    OutlineModel& m_model;
    QLabel* m_heading = nullptr;
    QListView* m_list = nullptr;
    QLineEdit* m_add = nullptr;
    QToolButton* m_delete = nullptr;
    bool m_settingCurrent = false;
};

} // namespace quillon::desktop
