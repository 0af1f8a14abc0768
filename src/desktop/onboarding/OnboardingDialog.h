#pragma once

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace orvane {
class ModelRouter;
}

namespace quillon::desktop {

class DeskServices;

/// The short welcome shown on the first start only (and from Help later): the sample sermons, where
/// sermons are kept and how to choose a sync folder, whether a model server answers and how to start
/// one, and the mesh. Every page can be skipped.
class OnboardingDialog : public QDialog {
    Q_OBJECT
public:
    /// Set once the welcome has been shown, so it does not come back at the next start.
    static constexpr const char* shownKey = "Quillon.onboardingShown";

    OnboardingDialog(DeskServices& services, std::shared_ptr<orvane::ModelRouter> router, QWidget* parent = nullptr);

    int pageCount() const;
    int currentPage() const;
    void next();
    void back();
    /// The model page's sentence once the readiness check has answered.
    QString modelSentence() const;

signals:
    void modelChecked();

private:
    QWidget* page(const QString& title, const QString& body, QWidget* extra = nullptr);
    QWidget* samplesPage();
    QWidget* storagePage();
    QWidget* modelPage();
    QWidget* meshPage();
    void updateButtons();

    DeskServices& m_services;
    std::shared_ptr<orvane::ModelRouter> m_router;
    QStackedWidget* m_pages = nullptr;
    QLabel* m_model = nullptr;
    QLabel* m_syncNote = nullptr;
    QPushButton* m_back = nullptr;
    QPushButton* m_next = nullptr;
    QPushButton* m_skip = nullptr;
};

} // namespace quillon::desktop
