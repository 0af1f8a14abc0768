#include "desktop/bible/BiblePanel.h"

#include "desktop/bible/ChapterReader.h"
#include "desktop/bible/CommentaryPane.h"
#include "desktop/shell/EmptyStateOverlay.h"
#include "scripture/BibleBook.h"
#include "scripture/BibleLoader.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace quillon::desktop {

namespace {

constexpr int pauseBeforeSearchMs = 180;
constexpr std::size_t resultLimit = 200;

QString beforeSearchHint() {
    return BiblePanel::tr("Type a reference or a few words to search the Bible.");
}

} // namespace

BiblePanel::BiblePanel(scripture::BibleLoader& loader, std::function<intelligence::CommentaryLibrary&()> commentaries,
                       QWidget* parent)
    : QWidget(parent), m_loader(loader), m_results(this) {
    setObjectName(QStringLiteral("biblePanel"));
    m_field = new QLineEdit(this);
    m_field->setObjectName(QStringLiteral("bibleSearchField"));
    m_field->setPlaceholderText(tr("John 3:16, verses about grace, \"living water\""));
    m_field->setAccessibleName(tr("Search the Bible"));
    m_field->setClearButtonEnabled(true);
    m_summary = new QLabel(this);
    m_summary->setObjectName(QStringLiteral("bibleSearchSummary"));
    m_summary->setForegroundRole(QPalette::PlaceholderText);

    m_resultView = new QTreeView(this);
    m_resultView->setObjectName(QStringLiteral("bibleResults"));
    m_resultView->setAccessibleName(tr("Bible search results"));
    m_resultView->setModel(&m_results);
    m_resultView->setRootIsDecorated(false);
    m_resultView->setUniformRowHeights(true);
    m_resultView->setAlternatingRowColors(true);
    m_resultView->header()->setSectionResizeMode(BibleResultsModel::referenceColumn, QHeaderView::ResizeToContents);
    m_resultView->header()->setStretchLastSection(true);
    m_emptyResults = new EmptyStateOverlay(*m_resultView, beforeSearchHint());

    m_reader = new ChapterReader(loader, this);
    m_commentaries = new CommentaryPane(std::move(commentaries), this);

    m_attach = new QPushButton(tr("Attach to Sub-topic"), this);
    m_attach->setObjectName(QStringLiteral("attachToSubTopic"));
    m_attach->setToolTip(tr("Add the chosen verses to the selected sub-topic"));

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("biblePanelSplitter"));
    auto* searchArea = new QWidget(splitter);
    auto* searchLayout = new QVBoxLayout(searchArea);
    searchLayout->setContentsMargins(0, 0, 0, 0);
    searchLayout->addWidget(m_field);
    searchLayout->addWidget(m_summary);
    searchLayout->addWidget(m_resultView, 1);
    splitter->addWidget(searchArea);
    splitter->addWidget(m_reader);
    splitter->addWidget(m_commentaries);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    splitter->setStretchFactor(2, 2);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_attach);

    m_debounce.setSingleShot(true);
    m_debounce.setInterval(pauseBeforeSearchMs);
    connect(m_field, &QLineEdit::textEdited, this, [this] { m_debounce.start(); });
    connect(m_field, &QLineEdit::returnPressed, this, [this] { search(m_field->text()); });
    connect(&m_debounce, &QTimer::timeout, this, [this] { search(m_field->text()); });
    connect(&m_watcher, &QFutureWatcher<std::vector<scripture::BibleSearchResult>>::finished, this,
            &BiblePanel::onSearchFinished);
    connect(m_resultView, &QTreeView::activated, this, &BiblePanel::openResult);
    connect(m_resultView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& index) {
                openResult(index);
                updateAttach();
            });
    connect(m_reader, &ChapterReader::passageChanged, m_commentaries, &CommentaryPane::showPassage);
    connect(m_reader, &ChapterReader::passageChanged, this, &BiblePanel::updateAttach);
    connect(m_attach, &QPushButton::clicked, this, [this] {
        QString reference = referenceToAttach();
        if (!reference.isEmpty())
            emit attachRequested(reference);
    });
    updateAttach();
    m_reader->showChapter(43, 3);
}

void BiblePanel::search(const QString& query) {
    m_debounce.stop();
    m_wantedQuery = query.trimmed();
    if (m_watcher.isRunning())
        return;
    if (m_wantedQuery.isEmpty()) {
        m_results.setResults({});
        m_summary->clear();
        m_emptyResults->setEmptyText(beforeSearchHint());
        return;
    }
    m_runningQuery = m_wantedQuery;
    std::vector<model::BibleVersion> versions = m_reader->shownVersions();
    m_watcher.setFuture(QtConcurrent::run([loader = &m_loader, text = m_runningQuery.toStdString(), versions] {
        return loader->search(text, versions, resultLimit);
    }));
}

void BiblePanel::onSearchFinished() {
    if (m_runningQuery != m_wantedQuery) {
        search(m_wantedQuery);
        return;
    }
    std::vector<scripture::BibleSearchResult> results = m_watcher.result();
    const auto count = static_cast<int>(results.size());
    m_results.setResults(std::move(results));
    // An empty result says so in the list itself, where the preacher is looking.
    m_emptyResults->setEmptyText(tr("Nothing in the Bible matches “%1”.").arg(m_runningQuery));
    m_summary->setText(count == 0 ? QString() : count == 1 ? tr("1 verse") : tr("%1 verses").arg(count));
    if (count > 0)
        m_resultView->setCurrentIndex(m_results.index(0, 0));
    emit resultsShown();
}

void BiblePanel::openResult(const QModelIndex& index) {
    const scripture::BibleSearchResult* result = m_results.resultAt(index.row());
    if (!result)
        return;
    const scripture::BibleBook* book = scripture::bibleBookWithAbbreviation(result->verse.bookAbbreviation);
    if (book)
        m_reader->showChapter(book->id, result->verse.chapter, result->verse.verse);
}

QString BiblePanel::referenceToAttach() const {
    QString fromReader = m_reader->selectedReference();
    if (!fromReader.isEmpty())
        return fromReader;
    const scripture::BibleSearchResult* result = m_results.resultAt(m_resultView->currentIndex().row());
    return result ? verseReference(result->verse) : QString();
}

void BiblePanel::setCanAttach(bool canAttach) {
    m_canAttach = canAttach;
    updateAttach();
}

void BiblePanel::updateAttach() {
    m_attach->setEnabled(m_canAttach && !referenceToAttach().isEmpty());
}

BiblePanel::~BiblePanel() {
    m_watcher.waitForFinished();
}

} // namespace quillon::desktop
