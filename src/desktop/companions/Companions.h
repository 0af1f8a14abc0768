#pragma once

#include "app/AssistantFeatures.h"

#include <QObject>

#include <memory>

class QDockWidget;
class QMainWindow;
class QMenu;

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

class AssistantSheet;
class CommandPalette;
class DesktopNotifier;
class DiagnosticsWindow;
class HelpWindow;
class OnboardingDialog;
class DeskServices;
class ModelStatusButton;
class PreachPreviewPanel;
class SettingsWindow;

/// The desk's companions around the main window: Preach Preview, the assistant's sheets, settings,
/// help, the command palette, onboarding and diagnostics. It adds their menus, docks and shortcuts
/// to the window it is given, so the window itself only has to create it.
class Companions : public QObject {
    Q_OBJECT
public:
    /// `window` must have built its menus; `services` must outlive it.
    Companions(QMainWindow& window, DeskServices& services);
    ~Companions() override;

    PreachPreviewPanel* preachPreview() const { return m_preachPreview; }
    QDockWidget* preachDock() const { return m_preachDock; }
    ModelStatusButton* modelStatus() const { return m_modelStatus; }
    CommandPalette* palette() const { return m_palette; }
    DesktopNotifier* notifier() const { return m_notifier; }
    /// Opens (or raises) the settings window, showing `group` when one is named.
    SettingsWindow* openSettings(const QString& group = {});
    /// Opens the sheet of `feature` over the selected sermon; it runs at once when it needs no input.
    AssistantSheet* openSheet(app::AssistantFeatureId feature);
    /// Opens what an answer's source cites: "sermon:<id>" selects the sermon, "bible:<reference>"
    /// looks the reference up in the Bible panel.
    void openSource(const QString& link);
    /// Opens (or raises) the help window.
    HelpWindow* openHelp();
    /// Opens the welcome sequence.
    OnboardingDialog* openOnboarding();
    /// Opens the diagnostics window on the application's log.
    DiagnosticsWindow* openDiagnostics();

private:
    void addPreachPreview();
    void addAssistant();
    void addSettings();
    void addPalette();
    void addHelp();
    void addOnboarding();
    void addNotifications();
    /// Hands a layout or reading setting changed in the settings window to the controller.
    void applyInterfaceSetting(const QString& key);
    /// The window's Help menu (its last).
    QMenu* helpMenu() const;
    /// The menu a companion's actions join, placed before Help.
    QMenu* menuBefore(const QString& title, const QString& objectName);

    QMainWindow& m_window;
    DeskServices& m_services;
    std::shared_ptr<orvane::ModelRouter> m_router;
    PreachPreviewPanel* m_preachPreview = nullptr;
    QDockWidget* m_preachDock = nullptr;
    ModelStatusButton* m_modelStatus = nullptr;
    SettingsWindow* m_settings = nullptr;
    CommandPalette* m_palette = nullptr;
    HelpWindow* m_help = nullptr;
    DesktopNotifier* m_notifier = nullptr;
};

} // namespace quillon::desktop
