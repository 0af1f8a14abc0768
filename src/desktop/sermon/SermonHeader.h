#pragma once

#include <QWidget>

#include <optional>
#include <string>

class QDateEdit;
class QLabel;
class QLineEdit;

namespace quillon::app {
class SermonNotesViewModel;
struct SermonMetadataChange;
} // namespace quillon::app

namespace quillon::desktop {

/// The top of the sermon: title, speaker, series, venue, date, tags and the cover image (chosen
/// with a click or dropped on it). Each keystroke goes to the controller; the fields show the
/// selected sermon as the store holds it.
class SermonHeader : public QWidget {
    Q_OBJECT
public:
    SermonHeader(app::SermonNotesViewModel& controller, QWidget* parent = nullptr);

    /// Shows the selected sermon (fields the user is typing in keep their cursor).
    void sync();
    void setReading(bool reading);
    void setCompact(bool compact);
    /// Makes `imageFile` the cover; false when it is no readable image.
    bool useCoverImage(const QString& imageFile);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* addField(const QString& name, const QString& placeholder);
    void change(const app::SermonMetadataChange& change);
    void showCover();

    app::SermonNotesViewModel& m_controller;
    QLineEdit* m_title = nullptr;
    QLineEdit* m_speaker = nullptr;
    QLineEdit* m_series = nullptr;
    QLineEdit* m_venue = nullptr;
    QLineEdit* m_tags = nullptr;
    QDateEdit* m_date = nullptr;
    QLabel* m_cover = nullptr;
    QWidget* m_details = nullptr;
    bool m_syncing = false;
};

} // namespace quillon::desktop
