// The settings window stores only values that read, says why it refuses one, and finds settings by
// words, word starts and misspellings.
#include "desktop/settings/SettingsWindow.h"
#include "desktop/DeskFixture.h"
#include "platform/Preferences.h"
#include "preach/PreachPace.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace quillon;
using namespace quillon::desktop;

class SettingsWindowTest : public QObject {
    Q_OBJECT

private slots:
    void searchFindsSettingsThroughMisspellings() {
        platform::Preferences preferences = platform::Preferences::inMemory();
        SettingsWindow window(preferences);
        const int all = window.visibleKeys().size();
        const struct {
            const char* typed;
            const char* key;
            const char* banner;
        } cases[] = {
            {"pase", preach::PreachPace::proseWordsPerMinuteKey, "Showing results for pace"},
            {"model sever", "Quillon.intelligence.endpoint", "Showing results for server"},
            {"tras", "Quillon.trashRetentionDays", ""},
            {"colum widht", "Quillon.topicColumnWidth", "Showing results for column, width"},
        };
        for (const auto& c : cases) {
            QTest::keyClicks(window.searchField(), QString::fromUtf8(c.typed));
            const QStringList keys = window.visibleKeys();
            QVERIFY2(keys.contains(QString::fromUtf8(c.key)), c.typed);
            QVERIFY2(keys.size() < all, c.typed);
            auto* banner = desktop::testing::child<QLabel>(&window, "settingsBanner");
            QCOMPARE(banner->text(), QString::fromUtf8(c.banner));
            window.searchField()->clear();
        }
        QCOMPARE(window.visibleKeys().size(), all);
        window.filter(QStringLiteral("xyzzy"));
        QVERIFY(window.visibleKeys().isEmpty());
        QCOMPARE(desktop::testing::child<QLabel>(&window, "settingsNothing")->text(),
                 QStringLiteral("No setting matches “xyzzy”."));
    }

    void refusesInvalidValuesWithASentence() {
        platform::Preferences preferences = platform::Preferences::inMemory();
        SettingsWindow window(preferences);
        const QString key = QString::fromUtf8(preach::PreachPace::proseWordsPerMinuteKey);
        QCOMPARE(window.enter(key, QStringLiteral("quick")),
                 QStringLiteral("Starting pace (words a minute) must be a number from 60 to 260."));
        QVERIFY(!preferences.contains(key.toStdString()));
        QCOMPARE(window.enter(key, QStringLiteral("145")), QString());
        QCOMPARE(preach::PreachPace::fromPreferences(preferences).wordsPerMinute, 145.0);
        QCOMPARE(window.enter(QStringLiteral("Quillon.intelligence.endpoint"), QStringLiteral("my server")),
                 QStringLiteral("Model server address must be a web address such as http://127.0.0.1:8080/v1."));
        QCOMPARE(window.enter(key, QString()), QString());
        QVERIFY(!preferences.contains(key.toStdString()));
    }
};

std::unique_ptr<QObject> makeSettingsWindowTest() {
    return std::make_unique<SettingsWindowTest>();
}

#include "SettingsWindowTest.moc"
