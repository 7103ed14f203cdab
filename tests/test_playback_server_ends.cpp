// Sessions whose sound server ends in mid-sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback_failures.h"

#include "support/TestMain.h"

#include <QAudioOutput>
#include <QProcess>

#include <memory>

namespace {

/// A sound server of the test's own, in a folder of its own, so that it can be ended.
class SoundServer {
public:
    explicit SoundServer(const QString& folder) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"})
            environment.insert(name, folder);
        environment.remove("PULSE_SERVER");
        process.setProcessEnvironment(environment);
        process.setStandardErrorFile(folder + "/log");
        const QString sink("module-null-sink sink_name=lab rate=40000 channels=1 format=float32le "
                           "norewinds=1");
        const QString protocol("module-native-protocol-unix auth-anonymous=1 socket=");
        process.start("pulseaudio",
                      {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit", "-L", sink,
                       "-L", protocol + folder + "/socket"});
    }
    ~SoundServer() { kill(); }
    SoundServer(const SoundServer&) = delete;
    SoundServer(SoundServer&&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    SoundServer& operator=(SoundServer&&) = delete;

    void kill() {
        process.kill();
        process.waitForFinished();
    }

private:
    QProcess process;
};

QString socketFolder() {
    static const QTemporaryDir folder;
    return folder.path();
}

bool answers() {
    QProcess pactl;
    pactl.start("pactl", {"info"});
    return pactl.waitForFinished() && pactl.exitCode() == 0 &&
           pactl.readAllStandardOutput().contains("Default Sink: lab");
}

} // namespace

class TestPlaybackServerEnds : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void soundIsPlayedWhileTheServerIsThere();
    void serverThatEndsInMidSoundIsLoggedAndTheSessionEnds();
    void cleanupTestCase();

private:
    std::unique_ptr<SoundServer> server;
};

void TestPlaybackServerEnds::initTestCase() {
    server = std::make_unique<SoundServer>(socketFolder());
    constexpr int patienceMs = 20000;
    QTRY_VERIFY_WITH_TIMEOUT(answers(), patienceMs);
}

void TestPlaybackServerEnds::cleanupTestCase() {
    server.reset();
}

void TestPlaybackServerEnds::soundIsPlayedWhileTheServerIsThere() {
    FailureBench bench;
    bench.prepareAndGo();
    QVERIFY(bench.session.playTarget());
    QCOMPARE(bench.log.warnings(), QStringList());
    bench.sounds.clear();
    bench.endAndVerify({});
}

void TestPlaybackServerEnds::serverThatEndsInMidSoundIsLoggedAndTheSessionEnds() {
    FailureBench bench;
    bench.prepareAndGo(200000);
    emit bench.session.listener()->subjectResponded(4, 640);
    QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
    QTRY_COMPARE(bench.window.audioOutput->state(), QAudio::ActiveState);
    QVERIFY(!bench.log.all().contains("Audio stopped unexpectedly"));
    server->kill();
    QTRY_COMPARE(bench.log.warnings().count("Audio stopped unexpectedly"), 1);
    // Nothing is released, and nothing unlocks the listener's window.
    QVERIFY(bench.window.audioOutput != nullptr);
    QVERIFY(bench.window.audioOutput->error() != QAudio::NoError);
    QCOMPARE(bench.window.audioBytes->size(), 800000);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    bench.endAndVerify({640});
    // The next session goes without sound.
    bench.sounds.clear();
    bench.prepareAndGo();
    emit bench.session.listener()->subjectResponded(4, 321);
    QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
    bench.endAndVerify({321});
}

int main(int argc, char** argv) {
    qputenv("PULSE_SERVER", "unix:" + socketFolder().toUtf8() + "/socket");
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return testsupport::runAll<TestPlaybackServerEnds>(argc, argv);
}

#include "test_playback_server_ends.moc"
