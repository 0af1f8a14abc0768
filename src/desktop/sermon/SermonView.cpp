#include "desktop/sermon/SermonView.h"

#include "app/SermonNotesViewModel.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/outline/OutlineColumns.h"
#include "desktop/outline/OutlineModel.h"
#include "desktop/outline/OutlineTree.h"
#include "desktop/sermon/DetailArea.h"
#include "desktop/sermon/SermonHeader.h"

#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillon::desktop {

SermonView::SermonView(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader,
                       const SpellChecker* checker, QWidget* parent)
    : QWidget(parent), m_controller(controller) {
    setObjectName(QStringLiteral("sermonView"));
    m_outline = new OutlineModel([&controller] { return controller.selectedSermon(); }, this);
    m_header = new SermonHeader(controller, this);
    m_detail = new DetailArea(controller, loader, checker, this);
    m_columns = new OutlineColumns(controller, *m_outline, this);
    m_modern = new QSplitter(Qt::Horizontal, this);
    m_modern->setObjectName(QStringLiteral("modernOutlineSplitter"));
    m_tree = new OutlineTree(controller, *m_outline, m_modern);
    m_modern->addWidget(m_tree);
    m_layouts = new QStackedWidget(this);
    m_layouts->setObjectName(QStringLiteral("outlineLayouts"));
    m_layouts->addWidget(m_columns);
    m_layouts->addWidget(m_modern);

    m_manuscript = new QWidget(this);
    auto* manuscriptTitle = new QLabel(tr("Manuscript"), m_manuscript);
    QFont font = manuscriptTitle->font();
    font.setBold(true);
    manuscriptTitle->setFont(font);
    m_notes = new RichTextEditor(checker, m_manuscript);
    m_notes->setObjectName(QStringLiteral("notesEditor"));
    m_notes->setAccessibleName(tr("Manuscript"));
    m_notes->setPlaceholderText(tr("Write the sermon here…"));
    auto* manuscriptLayout = new QVBoxLayout(m_manuscript);
    manuscriptLayout->setContentsMargins(8, 4, 8, 8);
    manuscriptLayout->addWidget(manuscriptTitle);
    manuscriptLayout->addWidget(m_notes, 1);

    m_vertical = new QSplitter(Qt::Vertical, this);
    m_vertical->setObjectName(QStringLiteral("sermonSplitter"));
    m_vertical->setChildrenCollapsible(false);
    m_vertical->addWidget(m_layouts);
    m_vertical->addWidget(m_manuscript);
    m_vertical->setStretchFactor(0, 3);
    m_vertical->setStretchFactor(1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_vertical, 1);

    connect(m_notes, &RichTextEditor::edited, this, &SermonView::storeNotes);
    connect(m_notes, &RichTextEditor::linkActivated, this, &SermonView::linkActivated);
    connect(m_detail, &DetailArea::linkActivated, this, &SermonView::linkActivated);
    connect(m_outline, &OutlineModel::renameRequested, this, [this](const model::Uuid& id, const QString& title) {
        if (const model::SermonNote* sermon = m_controller.selectedSermon())
            m_controller.renameOutlineItem(sermon->id, id, title.toStdString());
    });
    syncInterface();
    syncContent();
}

SermonView::~SermonView() = default;

void SermonView::syncSelection() {
    m_outline->refresh();
    m_columns->sync();
    m_tree->sync();
    m_detail->sync();
    m_header->sync();
    if (const model::SermonNote* sermon = m_controller.selectedSermon())
        m_notes->setContent(sermon->notes, sermon->notesRTFData);
}

void SermonView::syncContent() {
    syncSelection();
}

void SermonView::syncInterface() {
    const auto& state = m_controller.interfaceState();
    const int style = static_cast<int>(state.layoutStyle);
    if (style != m_shownStyle) {
        // The detail area sits beside whichever outline is shown.
        if (state.layoutStyle == app::AppLayoutStyle::classic)
            m_columns->setTrailingWidget(m_detail);
        else
            m_modern->addWidget(m_detail);
        m_layouts->setCurrentIndex(style);
        m_shownStyle = style;
    }
    m_outline->setEditable(!state.readingMode);
    m_header->setReading(state.readingMode);
    m_columns->setReading(state.readingMode);
    m_tree->setReading(state.readingMode);
    m_detail->setReading(state.readingMode);
    m_notes->setReading(state.readingMode);
    m_header->setCompact(state.compactLayout);
    m_manuscript->setVisible(!state.compactLayout);
}

void SermonView::recheckSpelling() {
    m_notes->recheckSpelling();
    m_detail->detailsEditor()->recheckSpelling();
}

void SermonView::storeNotes() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    if (!sermon || !m_notes->differsFromLoaded())
        return;
    m_controller.setNotes(sermon->id, m_notes->plainText(), m_notes->rtf());
}

} // namespace quillon::desktop
