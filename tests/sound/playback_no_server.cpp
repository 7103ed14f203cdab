// Sessions where there is no sound server.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback_failures.h"

#include "support/TestMain.h"

#include <QAudioOutput>
#include <QPushButton>
#include <QTimer>

/// In this order: the server comes last.
class TestPlaybackWithoutServer : public QObject {
    Q_OBJECT

private slots:
    void unsupportedFormatIsLoggedOnceAtTheStart();
    void soundIsAttemptedAndNeverEnds();
    void sessionEndsAndSaves();
    void nextSessionIsHeldLikeTheFirst();
    void mainWindowGoesWithAnOutputThatNeverEnds();
    void serverThatComesLaterIsNotFound();
    void cleanupTestCase();
};

void TestPlaybackWithoutServer::unsupportedFormatIsLoggedOnceAtTheStart() {
    const FailureBench bench;
    const QString line = "Raw audio format not supported by backend, cannot play audio.";
    QCOMPARE(bench.log.warnings().count(line), 1);
    // Nothing is disabled for it.
    QVERIFY(bench.window.isEnabled());
    QVERIFY(bench.window.findChild<QPushButton*>("pushButtonPractice")->isEnabled());
}

void TestPlaybackWithoutServer::soundIsAttemptedAndNeverEnds() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(bench.window.audioOutput != nullptr);
    QCOMPARE(bench.window.audioOutput->state(), QAudio::StoppedState);
    // Long enough for the sound of 10 ms, had it been played.
    bool isOver = false;
    QTimer::singleShot(200, Qt::PreciseTimer, this, [&] { isOver = true; });
    QTRY_VERIFY(isOver);
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(bench.window.audioOutput != nullptr);
    QVERIFY(!bench.session.listener()->isEnabled());
    QVERIFY(!bench.log.all().contains("Audio stopped unexpectedly"));
    bench.endAndVerify({});
}

void TestPlaybackWithoutServer::sessionEndsAndSaves() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    // What no sound unlocks is asked for as the listener's window would.
    for (const int frequency : {640, 441}) {
        bench.sounds.clear();
        emit bench.session.listener()->subjectResponded(4, frequency);
        QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
        // One output at a time, though none of them ends.
        QTRY_COMPARE(bench.window.findChildren<QAudioOutput*>().size(), 1);
    }
    QCOMPARE(bench.text("lineEditFrequencyMatched"), QString("441"));
    QVERIFY(bench.isAtRest());
    bench.verifyJournal({640, 441});
    bench.endAndVerify({640, 441});
}

void TestPlaybackWithoutServer::nextSessionIsHeldLikeTheFirst() {
    FailureBench bench;
    for (const int frequency : {300, 400}) {
        bench.sounds.clear();
        QVERIFY(bench.prepareAndGo());
        emit bench.session.listener()->subjectResponded(4, frequency);
        QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
        bench.verifyJournal({frequency});
        bench.endAndVerify({frequency});
    }
}

void TestPlaybackWithoutServer::mainWindowGoesWithAnOutputThatNeverEnds() {
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QTRY_COMPARE(bench.soundsTold(), QVector<int>{1});
    bench.windowOwner.reset();
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QCOMPARE(bench.session.dialogs.takeComplaints(), QStringList());
}

void TestPlaybackWithoutServer::serverThatComesLaterIsNotFound() {
    QVERIFY(server().start());
    // Three seconds after it has lost a server the toolkit looks for it, but it never had this one.
    constexpr int longerThanThatMs = 3500;
    QTest::qWait(longerThanThatMs);
    QVERIFY(QAudioDeviceInfo::defaultOutputDevice().isNull());
    FailureBench bench;
    QVERIFY(bench.prepareAndGo());
    bench.request(640);
    QCOMPARE(bench.window.audioOutput->state(), QAudio::StoppedState);
    QVERIFY(bench.isAtRest());
    QCOMPARE(bench.soundsTold(), QVector<int>{1});
    QVERIFY(!bench.session.listener()->isEnabled());
    bench.verifyJournal({640});
    bench.endAndVerify({640});
}

void TestPlaybackWithoutServer::cleanupTestCase() {
    server().kill();
}

int main(int argc, char** argv) {
    qputenv("PULSE_SERVER", server().address());
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pellion"));
    return testsupport::runAll<TestPlaybackWithoutServer>(argc, argv);
}

#include "playback_no_server.moc"
