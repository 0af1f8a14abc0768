#pragma once

#include <QHash>
#include <QTimer>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace quillon::desktop {

class MeshLink;

/// The status bar's word on the screens beyond the mesh: one label per outlet the preferences
/// switched on (the live page, OpenLP, BibleSync) with its state, the detail in its tooltip.
/// Hidden while no outlet is on.
class OutletIndicator : public QWidget {
    Q_OBJECT
public:
    explicit OutletIndicator(MeshLink& mesh, QWidget* parent = nullptr);

    void refresh();

private:
    QLabel* labelFor(const QString& name);

    MeshLink& m_mesh;
    QHBoxLayout* m_row;
    QHash<QString, QLabel*> m_labels;
    // The outlets work on their own threads and say nothing when their state changes; a glance
    // once a second at their kept state is cheap and never waits on them.
    QTimer m_poll;
};

} // namespace quillon::desktop
