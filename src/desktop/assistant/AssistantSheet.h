#pragma once

#include "app/AssistantFeatures.h"

#include <QDialog>

#include <memory>
#include <optional>

class QColor;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

class DeskServices;

/// One assistant sheet, built from its feature's description: the feature runs off the interface
/// thread with a busy bar and Cancel, its answer is labelled as generated or model-free exactly as
/// the command line labels it, its sources open what they cite, and a proposal (tags, a title)
/// changes the sermon only when the preacher accepts it, through the controller, as one undo step.
class AssistantSheet : public QDialog {
    Q_OBJECT
public:
    AssistantSheet(app::AssistantFeatureId feature, DeskServices& services, std::shared_ptr<orvane::ModelRouter> router,
                   QWidget* parent = nullptr);
    ~AssistantSheet() override;

    /// Starts the feature with what the fields hold now; a run already going is abandoned.
    void run();
    /// Abandons the run (its answer is dropped when it arrives) and closes the sheet.
    void cancel();
    bool isRunning() const { return m_running; }
    const std::optional<app::AssistantAnswer>& answer() const { return m_answer; }
    /// Applies the ticked lines of the proposal; false when there is nothing to apply.
    bool acceptProposal();
    QLineEdit* textField() const { return m_text; }
    QListWidget* items() const { return m_items; }

protected:
    void resizeEvent(QResizeEvent* event) override;

signals:
    /// The feature finished and its answer is shown.
    void answered();
    /// A source was activated: "sermon:<id>" or "bible:<reference>".
    void sourceActivated(const QString& link);

private:
    QLayout* buildInput();
    void showAnswer(const app::AssistantAnswer& answer);
    void activate(QListWidgetItem* item);
    QLabel* answerLabel(const app::AssistantItem& line);
    QColor quietColour() const;
    /// Gives each answer line the height its wrapped text needs at the list's width.
    void fitItems();
    app::AssistantRequest request() const;

    const app::AssistantFeatureDescription& m_feature;
    DeskServices& m_services;
    std::shared_ptr<orvane::ModelRouter> m_router;
    std::optional<model::Uuid> m_sermonId;
    std::optional<app::AssistantAnswer> m_answer;
    quint64 m_generation = 0;
    bool m_running = false;
    QSpinBox* m_section = nullptr;
    QComboBox* m_room = nullptr;
    QLineEdit* m_text = nullptr;
    QPushButton* m_ask = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_caption = nullptr;
    QLabel* m_reason = nullptr;
    QLabel* m_empty = nullptr;
    QListWidget* m_items = nullptr;
    QPushButton* m_accept = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_copy = nullptr;
};

} // namespace quillon::desktop
