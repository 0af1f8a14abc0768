#include "export/RichText.h"

#include "export/XmlText.h"

namespace quillon::exports {

std::string RichParagraph::plainText() const {
    std::string text = bullet ? "\xE2\x80\xA2 " : "";
    for (const RichRun& run : runs)
        text += run.text;
    return text;
}

std::string RichText::plainText() const {
    std::string text;
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        if (i > 0)
            text += '\n';
        text += paragraphs[i].plainText();
    }
    return text;
}

RichText RichText::fromPlainText(std::string_view text) {
    RichText rich;
    for (std::string& line : splitLines(text)) {
        RichParagraph paragraph;
        if (!line.empty()) {
            RichRun run;
            run.text = std::move(line);
            paragraph.runs.push_back(std::move(run));
        }
        rich.paragraphs.push_back(std::move(paragraph));
    }
    return rich;
}

} // namespace quillon::exports
