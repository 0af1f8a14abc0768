#pragma once

#include <QDialog>

#include <map>
#include <memory>
#include <string>

class QGroupBox;
class QLabel;
class QLineEdit;
class QScrollArea;

namespace quillon::app {
class SettingsSearch;
struct SettingDescription;
} // namespace quillon::app

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// Every setting the desk reads, grouped by area, each with its label and one-line explanation.
/// A value is stored when its field is left and only when it reads; otherwise the sentence that
/// refused it shows under the field. The search field at the top narrows the list by words, by the
/// start of a word being typed and through misspellings.
class SettingsWindow : public QDialog {
    Q_OBJECT
public:
    explicit SettingsWindow(platform::Preferences& preferences, QWidget* parent = nullptr);
    ~SettingsWindow() override;

    QLineEdit* searchField() const { return m_search; }
    /// Narrows the list to the settings matching `query` (all of them for an empty query).
    void filter(const QString& query);
    /// Shows the group named `group` (as the catalogue names it) at the top, with the search cleared.
    void showGroup(const QString& group);
    /// Applies `text` to the setting `key` as if typed in its field; the refusal, or empty.
    QString enter(const QString& key, const QString& text);
    /// The keys shown now, in catalogue order.
    QStringList visibleKeys() const;

signals:
    /// A setting was stored (or returned to its default).
    void settingChanged(const QString& key);

private:
    struct Row;
    QWidget* buildRow(const app::SettingDescription& setting, QWidget* parent);
    void store(Row& row, const QString& text);

    platform::Preferences& m_preferences;
    std::unique_ptr<app::SettingsSearch> m_searchIndex;
    QLineEdit* m_search = nullptr;
    QLabel* m_banner = nullptr;
    QLabel* m_nothing = nullptr;
    QScrollArea* m_scroll = nullptr;
    std::map<std::string, std::unique_ptr<Row>> m_rows;
    std::map<std::string, QGroupBox*> m_groups;
};

} // namespace quillon::desktop
