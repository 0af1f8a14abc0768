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

    /// The ZIP bytes, deflate-compressed like the zip tool's default. Throws ExportError with
    /// `failureSentence` when libzip refuses.
    std::string zipBytes(const std::string& failureSentence) const;

private:
    std::vector<std::pair<std::string, std::string>> m_parts;
};

} // namespace quillon::exports
