#pragma once

#include <QWidget>

class QLabel;
class QSplitter;
class QStackedWidget;

namespace quillon::app {
class SermonNotesViewModel;
}
namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

class DetailArea;
class OutlineColumns;
class OutlineModel;
class OutlineTree;
class RichTextEditor;
class SermonHeader;
class SpellChecker;

/// The selected sermon: its header, the outline in the chosen layout beside the selected item's
/// details, and the manuscript. Reading mode shows everything without editing; the compact
/// layout keeps the title and outline only.
class SermonView : public QWidget {
    Q_OBJECT
public:
    SermonView(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader, const SpellChecker* checker,
               QWidget* parent = nullptr);
    ~SermonView() override;

    /// The selection moved: outline, details and header follow.
    void syncSelection();
    /// The sermon's content changed (an edit, undo or redo).
    void syncContent();
    /// Layout, reading mode or compact layout changed.
    void syncInterface();

    /// Marks misspellings again in both editors (the checker learnt the Bible's words).
    void recheckSpelling();

    RichTextEditor* notesEditor() const { return m_notes; }
    DetailArea* detailArea() const { return m_detail; }
    OutlineModel& outlineModel() { return *m_outline; }

signals:
    void linkActivated(const QString& url);

private:
    void storeNotes();

    app::SermonNotesViewModel& m_controller;
    OutlineModel* m_outline = nullptr;
    SermonHeader* m_header = nullptr;
    QStackedWidget* m_layouts = nullptr;
    OutlineColumns* m_columns = nullptr;
    QSplitter* m_modern = nullptr;
    OutlineTree* m_tree = nullptr;
    DetailArea* m_detail = nullptr;
    QWidget* m_manuscript = nullptr;
    RichTextEditor* m_notes = nullptr;
    QSplitter* m_vertical = nullptr;
    int m_shownStyle = -1;
};

} // namespace quillon::desktop
