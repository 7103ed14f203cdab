// pellion-target: what it does not do, and what it says about itself.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include "support/DiskFaults.h"

#include <QDir>
#include <QTest>

#include <cmath>

void TestTargetRefusals::clippingNamesTheSampleAndWritesNothing_data() {
    const auto row = columns<QString, int, double>("options", "number", "value");
    // A sine of 1000 Hz has 40 samples a period.
    row("peak", "--frequency 1000 --ramp none --peak 6.020599913279624", 4,
        2 * std::sin(4 * 2 * M_PI / 40));
    row("negative", "--frequency 1000 --ramp none --phase 180 --rms -2", 7,
        -std::pow(10, -0.1) * std::sqrt(2) * std::sin(7 * M_PI / 20));
    row("after the ramp",
        "--frequency 10000 --phase 90 --peak 0.5 --ramp linear --ramp-duration 100", 3778,
        -std::pow(10, 0.025) * 3778 / 4000);
}

void TestTargetRefusals::clippingNamesTheSampleAndWritesNothing() {
    QFETCH(QString, options);
    QFETCH(int, number);
    QFETCH(double, value);
    const ToolFolder folder;
    const ToolRun run = folder.run("make tone x.wav " + options);
    QCOMPARE(run.status, 1);
    QCOMPARE(QString::fromUtf8(run.errors),
             QStringLiteral("pellion-target: sample %1, counted from 0, would be %2 and full scale "
                            "is 1: nothing was written; lower the level\n")
                 .arg(number)
                 .arg(value, 0, 'f', 6));
    QCOMPARE(folder.names(), QStringList());
}

void TestTargetRefusals::silenceIsNotWritten() {
    const ToolFolder folder;
    const ToolRun run = folder.run("make tone x.wav --duration 0.025 --ramp none");
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QByteArray("pellion-target: the sound is silent: nothing was written\n"));
    QCOMPARE(folder.names(), QStringList());
}

void TestTargetRefusals::anExistingFileIsKept() {
    const ToolFolder folder;
    QVERIFY(folder.write("x.wav", "precious"));
    const ToolRun run = folder.run("make tone x.wav");
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QByteArray("pellion-target: x.wav exists; --force replaces it\n"));
    QCOMPARE(folder.read("x.wav"), QByteArray("precious"));
    QCOMPARE(folder.names(), QStringList("x.wav"));
}

void TestTargetRefusals::forceReplacesTheWholeFile() {
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone fresh.wav --duration 100").status, 0);
    QVERIFY(folder.write("x.wav", QByteArray(100000, 'x')));
    QCOMPARE(folder.run("make tone x.wav --duration 100 --force").status, 0);
    QCOMPARE(folder.read("x.wav"), folder.read("fresh.wav"));
    QCOMPARE(folder.run("make tone x.wav --duration 100 --force").status, 0);
    QCOMPARE(folder.read("x.wav"), folder.read("fresh.wav"));
}

void TestTargetRefusals::forceReplacesWhatALinkPointsTo() {
    const ToolFolder folder;
    QVERIFY(folder.shell("mkdir sounds && echo old > sounds/y.wav && ln -s sounds/y.wav x.wav"));
    QCOMPARE(folder.run("make tone x.wav").status, 1);
    QCOMPARE(folder.run("make tone x.wav --force").status, 0);
    QVERIFY(folder.shell("test -L x.wav"));
    QCOMPARE(folder.read("sounds/y.wav").size(), 20044);
}

void TestTargetRefusals::aFileThatCannotBeMadeIsNamed_data() {
    const auto row = columns<QString, QString, QString>("preparation", "name", "complaint");
    row("a folder", "mkdir x.wav", "x.wav", "x.wav is not a regular file");
    row("a pipe", "mkfifo x.wav", "x.wav", "x.wav is not a regular file");
    row("in no folder", "true", "no/x.wav", "no file can be made in %1/no");
}

void TestTargetRefusals::aFileThatCannotBeMadeIsNamed() {
    QFETCH(QString, preparation);
    QFETCH(QString, name);
    QFETCH(QString, complaint);
    const ToolFolder folder;
    QVERIFY(folder.shell(preparation));
    const ToolRun run = folder.run("make tone --force " + name);
    QCOMPARE(run.status, 1);
    QCOMPARE(QString::fromUtf8(run.errors),
             QStringLiteral("pellion-target: %1\n")
                 .arg(complaint.replace(QStringLiteral("%1"), folder.path(".").chopped(2))));
}

void TestTargetRefusals::aFullDiskLeavesTheOldFile() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("takes the right to mount");
    const ToolFolder folder;
    const QString name = disk.path(QStringLiteral("x.wav"));
    QVERIFY(testsupport::writeBytes(name, "precious"));
    const ToolRun run = folder.runWords({"make", "tone", name, "--duration", "2000", "--force"});
    QCOMPARE(run.status, 1);
    QCOMPARE(QString::fromUtf8(run.errors),
             QStringLiteral("pellion-target: %1 cannot be written completely\n").arg(name));
    QCOMPARE(testsupport::readBytes(name), QByteArray("precious"));
    QCOMPARE(QDir(QString::fromUtf8(disk.path())).entryList(QDir::Files | QDir::Hidden),
             QStringList("x.wav"));
}

void TestTargetRefusals::nothingButTheFileIsLeft() {
    const ToolFolder folder;
    QVERIFY(folder.shell("umask 022; pellion-target make noise x.wav"));
    QCOMPARE(folder.names(), QStringList("x.wav"));
    QVERIFY(folder.shell("test $(stat -c %a x.wav) = 644"));
}

void TestTargetRefusals::wrongCommandLinesAreExplained_data() {
    const auto addRow = columns<QString, QString>("arguments", "problem");
    const auto row = [addRow](const char* arguments, const QString& problem) {
        addRow(*arguments == '\0' ? "nothing" : arguments, arguments, problem);
    };
    row("", "the command is missing: make, convert or info");
    row("fix x.wav", "the command is missing: make, convert or info");
    row("make", "make takes tone, complex, sam, noise, not \"\"");
    row("make chirp x.wav", "make takes tone, complex, sam, noise, not \"chirp\"");
    row("make tone", "make takes the name of one file");
    row("make tone x.wav y.wav", "make takes the name of one file");
    row("info", "info takes the names of files");
    row("convert x.wav", "convert takes the names of two files");
    row("convert x.wav y.wav z.wav", "convert takes the names of two files");
    row("convert x.wav y.wav --gain loud", "--gain takes a number from -200 to 100, not \"loud\"");
    row("make tone x.wav --loud", "Unknown option 'loud'");
    row("make tone x.wav --lo.ud", "Unknown option 'lo.ud'");
    row("make tone x.wav --peak", "Missing value after '--peak'");
    row("info --force x.wav", "Unknown option 'force'");
    row("make tone x.wav --harmonics 2", "--harmonics does not belong to \"make tone\"");
    row("make noise x.wav --frequency 2", "--frequency does not belong to \"make noise\"");
    row("make tone x.wav --seed 2", "--seed does not belong to \"make tone\"");
    row("make noise x.wav --seed -1",
        "--seed takes a whole number from 0 to 2147483647, not \"-1\"");
    row("make complex x.wav --depth 1", "--depth does not belong to \"make complex\"");
    row("make sam x.wav --without-fundamental",
        "--without-fundamental does not belong to \"make sam\"");
    row("make tone x.wav --peak -6 --rms -9", "--peak and --rms exclude each other");
    row("make tone x.wav --ramp none --ramp-duration 5",
        "--ramp-duration does not belong to \"--ramp none\"");
    row("make tone x.wav --peak loud", "--peak takes a number from -200 to 100, not \"loud\"");
    row("make tone x.wav --peak nan", "--peak takes a number from -200 to 100, not \"nan\"");
    row("make tone x.wav --peak inf", "--peak takes a number from -200 to 100, not \"inf\"");
    row("make tone x.wav --peak -6,5", "--peak takes a number from -200 to 100, not \"-6,5\"");
    row("make sam x.wav --depth 1.5", "--depth takes a number from 0 to 1, not \"1.5\"");
    row("make tone x.wav --frequency 0",
        "--frequency takes a number from 0.001 to 1e+06, not \"0\"");
    row("make tone x.wav --duration 0", "--duration takes a number from 0.001 to 1e+08, not \"0\"");
    row("make tone x.wav --bits 12", "--bits takes 8, 16, 24, not \"12\"");
    row("make tone x.wav --channels 3", "--channels takes a whole number from 1 to 2, not \"3\"");
    row("make tone x.wav --rate 40000.5",
        "--rate takes a whole number from 1 to 1000000, not \"40000.5\"");
    row("make tone x.wav --ramp sine", "--ramp takes none, cos, cos2, linear, not \"sine\"");
    for (const char* list : {"0", "3-2", "1,,2", "1-2-3", "10001", "all", "-3"})
        row(qPrintable(QStringLiteral("make complex x.wav --harmonics=") + list),
            QStringLiteral("--harmonics takes a list such as 2-10 or 1,3,5 of numbers up to 10000, "
                           "not \"%1\"")
                .arg(list));
    row("make tone x.wav --frequency 20000",
        "20000 Hz are not below half the sampling rate, 20000 Hz");
    row("make tone x.wav --frequency 4000 --rate 8000",
        "4000 Hz are not below half the sampling rate, 4000 Hz");
    row("make complex x.wav --harmonics 46",
        "20240 Hz are not below half the sampling rate, 20000 Hz");
    row("make sam x.wav --modulation 19560",
        "20000 Hz are not below half the sampling rate, 20000 Hz");
    row("make complex x.wav --harmonics 1 --without-fundamental",
        "a complex needs at least one harmonic");
    row("make tone x.wav --duration 0.01", "0.01 ms hold no sample at 40000 Hz");
    row("make tone x.wav --duration 39", "two ramps of 20 ms do not fit into 39 ms");
    row("make tone x.wav --duration 1e8", "1e+08 ms are more than a file can hold");
}

void TestTargetRefusals::wrongCommandLinesAreExplained() {
    QFETCH(QString, arguments);
    QFETCH(QString, problem);
    const ToolFolder folder;
    const ToolRun run = folder.run(arguments);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(QString::fromUtf8(run.errors),
             QStringLiteral("pellion-target: %1\npellion-target: see --help\n").arg(problem));
    QCOMPARE(folder.names(), QStringList());
}

void TestTargetRefusals::numbersKeepTheirPointInEveryLocale() {
    const ToolFolder folder;
    // The desk that makes this locale is another test's; where it is not there, nothing changes.
    const ToolRun run =
        folder.runWords({"make", "tone", "x.wav", "--peak", "-6.5"}, {"LC_ALL=de_DE.UTF-8"});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("x.wav: 250.00 ms, 10000 samples, peak -6.50 dB, "
                                    "RMS -9.97 dB re full scale\n"));
}

void TestTargetRefusals::whatWouldBePlayedOtherwiseIsNoted() {
    const ToolFolder folder;
    const ToolRun run = folder.run("make tone x.wav --rate 20000 --duration 100");
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors,
             QByteArray("pellion-target: note: Its sampling rate is 20000 Hz. Pellion plays it at "
                        "40000 Hz without conversion: 440 Hz in it are heard as 880.00 Hz "
                        "(1200.0 cents). Its 2000 samples are followed by 2000 of silence.\n"));
    QCOMPARE(folder.run("make tone y.wav").errors, QByteArray());
    QCOMPARE(folder.run("make tone sound").errors,
             QByteArray("pellion-target: note: Its name does not end in .wav, so Pellion's "
                        "dialog does not show it.\n"));
}

void TestTargetRefusals::helpHasExamplesThatWork_data() {
    const auto row = columns<QString, QString, int>("arguments", "usage", "minimumExamples");
    row("the program's", "--help", "command", 5);
    row("of make", "make --help", "make kind file", 5);
    row("of a kind", "make tone -h", "make kind file", 5);
    row("of convert", "convert --help", "convert in out", 3);
    row("of info", "info --help", "info file...", 4);
}

void TestTargetRefusals::helpHasExamplesThatWork() {
    QFETCH(QString, arguments);
    QFETCH(QString, usage);
    QFETCH(int, minimumExamples);
    const ToolFolder folder;
    const ToolRun run = folder.run(arguments);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output.split('\n')[0], "Usage: pellion-target [options] " + usage.toUtf8());
    int examples = 0;
    QVERIFY(folder.shell("mkdir Desktop && cp /dev/null Desktop/empty && "
                         "pellion-target make tone target.wav && cp target.wav Desktop"));
    for (const QString& line : QString::fromUtf8(run.output).split(u'\n')) {
        if (!line.startsWith(QLatin1String("  pellion-target ")))
            continue;
        ++examples;
        QVERIFY2(folder.shell("export HOME=$PWD;" + line), qPrintable(line));
    }
    QVERIFY(examples >= minimumExamples);
}

void TestTargetRefusals::helpAndVersionNeedNoDisplay() {
    const ToolFolder folder;
    const QStringList nowhere{"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=none"};
    QVERIFY(folder.runWords({"--help"}, nowhere)
                .output.startsWith("Usage: pellion-target [options] command\n"));
    QCOMPARE(folder.runWords({"--version"}, nowhere).output, QByteArray("pellion-target v014\n"));
    QCOMPARE(folder.runWords({"make", "noise", "x.wav"}, nowhere).status, 0);
    QCOMPARE(folder.runWords({"info", "x.wav"}, nowhere).status, 0);
}

void TestTargetRefusals::manualDescribesTheOptionsOfTheHelp() {
    const ToolFolder folder;
    QString help;
    for (const char* command : {"make --help", "convert --help", "info --help"})
        help += QString::fromUtf8(folder.run(command).output);
    const QStringList options = testsupport::optionsIn(help, "^  -.*?  ");
    const QString manual = testsupport::manualText(PELLION_TARGET_MANUAL);
    QCOMPARE(testsupport::optionsIn(manual, "^\\.TP\n.*"), options);
    QCOMPARE(testsupport::optionsIn(manual, "^.*"), options);
    QVERIFY(options.contains("--ramp-duration"));
}

void TestTargetRefusals::manualIsWellFormed() {
    const ToolFolder folder;
    if (!folder.shell("command -v groff >/dev/null"))
        QSKIP("groff is not installed");
    QVERIFY(
        folder.shell("test -z \"$(groff -man -Tutf8 -ww -z '" PELLION_TARGET_MANUAL "' 2>&1)\""));
}
