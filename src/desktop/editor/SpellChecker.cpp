#include "desktop/editor/SpellChecker.h"

#include "scripture/BibleLoader.h"

#include <hunspell/hunspell.hxx>

#include <QFileInfo>

#include <string_view>
#include <unordered_set>
#include <vector>

namespace quillon::desktop {

namespace {

const QString defaultFolder = QStringLiteral("/usr/share/hunspell");

bool isWordCharacter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80 || c == '\'';
}

} // namespace

SpellChecker::SpellChecker(const QString& language, const QString& folder) {
    QString base = (folder.isEmpty() ? defaultFolder : folder) + u'/' + language;
    QString affix = base + QStringLiteral(".aff");
    QString dictionary = base + QStringLiteral(".dic");
    if (!QFileInfo::exists(affix) || !QFileInfo::exists(dictionary))
        return;
    m_hunspell = std::make_unique<Hunspell>(affix.toLocal8Bit().constData(), dictionary.toLocal8Bit().constData());
}

SpellChecker::~SpellChecker() = default;

bool SpellChecker::isCorrect(const QString& word) const {
    if (!m_hunspell || word.isEmpty())
        return true;
    return m_hunspell->spell(word.toStdString());
}

QStringList SpellChecker::suggestions(const QString& word) const {
    QStringList result;
    if (!m_hunspell)
        return result;
    for (const std::string& suggestion : m_hunspell->suggest(word.toStdString()))
        result << QString::fromStdString(suggestion);
    return result;
}

void SpellChecker::accept(const std::set<std::string>& words) {
    if (!m_hunspell)
        return;
    for (const std::string& word : words)
        m_hunspell->add(word);
}

std::set<std::string> bibleVocabulary(scripture::BibleLoader& loader) {
    std::unordered_set<std::string_view> seen;
    std::vector<std::shared_ptr<const scripture::VerseDictionary>> kept;
    for (model::BibleVersion version : model::allBibleVersions) {
        if (!loader.isAvailable(version))
            continue;
        std::shared_ptr<const scripture::VerseDictionary> verses = loader.loadVerses(version);
        kept.push_back(verses);
        for (const auto& [key, verse] : *verses) {
            const std::string& text = verse.text;
            std::size_t start = 0;
            while (start < text.size()) {
                while (start < text.size() && !isWordCharacter(static_cast<unsigned char>(text[start])))
                    ++start;
                std::size_t end = start;
                while (end < text.size() && isWordCharacter(static_cast<unsigned char>(text[end])))
                    ++end;
                if (end > start + 1)
                    seen.emplace(std::string_view(text).substr(start, end - start));
                start = end;
            }
        }
    }
    return {seen.begin(), seen.end()};
}

} // namespace quillon::desktop
