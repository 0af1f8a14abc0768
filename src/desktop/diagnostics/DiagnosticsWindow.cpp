#include "desktop/diagnostics/DiagnosticsWindow.h"

#include "app/OutcomeCaption.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "orvane/ModelRouter.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFontDatabase>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace quillon::desktop {

namespace {

/// Enough of the log to see what happened today without reading megabytes into a text view.
constexpr qint64 tailBytes = 512 * 1024;

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

QPlainTextEdit* readOnlyText(const char* name, QWidget* parent) {
    auto* text = new QPlainTextEdit(parent);
    text->setObjectName(QString::fromLatin1(name));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return text;
}

} // namespace

DiagnosticsWindow::DiagnosticsWindow(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router,
                                     std::filesystem::path logFile, QWidget* parent)
    : QDialog(parent), m_services(services), m_router(std::move(router)), m_logFile(std::move(logFile)) {
    setObjectName(QStringLiteral("diagnosticsWindow"));
    setWindowTitle(tr("Diagnostics"));
    auto* tabs = new QTabWidget(this);
    tabs->addTab(logTab(), tr("Log"));
    tabs->addTab(selfTestTab(), tr("Self-Test"));
    tabs->addTab(errorsTab(), tr("Recent Errors"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    resize(820, 560);
    reload();
}

QWidget* DiagnosticsWindow::logTab() {
    auto* tab = new QWidget(this);
    m_level = new QComboBox(tab);
    m_level->setObjectName(QStringLiteral("logLevel"));
    m_level->addItem(tr("Everything"), 0);
    m_level->addItem(tr("Information and above"), 2);
    m_level->addItem(tr("Warnings and errors"), 3);
    m_level->addItem(tr("Errors only"), 4);
    m_level->setCurrentIndex(1);
    m_filter = new QLineEdit(tab);
    m_filter->setObjectName(QStringLiteral("logFilter"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_log = readOnlyText("logText", tab);
    auto* copy = new QPushButton(tr("Copy"), tab);
    auto* refresh = new QPushButton(tr("Reload"), tab);
    auto refilter = [this] { filter(m_level->currentData().toInt(), m_filter->text()); };
    connect(m_level, &QComboBox::currentIndexChanged, this, refilter);
    connect(m_filter, &QLineEdit::textChanged, this, refilter);
    connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(m_log->toPlainText()); });
    connect(refresh, &QPushButton::clicked, this, &DiagnosticsWindow::reload);
    auto* bar = new QHBoxLayout;
    bar->addWidget(m_level);
    bar->addWidget(m_filter, 1);
    bar->addWidget(refresh);
    bar->addWidget(copy);
    auto* layout = new QVBoxLayout(tab);
    layout->addLayout(bar);
    layout->addWidget(m_log);
    return tab;
}

QWidget* DiagnosticsWindow::selfTestTab() {
    auto* tab = new QWidget(this);
    m_selfTest = readOnlyText("selfTestText", tab);
    m_selfTest->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    auto* run = new QPushButton(tr("Run Self-Test"), tab);
    run->setObjectName(QStringLiteral("runSelfTest"));
    connect(run, &QPushButton::clicked, this, &DiagnosticsWindow::runSelfTest);
    auto* layout = new QVBoxLayout(tab);
    layout->addWidget(run, 0, Qt::AlignLeft);
    layout->addWidget(m_selfTest);
    return tab;
}

QWidget* DiagnosticsWindow::errorsTab() {
    auto* tab = new QWidget(this);
    m_errorsCaption = new QLabel(tab);
    m_errorsCaption->setObjectName(QStringLiteral("errorsCaption"));
    m_errorsCaption->setWordWrap(true);
    m_errors = new QTextBrowser(tab);
    m_errors->setObjectName(QStringLiteral("errorsText"));
    auto* summarise = new QPushButton(tr("Summarise Recent Errors"), tab);
    connect(summarise, &QPushButton::clicked, this, &DiagnosticsWindow::summarise);
    auto* layout = new QVBoxLayout(tab);
    layout->addWidget(summarise, 0, Qt::AlignLeft);
    layout->addWidget(m_errorsCaption);
    layout->addWidget(m_errors);
    return tab;
}

void DiagnosticsWindow::reload() {
    QFile file(QString::fromStdString(m_logFile.string()));
    QByteArray text;
    if (file.open(QIODevice::ReadOnly)) {
        if (file.size() > tailBytes)
            file.seek(file.size() - tailBytes);
        text = file.readAll();
    }
    m_lines = app::parseLog(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    filter(m_level->currentData().toInt(), m_filter->text());
    if (m_lines.empty())
        m_log->setPlaceholderText(tr("The log is empty: nothing has been recorded yet."));
}

void DiagnosticsWindow::filter(int minimumSeverity, const QString& text) {
    QStringList shown;
    for (const app::LogLine& line : m_lines) {
        if (line.severity() < minimumSeverity)
            continue;
        const QString whole = qt(line.text());
        if (text.isEmpty() || whole.contains(text, Qt::CaseInsensitive))
            shown << whole;
    }
    m_log->setPlainText(shown.join(u'\n'));
    m_log->moveCursor(QTextCursor::End);
}

QString DiagnosticsWindow::shownLog() const {
    return m_log->toPlainText();
}

void DiagnosticsWindow::runSelfTest() {
    QStringList lines;
    for (const auto& result : m_services.controller().runSelfTest()) {
        lines << qt(result.line());
        if (!result.sentence.empty())
            lines << QStringLiteral("    ") + qt(result.sentence);
    }
    m_selfTest->setPlainText(lines.join(u'\n'));
}

QString DiagnosticsWindow::selfTestText() const {
    return m_selfTest->toPlainText();
}

void DiagnosticsWindow::summarise() {
    if (app::groupErrors(m_lines).empty()) {
        m_errorsCaption->setText(QString::fromUtf8(app::ErrorSummary::noErrors));
        m_errors->clear();
        emit summarised();
        return;
    }
    m_errorsCaption->setText(tr("Asking the model…"));
    const quint64 generation = ++m_generation;
    using Outcome = orvane::IntelligenceOutcome<app::ErrorDigest>;
    auto* watcher = new QFutureWatcher<Outcome>(this);
    connect(watcher, &QFutureWatcher<Outcome>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const Outcome outcome = watcher->result();
        QStringList caption;
        for (const std::string& line :
             app::OutcomeCaption::of(outcome.path, outcome.needsGeneratedLabel, app::ErrorSummary::generatedCaption,
                                     app::ErrorSummary::fallbackCaption)
                 .lines())
            caption << qt(line);
        m_errorsCaption->setText(caption.join(u'\n'));
        QString html;
        if (outcome.path.isGenerated()) {
            html = QStringLiteral("<p>%1</p>").arg(qt(outcome.value.summary).toHtmlEscaped());
            for (const std::string& quoted : outcome.value.quotedLines)
                html += QStringLiteral("<p><code>%1</code></p>").arg(qt(quoted).toHtmlEscaped());
        } else {
            html = QStringLiteral("<table cellpadding=\"4\"><tr><th align=\"left\">%1</th><th>%2</th>"
                                  "<th align=\"left\">%3</th></tr>")
                       .arg(tr("Error"), tr("Times"), tr("Latest"));
            for (const app::ErrorGroup& group : outcome.value.groups)
                html += QStringLiteral("<tr><td>%1</td><td align=\"center\">%2</td><td>%3</td></tr>")
                            .arg(qt(group.message).toHtmlEscaped())
                            .arg(group.count)
                            .arg(qt(group.latest).toHtmlEscaped());
            html += QStringLiteral("</table>");
        }
        m_errors->setHtml(html);
        emit summarised();
    });
    watcher->setFuture(QtConcurrent::run(
        [router = m_router, lines = m_lines] { return orvane::run(app::ErrorSummary(), lines, *router); }));
}

QString DiagnosticsWindow::errorsCaption() const {
    return m_errorsCaption->text();
}

QString DiagnosticsWindow::errorsText() const {
    return m_errors->toPlainText();
}

} // namespace quillon::desktop
