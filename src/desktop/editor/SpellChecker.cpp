#include "desktop/editor/SpellChecker.h"

#include "platform/AtomicFile.h"
#include "platform/FileError.h"
#include "scripture/BibleLoader.h"

#include <hunspell/hunspell.hxx>

#include <QFileInfo>

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace quillon::desktop {

namespace {

const QString defaultFolder = QStringLiteral("/usr/share/hunspell");

bool isWordCharacter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80 || c == '\'';
}

/// Adds each word of two letters or more in `text` to `words` (views into `text`).
void addWords(std::string_view text, std::unordered_set<std::string_view>& words) {
    std::size_t start = 0;
    while (start < text.size()) {
        while (start < text.size() && !isWordCharacter(static_cast<unsigned char>(text[start])))
            ++start;
        std::size_t end = start;
        while (end < text.size() && isWordCharacter(static_cast<unsigned char>(text[end])))
            ++end;
        if (end > start + 1)
            words.emplace(text.substr(start, end - start));
        start = end;
    }
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

SpellChecker::SpellChecker(NoDictionary) {}

std::unique_ptr<SpellChecker> SpellChecker::withoutDictionary() {
    return std::unique_ptr<SpellChecker>(new SpellChecker(NoDictionary{}));
}

SpellChecker::~SpellChecker() = default;

bool SpellChecker::isCorrect(const QString& word) const {
    constexpr qsizetype knownLimit = 50'000;
    if (!m_hunspell || word.isEmpty())
        return true;
    if (auto found = m_known.constFind(word); found != m_known.constEnd())
        return *found;
    if (m_known.size() >= knownLimit)
        m_known.clear();
    const bool correct = m_hunspell->spell(word.toStdString());
    m_known.insert(word, correct);
    return correct;
}

void SpellChecker::take(SpellChecker& opened) {
    m_hunspell = std::move(opened.m_hunspell);
    m_known.clear();
    opened.m_known.clear();
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
    m_known.clear();
}

std::set<std::string> bibleVocabulary(scripture::BibleLoader& loader) {
    std::set<std::string> words;
    for (model::BibleVersion version : model::allBibleVersions) {
        auto file = loader.resourceBundle().fileFor(version);
        if (!file)
            continue;
        // Read the text file as it is rather than through the loader: a version the preacher
        // never opens then costs no memory once its words are known.
        std::string bytes;
        try {
            bytes = platform::readFile(*file);
        } catch (const platform::FileError&) {
            continue;
        }
        std::unordered_set<std::string_view> seen;
        std::string_view rest(bytes);
        while (!rest.empty()) {
            const std::size_t newline = std::min(rest.find('\n'), rest.size());
            std::string_view line = rest.substr(0, newline);
            rest.remove_prefix(std::min(newline + 1, rest.size()));
            const std::size_t bar = line.find('|');
            if (bar != std::string_view::npos)
                addWords(line.substr(bar + 1), seen);
        }
        for (std::string_view word : seen)
            words.emplace(word);
    }
    return words;
}

} // namespace quillon::desktop
