#pragma once

#include "model/SermonNote.h"

#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <memory>
#include <string>

class QPrinter;
class QWidget;

namespace quillon::app {
class SermonNotesViewModel;
}
namespace quillon::exports {
class VerseTextSource;
}

namespace quillon::desktop {

/// Prints a sermon as its PDF hand-out: Qt's print dialog chooses the printer, the copies and the
/// pages; the hand-out is laid out off the interface thread, then written to the chosen file
/// ("Print to File") or handed to the printing system, which takes PDF as it is. A failure is the
/// controller's "Print Failed".
class SermonPrinter : public QObject {
    Q_OBJECT
public:
    SermonPrinter(QWidget& window, app::SermonNotesViewModel& controller, const exports::VerseTextSource& verses,
                  QObject* parent = nullptr);
    ~SermonPrinter() override;

    /// Asks with the print dialog, then prints a copy of `sermon` as it is now.
    void print(const model::SermonNote& sermon);
    /// Prints without asking, to the printer as `printer` is set up (tests print to a PDF file).
    void printTo(const model::SermonNote& sermon, QPrinter& printer);
    bool isRunning() const { return m_watcher.isRunning(); }

signals:
    void finished(bool succeeded);

private:
    struct Job;
    void onRendered();
    void deliver(const std::string& pdf);
    void fail();

    QWidget& m_window;
    app::SermonNotesViewModel& m_controller;
    const exports::VerseTextSource& m_verses;
    QFutureWatcher<std::string> m_watcher;
    std::unique_ptr<Job> m_job;
};

} // namespace quillon::desktop
