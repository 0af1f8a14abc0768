#pragma once

#include "desktop/bible/BibleResultsModel.h"

#include <QFutureWatcher>
#include <QTimer>
#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace quillon::intelligence {
class CommentaryLibrary;
}
namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

class ChapterReader;
class CommentaryPane;
class EmptyStateOverlay;

/// The Bible beside the sermon: the search box (references, topics, full text with its
/// operators) and its results, the chapter reader with versions side by side, the commentaries on
/// the passage, and one action that attaches the chosen verses to the selected sub-topic.
class BiblePanel : public QWidget {
    Q_OBJECT
public:
    BiblePanel(scripture::BibleLoader& loader, std::function<intelligence::CommentaryLibrary&()> commentaries,
               QWidget* parent = nullptr);
    /// Waits for work still running in the background, which reads objects the window borrows.
    ~BiblePanel() override;

    /// Runs `query` at once (the field runs it as the user pauses typing).
    void search(const QString& query);
    /// Whether a sub-topic is selected to attach to.
    void setCanAttach(bool canAttach);
    /// The reference the attach action would hand over: the reader's selected verses, else the
    /// selected search result.
    QString referenceToAttach() const;
    bool isSearching() const { return m_watcher.isRunning(); }

    ChapterReader* reader() const { return m_reader; }
    CommentaryPane* commentaries() const { return m_commentaries; }
    const BibleResultsModel& results() const { return m_results; }
    QLineEdit* searchField() const { return m_field; }

signals:
    /// The user asked to attach `reference` (for example "John 3:16-18") to the selected sub-topic.
    void attachRequested(const QString& reference);
    void resultsShown();

private:
    void onSearchFinished();
    void openResult(const QModelIndex& index);
    void updateAttach();

    scripture::BibleLoader& m_loader;
    BibleResultsModel m_results;
    QLineEdit* m_field = nullptr;
    QLabel* m_summary = nullptr;
    QTreeView* m_resultView = nullptr;
    EmptyStateOverlay* m_emptyResults = nullptr;
    ChapterReader* m_reader = nullptr;
    CommentaryPane* m_commentaries = nullptr;
    QPushButton* m_attach = nullptr;
    QTimer m_debounce;
    QFutureWatcher<std::vector<scripture::BibleSearchResult>> m_watcher;
    QString m_runningQuery;
    QString m_wantedQuery;
    bool m_canAttach = false;
};

} // namespace quillon::desktop
