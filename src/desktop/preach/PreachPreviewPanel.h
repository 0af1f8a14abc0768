#pragma once

#include "model/Uuid.h"
#include "preach/PreachPace.h"
#include "preach/PreachTimeEstimate.h"

#include <QWidget>

#include <memory>
#include <optional>

class QCheckBox;
class QLabel;
class QPushButton;
class QTimer;

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

class ControllerBridge;
class DeskServices;
class SectionBars;

/// Preach Preview: how long the selected sermon takes to preach, a bar per section, the pace it
/// used and where that pace came from, and "Record actual time" so the estimate learns. It follows
/// the controller's notices: an edit restarts a short timer, so typing never waits on the count,
/// and a pause longer still lets a model (when one answers) label the list sections.
class PreachPreviewPanel : public QWidget {
    Q_OBJECT
public:
    /// `router` decides whether a model labels the sections.
    PreachPreviewPanel(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router, QWidget* parent = nullptr);
    ~PreachPreviewPanel() override;

    /// Recounts the selected sermon now, model-free.
    void refreshNow();
    /// Stores how long the selected sermon actually took and shows the learned pace; false when
    /// no sermon is selected or `minutes` is not a positive number.
    bool recordActualMinutes(double minutes);
    const preach::PreachTimeEstimate& estimate() const { return m_estimate; }
    const preach::PreachPace& pace() const { return m_pace; }
    void setRouter(std::shared_ptr<orvane::ModelRouter> router) { m_router = std::move(router); }

    /// Where the pace came from, as a preacher reads it.
    static QString paceSource(const platform::Preferences& preferences, const std::string& speaker);

signals:
    /// Emitted after every recount, model-free or labelled.
    void refreshed();

private:
    void scheduleRefresh();
    void askRecordedTime();
    void openProfiles();
    void startLabelling();
    void showEstimate(const preach::PreachTimeEstimate& estimate, const QString& caption);

    DeskServices& m_services;
    ControllerBridge* m_bridge = nullptr;
    std::shared_ptr<orvane::ModelRouter> m_router;
    std::optional<model::Uuid> m_sermonId;
    preach::PreachTimeEstimate m_estimate;
    preach::PreachPace m_pace;
    quint64 m_generation = 0;
    QTimer* m_countTimer = nullptr;
    QTimer* m_labelTimer = nullptr;
    QLabel* m_total = nullptr;
    QLabel* m_caption = nullptr;
    SectionBars* m_bars = nullptr;
    QLabel* m_paceLine = nullptr;
    QLabel* m_explanation = nullptr;
    QLabel* m_learned = nullptr;
    QCheckBox* m_measured = nullptr;
    QPushButton* m_record = nullptr;
};

} // namespace quillon::desktop
