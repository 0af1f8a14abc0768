#pragma once

#include "scripture/ScriptureReference.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace quillon::intelligence {

/// One commentary work of the reference library.
struct Commentary {
    /// The SWORD module name ("MHCC").
    std::string moduleName;
    /// The name the model must cite it by ("Matthew Henry's Concise Commentary").
    std::string name;
    /// True when each note is stored under the first verse of a section and covers the verses up to
    /// the next note; false when notes belong to the verses they are stored under (and those linked to it).
    bool notesRunToTheNext = false;

    bool operator==(const Commentary&) const = default;
};

/// One entry of a commentary: the verses it covers, its label ("Romans 8:28-31") and its plain text.
struct CommentaryEntry {
    int chapter = 0;
    int firstVerse = 0;
    int lastVerse = 0;
    std::string label;
    std::string text;

    bool operator==(const CommentaryEntry&) const = default;
};

/// The SWORD commentary modules on this computer, read through libsword: the public-domain works
/// the distribution ships (Matthew Henry's Concise, Scofield, Spurgeon's Treasury of David) and any
/// commentary the user installed. Entries are held in memory per chapter once read. Thread-safe.
class CommentaryLibrary {
public:
    /// The SWORD folders searched by default: the system's, the user's ~/.sword and Quillon's own
    /// "sword" folder in its data folder; missing folders are skipped.
    static std::vector<std::filesystem::path> defaultSearchPaths();

    explicit CommentaryLibrary(std::vector<std::filesystem::path> searchPaths = defaultSearchPaths());
    ~CommentaryLibrary();
    CommentaryLibrary(const CommentaryLibrary&) = delete;
    CommentaryLibrary& operator=(const CommentaryLibrary&) = delete;

    /// The built-in works that are installed, in their fixed order, then the user's other
    /// commentaries by module name.
    const std::vector<Commentary>& commentaries() const { return m_commentaries; }

    /// The entries of `commentary` whose verses overlap `reference` (a whole chapter when it names
    /// no verses), in verse order. Unknown modules and passages without notes give an empty list.
    std::vector<CommentaryEntry> entries(const Commentary& commentary,
                                         const scripture::ScriptureReference& reference) const;

private:
    struct Sword;
    const std::vector<CommentaryEntry>& chapterEntries(const Commentary& commentary, const scripture::BibleBook& book,
                                                       int chapter) const;

    std::unique_ptr<Sword> m_sword;
    std::vector<Commentary> m_commentaries;
    mutable std::mutex m_mutex;
    mutable std::map<std::tuple<std::string, std::int64_t, int>, std::vector<CommentaryEntry>> m_chapters;
};

} // namespace quillon::intelligence
