// When sounds are signalled, heard and shown.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

namespace {

constexpr double samplesPerMillisecond = 40.0;

/// The events of a window, in order.
class Events {
public:
    explicit Events(testsupport::InspectedMainWindow& window) {
        QObject::connect(&window, &MainWindow::soundPlaying, &context,
                         [this](int index) { add(QStringLiteral("sound %1").arg(index)); });
        QObject::connect(window.lineEditFrequencyMatched, &QLineEdit::textChanged, &context,
                         [this](const QString& text) { add("field " + text); });
    }

    void add(const QString& event) { events.append(event); }

    /// Records the end of a pause. Timers that end together fire in the order of their start.
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
    prepare(unevenCodes(40));
    fixture->session().setPause(pause);
    QVERIFY(fixture->start());
    Events events(fixture->window());
    events.addAfter(pause, "pause is over");
    fixture->window().updateMainwindow(response, 640);
    events.addAfter(pause, "later than the pause");
    QCOMPARE(events.seen(), QStringList());
    QTRY_VERIFY(events.seen().contains("sound -1"));
    QStringList expected{"pause is over", "sound 1", "later than the pause", "sound -1"};
    if (response == 4)
        expected.insert(1, "field 640");
    QCOMPARE(events.seen(), expected);
    fixture->finish();
}

void TestPlaybackTimes::pauseIsHeardBetweenTheSounds() {
    fixture->record();
    prepare(unevenCodes(4000));
    constexpr int pauseMs = 250;
    fixture->session().setPause(pauseMs);
    QVERIFY(fixture->start());
    QElapsedTimer clock;
    clock.start();
    QVector<qint64> startSignalsMs;
    connect(&fixture->window(), &MainWindow::soundPlaying, this, [&](int index) {
        if (index == 1)
            startSignalsMs.append(clock.elapsed());
    });
    // Each request is made as soon as the end of the sound before it is reported.
    QVERIFY(fixture->playTarget());
    QVERIFY(fixture->playSinusoid(640));
    QVERIFY(fixture->playTarget());
    const testsupport::HeardSounds heard = fixture->heard();
    QCOMPARE(heard.difference, QString());
    for (int i = 1; i < 3; ++i) {
        const double distanceMs = (heard.starts[i] - heard.starts[i - 1]) / samplesPerMillisecond;
        const double silenceMs = distanceMs - 4000 / samplesPerMillisecond;
        QVERIFY2(silenceMs >= pauseMs, qPrintable(QString::number(silenceMs)));
        // Signalled and heard at the same interval, except for the time to start an output.
        const double differenceMs = distanceMs - double(startSignalsMs[i] - startSignalsMs[i - 1]);
        constexpr double startingMs = 200;
        QVERIFY2(qAbs(differenceMs) < startingMs, qPrintable(QString::number(differenceMs)));
    }
    fixture->finish();
}

void TestPlaybackTimes::startAndEndAreSignalledAroundTheSound() {
    fixture->record();
    const QVector<int> codes = unevenCodes(20000);
    prepare(codes);
    QElapsedTimer clock;
    clock.start();
    QVector<qint64> signalsMs;
    QVector<int> recorded;
    connect(&fixture->window(), &MainWindow::soundPlaying, this, [&] {
        signalsMs.append(clock.elapsed());
        recorded.append(fixture->recorder().samples().size());
    });
    fixture->window().playOneSound();
    QTRY_COMPARE(fixture->soundSignals, (SoundSignals{1, -1}));
    fixture->expectSound(heardFrom(codes));
    const testsupport::HeardSounds heard = fixture->heard();
    QCOMPARE(heard.difference, QString());
    QVERIFY(heard.starts[0] >= recorded[0]);
    QVERIFY(signalsMs[1] - signalsMs[0] >= 500);
}

void TestPlaybackTimes::matchedFrequencyChangesWhenTheSinusoidStarts() {
    fixture->record();
    prepare(unevenCodes(2000));
    fixture->session().setPause(100);
    QVERIFY(fixture->start());
    Events events(fixture->window());
    int recordedBefore = -1;
    connect(fixture->window().lineEditFrequencyMatched, &QLineEdit::textChanged, this,
            [&] { recordedBefore = fixture->recorder().samples().size(); });
    QVERIFY(fixture->playTarget());
    events.addAfter(100, "pause is over");
    QVERIFY(fixture->playSinusoid(321));
    events.add("target asked for");
    QVERIFY(fixture->playTarget());
    QCOMPARE(events.seen(),
             (QStringList{"sound 1", "sound -1", "pause is over", "field 321", "sound 1",
                          "sound -1", "target asked for", "sound 1", "sound -1"}));
    const testsupport::HeardSounds heard = fixture->heard();
    QCOMPARE(heard.difference, QString());
    // Neither while the earlier target is heard nor after the sinusoid's start.
    QVERIFY(recordedBefore > heard.starts[0] + 2000);
    QVERIFY(recordedBefore <= heard.starts[1]);
    fixture->finish();
}
