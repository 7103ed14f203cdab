// Tests of the example analyses: command lines, help, codebook, and calls as a library.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis_tables.h"
#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/TestMain.h"
#include "support/TestTable.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using testsupport::writeBytes;

/// Command lines, help, codebook and calls as a library.
class TestAnalysisUse : public QObject {
    Q_OBJECT

private slots:
    void wrongCommandLinesAreRefused_data();
    void wrongCommandLinesAreRefused();
    void examplesInTheHelpWork_data() { addLanguages(); }
    void examplesInTheHelpWork();
    void codebookListsEveryColumn_data() { addLanguages(); }
    void codebookListsEveryColumn();
    void functionsCanBeCalled_data() { addLanguages(); }
    void functionsCanBeCalled();
};

namespace {

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

void TestAnalysisUse::wrongCommandLinesAreRefused_data() {
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

void TestAnalysisUse::wrongCommandLinesAreRefused() {
    QFETCH(QStringList, command);
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    const QTemporaryDir folder;
    QVERIFY(writeBytes(folder.filePath("renamed"), oneResponse));
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

void TestAnalysisUse::examplesInTheHelpWork() {
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

void TestAnalysisUse::codebookListsEveryColumn() {
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

void TestAnalysisUse::functionsCanBeCalled() {
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

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestAnalysisUse>(argc, argv);
}

#include "analysis_use.moc"
