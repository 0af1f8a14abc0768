// Outline and metadata editing of SermonNotesViewModel: each operation is one store update.

#include "app/SermonNotesViewModel.h"

#include "app/ControllerTexts.h"
#include "app/OutlineEditing.h"
#include "app/TextRules.h"
#include "export/OutlineParser.h"
#include "orvane/UnicodeText.h"
#include "scripture/ReferenceParser.h"

#include <algorithm>
#include <cctype>

namespace quillon::app {

namespace {

/// "#1A2B3C" from "1a2b3c" or "#1a2b3c"; nothing for anything else.
std::optional<std::string> normalisedColour(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('#'))
        text.remove_prefix(1);
    if (text.size() != 6 ||
        !std::all_of(text.begin(), text.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); }))
        return std::nullopt;
    std::string colour = "#";
    for (char c : text)
        colour += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return colour;
}

} // namespace

bool SermonNotesViewModel::failEdit(const std::string& sentence) {
    post({"Edit Failed", sentence, StatusMessage::Kind::alert});
    return false;
}

bool SermonNotesViewModel::edit(const model::Uuid& sermonId, std::string_view doneTitle,
                                const std::function<bool(model::SermonNote&)>& change, const std::string& note) {
    const model::SermonNote* stored = m_store.sermon(sermonId);
    if (!stored)
        return failEdit("Quillon could not find that sermon; it may have been moved to Trash.");
    model::SermonNote copy = *stored;
    if (!change(copy))
        return false;
    const bool saved = m_store.update(copy);
    notifySermon(sermonId);
    // A failed write never interrupts the edit, but the toast must not claim a save.
    const std::string detail = !saved ? notSavedDetail(copy.title) : note.empty() ? m_store.lastSyncStatus() : note;
    post({std::string(doneTitle), detail, StatusMessage::Kind::toast});
    return true;
}

std::optional<model::Uuid> SermonNotesViewModel::addTopic(const model::Uuid& sermonId, const std::string& title) {
    if (!isValidText(title) || trimmed(title).empty()) {
        failEdit("A topic needs a title in plain text.");
        return std::nullopt;
    }
    model::SermonTopic topic;
    topic.id = model::Uuid::random();
    topic.title = std::string(trimmed(title));
    const bool added = edit(sermonId, "Topic Added", [&](model::SermonNote& sermon) {
        sermon.topics.push_back(topic);
        renumber(sermon);
        return true;
    });
    return added ? std::optional(topic.id) : std::nullopt;
}

std::optional<model::Uuid> SermonNotesViewModel::addSubTopic(const model::Uuid& sermonId, const model::Uuid& topicId,
                                                             const std::string& title) {
    if (!isValidText(title) || trimmed(title).empty()) {
        failEdit("A subtopic needs a title in plain text.");
        return std::nullopt;
    }
    model::SermonSubTopic subTopic;
    subTopic.id = model::Uuid::random();
    subTopic.title = std::string(trimmed(title));
    const bool added = edit(sermonId, "Subtopic Added", [&](model::SermonNote& sermon) {
        model::SermonTopic* topic = findTopic(sermon, topicId);
        if (!topic)
            return failEdit("Quillon could not find that topic in " + curlyQuoted(sermon.title) + ".");
        topic->subTopics.push_back(subTopic);
        renumber(sermon);
        return true;
    });
    return added ? std::optional(subTopic.id) : std::nullopt;
}

std::optional<model::Uuid> SermonNotesViewModel::addScripture(const model::Uuid& sermonId,
                                                              const model::Uuid& subTopicId, std::string_view typed,
                                                              std::optional<model::BibleVersion> version) {
    const scripture::ReferenceReading reading =
        isValidText(typed) ? scripture::readReference(typed) : scripture::ReferenceReading{};
    const auto& reference = reading.reference;
    if (!reference) {
        failEdit("Quillon could not read " + curlyQuoted(orvane::UnicodeText::repaired(trimmed(typed))) +
                 " as a scripture reference. Type a book, a chapter and verses, for example “John 3:16-18”.");
        return std::nullopt;
    }
    // A version chosen in the sheet wins over a tag typed with the reference; a tag naming a
    // translation Quillon lacks still attaches the passage, and says in which version.
    if (!version)
        version = reading.version;
    model::SermonScripture scripture;
    scripture.id = model::Uuid::random();
    scripture.bookName = reference->book.name;
    scripture.chapter = reference->chapter;
    // A whole chapter is held as its first to last verse: the record has no form without verses.
    scripture.startVerse = reference->firstVerse().value_or(1);
    scripture.endVerse = reference->lastVerse().value_or(std::max(1, reference->book.verseCount(reference->chapter)));
    scripture.version = version.value_or(model::BibleVersion::kjv);
    std::string note;
    if (!reading.translation.empty() && !reading.version)
        note = exports::OutlineParser::missingVersionNote(reading.translation, scriptureReferenceText(scripture),
                                                          scripture.version);
    const bool added = edit(
        sermonId, "Scripture Added",
        [&](model::SermonNote& sermon) {
            model::SermonSubTopic* subTopic = findSubTopic(sermon, subTopicId);
            if (!subTopic)
                return failEdit("Quillon could not find that subtopic in " + curlyQuoted(sermon.title) + ".");
            subTopic->scriptures.push_back(scripture);
            renumber(sermon);
            return true;
        },
        note);
    return added ? std::optional(scripture.id) : std::nullopt;
}

bool SermonNotesViewModel::renameOutlineItem(const model::Uuid& sermonId, const model::Uuid& itemId,
                                             const std::string& title) {
    if (!isValidText(title) || trimmed(title).empty())
        return failEdit("A title cannot be empty and must be plain text.");
    return edit(sermonId, "Renamed", [&](model::SermonNote& sermon) {
        if (auto* topic = findTopic(sermon, itemId)) {
            topic->title = std::string(trimmed(title));
            return true;
        }
        if (auto* subTopic = findSubTopic(sermon, itemId)) {
            subTopic->title = std::string(trimmed(title));
            return true;
        }
        return failEdit("Quillon could not find that topic or subtopic in " + curlyQuoted(sermon.title) + ".");
    });
}

bool SermonNotesViewModel::moveTopic(const model::Uuid& sermonId, const model::Uuid& topicId, std::size_t to) {
    return edit(sermonId, "Moved", [&](model::SermonNote& sermon) {
        return app::moveTopic(sermon, topicId, to) ||
               failEdit("Quillon could not find that topic in " + curlyQuoted(sermon.title) + ".");
    });
}

bool SermonNotesViewModel::moveSubTopic(const model::Uuid& sermonId, const model::Uuid& subTopicId, std::size_t to,
                                        std::optional<model::Uuid> toTopic) {
    return edit(sermonId, "Moved", [&](model::SermonNote& sermon) {
        return app::moveSubTopic(sermon, subTopicId, to, toTopic) ||
               failEdit("Quillon could not find that subtopic or its new topic in " + curlyQuoted(sermon.title) + ".");
    });
}

bool SermonNotesViewModel::moveScripture(const model::Uuid& sermonId, const model::Uuid& scriptureId, std::size_t to,
                                         std::optional<model::Uuid> toSubTopic) {
    return edit(sermonId, "Moved", [&](model::SermonNote& sermon) {
        return app::moveScripture(sermon, scriptureId, to, toSubTopic) ||
               failEdit("Quillon could not find that scripture or its new subtopic in " + curlyQuoted(sermon.title) +
                        ".");
    });
}

bool SermonNotesViewModel::setDetails(const model::Uuid& sermonId, const model::Uuid& itemId, const std::string& text,
                                      std::optional<std::string> rtf) {
    if (!isValidText(text))
        return failEdit("The details are not plain UTF-8 text.");
    return edit(sermonId, "Details Saved", [&](model::SermonNote& sermon) {
        if (auto* topic = findTopic(sermon, itemId)) {
            topic->details = text;
            topic->detailsRTFData = rtf;
            return true;
        }
        if (auto* subTopic = findSubTopic(sermon, itemId)) {
            subTopic->details = text;
            subTopic->detailsRTFData = rtf;
            return true;
        }
        return failEdit("Quillon could not find that topic or subtopic in " + curlyQuoted(sermon.title) + ".");
    });
}

bool SermonNotesViewModel::setNotes(const model::Uuid& sermonId, const std::string& text,
                                    std::optional<std::string> rtf) {
    if (!isValidText(text))
        return failEdit("The notes are not plain UTF-8 text.");
    return edit(sermonId, "Notes Saved", [&](model::SermonNote& sermon) {
        sermon.notes = text;
        sermon.notesRTFData = rtf;
        return true;
    });
}

bool SermonNotesViewModel::setMetadata(const model::Uuid& sermonId, const SermonMetadataChange& change) {
    std::vector<const std::string*> texts{};
    for (const auto* field : {&change.title, &change.speaker, &change.series, &change.venue, &change.colour})
        if (*field)
            texts.push_back(&**field);
    if (change.tags)
        for (const auto& tag : *change.tags)
            texts.push_back(&tag);
    for (const auto* text : texts)
        if (!isValidText(*text))
            return failEdit("The sermon's details must be plain UTF-8 text.");
    if (change.title && trimmed(*change.title).empty())
        return failEdit("A sermon needs a title.");
    std::optional<std::string> colour;
    if (change.colour && !trimmed(*change.colour).empty()) {
        colour = normalisedColour(*change.colour);
        if (!colour)
            return failEdit(curlyQuoted(*change.colour) +
                            " is not a colour; write it as #RRGGBB, for example #1F6FB2.");
    }
    auto optionalText = [](const std::string& text) {
        return trimmed(text).empty() ? std::nullopt : std::optional(std::string(trimmed(text)));
    };
    return edit(sermonId, "Sermon Updated", [&](model::SermonNote& sermon) {
        if (change.title)
            sermon.title = std::string(trimmed(*change.title));
        if (change.speaker)
            sermon.speaker = std::string(trimmed(*change.speaker));
        if (change.series)
            sermon.series = optionalText(*change.series);
        if (change.venue)
            sermon.venue = optionalText(*change.venue);
        if (change.date)
            sermon.date = *change.date;
        if (change.tags) {
            sermon.tags.clear();
            for (const auto& tag : *change.tags) {
                const std::string clean(trimmed(tag));
                if (!clean.empty() && std::find(sermon.tags.begin(), sermon.tags.end(), clean) == sermon.tags.end())
                    sermon.tags.push_back(clean);
            }
        }
        if (change.colour)
            sermon.textColorHex = colour;
        return true;
    });
}

bool SermonNotesViewModel::setCoverImage(const model::Uuid& sermonId, std::string_view jpegBytes) {
    const bool isJpeg = jpegBytes.size() > 3 && static_cast<unsigned char>(jpegBytes[0]) == 0xFF &&
                        static_cast<unsigned char>(jpegBytes[1]) == 0xD8 &&
                        static_cast<unsigned char>(jpegBytes[2]) == 0xFF;
    if (!isJpeg)
        return failEdit("Quillon keeps cover images as JPEG files; that image is not one.");
    if (!m_store.sermon(sermonId))
        return failEdit("Quillon could not find that sermon; it may have been moved to Trash.");
    const auto fileName = m_store.storage().saveCoverImage(sermonId, jpegBytes);
    if (!fileName)
        return failEdit("Quillon could not save the cover image into the library's Media folder.");
    return edit(sermonId, "Cover Image Set", [&](model::SermonNote& sermon) {
        sermon.coverImageFileName = fileName;
        return true;
    });
}

bool SermonNotesViewModel::removeCoverImage(const model::Uuid& sermonId) {
    const bool removed = edit(sermonId, "Cover Image Removed", [&](model::SermonNote& sermon) {
        sermon.coverImageFileName.reset();
        return true;
    });
    // The file goes only after the sermon stopped naming it; undo then shows no cover rather than a broken one.
    if (removed)
        m_store.storage().removeCoverImage(sermonId);
    return removed;
}

bool SermonNotesViewModel::setPinned(const model::Uuid& sermonId, bool pinned) {
    const model::SermonNote* sermon = m_store.sermon(sermonId);
    if (!sermon)
        return failEdit("Quillon could not find that sermon; it may have been moved to Trash.");
    m_store.setPinned(sermonId, pinned);
    notifyLibrary();
    post({pinned ? "Pinned" : "Unpinned",
          curlyQuoted(sermon->title) + (pinned ? " is pinned to the top of the list." : " is no longer pinned."),
          StatusMessage::Kind::toast});
    return true;
}

bool SermonNotesViewModel::setHidden(const model::Uuid& sermonId, bool hidden) {
    const model::SermonNote* sermon = m_store.sermon(sermonId);
    if (!sermon)
        return failEdit("Quillon could not find that sermon; it may have been moved to Trash.");
    m_store.setHidden(sermonId, hidden);
    notifyLibrary();
    post({hidden ? "Hidden" : "Shown",
          curlyQuoted(sermon->title) +
              (hidden ? " is hidden from the sermon list." : " is shown in the sermon list again."),
          StatusMessage::Kind::toast});
    return true;
}

bool SermonNotesViewModel::setScriptureVersion(const model::Uuid& sermonId, const model::Uuid& scriptureId,
                                               model::BibleVersion version) {
    return edit(sermonId, "Scripture Updated", [&](model::SermonNote& sermon) {
        auto* scripture = findScripture(sermon, scriptureId);
        if (!scripture)
            return failEdit("Quillon could not find that scripture in " + curlyQuoted(sermon.title) + ".");
        scripture->version = version;
        return true;
    });
}

bool SermonNotesViewModel::setWordHighlight(const model::Uuid& sermonId, const model::Uuid& scriptureId, int word,
                                            std::optional<std::string> colour) {
    if (word < 0 || (colour && (colour->empty() || !isValidText(*colour))))
        return failEdit("A highlight needs a word of the passage and a colour name.");
    return edit(sermonId, "Scripture Updated", [&](model::SermonNote& sermon) {
        auto* scripture = findScripture(sermon, scriptureId);
        if (!scripture)
            return failEdit("Quillon could not find that scripture in " + curlyQuoted(sermon.title) + ".");
        if (colour)
            scripture->wordHighlights[word] = *colour;
        else
            scripture->wordHighlights.erase(word);
        return true;
    });
}

bool SermonNotesViewModel::setLineBreak(const model::Uuid& sermonId, const model::Uuid& scriptureId, int word,
                                        bool on) {
    if (word < 0)
        return failEdit("A line break goes after a word of the passage.");
    return edit(sermonId, "Scripture Updated", [&](model::SermonNote& sermon) {
        auto* scripture = findScripture(sermon, scriptureId);
        if (!scripture)
            return failEdit("Quillon could not find that scripture in " + curlyQuoted(sermon.title) + ".");
        auto& breaks = scripture->breakIndicators;
        std::erase(breaks, word);
        if (on) {
            breaks.push_back(word);
            std::sort(breaks.begin(), breaks.end());
        }
        return true;
    });
}

} // namespace quillon::app
