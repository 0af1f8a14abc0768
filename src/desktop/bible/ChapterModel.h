#pragma once

#include "model/BibleVersion.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <vector>

namespace quillon::scripture {
class BibleLoader;
struct BibleBook;
} // namespace quillon::scripture

namespace quillon::desktop {

/// One chapter in several versions, read off the interface thread and handed over whole.
struct ChapterText {
    std::int64_t bookId = 0;
    int chapter = 0;
    std::vector<model::BibleVersion> versions;
    /// One row per verse (verse 1 first), one text per version; empty where a version lacks it.
    std::vector<QStringList> verses;
};

/// Reads `chapter` of `book` in each version (the loader is thread-safe).
ChapterText readChapter(scripture::BibleLoader& loader, const scripture::BibleBook& book, int chapter,
                        const std::vector<model::BibleVersion>& versions);

/// A chapter with its versions side by side: a row per verse, a column per version.
class ChapterModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setChapter(ChapterText text);
    const ChapterText& chapter() const { return m_text; }

private:
    ChapterText m_text;
};

} // namespace quillon::desktop
