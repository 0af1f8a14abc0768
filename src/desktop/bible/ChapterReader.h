#pragma once

#include "desktop/bible/ChapterModel.h"
#include "model/BibleVersion.h"

#include <QFutureWatcher>
#include <QWidget>

#include <map>
#include <optional>
#include <vector>

class QLabel;
class QTableView;
class QToolButton;

namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

/// Reads a whole chapter, in one or more installed versions side by side, with buttons for the
/// previous and next chapter (across books). Chapters are read off the interface thread.
class ChapterReader : public QWidget {
    Q_OBJECT
public:
    explicit ChapterReader(scripture::BibleLoader& loader, QWidget* parent = nullptr);
    /// Waits for work still running in the background, which reads objects the window borrows.
    ~ChapterReader() override;

    /// Shows `chapter` of the book with canonical position `bookId`, scrolled to `verse`.
    void showChapter(std::int64_t bookId, int chapter, std::optional<int> verse = std::nullopt);
    void showPreviousChapter();
    void showNextChapter();
    /// "John 3:16-18" for the selected verses, or nothing when none is selected.
    QString selectedReference() const;
    std::vector<model::BibleVersion> shownVersions() const;
    /// True while a chapter is being read.
    bool isLoading() const { return m_watcher.isRunning() || m_pending; }
    const ChapterModel& chapterModel() const { return m_model; }

signals:
    /// The chapter on show changed (or a verse in it was selected).
    void passageChanged(std::int64_t bookId, int chapter, std::optional<int> verse);
    void chapterShown();

private:
    void reload();
    void onLoaded();

    scripture::BibleLoader& m_loader;
    ChapterModel m_model;
    QLabel* m_title = nullptr;
    QToolButton* m_previous = nullptr;
    QToolButton* m_next = nullptr;
    QTableView* m_table = nullptr;
    std::map<model::BibleVersion, QToolButton*> m_versionButtons;
    QFutureWatcher<ChapterText> m_watcher;
    std::int64_t m_bookId = 43;
    int m_chapter = 3;
    std::optional<int> m_scrollToVerse;
    bool m_pending = false;
};

} // namespace quillon::desktop
