#pragma once

#include "model/SermonScripture.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QTextBrowser;

namespace quillon::app {
class SermonNotesViewModel;
}
namespace quillon::scripture {
class BibleLoader;
}

namespace quillon::desktop {

/// The selected scripture: its verse text in its version, a picker of the installed versions,
/// words highlighted or broken onto a new line by clicking them, and "Send to Screen".
class ScripturePanel : public QWidget {
    Q_OBJECT
public:
    ScripturePanel(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader, QWidget* parent = nullptr);

    /// Shows the controller's selected scripture.
    void sync();
    void setReading(bool reading);
    /// The passage's words as shown (whitespace-separated, in order), for tests and screen readers.
    QStringList words() const { return m_words; }
    /// Applies the word tool to word `position`, as a click on it does.
    void clickWord(int position);

signals:
    /// The preacher asked to put `reference` ("John 3:16") on the screens.
    void sendToScreenRequested(const QString& reference, const QString& version);

private:
    const model::SermonScripture* scripture() const;
    void render(const model::SermonScripture& scripture);

    app::SermonNotesViewModel& m_controller;
    scripture::BibleLoader& m_loader;
    QLabel* m_reference = nullptr;
    QComboBox* m_version = nullptr;
    QComboBox* m_tool = nullptr;
    QTextBrowser* m_text = nullptr;
    QPushButton* m_send = nullptr;
    QStringList m_words;
    bool m_syncing = false;
};

/// The passage's verse text in its version, verses joined by spaces; empty when not installed.
QString passageText(scripture::BibleLoader& loader, const model::SermonScripture& scripture);

} // namespace quillon::desktop
