#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <set>
#include <string>

class Hunspell;

namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

/// Hunspell with the American English dictionary (UTF-8), plus the words of the installed Bible texts
/// (names and places such as "Melchizedek" or "Capernaum" are spelt as the Bible spells them).
/// Without a dictionary every word counts as correct. One thread at a time: a checker may be opened
/// on a worker and handed to the interface thread with take().
class SpellChecker {
public:
    /// Opens the dictionary in `folder` ("/usr/share/hunspell" when empty) named `language`.
    explicit SpellChecker(const QString& language = QStringLiteral("en_US"), const QString& folder = {});
    /// A checker without a dictionary yet, for editors made before it is read.
    static std::unique_ptr<SpellChecker> withoutDictionary();
    ~SpellChecker();
    SpellChecker(const SpellChecker&) = delete;
    SpellChecker& operator=(const SpellChecker&) = delete;

    bool isAvailable() const { return m_hunspell != nullptr; }
    bool isCorrect(const QString& word) const;
    QStringList suggestions(const QString& word) const;
    /// Accepts each word as correctly spelt from now on.
    void accept(const std::set<std::string>& words);
    /// Takes over the dictionary and accepted words of `opened`, which is left without any.
    void take(SpellChecker& opened);

private:
    struct NoDictionary {};
    explicit SpellChecker(NoDictionary);

    std::unique_ptr<Hunspell> m_hunspell;
    /// Words already looked up: the highlighter checks a whole paragraph on every keystroke.
    mutable QHash<QString, bool> m_known;
};

/// Every word of the Bible texts on this computer, for SpellChecker::accept, read from their files
/// without keeping them in the loader; runs off the interface thread.
std::set<std::string> bibleVocabulary(scripture::BibleLoader& loader);

} // namespace quillon::desktop
