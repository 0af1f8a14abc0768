#include "desktop/sermon/DetailArea.h"

#include "app/OutlineEditing.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/scripture/ScripturePanel.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillon::desktop {

namespace {

enum Page { hintPage, detailsPage, scripturePage };

} // namespace

DetailArea::DetailArea(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader,
                       const SpellChecker* checker, QWidget* parent)
    : QWidget(parent), m_controller(controller) {
    setObjectName(QStringLiteral("detailArea"));
    m_hint = new QLabel(tr("Choose a topic, sub-topic or scripture to see its details."), this);
    m_hint->setObjectName(QStringLiteral("detailHint"));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setForegroundRole(QPalette::PlaceholderText);

    m_detailsPage = new QWidget(this);
    m_itemTitle = new QLabel(m_detailsPage);
    m_itemTitle->setObjectName(QStringLiteral("detailTitle"));
    QFont font = m_itemTitle->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.2);
    m_itemTitle->setFont(font);
    m_itemTitle->setWordWrap(true);
    m_editor = new RichTextEditor(checker, m_detailsPage);
    m_editor->setObjectName(QStringLiteral("detailsEditor"));
    m_editor->setAccessibleName(tr("Details"));
    m_editor->setPlaceholderText(tr("Details of this point"));
    auto* detailsLayout = new QVBoxLayout(m_detailsPage);
    detailsLayout->setContentsMargins(8, 4, 8, 4);
    detailsLayout->addWidget(m_itemTitle);
    detailsLayout->addWidget(m_editor, 1);

    m_scripture = new ScripturePanel(controller, loader, this);

    m_pages = new QStackedWidget(this);
    m_pages->insertWidget(hintPage, m_hint);
    m_pages->insertWidget(detailsPage, m_detailsPage);
    m_pages->insertWidget(scripturePage, m_scripture);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pages);

    connect(m_editor, &RichTextEditor::edited, this, &DetailArea::store);
    connect(m_editor, &RichTextEditor::linkActivated, this, &DetailArea::linkActivated);
}

void DetailArea::sync() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    const auto& selection = m_controller.selection();
    if (!sermon || !selection.topicId) {
        m_pages->setCurrentIndex(hintPage);
        return;
    }
    if (selection.scriptureId) {
        m_scripture->sync();
        m_pages->setCurrentIndex(scripturePage);
        return;
    }
    if (selection.subTopicId) {
        if (const model::SermonSubTopic* subTopic = app::findSubTopic(*sermon, *selection.subTopicId)) {
            m_itemTitle->setText(QString::fromStdString(subTopic->title));
            m_editor->setContent(subTopic->details, subTopic->detailsRTFData);
        }
    } else if (const model::SermonTopic* topic = app::findTopic(*sermon, *selection.topicId)) {
        m_itemTitle->setText(QString::fromStdString(topic->title));
        m_editor->setContent(topic->details, topic->detailsRTFData);
    }
    m_pages->setCurrentIndex(detailsPage);
}

void DetailArea::store() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    const auto& selection = m_controller.selection();
    if (!sermon || !selection.topicId || selection.scriptureId)
        return;
    const model::Uuid itemId = selection.subTopicId ? *selection.subTopicId : *selection.topicId;
    // Repaints of the spelling marks also report a change; only real edits are stored.
    if (!m_editor->differsFromLoaded())
        return;
    std::string plain = m_editor->plainText();
    m_controller.setDetails(sermon->id, itemId, plain, m_editor->rtf());
}

void DetailArea::setReading(bool reading) {
    m_editor->setReading(reading);
    m_scripture->setReading(reading);
}

} // namespace quillon::desktop
