#pragma once

#include <QDialog>
#include <QPointer>

class QAction;
class QLineEdit;
class QMenuBar;
class QTreeWidget;

namespace quillon::desktop {

/// Every command of the window's menus by name, with its shortcut beside it, narrowed by fuzzy
/// matching as the preacher types; Enter runs the chosen one exactly as its menu item would.
class CommandPalette : public QDialog {
    Q_OBJECT
public:
    explicit CommandPalette(QMenuBar& menus, QWidget* parent = nullptr);

    /// Collects the commands afresh (menus change as sermons are selected) and shows the palette.
    void open();
    void filter(const QString& query);
    /// The names shown now, best first.
    QStringList shownNames() const;
    /// Runs the highlighted command; false when none is shown.
    bool runCurrent();
    QLineEdit* field() const { return m_field; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Command {
        QString name;
        QPointer<QAction> action;
    };
    void collect();

    QMenuBar& m_menus;
    QLineEdit* m_field = nullptr;
    QTreeWidget* m_list = nullptr;
    std::vector<Command> m_commands;
};

} // namespace quillon::desktop
