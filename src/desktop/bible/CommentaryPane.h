#pragma once

#include "intelligence/CommentaryLibrary.h"

#include <QFutureWatcher>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QTextBrowser;
class QToolButton;

namespace quillon::desktop {

/// The commentaries' notes on the passage the reader shows, one commentary at a time. The pane starts
/// folded and nothing asks for the library until it is first unfolded: opening it reads every SWORD
/// module and locale, tens of megabytes the desk need not hold for a preacher who never looks. The
/// library is opened and each passage read off the interface thread.
class CommentaryPane : public QWidget {
    Q_OBJECT
public:
    /// `library` is asked for on first use (opening it reads the SWORD configuration).
    explicit CommentaryPane(std::function<intelligence::CommentaryLibrary&()> library, QWidget* parent = nullptr);
    /// Waits for work still running in the background, which reads objects the window borrows.
    ~CommentaryPane() override;

    /// Shows the notes on `chapter` of the book `bookId`, or on `verse` when given.
    void showPassage(std::int64_t bookId, int chapter, std::optional<int> verse);
    /// The text on show, for tests and screen readers.
    QString text() const;
    /// Unfolds the pane (loading the notes the first time) or folds it to its header.
    void setExpanded(bool expanded);
    bool isExpanded() const;
    bool isLoading() const { return m_watcher.isRunning(); }

signals:
    void notesShown();

private:
    struct Notes {
        std::vector<intelligence::Commentary> commentaries;
        std::vector<intelligence::CommentaryEntry> entries;
        std::int64_t bookId = 0;
        int chapter = 0;
        std::optional<int> verse;
        std::string moduleName;
    };

    void reload();
    void onLoaded();
    void applyFolding(bool expanded);
    void showEntries(const Notes& notes);

    std::function<intelligence::CommentaryLibrary&()> m_library;
    QToolButton* m_toggle = nullptr;
    QComboBox* m_picker = nullptr;
    QTextBrowser* m_text = nullptr;
    QFutureWatcher<Notes> m_watcher;
    std::int64_t m_bookId = 0;
    int m_chapter = 0;
    std::optional<int> m_verse;
    bool m_pending = false;
    bool m_opened = false;
};

} // namespace quillon::desktop
