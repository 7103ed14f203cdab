// pellion-session check, on sound servers and disks with faults.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session_tool.h"

#include "support/DiskFaults.h"
#include "support/FileBytes.h"
#include "support/SoundServer.h"
#include "tools/session/ComputerState.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using testsupport::SoundServer;

namespace {

/// A device that is clocked and no null sink, as close to a sound card as can be had anywhere.
QStringList card(const QString& properties = {}, int rate = 48000) {
    QStringList module{"module-pipe-sink", "sink_name=lab", "format=s16le", "channels=2",
                       QStringLiteral("rate=%1").arg(rate)};
    if (!properties.isEmpty())
        module << "sink_properties=" + properties;
    return module;
}

QStringList cleanResampler() {
    return {"--resample-method=speex-float-10"};
}

QString address(const SoundServer& server) {
    return "PULSE_SERVER=" + QString::fromUtf8(server.address());
}

/// Whether one of the findings begins with a text.
bool holds(const QStringList& findings, const QString& beginning) {
    return findings.indexOf(
               QRegularExpression('^' + QRegularExpression::escape(beginning) + ".*")) >= 0;
}

} // namespace

void TestSessionCheck::aSoundSystemGivesNoFinding() {
    const SessionHome home;
    SoundServer server(card(), cleanResampler());
    QVERIFY(server.start());
    for (int run = 0; run < 50; ++run) {
        const SessionToolRun checked = home.run({"check"}, {address(server)});
        QCOMPARE(checked.findings(), QStringList());
        QVERIFY2(checked.output.contains(": 48000 Hz, resampled from 40000 Hz by speex-float-10\n"),
                 qPrintable(checked.output));
        QVERIFY(checked.errors.isEmpty());
        const bool isBusy = checked.output.contains(": processor: ");
        QCOMPARE(checked.status, isBusy ? 1 : 0);
        QVERIFY2(checked.milliseconds < 2000, qPrintable(QString::number(checked.milliseconds)));
    }
    QCOMPARE(SessionHome::namesIn(home.journals()) + SessionHome::namesIn(home.desktop()),
             QStringList());
}

void TestSessionCheck::faultsOfTheSoundAreFound_data() {
    QTest::addColumn<QStringList>("sink");
    QTest::addColumn<QString>("command"); // To pactl.
    QTest::addColumn<QString>("finding");
    const auto row = [](const char* name, const QStringList& sink, const char* command,
                        const char* finding) {
        QTest::newRow(name) << sink << QString(command) << QString(finding);
    };
    row("muted", card(), "set-sink-mute lab 1", "volume: lab is muted. ");
    row("at 60 %", card(), "set-sink-volume lab 60%", "volume: lab is at 60 %. ");
    row("at 150 %", card(), "set-sink-volume lab 150%", "volume: lab is at 150 %. ");
    row("out of balance", card(), "set-sink-volume lab 100% 90%",
        "volume: the channels of lab differ. ");
    row("suspended on idle", card(), "load-module module-suspend-on-idle timeout=3",
        "suspension: lab is suspended after 3 seconds without a sound");
    row("suspended at once", card(), "load-module module-suspend-on-idle timeout=0",
        "suspension: lab is suspended after 0 seconds without a sound");
    row("suspended after a time of its own", card("module-suspend-on-idle.timeout=9"),
        "load-module module-suspend-on-idle timeout=3",
        "suspension: lab is suspended after 9 seconds without a sound");
    row("suspended by hand", card(), "suspend-sink lab 1", "suspension: lab is suspended. ");
    row("Bluetooth", card("device.bus=bluetooth"), "stat", "output: lab is Bluetooth, ");
    row("HDMI", card("device.profile.name=hdmi-stereo"), "stat",
        "output: lab is that of a screen (HDMI). ");
    row("an effect", card("device.class=filter"), "stat", "output: lab is an effect, ");
    row("a null sink", {"module-null-sink", "sink_name=lab", "rate=40000"}, "stat",
        "output: lab plays nothing: ");
    row("of a telephone", card({}, 16000), "stat", "sampling rate: the output runs at 16000 Hz ");
}

void TestSessionCheck::faultsOfTheSoundAreFound() {
    QFETCH(QStringList, sink);
    QFETCH(QString, command);
    QFETCH(QString, finding);
    const SessionHome home;
    SoundServer server(sink, cleanResampler());
    QVERIFY(server.start());
    QVERIFY(server.control(command.split(u' ')));
    const SessionToolRun run = home.run({"check"}, {address(server)});
    QVERIFY2(holds(run.findings(), finding), qPrintable(run.output));
    QCOMPARE(run.status, 1);
}

void TestSessionCheck::changesSinceAGoodDayAreFound_data() {
    QTest::addColumn<QString>("command"); // To pactl.
    QTest::addColumn<QString>("finding");
    QTest::newRow("wrong default sink")
        << "load-module module-pipe-sink sink_name=other rate=48000 channels=2 file=other"
        << "changed: output: other, saved: lab. ";
    QTest::newRow("volume") << "set-sink-volume lab 97%"
                            << "changed: volume (%): 97, saved: 100. ";
    QTest::newRow("volume by less than a percent")
        << "set-sink-volume lab 65400"
        << "changed: volume of each channel (65536 is 100 %): front-left 65400, front-right 65400, "
           "saved: front-left 65536, front-right 65536. ";
    QTest::newRow("nothing") << "stat" << QString();
}

void TestSessionCheck::changesSinceAGoodDayAreFound() {
    QFETCH(QString, command);
    QFETCH(QString, finding);
    const SessionHome home;
    SoundServer server(card(), cleanResampler());
    QVERIFY(server.start());
    QVERIFY(home.run({"check", "--save", "day.json"}, {address(server)}).status >= 0);
    QVERIFY(server.control(command.split(u' ')));
    QVERIFY(!command.contains("other") || server.control({"set-default-sink", "other"}));
    const SessionToolRun run = home.run({"check", "--compare", "day.json"}, {address(server)});
    if (finding.isEmpty())
        QCOMPARE(run.findings(), QStringList());
    else
        QVERIFY2(holds(run.findings(), finding), qPrintable(run.output));
}

/// The default resampler at 44100 Hz, which a laboratory may have accepted.
void TestSessionCheck::aKnownFindingBecomesANote() {
    const SessionHome home;
    SoundServer server(card({}, 44100));
    QVERIFY(server.start());
    const SessionToolRun run = home.run({"check", "--save", "day.json"}, {address(server)});
    QCOMPARE(run.status, 1);
    const QString finding = "resampler: the output runs at 44100 Hz, and resampling by "
                            "speex-float-1 adds noise. ";
    QVERIFY2(holds(run.findings(), finding), qPrintable(run.output));
    const SessionToolRun compared = home.run({"check", "--compare", "day.json"}, {address(server)});
    QCOMPARE(compared.findings(), QStringList());
    QVERIFY2(compared.output.contains("Note, as saved             : " + finding),
             qPrintable(compared.output));
}

void TestSessionCheck::anotherStreamIsFound() {
    const SessionHome home;
    SoundServer server(card(), cleanResampler());
    QVERIFY(server.start());
    QProcess player;
    player.setStandardInputFile("/dev/zero");
    player.setReadChannel(QProcess::StandardError);
    player.start("pacat",
                 {"--server", server.address(), "--client-name=Music", "--verbose", "--raw"});
    QByteArray messages;
    QTRY_VERIFY_WITH_TIMEOUT((messages += player.readAllStandardError()).contains("Connected to"),
                             10000);
    const SessionToolRun run = home.run({"check"}, {address(server)});
    QCOMPARE(run.findings(), QStringList("other sounds: Music can be heard as well. End it."));
    player.kill();
    player.waitForFinished();
}

void TestSessionCheck::aMissingOrFrozenServerIsReportedInTime() {
    const SessionHome home;
    const SessionToolRun missing = home.run({"check"}, {"PULSE_SERVER=unix:/nowhere/at/all"});
    QVERIFY(holds(missing.findings(), "sound server: no sound server is running. Start it: "));
    QCOMPARE(missing.status, 1);
    const SessionToolRun unsaved =
        home.run({"check", "--save", "day.json"}, {"PULSE_SERVER=unix:/nowhere/at/all"});
    QCOMPARE(unsaved.errors,
             QString("pellion-session: no sound server is running: nothing was saved\n"));
    QCOMPARE(unsaved.status, 2);
    QVERIFY(!QFileInfo::exists(home.path("day.json")));
    const SessionToolRun without = home.run({"check"}, {"PATH=/nowhere"});
    QCOMPARE(without.findings(), QStringList("sound server: pactl is not installed. Install "
                                             "pulseaudio-utils."));
    SoundServer server(card());
    QVERIFY(server.start());
    server.freeze();
    const SessionToolRun frozen = home.run({"check"}, {address(server)});
    QVERIFY(holds(frozen.findings(), "sound server: the sound server does not answer. "));
    QVERIFY2(frozen.milliseconds < 2000, qPrintable(QString::number(frozen.milliseconds)));
    server.thaw();
    const QString stuck = home.path("pacat");
    QVERIFY(testsupport::writeBytes(stuck, "#!/bin/sh\nexec sleep 10\n"));
    QVERIFY(QFile::setPermissions(stuck, QFile::ReadOwner | QFile::ExeOwner));
    const SessionToolRun late =
        home.run({"check"},
                 {address(server), "PATH=" + home.path(".") + u':' + qEnvironmentVariable("PATH")});
    QCOMPARE(late.findings().filter(" takes long to accept a sound. ").size(), 1);
    QVERIFY2(late.milliseconds < 2000, qPrintable(QString::number(late.milliseconds)));
    QVERIFY(server.removeSink());
    QVERIFY(holds(home.run({"check"}, {address(server)}).findings(), "output: there is none. "));
}

void TestSessionCheck::faultsOfTheDiskAreFound() {
    const testsupport::SmallDisk disk;
    if (!disk.isThere())
        QSKIP("mounting needs root");
    const SessionHome home;
    const QStringList nowhere{"PULSE_SERVER=unix:/nowhere/at/all"};
    QVERIFY(QDir().rmdir(home.desktop()));
    QVERIFY(holds(home.run({"check"}, nowhere).findings(),
                  "desktop: " + home.desktop() + " does not exist. "));
    QVERIFY(testsupport::writeBytes(home.desktop(), {}));
    QVERIFY(holds(home.run({"check"}, nowhere).findings(),
                  "desktop: " + home.desktop() + " is not a folder. "));
    QVERIFY(QFile::remove(home.desktop()));
    QVERIFY(QFile::link(disk.path(), home.desktop()));
    disk.fill();
    QVERIFY(holds(home.run({"check"}, nowhere).findings(),
                  "desktop: only 0.0 MB are free for " + home.desktop()));
    disk.clear();
    QVERIFY(folderState(disk.path(), false).freeBytes > 0);
    for (int number = 0; folderState(disk.path(), false).freeBytes > 0; ++number)
        QVERIFY(testsupport::writeBytes(disk.path(QString::number(number)), {}));
    QVERIFY(disk.makeReadOnly());
    QVERIFY(
        holds(home.run({"check"}, nowhere).findings(),
              "desktop: " + home.desktop() + " cannot be written to (Read-only file system). "));
    // The folder of the journals is made by the first session: below a folder that can be written.
    const QStringList data{nowhere[0], "XDG_DATA_HOME=" + disk.path("new/er")};
    QVERIFY(holds(home.run({"check"}, data).findings(),
                  "journals: " + disk.path("new/er/pellion/journal") + " cannot be written to "));
}

void TestSessionCheck::aKeptJournalIsFound() {
    const SessionHome home;
    QVERIFY(testsupport::writeBytes(home.journals() + "/empty-20260309-080559.txt", {}));
    const QStringList nowhere{"PULSE_SERVER=unix:/nowhere/at/all"};
    QVERIFY(!holds(home.run({"check"}, nowhere).findings(), "journals: "));
    const QString path = home.leaveJournal("SUB001_practice001", {500});
    const SessionToolRun run = home.run({"check"}, nowhere);
    QVERIFY2(run.findings().contains("journals: 1 hold responses that were not saved. "
                                     "\"pellion-session recover\"."),
             qPrintable(run.output));
    QVERIFY(QFileInfo::exists(path));
}

/// On a desk of PipeWire, where the device "lab" is a null sink.
void TestSessionCheck::pipeWireIsAskedAlike() {
    if (qgetenv("DESK_SOUND") != "pipewire")
        QSKIP("the desk runs PulseAudio");
    const SessionHome home;
    const auto check = [&](const QStringList& arguments = {}) {
        return home.run(QStringList{"check"} + arguments);
    };
    const auto pactl = [](const QString& command) {
        return QProcess::execute("pactl", command.split(u' ')) == 0;
    };
    // The desk may be that of other tests.
    const auto restore = qScopeGuard([&] {
        for (const char* command : {"set-sink-mute lab 0", "set-sink-volume lab 100%",
                                    "set-default-sink lab", "unload-module module-null-sink"})
            pactl(command);
    });
    const SessionToolRun run = check({"--save", "day.json"});
    QVERIFY2(run.output.contains(": PipeWire "), qPrintable(run.output));
    QCOMPARE(run.findings().size(), 1);
    QVERIFY(holds(run.findings(), "output: lab plays nothing: "));
    QVERIFY(pactl("set-sink-mute lab 1") && pactl("set-sink-volume lab 60%"));
    QVERIFY(holds(check().findings(), "volume: lab is muted. "));
    QVERIFY(holds(check().findings(), "volume: lab is at 60 %. "));
    QVERIFY(pactl("set-sink-mute lab 0") && pactl("set-sink-volume lab 100%"));
    QVERIFY(pactl("load-module module-null-sink sink_name=far sink_properties=device.api=bluez5"));
    QVERIFY(pactl("set-default-sink far"));
    QTRY_VERIFY(
        holds(check({"--compare", "day.json"}).findings(), "changed: output: far, saved: lab. "));
    QVERIFY(holds(check().findings(), "output: far is Bluetooth, "));
    QVERIFY(holds(check().findings(), "suspension: far is suspended after 5 seconds "));
}
