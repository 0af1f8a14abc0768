#include "desktop/sidebar/SermonListModel.h"

#include "store/SermonNotesManager.h"

#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QLocale>

#include <algorithm>

namespace quillon::desktop {

namespace {

constexpr int thumbnailSide = 40;

qint64 seconds(model::DateTime time) {
    return time.time_since_epoch().count();
}

QString dateText(model::DateTime time) {
    QDate date = QDateTime::fromSecsSinceEpoch(seconds(time), Qt::UTC).date();
    return QLocale().toString(date, QStringLiteral("d MMM yyyy"));
}

} // namespace

QString foldForSearch(const QString& text) {
    QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString folded;
    folded.reserve(decomposed.size());
    for (QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        folded.append(c.toCaseFolded());
    }
    return folded;
}

SermonListModel::SermonListModel(const store::SermonNotesManager& manager,
                                 std::function<std::filesystem::path()> mediaFolder, QObject* parent)
    : QAbstractListModel(parent), m_manager(manager), m_mediaFolder(std::move(mediaFolder)) {
    reload();
}

int SermonListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_visible.size());
}

QVariant SermonListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= static_cast<int>(m_visible.size()))
        return {};
    const Entry& entry = m_entries[static_cast<std::size_t>(m_visible[static_cast<std::size_t>(index.row())])];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return entry.title;
    case Qt::AccessibleTextRole:
        return entry.title + QStringLiteral(", ") + entry.subtitle;
    case Qt::DecorationRole:
        return cover(entry);
    case IdRole:
        return QString::fromStdString(entry.id.text());
    case SeriesRole:
        return entry.series;
    case DateRole:
        return QDateTime::fromSecsSinceEpoch(entry.date, Qt::UTC);
    case PinnedRole:
        return entry.pinned;
    case HiddenRole:
        return entry.hidden;
    case SubtitleRole:
        return entry.subtitle;
    default:
        return {};
    }
}

SermonListModel::Entry SermonListModel::makeEntry(const model::SermonNote& sermon,
                                                  const std::filesystem::path& media) const {
    Entry entry;
    entry.id = sermon.id;
    entry.title = sermon.title.empty() ? tr("Untitled Sermon") : QString::fromStdString(sermon.title);
    entry.series = sermon.series ? QString::fromStdString(*sermon.series) : QString();
    entry.date = seconds(sermon.date);
    entry.modified = seconds(sermon.modifiedAt);
    entry.subtitle =
        entry.series.isEmpty() ? dateText(sermon.date) : entry.series + QStringLiteral(" · ") + dateText(sermon.date);
    QString key = entry.title + u'\n' + entry.series + u'\n' + QString::fromStdString(sermon.speaker);
    for (const auto& tag : sermon.tags)
        key += u'\n' + QString::fromStdString(tag);
    entry.searchKey = foldForSearch(key);
    if (sermon.coverImageFileName && !sermon.coverImageFileName->empty())
        entry.coverFile = QString::fromStdString((media / *sermon.coverImageFileName).string());
    entry.pinned = m_manager.pinnedSermonIds().contains(sermon.id);
    entry.hidden = m_manager.hiddenSermonIds().contains(sermon.id);
    return entry;
}

void SermonListModel::reload() {
    std::vector<Entry> entries;
    const auto& sermons = m_manager.sermons();
    entries.reserve(sermons.size());
    const std::filesystem::path media = m_mediaFolder ? m_mediaFolder() : std::filesystem::path();
    for (const auto& sermon : sermons)
        entries.push_back(makeEntry(sermon, media));
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        if (a.pinned != b.pinned)
            return a.pinned;
        return a.modified > b.modified;
    });
    m_entries = std::move(entries);
    m_covers.clear();
    applyFilter();
}

bool SermonListModel::strictlyBefore(const Entry& a, const Entry& b) {
    if (a.pinned != b.pinned)
        return a.pinned;
    return a.modified > b.modified;
}

void SermonListModel::reloadSermon(const model::Uuid& id) {
    // Typing in a sermon changes it many times a second; only its own row needs taking again.
    const model::SermonNote* sermon = m_manager.sermon(id);
    auto found = std::find_if(m_entries.begin(), m_entries.end(), [&id](const Entry& entry) { return entry.id == id; });
    if (!sermon || found == m_entries.end())
        return reload();
    Entry updated = makeEntry(*sermon, m_mediaFolder ? m_mediaFolder() : std::filesystem::path());
    const bool keepsPlace = (found == m_entries.begin() || strictlyBefore(*std::prev(found), updated)) &&
                            (std::next(found) == m_entries.end() || strictlyBefore(updated, *std::next(found)));
    const QStringList words = filterWords();
    if (!keepsPlace || matches(*found, words) != matches(updated, words))
        return reload();
    m_covers.remove(found->coverFile);
    *found = std::move(updated);
    const int index = static_cast<int>(found - m_entries.begin());
    const auto shown = std::find(m_visible.begin(), m_visible.end(), index);
    if (shown == m_visible.end())
        return;
    const QModelIndex changed = createIndex(static_cast<int>(shown - m_visible.begin()), 0);
    emit dataChanged(changed, changed);
}

QStringList SermonListModel::filterWords() const {
    return foldForSearch(m_filterText).split(u' ', Qt::SkipEmptyParts);
}

void SermonListModel::setFilterText(const QString& text) {
    if (text == m_filterText)
        return;
    m_filterText = text;
    applyFilter();
}

void SermonListModel::setShowHidden(bool show) {
    if (show == m_showHidden)
        return;
    m_showHidden = show;
    applyFilter();
}

bool SermonListModel::matches(const Entry& entry, const QStringList& words) const {
    if (entry.hidden && !m_showHidden)
        return false;
    return std::all_of(words.begin(), words.end(), [&](const QString& word) { return entry.searchKey.contains(word); });
}

void SermonListModel::applyFilter() {
    const QStringList words = filterWords();
    std::vector<int> visible;
    visible.reserve(m_entries.size());
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (matches(m_entries[i], words))
            visible.push_back(static_cast<int>(i));
    }
    beginResetModel();
    m_visible = std::move(visible);
    endResetModel();
}

std::optional<model::Uuid> SermonListModel::idAt(int row) const {
    if (row < 0 || row >= static_cast<int>(m_visible.size()))
        return std::nullopt;
    return m_entries[static_cast<std::size_t>(m_visible[static_cast<std::size_t>(row)])].id;
}

int SermonListModel::rowOf(const model::Uuid& id) const {
    for (std::size_t row = 0; row < m_visible.size(); ++row) {
        if (m_entries[static_cast<std::size_t>(m_visible[row])].id == id)
            return static_cast<int>(row);
    }
    return -1;
}

QVariant SermonListModel::cover(const Entry& entry) const {
    if (entry.coverFile.isEmpty())
        return {};
    if (QPixmap* cached = m_covers.object(entry.coverFile))
        return *cached;
    QImageReader reader(entry.coverFile);
    QSize size = reader.size();
    if (size.isValid())
        reader.setScaledSize(size.scaled(thumbnailSide * 2, thumbnailSide * 2, Qt::KeepAspectRatioByExpanding));
    QImage image = reader.read();
    if (image.isNull())
        return {};
    auto* pixmap = new QPixmap(QPixmap::fromImage(std::move(image)));
    QPixmap copy = *pixmap;
    m_covers.insert(entry.coverFile, pixmap);
    return copy;
}

} // namespace quillon::desktop
