#pragma once

#include "model/SermonNote.h"

#include <QAbstractListModel>
#include <QCache>
#include <QPixmap>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace quillon::store {
class SermonNotesManager;
}

namespace quillon::desktop {

/// The sermons of the library as the sidebar lists them: pinned first, then the latest change;
/// narrowed by the filter text and, unless shown, without hidden sermons.
///
/// Rows are a view of the store: reload() takes the store's sermons again after a change. Each row
/// keeps only what is drawn and searched, so filtering 10,000 sermons touches no sermon record.
class SermonListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role {
        IdRole = Qt::UserRole + 1,
        SeriesRole,
        DateRole,
        PinnedRole,
        HiddenRole,
        /// "Series · 16 Mar 2025", or the date alone.
        SubtitleRole,
    };

    /// `manager` must outlive the model; `mediaFolder` gives the folder of cover images.
    SermonListModel(const store::SermonNotesManager& manager, std::function<std::filesystem::path()> mediaFolder,
                    QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Takes the store's sermons, order, pins and hidden marks again.
    void reload();
    /// Takes one changed sermon again: its row is redrawn in place while its place in the order and
    /// under the filter stays; otherwise the whole list is taken again.
    void reloadSermon(const model::Uuid& id);
    /// Keeps the rows whose title, series, speaker or tags contain every word of `text`
    /// (case and accents ignored).
    void setFilterText(const QString& text);
    QString filterText() const { return m_filterText; }
    void setShowHidden(bool show);
    bool showsHidden() const { return m_showHidden; }

    std::optional<model::Uuid> idAt(int row) const;
    /// The visible row of `id`, or -1.
    int rowOf(const model::Uuid& id) const;
    /// How many sermons the library holds, filtered or not.
    int totalCount() const { return static_cast<int>(m_entries.size()); }

private:
    struct Entry {
        model::Uuid id;
        QString title;
        QString subtitle;
        QString series;
        QString searchKey;
        qint64 date = 0;
        qint64 modified = 0;
        QString coverFile;
        bool pinned = false;
        bool hidden = false;
    };

    Entry makeEntry(const model::SermonNote& sermon, const std::filesystem::path& media) const;
    /// True when `a` is listed before `b` whatever their places in the store.
    static bool strictlyBefore(const Entry& a, const Entry& b);
    QStringList filterWords() const;
    void applyFilter();
    bool matches(const Entry& entry, const QStringList& words) const;
    QVariant cover(const Entry& entry) const;

    const store::SermonNotesManager& m_manager;
    std::function<std::filesystem::path()> m_mediaFolder;
    std::vector<Entry> m_entries;
    /// Indices into m_entries of the rows shown, in order.
    std::vector<int> m_visible;
    QString m_filterText;
    bool m_showHidden = false;
    mutable QCache<QString, QPixmap> m_covers{256};
};

/// Folds case and strips accents so that "psalm" finds "Psalm" and "cafe" finds "Café".
QString foldForSearch(const QString& text);

} // namespace quillon::desktop
