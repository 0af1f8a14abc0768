#pragma once

#include "app/LogDigest.h"

#include <QDialog>

#include <filesystem>
#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTextBrowser;

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

class DeskServices;

/// The diagnostics window: the log with its levels, a filter and Copy; the self-test with its
/// lines; and the recent errors, summarised by a model that quotes the lines it rests on, or
/// grouped by message with counts and the latest time when no model answers.
class DiagnosticsWindow : public QDialog {
    Q_OBJECT
public:
    DiagnosticsWindow(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router,
                      std::filesystem::path logFile, QWidget* parent = nullptr);

    /// Reads the log file again and shows it through the current filter.
    void reload();
    /// Shows the lines at `minimumSeverity` or above (0 trace … 5 critical) that contain `text`.
    void filter(int minimumSeverity, const QString& text);
    QString shownLog() const;
    /// Runs the self-test and shows its lines.
    void runSelfTest();
    QString selfTestText() const;
    /// Summarises the recent errors in the background; `summarised` follows.
    void summarise();
    QString errorsCaption() const;
    QString errorsText() const;

signals:
    void summarised();

private:
    QWidget* logTab();
    QWidget* selfTestTab();
    QWidget* errorsTab();

    DeskServices& m_services;
    std::shared_ptr<orvane::ModelRouter> m_router;
    std::filesystem::path m_logFile;
    std::vector<app::LogLine> m_lines;
    quint64 m_generation = 0;
    QComboBox* m_level = nullptr;
    QLineEdit* m_filter = nullptr;
    QPlainTextEdit* m_log = nullptr;
    QPlainTextEdit* m_selfTest = nullptr;
    QLabel* m_errorsCaption = nullptr;
    QTextBrowser* m_errors = nullptr;
};

} // namespace quillon::desktop
