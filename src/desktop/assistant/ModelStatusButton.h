#pragma once

#include <QToolButton>

#include <memory>

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

/// The model's readiness in the status bar, as `quillon model status` reports it: "Model: ready",
/// or "Model: not available" with the reason as its tooltip. Checked off the interface thread;
/// clicking it opens the settings that point Quillon at a model server.
class ModelStatusButton : public QToolButton {
    Q_OBJECT
public:
    explicit ModelStatusButton(std::shared_ptr<orvane::ModelRouter> router, QWidget* parent = nullptr);

    /// Asks the router again in the background.
    void recheck();
    /// Uses `router` from now on and asks it.
    void setRouter(std::shared_ptr<orvane::ModelRouter> router);
    bool isReady() const { return m_ready; }

signals:
    void checked();

private:
    std::shared_ptr<orvane::ModelRouter> m_router;
    quint64 m_generation = 0;
    bool m_ready = false;
};

} // namespace quillon::desktop
