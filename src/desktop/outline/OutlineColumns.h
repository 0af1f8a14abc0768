#pragma once

#include <QWidget>

class QSplitter;

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

class OutlineColumn;
class OutlineModel;

/// The classic layout: topic, sub-topic and scripture columns side by side, each as wide as the
/// preacher left it up to its cap, followed by the detail area. Choosing, adding and deleting go
/// to the controller; the columns show what it has selected.
class OutlineColumns : public QWidget {
    Q_OBJECT
public:
    OutlineColumns(app::SermonNotesViewModel& controller, OutlineModel& model, QWidget* parent = nullptr);

    /// The widget to the right of the scripture column (the detail area).
    void setTrailingWidget(QWidget* widget);
    /// Shows the controller's selection and widths.
    void sync();
    void setReading(bool reading);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void addScripture(const QString& typed);
    void saveWidths();
    void applyWidths();

    app::SermonNotesViewModel& m_controller;
    OutlineModel& m_model;
    QSplitter* m_splitter = nullptr;
    OutlineColumn* m_topics = nullptr;
    OutlineColumn* m_subTopics = nullptr;
    OutlineColumn* m_scriptures = nullptr;
    bool m_syncing = false;
    /// The remembered widths wait for the first real width, which QSplitter would otherwise scale.
    bool m_widthsPending = true;
};

} // namespace quillon::desktop
