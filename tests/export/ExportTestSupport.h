#pragma once

#include "export/OutlineParser.h"
#include "export/VerseTextSource.h"
#include "model/SermonNote.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::testing {

/// A small sermon with metadata, two topics, sub-topics and passages in two versions.
model::SermonNote sampleSermon();

/// A sermon of `topics` topics, each with 3 sub-topics holding 2 passages.
model::SermonNote largeSermon(int topics);

model::SermonScripture scripture(std::string book, int chapter, int start, int end,
                                 model::BibleVersion version = model::BibleVersion::kjv);

/// Verse text from a fixed table keyed by "KJV John 3:16"; versions listed as available.
class FixedVerses : public exports::VerseTextSource {
public:
    std::vector<model::BibleVersion> available{model::BibleVersion::kjv};
    std::map<std::string, std::string> texts;

    exports::PassageText passage(const model::SermonScripture& scripture) const override;
};

/// A few books, enough to recognise the references the tests write.
exports::ReferenceRecognizer fakeRecognizer();

/// Entries of a ZIP in archive order, with their contents.
std::vector<std::pair<std::string, std::string>> zipEntries(std::string_view zipBytes);
std::string zipEntry(std::string_view zipBytes, std::string_view name);

/// What a shell command prints on standard output.
std::string commandOutput(const std::string& command);

/// Builds a ZIP from (name, content) pairs in order, for hostile-package tests.
std::string makeZip(const std::vector<std::pair<std::string, std::string>>& entries);

} // namespace quillon::testing
