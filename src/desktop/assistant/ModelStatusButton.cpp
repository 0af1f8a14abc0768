#include "desktop/assistant/ModelStatusButton.h"

#include "orvane/ModelRouter.h"

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

#include <utility>

namespace quillon::desktop {

ModelStatusButton::ModelStatusButton(std::shared_ptr<orvane::ModelRouter> router, QWidget* parent)
    : QToolButton(parent), m_router(std::move(router)) {
    setObjectName(QStringLiteral("modelStatus"));
    setAutoRaise(true);
    setText(tr("Model: checking…"));
    setAccessibleName(tr("Model readiness"));
    recheck();
}

void ModelStatusButton::setRouter(std::shared_ptr<orvane::ModelRouter> router) {
    m_router = std::move(router);
    recheck();
}

void ModelStatusButton::recheck() {
    const quint64 generation = ++m_generation;
    using Status = std::pair<bool, std::string>;
    auto* watcher = new QFutureWatcher<Status>(this);
    connect(watcher, &QFutureWatcher<Status>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const auto [ready, reason] = watcher->result();
        m_ready = ready;
        setText(ready ? tr("Model: ready") : tr("Model: not available"));
        setToolTip(ready ? tr("A local model server answers. Click for its settings.")
                         : QString::fromStdString(reason) + u'\n' + tr("Click to point Quillon at a model server."));
        emit checked();
    });
    watcher->setFuture(QtConcurrent::run([router = m_router]() -> Status {
        const orvane::IntelligenceAvailability availability = router->currentAvailability();
        const orvane::IntelligenceReadiness& readiness =
            availability.readiness(orvane::IntelligenceBackendKind::onDevice);
        if (readiness.isReady())
            return {true, {}};
        return {false, readiness.reason() ? readiness.reason()->message() : std::string()};
    }));
}

} // namespace quillon::desktop
