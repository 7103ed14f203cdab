// Tests of the example analyses of results files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"

#include "session/ResultsText.h"
#include "support/FileBytes.h"
#include "support/TestTable.h"

#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using testsupport::writeBytes;

namespace {

/// Writes a session as the program does.
bool writeSession(const QTemporaryDir& folder, const AnalysedSession& session) {
    const QString name = proposedOutputFileName(session.subject, session.type, session.number);
    return writeBytes(folder.filePath(name),
                      resultsText(session.target, session.frequencies).toUtf8());
}

} // namespace

class TestAnalysis : public QObject {
    Q_OBJECT

private slots:
    void manySessionsAreSummarised_data() { addLanguages(); }
    void manySessionsAreSummarised();
    void namesAreTakenApart_data() { addLanguages(); }
    void namesAreTakenApart();
    void targetsFrequencyIsAnArgument_data() { addLanguages(); }
    void targetsFrequencyIsAnArgument();
    void otherFilesAreLeftOutAndNamed_data() { addLanguages(); }
    void otherFilesAreLeftOutAndNamed();
    void wrongCommandLinesAreRefused_data();
    void wrongCommandLinesAreRefused();
    void severalTargetsAreSaid_data() { addLanguages(); }
    void severalTargetsAreSaid();
    void pictureHasEveryRequest();
    void pictureHasEverySessionsColour();
};

void TestAnalysis::manySessionsAreSummarised() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const QVector<AnalysedSession> sessions{
        {"SUB001", "experiment", 1, "t.wav", {300, 620, 447, 440}},
        {"SUB001", "experiment", 2, "t.wav", {438}},
        {"SUB001", "experiment", 10, "t.wav", {500, 443}},
        {"SUB001", "practice", 1, "t.wav", {10, 1000}},
        {"SUB001", "practice", 2, "t.wav", {}},
        {"SUB002", "experiment", 3, "t.wav", {220, 880}},
        {"SUB003", "practice", 1, "t.wav", {}},
    };
    for (const AnalysedSession& session : sessions)
        QVERIFY(writeSession(folder, session));
    QVERIFY(writeBytes(folder.filePath("t.wav"), "not looked at"));
    const AnalysisRun run = analyse(command, "440", {folder.path()});
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
}

void TestAnalysis::namesAreTakenApart() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const QVector<AnalysedSession> sessions{
        {"", "practice", 1, "t.wav", {440}},
        {"A_practice001", "experiment", 7, "t.wav", {440}},
        {"b c.d", "practice", 1234, "a\tb .wav", {440, 442}},
        {QString::fromUtf8("Ä 音"), "experiment", 999, QString::fromUtf8("ü音🎵.wav"), {441}},
    };
    QStringList files;
    for (const AnalysedSession& session : sessions) {
        QVERIFY(writeSession(folder, session));
        files.prepend(
            folder.filePath(proposedOutputFileName(session.subject, session.type, session.number)));
    }
    const AnalysisRun run = analyse(command, "440", files);
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.status, 0);
}

void TestAnalysis::targetsFrequencyIsAnArgument() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const AnalysedSession session{"S", "practice", 1, "t.wav", {200, 210.5, 1234.56}};
    QVERIFY(writeSession(folder, session));
    for (const char* target : {"200", "203.7", "1e3"})
        QCOMPARE(analyse(command, target, {folder.path()}).output,
                 expectedTables({session}, QByteArray(target).toDouble()));
}

void TestAnalysis::otherFilesAreLeftOutAndNamed() {
    QFETCH(QStringList, command);
    struct OtherFile {
        const char* name;
        QByteArray content;
        const char* reason;
    };
    const QByteArray header = "filename\tnTrials\tfrequency matched (Hz)\r\n";
    const QByteArray one = header + "t.wav\t1\t440\r\n";
    const char* const anotherName = "the name is not that of a results file";
    const char* const anotherHeader = "the first line is not that of a results file";
    const QVector<OtherFile> others{
        {"S_pilot001.txt", header, anotherName},
        {"S_practice002.txt", "", anotherHeader},
        {"S_practice003.txt", "filename\tn\r\n", anotherHeader},
        {"S_practice004.txt", one + "nonsense\r\n", "line 3 is not response 2"},
        {"S_practice005.txt", one + "t.wav\t3\t441\r\n", "line 3 is not response 2"},
        {"S_practice006.txt", one + "t.wav\t1\t440\r\n", "line 3 is not response 2"},
        {"S_practice007.txt", header + "t.wav\t1\t0\r\n", "line 2 is not response 1"},
        {"S_practice008.txt", header + "t.wav\t1\t-5\r\n", "line 2 is not response 1"},
        {"S_practice009.txt", header + "t.wav\t1\tnan\r\n", "line 2 is not response 1"},
        {"S_practice010.txt", header + "t.wav\t1\t440,5\r\n", "line 2 is not response 1"},
        {"S_practice01.txt", header, anotherName},
        {"notes.txt", header, anotherName},
    };
    const QTemporaryDir folder;
    const AnalysedSession session{"S", "practice", 1, "t.wav", {439, 440}};
    QVERIFY(writeSession(folder, session));
    QStringList paths{folder.filePath("S_practice001.txt")};
    QString complaints;
    for (const OtherFile& other : others) {
        paths << folder.filePath(other.name);
        QVERIFY(writeBytes(paths.last(), other.content));
        complaints += QStringLiteral("%1: %2 is left out: %3\n")
                          .arg(QFileInfo(command[1]).fileName(), paths.last(), other.reason);
    }
    const AnalysisRun run = analyse(command, "440", paths);
    QCOMPARE(run.output, expectedTables({session}, 440));
    QCOMPARE(run.errors, complaints);
    QCOMPARE(run.status, 1);
}

void TestAnalysis::wrongCommandLinesAreRefused_data() {
    const auto addRow = testsupport::columns<QStringList, QString, QStringList, int>(
        "command", "target", "paths", "status");
    forLanguages([addRow](const QByteArray& language, const QStringList& command) {
        const auto row = [&](const char* what, const char* target, const QStringList& paths,
                             int status) {
            addRow(language + ", " + what, command, target, paths, status);
        };
        row("no paths", "440", {}, 2);
        row("target of 0", "0", {"."}, 2);
        row("negative target", "-1", {"."}, 2);
        row("no number", "high", {"."}, 2);
        row("no number at all", "nan", {"."}, 2);
        row("no end", "inf", {"."}, 2);
        row("no such file", "440", {"S_practice001.txt"}, 1);
    });
}

void TestAnalysis::wrongCommandLinesAreRefused() {
    QFETCH(QStringList, command);
    QFETCH(QString, target);
    QFETCH(QStringList, paths);
    QFETCH(int, status);
    const AnalysisRun run = analyse(command, target, paths);
    QCOMPARE(run.status, status);
    QVERIFY(!run.errors.isEmpty());
    QCOMPARE(run.output.isEmpty(), status == 2);
}

void TestAnalysis::severalTargetsAreSaid() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    QVERIFY(writeSession(folder, {"S", "practice", 1, "a.wav", {440}}));
    QVERIFY(writeSession(folder, {"S", "practice", 2, "b.wav", {440}}));
    QVERIFY(writeSession(folder, {"S", "practice", 3, "", {}}));
    const AnalysisRun run = analyse(command, "440.5", {folder.path()});
    QCOMPARE(run.errors,
             QFileInfo(command[1]).fileName() +
                 ": the sessions had several targets; cents refer to 440.5 Hz in all of them\n");
    QCOMPARE(run.status, 0);
}

void TestAnalysis::pictureHasEveryRequest() {
    if (!isThere(python()))
        QSKIP("python3 is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSession(folder, {"<&\"", "experiment", 1, "t.wav", {300, 600, 440}}));
    QVERIFY(writeSession(folder, {"S", "practice", 1, "t.wav", {450, 440}}));
    QVERIFY(writeSession(folder, {"S", "practice", 2, "t.wav", {}}));
    const QString picture = folder.filePath("trend.svg");
    QCOMPARE(analyse(python(), "440", {folder.path()}, picture).status, 0);
    QXmlStreamReader reader(testsupport::readBytes(picture));
    QStringList texts;
    QStringList lines;
    QMap<QString, int> circles; // By radius.
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("circle"))
            ++circles[reader.attributes().value("r").toString()];
        else if (reader.name() == QLatin1String("polyline"))
            lines << reader.attributes().value("points").toString();
        else if (reader.name() == QLatin1String("text"))
            texts << reader.readElementText();
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    // A large one for each match and one beside each name.
    QCOMPARE(circles, (QMap<QString, int>{{"2.5", 3}, {"5", 4}}));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines[0].split(u' ').size(), 3);
    // Both matches are as high as the target; 450 Hz is higher, and y runs downwards.
    const auto heightOf = [&](int session, int request) {
        return lines[session].split(u' ')[request].section(u',', 1).toDouble();
    };
    QCOMPARE(heightOf(0, 2), heightOf(1, 1));
    QVERIFY(heightOf(0, 1) < heightOf(1, 0) && heightOf(1, 0) < heightOf(1, 1));
    for (const char* text :
         {"<&\" experiment 1", "S practice 1", "- - target, 440 Hz", "Frequency (Hz)", "Request"})
        QVERIFY2(texts.contains(text), text);
    QVERIFY(!texts.contains("S practice 2"));
}

void TestAnalysis::pictureHasEverySessionsColour() {
    if (!isThere(statisticsLanguage()))
        QSKIP("Rscript is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSession(folder, {"S", "practice", 1, "t.wav", {300, 600, 440}}));
    QVERIFY(writeSession(folder, {"S", "practice", 2, "t.wav", {450, 440}}));
    const QString picture = folder.filePath("trend.png");
    const AnalysisRun run = analyse(statisticsLanguage(), "440", {folder.path()}, picture);
    QVERIFY2(run.status == 0 && run.errors.isEmpty(), qPrintable(run.errors));
    const QImage image(picture);
    QCOMPARE(image.width(), 960);
    QMap<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++pixels[image.pixel(x, y)];
    QVERIFY(pixels[qRgb(0xFF, 0xFF, 0xFF)] > image.width() * image.height() / 2);
    QVERIFY(pixels[qRgb(0x00, 0x72, 0xB2)] > 100);
    QVERIFY(pixels[qRgb(0xE6, 0x9F, 0x00)] > 100);
    QCOMPARE(pixels[qRgb(0x00, 0x9E, 0x73)], 0);
}

QTEST_GUILESS_MAIN(TestAnalysis)
#include "test_analysis.moc"
