// When sounds are told, heard and shown.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include "subject/SubjectWindow.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

namespace {

using Told = QVector<int>;
constexpr double samplesPerMillisecond = 40.0;

/// What happens in a window, in order.
class Events {
public:
    explicit Events(PlaybackBench& bench) {
        QObject::connect(&bench.window, &MainWindow::soundPlaying, &context,
                         [this](int index) { add(QStringLiteral("sound %1").arg(index)); });
        QObject::connect(testsupport::find<QLineEdit>(bench.window, "lineEditFrequencyMatched"),
                         &QLineEdit::textChanged, &context,
                         [this](const QString& text) { add("field " + text); });
    }

    void add(const QString& event) { events.append(event); }

    /// Notes the end of a pause. Timers that end together run in the order of their start.
    void addAfter(int milliseconds, const QString& event) {
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, &context, [=] { add(event); });
    }

    QStringList seen() const { return events; }

private:
    QObject context;
    QStringList events;
};

} // namespace

void TestPlaybackTimes::soundStartsExactlyAfterThePause_data() {
    QTest::addColumn<int>("response");
    QTest::addColumn<int>("pause");
    QTest::newRow("target") << 2 << 150;
    QTest::newRow("sinusoid") << 4 << 150;
    QTest::newRow("at once") << 2 << 0;
}

void TestPlaybackTimes::soundStartsExactlyAfterThePause() {
    QFETCH(int, response);
    QFETCH(int, pause);
    PlaybackBench bench;
    bench.prepare(unevenCodes(40));
    bench.setPause(pause);
    QVERIFY(bench.go());
    Events events(bench);
    events.addAfter(pause, "pause is over");
    bench.window.updateMainwindow(response, 640);
    events.addAfter(pause, "later than the pause");
    QCOMPARE(events.seen(), QStringList());
    QTRY_VERIFY(events.seen().contains("sound -1"));
    QStringList expected{"pause is over", "sound 1", "later than the pause", "sound -1"};
    if (response == 4)
        expected.insert(1, "field 640");
    QCOMPARE(events.seen(), expected);
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackTimes::pauseIsHeardBetweenTheSounds() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(4000);
    bench.prepare(codes);
    constexpr int pauseMs = 250;
    bench.setPause(pauseMs);
    QVERIFY(bench.go());
    QElapsedTimer clock;
    clock.start();
    QVector<qint64> startsToldMs;
    connect(&bench.window, &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            startsToldMs.append(clock.elapsed());
    });
    // Each request is made as soon as the sound before has been told to have ended.
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.session.playSinusoid(640));
    QVERIFY(bench.session.playTarget());
    QVERIFY(bench.recorder.waitForSilence());
    const testsupport::HeardSounds heard = testsupport::findSounds(
        bench.recorder.samples(), {heardFrom(codes), heardSinusoid(640, 4000), heardFrom(codes)});
    QCOMPARE(heard.difference, QString());
    for (int i = 1; i < 3; ++i) {
        const double distanceMs = (heard.starts[i] - heard.starts[i - 1]) / samplesPerMillisecond;
        const double silenceMs = distanceMs - 4000 / samplesPerMillisecond;
        QVERIFY2(silenceMs >= pauseMs, qPrintable(QString::number(silenceMs)));
        // Told and heard at the same distance, but for the time an output takes to start.
        const double differenceMs = distanceMs - double(startsToldMs[i] - startsToldMs[i - 1]);
        constexpr double startingMs = 200;
        QVERIFY2(qAbs(differenceMs) < startingMs, qPrintable(QString::number(differenceMs)));
    }
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackTimes::startAndEndAreToldAroundTheSound() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(20000);
    bench.prepare(codes);
    QElapsedTimer clock;
    clock.start();
    QVector<qint64> toldMs;
    QVector<int> recorded;
    connect(&bench.window, &MainWindow::soundPlaying, this, [&] {
        toldMs.append(clock.elapsed());
        recorded.append(bench.recorder.samples().size());
    });
    bench.window.playOneSound();
    QTRY_COMPARE(bench.soundsTold(), (Told{1, -1}));
    QVERIFY(bench.recorder.waitForSilence());
    const testsupport::HeardSounds heard =
        testsupport::findSounds(bench.recorder.samples(), {heardFrom(codes)});
    QCOMPARE(heard.difference, QString());
    QVERIFY(heard.starts[0] >= recorded[0]);
    QVERIFY(toldMs[1] - toldMs[0] >= 500);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackTimes::matchedFrequencyChangesWhenTheSinusoidStarts() {
    PlaybackBench bench;
    QVERIFY(bench.recorder.start());
    const QVector<int> codes = unevenCodes(2000);
    bench.prepare(codes);
    bench.setPause(100);
    QVERIFY(bench.go());
    Events events(bench);
    int recordedBefore = -1;
    connect(testsupport::find<QLineEdit>(bench.window, "lineEditFrequencyMatched"),
            &QLineEdit::textChanged, this,
            [&] { recordedBefore = bench.recorder.samples().size(); });
    QVERIFY(bench.session.playTarget());
    events.addAfter(100, "pause is over");
    QVERIFY(bench.session.playSinusoid(321));
    events.add("target asked for");
    QVERIFY(bench.session.playTarget());
    QCOMPARE(events.seen(),
             (QStringList{"sound 1", "sound -1", "pause is over", "field 321", "sound 1",
                          "sound -1", "target asked for", "sound 1", "sound -1"}));
    QVERIFY(bench.recorder.waitForSilence());
    const testsupport::HeardSounds heard = testsupport::findSounds(
        bench.recorder.samples(), {heardFrom(codes), heardSinusoid(321, 2000), heardFrom(codes)});
    QCOMPARE(heard.difference, QString());
    // Not while the target before could be heard, and not after the sinusoid's start.
    QVERIFY(recordedBefore > heard.starts[0] + 2000);
    QVERIFY(recordedBefore <= heard.starts[1]);
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackTimes::listenersWindowIsLockedFromRequestToEnd() {
    PlaybackBench bench;
    bench.prepare(unevenCodes(40));
    bench.setPause(50);
    QVERIFY(bench.go());
    QVector<bool> isEnabled;
    connect(&bench.window, &MainWindow::soundPlaying, this,
            [&] { isEnabled.append(bench.session.listener()->isEnabled()); });
    testsupport::click(*bench.session.listener(), "pushButtonPlayTarget");
    QVERIFY(!bench.session.listener()->isEnabled());
    QTRY_COMPARE(isEnabled, (QVector<bool>{false, true}));
    bench.finish();
    QCOMPARE(bench.complaints(), QString());
}
