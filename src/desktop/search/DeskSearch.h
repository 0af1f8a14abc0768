#pragma once

#include "model/Uuid.h"

#include <QDialog>
#include <QFutureWatcher>
#include <QStandardItemModel>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QTreeView;

namespace quillon::search {
class SermonSearchIndex;
struct SearchResultGroup;
} // namespace quillon::search

namespace quillon::desktop {

class DeskServices;
class EmptyStateOverlay;

/// The search field (Ctrl+F): one query over the preacher's sermons, the Bible and the
/// commentaries, the hits grouped by kind, with the notice when misspelt words were corrected
/// ("Showing results for …"). The search runs off the interface thread as the preacher types.
class DeskSearch : public QDialog {
    Q_OBJECT
public:
    DeskSearch(DeskServices& services, QWidget* parent = nullptr);
    ~DeskSearch() override;

    /// Opens the search of `window` (one per window) with its field focused.
    static DeskSearch* showFor(QWidget& window, DeskServices& services);

    /// Runs `query` at once (the field runs it as the preacher pauses).
    void search(const QString& query);
    bool isSearching() const { return m_watcher.isRunning(); }
    /// The group headings shown, in order ("Scripture (3)").
    QStringList groupHeadings() const;
    /// The correction notice, or empty.
    QString banner() const;
    QLineEdit* field() const { return m_field; }
    QStandardItemModel& results() { return m_results; }
    /// Opens the hit at `index`, as a double-click or Return does.
    void openHit(const QModelIndex& index);

signals:
    void sermonChosen(const quillon::model::Uuid& id);
    /// A verse or commentary hit: the reference to show in the Bible panel ("John 3:16").
    void referenceChosen(const QString& reference);
    void resultsShown();

private:
    struct Outcome;
    void onFinished();

    DeskServices& m_services;
    std::shared_ptr<search::SermonSearchIndex> m_index;
    QLineEdit* m_field = nullptr;
    QLabel* m_banner = nullptr;
    QLabel* m_summary = nullptr;
    QTreeView* m_view = nullptr;
    EmptyStateOverlay* m_empty = nullptr;
    QStandardItemModel m_results;
    QTimer m_debounce;
    QFutureWatcher<std::shared_ptr<Outcome>> m_watcher;
    QString m_wanted;
};

} // namespace quillon::desktop
