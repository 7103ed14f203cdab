// What the main window holds before, while and after a sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include <QAbstractEventDispatcher>
#include <QAudioOutput>
#include <QBuffer>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <cmath>

namespace {

/// The bytes of samples on this machine, which is little-endian.
QByteArray bytesOf(const QVector<float>& samples) {
    return {reinterpret_cast<const char*>(samples.constData()),
            samples.size() * int(sizeof(float))};
}

/// Qt's internal objects of QTimer::singleShot() that have not fired yet.
QSet<QObject*> singleShots() {
    QSet<QObject*> timers;
    for (QObject* child : QAbstractEventDispatcher::instance()->children())
        if (qstrcmp(child->metaObject()->className(), "QSingleShotTimer") == 0)
            timers.insert(child);
    return timers;
}

struct Scheduled {
    int count = 0;
    int milliseconds = 0; ///< Of the last.
    Qt::TimerType type{};
};

/// Returns the single-shot timers that a function starts.
template <typename Function> Scheduled scheduledBy(Function&& function) {
    const QSet<QObject*> earlier = singleShots();
    function();
    Scheduled scheduled;
    for (QObject* timer : singleShots() - earlier)
        for (const auto& info : QAbstractEventDispatcher::instance()->registeredTimers(timer))
            scheduled = {scheduled.count + 1, info.interval, info.timerType};
    return scheduled;
}

} // namespace

/// Prepares a target of that many samples, and the settings as "Go" leaves them.
void TestPlaybackMembers::prepareSamples(int samples) {
    prepare(unevenCodes(samples));
    fixture->window().getParameters();
}

bool TestPlaybackMembers::isAnythingHeld() const {
    const auto& window = fixture->window();
    return window.audioBytes != nullptr || window.audioBuffer != nullptr ||
           window.audioOutput != nullptr;
}

bool TestPlaybackMembers::isEverythingHeld() const {
    const auto& window = fixture->window();
    return window.audioBytes != nullptr && window.audioBuffer != nullptr &&
           window.audioOutput != nullptr;
}

void TestPlaybackMembers::genSinusoidResizesOnlyBeforeTheFirstSound_data() {
    QTest::addColumn<int>("sequencePosition");
    QTest::addColumn<int>("soundsPlayed");
    QTest::addColumn<int>("sizeBefore");
    QTest::addColumn<int>("sizeAfter");
    QTest::newRow("nothing yet") << 0 << 0 << 0 << 400;
    QTest::newRow("shrunk") << 0 << 0 << 1000 << 400;
    QTest::newRow("a later trial, longer") << 1 << 0 << 1000 << 1000;
    QTest::newRow("a sound was played, longer") << 0 << 1 << 1000 << 1000;
    QTest::newRow("a later trial, shorter") << 1 << 0 << 30 << 30;
    QTest::newRow("a sound was played, nothing there") << 0 << 1 << 0 << 0;
}

void TestPlaybackMembers::genSinusoidResizesOnlyBeforeTheFirstSound() {
    QFETCH(int, sequencePosition);
    QFETCH(int, soundsPlayed);
    QFETCH(int, sizeBefore);
    QFETCH(int, sizeAfter);
    prepareSamples();
    fixture->window().sinusoidSamples = QVector<double>(sizeBefore, 7.0);
    fixture->window().sequencePosition = sequencePosition;
    fixture->window().soundsPlayed = soundsPlayed;
    fixture->window().genSinusoid();
    QCOMPARE(fixture->window().sinusoidSamples.size(), sizeAfter);
    for (int i = 0; i < sizeAfter; ++i)
        QCOMPARE(fixture->window().sinusoidSamples[i] == 7.0, i >= 400);
}

void TestPlaybackMembers::genSinusoidTakesTheSettings() {
    prepareSamples();
    fixture->window().data.frequencyCurrent = 640;
    fixture->window().data.samplingRate = 30000;
    // Neither the file's own rate nor the session's start frequency is used.
    fixture->window().wav.header.samplingRate = 8000;
    fixture->window().data.frequencyStart = 100;
    fixture->window().genSinusoid();
    for (int i = 0; i < 400; ++i)
        QVERIFY(fixture->window().sinusoidSamples[i] ==
                std::sin(i * (640.0 * 6.283185307179586) / 30000.0));
}

void TestPlaybackMembers::outputExistsFromStartToIdle_data() {
    QTest::addColumn<bool>("isSinusoid");
    QTest::newRow("target") << false;
    QTest::newRow("sinusoid") << true;
}

void TestPlaybackMembers::outputExistsFromStartToIdle() {
    QFETCH(bool, isSinusoid);
    prepareSamples();
    fixture->window().playSinusoidNext = isSinusoid;
    fixture->window().genSinusoid();
    QStringList held;
    connect(&fixture->window(), &MainWindow::soundPlaying, this, [&](int index) {
        held.append(QStringLiteral("%1: %2, %3 played, %4 output")
                        .arg(index)
                        .arg(isEverythingHeld() ? "all"
                             : isAnythingHeld() ? "some"
                                                : "none")
                        .arg(fixture->window().soundsPlayed)
                        .arg(fixture->window().findChildren<QAudioOutput*>().size()));
    });
    fixture->window().playOneSound();
    QCOMPARE(held, QStringList("1: all, 1 played, 1 output"));
    const QPointer<QAudioOutput> output = fixture->window().audioOutput;
    QVERIFY(isEverythingHeld());
    // The end is signalled within the output's own signal, so the output must still exist.
    QTRY_COMPARE(held, (QStringList{"1: all, 1 played, 1 output", "-1: none, 1 played, 1 output"}));
    QVERIFY(!isAnythingHeld());
    QTRY_VERIFY(output.isNull());
    QCOMPARE(fixture->window().findChildren<QAudioOutput*>().size(), 0);
}

void TestPlaybackMembers::bytesHoldTheDueSound_data() {
    outputExistsFromStartToIdle_data();
}

void TestPlaybackMembers::bytesHoldTheDueSound() {
    QFETCH(bool, isSinusoid);
    prepareSamples();
    fixture->window().targetSamples[3] = 1.5;
    QVector<float> target = heardFrom(unevenCodes(400));
    target[3] = 1.5F;
    fixture->window().data.frequencyCurrent = 440;
    fixture->window().genSinusoid();
    fixture->window().playSinusoidNext = isSinusoid;
    fixture->window().playOneSound();
    QCOMPARE(*fixture->window().audioBytes, bytesOf(isSinusoid ? heardSinusoid(440, 400) : target));
    QCOMPARE(&fixture->window().audioBuffer->buffer(), fixture->window().audioBytes.get());
    QCOMPARE(fixture->window().audioBuffer->openMode() & QIODevice::ReadWrite, QIODevice::ReadOnly);
    QVERIFY(fixture->window().audioBuffer->parent() == nullptr);
    QCOMPARE(fixture->window().audioOutput->format(), fixture->window().audioFormat);
    QCOMPARE(fixture->window().audioOutput->parent(), &fixture->window());
}

void TestPlaybackMembers::shorterBuffersArePaddedWithZeros_data() {
    outputExistsFromStartToIdle_data();
}

void TestPlaybackMembers::shorterBuffersArePaddedWithZeros() {
    QFETCH(bool, isSinusoid);
    prepareSamples();
    fixture->window().playSinusoidNext = isSinusoid;
    fixture->window().targetSamples = QVector<double>(10, 0.5);
    fixture->window().sinusoidSamples = QVector<double>(10, 0.5);
    fixture->window().playOneSound();
    QCOMPARE(*fixture->window().audioBytes,
             bytesOf(QVector<float>(10, 0.5F) + QVector<float>(390, 0.0F)));
}

void TestPlaybackMembers::sinusoidsShowTheMatchAndCount() {
    prepareSamples();
    auto* field = fixture->window().lineEditFrequencyMatched;
    fixture->window().data.records[0].frequencyMatched = 640;
    fixture->window().playOneSound();
    QCOMPARE(field->text(), QString("not started yet"));
    QCOMPARE(fixture->window().data.nResponses, 0);
    const QVector<QPair<double, QString>> matches{
        {640, "640"}, {10, "10"}, {440.5, "440.5"}, {1234567, "1.23457e+06"}};
    for (int i = 0; i < matches.size(); ++i) {
        fixture->window().playSinusoidNext = true;
        fixture->window().soundsPlayed = 0;
        fixture->window().data.records[0].frequencyMatched = matches[i].first;
        fixture->window().playOneSound();
        QCOMPARE(field->text(), matches[i].second);
        QCOMPARE(fixture->window().data.nResponses, i + 1);
    }
}

void TestPlaybackMembers::silenceFollowsASound_data() {
    QTest::addColumn<int>("samples");
    QTest::newRow("1 sample") << 1;
    QTest::newRow("100 ms") << 4000;
}

void TestPlaybackMembers::silenceFollowsASound() {
    QFETCH(int, samples);
    prepareSamples(samples);
    fixture->window().playOneSound();
    constexpr int silentSamples = 250 * 40; // 250 ms
    constexpr int bytesPerSample = 4;
    QCOMPARE(fixture->window().audioBytes->size(), samples * bytesPerSample);
    // Bytes that the output has already read count as handed out.
    const qint64 handedOut = fixture->window().audioBuffer->pos();
    QCOMPARE(handedOut + fixture->window().audioBuffer->bytesAvailable(),
             qint64((samples + silentSamples) * bytesPerSample));
}

void TestPlaybackMembers::secondSoundOfARequestIsEmptyAndCountsTwo() {
    prepareSamples(20000);
    auto* field = fixture->window().lineEditFrequencyMatched;
    fixture->window().playOneSound();
    const QPointer<QAudioOutput> first = fixture->window().audioOutput;
    fixture->window().playSinusoidNext = true;
    fixture->window().playOneSound();
    QCOMPARE(fixture->soundSignals, (SoundSignals{1, 2}));
    QCOMPARE(fixture->window().soundsPlayed, 2);
    QVERIFY(isEverythingHeld());
    QCOMPARE(fixture->window().audioBytes->size(), 0);
    // An empty sound is not counted, and only one output exists at a time.
    QCOMPARE(fixture->window().data.nResponses, 0);
    QCOMPARE(field->text(), QString("not started yet"));
    QVERIFY(fixture->window().audioOutput != first);
    QTRY_VERIFY(first.isNull());
    QCOMPARE(fixture->window().findChildren<QAudioOutput*>().size(), 1);
}

void TestPlaybackMembers::otherStatesChangeNothing_data() {
    QTest::addColumn<QAudio::State>("state");
    QTest::newRow("active") << QAudio::ActiveState;
    QTest::newRow("suspended") << QAudio::SuspendedState;
    QTest::newRow("interrupted") << QAudio::InterruptedState;
}

void TestPlaybackMembers::otherStatesChangeNothing() {
    QFETCH(QAudio::State, state);
    prepareSamples(20000);
    fixture->window().playOneSound();
    const QAudioOutput* output = fixture->window().audioOutput;
    fixture->window().handleStateChanged(state);
    QVERIFY(isEverythingHeld());
    QCOMPARE(fixture->window().audioOutput, output);
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
}

void TestPlaybackMembers::idleReleasesAndSignalsTheEndOfTheLastSoundOnly_data() {
    QTest::addColumn<int>("soundsPerPresentation");
    QTest::addColumn<int>("soundsPlayed");
    QTest::addColumn<SoundSignals>("signals");
    QTest::newRow("the only sound") << 1 << 1 << SoundSignals{1, -1};
    QTest::newRow("a new request has come") << 1 << 0 << SoundSignals{1};
    QTest::newRow("more sounds than requested") << 1 << 2 << SoundSignals{1};
    QTest::newRow("the first of two") << 2 << 1 << SoundSignals{1};
    QTest::newRow("the second of two") << 2 << 2 << SoundSignals{1, -1};
}

void TestPlaybackMembers::idleReleasesAndSignalsTheEndOfTheLastSoundOnly() {
    QFETCH(int, soundsPerPresentation);
    QFETCH(int, soundsPlayed);
    prepareSamples(20000);
    fixture->window().playOneSound();
    const QPointer<QAudioOutput> output = fixture->window().audioOutput;
    fixture->window().soundsPerPresentation = soundsPerPresentation;
    fixture->window().soundsPlayed = soundsPlayed;
    fixture->window().handleStateChanged(QAudio::IdleState);
    QVERIFY(!isAnythingHeld());
    QTEST(fixture->soundSignals, "signals");
    // The output, stopped here in mid-sound, sends no further signal.
    QTRY_VERIFY(output.isNull());
    QTEST(fixture->soundSignals, "signals");
    fixture->log.expect("Audio ended early");
}

void TestPlaybackMembers::stoppedWithoutAnErrorLogsNothing() {
    prepareSamples(20000);
    fixture->window().handleStateChanged(QAudio::StoppedState);
    fixture->window().playOneSound();
    fixture->window().handleStateChanged(QAudio::StoppedState);
    QVERIFY(isEverythingHeld());
    QCOMPARE(fixture->soundSignals, SoundSignals{1});
}

void TestPlaybackMembers::requestsAreScheduled_data() {
    QTest::addColumn<int>("response");
    QTest::addColumn<QString>("duration");
    QTest::addColumn<QString>("silence");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<Qt::TimerType>("type");
    for (const int response : {2, 4}) {
        const auto row = [&](const char* name, const char* duration, const char* silence, int count,
                             int milliseconds, Qt::TimerType type) {
            QTest::addRow("%s, response %d", name, response)
                << response << QString(duration) << QString(silence) << count << milliseconds
                << type;
        };
        row("500 + 300 ms", "500.00", "300.00", 1, 800, Qt::PreciseTimer);
        row("1500 + 600 ms", "1500.00", "600.00", 1, 2100, Qt::CoarseTimer);
    }
    QTest::newRow("start") << 0 << "250.00"
                           << "500.00" << 0 << 0 << Qt::TimerType();
}

void TestPlaybackMembers::requestsAreScheduled() {
    QFETCH(int, response);
    QFETCH(QString, duration);
    QFETCH(QString, silence);
    QFETCH(int, count);
    QFETCH(int, milliseconds);
    QFETCH(Qt::TimerType, type);
    prepareSamples();
    fixture->window().lineEditSoundDuration->setText(duration);
    fixture->window().lineEditSilentInterval->setText(silence);
    fixture->window().getParameters();
    const Scheduled scheduled =
        scheduledBy([&] { fixture->window().updateMainwindow(response, 640); });
    QCOMPARE(scheduled.count, count);
    QCOMPARE(scheduled.milliseconds, milliseconds);
    QCOMPARE(scheduled.type, type);
    QCOMPARE(fixture->window().sequencePosition, 0);
    // Without a sequence no request is answered.
    fixture->window().trialSequence.clear();
    QCOMPARE(scheduledBy([&] { fixture->window().updateMainwindow(response, 640); }).count, 0);
}

void TestPlaybackMembers::playWavSchedulesWhileTrialsAreLeft() {
    prepareSamples();
    fixture->session().setPause(800);
    fixture->window().getParameters();
    fixture->window().trialSequence = {0, 0};
    int position = 0;
    for (const int count : {1, 1, 0, 0}) {
        const int before = position;
        const Scheduled scheduled = scheduledBy([&] { position = fixture->window().playWav(); });
        QCOMPARE(scheduled.count, count);
        QCOMPARE(scheduled.milliseconds, count * 800);
        QCOMPARE(position, before + 1);
        QCOMPARE(fixture->window().sequencePosition, position);
    }
    QCOMPARE(fixture->soundSignals, SoundSignals{});
}
