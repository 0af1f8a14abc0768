#include "desktop/bible/CommentaryPane.h"

#include "scripture/BibleBook.h"

#include <QComboBox>
#include <QTextBrowser>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace quillon::desktop {

namespace {

scripture::ScriptureReference passage(const scripture::BibleBook& book, int chapter, std::optional<int> verse) {
    scripture::ScriptureReference reference;
    reference.book = book;
    reference.chapter = chapter;
    if (verse)
        reference.verses = std::vector<int>{*verse};
    return reference;
}

} // namespace

CommentaryPane::CommentaryPane(std::function<intelligence::CommentaryLibrary&()> library, QWidget* parent)
    : QWidget(parent), m_library(std::move(library)) {
    setObjectName(QStringLiteral("commentaryPane"));
    m_toggle = new QToolButton(this);
    m_toggle->setObjectName(QStringLiteral("commentaryToggle"));
    m_toggle->setText(tr("Commentaries"));
    m_toggle->setToolTip(tr("Show or hide the commentaries' notes on this passage"));
    m_toggle->setCheckable(true);
    m_toggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toggle->setAutoRaise(true);
    m_picker = new QComboBox(this);
    m_picker->setObjectName(QStringLiteral("commentaryPicker"));
    m_picker->setAccessibleName(tr("Commentary"));
    m_text = new QTextBrowser(this);
    m_text->setObjectName(QStringLiteral("commentaryText"));
    m_text->setAccessibleName(tr("Commentary notes"));
    m_text->setOpenExternalLinks(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_toggle);
    layout->addWidget(m_picker);
    layout->addWidget(m_text, 1);
    connect(m_picker, &QComboBox::currentIndexChanged, this, &CommentaryPane::reload);
    connect(&m_watcher, &QFutureWatcher<Notes>::finished, this, &CommentaryPane::onLoaded);
    connect(m_toggle, &QToolButton::toggled, this, &CommentaryPane::applyFolding);
    applyFolding(false);
}

void CommentaryPane::setExpanded(bool expanded) {
    m_toggle->setChecked(expanded);
}

bool CommentaryPane::isExpanded() const {
    return m_toggle->isChecked();
}

void CommentaryPane::applyFolding(bool expanded) {
    m_toggle->setArrowType(expanded ? Qt::DownArrow : Qt::RightArrow);
    m_picker->setVisible(expanded);
    m_text->setVisible(expanded);
    // Folded, the pane is only its header: the splitter gives the room to the reader.
    setMaximumHeight(expanded ? QWIDGETSIZE_MAX : m_toggle->sizeHint().height());
    if (!expanded || m_opened)
        return;
    m_opened = true;
    m_text->setPlainText(tr("Loading commentaries…"));
    reload();
}

void CommentaryPane::showPassage(std::int64_t bookId, int chapter, std::optional<int> verse) {
    m_bookId = bookId;
    m_chapter = chapter;
    m_verse = verse;
    if (m_opened)
        reload();
}

void CommentaryPane::reload() {
    const scripture::BibleBook* book = scripture::bibleBookWithId(m_bookId);
    if (!book)
        return;
    if (m_watcher.isRunning()) {
        m_pending = true;
        return;
    }
    std::string moduleName = m_picker->currentData().toString().toStdString();
    m_watcher.setFuture(
        QtConcurrent::run([library = m_library, book, chapter = m_chapter, verse = m_verse, moduleName] {
            Notes notes;
            auto& commentaries = library();
            notes.commentaries = commentaries.commentaries();
            notes.bookId = book->id;
            notes.chapter = chapter;
            notes.verse = verse;
            auto chosen = std::find_if(notes.commentaries.begin(), notes.commentaries.end(),
                                       [&](const auto& c) { return c.moduleName == moduleName; });
            if (chosen == notes.commentaries.end() && !notes.commentaries.empty())
                chosen = notes.commentaries.begin();
            if (chosen == notes.commentaries.end())
                return notes;
            notes.moduleName = chosen->moduleName;
            notes.entries = commentaries.entries(*chosen, passage(*book, chapter, verse));
            return notes;
        }));
}

void CommentaryPane::onLoaded() {
    Notes notes = m_watcher.result();
    if (m_picker->count() != static_cast<int>(notes.commentaries.size())) {
        QSignalBlocker block(m_picker);
        m_picker->clear();
        for (const auto& commentary : notes.commentaries)
            m_picker->addItem(QString::fromStdString(commentary.name), QString::fromStdString(commentary.moduleName));
        m_picker->setCurrentIndex(m_picker->findData(QString::fromStdString(notes.moduleName)));
    }
    showEntries(notes);
    if (m_pending || notes.bookId != m_bookId || notes.chapter != m_chapter || notes.verse != m_verse) {
        m_pending = false;
        reload();
        return;
    }
    emit notesShown();
}

void CommentaryPane::showEntries(const Notes& notes) {
    if (notes.commentaries.empty()) {
        m_text->setPlainText(tr("No commentaries are installed. Debian's sword-comm-mhcc, sword-comm-scofield "
                                "and sword-comm-tdavid packages add three public-domain works."));
        return;
    }
    if (notes.entries.empty()) {
        m_text->setPlainText(tr("This commentary has no note on this passage."));
        return;
    }
    QString html;
    for (const auto& entry : notes.entries) {
        html += QStringLiteral("<h4>%1</h4><p>%2</p>")
                    .arg(QString::fromStdString(entry.label).toHtmlEscaped(),
                         QString::fromStdString(entry.text).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
    }
    m_text->setHtml(html);
}

QString CommentaryPane::text() const {
    return m_text->toPlainText();
}

CommentaryPane::~CommentaryPane() {
    m_watcher.waitForFinished();
}

} // namespace quillon::desktop
