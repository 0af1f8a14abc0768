#pragma once

#include "app/SermonNotesListener.h"

#include <QObject>

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

/// Turns the controller's listener calls into Qt signals, so widgets connect to what they show.
/// Registers itself with the controller for its lifetime.
class ControllerBridge : public QObject, public app::SermonNotesListener {
    Q_OBJECT
public:
    explicit ControllerBridge(app::SermonNotesViewModel& controller, QObject* parent = nullptr);
    ~ControllerBridge() override;

    void selectionChanged() override { emit selectionDidChange(); }
    void sermonChanged(const model::Uuid& sermonId) override { emit sermonDidChange(sermonId); }
    void libraryChanged() override { emit libraryDidChange(); }
    void statusPosted(const app::StatusMessage& message) override;
    void sheetChanged(app::Sheet sheet, bool open) override { emit sheetDidChange(static_cast<int>(sheet), open); }
    void interfaceStateChanged() override { emit interfaceStateDidChange(); }

signals:
    void selectionDidChange();
    void sermonDidChange(const quillon::model::Uuid& sermonId);
    void libraryDidChange();
    void statusDidPost(const QString& title, const QString& detail, bool isAlert);
    void sheetDidChange(int sheet, bool open);
    void interfaceStateDidChange();

private:
    app::SermonNotesViewModel& m_controller;
};

} // namespace quillon::desktop
