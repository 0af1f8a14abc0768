#pragma once

#include "export/OutlineParser.h"
#include "export/VerseTextSource.h"
#include "model/DateTime.h"

#include <string>
#include <vector>

namespace quillon::exports {

/// The outcome of one diagnostic check.
struct SelfTestResult {
    /// "Import parser", "Bible loader", "Archive export".
    std::string name;
    bool passed = false;
    /// Why it needs attention; empty when it passed.
    std::string sentence;

    /// "Import parser: OK" or "Import parser: needs attention".
    std::string line() const { return name + (passed ? ": OK" : ": needs attention"); }
};

/// The diagnostics self-test: the import parser reads a known outline, the Bible loader finds
/// John 3:16, and the library archive encodes to some data.
class SelfTest {
public:
    SelfTest(ReferenceRecognizer recognize, const VerseTextSource& verses)
        : m_recognize(std::move(recognize)), m_verses(verses) {}

    std::vector<SelfTestResult> run(model::DateTime now) const;

private:
    ReferenceRecognizer m_recognize;
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
