#include "desktop/help/HelpWindow.h"

#include "app/HelpLibrary.h"
#include "app/OutcomeCaption.h"
#include "orvane/ModelRouter.h"

#include <QFile>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

// The articles live in this static library's resources, which the linker keeps only when named.
static void initialiseHelpResources() {
    Q_INIT_RESOURCE(help);
}

namespace quillon::desktop {

namespace {

/// The order a newcomer reads them in.
const char* const articleOrder[] = {"getting-started", "writing-an-outline", "scripture", "exports",
                                    "preach-preview",  "model-server",       "mesh",      "backups-and-trash",
                                    "sync-folder",     "keyboard-shortcuts"};

/// How many matching articles the model is given to answer from.
constexpr int articlesAsked = 3;

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

std::unique_ptr<app::HelpLibrary> HelpWindow::shippedArticles() {
    initialiseHelpResources();
    std::vector<app::HelpArticle> articles;
    for (const char* id : articleOrder) {
        QFile file(QStringLiteral(":/quillon/help/%1.md").arg(QString::fromLatin1(id)));
        if (file.open(QIODevice::ReadOnly))
            articles.push_back(app::HelpArticle::fromMarkdown(id, file.readAll().toStdString()));
    }
    return std::make_unique<app::HelpLibrary>(std::move(articles));
}

HelpWindow::HelpWindow(std::shared_ptr<orvane::ModelRouter> router, QWidget* parent)
    : QDialog(parent), m_library(shippedArticles()), m_router(std::move(router)) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(tr("Quillon Help"));
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("helpSearch"));
    m_search->setPlaceholderText(tr("Search help"));
    m_search->setClearButtonEnabled(true);
    m_search->setAccessibleName(tr("Search help"));
    connect(m_search, &QLineEdit::textChanged, this, &HelpWindow::filter);
    m_banner = new QLabel(this);
    m_banner->setObjectName(QStringLiteral("helpBanner"));
    m_banner->setForegroundRole(QPalette::PlaceholderText);
    m_banner->hide();
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("helpArticles"));
    m_article = new QTextBrowser(this);
    m_article->setObjectName(QStringLiteral("helpArticle"));
    m_article->setOpenLinks(false);
    connect(m_list, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item)
            showArticle(item->data(Qt::UserRole).toString());
    });

    m_question = new QLineEdit(this);
    m_question->setObjectName(QStringLiteral("howToQuestion"));
    m_question->setPlaceholderText(tr("How do I…?"));
    m_question->setAccessibleName(tr("Ask how-to"));
    m_ask = new QPushButton(tr("Ask How-To"), this);
    m_ask->setAutoDefault(false);
    connect(m_ask, &QPushButton::clicked, this, [this] { ask(m_question->text()); });
    connect(m_question, &QLineEdit::returnPressed, this, [this] { ask(m_question->text()); });
    m_answerCaption = new QLabel(this);
    m_answerCaption->setObjectName(QStringLiteral("howToCaption"));
    m_answerCaption->setWordWrap(true);
    m_answer = new QTextBrowser(this);
    m_answer->setObjectName(QStringLiteral("howToAnswer"));
    m_answer->setOpenLinks(false);
    m_answer->setMaximumHeight(140);
    m_answer->hide();
    connect(m_answer, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) { showArticle(url.path()); });

    auto* splitter = new QSplitter(this);
    splitter->addWidget(m_list);
    splitter->addWidget(m_article);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 460});
    auto* askRow = new QHBoxLayout;
    askRow->addWidget(m_question, 1);
    askRow->addWidget(m_ask);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_banner);
    layout->addWidget(splitter, 1);
    layout->addLayout(askRow);
    layout->addWidget(m_answerCaption);
    layout->addWidget(m_answer);
    resize(760, 560);
    filter({});
}

HelpWindow::~HelpWindow() = default;

void HelpWindow::filter(const QString& query) {
    const std::string typed = query.trimmed().toStdString();
    std::vector<const app::HelpArticle*> shown;
    if (typed.empty())
        for (const app::HelpArticle& article : m_library->articles())
            shown.push_back(&article);
    else
        shown = m_library->search(typed);
    m_list->clear();
    for (const app::HelpArticle* article : shown) {
        auto* item = new QListWidgetItem(qt(article->title), m_list);
        item->setData(Qt::UserRole, qt(article->id));
    }
    const QString banner = typed.empty() ? QString() : qt(m_library->banner(typed));
    m_banner->setText(shown.empty() ? tr("No help article matches “%1”.").arg(query.trimmed()) : banner);
    m_banner->setVisible(!m_banner->text().isEmpty());
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
}

bool HelpWindow::showArticle(const QString& id) {
    const app::HelpArticle* article = m_library->find(id.toStdString());
    if (!article)
        return false;
    m_article->setMarkdown(qt("# " + article->title + "\n\n" + article->text));
    return true;
}

QStringList HelpWindow::listedTitles() const {
    QStringList titles;
    for (int i = 0; i < m_list->count(); ++i)
        titles << m_list->item(i)->text();
    return titles;
}

void HelpWindow::ask(const QString& question) {
    const std::string typed = question.trimmed().toStdString();
    if (typed.empty())
        return;
    std::vector<app::HelpArticle> matching;
    for (const app::HelpArticle* article : m_library->search(typed, articlesAsked))
        matching.push_back(*article);
    m_answer->show();
    if (matching.empty()) {
        m_answerCaption->setText(QString::fromUtf8(app::AskHowTo::nothingMatches));
        m_answer->clear();
        m_answer->hide();
        emit answered();
        return;
    }
    m_answerCaption->setText(tr("Asking the model…"));
    m_answer->clear();
    const quint64 generation = ++m_generation;
    using Outcome = orvane::IntelligenceOutcome<app::HowToAnswer>;
    auto* watcher = new QFutureWatcher<Outcome>(this);
    connect(watcher, &QFutureWatcher<Outcome>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const Outcome outcome = watcher->result();
        QStringList captionLines;
        for (const std::string& line :
             app::OutcomeCaption::of(outcome.path, outcome.needsGeneratedLabel, app::AskHowTo::generatedCaption,
                                     app::AskHowTo::fallbackCaption)
                 .lines())
            captionLines << qt(line);
        m_answerCaption->setText(captionLines.join(u'\n'));
        QString html;
        if (!outcome.value.text.empty()) {
            const app::HelpArticle* source = m_library->find(outcome.value.articleId);
            html = QStringLiteral("<p>%1</p><p>— <a href=\"help:%2\">%3</a></p>")
                       .arg(qt(outcome.value.text).toHtmlEscaped(), qt(outcome.value.articleId),
                            source ? qt(source->title).toHtmlEscaped() : QString());
        } else {
            html = QStringLiteral("<ul>");
            for (const std::string& id : outcome.value.matchingArticleIds)
                if (const app::HelpArticle* article = m_library->find(id))
                    html += QStringLiteral("<li><a href=\"help:%1\">%2</a></li>")
                                .arg(qt(id), qt(article->title).toHtmlEscaped());
            html += QStringLiteral("</ul>");
        }
        m_answer->setHtml(html);
        emit answered();
    });
    watcher->setFuture(QtConcurrent::run([router = m_router, input = app::AskHowTo::Input{typed, matching}] {
        return orvane::run(app::AskHowTo(), input, *router);
    }));
}

} // namespace quillon::desktop
