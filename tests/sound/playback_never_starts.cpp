// Sessions in which Qt never returns from starting a sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ExpectedResults.h"
#include "support/FileBytes.h"
#include "support/ProcessorTime.h"
#include "support/SoundServer.h"
#include "support/TestMain.h"

namespace {

/// The sessions' pause, long enough to remove the sound device during it.
constexpr int pauseMs = 600;
constexpr int defaultTimeoutMs = 20000;

/// Sessions in a process of their own, and the files that they leave.
class HangingSessions : public QProcess {
public:
    explicit HangingSessions(const testsupport::SoundServer& server) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PULSE_SERVER", server.address());
        environment.insert("XDG_DATA_HOME", folder.path());
        setProcessEnvironment(environment);
        setStandardErrorFile(folder.filePath("log"));
        start(PELLION_ENDLESS_SESSIONS, {folder.path(), QString::number(pauseMs)});
    }

    /// The next event that is reported, or an empty array.
    QByteArray nextEvent(int timeoutMs = defaultTimeoutMs) {
        if (!QTest::qWaitFor([this] { return canReadLine(); }, timeoutMs))
            return {};
        return readLine().trimmed();
    }

    /// The contents of the journals.
    QList<QByteArray> journals() const {
        return testsupport::contentsOf(folder.filePath("pellion/journal"));
    }

private:
    QTemporaryDir folder;
};

} // namespace

class TestPlaybackNeverStarts : public QObject {
    Q_OBJECT

private slots:
    void journalHoldsEveryResponseOfAHangingSession();
};

void TestPlaybackNeverStarts::journalHoldsEveryResponseOfAHangingSession() {
    testsupport::SoundServer server;
    QVERIFY(server.start());
    HangingSessions sessions(server);
    QByteArray event;
    do {
        event = sessions.nextEvent();
        QVERIFY(!event.isEmpty());
    } while (!event.startsWith("asked 1 "));
    const QByteArray frequency = event.split(' ').last();
    // During the pause the program still sees the device. When it asks for a stream to it, the
    // device is gone.
    QVERIFY(server.freezeAndRemoveSink());
    QCOMPARE(sessions.nextEvent(2 * pauseMs), QByteArray());
    server.thaw();
    QCOMPARE(sessions.nextEvent(2 * pauseMs), QByteArray());
    QVERIFY(!server.hasSink());
    QCOMPARE(sessions.state(), QProcess::Running);
    const QList<QByteArray> expected{
        testsupport::expectedResults("target.wav", QStringList(frequency))};
    QCOMPARE(sessions.journals(), expected);

    const qint64 busyBefore = testsupport::processorTimeMs(sessions.processId());
    constexpr int watchedMs = 1000;
    QTest::qWait(watchedMs);
    const qint64 busyMs = testsupport::processorTimeMs(sessions.processId()) - busyBefore;
    QVERIFY2(busyMs < watchedMs / 4, qPrintable(QString::number(busyMs)));

    // The program cannot be ended in any other way.
    sessions.kill();
    QVERIFY(sessions.waitForFinished());
    QCOMPARE(sessions.journals(), expected);
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestPlaybackNeverStarts>(argc, argv);
}

#include "playback_never_starts.moc"
