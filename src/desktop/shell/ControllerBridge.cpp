#include "desktop/shell/ControllerBridge.h"

#include "app/SermonNotesViewModel.h"

namespace quillon::desktop {

ControllerBridge::ControllerBridge(app::SermonNotesViewModel& controller, QObject* parent)
    : QObject(parent), m_controller(controller) {
    m_controller.addListener(*this);
}

ControllerBridge::~ControllerBridge() {
    m_controller.removeListener(*this);
}

void ControllerBridge::statusPosted(const app::StatusMessage& message) {
    emit statusDidPost(QString::fromStdString(message.title), QString::fromStdString(message.detail),
                       message.kind == app::StatusMessage::Kind::alert);
}

} // namespace quillon::desktop
