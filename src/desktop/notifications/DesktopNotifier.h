#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace quillon::desktop {

/// Posts a desktop notification through the freedesktop notification service when long work
/// finishes while the window is not in front ("Export Ready"). Without a session bus or a
/// notification service nothing is posted and nothing fails.
class DesktopNotifier : public QObject {
    Q_OBJECT
public:
    explicit DesktopNotifier(QWidget& window, QObject* parent = nullptr);

    /// Sends `title` and `body` unless the window is the active one; true when it was handed to the
    /// session bus.
    bool notify(const QString& title, const QString& body);

signals:
    /// Emitted for every notification handed to the bus, for the window's own record.
    void posted(const QString& title, const QString& body);

private:
    QPointer<QWidget> m_window;
};

} // namespace quillon::desktop
