#pragma once

#include <string>
#include <vector>

namespace quillon::store {

/// A passage named by its parts, as a sample lists its main texts.
struct SampleScriptureReference {
    std::string bookName;
    int chapter = 1;
    int startVerse = 1;
    int endVerse = 1;
};

/// A scripture as a reader would type it, with the thought it brings to the sub-point.
struct AuthoredScripture {
    std::string reference;
    std::string insight;
};

struct AuthoredSubTopic {
    std::string title;
    /// Becomes the sub-topic's details.
    std::string summary;
    std::vector<AuthoredScripture> scriptures;
};

struct AuthoredTopic {
    std::string title;
    /// Becomes the topic's details.
    std::string summary;
    std::vector<AuthoredSubTopic> subTopics;
};

/// One authored sample sermon shipped with the program.
struct SampleSermonDefinition {
    std::string title;
    std::string series;
    /// The sermon's theme line.
    std::string focus;
    /// The manuscript.
    std::string notes;
    /// Names of cover images shipped with the program.
    std::vector<std::string> images;
    /// Topic titles, used when there are no authored topics.
    std::vector<std::string> topics;
    /// Angles that name sub-topics when there are no authored topics.
    std::vector<std::string> subtopicAngles;
    std::vector<SampleScriptureReference> scriptures;
    std::vector<AuthoredTopic> authoredTopics;
    /// The sample's fixed identity (UUID text): it is added once, and recognised as a sample later.
    std::string id;
};

} // namespace quillon::store
