#pragma once

#include "orvane/IntelligenceFeature.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillon::app {

/// One line of the diagnostics log ("2026-11-23T19:40:00+0000 [error] Failed to save …").
struct LogLine {
    /// As written; empty for a line that does not start with a time and a level.
    std::string time;
    /// "trace", "debug", "info", "warning", "error", "critical"; empty when unreadable.
    std::string level;
    std::string message;

    bool operator==(const LogLine&) const = default;

    /// Where the level stands, from 0 (trace) to 5 (critical); 2 (info) when unknown.
    int severity() const;
    std::string text() const;
};

/// Reads the log's text line by line; blank lines are dropped and a line that does not parse is
/// kept whole as its message. Never throws.
std::vector<LogLine> parseLog(std::string_view text);

/// The errors of a log grouped by message: how often each occurred and when it last did.
struct ErrorGroup {
    std::string message;
    int count = 0;
    std::string latest;

    bool operator==(const ErrorGroup&) const = default;
};

/// Error and critical lines grouped by message, the most recent group first.
std::vector<ErrorGroup> groupErrors(const std::vector<LogLine>& lines);

/// What the diagnostics window says about the recent errors: with a model, a short summary and the
/// log lines it rests on; without, the errors grouped with counts and the latest time.
struct ErrorDigest {
    std::string summary;
    std::vector<std::string> quotedLines;
    std::vector<ErrorGroup> groups;

    bool operator==(const ErrorDigest&) const = default;
};

/// Summarises recent error lines. The model must quote at least one of the numbered lines it was
/// given; a summary quoting none (or a line it was not given) is refused for the grouped errors.
class ErrorSummary final : public orvane::IntelligenceFeature<std::vector<LogLine>, ErrorDigest> {
public:
    static constexpr const char* instructions =
        "You help a preacher understand the error lines of a desktop application's log. In two or three plain "
        "sentences, say what went wrong and what they might check, using only the numbered lines below. Then list "
        "the lines your summary rests on, one per line, exactly \"LINE: <number>\". Never invent a cause the lines "
        "do not show.";
    static constexpr const char* generatedCaption = "Summarised by a model from the log lines quoted below.";
    static constexpr const char* fallbackCaption = "The recent errors, grouped by message.";
    static constexpr const char* noErrors = "No errors in the recent log.";
    /// How many of the latest error lines the model is shown.
    static constexpr std::size_t linesShown = 40;

    std::string identifier() const override { return "ErrorSummary"; }
    orvane::IntelligencePolicy policy() const override { return orvane::IntelligencePolicy::onDeviceOnly(); }
    ErrorDigest fallback(const std::vector<LogLine>& lines) const override;
    ErrorDigest generate(const std::vector<LogLine>& lines,
                         orvane::IntelligenceBackendProviding& backend) const override;

    /// The latest error lines, numbered from 1.
    static std::vector<LogLine> recentErrors(const std::vector<LogLine>& lines);
    static std::string prompt(const std::vector<LogLine>& errors);
    /// Throws malformedResponse when the reply quotes no line it was given or says nothing.
    static ErrorDigest digestFrom(const std::string& reply, const std::vector<LogLine>& lines);
};

} // namespace quillon::app
