#include "desktop/settings/SettingsWindow.h"

#include "app/SettingsCatalogue.h"
#include "app/SettingsSearch.h"
#include "platform/Preferences.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <set>

namespace quillon::desktop {

struct SettingsWindow::Row {
    const app::SettingDescription* setting = nullptr;
    QWidget* widget = nullptr;
    QLineEdit* field = nullptr;
    QCheckBox* check = nullptr;
    QComboBox* choice = nullptr;
    QLabel* problem = nullptr;
};

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

SettingsWindow::SettingsWindow(platform::Preferences& preferences, QWidget* parent)
    : QDialog(parent), m_preferences(preferences), m_searchIndex(std::make_unique<app::SettingsSearch>()) {
    setObjectName(QStringLiteral("settingsWindow"));
    setWindowTitle(tr("Settings"));
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("settingsSearch"));
    m_search->setPlaceholderText(tr("Search settings"));
    m_search->setClearButtonEnabled(true);
    m_search->setAccessibleName(tr("Search settings"));
    connect(m_search, &QLineEdit::textChanged, this, &SettingsWindow::filter);
    m_banner = new QLabel(this);
    m_banner->setObjectName(QStringLiteral("settingsBanner"));
    m_banner->setForegroundRole(QPalette::PlaceholderText);
    m_banner->hide();
    m_nothing = new QLabel(this);
    m_nothing->setObjectName(QStringLiteral("settingsNothing"));
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->hide();

    auto* content = new QWidget;
    auto* contentLayout = new QVBoxLayout(content);
    for (const std::string& group : app::SettingsCatalogue::groups()) {
        auto* box = new QGroupBox(QString::fromStdString(group), content);
        box->setObjectName(QString::fromStdString("group:" + group));
        auto* boxLayout = new QVBoxLayout(box);
        for (const app::SettingDescription& setting : app::SettingsCatalogue::all())
            if (group == setting.group)
                boxLayout->addWidget(buildRow(setting, box));
        contentLayout->addWidget(box);
        m_groups[group] = box;
    }
    contentLayout->addStretch();
    m_scroll = new QScrollArea(this);
    m_scroll->setWidget(content);
    m_scroll->setWidgetResizable(true);

    auto* close = new QPushButton(tr("Done"), this);
    close->setDefault(false);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_banner);
    layout->addWidget(m_nothing);
    layout->addWidget(m_scroll, 1);
    layout->addWidget(close, 0, Qt::AlignRight);
    resize(640, 720);
}

SettingsWindow::~SettingsWindow() = default;

QWidget* SettingsWindow::buildRow(const app::SettingDescription& setting, QWidget* parent) {
    auto row = std::make_unique<Row>();
    row->setting = &setting;
    row->widget = new QWidget(parent);
    row->widget->setObjectName(QString::fromUtf8(setting.key));
    auto* layout = new QVBoxLayout(row->widget);
    layout->setContentsMargins(0, 4, 0, 4);
    layout->setSpacing(2);
    const QString current = QString::fromStdString(app::SettingsCatalogue::displayed(m_preferences, setting));
    Row* raw = row.get();
    if (setting.kind == app::SettingKind::boolean) {
        row->check = new QCheckBox(text(setting.label), row->widget);
        row->check->setChecked(current == QStringLiteral("true"));
        connect(row->check, &QCheckBox::toggled, this,
                [this, raw](bool on) { store(*raw, on ? QStringLiteral("true") : QStringLiteral("false")); });
        layout->addWidget(row->check);
    } else {
        auto* label = new QLabel(text(setting.label), row->widget);
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
        layout->addWidget(label);
        auto* line = new QHBoxLayout;
        if (setting.kind == app::SettingKind::choice) {
            row->choice = new QComboBox(row->widget);
            for (const std::string& choice : app::SettingsCatalogue::choices(setting))
                row->choice->addItem(QString::fromStdString(choice));
            row->choice->setCurrentText(current.isEmpty() ? text(setting.defaultText) : current);
            row->choice->setAccessibleName(text(setting.label));
            connect(row->choice, &QComboBox::currentTextChanged, this,
                    [this, raw](const QString& value) { store(*raw, value); });
            line->addWidget(row->choice);
            line->addStretch();
        } else {
            row->field = new QLineEdit(current, row->widget);
            row->field->setPlaceholderText(text(setting.defaultText));
            row->field->setAccessibleName(text(setting.label));
            label->setBuddy(row->field);
            connect(row->field, &QLineEdit::editingFinished, this, [this, raw] { store(*raw, raw->field->text()); });
            line->addWidget(row->field);
            if (setting.kind == app::SettingKind::folder) {
                auto* choose = new QPushButton(tr("Choose…"), row->widget);
                choose->setAutoDefault(false);
                connect(choose, &QPushButton::clicked, this, [this, raw] {
                    const QString folder =
                        QFileDialog::getExistingDirectory(this, text(raw->setting->label), raw->field->text());
                    if (!folder.isEmpty()) {
                        raw->field->setText(folder);
                        store(*raw, folder);
                    }
                });
                line->addWidget(choose);
            }
        }
        layout->addLayout(line);
    }
    auto* explanation = new QLabel(text(setting.explanation), row->widget);
    explanation->setWordWrap(true);
    explanation->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(explanation);
    row->problem = new QLabel(row->widget);
    row->problem->setObjectName(QStringLiteral("problem"));
    row->problem->setWordWrap(true);
    row->problem->setStyleSheet(QStringLiteral("color: #c0392b;"));
    row->problem->hide();
    layout->addWidget(row->problem);
    QWidget* widget = row->widget;
    m_rows[setting.key] = std::move(row);
    return widget;
}

void SettingsWindow::store(Row& row, const QString& typed) {
    if (auto refused = app::SettingsCatalogue::apply(m_preferences, *row.setting, typed.toStdString())) {
        row.problem->setText(QString::fromStdString(*refused));
        row.problem->show();
        return;
    }
    row.problem->hide();
    row.problem->clear();
    emit settingChanged(QString::fromUtf8(row.setting->key));
}

QString SettingsWindow::enter(const QString& key, const QString& typed) {
    auto found = m_rows.find(key.toStdString());
    if (found == m_rows.end())
        return tr("There is no setting called %1.").arg(key);
    Row& row = *found->second;
    if (row.field)
        row.field->setText(typed);
    store(row, typed);
    return row.problem->text();
}

void SettingsWindow::filter(const QString& query) {
    const std::string typed = query.trimmed().toStdString();
    std::set<std::string> shown;
    if (!typed.empty())
        for (const std::string& key : m_searchIndex->keys(typed))
            shown.insert(key);
    const bool all = typed.empty();
    std::set<std::string> groupsShown;
    for (auto& [key, row] : m_rows) {
        const bool visible = all || shown.contains(key);
        row->widget->setVisible(visible);
        if (visible)
            groupsShown.insert(row->setting->group);
    }
    for (auto& [group, box] : m_groups)
        box->setVisible(groupsShown.contains(group));
    const QString banner = all ? QString() : QString::fromStdString(m_searchIndex->banner(typed));
    m_banner->setText(banner);
    m_banner->setVisible(!banner.isEmpty());
    m_nothing->setText(tr("No setting matches “%1”.").arg(query.trimmed()));
    m_nothing->setVisible(!all && shown.empty());
}

void SettingsWindow::showGroup(const QString& group) {
    m_search->clear();
    auto found = m_groups.find(group.toStdString());
    if (found == m_groups.end())
        return;
    m_scroll->ensureWidgetVisible(found->second, 0, 0);
    m_scroll->verticalScrollBar()->setValue(found->second->y());
}

QStringList SettingsWindow::visibleKeys() const {
    QStringList keys;
    for (const app::SettingDescription& setting : app::SettingsCatalogue::all()) {
        const auto& row = m_rows.at(setting.key);
        if (!row->widget->isHidden())
            keys << QString::fromUtf8(setting.key);
    }
    return keys;
}

} // namespace quillon::desktop
