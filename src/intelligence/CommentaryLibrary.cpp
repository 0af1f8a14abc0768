#include "intelligence/CommentaryLibrary.h"

#include "platform/Paths.h"

#include <localemgr.h>
#include <swlog.h>
#include <swmgr.h>
#include <swmodule.h>
#include <versekey.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace quillon::intelligence {

namespace fs = std::filesystem;

namespace {

/// The built-in works in their fixed order, with the names the model must cite them by.
struct BuiltIn {
    const char* moduleName;
    const char* name;
    /// Henry and Spurgeon write one note per section, stored under its first verse, that runs until
    /// the next note; Scofield annotates single verses.
    bool notesRunToTheNext;
};
constexpr BuiltIn builtInCommentaries[] = {
    {"MHCC", "Matthew Henry's Concise Commentary", true},
    {"Scofield", "Scofield Reference Notes", false},
    {"TDavid", "Spurgeon's Treasury of David", true},
};

/// An entry that runs over whole chapters (Spurgeon's psalms) would swamp a prompt; one passage
/// keeps its opening, cut at a word.
constexpr std::size_t longestPassage = 9000;

std::string equalsIgnoringCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// Decides the compressed-index layout from the index files themselves: zCom entries are 10
/// bytes, zCom4 entries 12. Some distributed configurations name the wrong one (Matthew Henry's
/// Concise 2.0 says zCom4 over a 10-byte index), which makes libsword read misplaced text.
std::string detectedCompressedDriver(const fs::path& dataFolder, const std::string& declared) {
    bool fitsTen = false;
    bool fitsTwelve = false;
    bool decided = false;
    for (const char* testament : {"ot", "nt"}) {
        for (char block : {'b', 'c', 'v'}) {
            std::error_code error;
            fs::path index = dataFolder / (std::string(testament) + "." + block + "zv");
            std::uintmax_t size = fs::file_size(index, error);
            if (error || size == 0)
                continue;
            bool ten = size % 10 == 0;
            bool twelve = size % 12 == 0;
            if (ten != twelve) {
                fitsTen = ten;
                fitsTwelve = twelve;
                decided = true;
            }
        }
    }
    if (!decided)
        return declared;
    if (fitsTen)
        return "zCom";
    if (fitsTwelve)
        return "zCom4";
    return declared;
}

/// Collapses the blanks and line breaks the plain-text filter leaves and drops the asterisks it
/// uses for bold and italic.
std::string plainText(const std::string& stripped) {
    std::string text;
    bool pendingBlank = false;
    for (char c : stripped) {
        if (c == '*' || std::isspace(static_cast<unsigned char>(c))) {
            pendingBlank = !text.empty();
            continue;
        }
        if (pendingBlank)
            text += ' ';
        pendingBlank = false;
        text += c;
    }
    if (text.size() > longestPassage) {
        std::size_t cut = text.rfind(' ', longestPassage);
        text.resize(cut == std::string::npos ? longestPassage : cut);
        // Never leave a broken UTF-8 sequence at the cut.
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
            text.pop_back();
        if (!text.empty() && static_cast<unsigned char>(text.back()) >= 0xC0)
            text.pop_back();
        text += " …";
    }
    return text;
}

/// libsword's locale manager reads every locale it finds (tens of megabytes) the first time a verse
/// key is made. Passages are addressed here by their English book names, which its built-in locale
/// knows, so it is given a manager over a folder that does not exist and holds that locale alone.
void useOnlyTheBuiltInLocale() {
    static std::once_flag once;
    std::call_once(once, [] { sword::LocaleMgr::setSystemLocaleMgr(new sword::LocaleMgr("/nonexistent/")); });
}

} // namespace

struct CommentaryLibrary::Sword {
    /// libsword's manager, taught to correct a wrongly declared index layout as modules are created.
    class Manager final : public sword::SWMgr {
    public:
        explicit Manager(const std::string& path) : sword::SWMgr(path.c_str(), false, nullptr, false, false) {}

        sword::SWModule* createModule(const char* name, const char* driver, sword::ConfigEntMap& section) override {
            std::string declared = driver ? driver : "";
            std::string lower = equalsIgnoringCase(declared);
            if (lower == "zcom" || lower == "zcom4") {
                auto found = section.find("DataPath");
                if (found != section.end()) {
                    std::string dataPath = found->second.c_str();
                    if (dataPath.starts_with("./"))
                        dataPath.erase(0, 2);
                    fs::path folder = fs::path(prefixPath ? prefixPath : "") / dataPath;
                    std::string chosen = detectedCompressedDriver(folder, declared);
                    return sword::SWMgr::createModule(name, chosen.c_str(), section);
                }
            }
            return sword::SWMgr::createModule(name, driver, section);
        }
    };

    std::unique_ptr<Manager> manager;
};

std::vector<fs::path> CommentaryLibrary::defaultSearchPaths() {
    std::vector<fs::path> paths = {"/usr/share/sword"};
    if (const char* home = std::getenv("HOME"); home && *home)
        paths.push_back(fs::path(home) / ".sword");
    paths.push_back(platform::applicationDataFolder() / "sword");
    return paths;
}

CommentaryLibrary::CommentaryLibrary(std::vector<fs::path> searchPaths) : m_sword(std::make_unique<Sword>()) {
    // libsword reports missing folders and modules on stderr; this program reports what it can use.
    sword::SWLog::getSystemLog()->setLogLevel(sword::SWLog::LOG_ERROR - 1);
    useOnlyTheBuiltInLocale();
    for (const fs::path& path : searchPaths) {
        std::error_code error;
        if (!fs::is_directory(path / "mods.d", error))
            continue;
        std::string folder = path.string() + "/";
        if (!m_sword->manager) {
            m_sword->manager = std::make_unique<Sword::Manager>(folder);
            m_sword->manager->load();
        } else {
            m_sword->manager->augmentModules(folder.c_str());
        }
    }
    if (!m_sword->manager)
        return;

    std::vector<Commentary> others;
    for (const auto& [name, module] : m_sword->manager->getModules()) {
        if (std::strcmp(module->getType(), sword::SWMgr::MODTYPE_COMMENTARIES) != 0)
            continue;
        std::string moduleName = name.c_str();
        bool builtIn = std::any_of(std::begin(builtInCommentaries), std::end(builtInCommentaries),
                                   [&](const BuiltIn& entry) { return moduleName == entry.moduleName; });
        if (!builtIn) {
            const char* description = module->getDescription();
            others.push_back({moduleName, description && *description ? description : moduleName, false});
        }
    }
    for (const BuiltIn& entry : builtInCommentaries)
        if (m_sword->manager->getModule(entry.moduleName))
            m_commentaries.push_back({entry.moduleName, entry.name, entry.notesRunToTheNext});
    std::sort(others.begin(), others.end(),
              [](const Commentary& a, const Commentary& b) { return a.moduleName < b.moduleName; });
    m_commentaries.insert(m_commentaries.end(), others.begin(), others.end());
}

CommentaryLibrary::~CommentaryLibrary() = default;

const std::vector<CommentaryEntry>&
CommentaryLibrary::chapterEntries(const Commentary& commentary, const scripture::BibleBook& book, int chapter) const {
    const std::string& moduleName = commentary.moduleName;
    auto key = std::make_tuple(moduleName, book.id, chapter);
    auto cached = m_chapters.find(key);
    if (cached != m_chapters.end())
        return cached->second;

    std::vector<CommentaryEntry>& entries = m_chapters[key];
    sword::SWModule* module = m_sword->manager ? m_sword->manager->getModule(moduleName.c_str()) : nullptr;
    if (!module)
        return entries;
    std::unique_ptr<sword::SWKey> key0(module->createKey());
    auto* verse = dynamic_cast<sword::VerseKey*>(key0.get());
    if (!verse)
        return entries;
    verse->setIntros(false);
    verse->setAutoNormalize(false);
    verse->setText((book.name + " " + std::to_string(chapter) + ":1").c_str());
    if (verse->popError() || verse->getChapter() != chapter)
        return entries;
    int lastVerse = verse->getVerseMax();

    std::unique_ptr<sword::SWKey> previousKey;
    for (int number = 1; number <= lastVerse; ++number) {
        verse->setVerse(number);
        if (!module->hasEntry(verse))
            continue;
        // Verses linked to the one before share its entry: they extend it rather than start one.
        if (previousKey && module->isLinked(previousKey.get(), verse)) {
            previousKey.reset(verse->clone());
            if (!entries.empty() && entries.back().lastVerse == number - 1)
                entries.back().lastVerse = number;
            continue;
        }
        module->setKey(*verse);
        std::string text = plainText(module->stripText());
        previousKey.reset(verse->clone());
        if (text.empty())
            continue;
        entries.push_back({chapter, number, number, {}, std::move(text)});
    }
    for (std::size_t position = 0; position < entries.size(); ++position) {
        CommentaryEntry& entry = entries[position];
        // A section note runs to the verse before the next note, or to the end of the chapter; a
        // verse note covers its verse and the verses linked to it.
        if (commentary.notesRunToTheNext)
            entry.lastVerse = position + 1 < entries.size() ? entries[position + 1].firstVerse - 1 : lastVerse;
        entry.label = book.name + " " + std::to_string(chapter) + ":" + std::to_string(entry.firstVerse);
        if (entry.lastVerse > entry.firstVerse)
            entry.label += "-" + std::to_string(entry.lastVerse);
    }
    return entries;
}

std::vector<CommentaryEntry> CommentaryLibrary::entries(const Commentary& commentary,
                                                        const scripture::ScriptureReference& reference) const {
    std::lock_guard lock(m_mutex);
    std::vector<CommentaryEntry> found;
    for (const CommentaryEntry& entry : chapterEntries(commentary, reference.book, reference.chapter)) {
        bool overlaps = !reference.verses ||
                        std::any_of(reference.verses->begin(), reference.verses->end(),
                                    [&](int verse) { return verse >= entry.firstVerse && verse <= entry.lastVerse; });
        if (overlaps)
            found.push_back(entry);
    }
    return found;
}

} // namespace quillon::intelligence
