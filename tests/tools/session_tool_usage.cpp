// pellion-session: command lines, help and manual page.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session_tool.h"

#include "support/ProgramRun.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>

void TestSessionUsage::wrongCommandLinesAreExplained_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("problem");
    const QString more = "\npellion-session: see --help\n";
    const auto row = [&](const QStringList& arguments, const QString& problem) {
        QTest::newRow(qPrintable(arguments.join(' '))) << arguments << problem;
    };
    row({}, "the command is missing: check or recover" + more);
    row({"chek"}, "the command is missing: check or recover" + more);
    row({"now", "check"}, "the command is missing: check or recover" + more);
    row({"check", "now"}, "check takes no further argument: \"now\"" + more);
    row({"check", "--fast"}, "Unknown option 'fast'" + more);
    row({"check", "--save"}, "Missing value after '--save'" + more);
    row({"check", "--save="}, "--save takes the name of a file" + more);
    row({"check", "--compare", "nothing"}, "nothing cannot be read\n");
    row({"check", "--compare", "Desktop"}, "Desktop cannot be read\n");
    row({"check", "--window"}, "Unknown option 'window'" + more);
    row({"recover", "a", "b"}, "recover takes the name of one folder" + more);
    row({"recover", ""}, "recover takes the name of one folder" + more);
    row({"recover", "nowhere"}, "there is no folder nowhere\n");
    row({"recover", "--json"}, "Unknown option 'json'" + more);
}

void TestSessionUsage::wrongCommandLinesAreExplained() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, problem);
    const SessionHome home;
    const QString journal = home.leaveJournal("SUB001_practice001", {500});
    const SessionToolRun run = home.run(arguments);
    QCOMPARE(run.errors, "pellion-session: " + problem);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.status, 2);
    QVERIFY(QFileInfo::exists(journal));
}

void TestSessionUsage::helpHasExamplesThatWork_data() {
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("minimumExamples");
    QTest::newRow("the program's") << "--help" << 3;
    QTest::newRow("of check") << "check --help" << 4;
    QTest::newRow("of recover") << "recover -h" << 3;
}

/// In the order of the help: a state is saved before it is compared.
void TestSessionUsage::helpHasExamplesThatWork() {
    QFETCH(QString, arguments);
    QFETCH(int, minimumExamples);
    const SessionHome home;
    const SessionToolRun run = home.run(arguments.split(' '));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QString());
    int examples = 0;
    for (const QString& line : run.output.split('\n')) {
        if (!line.startsWith("  pellion-session "))
            continue;
        ++examples;
        QProcess shell;
        shell.setWorkingDirectory(home.path("."));
        // Findings are no failure.
        shell.start(
            "sh",
            {"-c", "export HOME=$PWD PATH=\"$(dirname '" PELLION_SESSION "'):$PATH\";" + line});
        QVERIFY(shell.waitForFinished());
        QVERIFY2(shell.exitCode() <= 1, qPrintable(line + shell.readAllStandardError()));
    }
    QVERIFY(examples >= minimumExamples);
}

void TestSessionUsage::onlyTheWindowNeedsADisplay() {
    const SessionHome home;
    const QStringList nowhere{"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="};
    QCOMPARE(home.run({"--version"}, nowhere).output, QString("pellion-session v014\n"));
    QVERIFY(home.run({"check", "--json"}, nowhere).output.startsWith('{'));
    QCOMPARE(home.run({"recover"}, nowhere).status, 0);
    const SessionToolRun run = home.run({"recover", "--window"}, nowhere);
    QCOMPARE(run.errors, QString("pellion-session: --window needs a display\n"));
    QCOMPARE(run.status, 2);
}

/// As on a full disk.
void TestSessionUsage::outputThatCannotBeWrittenIsAnError() {
    QProcess shell;
    shell.start("sh", {"-c", "'" PELLION_SESSION "' --version >/dev/full"});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardError(),
             QByteArray("pellion-session: standard output cannot be written\n"));
    QCOMPARE(shell.exitCode(), 1);
}

void TestSessionUsage::manualDescribesTheOptionsOfTheHelp() {
    const SessionHome home;
    const QString help =
        home.run({"check", "--help"}).output + home.run({"recover", "--help"}).output;
    const QStringList options = testsupport::optionsIn(help, "^  -.*?  ");
    const QString manual = testsupport::manualText(PELLION_SESSION_MANUAL);
    QCOMPARE(testsupport::optionsIn(manual, "^\\.TP\n.*"), options);
    QCOMPARE(testsupport::optionsIn(manual, "^.*"), options);
    QVERIFY(options.contains("--window"));
}

void TestSessionUsage::manualIsWellFormed() {
    QProcess shell;
    shell.start("sh",
                {"-c", "command -v groff >/dev/null || exit 77; test -z \"$(groff -man -Tutf8 "
                       "-ww -z '" PELLION_SESSION_MANUAL "' 2>&1)\""});
    QVERIFY(shell.waitForFinished());
    if (shell.exitCode() == 77)
        QSKIP("groff is not installed");
    QCOMPARE(shell.exitCode(), 0);
}
