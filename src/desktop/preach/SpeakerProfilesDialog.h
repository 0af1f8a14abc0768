#pragma once

#include <QDialog>

class QLabel;
class QTableWidget;

namespace quillon::platform {
class Preferences;
}

namespace quillon::desktop {

/// The speaker profiles: a name, and the words a minute that replace the pace for that speaker's
/// sermons (blank keeps the general pace). Saved only when the preacher presses Save, and only when
/// every row reads.
class SpeakerProfilesDialog : public QDialog {
    Q_OBJECT
public:
    explicit SpeakerProfilesDialog(platform::Preferences& preferences, QWidget* parent = nullptr);

    /// Checks and stores the rows; false (with the sentence shown) when one cannot be read.
    bool save();
    /// The sentence that refused the last save, if any.
    QString problem() const;
    QTableWidget* table() const { return m_table; }

private:
    void addRow(const QString& name, const QString& pace);

    platform::Preferences& m_preferences;
    QTableWidget* m_table = nullptr;
    QLabel* m_problem = nullptr;
};

} // namespace quillon::desktop
