#include "desktop/bible/ChapterReader.h"

#include "scripture/BibleBook.h"
#include "scripture/BibleLoader.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent>

#include <algorithm>

namespace quillon::desktop {

ChapterReader::ChapterReader(scripture::BibleLoader& loader, QWidget* parent)
    : QWidget(parent), m_loader(loader), m_model(this) {
    setObjectName(QStringLiteral("chapterReader"));
    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("chapterTitle"));
    QFont titleFont = m_title->font();
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    m_previous = new QToolButton(this);
    m_previous->setObjectName(QStringLiteral("previousChapter"));
    m_previous->setArrowType(Qt::LeftArrow);
    m_previous->setToolTip(tr("Previous chapter"));
    m_previous->setAccessibleName(tr("Previous chapter"));
    m_next = new QToolButton(this);
    m_next->setObjectName(QStringLiteral("nextChapter"));
    m_next->setArrowType(Qt::RightArrow);
    m_next->setToolTip(tr("Next chapter"));
    m_next->setAccessibleName(tr("Next chapter"));

    auto* header = new QHBoxLayout;
    header->addWidget(m_previous);
    header->addWidget(m_title, 1);
    for (model::BibleVersion version : model::allBibleVersions) {
        if (!m_loader.isAvailable(version))
            continue;
        auto* button = new QToolButton(this);
        QString code = QString::fromUtf8(model::rawValue(version));
        button->setObjectName(QStringLiteral("readerVersion_") + code);
        button->setText(code);
        button->setCheckable(true);
        button->setChecked(version == model::BibleVersion::kjv);
        button->setToolTip(tr("Show %1 beside the other versions").arg(code));
        header->addWidget(button);
        m_versionButtons[version] = button;
        connect(button, &QToolButton::toggled, this, &ChapterReader::reload);
    }
    header->addWidget(m_next);

    m_table = new QTableView(this);
    m_table->setObjectName(QStringLiteral("chapterTable"));
    m_table->setAccessibleName(tr("Chapter text"));
    m_table->setModel(&m_model);
    m_table->setWordWrap(true);
    m_table->setShowGrid(false);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ContiguousSelection);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignTop);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(header);
    layout->addWidget(m_table, 1);

    connect(m_previous, &QToolButton::clicked, this, &ChapterReader::showPreviousChapter);
    connect(m_next, &QToolButton::clicked, this, &ChapterReader::showNextChapter);
    connect(&m_watcher, &QFutureWatcher<ChapterText>::finished, this, &ChapterReader::onLoaded);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    emit passageChanged(m_bookId, m_chapter, current.row() + 1);
            });
}

void ChapterReader::showChapter(std::int64_t bookId, int chapter, std::optional<int> verse) {
    const scripture::BibleBook* book = scripture::bibleBookWithId(bookId);
    if (!book || chapter < 1 || chapter > book->chapterCount())
        return;
    m_bookId = bookId;
    m_chapter = chapter;
    m_scrollToVerse = verse;
    m_title->setText(QStringLiteral("%1 %2").arg(QString::fromStdString(book->name)).arg(chapter));
    m_previous->setEnabled(bookId > 1 || chapter > 1);
    m_next->setEnabled(bookId < 66 || chapter < book->chapterCount());
    reload();
    emit passageChanged(bookId, chapter, verse);
}

void ChapterReader::showPreviousChapter() {
    if (m_chapter > 1)
        return showChapter(m_bookId, m_chapter - 1);
    if (const scripture::BibleBook* previous = scripture::bibleBookWithId(m_bookId - 1))
        showChapter(previous->id, previous->chapterCount());
}

void ChapterReader::showNextChapter() {
    const scripture::BibleBook* book = scripture::bibleBookWithId(m_bookId);
    if (book && m_chapter < book->chapterCount())
        return showChapter(m_bookId, m_chapter + 1);
    if (scripture::bibleBookWithId(m_bookId + 1))
        showChapter(m_bookId + 1, 1);
}

std::vector<model::BibleVersion> ChapterReader::shownVersions() const {
    std::vector<model::BibleVersion> versions;
    for (const auto& [version, button] : m_versionButtons) {
        if (button->isChecked())
            versions.push_back(version);
    }
    if (versions.empty() && !m_versionButtons.empty())
        versions.push_back(m_versionButtons.begin()->first);
    return versions;
}

void ChapterReader::reload() {
    const scripture::BibleBook* book = scripture::bibleBookWithId(m_bookId);
    if (!book)
        return;
    // One read at a time, so that waiting for it is enough when the reader goes away.
    if (m_watcher.isRunning()) {
        m_pending = true;
        return;
    }
    m_watcher.setFuture(QtConcurrent::run([loader = &m_loader, book, chapter = m_chapter, versions = shownVersions()] {
        return readChapter(*loader, *book, chapter, versions);
    }));
}

void ChapterReader::onLoaded() {
    ChapterText text = m_watcher.result();
    if (m_pending || text.bookId != m_bookId || text.chapter != m_chapter || text.versions != shownVersions()) {
        m_pending = false;
        reload();
        return;
    }
    m_model.setChapter(std::move(text));
    if (m_scrollToVerse && *m_scrollToVerse >= 1 && *m_scrollToVerse <= m_model.rowCount()) {
        QModelIndex index = m_model.index(*m_scrollToVerse - 1, 0);
        m_table->selectRow(index.row());
        m_table->scrollTo(index, QAbstractItemView::PositionAtTop);
    } else {
        m_table->scrollToTop();
    }
    emit chapterShown();
}

QString ChapterReader::selectedReference() const {
    const scripture::BibleBook* book = scripture::bibleBookWithId(m_bookId);
    QModelIndexList rows = m_table->selectionModel()->selectedRows();
    if (!book || rows.isEmpty())
        return {};
    auto [low, high] = std::minmax_element(
        rows.begin(), rows.end(), [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QString reference =
        QStringLiteral("%1 %2:%3").arg(QString::fromStdString(book->name)).arg(m_chapter).arg(low->row() + 1);
    if (high->row() != low->row())
        reference += QStringLiteral("-%1").arg(high->row() + 1);
    return reference;
}

ChapterReader::~ChapterReader() {
    m_watcher.waitForFinished();
}

} // namespace quillon::desktop
