#include "desktop/bible/BibleResultsModel.h"

#include "scripture/BibleBook.h"

namespace quillon::desktop {

QString verseReference(const scripture::BibleVerse& verse) {
    const scripture::BibleBook* book = scripture::bibleBookWithAbbreviation(verse.bookAbbreviation);
    QString name = QString::fromStdString(book ? book->name : verse.bookAbbreviation);
    return QStringLiteral("%1 %2:%3").arg(name).arg(verse.chapter).arg(verse.verse);
}

int BibleResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_results.size());
}

int BibleResultsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCount_;
}

QVariant BibleResultsModel::data(const QModelIndex& index, int role) const {
    const scripture::BibleSearchResult* result = resultAt(index.row());
    if (!result || !index.isValid())
        return {};
    QString text = QString::fromStdString(result->verse.text);
    QString reference =
        verseReference(result->verse) + QStringLiteral(" ") + QString::fromUtf8(model::rawValue(result->version));
    if (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole)
        return reference + QStringLiteral(": ") + text;
    if (role != Qt::DisplayRole)
        return {};
    return index.column() == referenceColumn ? reference : text;
}

QVariant BibleResultsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == referenceColumn ? tr("Reference") : tr("Text");
}

void BibleResultsModel::setResults(std::vector<scripture::BibleSearchResult> results) {
    beginResetModel();
    m_results = std::move(results);
    endResetModel();
}

const scripture::BibleSearchResult* BibleResultsModel::resultAt(int row) const {
    if (row < 0 || row >= static_cast<int>(m_results.size()))
        return nullptr;
    return &m_results[static_cast<std::size_t>(row)];
}

} // namespace quillon::desktop
