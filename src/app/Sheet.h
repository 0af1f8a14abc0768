#pragma once

#include <cstddef>

namespace quillon::app {

/// Every sheet and confirmation the desk can show; the controller keeps one open flag for each.
enum class Sheet {
    addTopic,
    addSubTopic,
    addScripture,
    deleteConfirmation,
    sermonDeleteConfirmation,
    importSermons,
    exportSermon,
    conversion,
    sermonPicker,
    scriptureInsertPicker,
    search,
    illustrationFinder,
    discussionQuestions,
    seriesPlanner,
    rewriteForTheRoom,
    askYourLibrary,
    recordingToDraft,
    alternativeOutlines,
    sermonArticle,
    highlightSuggestions,
    mediaPackage,
    pdfExportOptions,
    inspector,
    preachPreview,
    statusAlert,
    settings,
    askHowTo,
    diagnosticsLog,
    trash,
    versionHistory,
    profiles,
    storageWarning,
    restoreBackupConfirmation,
    batchTag,
};

/// How many cases Sheet has; keep it equal to the last case plus one.
inline constexpr std::size_t sheetCount = static_cast<std::size_t>(Sheet::batchTag) + 1;

} // namespace quillon::app
