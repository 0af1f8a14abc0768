#pragma once

#include <string>
#include <string_view>

namespace quillon::exports::office {

/// Every part starts with this declaration and a newline.
inline constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

inline constexpr std::string_view relationshipsContentType = "application/vnd.openxmlformats-package.relationships+xml";
inline constexpr std::string_view officeDocumentRelationship =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";

/// "_rels/.rels": rId1 the main part, rId2 core properties, rId3 extended properties.
std::string packageRelationships(std::string_view mainPart);
/// "docProps/core.xml" with the escaped title; creator and last editor "Quillon".
std::string coreProperties(std::string_view title);

/// A colour written into a part: six hexadecimal digits, upper case, without "#"; empty when the
/// sermon's value is not a colour.
std::string hexColour(std::string_view value);

} // namespace quillon::exports::office
