#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace quillon::app {
class SermonNotesViewModel;
}

namespace quillon::desktop {

class DeskCommands;
class ToastOverlay;

/// Shows what the controller publishes: toasts as transient notices, alerts as dialogs with the
/// controller's own title and sentence, and its confirmations (delete, move to trash, restore,
/// low storage) as questions whose answer goes back to the controller.
class ControllerDialogs : public QObject {
    Q_OBJECT
public:
    ControllerDialogs(QWidget& window, app::SermonNotesViewModel& controller, DeskCommands& commands,
                      ToastOverlay& toast);

    void onStatus(const QString& title, const QString& detail, bool isAlert);
    void onSheet(int sheet, bool open);

private:
    void alert(const QString& title, const QString& detail);
    void lowStorage(const QString& title, const QString& detail);
    void confirm(const QString& name, const QString& title, const QString& message, const QString& action,
                 std::function<void()> accepted, std::function<void()> rejected);

    QWidget& m_window;
    app::SermonNotesViewModel& m_controller;
    DeskCommands& m_commands;
    ToastOverlay& m_toast;
};

} // namespace quillon::desktop
