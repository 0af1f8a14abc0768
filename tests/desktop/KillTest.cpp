// Killing the desk with SIGKILL while the preacher types leaves the sermon file whole, holding the
// last keystroke that was saved. A child process (this executable's "typist" mode) types into the
// real window and reports each keystroke after it returns; the test kills it mid-stream.
#include "app/SermonNotesViewModel.h"
#include "desktop/DeskFixture.h"
#include "desktop/MainWindow.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/sermon/SermonView.h"
#include "model/SermonCoding.h"
#include "store/SermonStorage.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fstream>
#include <sstream>

using namespace quillon;
using namespace quillon::desktop;
using namespace quillon::desktop::testing;

namespace {

const QString typedText = QStringLiteral("Grace meets us where we are and does not leave us there. ").repeated(40);

std::string fileText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace

/// The child: opens the library at `root` (one sermon), types into its notes and prints the count
/// of keystrokes done after each one, until killed.
int runTypist(const std::filesystem::path& root, const std::filesystem::path& preferences) {
    DeskServices services(preferences, root);
    services.load();
    MainWindow window(services);
    window.show();
    auto& controller = services.controller();
    controller.selectSermon(controller.store().sermons().front().id);
    RichTextEditor* notes = window.sermonView()->notesEditor();
    notes->setFocus();
    for (int typed = 0; typed < typedText.size(); ++typed) {
        QTest::keyClick(notes, typedText.at(typed).toLatin1());
        std::printf("%d\n", typed + 1);
        std::fflush(stdout);
    }
    return 0;
}

class KillTest : public QObject {
    Q_OBJECT

private slots:
    void killedWhileTypingTheFileHoldsTheLastSavedKeystroke() {
        QTemporaryDir folder;
        const std::filesystem::path root = folder.filePath(QStringLiteral("Library")).toStdString();
        const std::filesystem::path preferences = folder.filePath(QStringLiteral("preferences.json")).toStdString();
        auto sermon = sermonTitled("Typed Until Killed", 1);
        store::SermonStorage::atRoot(root).saveSermon(sermon);

        QProcess typist;
        typist.start(QCoreApplication::applicationFilePath(),
                     {QStringLiteral("typist"), QString::fromStdString(root.string()),
                      QString::fromStdString(preferences.string())});
        QVERIFY(typist.waitForStarted());
        int reported = 0;
        while (reported < 60) {
            QVERIFY2(typist.waitForReadyRead(20000), "the typist stopped typing");
            while (typist.canReadLine())
                reported = typist.readLine().trimmed().toInt();
        }
        typist.kill(); // SIGKILL: no handler, no flush, no goodbye
        QVERIFY(typist.waitForFinished(5000));
        while (typist.canReadLine())
            reported = std::max(reported, typist.readLine().trimmed().toInt());

        const auto file = store::SermonStorage::atRoot(root).sermonFile(sermon.id);
        const model::SermonNote saved = model::decodeSermonNote(model::OrderedJSON::parse(fileText(file)));
        const QString notes = QString::fromStdString(saved.notes);
        QVERIFY2(notes.size() >= reported, qPrintable(QStringLiteral("%1 < %2").arg(notes.size()).arg(reported)));
        QVERIFY(typedText.startsWith(notes));
        // The next start finds the same sermon, and no work file of an interrupted save is left.
        DeskServices restarted(preferences, root);
        restarted.load();
        QCOMPARE(restarted.controller().sermon(sermon.id)->notes, saved.notes);
        for (const auto& entry : std::filesystem::directory_iterator(file.parent_path()))
            QVERIFY2(entry.path().extension() == ".json", entry.path().c_str());
    }
};

std::unique_ptr<QObject> makeKillTest() {
    return std::make_unique<KillTest>();
}

#include "KillTest.moc"
