// Tests of the example analyses of results files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"

#include "session/ResultsFile.h"
#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/TestTable.h"

#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

using testsupport::writeBytes;

namespace {

const QString simulated = QStringLiteral(PELLION_ANALYSIS "/simulated");
const QByteArray header = "filename\tnTrials\tfrequency matched (Hz)\r\n";
const QByteArray mark = "\xEF\xBB\xBF"; // U+FEFF, the byte order mark.
const QByteArray one = header + "t.wav\t1\t440\r\n";

/// Writes sessions as the program does. One with a file name is written as a journal, which a
/// failed write may have ended in empty lines.
bool writeSessions(const QTemporaryDir& folder, const QVector<AnalysedSession>& sessions) {
    bool isWritten = true;
    for (const AnalysedSession& session : sessions) {
        const QByteArray text = resultsText(session.target, session.frequencies).toUtf8();
        isWritten &= writeBytes(folder.filePath(session.fileName()),
                                session.file.isEmpty() ? text : text + "\r\n\n");
    }
    return isWritten;
}

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
        {"S_pilot001.txt", header, anotherName},
        {"S_practice002.txt", "", anotherHeader},
        {"S_practice003.txt", "filename\tn\r\n", anotherHeader},
        {"S_practice004.txt", one + "nonsense\r\n", "line 3 is not response 2"},
        {"S_practice005.txt", one + "t.wav\t3\t441\r\n", "line 3 is not response 2"},
        {"S_practice006.txt", one + "t.wav\t1\t440\r\n", "line 3 is not response 2"},
        {"S_practice007.txt", header + "t.wav\t1\t0\r\n", "line 2 is not response 1"},
        {"S_practice008.txt", header + "t.wav\t1\t-5\r\n", "line 2 is not response 1"},
        {"S_practice009.txt", header + "t.wav\t1\tnan\r\n", "line 2 is not response 1"},
        {"S_practice01.txt", header, anotherName},
        {"S_practice010.txt", header + "t.wav\t1\t440,5\r\n", "line 2 is not response 1"},
        {"S_practice011.txt", header + "t.wav\t1\t1e+400\r\n", "line 2 is not response 1"},
        {"S_practice012.txt", one + "\r\nt.wav\t2\t441\r\n", "line 3 is not response 2"},
        {"S_practice013.txt", one + "u.wav\t2\t441\r\n", "line 3 names another target"},
        {"S_practice014.txt", one + "t.wav\t2\t44", "line 3 has no line end and may be cut off"},
        {"S_practice015.txt", one + QByteArray(3, 0), "it contains NUL bytes"},
        {"S_practice016.txt", header + "\xFC.wav\t1\t440\r\n", "it is not UTF-8 text"},
        {"S_practice017-20260309.txt", one, anotherName},
        {"notes.txt", header, anotherName},
    };
}

bool writeOtherFiles(const QTemporaryDir& folder) {
    bool isWritten = true;
    for (const OtherFile& other : otherFiles())
        isWritten &= writeBytes(folder.filePath(other.name), other.content);
    return isWritten;
}

QString scriptName(const QStringList& command) {
    return QFileInfo(command[1]).fileName();
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

/// The residuals (cents) of the sessions whose match was approached from one side.
struct Residuals {
    int count = 0;
    double mean = 0;
    double squares = 0; ///< Sum of the squared deviations from the mean.
};

/// Reads them from rows of the table of sessions.
Residuals residualsFrom(const QString& side, const QStringList& rows) {
    Residuals residuals;
    for (const QString& row : rows.filter(u'\t' + side + u'\t')) {
        const double deviation = row.section(u'\t', 13, 13).toDouble() - residuals.mean;
        residuals.mean += deviation / ++residuals.count;
        residuals.squares += deviation * deviation * (residuals.count - 1) / residuals.count;
    }
    return residuals;
}

/// The columns of each table in the README: those of all tables first, then those of each.
QVector<QStringList> codebook() {
    const QString columns = QString(testsupport::readBytes(PELLION_ANALYSIS "/README.md"))
                                .section("## Columns", 1)
                                .section("\n## ", 0, 0);
    const QRegularExpression name(QStringLiteral("`([^`]+)`"));
    QVector<QStringList> tables;
    for (const QString& table : columns.split("| column | content |").mid(1)) {
        tables.append(QStringList());
        for (const QString& row : table.split(u'\n').filter(QRegularExpression("^[|]"))) {
            auto names = name.globalMatch(row.section(u'|', 1, 1));
            while (names.hasNext())
                tables.last() << names.next().captured(1);
        }
    }
    return tables;
}

} // namespace

class TestAnalysis : public QObject {
    Q_OBJECT

private slots:
    void manySessionsAreSummarised_data() { addLanguages(); }
    void manySessionsAreSummarised();
    void namesAreParsed_data() { addLanguages(); }
    void namesAreParsed();
    void targetsComeFromATable_data();
    void targetsComeFromATable();
    void targetsOutsideTheTableHaveNoCents_data() { addLanguages(); }
    void targetsOutsideTheTableHaveNoCents();
    void requestsAreWritten_data() { addLanguages(); }
    void requestsAreWritten();
    void otherFilesAreLeftOutAndReported_data() { addLanguages(); }
    void otherFilesAreLeftOutAndReported();
    void duplicatesAreReported_data() { addLanguages(); }
    void duplicatesAreReported();
    void wrongCommandLinesAreRefused_data();
    void wrongCommandLinesAreRefused();
    void examplesInTheHelpWork_data() { addLanguages(); }
    void examplesInTheHelpWork();
    void severalTargetsAreReported_data() { addLanguages(); }
    void severalTargetsAreReported();
    void languagesAgree();
    void simulatedListenersAreRecognised_data() { addLanguages(); }
    void simulatedListenersAreRecognised();
    void simulationCanBeRepeated();
    void codebookListsEveryColumn_data() { addLanguages(); }
    void codebookListsEveryColumn();
    void functionsCanBeCalled_data() { addLanguages(); }
    void functionsCanBeCalled();
    void pictureHasEveryRequest();
    void pictureHasAColourForEachSession();
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

void TestAnalysis::namesAreParsed() {
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

void TestAnalysis::targetsComeFromATable_data() {
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

void TestAnalysis::targetsComeFromATable() {
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

void TestAnalysis::targetsOutsideTheTableHaveNoCents() {
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

void TestAnalysis::requestsAreWritten() {
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

void TestAnalysis::otherFilesAreLeftOutAndReported() {
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

void TestAnalysis::duplicatesAreReported() {
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

void TestAnalysis::wrongCommandLinesAreRefused_data() {
    const auto addRow =
        testsupport::columns<QStringList, QStringList, int>("command", "arguments", "status");
    forLanguages([addRow](const QByteArray& language, const QStringList& command) {
        const auto row = [&](const char* what, const QStringList& arguments, int status = 2) {
            addRow(language + ", " + what, command, arguments, status);
        };
        row("no paths", {"--target", "440"});
        row("no target", {"."});
        row("target of 0", {"--target", "0", "."});
        row("negative target", {"--target", "-1", "."});
        row("no number", {"--target", "high", "."});
        row("no number at all", {"--target", "nan", "."});
        row("no end", {"--target", "inf", "."});
        row("no such table", {"--targets", "none.csv", "."});
        row("too many digits", {"--target", "440", "--digits", "16", "."});
        row("no such option", {"--target", "440", "--hertz", "."});
        row("option without its value",
            {"--target", "440", "--requests", "--picture", "trend", simulated});
        row("results file to be overwritten",
            {"--target", "440", "--requests", "S_practice001.txt", "."});
        row("renamed results file to be overwritten",
            {"--target", "440", "--picture", "renamed", simulated});
        row("input to be overwritten", {"--target", "440", "--requests", "./notes.txt", "."});
        row("table of targets to be overwritten",
            {"--targets", "targets", "--requests", "link", "."});
        row("one file for both outputs",
            {"--target", "440", "--requests", "new", "--picture", "./new", "."});
        row("no such file", {"--target", "440", "S_practice001.txt"}, 1);
        row("path that begins as an option does", {"--target", "440", "--", "--help"}, 1);
        row("no such folder", {"--target", "440", "--requests", "no/requests.tsv", "."}, 1);
        row("nothing to draw", {"--target", "440", "--picture", "none.svg", "."}, 1);
    });
}

void TestAnalysis::wrongCommandLinesAreRefused() {
    QFETCH(QStringList, command);
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    const QTemporaryDir folder;
    QVERIFY(writeBytes(folder.filePath("renamed"), one));
    QVERIFY(writeBytes(folder.filePath("notes.txt"), "t.wav\n"));
    QVERIFY(writeBytes(folder.filePath("targets"), "t.wav\t440\n"));
    QVERIFY(QFile::link("targets", folder.filePath("link")));
    const QList<QByteArray> contents = testsupport::contentsOf(folder.path());
    const AnalysisRun run = analyse(command, arguments, folder.path());
    QCOMPARE(testsupport::contentsOf(folder.path()), contents);
    QCOMPARE(run.status, status);
    QVERIFY(run.errors.contains(scriptName(command) + ": "));
    QCOMPARE(run.output.isEmpty(), status == 2);
}

void TestAnalysis::examplesInTheHelpWork() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    QVERIFY(QFile::copy(simulated + "/targets.tsv", folder.filePath("targets.tsv")));
    QVERIFY(QFile::link(simulated, folder.filePath("FOLDER")));
    const QString help = analyse(command, {"--help"}).output;
    const QString script = scriptName(command) + u' ';
    const QStringList examples = help.split(u'\n').filter(script + "--");
    QCOMPARE(examples.size(), 3);
    for (const QString& example : examples) {
        const QStringList arguments = example.section(script, 1).split(u' ');
        QCOMPARE(analyse(command, arguments, folder.path()).status, 0);
    }
    QCOMPARE(testsupport::filesIn(folder.path()).size(), 3); // Targets, requests and picture.
}

void TestAnalysis::severalTargetsAreReported() {
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

void TestAnalysis::languagesAgree() {
    QVERIFY(agree("1\tNA", "1.0000000001\tNA") && !agree("0.00", "NA") && !agree("NA", "0.00"));
    if (!isThere(python()) || !isThere(statisticsLanguage()))
        QSKIP("python3 or Rscript is not installed");
    const QTemporaryDir odd;
    QVERIFY(writeSessions(odd, oddlyNamedSessions()) && writeOtherFiles(odd));
    QVERIFY(writeBytes(odd.filePath("tiny_practice001.txt"), header + "t.wav\t1\t0.3\r\n"));
    QVERIFY(writeBytes(odd.filePath("huge_practice001.txt"), header + "t.wav\t1\t1e+06\r\n"));
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

void TestAnalysis::simulatedListenersAreRecognised() {
    QFETCH(QStringList, command);
    const AnalysisRun run = analyse(command, {"--targets", simulated + "/targets.tsv", simulated});
    QCOMPARE(run.errors, QString());
    const QStringList sessions = run.output.section("\n\n", 0, 0).split(u'\n');
    const QStringList rows = run.output.section("\n\n", 1).split(u'\n');
    const QString truth = testsupport::readBytes(simulated + "/truth.tsv");
    QCOMPARE(truth.count(u'\n'), 6);
    for (const QString& line : truth.split(u'\n').mid(1, 5)) {
        const QStringList expected = line.split(u'\t');
        const double bias = expected[1].toDouble();
        const double lag = expected[2].toDouble();
        const double scatter = expected[3].toDouble();
        const QStringList found = rows.filter(expected[0] + "\texperiment\t6\t")[0].split(u'\t');
        QCOMPARE(found[7], expected[4]);
        // Within two standard errors of the mean of six matches.
        const double sixMatches = 2 * scatter / std::sqrt(6);
        QVERIFY(std::abs(found[8].toDouble() - bias) < sixMatches);
        const QStringList ofListener = sessions.filter(expected[0] + "\texperiment\t");
        const Residuals above = residualsFrom("above", ofListener);
        const Residuals below = residualsFrom("below", ofListener);
        QCOMPARE(above.count, 3);
        QCOMPARE(below.count, 3);
        // Half the difference between two means of three has the standard error of a mean of six.
        QVERIFY(std::abs((above.mean - below.mean) / 2 - lag) < sixMatches);
        // The squares around both means, in units of the variance, are distributed as chi-square
        // with 6 - 2 degrees of freedom; 95% of it lies between these quantiles.
        const double squares = (above.squares + below.squares) / (scatter * scatter);
        QVERIFY(squares > 0.484 && squares < 11.143);
    }
}

void TestAnalysis::simulationCanBeRepeated() {
    if (!isThere(python()))
        QSKIP("python3 is not installed");
    const QTemporaryDir folder;
    QCOMPARE(
        testsupport::runProgram(python()[0], {simulated + "/simulate.py", folder.path()}).status,
        0);
    QList<QByteArray> shipped = testsupport::contentsOf(simulated);
    QVERIFY(shipped.removeOne(testsupport::readBytes(simulated + "/simulate.py")));
    QCOMPARE(testsupport::contentsOf(folder.path()), shipped);
}

void TestAnalysis::codebookListsEveryColumn() {
    QFETCH(QStringList, command);
    const QTemporaryDir folder;
    const QString requests = folder.filePath("requests.tsv");
    const AnalysisRun run =
        analyse(command, {"--target", "440", "--requests", requests, simulated});
    const QVector<QStringList> tables = codebook();
    QCOMPARE(tables.size(), 4);
    const QStringList texts{run.output, run.output.section("\n\n", 1),
                            testsupport::readBytes(requests)};
    for (int i = 0; i < texts.size(); ++i)
        QCOMPARE((tables[0] + tables[i + 1]).join(u'\t'), texts[i].section(u'\n', 0, 0));
}

void TestAnalysis::functionsCanBeCalled() {
    QFETCH(QStringList, command);
    const QStringList inPython{"-B", "-c",
                               "import sys; sys.path.insert(0, '" PELLION_ANALYSIS "')\n"
                               "import matches; print(matches.analyse(['" PELLION_ANALYSIS
                               "/simulated'], 440).matches[0].matches)"};
    const QStringList inR{"-e",
                          "source('" PELLION_ANALYSIS "/matches.R'); cat(analyse('" PELLION_ANALYSIS
                          "/simulated', 440)$matches$matches[1])"};
    const testsupport::ProgramRun run =
        testsupport::runProgram(command[0], command == python() ? inPython : inR);
    QCOMPARE(run.output.trimmed(), "6");
    QCOMPARE(run.status, 0);
}

void TestAnalysis::pictureHasEveryRequest() {
    if (!isThere(python()))
        QSKIP("python3 is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"<&\"", "experiment", 1, "t.wav", {300, 600, 440}},
                                   {"<&\"", "practice", 1, "t.wav", {450, 440}},
                                   {"S", "practice", 1, "t.wav", {450, 440}},
                                   {"S", "practice", 2, "t.wav", {}}}));
    const QString picture = folder.filePath("trend.svg");
    QCOMPARE(analyse(python(), {"--target", "440", "--picture", picture, folder.path()}).status, 0);
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
    QCOMPARE(circles, (QMap<QString, int>{{"2.5", 4}, {"5", 6}}));
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0].split(u' ').size(), 3);
    // Both matches are as high as the target; 450 Hz is higher, and y runs downwards.
    const auto heightOf = [&](int session, int request) {
        return lines[session].split(u' ')[request].section(u',', 1).toDouble();
    };
    QCOMPARE(heightOf(0, 2), heightOf(1, 1));
    QVERIFY(heightOf(0, 1) < heightOf(1, 0) && heightOf(1, 0) < heightOf(1, 1));
    for (const char* text :
         {"Requests and matches: <&\"", "Requests and matches: S", "experiment 1", "practice 1",
          "- - target, 440 Hz", "Frequency (Hz)", "Request"})
        QVERIFY2(texts.contains(text), text);
    QVERIFY(!texts.contains("practice 2"));
}

void TestAnalysis::pictureHasAColourForEachSession() {
    if (!isThere(statisticsLanguage()))
        QSKIP("Rscript is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"S", "practice", 1, "t.wav", {300, 600, 440}},
                                   {"S", "practice", 2, "t.wav", {450, 440}},
                                   {"T", "practice", 1, "t.wav", {450, 440}}}));
    const QString picture = folder.filePath("trend.png");
    const AnalysisRun run =
        analyse(statisticsLanguage(), {"--target", "440", "--picture", picture, folder.path()});
    QVERIFY2(run.status == 0 && run.errors.isEmpty(), qPrintable(run.errors));
    const QImage image(picture);
    QCOMPARE(image.size(), QSize(960, 1000)); // A panel for each subject.
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
