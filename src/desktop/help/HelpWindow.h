#pragma once

#include <QDialog>

#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;

namespace orvane {
class ModelRouter;
}

namespace quillon::app {
class HelpLibrary;
}

namespace quillon::desktop {

/// The help articles for preachers, with a search over them and "Ask how-to", which answers a
/// question from the articles with the model when one answers, citing the article, and lists the
/// matching articles otherwise.
class HelpWindow : public QDialog {
    Q_OBJECT
public:
    explicit HelpWindow(std::shared_ptr<orvane::ModelRouter> router, QWidget* parent = nullptr);
    ~HelpWindow() override;

    /// The articles shipped with the application, read from its resources.
    static std::unique_ptr<app::HelpLibrary> shippedArticles();

    void filter(const QString& query);
    /// Shows the article `id` ("preach-preview"); false when there is none.
    bool showArticle(const QString& id);
    /// Asks the question in the background; `answered` follows.
    void ask(const QString& question);
    /// The titles listed now.
    QStringList listedTitles() const;
    QLineEdit* searchField() const { return m_search; }

signals:
    void answered();

private:
    std::unique_ptr<app::HelpLibrary> m_library;
    std::shared_ptr<orvane::ModelRouter> m_router;
    quint64 m_generation = 0;
    QLineEdit* m_search = nullptr;
    QLabel* m_banner = nullptr;
    QListWidget* m_list = nullptr;
    QTextBrowser* m_article = nullptr;
    QLineEdit* m_question = nullptr;
    QPushButton* m_ask = nullptr;
    QLabel* m_answerCaption = nullptr;
    QTextBrowser* m_answer = nullptr;
};

} // namespace quillon::desktop
