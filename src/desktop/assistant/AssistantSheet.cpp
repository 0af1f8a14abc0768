#include "desktop/assistant/AssistantSheet.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/DeskServices.h"
#include "intelligence/FeatureText.h"
#include "intelligence/RewriteForTheRoom.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFormLayout>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace quillon::desktop {

namespace {

constexpr int linkRole = Qt::UserRole + 1;
constexpr int indexRole = Qt::UserRole + 2;
constexpr int copyRole = Qt::UserRole + 3;

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

/// The point the illustration finder starts from: the selected sub-topic, else the selected topic.
std::string selectedPoint(const app::SermonNotesViewModel& controller) {
    const model::SermonNote* sermon = controller.selectedSermon();
    if (!sermon)
        return {};
    const app::OutlineSelection& selection = controller.selection();
    for (const model::SermonTopic& topic : sermon->topics) {
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            if (selection.subTopicId == subTopic.id)
                return subTopic.title;
        if (selection.topicId == topic.id)
            return topic.title;
    }
    return {};
}

/// The first passage attached under the selection, else anywhere in the sermon.
std::string selectedReference(const app::SermonNotesViewModel& controller) {
    const model::SermonNote* sermon = controller.selectedSermon();
    if (!sermon)
        return {};
    std::string first;
    for (const model::SermonTopic& topic : sermon->topics)
        for (const model::SermonSubTopic& subTopic : topic.subTopics)
            for (const model::SermonScripture& scripture : subTopic.scriptures) {
                if (controller.selection().scriptureId == scripture.id)
                    return intelligence::featureText::referenceText(scripture);
                if (first.empty())
                    first = intelligence::featureText::referenceText(scripture);
            }
    return first;
}

int selectedSection(const app::SermonNotesViewModel& controller) {
    const model::SermonNote* sermon = controller.selectedSermon();
    if (!sermon)
        return 1;
    for (std::size_t i = 0; i < sermon->topics.size(); ++i)
        if (controller.selection().topicId == sermon->topics[i].id)
            return static_cast<int>(i) + 1;
    return 1;
}

} // namespace

AssistantSheet::AssistantSheet(app::AssistantFeatureId feature, DeskServices& services,
                               std::shared_ptr<orvane::ModelRouter> router, QWidget* parent)
    : QDialog(parent), m_feature(app::assistantFeature(feature)), m_services(services), m_router(std::move(router)) {
    setObjectName(QStringLiteral("assistantSheet"));
    setWindowTitle(QString::fromUtf8(m_feature.title));
    setAttribute(Qt::WA_DeleteOnClose, false);
    const model::SermonNote* sermon = services.controller().selectedSermon();
    m_sermonId = sermon ? std::optional(sermon->id) : std::nullopt;

    auto* title = new QLabel(QString::fromUtf8(m_feature.title), this);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    title->setFont(big);
    auto* summary = new QLabel(QString::fromUtf8(m_feature.summary), this);
    summary->setWordWrap(true);
    summary->setForegroundRole(QPalette::PlaceholderText);
    if (sermon)
        summary->setText(summary->text() + u'\n' + tr("Sermon: %1").arg(qt(sermon->title)));

    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("assistantProgress"));
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setMaximumHeight(8);
    m_progress->hide();
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("assistantStatus"));
    m_caption = new QLabel(this);
    m_caption->setObjectName(QStringLiteral("assistantCaption"));
    m_caption->setWordWrap(true);
    QFont captionFont = m_caption->font();
    captionFont.setBold(true);
    m_caption->setFont(captionFont);
    m_reason = new QLabel(this);
    m_reason->setObjectName(QStringLiteral("assistantReason"));
    m_reason->setWordWrap(true);
    m_reason->setForegroundRole(QPalette::PlaceholderText);
    m_empty = new QLabel(this);
    m_empty->setObjectName(QStringLiteral("assistantEmpty"));
    m_empty->setWordWrap(true);
    m_items = new QListWidget(this);
    m_items->setObjectName(QStringLiteral("assistantItems"));
    m_items->setWordWrap(true);
    m_items->setAlternatingRowColors(true);
    m_items->setSelectionMode(QAbstractItemView::SingleSelection);
    m_items->setAccessibleName(tr("Answer"));
    connect(m_items, &QListWidget::itemActivated, this, &AssistantSheet::activate);

    m_accept = new QPushButton(this);
    m_accept->setObjectName(QStringLiteral("assistantAccept"));
    m_accept->hide();
    connect(m_accept, &QPushButton::clicked, this, [this] {
        if (acceptProposal())
            accept();
    });
    m_copy = new QPushButton(tr("Copy"), this);
    m_copy->setEnabled(false);
    connect(m_copy, &QPushButton::clicked, this, [this] {
        QStringList lines;
        for (int i = 0; i < m_items->count(); ++i)
            lines << m_items->item(i)->data(copyRole).toString();
        QApplication::clipboard()->setText(lines.join(QStringLiteral("\n\n")));
    });
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("assistantCancel"));
    connect(m_cancel, &QPushButton::clicked, this, &AssistantSheet::cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(summary);
    layout->addLayout(buildInput());
    layout->addWidget(m_progress);
    layout->addWidget(m_status);
    layout->addWidget(m_caption);
    layout->addWidget(m_reason);
    layout->addWidget(m_empty);
    layout->addWidget(m_items, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_copy);
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_accept);
    layout->addLayout(buttons);
    resize(560, 520);

    m_caption->hide();
    m_reason->hide();
    m_empty->hide();
    if (!m_sermonId && m_feature.input != app::AssistantInput::question) {
        m_empty->setText(tr("Select a sermon first."));
        m_empty->show();
        if (m_ask)
            m_ask->setEnabled(false);
        return;
    }
    const bool needsText = m_feature.input == app::AssistantInput::question ||
                           m_feature.input == app::AssistantInput::reference ||
                           m_feature.input == app::AssistantInput::point;
    if (!needsText || !m_text->text().isEmpty())
        run();
}

AssistantSheet::~AssistantSheet() = default;

QLayout* AssistantSheet::buildInput() {
    auto* form = new QFormLayout;
    const app::SermonNotesViewModel& controller = m_services.controller();
    const model::SermonNote* sermon = controller.selectedSermon();
    const app::AssistantInput input = m_feature.input;
    if (input == app::AssistantInput::section || input == app::AssistantInput::sectionAndRoom) {
        m_section = new QSpinBox(this);
        m_section->setObjectName(QStringLiteral("assistantSection"));
        m_section->setRange(1, std::max<int>(1, sermon ? static_cast<int>(sermon->topics.size()) : 1));
        m_section->setValue(selectedSection(controller));
        form->addRow(tr("Section"), m_section);
    }
    if (input == app::AssistantInput::sectionAndRoom) {
        m_room = new QComboBox(this);
        m_room->setObjectName(QStringLiteral("assistantRoom"));
        using intelligence::RoomProfile;
        for (RoomProfile room : {RoomProfile::largeSanctuary, RoomProfile::smallGroup, RoomProfile::youthAndFamily,
                                 RoomProfile::liveStream})
            m_room->addItem(qt(std::string(intelligence::label(room))), qt(std::string(intelligence::rawValue(room))));
        form->addRow(tr("Room"), m_room);
    }
    if (input == app::AssistantInput::question || input == app::AssistantInput::reference ||
        input == app::AssistantInput::point) {
        m_text = new QLineEdit(this);
        m_text->setObjectName(QStringLiteral("assistantText"));
        m_text->setPlaceholderText(QString::fromUtf8(m_feature.inputPrompt));
        m_text->setAccessibleName(QString::fromUtf8(m_feature.inputPrompt));
        if (input == app::AssistantInput::reference)
            m_text->setText(qt(selectedReference(controller)));
        if (input == app::AssistantInput::point)
            m_text->setText(qt(selectedPoint(controller)));
        connect(m_text, &QLineEdit::returnPressed, this, &AssistantSheet::run);
    }
    if (input != app::AssistantInput::none) {
        m_ask = new QPushButton(input == app::AssistantInput::question ? tr("Ask") : tr("Go"), this);
        m_ask->setObjectName(QStringLiteral("assistantRun"));
        m_ask->setAutoDefault(false);
        connect(m_ask, &QPushButton::clicked, this, &AssistantSheet::run);
        form->addRow(QString(), m_ask);
    }
    return form;
}

app::AssistantRequest AssistantSheet::request() const {
    app::AssistantRequest request;
    const app::SermonNotesViewModel& controller = m_services.controller();
    if (const model::SermonNote* sermon = m_sermonId ? controller.sermon(*m_sermonId) : nullptr)
        request.sermon = *sermon;
    if (m_feature.id == app::AssistantFeatureId::seriesPlanner ||
        m_feature.id == app::AssistantFeatureId::askYourLibrary ||
        m_feature.id == app::AssistantFeatureId::illustrationFinder)
        request.library = controller.store().sermons();
    if (m_section)
        request.section = m_section->value();
    if (m_room)
        request.room = m_room->currentData().toString().toStdString();
    if (m_text)
        request.text = m_text->text().trimmed().toStdString();
    return request;
}

void AssistantSheet::run() {
    const quint64 generation = ++m_generation;
    m_running = true;
    m_answer.reset();
    m_items->clear();
    m_caption->hide();
    m_reason->hide();
    m_empty->hide();
    m_accept->hide();
    m_copy->setEnabled(false);
    m_progress->show();
    m_status->setText(m_feature.asksModel ? tr("Asking the model… the model-free answer follows if none answers.")
                                          : tr("Searching…"));
    m_status->show();
    m_cancel->setText(tr("Cancel"));

    app::AssistantServices services{&m_services.preferences(), &m_services.verseText(), nullptr};
    if (m_feature.id == app::AssistantFeatureId::passageCommentary ||
        m_feature.id == app::AssistantFeatureId::illustrationFinder)
        // The commentaries live as long as the services; the sheet only borrows them.
        services.commentaries =
            std::shared_ptr<intelligence::CommentaryLibrary>(std::shared_ptr<void>(), &m_services.commentaries());
    auto* watcher = new QFutureWatcher<app::AssistantAnswer>(this);
    connect(watcher, &QFutureWatcher<app::AssistantAnswer>::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        if (generation != m_generation)
            return;
        m_running = false;
        showAnswer(watcher->result());
    });
    watcher->setFuture(QtConcurrent::run([id = m_feature.id, request = request(), router = m_router, services] {
        return app::runAssistant(id, request, *router, services);
    }));
}

void AssistantSheet::cancel() {
    // The model call cannot be interrupted mid-reply, but its answer is dropped: nothing changes.
    ++m_generation;
    m_running = false;
    m_progress->hide();
    reject();
}

void AssistantSheet::showAnswer(const app::AssistantAnswer& answer) {
    m_answer = answer;
    m_progress->hide();
    m_status->hide();
    m_cancel->setText(tr("Close"));
    if (!answer.emptyState.empty()) {
        m_empty->setText(qt(answer.emptyState));
        m_empty->show();
    }
    QString captionText = qt(answer.caption.label);
    if (!answer.caption.caption.empty())
        captionText += (captionText.isEmpty() ? QString() : QStringLiteral(" ")) + qt(answer.caption.caption);
    m_caption->setText(captionText);
    m_caption->setVisible(!captionText.isEmpty());
    m_reason->setText(qt(answer.caption.reason));
    m_reason->setVisible(!answer.caption.reason.empty());
    const bool proposes = answer.proposal != app::AssistantProposal::none;
    for (std::size_t i = 0; i < answer.items.size(); ++i) {
        const app::AssistantItem& line = answer.items[i];
        QString text = qt(line.text);
        if (!line.detail.empty())
            text += u'\n' + qt(line.detail);
        if (proposes && line.proposable) {
            auto* item = new QListWidgetItem(text, m_items);
            item->setData(indexRole, static_cast<int>(i));
            item->setData(copyRole, text);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(Qt::Unchecked);
            continue;
        }
        auto* item = new QListWidgetItem(m_items);
        item->setData(linkRole, qt(line.link));
        item->setData(indexRole, static_cast<int>(i));
        item->setData(copyRole, text);
        m_items->setItemWidget(item, answerLabel(line));
    }
    fitItems();
    m_copy->setEnabled(!answer.items.empty());
    if (proposes && m_sermonId) {
        m_accept->setText(answer.proposal == app::AssistantProposal::addTags ? tr("Add Ticked Tags")
                                                                             : tr("Use Ticked Title"));
        m_accept->show();
        m_accept->setDefault(true);
    }
    emit answered();
}

QColor AssistantSheet::quietColour() const {
    // Halfway between the text and its background, readable in dark and light palettes alike.
    const QColor text = palette().color(QPalette::Text);
    const QColor base = palette().color(QPalette::Base);
    return QColor((text.red() * 11 + base.red() * 9) / 20, (text.green() * 11 + base.green() * 9) / 20,
                  (text.blue() * 11 + base.blue() * 9) / 20);
}

QLabel* AssistantSheet::answerLabel(const app::AssistantItem& line) {
    // The line itself, its source or reason smaller beneath it, and a source's name as a link.
    QString html = qt(line.text).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
    if (!line.link.empty())
        html = QStringLiteral("<a href=\"%1\">%2</a>").arg(qt(line.link).toHtmlEscaped(), html);
    if (!line.detail.empty())
        html += QStringLiteral("<br><span style=\"color:%1\">%2</span>")
                    .arg(quietColour().name(), qt(line.detail).toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")));
    auto* label = new QLabel(html);
    label->setWordWrap(true);
    label->setTextFormat(Qt::RichText);
    label->setContentsMargins(6, 5, 6, 5);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse);
    connect(label, &QLabel::linkActivated, this, &AssistantSheet::sourceActivated);
    return label;
}

void AssistantSheet::fitItems() {
    const int width = m_items->viewport()->width() - 2;
    for (int i = 0; i < m_items->count(); ++i) {
        QListWidgetItem* item = m_items->item(i);
        if (auto* label = qobject_cast<QLabel*>(m_items->itemWidget(item)))
            item->setSizeHint(QSize(width, label->heightForWidth(width)));
    }
}

void AssistantSheet::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    fitItems();
}

void AssistantSheet::activate(QListWidgetItem* item) {
    const QString link = item->data(linkRole).toString();
    if (!link.isEmpty())
        emit sourceActivated(link);
}

bool AssistantSheet::acceptProposal() {
    if (!m_answer || !m_sermonId)
        return false;
    std::vector<std::size_t> chosen;
    for (int i = 0; i < m_items->count(); ++i) {
        QListWidgetItem* item = m_items->item(i);
        if ((item->flags() & Qt::ItemIsUserCheckable) && item->checkState() == Qt::Checked)
            chosen.push_back(static_cast<std::size_t>(item->data(indexRole).toInt()));
    }
    if (m_answer->proposal == app::AssistantProposal::setTitle && chosen.size() > 1)
        chosen.resize(1);
    return app::applyProposal(m_services.controller(), *m_sermonId, *m_answer, chosen);
}

} // namespace quillon::desktop
