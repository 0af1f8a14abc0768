#include "desktop/scripture/ScripturePanel.h"

#include "app/OutlineEditing.h"
#include "app/SermonNotesViewModel.h"
#include "desktop/outline/OutlineModel.h"
#include "export/BibleVerseText.h"
#include "scripture/BibleLoader.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace quillon::desktop {

namespace {

struct Highlighter {
    const char* name;
    const char* label;
    const char* colour;
};

// The highlighter colours a scripture's words are marked with (stored by name).
constexpr Highlighter highlighters[] = {
    {"yellow", "Yellow", "#fff176"}, {"green", "Green", "#a5d6a7"},   {"blue", "Blue", "#90caf9"},
    {"pink", "Pink", "#f48fb1"},     {"orange", "Orange", "#ffcc80"},
};
const QString lineBreakTool = QStringLiteral("lineBreak");

QString colourFor(const std::string& name) {
    for (const auto& highlighter : highlighters) {
        if (name == highlighter.name)
            return QString::fromLatin1(highlighter.colour);
    }
    return QString::fromStdString(name);
}

} // namespace

QString passageText(scripture::BibleLoader& loader, const model::SermonScripture& scripture) {
    exports::BibleVerseText source(loader);
    return QString::fromStdString(source.passage(scripture).text);
}

ScripturePanel::ScripturePanel(app::SermonNotesViewModel& controller, scripture::BibleLoader& loader, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_loader(loader) {
    setObjectName(QStringLiteral("scripturePanel"));
    m_reference = new QLabel(this);
    m_reference->setObjectName(QStringLiteral("scriptureReference"));
    QFont font = m_reference->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.2);
    m_reference->setFont(font);
    m_version = new QComboBox(this);
    m_version->setObjectName(QStringLiteral("scriptureVersionPicker"));
    m_version->setAccessibleName(tr("Bible version"));
    for (model::BibleVersion version : model::allBibleVersions) {
        if (m_loader.isAvailable(version))
            m_version->addItem(QString::fromUtf8(model::rawValue(version)), static_cast<int>(version));
    }
    m_tool = new QComboBox(this);
    m_tool->setObjectName(QStringLiteral("wordTool"));
    m_tool->setAccessibleName(tr("What clicking a word does"));
    for (const auto& highlighter : highlighters) {
        QPixmap swatch(12, 12);
        swatch.fill(QColor(QString::fromLatin1(highlighter.colour)));
        m_tool->addItem(QIcon(swatch), tr(highlighter.label), QString::fromLatin1(highlighter.name));
    }
    m_tool->addItem(tr("Line break"), lineBreakTool);
    m_send = new QPushButton(tr("Send to Screen"), this);
    m_send->setObjectName(QStringLiteral("sendToScreenButton"));
    m_send->setToolTip(tr("Put this passage on the connected screens (Ctrl+Return)"));
    m_text = new QTextBrowser(this);
    m_text->setObjectName(QStringLiteral("scriptureText"));
    m_text->setAccessibleName(tr("Verse text"));
    m_text->setOpenLinks(false);
    QFont textFont = m_text->font();
    textFont.setPointSizeF(textFont.pointSizeF() * 1.25);
    m_text->setFont(textFont);

    auto* header = new QHBoxLayout;
    // Two rows keep the panel narrow enough for the outline columns to keep their widths.
    header->addWidget(m_reference, 1);
    header->addWidget(m_send);
    auto* tools = new QHBoxLayout;
    tools->addWidget(m_version);
    tools->addWidget(m_tool);
    tools->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addLayout(header);
    layout->addLayout(tools);
    layout->addWidget(m_text, 1);

    connect(m_version, &QComboBox::currentIndexChanged, this, [this] {
        const auto& selection = m_controller.selection();
        if (m_syncing || !selection.sermonId || !selection.scriptureId)
            return;
        m_controller.setScriptureVersion(*selection.sermonId, *selection.scriptureId,
                                         static_cast<model::BibleVersion>(m_version->currentData().toInt()));
    });
    connect(m_text, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
        if (url.scheme() == QStringLiteral("word"))
            clickWord(url.path().toInt());
    });
    connect(m_send, &QPushButton::clicked, this, [this] {
        if (const model::SermonScripture* shown = scripture())
            emit sendToScreenRequested(scriptureTitle(*shown), QString::fromUtf8(model::rawValue(shown->version)));
    });
}

const model::SermonScripture* ScripturePanel::scripture() const {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    const auto& selection = m_controller.selection();
    if (!sermon || !selection.scriptureId)
        return nullptr;
    return app::findScripture(*sermon, *selection.scriptureId);
}

void ScripturePanel::sync() {
    const model::SermonScripture* shown = scripture();
    if (!shown)
        return;
    m_syncing = true;
    m_reference->setText(scriptureTitle(*shown));
    m_version->setCurrentIndex(m_version->findData(static_cast<int>(shown->version)));
    render(*shown);
    m_syncing = false;
}

void ScripturePanel::render(const model::SermonScripture& shown) {
    QString text = passageText(m_loader, shown);
    m_words = text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (m_words.isEmpty()) {
        m_text->setPlainText(
            tr("The %1 text of this passage is not installed.").arg(QString::fromUtf8(model::rawValue(shown.version))));
        return;
    }
    const QColor ink = palette().color(QPalette::Text);
    QString html = QStringLiteral("<p style=\"line-height:150%\">");
    for (int position = 0; position < m_words.size(); ++position) {
        auto highlight = shown.wordHighlights.find(position);
        QString style = QStringLiteral("color:%1;text-decoration:none;").arg(ink.name());
        if (highlight != shown.wordHighlights.end())
            style += QStringLiteral("background-color:%1;color:#000000;").arg(colourFor(highlight->second));
        html += QStringLiteral("<a href=\"word:%1\" style=\"%2\">%3</a>")
                    .arg(position)
                    .arg(style, m_words[position].toHtmlEscaped());
        bool lineBreak = std::find(shown.breakIndicators.begin(), shown.breakIndicators.end(), position) !=
                         shown.breakIndicators.end();
        html += lineBreak ? QStringLiteral("<br>") : QStringLiteral(" ");
    }
    m_text->setHtml(html + QStringLiteral("</p>"));
}

void ScripturePanel::clickWord(int position) {
    const model::SermonScripture* shown = scripture();
    const auto& selection = m_controller.selection();
    if (!shown || !selection.sermonId || position < 0 || position >= m_words.size() ||
        m_text->property("reading").toBool())
        return;
    const model::Uuid sermonId = *selection.sermonId;
    const model::Uuid scriptureId = shown->id;
    QString tool = m_tool->currentData().toString();
    if (tool == lineBreakTool) {
        bool on = std::find(shown->breakIndicators.begin(), shown->breakIndicators.end(), position) ==
                  shown->breakIndicators.end();
        m_controller.setLineBreak(sermonId, scriptureId, position, on);
        return;
    }
    auto existing = shown->wordHighlights.find(position);
    std::string colour = tool.toStdString();
    // Clicking a word in its own colour takes the colour off again.
    if (existing != shown->wordHighlights.end() && existing->second == colour)
        m_controller.setWordHighlight(sermonId, scriptureId, position, std::nullopt);
    else
        m_controller.setWordHighlight(sermonId, scriptureId, position, colour);
}

void ScripturePanel::setReading(bool reading) {
    m_text->setProperty("reading", reading);
    m_version->setEnabled(!reading);
    m_tool->setVisible(!reading);
}

} // namespace quillon::desktop
