#include "desktop/outline/BookCompleter.h"

#include "scripture/BibleBook.h"

#include <QCompleter>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QStringList>
#include <QVBoxLayout>

namespace quillon::desktop {

QCompleter* bookCompleter(QObject* parent) {
    QStringList names;
    for (const auto& book : scripture::allBibleBooks())
        names << QString::fromStdString(book.name);
    auto* completer = new QCompleter(names, parent);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setCompletionMode(QCompleter::InlineCompletion);
    return completer;
}

QString askForReference(QWidget* parent) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("addScriptureDialog"));
    dialog.setWindowTitle(QObject::tr("Add Scripture"));
    auto* field = new QLineEdit(&dialog);
    field->setObjectName(QStringLiteral("addScriptureReference"));
    field->setAccessibleName(QObject::tr("Reference"));
    field->setPlaceholderText(QObject::tr("John 3:16, rom 8 28-30, Psalm 23 ASV"));
    field->setCompleter(bookCompleter(field));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(QObject::tr("Reference:"), &dialog));
    layout->addWidget(field);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    dialog.resize(360, dialog.sizeHint().height());
    return dialog.exec() == QDialog::Accepted ? field->text().trimmed() : QString();
}

} // namespace quillon::desktop
