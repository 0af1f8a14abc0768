#include "desktop/preach/PreachPreviewPanel.h"

#include "app/OutcomeCaption.h"
#include "desktop/DeskServices.h"
#include "desktop/preach/SectionBars.h"
#include "desktop/preach/SpeakerProfilesDialog.h"
#include "desktop/shell/ControllerBridge.h"
#include "platform/Clock.h"
#include "preach/PreachPaceLearner.h"
#include "preach/PreachTimeCategoriser.h"
#include "preach/SpeakerProfile.h"

#include <QCheckBox>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <cmath>
#include <map>

namespace quillon::desktop {

namespace {

// The same captions as `quillon preach-time`.
constexpr const char* categorisedCaption = "Sections labelled as prose or list by a model.";
constexpr const char* uncategorisedCaption = "Every section counted as prose or scripture reading.";

/// Long enough that a typist's next key restarts it, short enough to feel live.
constexpr int countDelayMs = 150;
/// A model is asked to label sections only once the preacher has paused.
constexpr int labelDelayMs = 2500;

QLabel* wrappingLabel(const char* name, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

PreachPreviewPanel::PreachPreviewPanel(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router,
                                       QWidget* parent)
    : QWidget(parent), m_services(services), m_router(std::move(router)) {
    setObjectName(QStringLiteral("preachPreview"));
    setAccessibleName(tr("Preach Preview"));
    m_bridge = new ControllerBridge(services.controller(), this);
    m_countTimer = new QTimer(this);
    m_countTimer->setSingleShot(true);
    m_countTimer->setInterval(countDelayMs);
    m_labelTimer = new QTimer(this);
    m_labelTimer->setSingleShot(true);
    m_labelTimer->setInterval(labelDelayMs);
    connect(m_countTimer, &QTimer::timeout, this, &PreachPreviewPanel::refreshNow);
    connect(m_labelTimer, &QTimer::timeout, this, &PreachPreviewPanel::startLabelling);
    connect(m_bridge, &ControllerBridge::selectionDidChange, this, &PreachPreviewPanel::scheduleRefresh);
    connect(m_bridge, &ControllerBridge::sermonDidChange, this, [this](const model::Uuid& id) {
        if (m_sermonId == id)
            scheduleRefresh();
    });

    m_total = new QLabel(this);
    m_total->setObjectName(QStringLiteral("preachTotal"));
    QFont big = m_total->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    m_total->setFont(big);
    m_caption = wrappingLabel("preachCaption", this);
    m_caption->setForegroundRole(QPalette::PlaceholderText);
    m_bars = new SectionBars(this);
    m_bars->setObjectName(QStringLiteral("preachBars"));
    m_paceLine = wrappingLabel("preachPace", this);
    m_explanation = wrappingLabel("preachExplanation", this);
    m_explanation->setForegroundRole(QPalette::PlaceholderText);
    m_learned = wrappingLabel("preachLearned", this);
    m_measured = new QCheckBox(tr("Measure my pace from recorded sermons"), this);
    m_measured->setObjectName(QStringLiteral("preachMeasured"));
    connect(m_measured, &QCheckBox::toggled, this, [this](bool on) {
        m_services.preferences().set(preach::PreachPace::measuredFromRecordingKey, on);
        refreshNow();
    });
    m_record = new QPushButton(tr("Record Actual Time…"), this);
    m_record->setObjectName(QStringLiteral("preachRecord"));
    m_record->setToolTip(QString::fromUtf8(preach::recordingPrompt));
    connect(m_record, &QPushButton::clicked, this, &PreachPreviewPanel::askRecordedTime);
    auto* profiles = new QPushButton(tr("Speaker Profiles…"), this);
    profiles->setObjectName(QStringLiteral("preachProfiles"));
    connect(profiles, &QPushButton::clicked, this, &PreachPreviewPanel::openProfiles);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_record);
    buttons->addWidget(profiles);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_total);
    layout->addWidget(m_caption);
    layout->addSpacing(6);
    layout->addWidget(m_bars);
    layout->addSpacing(6);
    layout->addWidget(m_paceLine);
    layout->addWidget(m_explanation);
    layout->addWidget(m_measured);
    layout->addLayout(buttons);
    layout->addWidget(m_learned);
    layout->addStretch();
    // The first count waits for the window to show: the Bible text it reads may still be loading.
    scheduleRefresh();
}

PreachPreviewPanel::~PreachPreviewPanel() = default;

void PreachPreviewPanel::scheduleRefresh() {
    m_countTimer->start();
}

QString PreachPreviewPanel::paceSource(const platform::Preferences& preferences, const std::string& speaker) {
    const preach::PreachPace general = preach::PreachPace::fromPreferences(preferences);
    const preach::PreachPace used = preach::PreachPace::forSpeaker(preferences, speaker);
    if (used.wordsPerMinute != general.wordsPerMinute)
        return tr("from %1’s speaker profile").arg(QString::fromStdString(speaker));
    if (general.measured) {
        const auto observations = preach::PreachPaceLearner::storedObservations(preferences);
        if (preach::PreachPaceLearner::learnedPace(observations, general.scriptureFactor, general.listFactor)) {
            const auto counted = std::min(observations.size(), preach::PreachPaceLearner::countedObservations);
            return counted == 1 ? tr("learned from 1 recorded sermon")
                                : tr("learned from %1 recorded sermons").arg(counted);
        }
        return tr("starting pace, until the first recorded sermon");
    }
    return preferences.contains(preach::PreachPace::proseWordsPerMinuteKey) ? tr("your chosen starting pace")
                                                                            : tr("the starting pace");
}

void PreachPreviewPanel::refreshNow() {
    ++m_generation;
    m_countTimer->stop();
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    m_sermonId = sermon ? std::optional(sermon->id) : std::nullopt;
    m_record->setEnabled(sermon != nullptr);
    const bool measured = m_services.preferences().boolean(preach::PreachPace::measuredFromRecordingKey, false);
    if (m_measured->isChecked() != measured) {
        const QSignalBlocker blocker(m_measured);
        m_measured->setChecked(measured);
    }
    if (!sermon) {
        m_estimate = {};
        m_total->setText(tr("No Sermon Selected"));
        m_caption->clear();
        m_bars->setEstimate(m_estimate, m_pace);
        m_paceLine->clear();
        m_explanation->clear();
        emit refreshed();
        return;
    }
    m_pace = preach::PreachPace::forSpeaker(m_services.preferences(), sermon->speaker);
    const exports::VerseTextSource& verses = m_services.verseText();
    m_estimate = preach::PreachTimeEstimate::estimate(
        *sermon, m_pace, [&verses](const model::SermonScripture& scripture) { return verses.passage(scripture).text; });
    showEstimate(m_estimate, QString::fromUtf8(uncategorisedCaption));
    m_paceLine->setText(tr("Pace: %1 words a minute, %2")
                            .arg(std::lround(m_pace.wordsPerMinute))
                            .arg(paceSource(m_services.preferences(), sermon->speaker)));
    m_explanation->setText(QString::fromStdString(m_pace.explanation()));
    if (!m_estimate.sections.empty())
        m_labelTimer->start();
    emit refreshed();
}

void PreachPreviewPanel::showEstimate(const preach::PreachTimeEstimate& estimate, const QString& caption) {
    m_total->setText(
        tr("About %1 to preach").arg(QString::fromStdString(preach::PreachTimeEstimate::formatted(estimate.minutes))));
    m_caption->setText(caption);
    m_bars->setEstimate(estimate, m_pace);
}

void PreachPreviewPanel::startLabelling() {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    if (!sermon || m_sermonId != sermon->id)
        return;
    using Outcome = orvane::IntelligenceOutcome<preach::PreachTimeEstimate>;
    auto* watcher = new QFutureWatcher<Outcome>(this);
    const quint64 generation = m_generation;
    connect(watcher, &QFutureWatcher<Outcome>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        const Outcome outcome = watcher->result();
        const app::OutcomeCaption caption = app::OutcomeCaption::of(outcome.path, outcome.needsGeneratedLabel,
                                                                    categorisedCaption, uncategorisedCaption);
        QStringList lines;
        for (const std::string& line : caption.lines())
            lines << QString::fromStdString(line);
        m_estimate = outcome.value;
        showEstimate(m_estimate, lines.join(u'\n'));
        emit refreshed();
    });
    // The passages are read here, so the work in the background holds nothing of the window's.
    std::map<model::Uuid, std::string> passages;
    for (const model::SermonTopic& topic : sermon->topics)
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            for (const model::SermonScripture& scripture : subTopic.scriptures)
                passages[scripture.id] = m_services.verseText().passage(scripture).text;
    watcher->setFuture(QtConcurrent::run([copy = *sermon, pace = m_pace, passages, router = m_router] {
        return preach::PreachTimeCategoriser::categorisedEstimate(
            copy, pace,
            [&passages](const model::SermonScripture& scripture) {
                const auto found = passages.find(scripture.id);
                return found == passages.end() ? std::string() : found->second;
            },
            *router);
    }));
}

bool PreachPreviewPanel::recordActualMinutes(double minutes) {
    const model::SermonNote* sermon = m_services.controller().selectedSermon();
    if (!sermon || !std::isfinite(minutes) || minutes <= 0)
        return false;
    // Counted at the general pace, as `quillon pace record` counts: the observation is of words, not of minutes.
    const exports::VerseTextSource& verses = m_services.verseText();
    const preach::PreachTimeEstimate counted = preach::PreachTimeEstimate::estimate(
        *sermon, preach::PreachPace::fromPreferences(m_services.preferences()),
        [&verses](const model::SermonScripture& scripture) { return verses.passage(scripture).text; });
    preach::PreachPaceLearner learner(m_services.preferences());
    learner.record({sermon->id, counted.words(preach::Delivery::prose), counted.words(preach::Delivery::scripture),
                    counted.words(preach::Delivery::list), minutes,
                    std::chrono::time_point_cast<std::chrono::seconds>(platform::SystemClock::shared().now())});
    const preach::PreachPace general = preach::PreachPace::fromPreferences(m_services.preferences());
    QString text = tr("Recorded %1 minutes for “%2”.")
                       .arg(QString::number(minutes, 'g', 4), QString::fromStdString(sermon->title));
    if (auto learned = learner.learnedPace(general.scriptureFactor, general.listFactor)) {
        text += u' ' + tr("Your learned pace: %1 words a minute.").arg(std::lround(*learned));
        if (!general.measured)
            text += u' ' + tr("Turn on “Measure my pace from recorded sermons” to estimate with it.");
    }
    m_learned->setText(text);
    refreshNow();
    return true;
}

void PreachPreviewPanel::askRecordedTime() {
    bool ok = false;
    const double suggested = std::max(1.0, std::round(m_estimate.minutes));
    const double minutes = QInputDialog::getDouble(
        this, tr("Record Actual Time"), QString::fromUtf8(preach::recordingPrompt), suggested, 0.5, 600, 1, &ok);
    if (ok)
        recordActualMinutes(minutes);
}

void PreachPreviewPanel::openProfiles() {
    SpeakerProfilesDialog dialog(m_services.preferences(), this);
    if (dialog.exec() == QDialog::Accepted)
        refreshNow();
}

} // namespace quillon::desktop
