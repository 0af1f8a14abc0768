#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillon::exports {

/// The parts of an Office Open XML package, held in memory and packed into one ZIP in the order
/// they were added ("[Content_Types].xml" must be added first: some readers look only there).
class OfficePackage {
public:
    void add(std::string path, std::string content);

    const std::vector<std::pair<std::string, std::string>>& parts() const { return m_parts; }

    /// The ZIP bytes as the zip tool packs the folder of parts: a folder entry ("word/") before
    /// the first part inside it, every part deflated at the tool's default level. Throws
    /// ExportError with `failureSentence` when libzip refuses.
    std::string zipBytes(const std::string& failureSentence) const;

private:
    std::vector<std::pair<std::string, std::string>> m_parts;
};

} // namespace quillon::exports
