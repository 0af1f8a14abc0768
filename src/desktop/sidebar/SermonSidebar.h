#pragma once

#include "model/Uuid.h"

#include <QWidget>

#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QMenu;

namespace quillon::desktop {

class EmptyStateOverlay;
class SermonListModel;

/// The list of sermons at the window's side: filter field, the list (several rows may be
/// selected for batch work), the hidden-sermons toggle, the sync status line and the storage
/// root. It selects nothing itself: it asks for a sermon with sermonActivated and shows the
/// current one when told with showCurrent.
class SermonSidebar : public QWidget {
    Q_OBJECT
public:
    /// The sidebar shows `model` (which it does not own).
    explicit SermonSidebar(SermonListModel& model, QWidget* parent = nullptr);

    /// Selects and scrolls to the row of `id` without asking for it again; clears the selection
    /// when there is none.
    void showCurrent(const std::optional<model::Uuid>& id);
    /// The sermons selected in the list, in list order.
    std::vector<model::Uuid> selectedIds() const;
    void setStatus(const QString& syncStatus, const QString& storageRoot);
    /// The context menu's actions (pin, hide, duplicate, export, trash…), built by the window.
    void setContextMenu(QMenu* menu) { m_contextMenu = menu; }
    QLineEdit* filterField() const { return m_filter; }
    QListView* listView() const { return m_list; }

signals:
    void sermonActivated(const quillon::model::Uuid& id);
    void selectionCountChanged(int count);

private:
    void onCurrentRowChanged();
    void onFilterChanged(const QString& text);
    void restoreCurrentAfterReset();
    void updateEmptyText();

    SermonListModel& m_model;
    QLineEdit* m_filter = nullptr;
    QListView* m_list = nullptr;
    QCheckBox* m_showHidden = nullptr;
    QLabel* m_count = nullptr;
    QLabel* m_syncStatus = nullptr;
    QLabel* m_storageRoot = nullptr;
    EmptyStateOverlay* m_empty = nullptr;
    QMenu* m_contextMenu = nullptr;
    std::optional<model::Uuid> m_current;
    bool m_settingCurrent = false;
};

} // namespace quillon::desktop
