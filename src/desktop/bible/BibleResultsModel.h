#pragma once

#include "scripture/BibleSearchResult.h"

#include <QAbstractTableModel>

#include <vector>

namespace quillon::desktop {

/// The Bible search box's answers, one row per verse: the reference with its version, and the text.
class BibleResultsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { referenceColumn, textColumn, columnCount_ };

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setResults(std::vector<scripture::BibleSearchResult> results);
    const scripture::BibleSearchResult* resultAt(int row) const;

private:
    std::vector<scripture::BibleSearchResult> m_results;
};

/// "John 3:16" for a verse (the full book name).
QString verseReference(const scripture::BibleVerse& verse);

} // namespace quillon::desktop
