#include "export/ScriptureText.h"

#include "model/BibleVersion.h"

namespace quillon::exports {

std::string referenceText(const model::SermonScripture& scripture) {
    std::string text = scripture.bookName.empty() ? std::string("Unknown book") : scripture.bookName;
    text += " " + std::to_string(scripture.chapter);
    if (scripture.startVerse <= 0)
        return text;
    text += ":" + std::to_string(scripture.startVerse);
    if (scripture.endVerse > scripture.startVerse)
        text += "-" + std::to_string(scripture.endVerse);
    return text;
}

std::string referenceWithVersion(const model::SermonScripture& scripture) {
    return referenceText(scripture) + " (" + std::string(model::rawValue(scripture.version)) + ")";
}

std::string passageOrNote(const model::SermonScripture& scripture, const VerseTextSource& verses) {
    const PassageText passage = verses.passage(scripture);
    const std::string version(model::rawValue(scripture.version));
    if (!passage.versionAvailable)
        return "The " + version + " text is not available in this Bible library.";
    if (passage.text.empty())
        return referenceText(scripture) + " was not found in the " + version + " text.";
    return passage.text;
}

} // namespace quillon::exports
