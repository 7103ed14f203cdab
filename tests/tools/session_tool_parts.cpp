// The parts of pellion-session by themselves: answers, findings, saved states, journals.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_session_tool.h"

#include "session/JournalLock.h"
#include "session/ResponseJournal.h"
#include "session/ResultsFile.h"
#include "support/TestTable.h"
#include "tools/session/CheckReport.h"
#include "tools/session/Recovery.h"
#include "tools/session/SoundAnswers.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaType>
#include <QTest>
#include <QTime>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

Q_DECLARE_METATYPE(SoundState)

namespace {

/// What is wrong with the disk of the journals. On NFS only files that are open for writing can be
/// locked.
enum class Fault { None, Nfs, ReadError };
Fault fault = Fault::None;

/// Answers as pactl 16 gives them, shortened, about a sink with further values in its object.
SoundAnswers pulseAudio(const QByteArray& sinkValues, const QByteArray& properties = {}) {
    SoundAnswers answers;
    answers.server = R"json({"server_name":"pulseaudio","server_version":"16.1",
        "default_sink_name":"card"})json";
    answers.everything =
        R"json({"modules":[{"name":"module-suspend-on-idle","argument":""}],
        "sinks":[{"name":"other","state":"IDLE","mute":true,"properties":{}},
        {"name":"card","state":"RUNNING","driver":"module-alsa-card.c","mute":false,
        "sample_specification":"s16le 2ch 44100Hz",
        "volume":{"front-left":{"value":65536,"value_percent":"100%"},
        "front-right":{"value":32768,"value_percent":"50%"}})json" +
        sinkValues + R"json(,"properties":{"device.class":"sound")json" + properties +
        R"json(}}],
        "sink_inputs":[{"corked":false,"properties":{"application.name":"(null)",
        "application.process.binary":"music"}},
        {"corked":false,"properties":{"application.name":"music"}},
        {"corked":true,"properties":{"application.name":"Paused"}},
        {"corked":false,"properties":{"application.name":"Pellion"}}]})json";
    answers.withStream = R"json([{"mute":true,"resample_method":"wrong",
        "properties":{"application.process.id":"1"}},
        {"mute":true,"resample_method":"speex-float-1","volume":{"mono":{"value_percent":"70%"}},
        "properties":{"application.process.id":"42"}}])json";
    answers.streamProcess = 42;
    return answers;
}

/// A state without findings.
SoundState good() {
    SoundState state;
    state.server = "PulseAudio 16.1";
    state.output = "card";
    state.device = "sound card";
    state.format = "s16le";
    state.channels = 2;
    state.rate = 48000;
    state.resampler = "speex-float-10";
    state.volume = 100;
    return state;
}

QStringList textsOf(const QVector<SessionFinding>& findings) {
    QStringList texts;
    for (const SessionFinding& finding : findings)
        texts << finding.subject + ": " + finding.problem;
    return texts;
}

} // namespace

void TestSessionParts::answersOfPulseAudioAreUnderstood() {
    const SoundState state = soundState(pulseAudio(
        R"(,"active_port":"headphones","ports":[{"name":"headphones",
        "availability":"not available"}],"flags":["HARDWARE"])"));
    QCOMPARE(state.problem, QString());
    QCOMPARE(state.server, QString("PulseAudio 16.1"));
    QCOMPARE(state.output, QString("card"));
    QCOMPARE(state.device, QString("sound card"));
    QCOMPARE(state.format, QString("s16le"));
    QCOMPARE(state.channels, 2);
    QCOMPARE(state.rate, 44100);
    QCOMPARE(state.resampler, QString("speex-float-1"));
    QCOMPARE(state.port, QString("headphones"));
    QCOMPARE(state.exactVolumes, QString("front-left 65536, front-right 32768"));
    QCOMPARE(state.volume, 50);
    QVERIFY(!state.isBalanced && !state.isMuted && !state.isSuspended && state.isUnplugged);
    QCOMPARE(state.suspendAfter, QString("5"));
    QCOMPARE(state.streamProblem, QString());
    QCOMPARE(state.streamVolume, 70);
    QVERIFY(state.isStreamMuted);
    QCOMPARE(state.otherPrograms, QStringList("music"));
    const char* const ownTime = R"(,"module-suspend-on-idle.timeout":"%1")";
    for (const auto& [time, expected] : {std::pair("-1", ""), {"0", "0"}, {"none", "5"}})
        QCOMPARE(soundState(pulseAudio("", QString(ownTime).arg(time).toUtf8())).suspendAfter,
                 QString(expected));
    // With flat volumes, 50 % is the device's volume.
    SoundAnswers flat = pulseAudio(R"(,"flags":["FLAT_VOLUME"])");
    QCOMPARE(soundState(flat).streamVolume, 70);
    flat.withStream.replace("70%", "50%");
    QCOMPARE(soundState(flat).streamVolume, 100);
}

void TestSessionParts::answersOfPipeWireAreUnderstood() {
    SoundAnswers answers = pulseAudio("", R"(,"session.suspend-timeout-seconds":"0")");
    answers.server = R"json({"server_name":"PulseAudio (on PipeWire 1.4.2)",
        "server_version":"15.0.0","default_sink_name":"card"})json";
    answers.streamProcess = 7;
    const SoundState state = soundState(answers);
    QCOMPARE(state.server, QString("PipeWire 1.4.2"));
    QCOMPARE(state.suspendAfter, QString());
    QCOMPARE(state.streamProblem, QString("the sound server refuses sounds of 40000 Hz, one "
                                          "channel, 32-bit floats"));
    answers.isStreamLate = true;
    QCOMPARE(soundState(answers).streamProblem, QString("card takes long to accept a sound"));
    answers.everything.replace(R"("session.suspend-timeout-seconds":"0")", R"("a":"b")");
    QCOMPARE(soundState(answers).suspendAfter, QString("5"));
}

void TestSessionParts::kindsOfDevices_data() {
    const auto row =
        testsupport::columns<QByteArray, QByteArray, QString>("sink", "properties", "kind");
    row("card", "card", "", "sound card");
    row("Bluetooth", "card", R"(,"device.api":"bluez5")", "Bluetooth");
    row("Bluetooth by its name", "bluez_sink.1", "", "Bluetooth");
    row("HDMI", "card", R"(,"device.profile.name":"HDMI-stereo")", "HDMI");
    row("HDMI by its name", "alsa_output.HDMI", "", "HDMI");
    row("null sink", "card", R"(,"factory.name":"support.null-audio-sink")", "null sink");
    row("null sink by its name", "auto_null", "", "null sink");
    row("effect", "card", R"(,"device.class":"filter")", "filter");
}

void TestSessionParts::kindsOfDevices() {
    QFETCH(QByteArray, sink);
    QFETCH(QByteArray, properties);
    SoundAnswers answers = pulseAudio("", properties);
    for (QByteArray* answer : {&answers.server, &answers.everything})
        answer->replace("\"card\"", '"' + sink + '"');
    QTEST(soundState(answers).device, "kind");
}

void TestSessionParts::answersThatAreNotUnderstoodAreReported() {
    for (const char* answer : {"", "Server Name: pulseaudio", "{", "[]"}) {
        for (QByteArray SoundAnswers::*part : {&SoundAnswers::server, &SoundAnswers::everything}) {
            SoundAnswers answers = pulseAudio("");
            answers.*part = answer;
            QCOMPARE(textsOf(soundFindings(soundState(answers))),
                     QStringList("sound server: pactl's answer is not understood"));
        }
    }
}

void TestSessionParts::findings_data() {
    using Change = void (*)(SoundState&);
    QTest::addColumn<SoundState>("state");
    QTest::addColumn<QString>("finding");
    const auto row = [](const char* name, Change change, const char* finding) {
        SoundState state = good();
        change(state);
        QTest::newRow(name) << state << QString(finding);
    };
    row(
        "nothing", [](SoundState&) {}, "");
    row(
        "nothing is resampled",
        [](SoundState& state) {
            state.rate = 40000;
            state.resampler = "";
        },
        "");
    row(
        "PipeWire resamples cleanly",
        [](SoundState& state) {
            state.server = "PipeWire 1.4.2";
            state.resampler = "PipeWire";
            state.rate = 44100;
        },
        "");
    row(
        "PipeWire suspends what it does not use yet",
        [](SoundState& state) {
            state.server = "PipeWire 1.4.2";
            state.isSuspended = true;
        },
        "");
    row(
        "another clean resampler", [](SoundState& state) { state.resampler = "soxr-vhq"; }, "");
    row(
        "default resampler", [](SoundState& state) { state.resampler = "speex-float-1"; },
        "resampler: the output runs at 48000 Hz, and resampling by speex-float-1 adds noise");
    row(
        "unplugged", [](SoundState& state) { state.isUnplugged = true; },
        "output: nothing is plugged in at card");
    row(
        "muted in the mixer", [](SoundState& state) { state.isStreamMuted = true; },
        "volume: Pellion's sounds are muted");
    row(
        "quiet in the mixer", [](SoundState& state) { state.streamVolume = 99; },
        "volume: Pellion's sounds are at 99 %");
    row(
        "format", [](SoundState& state) { state.streamProblem = "no"; }, "sound server: no");
    row(
        "several programs",
        [](SoundState& state) {
            state.otherPrograms = QStringList{"a", "b"};
        },
        "other sounds: a, b can be heard as well");
    row(
        "no output", [](SoundState& state) { state.output = ""; }, "output: there is none");
}

void TestSessionParts::findings() {
    QFETCH(SoundState, state);
    QFETCH(QString, finding);
    QCOMPARE(textsOf(soundFindings(state)).join('\n'), finding);
}

void TestSessionParts::loadAndFoldersGiveFindings() {
    ComputerState state;
    state.desktop = {"/d", "", 10000000};
    state.journals = {"/j", "", 10000000};
    state.processors = 4;
    state.load = 4;
    QCOMPARE(textsOf(diskAndLoadFindings(state)), QStringList());
    state.load = 4.5;
    state.desktop.freeBytes = 9949999;
    state.journals.problem = "is not a folder";
    state.keptJournals = 3;
    QCOMPARE(
        textsOf(diskAndLoadFindings(state)),
        QStringList({"desktop: only 9.9 MB are free for /d", "journals: /j is not a folder",
                     "journals: 3 hold responses that were not saved",
                     "processor: the load average of the last minute is 4.5, on 4 processors"}));
}

void TestSessionParts::reportsHoldEveryFinding() {
    ComputerState state;
    state.sound = good();
    state.sound.isMuted = true;
    state.sound.isUnplugged = true;
    state.desktop = {"/d", "does not exist", 0};
    state.journals = {"/j", "", 10000000};
    SavedState saved;
    saved.sound = good();
    saved.sound.isUnplugged = true;
    const CheckReport report = checkReport(state, saved);
    QCOMPARE(textsOf(report.findings),
             QStringList({"volume: card is muted", "changed: muted: yes, saved: no",
                          "desktop: /d does not exist"}));
    QCOMPARE(textsOf(report.notes), QStringList("output: nothing is plugged in at card"));
    QStringList lines = reportText(report).split('\n');
    QVERIFY(lines[5].endsWith(": /d") && lines[6].endsWith(": /j"));
    QCOMPARE(lines.mid(0, 3), QStringList({"Sound server               : PulseAudio 16.1",
                                           "Output                     : card (sound card)",
                                           "Format                     : s16le, channels: 2"}));
    QCOMPARE(lines[3], QString("Sampling rate              : 48000 Hz, resampled from 40000 Hz by "
                               "speex-float-10"));
    QCOMPARE(lines[4], QString("Volume                     : 100 %"));
    QCOMPARE(lines.mid(11), QStringList({"Ready                      : no (findings: 3)", ""}));
    lines = reportText({}).split('\n');
    QCOMPARE(lines[0], QString("Sound server               : "));
    QCOMPARE(lines.mid(3), QStringList({"Ready                      : yes", ""}));
    const QJsonObject json = QJsonDocument::fromJson(reportJson(report).toUtf8()).object();
    QCOMPARE(json["ready"], QJsonValue(false));
    const auto compare = [&](const char* key, const QVector<SessionFinding>& findings) {
        QJsonArray expected;
        for (const auto& [subject, problem, remedy] : findings)
            expected << QJsonObject{{"subject", subject}, {"problem", problem}, {"remedy", remedy}};
        QCOMPARE(json[key].toArray(), expected);
    };
    compare("findings", report.findings);
    compare("notes", report.notes);
    QCOMPARE(json["sound"].toObject(), lastingValues(state.sound));
    // Without the silent stream the resampler is not known.
    state.sound.resampler.clear();
    const auto rateIn = [](const CheckReport& other) {
        return reportText(other).split('\n').value(3);
    };
    QCOMPARE(rateIn(checkReport(state, saved)),
             QString("Sampling rate              : 48000 Hz, resampler unknown"));
    state.sound.rate = 40000;
    QCOMPARE(rateIn(checkReport(state, saved)),
             QString("Sampling rate              : 40000 Hz, not resampled"));
    // Without a server nothing is known of the sound, and nothing is compared.
    state.sound = {};
    state.sound.problem = "none";
    const CheckReport silent = checkReport(state, saved);
    QCOMPARE(textsOf(silent.findings),
             QStringList({"sound server: none", "desktop: /d does not exist"}));
    QVERIFY(reportText(silent).startsWith("Sound server               : unknown\nDesktop "));
    QVERIFY(!QJsonDocument::fromJson(reportJson(silent).toUtf8()).object().contains("sound"));
}

void TestSessionParts::valuesThatLastSurviveSaving() {
    const SessionHome home;
    SoundState state = good();
    state.isMuted = true;
    state.streamVolume = 33;
    state.suspendAfter = "7";
    QCOMPARE(writeSavedState(home.path("day.json"), state), QString());
    const SavedState read = readSavedState(home.path("day.json"));
    QCOMPARE(read.problem, QString());
    QCOMPARE(lastingValues(read.sound), lastingValues(state));
    QCOMPARE(textsOf(differences(state, read.sound)), QStringList());
    QCOMPARE(textsOf(differences(good(), read.sound)),
             QStringList({"changed: muted: yes, saved: no",
                          "changed: suspended after (s): 7, saved: none",
                          "changed: volume of Pellion's sounds (%): 33, saved: 100"}));
}

void TestSessionParts::onlyASavedStateIsReplaced() {
    const SessionHome home;
    const QString path = home.path("day.json");
    QCOMPARE(writeSavedState(path, good()), QString());
    QCOMPARE(writeSavedState(path, SoundState()), QString());
    QCOMPARE(readSavedState(path).sound.volume, 0);
    QVERIFY(testsupport::writeBytes(path, R"({"sound on a good day":{"output":"card"}})"));
    QCOMPARE(readSavedState(path).problem, QString());
    QCOMPARE(readSavedState(path).sound.output, QString("card"));
    for (const QByteArray& content : {QByteArray(), QByteArray("{}"), resultsHeader().toUtf8()}) {
        QVERIFY(testsupport::writeBytes(path, content));
        QCOMPARE(readSavedState(path).problem, path + " is not a file that --save has written");
        QCOMPARE(writeSavedState(path, good()),
                 path + " exists, and is not a saved state: it is not replaced");
        QCOMPARE(testsupport::readBytes(path), content);
    }
    QVERIFY(QFile::remove(path) && QFile::link("nowhere", path));
    QCOMPARE(writeSavedState(path, good()),
             path + " exists, and is not a saved state: it is not replaced");
    QCOMPARE(writeSavedState(home.path("no/folder"), good()),
             home.path("no/folder") + " cannot be written");
}

void TestSessionParts::journalsAreReadAsFarAsTheyAreWhole_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("responses");
    QTest::addColumn<int>("bytesLeftOut");
    const QByteArray header = resultsHeader().toUtf8();
    const QByteArray two = header + "a\tb.wav\t1\t440.5\r\na\tb.wav\t2\t10\r\n";
    QTest::newRow("nothing") << QByteArray() << 0 << 0;
    QTest::newRow("header alone") << header << 0 << 0;
    QTest::newRow("torn header") << header.left(7) << 0 << 7;
    QTest::newRow("whole") << two << 2 << 0;
    QTest::newRow("empty lines") << two + "\n\r\n\n\n" << 2 << 0;
    QTest::newRow("torn within a frequency") << two + "a\tb.wav\t3\t4" << 2 << 11;
    QTest::newRow("torn between CR and LF") << two + "a\tb.wav\t3\t44\r" << 2 << 12;
    QTest::newRow("zeros") << two + QByteArray(5, '\0') + "\r\n" << 2 << 5;
    QTest::newRow("another number") << two + "a\tb.wav\t4\t440\r\n" << 2 << 13;
    QTest::newRow("no frequency") << two + "a\tb.wav\t3\tnan\r\n" << 2 << 13;
    QTest::newRow("whole after torn") << header + "b.wav\t1\r\nb.wav\t2\t10\r\n" << 0 << 17;
}

void TestSessionParts::journalsAreReadAsFarAsTheyAreWhole() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, responses);
    const KeptJournal journal = readJournal("j", bytes);
    QCOMPARE(journal.responses, responses);
    QTEST(journal.bytesLeftOut, "bytesLeftOut");
    QVERIFY(bytes.startsWith(journal.results));
    QCOMPARE(journal.results.count("\r\n"),
             responses > 0 ? responses + 1 : journal.results.size() > 0);
    QCOMPARE(journal.target, responses > 0 ? QString("a\tb.wav") : QString());
}

void TestSessionParts::journalsOnNfsAreFound() {
    const SessionHome home;
    const QString path = home.leaveJournal("SUB001_practice001", {440});
    fault = Fault::Nfs;
    const KeptJournals kept = keptJournals(home.journals());
    const bool isHeldElsewhere = JournalLock(path).isHeldElsewhere();
    fault = Fault::None;
    QCOMPARE(kept.leftAlone, 0);
    QCOMPARE(kept.journals.size(), 1);
    QCOMPARE(kept.journals[0].responses, 1);
    QVERIFY(!isHeldElsewhere);
}

/// Not taken for an empty one, which would be removed.
void TestSessionParts::unreadableJournalIsKept() {
    const SessionHome home;
    const QString path = home.leaveJournal("SUB001_practice001", {440});
    fault = Fault::ReadError;
    const KeptJournals kept = keptJournals(home.journals());
    const Recovery recovery = recover(path, home.desktop());
    fault = Fault::None;
    QCOMPARE(kept.leftAlone, 1);
    QCOMPARE(recovery.problem, QString("a running session holds it, or it cannot be read"));
    QCOMPARE(testsupport::readBytes(path), resultsText("t.wav", {440}).toUtf8());
}

void TestSessionParts::namesOfJournalsAreTakenApart_data() {
    QTest::addColumn<QString>("resultsName");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("usual") << "SUB001_practice001.txt" << QStringList{"SUB001", "practice", "001"};
    QTest::newRow("no code") << "_experiment1234.txt" << QStringList{"", "experiment", "1234"};
    QTest::newRow("code like a session")
        << "A_practice002-20200101-000000_practice003.txt"
        << QStringList{"A_practice002-20200101-000000", "practice", "003"};
    QTest::newRow("code that is cut off")
        << QString(60, 'n') + "_practice001.txt" << QStringList{"", "", ""};
    QTest::newRow("number that is cut off")
        << QString(48, 'n') + "_practice1234.txt" << QStringList{"", "", ""};
    QTest::newRow("longest that is not cut off")
        << QString(47, 'n') + "_practice123.txt"
        << QStringList{QString(47, 'n'), "practice", "123"};
    QTest::newRow("a name of one's own") << "mine.txt" << QStringList{"", "", ""};
}

void TestSessionParts::namesOfJournalsAreTakenApart() {
    QFETCH(QString, resultsName);
    const QDateTime start(QDate(2026, 3, 9), QTime(8, 5, 59));
    const QString name = journalName(resultsName, start);
    for (const QString& found : {name, name.chopped(4) + "-2.txt"}) {
        const KeptJournal journal = readJournal("folder/" + found, {});
        QTEST(QStringList({journal.subject, journal.sessionType, journal.number}), "parts");
        QCOMPARE(journal.start, start);
    }
}

// Replaces the system's function in the whole test program.
extern "C" int flock(int fd, int operation) noexcept {
    if (fault == Fault::ReadError) {
        const QByteArray path = "/proc/self/fd/" + QByteArray::number(fd);
        const int unreadable = open(path.constData(), O_WRONLY | O_CLOEXEC);
        dup2(unreadable, fd);
        close(unreadable);
    }
    if (fault == Fault::Nfs && (fcntl(fd, F_GETFL) & O_ACCMODE) == O_RDONLY) {
        errno = EBADF;
        return -1;
    }
    return static_cast<int>(syscall(SYS_flock, fd, operation));
}
