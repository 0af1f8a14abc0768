#include "desktop/bible/ChapterModel.h"

#include "scripture/BibleBook.h"
#include "scripture/BibleLoader.h"

namespace quillon::desktop {

ChapterText readChapter(scripture::BibleLoader& loader, const scripture::BibleBook& book, int chapter,
                        const std::vector<model::BibleVersion>& versions) {
    ChapterText text;
    text.bookId = book.id;
    text.chapter = chapter;
    text.versions = versions;
    const int verseCount = book.verseCount(chapter);
    if (verseCount <= 0)
        return text;
    text.verses.assign(static_cast<std::size_t>(verseCount), QStringList());
    for (QStringList& row : text.verses)
        row.resize(static_cast<qsizetype>(versions.size()));
    for (std::size_t column = 0; column < versions.size(); ++column) {
        auto dictionary = loader.loadVerses(versions[column]);
        for (int verse = 1; verse <= verseCount; ++verse) {
            auto found = dictionary->find(scripture::verseKey(book.abbreviation, chapter, verse));
            if (found != dictionary->end())
                text.verses[static_cast<std::size_t>(verse - 1)][static_cast<qsizetype>(column)] =
                    QString::fromStdString(found->second.text);
        }
    }
    return text;
}

int ChapterModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_text.verses.size());
}

int ChapterModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_text.versions.size());
}

QVariant ChapterModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= columnCount())
        return {};
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
        return {};
    return m_text.verses[static_cast<std::size_t>(index.row())][index.column()];
}

QVariant ChapterModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    if (section < 0 || section >= columnCount())
        return {};
    return QString::fromUtf8(model::rawValue(m_text.versions[static_cast<std::size_t>(section)]));
}

void ChapterModel::setChapter(ChapterText text) {
    beginResetModel();
    m_text = std::move(text);
    endResetModel();
}

} // namespace quillon::desktop
