#include "app/LogDigest.h"

#include "intelligence/FeatureText.h"
#include "orvane/IntelligenceError.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace quillon::app {

namespace {

constexpr std::string_view levels[] = {"trace", "debug", "info", "warning", "error", "critical"};

LogLine parseLine(std::string_view line) {
    const auto open = line.find(" [");
    const auto close = open == std::string_view::npos ? open : line.find("] ", open);
    if (open == std::string_view::npos || close == std::string_view::npos || open < 10)
        return {{}, {}, std::string(line)};
    const std::string_view level = line.substr(open + 2, close - open - 2);
    if (std::find(std::begin(levels), std::end(levels), level) == std::end(levels))
        return {{}, {}, std::string(line)};
    return {std::string(line.substr(0, open)), std::string(level), std::string(line.substr(close + 2))};
}

bool isError(const LogLine& line) {
    return line.level == "error" || line.level == "critical";
}

} // namespace

int LogLine::severity() const {
    for (std::size_t i = 0; i < std::size(levels); ++i)
        if (levels[i] == level)
            return static_cast<int>(i);
    return 2;
}

std::string LogLine::text() const {
    return level.empty() ? message : time + " [" + level + "] " + message;
}

std::vector<LogLine> parseLog(std::string_view text) {
    std::vector<LogLine> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.find_first_not_of(" \t") != std::string_view::npos)
            lines.push_back(parseLine(line));
    }
    return lines;
}

std::vector<ErrorGroup> groupErrors(const std::vector<LogLine>& lines) {
    std::map<std::string, ErrorGroup> byMessage;
    std::map<std::string, std::size_t> lastSeen;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!isError(lines[i]))
            continue;
        ErrorGroup& group = byMessage[lines[i].message];
        group.message = lines[i].message;
        ++group.count;
        group.latest = lines[i].time;
        lastSeen[lines[i].message] = i;
    }
    std::vector<ErrorGroup> groups;
    for (auto& [message, group] : byMessage)
        groups.push_back(std::move(group));
    std::sort(groups.begin(), groups.end(), [&lastSeen](const ErrorGroup& a, const ErrorGroup& b) {
        return lastSeen[a.message] > lastSeen[b.message];
    });
    return groups;
}

std::vector<LogLine> ErrorSummary::recentErrors(const std::vector<LogLine>& lines) {
    std::vector<LogLine> errors;
    for (const LogLine& line : lines)
        if (isError(line))
            errors.push_back(line);
    if (errors.size() > linesShown)
        errors.erase(errors.begin(), errors.end() - static_cast<std::ptrdiff_t>(linesShown));
    return errors;
}

ErrorDigest ErrorSummary::fallback(const std::vector<LogLine>& lines) const {
    return {{}, {}, groupErrors(lines)};
}

std::string ErrorSummary::prompt(const std::vector<LogLine>& errors) {
    std::string text;
    for (std::size_t i = 0; i < errors.size(); ++i)
        text += fmt::format("{}. {}\n", i + 1, errors[i].text());
    return text;
}

ErrorDigest ErrorSummary::digestFrom(const std::string& reply, const std::vector<LogLine>& lines) {
    const std::vector<LogLine> errors = recentErrors(lines);
    ErrorDigest digest{{}, {}, groupErrors(lines)};
    for (const std::string& line : intelligence::featureText::lines(reply)) {
        if (!line.starts_with("LINE:")) {
            digest.summary += (digest.summary.empty() ? "" : " ") + line;
            continue;
        }
        const std::string number = intelligence::featureText::trimmed(std::string_view(line).substr(5));
        if (number.empty() || number.size() > 3 || number.find_first_not_of("0123456789") != std::string::npos)
            continue;
        const std::size_t index = std::stoul(number);
        if (index >= 1 && index <= errors.size())
            digest.quotedLines.push_back(errors[index - 1].text());
    }
    if (digest.summary.empty() || digest.quotedLines.empty())
        throw orvane::IntelligenceError::malformedResponse("The summary quoted none of the log lines it was given.");
    return digest;
}

ErrorDigest ErrorSummary::generate(const std::vector<LogLine>& lines,
                                   orvane::IntelligenceBackendProviding& backend) const {
    const std::vector<LogLine> errors = recentErrors(lines);
    if (errors.empty())
        throw orvane::IntelligenceError::malformedResponse("There are no errors to summarise.");
    return digestFrom(backend.respond({instructions, prompt(errors), {}}).text, lines);
}

} // namespace quillon::app
