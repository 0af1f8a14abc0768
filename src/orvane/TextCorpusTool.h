#pragma once

#include "orvane/IntelligenceTool.h"

#include <vector>

namespace orvane {

/// A tool over a fixed list of texts: entries are ranked by how many of the query's words they contain.
class TextCorpusTool final : public IntelligenceTool {
public:
    struct Entry {
        std::string source;
        std::string text;
        bool operator==(const Entry&) const = default;
    };

    TextCorpusTool(std::string name, std::string purpose, std::vector<Entry> entries, int maximumPassages);

    std::string name() const override { return m_name; }
    std::string purpose() const override { return m_purpose; }
    const std::vector<Entry>& entries() const { return m_entries; }
    int maximumPassages() const { return m_maximumPassages; }

    /// The entries holding the most query words (folded, at least 2 characters unless all digits,
    /// stop words removed) as substrings of their lower-cased text; ties keep corpus order.
    ToolResult lookup(const std::string& query) const override;

private:
    std::string m_name;
    std::string m_purpose;
    std::vector<Entry> m_entries;
    /// Lower-cased once, since every lookup scans every entry.
    std::vector<std::string> m_lowered;
    int m_maximumPassages;
};

} // namespace orvane
