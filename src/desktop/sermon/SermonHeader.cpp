#include "desktop/sermon/SermonHeader.h"

#include "app/SermonNotesViewModel.h"

#include <QBuffer>
#include <QDateEdit>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>

#include <chrono>

namespace quillon::desktop {

namespace {

constexpr int coverSide = 96;
constexpr int storedCoverSide = 1200;

void setTextKeepingCursor(QLineEdit* field, const QString& text) {
    if (field->text() == text)
        return;
    field->setText(text);
    // A long title shows its beginning, not its end, until the preacher edits it.
    if (!field->hasFocus())
        field->setCursorPosition(0);
}

QString joinedTags(const std::vector<std::string>& tags) {
    QStringList list;
    for (const auto& tag : tags)
        list << QString::fromStdString(tag);
    return list.join(QStringLiteral(", "));
}

std::vector<std::string> splitTags(const QString& text) {
    std::vector<std::string> tags;
    for (const QString& tag : text.split(u',', Qt::SkipEmptyParts)) {
        if (!tag.trimmed().isEmpty())
            tags.push_back(tag.trimmed().toStdString());
    }
    return tags;
}

QDate dateOf(model::DateTime time) {
    return QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count(), Qt::UTC).date();
}

model::DateTime dateTimeOf(QDate date) {
    return model::DateTime(std::chrono::seconds(QDateTime(date, QTime(12, 0), Qt::UTC).toSecsSinceEpoch()));
}

} // namespace

SermonHeader::SermonHeader(app::SermonNotesViewModel& controller, QWidget* parent)
    : QWidget(parent), m_controller(controller) {
    setObjectName(QStringLiteral("sermonHeader"));
    setAcceptDrops(true);
    m_title = addField(QStringLiteral("sermonTitleField"), tr("Sermon title"));
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    m_title->setFrame(false);
    m_speaker = addField(QStringLiteral("speakerField"), tr("Speaker"));
    m_series = addField(QStringLiteral("seriesField"), tr("Series"));
    m_venue = addField(QStringLiteral("venueField"), tr("Venue"));
    m_tags = addField(QStringLiteral("tagsField"), tr("Tags, separated by commas"));
    m_date = new QDateEdit(this);
    m_date->setObjectName(QStringLiteral("sermonDateField"));
    m_date->setAccessibleName(tr("Date preached"));
    m_date->setCalendarPopup(true);
    m_date->setDisplayFormat(QStringLiteral("d MMM yyyy"));
    m_cover = new QLabel(this);
    m_cover->setObjectName(QStringLiteral("coverImage"));
    m_cover->setAccessibleName(tr("Cover image"));
    m_cover->setFixedSize(coverSide, coverSide);
    m_cover->setAlignment(Qt::AlignCenter);
    m_cover->setWordWrap(true);
    m_cover->setFrameShape(QFrame::StyledPanel);
    m_cover->setToolTip(tr("Click to choose a cover image, or drop one here"));
    m_cover->setCursor(Qt::PointingHandCursor);
    m_cover->installEventFilter(this);

    m_details = new QWidget(this);
    auto* details = new QGridLayout(m_details);
    details->setContentsMargins(0, 0, 0, 0);
    details->addWidget(m_speaker, 0, 0);
    details->addWidget(m_series, 0, 1);
    details->addWidget(m_date, 0, 2);
    details->addWidget(m_venue, 1, 0);
    details->addWidget(m_tags, 1, 1, 1, 2);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(8, 8, 8, 4);
    layout->addWidget(m_cover, 0, 0, 2, 1, Qt::AlignTop);
    layout->addWidget(m_title, 0, 1);
    layout->addWidget(m_details, 1, 1);
    layout->setColumnStretch(1, 1);

    connect(m_title, &QLineEdit::textEdited, this, [this](const QString& text) {
        app::SermonMetadataChange c;
        c.title = text.toStdString();
        change(c);
    });
    connect(m_speaker, &QLineEdit::textEdited, this, [this](const QString& text) {
        app::SermonMetadataChange c;
        c.speaker = text.toStdString();
        change(c);
    });
    connect(m_series, &QLineEdit::textEdited, this, [this](const QString& text) {
        app::SermonMetadataChange c;
        c.series = text.toStdString();
        change(c);
    });
    connect(m_venue, &QLineEdit::textEdited, this, [this](const QString& text) {
        app::SermonMetadataChange c;
        c.venue = text.toStdString();
        change(c);
    });
    connect(m_tags, &QLineEdit::editingFinished, this, [this] {
        app::SermonMetadataChange c;
        c.tags = splitTags(m_tags->text());
        change(c);
    });
    connect(m_date, &QDateEdit::dateChanged, this, [this](QDate date) {
        app::SermonMetadataChange c;
        c.date = dateTimeOf(date);
        change(c);
    });
}

QLineEdit* SermonHeader::addField(const QString& name, const QString& placeholder) {
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setPlaceholderText(placeholder);
    field->setAccessibleName(placeholder);
    return field;
}

void SermonHeader::change(const app::SermonMetadataChange& change) {
    const auto& selection = m_controller.selection();
    if (m_syncing || !selection.sermonId)
        return;
    m_controller.setMetadata(*selection.sermonId, change);
}

void SermonHeader::sync() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    if (!sermon)
        return;
    m_syncing = true;
    setTextKeepingCursor(m_title, QString::fromStdString(sermon->title));
    setTextKeepingCursor(m_speaker, QString::fromStdString(sermon->speaker));
    setTextKeepingCursor(m_series, QString::fromStdString(sermon->series.value_or("")));
    setTextKeepingCursor(m_venue, QString::fromStdString(sermon->venue.value_or("")));
    if (!m_tags->hasFocus())
        setTextKeepingCursor(m_tags, joinedTags(sermon->tags));
    m_date->setDate(dateOf(sermon->date));
    showCover();
    m_syncing = false;
}

void SermonHeader::showCover() {
    const model::SermonNote* sermon = m_controller.selectedSermon();
    QPixmap pixmap;
    if (sermon && sermon->coverImageFileName) {
        auto file = m_controller.store().storage().mediaFolder() / *sermon->coverImageFileName;
        QImageReader reader(QString::fromStdString(file.string()));
        QSize size = reader.size();
        if (size.isValid())
            reader.setScaledSize(size.scaled(coverSide, coverSide, Qt::KeepAspectRatioByExpanding));
        pixmap = QPixmap::fromImage(reader.read());
    }
    if (pixmap.isNull()) {
        m_cover->setPixmap({});
        m_cover->setText(tr("Drop a cover image"));
    } else {
        m_cover->setPixmap(pixmap.copy(QRect(
            QPoint((pixmap.width() - coverSide) / 2, (pixmap.height() - coverSide) / 2), QSize(coverSide, coverSide))));
    }
}

bool SermonHeader::useCoverImage(const QString& imageFile) {
    const auto& selection = m_controller.selection();
    QImage image(imageFile);
    if (!selection.sermonId || image.isNull())
        return false;
    if (image.width() > storedCoverSide || image.height() > storedCoverSide)
        image = image.scaled(storedCoverSide, storedCoverSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    if (!image.convertToFormat(QImage::Format_RGB32).save(&buffer, "JPG", 85))
        return false;
    return m_controller.setCoverImage(*selection.sermonId, std::string_view(jpeg.constData(), jpeg.size()));
}

void SermonHeader::setReading(bool reading) {
    for (QLineEdit* field : {m_title, m_speaker, m_series, m_venue, m_tags})
        field->setReadOnly(reading);
    m_date->setReadOnly(reading);
    setAcceptDrops(!reading);
}

void SermonHeader::setCompact(bool compact) {
    m_details->setVisible(!compact);
    m_cover->setVisible(!compact);
}

void SermonHeader::dragEnterEvent(QDragEnterEvent* event) {
    const QMimeData* data = event->mimeData();
    if (data->hasUrls() && data->urls().size() == 1 && data->urls().front().isLocalFile() &&
        !QImageReader::imageFormat(data->urls().front().toLocalFile()).isEmpty())
        event->acceptProposedAction();
}

void SermonHeader::dropEvent(QDropEvent* event) {
    if (useCoverImage(event->mimeData()->urls().front().toLocalFile()))
        event->acceptProposedAction();
}

bool SermonHeader::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_cover && event->type() == QEvent::MouseButtonRelease && acceptDrops()) {
        QString file = QFileDialog::getOpenFileName(this, tr("Choose a Cover Image"), {},
                                                    tr("Images (*.jpg *.jpeg *.png *.webp *.bmp)"));
        if (!file.isEmpty())
            useCoverImage(file);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quillon::desktop
