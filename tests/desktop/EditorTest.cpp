#include "desktop/editor/RichTextConversion.h"
#include "desktop/editor/RichTextEditor.h"
#include "desktop/editor/SpellChecker.h"
#include "desktop/editor/SpellHighlighter.h"
#include "export/RtfWriter.h"
#include "scripture/BibleLoader.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

using namespace quillon;
using namespace quillon::desktop;

namespace {

exports::RichRun run(std::string text, bool bold = false, bool italic = false, bool underline = false,
                     std::string colour = {}, double size = 0, std::string link = {}) {
    exports::RichRun r;
    r.text = std::move(text);
    r.bold = bold;
    r.italic = italic;
    r.underline = underline;
    r.colorHex = std::move(colour);
    r.fontSize = size;
    r.link = std::move(link);
    return r;
}

exports::RichText sample() {
    exports::RichText text;
    exports::RichParagraph first;
    first.runs = {run("Grace "), run("alone", true), run(" and ", false, true),
                  run("faith", false, false, true, "C0392B", 18)};
    exports::RichParagraph bullet;
    bullet.bullet = true;
    bullet.runs = {run("See "), run("the verse", false, false, true, {}, 0, "quillscripture://8A1B")};
    exports::RichParagraph last;
    last.runs = {run("Amen.")};
    text.paragraphs = {first, bullet, last};
    return text;
}

} // namespace

class EditorTest : public QObject {
    Q_OBJECT

private slots:
    void formattingSurvivesTheRtfTwin() {
        QTextDocument document;
        fillDocument(document, sample());
        QTextDocument reread;
        loadDocument(reread, sample().plainText(), rtfFrom(document));
        QCOMPARE(richTextFrom(reread), richTextFrom(document));
        exports::RichText back = richTextFrom(reread);
        QCOMPARE(back.paragraphs.size(), std::size_t{3});
        QVERIFY(back.paragraphs[1].bullet);
        QCOMPARE(back.paragraphs[1].runs.back().link, std::string("quillscripture://8A1B"));
        QCOMPARE(back.paragraphs[0].runs[3].colorHex, std::string("C0392B"));
        QCOMPARE(back.paragraphs[0].runs[3].fontSize, 18.0);
    }

    void aTwinThatNoLongerMatchesTheWordsGivesWayToThePlainText_data() {
        QTest::addColumn<QString>("plain");
        QTest::addColumn<bool>("withTwin");
        QTest::addColumn<QString>("shown");
        QTest::newRow("matching twin") << "Grace alone" << true << "Grace alone";
        QTest::newRow("text edited elsewhere") << "Grace upon grace" << true << "Grace upon grace";
        QTest::newRow("no twin") << "Plain words" << false << "Plain words";
    }
    void aTwinThatNoLongerMatchesTheWordsGivesWayToThePlainText() {
        QFETCH(QString, plain);
        QFETCH(bool, withTwin);
        QFETCH(QString, shown);
        std::optional<std::string> twin;
        if (withTwin)
            twin = exports::RtfWriter::write(exports::RichText::fromPlainText("Grace alone"));
        QTextDocument document;
        loadDocument(document, plain.toStdString(), twin);
        QCOMPARE(document.toPlainText(), shown);
    }

    void editorReportsOnlyRealEdits() {
        RichTextEditor editor(nullptr);
        QSignalSpy edited(&editor, &RichTextEditor::edited);
        editor.setContent("First line", std::nullopt);
        QCOMPARE(edited.count(), 0);
        QVERIFY(!editor.differsFromLoaded());
        editor.show();
        QTextCursor end = editor.textCursor();
        end.movePosition(QTextCursor::End);
        editor.setTextCursor(end);
        QTest::keyClicks(&editor, "!");
        QVERIFY(edited.count() > 0);
        QVERIFY(editor.differsFromLoaded());
        QCOMPARE(editor.plainText(), std::string("First line!"));
        // The store's echo of the same words changes nothing and keeps the cursor.
        int cursor = editor.textCursor().position();
        editor.setContent("First line!", editor.rtf());
        QCOMPARE(editor.textCursor().position(), cursor);
        QVERIFY(!editor.differsFromLoaded());
    }

    void boldAndBulletsFromTheKeyboardReachTheTwin() {
        RichTextEditor editor(nullptr);
        editor.show();
        QTest::keyClick(&editor, Qt::Key_B, Qt::ControlModifier);
        QTest::keyClicks(&editor, "Bold");
        QTest::keyClick(&editor, Qt::Key_Return);
        QTest::keyClick(&editor, Qt::Key_8, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClicks(&editor, "point");
        exports::RichText text = richTextFrom(*editor.document());
        QCOMPARE(text.paragraphs.size(), std::size_t{2});
        QVERIFY(text.paragraphs[0].runs.at(0).bold);
        QVERIFY(text.paragraphs[1].bullet);
        QCOMPARE(editor.plainText(), std::string("Bold\n• point"));
    }

    void spellingAcceptsTheBiblesNames() {
        SpellChecker checker;
        if (!checker.isAvailable())
            QSKIP("the en_US Hunspell dictionary is not installed");
        QVERIFY(checker.isCorrect(QStringLiteral("grace")));
        QVERIFY(!checker.isCorrect(QStringLiteral("graec")));
        QVERIFY(checker.suggestions(QStringLiteral("graec")).contains(QStringLiteral("grace")));
        QVERIFY(!checker.isCorrect(QStringLiteral("Melchisedec")));
        scripture::BibleLoader loader;
        if (!loader.isAvailable(model::BibleVersion::kjv))
            QSKIP("the KJV text is not installed");
        checker.accept(bibleVocabulary(loader));
        QVERIFY(checker.isCorrect(QStringLiteral("Melchisedec")));
        QVERIFY(checker.isCorrect(QStringLiteral("Capernaum")));
        QVERIFY(!checker.isCorrect(QStringLiteral("graec")));
    }

    void wordAroundFindsTheWordUnderTheCursor_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("at");
        QTest::addColumn<QString>("word");
        QTest::newRow("middle") << "the gracce of God" << 6 << "gracce";
        QTest::newRow("start") << "gracce of God" << 0 << "gracce";
        QTest::newRow("apostrophe kept inside") << "God's love" << 2 << "God's";
        QTest::newRow("quotes dropped") << "'grace'" << 3 << "grace";
        QTest::newRow("between words") << "a  b" << 2 << "";
    }
    void wordAroundFindsTheWordUnderTheCursor() {
        QFETCH(QString, text);
        QFETCH(int, at);
        QFETCH(QString, word);
        auto [start, length] = wordAround(text, at);
        QCOMPARE(text.mid(start, length), word);
    }
};

std::unique_ptr<QObject> makeEditorTest() {
    return std::make_unique<EditorTest>();
}

#include "EditorTest.moc"
