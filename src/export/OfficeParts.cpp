#include "export/OfficeParts.h"

#include "export/XmlText.h"

#include <cctype>

namespace quillon::exports::office {

std::string packageRelationships(std::string_view mainPart) {
    std::string xml(declaration);
    xml += "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">\n";
    xml += "  <Relationship Id=\"rId1\" Type=\"";
    xml += officeDocumentRelationship;
    xml += "\" Target=\"";
    xml += mainPart;
    xml += "\"/>\n";
    xml += "  <Relationship Id=\"rId2\" "
           "Type=\"http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties\" "
           "Target=\"docProps/core.xml\"/>\n";
    xml += "  <Relationship Id=\"rId3\" "
           "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/extended-properties\" "
           "Target=\"docProps/app.xml\"/>\n";
    xml += "</Relationships>\n";
    return xml;
}

std::string coreProperties(std::string_view title) {
    std::string xml(declaration);
    xml += "<cp:coreProperties "
           "xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
           "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
           "xmlns:dcmitype=\"http://purl.org/dc/dcmitype/\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
    xml += "  <dc:title>" + escapeXml(title) + "</dc:title>\n";
    xml += "  <dc:creator>Quillon</dc:creator>\n";
    xml += "  <cp:lastModifiedBy>Quillon</cp:lastModifiedBy>\n";
    xml += "</cp:coreProperties>\n";
    return xml;
}

std::string hexColour(std::string_view value) {
    if (!value.empty() && value.front() == '#')
        value.remove_prefix(1);
    if (value.size() == 8) // RRGGBBAA: the parts have no alpha
        value.remove_suffix(2);
    if (value.size() != 6)
        return {};
    std::string colour;
    for (char c : value) {
        if (!std::isxdigit(static_cast<unsigned char>(c)))
            return {};
        colour += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return colour;
}

} // namespace quillon::exports::office
