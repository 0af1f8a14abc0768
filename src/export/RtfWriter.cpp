#include "export/RtfWriter.h"

#include "export/XmlText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace quillon::exports {

namespace {

/// Appends `text` with RTF's three special characters escaped and everything outside ASCII as
/// \uN (signed 16-bit, surrogate pairs above U+FFFF) followed by "?" for readers without Unicode.
void appendEscaped(std::string& rtf, std::string_view text) {
    const std::string clean = validUtf8(text);
    std::size_t i = 0;
    while (i < clean.size()) {
        const auto byte = static_cast<unsigned char>(clean[i]);
        char32_t codePoint = byte;
        std::size_t length = 1;
        if (byte >= 0xF0) {
            codePoint = byte & 0x07;
            length = 4;
        } else if (byte >= 0xE0) {
            codePoint = byte & 0x0F;
            length = 3;
        } else if (byte >= 0xC0) {
            codePoint = byte & 0x1F;
            length = 2;
        }
        for (std::size_t k = 1; k < length && i + k < clean.size(); ++k)
            codePoint = (codePoint << 6) | (static_cast<unsigned char>(clean[i + k]) & 0x3F);
        i += length;

        switch (codePoint) {
        case '\\':
        case '{':
        case '}':
            rtf += '\\';
            rtf += static_cast<char>(codePoint);
            continue;
        case '\t':
            rtf += "\\tab ";
            continue;
        case '\n':
            rtf += "\\line ";
            continue;
        case '\r':
            continue;
        default:
            break;
        }
        if (codePoint < 0x20)
            continue;
        if (codePoint < 0x80) {
            rtf += static_cast<char>(codePoint);
            continue;
        }
        const auto unicode = [&](unsigned value) {
            rtf += "\\u" + std::to_string(static_cast<int>(static_cast<std::int16_t>(value))) + "?";
        };
        if (codePoint > 0xFFFF) {
            const char32_t offset = codePoint - 0x10000;
            unicode(0xD800 + (offset >> 10));
            unicode(0xDC00 + (offset & 0x3FF));
        } else {
            unicode(codePoint);
        }
    }
}

int colourComponent(std::string_view hex, std::size_t at) {
    return static_cast<int>(std::strtol(std::string(hex.substr(at, 2)).c_str(), nullptr, 16));
}

} // namespace

std::string RtfWriter::write(const RichText& text) {
    std::vector<std::string> colours;
    for (const auto& paragraph : text.paragraphs)
        for (const auto& run : paragraph.runs)
            if (run.colorHex.size() == 6 && std::find(colours.begin(), colours.end(), run.colorHex) == colours.end())
                colours.push_back(run.colorHex);

    std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}}\n";
    rtf += "{\\colortbl;";
    for (const auto& colour : colours)
        rtf += "\\red" + std::to_string(colourComponent(colour, 0)) + "\\green" +
               std::to_string(colourComponent(colour, 2)) + "\\blue" + std::to_string(colourComponent(colour, 4)) + ";";
    rtf += "}\n\\f0\n";

    for (const auto& paragraph : text.paragraphs) {
        rtf += "\\pard";
        if (paragraph.bullet)
            rtf += "\\li" + std::to_string(paragraph.leftIndent + 360) + "\\fi-360 {\\listtext\\'95\\tab}";
        else if (paragraph.leftIndent > 0)
            rtf += "\\li" + std::to_string(paragraph.leftIndent) + " ";
        else
            rtf += " ";
        for (const auto& run : paragraph.runs) {
            std::string format;
            if (run.bold)
                format += "\\b";
            if (run.italic)
                format += "\\i";
            if (run.underline)
                format += "\\ul";
            if (auto found = std::find(colours.begin(), colours.end(), run.colorHex); found != colours.end())
                format += "\\cf" + std::to_string(found - colours.begin() + 1);
            if (run.fontSize > 0)
                format += "\\fs" + std::to_string(static_cast<int>(std::lround(run.fontSize * 2)));
            if (!run.link.empty()) {
                rtf += "{\\field{\\*\\fldinst{HYPERLINK \"";
                appendEscaped(rtf, run.link);
                rtf += "\"}}{\\fldrslt{";
            } else {
                rtf += '{';
            }
            if (!format.empty())
                rtf += format + ' ';
            appendEscaped(rtf, run.text);
            rtf += run.link.empty() ? "}" : "}}}";
        }
        rtf += "\\par\n";
    }
    rtf += "}\n";
    return rtf;
}

} // namespace quillon::exports
