// Tests of the example analyses: tables of sessions and requests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_analysis.h"

#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/TestMain.h"
#include "support/TestTable.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

using testsupport::writeBytes;

namespace {

const QByteArray mark = "\xEF\xBB\xBF"; // U+FEFF, the byte order mark.

QVector<AnalysedSession> oddlyNamedSessions() {
    return {
        {"", "practice", 1, "t.wav", {440}},
        {"A", "practice", 2, "t.wav", {441}, 0, "A_practice002-20260309-080559-2.txt"},
        {"A_practice001", "experiment", 7, "t.wav", {440}},
        {"S", "practice", 1, "t.wav", {439, 440}, 0, "S_practice001-20260309-080559.txt"},
        {"b \"c.d;", "practice", 1234, "a\tb .wav", {440, 442}},
        {QString::fromUtf8("Ä 音"), "experiment", 999, QString::fromUtf8("ü音🎵.wav"), {441.25}},
    };
}

struct OtherFile {
    const char* name;
    QByteArray content;
    const char* reason;
};

/// Files that are no results files, by their names.
QVector<OtherFile> otherFiles() {
    const char* const anotherName = "the name is not that of a results file";
    const char* const anotherHeader = "the first line is not that of a results file";
    return {
        {"S_pilot001.txt", headerLine, anotherName},
        {"S_practice002.txt", "", anotherHeader},
        {"S_practice003.txt", "filename\tn\r\n", anotherHeader},
        {"S_practice004.txt", oneResponse + "nonsense\r\n", "line 3 is not response 2"},
        {"S_practice005.txt", oneResponse + "t.wav\t3\t441\r\n", "line 3 is not response 2"},
        {"S_practice006.txt", oneResponse + "t.wav\t1\t440\r\n", "line 3 is not response 2"},
        {"S_practice007.txt", headerLine + "t.wav\t1\t0\r\n", "line 2 is not response 1"},
        {"S_practice008.txt", headerLine + "t.wav\t1\t-5\r\n", "line 2 is not response 1"},
        {"S_practice009.txt", headerLine + "t.wav\t1\tnan\r\n", "line 2 is not response 1"},
        {"S_practice01.txt", headerLine, anotherName},
        {"S_practice010.txt", headerLine + "t.wav\t1\t440,5\r\n", "line 2 is not response 1"},
        {"S_practice011.txt", headerLine + "t.wav\t1\t1e+400\r\n", "line 2 is not response 1"},
        {"S_practice012.txt", oneResponse + "\r\nt.wav\t2\t441\r\n", "line 3 is not response 2"},
        {"S_practice013.txt", oneResponse + "u.wav\t2\t441\r\n", "line 3 names another target"},
        {"S_practice014.txt", oneResponse + "t.wav\t2\t44",
         "line 3 has no line end and may be cut off"},
        {"S_practice015.txt", oneResponse + QByteArray(3, 0), "it contains NUL bytes"},
        {"S_practice016.txt", headerLine + "\xFC.wav\t1\t440\r\n", "it is not UTF-8 text"},
        {"S_practice017-20260309.txt", oneResponse, anotherName},
        {"notes.txt", headerLine, anotherName},
    };
}

bool writeOtherFiles(const QTemporaryDir& folder) {
    bool isWritten = true;
    for (const OtherFile& other : otherFiles())
        isWritten &= writeBytes(folder.filePath(other.name), other.content);
    return isWritten;
}

/// Whether two texts are equal but for differences between numbers by up to 1e-9.
bool agree(const QString& text, const QString& other) {
    static const QRegularExpression separators(QStringLiteral("[\t\n]"));
    const QStringList fields = text.split(separators);
    const QStringList others = other.split(separators);
    return std::equal(fields.begin(), fields.end(), others.begin(), others.end(),
                      [](const QString& field, const QString& otherField) {
                          bool isNumber = false;
                          bool isOtherNumber = false;
                          const double difference =
                              field.toDouble(&isNumber) - otherField.toDouble(&isOtherNumber);
                          return isNumber && isOtherNumber ? std::abs(difference) <= 1e-9
                                                           : field == otherField;
                      });
}

} // namespace

void TestAnalysisTables::manySessionsAreSummarised() {
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
        // Octave errors within 100 cents, and a match just outside.
        {"SUB004", "experiment", 1, "t.wav", {500, 900, 881}},
        {"SUB004", "experiment", 2, "t.wav", {200, 220, 208, 208}},
        {"SUB004", "experiment", 3, "t.wav", {207}},
        {"SUB004", "experiment", 4, "t.wav", {100, 110}},
    };
    QVERIFY(writeSessions(folder, sessions));
    QVERIFY(writeBytes(folder.filePath("t.wav"), "not looked at"));
    const AnalysisRun run = analyse(command, {"--target", "440", folder.path()});
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.status, 0);
}

void TestAnalysisTables::namesAreParsed() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const QVector<AnalysedSession> sessions = oddlyNamedSessions();
    QVERIFY(writeSessions(folder, sessions));
    QStringList arguments{"--target", "440"};
    for (const AnalysedSession& session : sessions)
        arguments.insert(2, folder.filePath(session.fileName()));
    const AnalysisRun run = analyse(command, arguments);
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.status, 0);
}

void TestAnalysisTables::targetsComeFromATable_data() {
    const auto addRow =
        testsupport::columns<QStringList, QByteArray, QByteArray>("command", "table", "problem");
    forLanguages([addRow](const QByteArray& language, const QStringList& command) {
        const auto row = [&](const char* what, const QByteArray& table,
                             const QByteArray& problem = "") {
            addRow(language + ", " + what, command, table, problem);
        };
        row("tabs", "file\thz\na,1.wav\t440.5\nb\".wav\t 220 \n");
        row("commas", "File,Hz\r\na,1.wav,440.5\r\n\r\nb\".wav, 220");
        row("decimal commas", mark + "\"file\";\"hz\"\na,1.wav;440,5\nb\".wav;220,0\n");
        row("quotes", "\"a,1.wav\",440.5\n\"b\"\".wav\",220\nb\".wav,220\n");
        const QByteArray wrong = " is not a file name and a frequency above 0";
        row("one column", "a,1.wav\n", "line 1" + wrong);
        row("two commas", "file,hz\na.wav,440,5\n", "line 2" + wrong);
        row("no number", "a.wav,220\nb.wav,high\n", "line 2" + wrong);
        row("target of 0", "b.wav\t0\n", "line 1" + wrong);
        row("two frequencies", "b.wav\t1\nb.wav\t2\n", "line 2 gives b.wav another frequency");
    });
}

void TestAnalysisTables::targetsComeFromATable() {
    QFETCH(QStringList, command);
    QFETCH(QByteArray, table);
    QFETCH(QByteArray, problem);
    const QTemporaryDir folder;
    const QVector<AnalysedSession> sessions{
        {"S", "practice", 1, "a,1.wav", {400, 441}, 440.5},
        {"S", "practice", 2, "b\".wav", {441}, 220},
        {"S", "practice", 3, "t.wav", {441}}, // Not in the table.
    };
    QVERIFY(writeSessions(folder, sessions));
    const QString targets = folder.filePath("targets.csv");
    QVERIFY(writeBytes(targets, table));
    const AnalysisRun run =
        analyse(command, {"--targets", targets, "--target", "3.3e2", folder.path()});
    QCOMPARE(run.output, problem.isEmpty() ? expectedTables(sessions, 330) : QString());
    QVERIFY2(run.errors.contains(problem), qPrintable(run.errors));
    QCOMPARE(run.status, problem.isEmpty() ? 0 : 2);
}

void TestAnalysisTables::targetsOutsideTheTableHaveNoCents() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    QVERIFY(writeSessions(
        folder, {{"S", "practice", 1, "a.wav", {440}}, {"S", "practice", 2, "b.wav", {300, 440}}}));
    QVERIFY(writeBytes(folder.filePath("targets"), "a.wav\t440\n"));
    const AnalysisRun run =
        analyse(command, {"--targets", folder.filePath("targets"), folder.path()});
    QCOMPARE(run.output.section(u'\n', 2, 2),
             QString("S\tpractice\t2\tb.wav\t2\t440.00\tNA\t370.00\t98.99\tNA\tNA\tNA\tNA\tNA"
                     "\tbelow\t3.93\tS_practice002.txt"));
    QCOMPARE(run.output.section(u'\n', -2, -2),
             QString("S\tpractice\t2\tNA\tNA\tNA\tNA\tNA\tNA\tNA"));
    QCOMPARE(run.errors, scriptName(command) + ": b.wav is not in the table of targets: its "
                                               "sessions have no cents\n");
    QCOMPARE(run.status, 1);
}

void TestAnalysisTables::requestsAreWritten() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"S", "practice", 1, "a.wav", {}},
                                   {"S", "practice", 2, "a;b.wav", {440.125, 220}}}));
    const QString table = folder.filePath("requests.csv");
    QStringList arguments{"--target", "440", "--requests", table, folder.path()};
    QCOMPARE(analyse(command, arguments).status, 0);
    QCOMPARE(testsupport::readBytes(table),
             "subject\tsession\tnumber\trequest\ttarget\ttarget_hz\tfrequency_hz\tcents\tfile\n"
             "S\tpractice\t2\t1\t\"a;b.wav\"\t440\t440.125\t0.49\tS_practice002.txt\n"
             "S\tpractice\t2\t2\t\"a;b.wav\"\t440\t220\t-1200.00\tS_practice002.txt\n");
    arguments.prepend("--decimal-comma");
    const testsupport::ProgramRun run =
        testsupport::runProgram(command[0], command.mid(1) + arguments);
    QVERIFY(run.output.startsWith(mark + "subject;"));
    QCOMPARE(run.output.count(mark), 1);
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(
        lines[2],
        QByteArray("S;practice;2;\"a;b.wav\";2;220,00;-1200,00;330,06;155,65;-599,75;848,88;440;-1;"
                   "0,00;above;7,87;S_practice002.txt"));
    QCOMPARE(lines[lines.size() - 2], QByteArray("S;practice;1;220,00;NA;-1200,00;NA;1;0,00;NA"));
    QCOMPARE(testsupport::readBytes(table),
             mark + "subject;session;number;request;target;target_hz;frequency_hz;cents;file\n"
                    "S;practice;2;1;\"a;b.wav\";440;440,125;0,49;S_practice002.txt\n"
                    "S;practice;2;2;\"a;b.wav\";440;220;-1200,00;S_practice002.txt\n");
}

void TestAnalysisTables::otherFilesAreLeftOutAndReported() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const AnalysedSession session{"S", "practice", 1, "t.wav", {439, 440}};
    QVERIFY(writeSessions(folder, {session}));
    QVERIFY(writeOtherFiles(folder));
    QString problems;
    for (const OtherFile& other : otherFiles())
        problems += QStringLiteral("%1: %2 is left out: %3\n")
                        .arg(scriptName(command), folder.filePath(other.name), other.reason);
    const AnalysisRun run = analyse(command, {"--target", "440", folder.path()});
    QCOMPARE(run.output, expectedTables({session}, 440));
    QCOMPARE(run.errors, problems);
    QCOMPARE(run.status, 1);
}

void TestAnalysisTables::duplicatesAreReported() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const QVector<AnalysedSession> sessions{
        {"S", "practice", 1, "t.wav", {439}, 0, "S_practice001-20260309-080559.txt"},
        {"S", "practice", 1, "t.wav", {440}},
    };
    QVERIFY(writeSessions(folder, sessions));
    // A file that is given twice is not reported.
    const QString given = folder.filePath(sessions[1].fileName());
    const AnalysisRun run = analyse(command, {"--target", "440", folder.path(), given});
    QCOMPARE(run.output, expectedTables(sessions, 440));
    QCOMPARE(run.errors, QStringLiteral("%1: %2 and %3 are both practice 1 of S; the tables "
                                        "contain both\n")
                             .arg(scriptName(command), folder.filePath(sessions[0].file), given));
    QCOMPARE(run.status, 1);
}

void TestAnalysisTables::severalTargetsAreReported() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"S", "practice", 1, "a.wav", {440}},
                                   {"S", "practice", 2, "b.wav", {440}},
                                   {"S", "practice", 3, "", {}}}));
    const AnalysisRun run = analyse(command, {"--target", "440.5", folder.path()});
    QCOMPARE(run.errors,
             scriptName(command) + ": cents refer to 440.5 Hz for several targets: a.wav, b.wav\n");
    QCOMPARE(run.status, 0);
}

void TestAnalysisTables::languagesAgree() {
    QVERIFY(agree("1\tNA", "1.0000000001\tNA") && !agree("0.00", "NA") && !agree("NA", "0.00"));
    if (!isThere(python()) || !isThere(statisticsLanguage()))
        QSKIP("python3 or Rscript is not installed");
    const QTemporaryDir odd;
    QVERIFY(writeSessions(odd, oddlyNamedSessions()) && writeOtherFiles(odd));
    QVERIFY(writeBytes(odd.filePath("tiny_practice001.txt"), headerLine + "t.wav\t1\t0.3\r\n"));
    QVERIFY(writeBytes(odd.filePath("huge_practice001.txt"), headerLine + "t.wav\t1\t1e+06\r\n"));
    QStringList arguments{"--digits",  "12",    "--targets", simulated + "/targets.tsv",
                          "--target",  "333.3", odd.path(),  simulated,
                          "--requests"};
    const QString table = odd.filePath("requests.tsv");
    const AnalysisRun inPython = analyse(python(), arguments + QStringList{table});
    const QString requests = testsupport::readBytes(table);
    const AnalysisRun inR = analyse(statisticsLanguage(), arguments + QStringList{table});
    QVERIFY(requests.count(u'\n') > 150);
    QVERIFY(agree(requests, testsupport::readBytes(table)));
    QVERIFY(agree(inPython.output, inR.output));
    QCOMPARE(QString(inPython.errors).replace("matches.py: ", "matches.R: "), inR.errors);
    QCOMPARE(inPython.status, inR.status);
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestAnalysisTables, TestAnalysisExamples>(argc, argv);
}
