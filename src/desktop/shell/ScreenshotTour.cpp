#include "desktop/shell/ScreenshotTour.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "desktop/MainWindow.h"
#include "desktop/bible/BiblePanel.h"
#include "desktop/sheets/PairingDialog.h"
#include "desktop/sheets/TrashWindow.h"
#include "desktop/shell/DeskCommands.h"
#include "desktop/shell/DeskMenus.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace quillon::desktop {

namespace {

constexpr int settleMs = 900;

/// The first sermon whose title starts with `title`, else the first sermon.
const model::SermonNote* sermonNamed(app::SermonNotesViewModel& controller, const std::string& title) {
    const auto& sermons = controller.store().sermons();
    for (const auto& sermon : sermons) {
        if (sermon.title.rfind(title, 0) == 0)
            return &sermon;
    }
    return sermons.empty() ? nullptr : &sermons.front();
}

/// Selects the sermon and its first scripture, so every column and the verse text show.
void selectDeepest(app::SermonNotesViewModel& controller, const model::SermonNote* sermon) {
    if (!sermon)
        return;
    controller.selectSermon(sermon->id);
    for (const auto& topic : sermon->topics) {
        for (const auto& sub : topic.subTopics) {
            if (!sub.scriptures.empty()) {
                controller.selectScripture(sub.scriptures.front().id);
                return;
            }
        }
    }
}

void closeDialogs(MainWindow& window) {
    for (QDialog* dialog : window.findChildren<QDialog*>()) {
        if (dialog->isVisible())
            dialog->close();
    }
}

} // namespace

ScreenshotTour::ScreenshotTour(MainWindow& window, QString folder, QStringList views, QString prefix)
    : QObject(&window), m_window(window), m_folder(std::move(folder)), m_views(std::move(views)),
      m_prefix(std::move(prefix)) {}

std::vector<ScreenshotTour::Step> ScreenshotTour::steps() {
    MainWindow& window = m_window;
    app::SermonNotesViewModel& controller = window.services().controller();
    auto run = [&window](const char* command) {
        if (QAction* action = window.menus().command(QString::fromLatin1(command)))
            action->trigger();
    };
    auto reset = [&window, &controller] {
        closeDialogs(window);
        controller.setReadingMode(false);
        controller.setCompactLayout(false);
        controller.setLayoutStyle(app::AppLayoutStyle::classic);
    };
    return {
        {QStringLiteral("classic"),
         [=, &controller] {
             reset();
             selectDeepest(controller, sermonNamed(controller, "Rest for the Weary"));
         }},
        {QStringLiteral("modern-outline"),
         [=, &controller] {
             reset();
             controller.setLayoutStyle(app::AppLayoutStyle::modernOutline);
             selectDeepest(controller, sermonNamed(controller, "The Shepherd Who Stays"));
         }},
        {QStringLiteral("bible-panel"),
         [=, &window, &controller] {
             reset();
             selectDeepest(controller, sermonNamed(controller, "Faith That Walks"));
             window.showInBible(QStringLiteral("living water"));
         }},
        {QStringLiteral("reading-mode"),
         [=, &controller] {
             reset();
             selectDeepest(controller, sermonNamed(controller, "A Table in the Far Country"));
             controller.setReadingMode(true);
         }},
        {QStringLiteral("search"),
         [=, &window] {
             reset();
             run("findAction");
             if (auto* field = window.findChild<QLineEdit*>(QStringLiteral("searchField")))
                 field->setText(QStringLiteral("rest"));
         }},
        {QStringLiteral("long-title"),
         [=, &controller] {
             reset();
             selectDeepest(controller, sermonNamed(controller, "When the"));
         }},
        {QStringLiteral("no-sermon-selected"),
         [=, &controller] {
             reset();
             controller.selectSermon(std::nullopt);
         }},
        {QStringLiteral("pairing"),
         [=, &window, &controller] {
             reset();
             selectDeepest(controller, sermonNamed(controller, "Rest for the Weary"));
             run("pairAction");
             if (auto* dialog = window.findChild<PairingDialog*>(QStringLiteral("pairingDialog")))
                 dialog->generate();
         }},
        {QStringLiteral("trash"),
         [=, &window] {
             reset();
             run("trashAction");
             if (auto* trash = window.findChild<TrashWindow*>(QStringLiteral("trashWindow"));
                 trash && trash->list()->count())
                 trash->list()->item(0)->setSelected(true);
         }},
    };
}

void ScreenshotTour::start() {
    for (Step& step : steps()) {
        if (m_views.isEmpty() || m_views.contains(step.name))
            m_steps.push_back(std::move(step));
    }
    QDir().mkpath(m_folder);
    if (QScreen* screen = m_window.screen())
        m_window.setGeometry(screen->availableGeometry());
    QTimer::singleShot(settleMs, this, &ScreenshotTour::next);
}

void ScreenshotTour::next() {
    if (m_next >= m_steps.size()) {
        QApplication::quit();
        return;
    }
    Step& step = m_steps[m_next++];
    step.prepare();
    QTimer::singleShot(settleMs, this, [this, name = step.name] {
        shoot(name);
        next();
    });
}

void ScreenshotTour::shoot(const QString& name) {
    QScreen* screen = m_window.screen();
    const QString file = QDir(m_folder).filePath(m_prefix + name + QStringLiteral(".png"));
    if (!screen || !screen->grabWindow(0).save(file))
        std::fprintf(stderr, "could not write %s\n", qPrintable(file));
    else
        std::printf("%s\n", qPrintable(file));
}

} // namespace quillon::desktop
