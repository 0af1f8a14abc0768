#pragma once

#include <QLabel>
#include <QTimer>

namespace quillon::desktop {

/// A transient notice at the bottom of its parent ("Word Exported — Easter.docx"), gone after a
/// few seconds or on a click; a newer notice replaces the one on show.
class ToastOverlay : public QLabel {
    Q_OBJECT
public:
    explicit ToastOverlay(QWidget* parent);

    void showToast(const QString& title, const QString& detail);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void place();

    QTimer m_timer;
};

} // namespace quillon::desktop
