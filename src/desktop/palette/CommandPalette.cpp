#include "desktop/palette/CommandPalette.h"

#include "app/CommandMatching.h"

#include <QAction>
#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

namespace quillon::desktop {

namespace {

/// "&Export…" as a person reads it: "Export".
QString plainText(QString text) {
    text.remove(u'&');
    if (text.endsWith(QStringLiteral("…")))
        text.chop(1);
    return text.trimmed();
}

} // namespace

CommandPalette::CommandPalette(QMenuBar& menus, QWidget* parent) : QDialog(parent), m_menus(menus) {
    setObjectName(QStringLiteral("commandPalette"));
    setWindowTitle(tr("Commands"));
    m_field = new QLineEdit(this);
    m_field->setObjectName(QStringLiteral("paletteField"));
    m_field->setPlaceholderText(tr("Type a command"));
    m_field->setAccessibleName(tr("Command"));
    m_field->installEventFilter(this);
    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("paletteList"));
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->setFocusPolicy(Qt::NoFocus);
    connect(m_field, &QLineEdit::textChanged, this, &CommandPalette::filter);
    connect(m_field, &QLineEdit::returnPressed, this, &CommandPalette::runCurrent);
    connect(m_list, &QTreeWidget::itemActivated, this, [this] { runCurrent(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_field);
    layout->addWidget(m_list);
    resize(520, 380);
}

void CommandPalette::collect() {
    m_commands.clear();
    std::function<void(QMenu*, const QString&)> walk = [&](QMenu* menu, const QString& path) {
        for (QAction* action : menu->actions()) {
            // The palette does not list itself.
            if (action->isSeparator() || action->text().isEmpty() ||
                action->objectName() == QStringLiteral("paletteAction"))
                continue;
            const QString name = path + plainText(action->text());
            if (action->menu()) {
                walk(action->menu(), name + QStringLiteral(" › "));
                continue;
            }
            if (action->isEnabled() && action->isVisible())
                m_commands.push_back({name, action});
        }
    };
    for (QAction* top : m_menus.actions())
        if (top->menu())
            walk(top->menu(), plainText(top->text()) + QStringLiteral(" › "));
}

void CommandPalette::open() {
    collect();
    m_field->clear();
    filter({});
    if (parentWidget()) {
        const QRect area = parentWidget()->geometry();
        move(area.center().x() - width() / 2, area.top() + area.height() / 6);
    }
    show();
    raise();
    activateWindow();
    m_field->setFocus();
}

void CommandPalette::filter(const QString& query) {
    std::vector<std::string> names;
    names.reserve(m_commands.size());
    for (const Command& command : m_commands)
        names.push_back(command.name.toStdString());
    m_list->clear();
    for (std::size_t index : app::CommandMatching::rank(query.toStdString(), names)) {
        const Command& command = m_commands[index];
        if (!command.action)
            continue;
        auto* item = new QTreeWidgetItem(m_list);
        item->setText(0, command.name);
        item->setText(1, command.action->shortcut().toString(QKeySequence::NativeText));
        item->setForeground(1, palette().color(QPalette::PlaceholderText));
        item->setData(0, Qt::UserRole, static_cast<qulonglong>(index));
    }
    if (m_list->topLevelItemCount() > 0)
        m_list->setCurrentItem(m_list->topLevelItem(0));
}

QStringList CommandPalette::shownNames() const {
    QStringList names;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        names << m_list->topLevelItem(i)->text(0);
    return names;
}

bool CommandPalette::runCurrent() {
    QTreeWidgetItem* item = m_list->currentItem();
    if (!item)
        return false;
    QPointer<QAction> action = m_commands[item->data(0, Qt::UserRole).toULongLong()].action;
    hide();
    // After the palette has gone, so a command that opens a dialog finds the window in front.
    if (action)
        QTimer::singleShot(0, action, [action] {
            if (action && action->isEnabled())
                action->trigger();
        });
    return action != nullptr;
}

bool CommandPalette::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_field && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_PageDown || key == Qt::Key_PageUp) {
            QCoreApplication::sendEvent(m_list, event);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace quillon::desktop
