#pragma once

#include "app/SermonNotesViewModel.h"

#include <QDialog>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;

namespace quillon::desktop {

/// The new-sermon form: title, speaker, date, series and a starting template (its name and
/// sentence), with the storage note when the library's disk is nearly full.
class NewSermonDialog : public QDialog {
    Q_OBJECT
public:
    /// `storageNote` is shown under the form when present.
    NewSermonDialog(const std::optional<std::string>& storageNote, QWidget* parent = nullptr);

    app::NewSermon form() const;

private:
    void updateOk();

    QLineEdit* m_title = nullptr;
    QLineEdit* m_speaker = nullptr;
    QLineEdit* m_series = nullptr;
    QDateEdit* m_date = nullptr;
    QComboBox* m_template = nullptr;
    QLabel* m_description = nullptr;
    QPushButton* m_ok = nullptr;
};

} // namespace quillon::desktop
