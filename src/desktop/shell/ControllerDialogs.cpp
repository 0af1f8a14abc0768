#include "desktop/shell/ControllerDialogs.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/shell/ToastOverlay.h"

#include <QMessageBox>
#include <QPushButton>

namespace quillon::desktop {

ControllerDialogs::ControllerDialogs(QWidget& window, app::SermonNotesViewModel& controller, DeskCommands& commands,
                                     ToastOverlay& toast)
    : QObject(&window), m_window(window), m_controller(controller), m_commands(commands), m_toast(toast) {}

void ControllerDialogs::onStatus(const QString& title, const QString& detail, bool isAlert) {
    if (!isAlert)
        m_toast.showToast(title, detail);
    else if (m_controller.isOpen(app::Sheet::storageWarning))
        lowStorage(title, detail);
    else
        alert(title, detail);
}

void ControllerDialogs::alert(const QString& title, const QString& detail) {
    auto* box = new QMessageBox(QMessageBox::Warning, title, detail, QMessageBox::Ok, &m_window);
    box->setObjectName(QStringLiteral("statusAlert"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this] { m_controller.close(app::Sheet::statusAlert); });
    box->open();
}

void ControllerDialogs::lowStorage(const QString& title, const QString& detail) {
    m_controller.close(app::Sheet::storageWarning);
    m_controller.close(app::Sheet::statusAlert);
    auto* box = new QMessageBox(QMessageBox::Warning, title, detail, QMessageBox::NoButton, &m_window);
    box->setObjectName(QStringLiteral("storageWarning"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* anyway = box->addButton(tr("Continue Anyway"), QMessageBox::AcceptRole);
    QPushButton* elsewhere = box->addButton(tr("Choose Another Location…"), QMessageBox::ActionRole);
    box->addButton(QMessageBox::Cancel);
    box->setDefaultButton(elsewhere);
    connect(box, &QMessageBox::finished, this, [this, box, anyway, elsewhere] {
        if (box->clickedButton() == anyway)
            m_commands.backUpAnyway();
        else if (box->clickedButton() == elsewhere)
            m_commands.backUp();
    });
    box->open();
}

void ControllerDialogs::confirm(const QString& name, const QString& title, const QString& message,
                                const QString& action, std::function<void()> accepted, std::function<void()> rejected) {
    auto* box = new QMessageBox(QMessageBox::Question, title, message, QMessageBox::Cancel, &m_window);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton* yes = box->addButton(action, QMessageBox::DestructiveRole);
    yes->setObjectName(name + QStringLiteral("Accept"));
    box->setDefaultButton(QMessageBox::Cancel);
    connect(box, &QMessageBox::finished, this,
            [box, yes, accepted = std::move(accepted), rejected = std::move(rejected)] {
                if (box->clickedButton() == yes)
                    accepted();
                else
                    rejected();
            });
    box->open();
}

void ControllerDialogs::onSheet(int sheet, bool open) {
    app::SermonNotesViewModel& controller = m_controller;
    if (!open)
        return;
    switch (static_cast<app::Sheet>(sheet)) {
    case app::Sheet::deleteConfirmation:
        confirm(
            QStringLiteral("deleteConfirmation"), tr("Delete?"), QString::fromStdString(controller.deletionMessage()),
            tr("Delete"), [&controller] { controller.confirmDeletion(); },
            [&controller] { controller.cancelDeletion(); });
        break;
    case app::Sheet::sermonDeleteConfirmation:
        confirm(
            QStringLiteral("trashConfirmation"), tr("Move to Trash?"),
            QString::fromStdString(controller.trashConfirmationMessage()), tr("Move to Trash"),
            [&controller] { controller.confirmMoveToTrash(); }, [&controller] { controller.cancelMoveToTrash(); });
        break;
    case app::Sheet::restoreBackupConfirmation:
        confirm(
            QStringLiteral("restoreConfirmation"), tr("Restore?"), QString::fromStdString(controller.restoreQuestion()),
            tr("Restore"), [this] { m_commands.restoreConfirmed(); }, [&controller] { controller.cancelRestore(); });
        break;
    default:
        break;
    }
}

} // namespace quillon::desktop
