#pragma once

#include <QWidget>

class QLabel;
class QStackedWidget;

namespace quillon::app {
class SermonNotesViewModel;
}
namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

class RichTextEditor;
class ScripturePanel;
class SpellChecker;

/// What the outline's selected item holds: the details of a topic or sub-topic in a rich-text
/// editor, or the selected scripture's passage; a hint when nothing is chosen.
class DetailArea : public QWidget {
    Q_OBJECT
public:
    DetailArea(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader, const SpellChecker* checker,
               QWidget* parent = nullptr);

    /// Shows the controller's selected item as the store holds it.
    void sync();
    void setReading(bool reading);
    RichTextEditor* detailsEditor() const { return m_editor; }
    ScripturePanel* scripturePanel() const { return m_scripture; }

signals:
    void linkActivated(const QString& url);

private:
    void store();

    app::SermonNotesViewModel& m_controller;
    QStackedWidget* m_pages = nullptr;
    QLabel* m_hint = nullptr;
    QLabel* m_itemTitle = nullptr;
    QWidget* m_detailsPage = nullptr;
    RichTextEditor* m_editor = nullptr;
    ScripturePanel* m_scripture = nullptr;
};

} // namespace quillon::desktop
