#include "desktop/preach/SpeakerProfilesDialog.h"

#include "platform/Preferences.h"
#include "preach/PreachPaceLearner.h"
#include "preach/SpeakerProfile.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <set>

namespace quillon::desktop {

SpeakerProfilesDialog::SpeakerProfilesDialog(platform::Preferences& preferences, QWidget* parent)
    : QDialog(parent), m_preferences(preferences) {
    setObjectName(QStringLiteral("speakerProfiles"));
    setWindowTitle(tr("Speaker Profiles"));
    auto* intro = new QLabel(tr("A speaker’s own pace replaces the general pace for the sermons they preach. "
                                "Leave the pace blank to use the general one."),
                             this);
    intro->setWordWrap(true);
    m_table = new QTableWidget(0, 2, this);
    m_table->setObjectName(QStringLiteral("profilesTable"));
    m_table->setHorizontalHeaderLabels({tr("Speaker"), tr("Words a minute")});
    m_table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_table->verticalHeader()->hide();
    for (const preach::SpeakerProfile& profile : preach::SpeakerProfile::all(preferences))
        addRow(QString::fromStdString(profile.name),
               profile.wordsPerMinuteOverride ? QString::number(*profile.wordsPerMinuteOverride) : QString());

    auto* add = new QPushButton(tr("Add Speaker"), this);
    connect(add, &QPushButton::clicked, this, [this] {
        addRow({}, {});
        m_table->editItem(m_table->item(m_table->rowCount() - 1, 0));
    });
    auto* remove = new QPushButton(tr("Remove"), this);
    connect(remove, &QPushButton::clicked, this, [this] {
        if (m_table->currentRow() >= 0)
            m_table->removeRow(m_table->currentRow());
    });
    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("profilesProblem"));
    m_problem->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (save())
            accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* rowButtons = new QHBoxLayout;
    rowButtons->addWidget(add);
    rowButtons->addWidget(remove);
    rowButtons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(m_table);
    layout->addLayout(rowButtons);
    layout->addWidget(m_problem);
    layout->addWidget(buttons);
    resize(440, 320);
}

void SpeakerProfilesDialog::addRow(const QString& name, const QString& pace) {
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, 0, new QTableWidgetItem(name));
    m_table->setItem(row, 1, new QTableWidgetItem(pace));
}

QString SpeakerProfilesDialog::problem() const {
    return m_problem->text();
}

bool SpeakerProfilesDialog::save() {
    std::vector<preach::SpeakerProfile> profiles;
    std::set<QString> names;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QString name = m_table->item(row, 0) ? m_table->item(row, 0)->text().trimmed() : QString();
        const QString pace = m_table->item(row, 1) ? m_table->item(row, 1)->text().trimmed() : QString();
        if (name.isEmpty() && pace.isEmpty())
            continue;
        if (name.isEmpty()) {
            m_problem->setText(tr("Every profile needs the speaker’s name."));
            return false;
        }
        if (!names.insert(name.toCaseFolded()).second) {
            m_problem->setText(tr("“%1” is listed twice; keep one profile for each speaker.").arg(name));
            return false;
        }
        preach::SpeakerProfile profile{name.toStdString(), std::nullopt};
        if (!pace.isEmpty()) {
            bool ok = false;
            const double value = pace.toDouble(&ok);
            if (!ok || value < preach::PreachPaceLearner::slowestPace ||
                value > preach::PreachPaceLearner::fastestPace) {
                m_problem->setText(tr("The pace for %1 must be a number of words a minute from %2 to %3.")
                                       .arg(name)
                                       .arg(preach::PreachPaceLearner::slowestPace)
                                       .arg(preach::PreachPaceLearner::fastestPace));
                return false;
            }
            profile.wordsPerMinuteOverride = value;
        }
        profiles.push_back(std::move(profile));
    }
    // Profiles no longer listed go; the rest keep any members this dialog does not edit.
    nlohmann::json kept = nlohmann::json::array();
    if (auto stored = m_preferences.value(preach::SpeakerProfile::preferencesKey); stored && stored->is_array())
        for (const nlohmann::json& entry : *stored)
            if (entry.is_object() && entry.contains("name") && entry["name"].is_string() &&
                names.contains(QString::fromStdString(entry["name"].get<std::string>()).trimmed().toCaseFolded()))
                kept.push_back(entry);
    m_preferences.set(preach::SpeakerProfile::preferencesKey, kept);
    for (const preach::SpeakerProfile& profile : profiles)
        preach::SpeakerProfile::save(m_preferences, profile);
    m_problem->clear();
    return true;
}

} // namespace quillon::desktop
