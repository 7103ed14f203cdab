// What the main window holds before, while and after a sound.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include <QAbstractEventDispatcher>
#include <QAudioOutput>
#include <QBuffer>
#include <QLineEdit>
#include <QPointer>
#include <QtTest>

#include <cmath>

namespace {

using Told = QVector<int>;

/// The bytes of samples on this machine, which is a little-endian one.
QByteArray bytesOf(const QVector<float>& samples) {
    return {reinterpret_cast<const char*>(samples.constData()),
            samples.size() * int(sizeof(float))};
}

/// The toolkit's objects behind QTimer::singleShot() that have not run off yet.
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

/// A bench with a target of that many samples, as "Go" leaves the settings.
class ReadyBench : public PlaybackBench {
public:
    explicit ReadyBench(int samples = 400) {
        prepare(unevenCodes(samples));
        window.getParameters();
    }

    bool isAnythingHeld() const {
        return window.audioBytes != nullptr || window.audioBuffer != nullptr ||
               window.audioOutput != nullptr;
    }
    bool isEverythingHeld() const {
        return window.audioBytes != nullptr && window.audioBuffer != nullptr &&
               window.audioOutput != nullptr;
    }
};

} // namespace

Q_DECLARE_METATYPE(Qt::TimerType)

void TestPlaybackMembers::audioFormat_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");
    const testsupport::InspectedMainWindow window;
    const QAudioFormat& format = window.audioFormat;
    QTest::newRow("sample rate") << format.sampleRate() << 40000;
    QTest::newRow("channel count") << format.channelCount() << 1;
    QTest::newRow("sample size") << format.sampleSize() << 32;
    QTest::newRow("codec") << int(format.codec() == "audio/pcm") << 1;
    QTest::newRow("byte order") << int(format.byteOrder()) << int(QAudioFormat::LittleEndian);
    QTest::newRow("sample type") << int(format.sampleType()) << int(QAudioFormat::Float);
}

void TestPlaybackMembers::audioFormat() {
    QFETCH(int, value);
    QTEST(value, "expected");
}

void TestPlaybackMembers::nothingIsThereBeforeASound() {
    ReadyBench bench;
    QVERIFY(!bench.isAnythingHeld());
    QCOMPARE(bench.window.soundsPerPresentation, 1);
    QCOMPARE(bench.window.soundsPlayed, 0);
    QVERIFY(!bench.window.playSinusoidNext);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::genSinusoidSizesOnlyBeforeTheFirstSound_data() {
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

void TestPlaybackMembers::genSinusoidSizesOnlyBeforeTheFirstSound() {
    QFETCH(int, sequencePosition);
    QFETCH(int, soundsPlayed);
    QFETCH(int, sizeBefore);
    QFETCH(int, sizeAfter);
    ReadyBench bench;
    bench.window.sinusoidSamples = QVector<double>(sizeBefore, 7.0);
    bench.window.sequencePosition = sequencePosition;
    bench.window.soundsPlayed = soundsPlayed;
    bench.window.genSinusoid();
    QCOMPARE(bench.window.sinusoidSamples.size(), sizeAfter);
    for (int i = 0; i < sizeAfter; ++i)
        QCOMPARE(bench.window.sinusoidSamples[i] == 7.0, i >= 400);
}

void TestPlaybackMembers::genSinusoidTakesTheSettings() {
    ReadyBench bench;
    bench.window.data.frequencyCurrent = 640;
    bench.window.data.samplingRate = 30000;
    // The file's own rate does not matter, nor the frequency at which a session starts.
    bench.window.wav.header.samplingRate = 8000;
    bench.window.data.frequencyStart = 100;
    bench.window.genSinusoid();
    for (int i = 0; i < 400; ++i)
        QVERIFY(bench.window.sinusoidSamples[i] ==
                std::sin(i * (640.0 * 6.283185307179586) / 30000.0));
}

void TestPlaybackMembers::outputLivesFromStartToIdle_data() {
    QTest::addColumn<bool>("isSinusoid");
    QTest::newRow("target") << false;
    QTest::newRow("sinusoid") << true;
}

void TestPlaybackMembers::outputLivesFromStartToIdle() {
    QFETCH(bool, isSinusoid);
    ReadyBench bench;
    bench.window.playSinusoidNext = isSinusoid;
    bench.window.genSinusoid();
    QStringList held;
    connect(&bench.window, &MainWindow::soundPlaying, this, [&](int index) {
        held.append(QStringLiteral("%1: %2, %3 played, %4 output")
                        .arg(index)
                        .arg(bench.isEverythingHeld() ? "all"
                             : bench.isAnythingHeld() ? "some"
                                                      : "none")
                        .arg(bench.window.soundsPlayed)
                        .arg(bench.window.findChildren<QAudioOutput*>().size()));
    });
    bench.window.playOneSound();
    QCOMPARE(held, QStringList("1: all, 1 played, 1 output"));
    const QPointer<QAudioOutput> output = bench.window.audioOutput;
    QVERIFY(bench.isEverythingHeld());
    // The end is told from within the output's own signal: it must not be gone yet.
    QTRY_COMPARE(held, (QStringList{"1: all, 1 played, 1 output", "-1: none, 1 played, 1 output"}));
    QVERIFY(!bench.isAnythingHeld());
    QTRY_VERIFY(output.isNull());
    QCOMPARE(bench.window.findChildren<QAudioOutput*>().size(), 0);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::sizeOfTheBytesFollowsTheSamples() {
    ReadyBench bench(20000);
    bench.window.playOneSound();
    QCOMPARE(bench.window.data.nSamples, 20000);
    QCOMPARE(bench.window.audioBytes->size(), 80000);
}

void TestPlaybackMembers::bytesAreTheSoundThatIsDue_data() {
    outputLivesFromStartToIdle_data();
}

void TestPlaybackMembers::bytesAreTheSoundThatIsDue() {
    QFETCH(bool, isSinusoid);
    ReadyBench bench;
    bench.window.targetSamples[3] = 1.5;
    QVector<float> target = heardFrom(unevenCodes(400));
    target[3] = 1.5F;
    bench.window.data.frequencyCurrent = 440;
    bench.window.genSinusoid();
    bench.window.playSinusoidNext = isSinusoid;
    bench.window.playOneSound();
    QCOMPARE(*bench.window.audioBytes, bytesOf(isSinusoid ? heardSinusoid(440, 400) : target));
    QCOMPARE(&bench.window.audioBuffer->buffer(), bench.window.audioBytes.get());
    QCOMPARE(bench.window.audioBuffer->openMode() & QIODevice::ReadWrite, QIODevice::ReadOnly);
    QVERIFY(bench.window.audioBuffer->parent() == nullptr);
    QCOMPARE(bench.window.audioOutput->format(), bench.window.audioFormat);
    QCOMPARE(bench.window.audioOutput->parent(), &bench.window);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::shorterBuffersArePaddedWithZeros_data() {
    outputLivesFromStartToIdle_data();
}

void TestPlaybackMembers::shorterBuffersArePaddedWithZeros() {
    QFETCH(bool, isSinusoid);
    ReadyBench bench;
    bench.window.playSinusoidNext = isSinusoid;
    bench.window.targetSamples = QVector<double>(10, 0.5);
    bench.window.sinusoidSamples = QVector<double>(10, 0.5);
    bench.window.playOneSound();
    QCOMPARE(*bench.window.audioBytes,
             bytesOf(QVector<float>(10, 0.5F) + QVector<float>(390, 0.0F)));
}

void TestPlaybackMembers::sinusoidsShowTheMatchAndCount() {
    ReadyBench bench;
    auto* field = testsupport::find<QLineEdit>(bench.window, "lineEditFrequencyMatched");
    bench.window.data.records[0].frequencyMatched = 640;
    bench.window.playOneSound();
    QCOMPARE(field->text(), QString("not started yet"));
    QCOMPARE(bench.window.data.nResponses, 0);
    const QVector<QPair<double, QString>> matches{
        {640, "640"}, {10, "10"}, {440.5, "440.5"}, {1234567, "1.23457e+06"}};
    for (int i = 0; i < matches.size(); ++i) {
        bench.window.playSinusoidNext = true;
        bench.window.soundsPlayed = 0;
        bench.window.data.records[0].frequencyMatched = matches[i].first;
        bench.window.playOneSound();
        QCOMPARE(field->text(), matches[i].second);
        QCOMPARE(bench.window.data.nResponses, i + 1);
    }
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::silenceFollowsASound_data() {
    QTest::addColumn<int>("samples");
    QTest::newRow("1 sample") << 1;
    QTest::newRow("100 ms") << 4000;
}

void TestPlaybackMembers::silenceFollowsASound() {
    QFETCH(int, samples);
    ReadyBench bench(samples);
    bench.window.playOneSound();
    constexpr int silentSamples = 250 * 40; // 250 ms
    constexpr int bytesPerSample = 4;
    QCOMPARE(bench.window.audioBytes->size(), samples * bytesPerSample);
    // What the output has taken already counts as handed out.
    const qint64 handedOut = bench.window.audioBuffer->pos();
    QCOMPARE(handedOut + bench.window.audioBuffer->bytesAvailable(),
             qint64((samples + silentSamples) * bytesPerSample));
}

void TestPlaybackMembers::secondSoundOfARequestIsEmptyAndCountsTwo() {
    ReadyBench bench(20000);
    auto* field = testsupport::find<QLineEdit>(bench.window, "lineEditFrequencyMatched");
    bench.window.playOneSound();
    const QPointer<QAudioOutput> first = bench.window.audioOutput;
    bench.window.playSinusoidNext = true;
    bench.window.playOneSound();
    QCOMPARE(bench.soundsTold(), (Told{1, 2}));
    QCOMPARE(bench.window.soundsPlayed, 2);
    QVERIFY(bench.isEverythingHeld());
    QCOMPARE(bench.window.audioBytes->size(), 0);
    // A sound that is none counts for nothing, and one output at a time is alive.
    QCOMPARE(bench.window.data.nResponses, 0);
    QCOMPARE(field->text(), QString("not started yet"));
    QVERIFY(bench.window.audioOutput != first);
    QTRY_VERIFY(first.isNull());
    QCOMPARE(bench.window.findChildren<QAudioOutput*>().size(), 1);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::stateThatChangesNothing_data() {
    QTest::addColumn<QAudio::State>("state");
    QTest::newRow("active") << QAudio::ActiveState;
    QTest::newRow("suspended") << QAudio::SuspendedState;
    QTest::newRow("interrupted") << QAudio::InterruptedState;
}

void TestPlaybackMembers::stateThatChangesNothing() {
    QFETCH(QAudio::State, state);
    ReadyBench bench(20000);
    bench.window.playOneSound();
    const QAudioOutput* output = bench.window.audioOutput;
    bench.window.handleStateChanged(state);
    QVERIFY(bench.isEverythingHeld());
    QCOMPARE(bench.window.audioOutput, output);
    QCOMPARE(bench.soundsTold(), Told{1});
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::idleReleasesAndTellsTheEndOfTheLastSoundOnly_data() {
    QTest::addColumn<int>("soundsPerPresentation");
    QTest::addColumn<int>("soundsPlayed");
    QTest::addColumn<Told>("told");
    QTest::newRow("the only sound") << 1 << 1 << Told{1, -1};
    QTest::newRow("a new request has come") << 1 << 0 << Told{1};
    QTest::newRow("one too many") << 1 << 2 << Told{1};
    QTest::newRow("the first of two") << 2 << 1 << Told{1};
    QTest::newRow("the second of two") << 2 << 2 << Told{1, -1};
}

void TestPlaybackMembers::idleReleasesAndTellsTheEndOfTheLastSoundOnly() {
    QFETCH(int, soundsPerPresentation);
    QFETCH(int, soundsPlayed);
    ReadyBench bench(20000);
    bench.window.playOneSound();
    const QPointer<QAudioOutput> output = bench.window.audioOutput;
    bench.window.soundsPerPresentation = soundsPerPresentation;
    bench.window.soundsPlayed = soundsPlayed;
    bench.window.handleStateChanged(QAudio::IdleState);
    QVERIFY(!bench.isAnythingHeld());
    QTEST(bench.soundsTold(), "told");
    // The output, stopped here in mid-sound, has nothing to say any more.
    QTRY_VERIFY(output.isNull());
    QTEST(bench.soundsTold(), "told");
    QCOMPARE(bench.complaints(), QString("Audio ended early"));
}

void TestPlaybackMembers::stoppedWithoutAnErrorLogsNothing() {
    ReadyBench bench(20000);
    bench.window.handleStateChanged(QAudio::StoppedState);
    bench.window.playOneSound();
    bench.window.handleStateChanged(QAudio::StoppedState);
    QVERIFY(bench.isEverythingHeld());
    QCOMPARE(bench.soundsTold(), Told{1});
    QCOMPARE(bench.complaints(), QString());
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
        row("defaults", "250.00", "500.00", 1, 750, Qt::PreciseTimer);
        row("500 + 300 ms", "500.00", "300.00", 1, 800, Qt::PreciseTimer);
        row("1500 + 600 ms", "1500.00", "600.00", 1, 2100, Qt::CoarseTimer);
        row("18 s", "18000.00", "500.25", 1, 18500, Qt::CoarseTimer);
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
    ReadyBench bench;
    testsupport::find<QLineEdit>(bench.window, "lineEditSoundDuration")->setText(duration);
    testsupport::find<QLineEdit>(bench.window, "lineEditSilentInterval")->setText(silence);
    bench.window.getParameters();
    const Scheduled scheduled = scheduledBy([&] { bench.window.updateMainwindow(response, 640); });
    QCOMPARE(scheduled.count, count);
    QCOMPARE(scheduled.milliseconds, milliseconds);
    QCOMPARE(scheduled.type, type);
    QCOMPARE(bench.window.sequencePosition, 0);
    // Without a sequence no request is ever answered.
    bench.window.trialSequence.clear();
    QCOMPARE(scheduledBy([&] { bench.window.updateMainwindow(response, 640); }).count, 0);
    QCOMPARE(bench.complaints(), QString());
}

void TestPlaybackMembers::playWavSchedulesWhileTrialsAreLeft() {
    ReadyBench bench;
    bench.setPause(800);
    bench.window.getParameters();
    bench.window.trialSequence = {0, 0};
    int position = 0;
    for (const int count : {1, 1, 0, 0}) {
        const int before = position;
        const Scheduled scheduled = scheduledBy([&] { position = bench.window.playWav(); });
        QCOMPARE(scheduled.count, count);
        QCOMPARE(scheduled.milliseconds, count * 800);
        QCOMPARE(position, before + 1);
        QCOMPARE(bench.window.sequencePosition, position);
    }
    QCOMPARE(bench.soundsTold(), Told{});
}

void TestPlaybackMembers::playWavPlays() {
    ReadyBench bench;
    bench.setPause(1);
    bench.window.getParameters();
    QCOMPARE(bench.window.playWav(), 1);
    QCOMPARE(bench.soundsTold(), Told{});
    QTRY_COMPARE(bench.soundsTold(), (Told{1, -1}));
    QCOMPARE(bench.complaints(), QString());
}
