#include "desktop/search/DeskSearch.h"

#include "desktop/shell/EmptyStateOverlay.h"
#include "desktop/shell/Plural.h"

#include "desktop/DeskServices.h"
#include "intelligence/CommentaryLibrary.h"
#include "intelligence/CommentarySearchSource.h"
#include "orvane/QueryCorrection.h"
#include "search/SermonSearchIndex.h"
#include "search/UnifiedSearch.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrent>

#include <unordered_map>

namespace quillon::desktop {

namespace {

constexpr int kindRole = Qt::UserRole + 1;
constexpr int targetRole = Qt::UserRole + 2;
constexpr std::size_t hitsPerGroup = 12;

const char* groupTitle(search::SearchGroup group) {
    switch (group) {
    case search::SearchGroup::scripture:
        return QT_TRANSLATE_NOOP("DeskSearch", "Scripture");
    case search::SearchGroup::commentaries:
        return QT_TRANSLATE_NOOP("DeskSearch", "Commentaries");
    case search::SearchGroup::dictionaries:
        return QT_TRANSLATE_NOOP("DeskSearch", "Dictionaries");
    case search::SearchGroup::historical:
        return QT_TRANSLATE_NOOP("DeskSearch", "Historical");
    case search::SearchGroup::sermons:
        return QT_TRANSLATE_NOOP("DeskSearch", "Sermons");
    }
    return "";
}

/// The reference a verse or commentary hit points at, for the Bible panel ("John 3:16").
QString referenceOf(const search::SearchHit& hit) {
    if (const auto* work = hit.referenceWork())
        return QString::fromStdString(work->heading);
    QString title = QString::fromStdString(hit.title());
    const qsizetype version = title.lastIndexOf(QStringLiteral(" ("));
    return version > 0 ? title.left(version) : title;
}

QString textOf(const search::SearchHit& hit) {
    if (const auto* verse = hit.verse())
        return QString::fromStdString(verse->verse.text);
    if (const auto* work = hit.referenceWork())
        return QString::fromStdString(work->work + " — " + work->snippet);
    const auto* sermon = hit.sermonHit();
    return QString::fromStdString(sermon->subtitle.empty() ? sermon->snippet
                                                           : sermon->subtitle + " — " + sermon->snippet);
}

QString beforeSearchHint() {
    return DeskSearch::tr("Type a word, a phrase or a reference (Romans 8:28) to search your sermons, the Bible "
                          "and the commentaries.");
}

} // namespace

/// One search's answer, made on a worker thread.
struct DeskSearch::Outcome {
    QString query;
    std::vector<search::SearchResultGroup> groups;
    std::optional<std::string> banner;
};

DeskSearch::DeskSearch(DeskServices& services, QWidget* parent)
    : QDialog(parent), m_services(services), m_index(std::make_shared<search::SermonSearchIndex>()) {
    setObjectName(QStringLiteral("searchWindow"));
    setWindowTitle(tr("Search"));
    resize(640, 560);
    m_field = new QLineEdit(this);
    m_field->setObjectName(QStringLiteral("searchField"));
    m_field->setAccessibleName(tr("Search sermons, the Bible and the commentaries"));
    m_field->setPlaceholderText(tr("Search sermons, the Bible and the commentaries"));
    m_field->setClearButtonEnabled(true);
    m_banner = new QLabel(this);
    m_banner->setObjectName(QStringLiteral("searchBanner"));
    m_banner->setWordWrap(true);
    m_banner->setVisible(false);
    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("searchSummary"));
    m_summary->setForegroundRole(QPalette::PlaceholderText);
    m_view = new QTreeView(this);
    m_view->setObjectName(QStringLiteral("searchResults"));
    m_view->setAccessibleName(tr("Search results, grouped by kind"));
    m_view->setModel(&m_results);
    m_view->setHeaderHidden(true);
    m_view->setUniformRowHeights(false);
    m_view->setWordWrap(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAllColumnsShowFocus(true);
    m_empty = new EmptyStateOverlay(*m_view, beforeSearchHint());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_field);
    layout->addWidget(m_banner);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_summary);

    m_debounce.setSingleShot(true);
    m_debounce.setInterval(180);
    connect(m_field, &QLineEdit::textChanged, this, [this] { m_debounce.start(); });
    connect(&m_debounce, &QTimer::timeout, this, [this] { search(m_field->text()); });
    connect(m_field, &QLineEdit::returnPressed, this, [this] {
        const QModelIndex group = m_results.index(0, 0);
        const QModelIndex first = group.isValid() ? m_results.index(0, 0, group) : QModelIndex();
        if (first.isValid()) {
            m_view->setFocus();
            m_view->setCurrentIndex(first);
        }
    });
    connect(m_view, &QTreeView::activated, this, &DeskSearch::openHit);
    connect(&m_watcher, &QFutureWatcher<std::shared_ptr<Outcome>>::finished, this, &DeskSearch::onFinished);
}

DeskSearch::~DeskSearch() {
    m_watcher.waitForFinished();
}

DeskSearch* DeskSearch::showFor(QWidget& window, DeskServices& services) {
    auto* found = window.findChild<DeskSearch*>(QStringLiteral("searchWindow"), Qt::FindDirectChildrenOnly);
    if (!found)
        found = new DeskSearch(services, &window);
    found->show();
    found->raise();
    found->activateWindow();
    found->m_field->setFocus(Qt::ShortcutFocusReason);
    found->m_field->selectAll();
    return found;
}

void DeskSearch::search(const QString& query) {
    m_wanted = query.trimmed();
    if (m_watcher.isRunning())
        return; // onFinished runs the newest query
    if (m_wanted.isEmpty()) {
        m_results.clear();
        m_banner->hide();
        m_summary->clear();
        m_empty->setEmptyText(beforeSearchHint());
        emit resultsShown();
        return;
    }
    // The worker gets copies: the library as it is now and the services that are safe across threads.
    std::vector<model::SermonNote> sermons = m_services.manager().sermons();
    std::shared_ptr<scripture::BibleLoader> bibles(std::shared_ptr<void>{}, &m_services.bibles());
    DeskServices* services = &m_services;
    m_watcher.setFuture(
        QtConcurrent::run([query = m_wanted, sermons = std::move(sermons), bibles, services, index = m_index]() {
            auto outcome = std::make_shared<Outcome>();
            outcome->query = query;
            const std::string text = query.toStdString();
            std::unordered_map<model::Uuid, const model::SermonNote*> byId;
            for (const auto& sermon : sermons)
                byId[sermon.id] = &sermon;
            index->refresh(sermons);
            outcome->banner = orvane::QueryCorrection::bannerText(index->search(text, 1).corrections);
            search::UnifiedSearch unified;
            unified.setSource(search::SearchGroup::scripture, search::UnifiedSearch::bibleSource(bibles));
            std::shared_ptr<const intelligence::CommentaryLibrary> commentaries(std::shared_ptr<void>{},
                                                                                &services->commentaries());
            unified.setSource(search::SearchGroup::commentaries, intelligence::commentarySearchSource(commentaries));
            unified.setSource(search::SearchGroup::sermons,
                              search::UnifiedSearch::sermonSource(index, [&byId](const model::Uuid& id) {
                                  auto found = byId.find(id);
                                  return found == byId.end() ? nullptr : found->second;
                              }));
            // Sermons first: the preacher's own words are what this field is mostly for.
            const std::array focus = {search::SearchGroup::sermons, search::SearchGroup::scripture,
                                      search::SearchGroup::commentaries};
            outcome->groups = unified.search(text, focus, hitsPerGroup);
            return outcome;
        }));
}

void DeskSearch::onFinished() {
    std::shared_ptr<Outcome> outcome = m_watcher.result();
    if (outcome->query != m_wanted) {
        search(m_wanted);
        return;
    }
    m_results.clear();
    QFont bold = font();
    bold.setBold(true);
    int total = 0;
    // Sermons lead, then the Bible, then the commentaries.
    std::vector<const search::SearchResultGroup*> ordered;
    for (auto group :
         {search::SearchGroup::sermons, search::SearchGroup::scripture, search::SearchGroup::commentaries}) {
        for (const auto& found : outcome->groups) {
            if (found.group == group)
                ordered.push_back(&found);
        }
    }
    for (const search::SearchResultGroup* group : ordered) {
        auto* heading =
            new QStandardItem(QStringLiteral("%1 (%2)").arg(tr(groupTitle(group->group))).arg(group->hits.size()));
        heading->setFont(bold);
        heading->setSelectable(false);
        for (const search::SearchHit& hit : group->hits) {
            auto* row = new QStandardItem(QString::fromStdString(hit.title()) + u'\n' + textOf(hit));
            row->setToolTip(textOf(hit));
            row->setData(static_cast<int>(hit.kind()), kindRole);
            if (const auto* sermon = hit.sermonHit())
                row->setData(QString::fromStdString(sermon->sermonID.text()), targetRole);
            else
                row->setData(referenceOf(hit), targetRole);
            heading->appendRow(row);
            ++total;
        }
        m_results.appendRow(heading);
    }
    m_view->expandAll();
    m_banner->setText(outcome->banner ? QString::fromStdString(*outcome->banner) : QString());
    m_banner->setVisible(outcome->banner.has_value());
    // Nothing found is said in the list itself, where the preacher is looking.
    m_empty->setEmptyText(tr("Nothing matches “%1”.").arg(outcome->query));
    m_summary->setText(total == 0 ? QString() : counted(total, tr("%1 result"), tr("%1 results")));
    emit resultsShown();
}

QStringList DeskSearch::groupHeadings() const {
    QStringList headings;
    for (int row = 0; row < m_results.rowCount(); ++row)
        headings << m_results.item(row)->text();
    return headings;
}

QString DeskSearch::banner() const {
    return m_banner->isVisible() ? m_banner->text() : QString();
}

void DeskSearch::openHit(const QModelIndex& index) {
    if (!index.parent().isValid())
        return;
    const auto kind = static_cast<search::SearchHit::Kind>(index.data(kindRole).toInt());
    const QString target = index.data(targetRole).toString();
    if (kind == search::SearchHit::Kind::sermon) {
        if (auto id = model::Uuid::parse(target.toStdString()))
            emit sermonChosen(*id);
        return;
    }
    emit referenceChosen(target);
}

} // namespace quillon::desktop
