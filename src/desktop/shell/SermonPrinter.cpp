#include "desktop/shell/SermonPrinter.h"

#include "app/SermonNotesViewModel.h"
#include "export/SermonPdfExporter.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QtConcurrent>

#include <spdlog/spdlog.h>

namespace quillon::desktop {

/// What the print dialog chose, kept while the hand-out is laid out.
struct SermonPrinter::Job {
    model::Uuid sermonId;
    QString title;
    QString outputFile;
    QString printerName;
    int copies = 1;
    int fromPage = 0;
    int toPage = 0;
};

SermonPrinter::SermonPrinter(QWidget& window, app::SermonNotesViewModel& controller,
                             const exports::VerseTextSource& verses, QObject* parent)
    : QObject(parent), m_window(window), m_controller(controller), m_verses(verses) {
    connect(&m_watcher, &QFutureWatcher<std::string>::finished, this, &SermonPrinter::onRendered);
}

SermonPrinter::~SermonPrinter() {
    m_watcher.waitForFinished();
}

void SermonPrinter::print(const model::SermonNote& sermon) {
    if (isRunning())
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(QString::fromStdString(sermon.title));
    printer.setPageSize(QPageSize(QPageSize::Letter));
    QPrintDialog dialog(&printer, &m_window);
    dialog.setWindowTitle(tr("Print “%1”").arg(QString::fromStdString(sermon.title)));
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    if (dialog.exec() != QDialog::Accepted)
        return;
    printTo(sermon, printer);
}

void SermonPrinter::printTo(const model::SermonNote& sermon, QPrinter& printer) {
    if (isRunning())
        return;
    m_job = std::make_unique<Job>();
    m_job->sermonId = sermon.id;
    m_job->title = QString::fromStdString(sermon.title);
    m_job->outputFile = printer.outputFormat() == QPrinter::PdfFormat ? printer.outputFileName() : QString();
    m_job->printerName = printer.printerName();
    m_job->copies = std::max(1, printer.copyCount());
    if (printer.printRange() == QPrinter::PageRange) {
        m_job->fromPage = printer.fromPage();
        m_job->toPage = printer.toPage();
    }
    m_watcher.setFuture(QtConcurrent::run([verses = &m_verses, sermon]() -> std::string {
        try {
            return exports::SermonPdfExporter(*verses).render(sermon);
        } catch (const std::exception& error) {
            spdlog::error("Printing \"{}\" failed: {}", sermon.title, error.what());
            return {};
        }
    }));
}

void SermonPrinter::onRendered() {
    std::string pdf = m_watcher.result();
    if (pdf.empty())
        return fail();
    deliver(pdf);
}

void SermonPrinter::deliver(const std::string& pdf) {
    if (!m_job->outputFile.isEmpty()) {
        try {
            platform::writeFileAtomically(m_job->outputFile.toStdString(), pdf);
        } catch (const platform::FileError& error) {
            spdlog::error("Printing \"{}\" to a file failed: {}", m_job->title.toStdString(), error.what());
            return fail();
        }
        emit finished(true);
        return;
    }
    // The printing system (CUPS) takes the hand-out's PDF as it is, so what comes out of the
    // printer is page for page the PDF export.
    QStringList arguments = {QStringLiteral("-t"), m_job->title, QStringLiteral("-n"), QString::number(m_job->copies)};
    if (!m_job->printerName.isEmpty())
        arguments << QStringLiteral("-d") << m_job->printerName;
    if (m_job->fromPage > 0)
        arguments << QStringLiteral("-P") << QStringLiteral("%1-%2").arg(m_job->fromPage).arg(m_job->toPage);
    auto* process = new QProcess(this);
    connect(process, &QProcess::finished, this, [this, process](int code, QProcess::ExitStatus status) {
        process->deleteLater();
        if (status != QProcess::NormalExit || code != 0) {
            spdlog::error("The printing system refused \"{}\": {}", m_job->title.toStdString(),
                          process->readAllStandardError().trimmed().toStdString());
            return fail();
        }
        emit finished(true);
    });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        process->deleteLater();
        spdlog::error("Printing \"{}\" failed: the lp command of the printing system is not installed",
                      m_job->title.toStdString());
        fail();
    });
    process->start(QStringLiteral("lp"), arguments);
    process->write(pdf.data(), static_cast<qint64>(pdf.size()));
    process->closeWriteChannel();
}

void SermonPrinter::fail() {
    m_controller.reportPrintFailure(m_job->sermonId);
    emit finished(false);
}

} // namespace quillon::desktop
