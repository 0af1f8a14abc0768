#include "desktop/sheets/NewSermonDialog.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace quillon::desktop {

namespace {

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
}

} // namespace

NewSermonDialog::NewSermonDialog(const std::optional<std::string>& storageNote, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("newSermonDialog"));
    setWindowTitle(tr("New Sermon"));
    m_title = new QLineEdit(this);
    m_title->setObjectName(QStringLiteral("newSermonTitle"));
    m_speaker = new QLineEdit(this);
    m_speaker->setObjectName(QStringLiteral("newSermonSpeaker"));
    m_series = new QLineEdit(this);
    m_series->setObjectName(QStringLiteral("newSermonSeries"));
    m_date = new QDateEdit(QDate::currentDate(), this);
    m_date->setObjectName(QStringLiteral("newSermonDate"));
    m_date->setCalendarPopup(true);
    m_date->setDisplayFormat(QStringLiteral("d MMM yyyy"));
    m_template = new QComboBox(this);
    m_template->setObjectName(QStringLiteral("newSermonTemplate"));
    for (store::SermonTemplate sermonTemplate : store::allSermonTemplates)
        m_template->addItem(text(store::displayName(sermonTemplate)), static_cast<int>(sermonTemplate));
    m_description = new QLabel(this);
    m_description->setWordWrap(true);
    m_description->setForegroundRole(QPalette::PlaceholderText);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setText(tr("Create"));
    m_ok->setObjectName(QStringLiteral("newSermonCreate"));
    auto* layout = new QFormLayout(this);
    layout->addRow(tr("Title:"), m_title);
    layout->addRow(tr("Speaker:"), m_speaker);
    layout->addRow(tr("Series:"), m_series);
    layout->addRow(tr("Date:"), m_date);
    layout->addRow(tr("Template:"), m_template);
    layout->addRow(QString(), m_description);
    if (storageNote) {
        auto* note = new QLabel(QString::fromStdString(*storageNote), this);
        note->setObjectName(QStringLiteral("newSermonStorageNote"));
        note->setWordWrap(true);
        layout->addRow(QString(), note);
    }
    layout->addRow(buttons);

    auto describe = [this] {
        auto sermonTemplate = static_cast<store::SermonTemplate>(m_template->currentData().toInt());
        m_description->setText(text(store::templateDescription(sermonTemplate)));
    };
    connect(m_template, &QComboBox::currentIndexChanged, this, describe);
    connect(m_title, &QLineEdit::textChanged, this, &NewSermonDialog::updateOk);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    describe();
    updateOk();
}

void NewSermonDialog::updateOk() {
    m_ok->setEnabled(!m_title->text().trimmed().isEmpty());
}

app::NewSermon NewSermonDialog::form() const {
    app::NewSermon form;
    form.title = m_title->text().trimmed().toStdString();
    form.speaker = m_speaker->text().trimmed().toStdString();
    if (!m_series->text().trimmed().isEmpty())
        form.series = m_series->text().trimmed().toStdString();
    form.date =
        model::DateTime(std::chrono::seconds(QDateTime(m_date->date(), QTime(12, 0), Qt::UTC).toSecsSinceEpoch()));
    form.sermonTemplate = static_cast<store::SermonTemplate>(m_template->currentData().toInt());
    return form;
}

} // namespace quillon::desktop
