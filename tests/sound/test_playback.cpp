// Pauses, sinusoids and sound bytes without a window, what the tests of sounds share, and their
// main function.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include "sound/PlayedSound.h"
#include "sound/PresentationPause.h"
#include "sound/Sinusoid.h"
#include "support/TestMain.h"

#include <QCheckBox>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
} // namespace

void PlaybackTest::setUp() {
    fixture->window().checkBoxSaveData->setChecked(false);
}

void PlaybackTest::prepare(const QVector<int>& codes) {
    fixture->prepare(fixture->write("target.wav", codes));
}

void TestPlaybackFunctions::pauses_data() {
    QTest::addColumn<double>("soundDuration");
    QTest::addColumn<double>("silentInterval");
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<Qt::TimerType>("timerType");
    const auto row = [](const char* name, double soundDuration, double silentInterval,
                        int milliseconds, Qt::TimerType timerType) {
        QTest::newRow(name) << soundDuration << silentInterval << milliseconds << timerType;
    };
    constexpr int maximum = std::numeric_limits<int>::max();
    row("defaults", 0.25, 0.5, 750, Qt::PreciseTimer);
    row("500 + 300 ms", 0.5, 0.3, 800, Qt::PreciseTimer);
    row("1500 + 600 ms", 1.5, 0.6, 2100, Qt::CoarseTimer);
    row("truncated", 0.25, 0.0009, 250, Qt::PreciseTimer);
    row("just below two seconds", 1.5, 0.49999, 1999, Qt::PreciseTimer);
    row("two seconds", 1.5, 0.5, 2000, Qt::CoarseTimer);
    row("nothing", 0.0, 0.0, 0, Qt::PreciseTimer);
    row("less than a millisecond", 0.0005, 0.0, 0, Qt::PreciseTimer);
    row("negative interval", 3.0, -2.5, 500, Qt::PreciseTimer);
    row("negative", 0.25, -1.0, 0, Qt::PreciseTimer);
    row("maximum", 2147483.647, 0.0, maximum, Qt::CoarseTimer);
    row("beyond the maximum", 2147484.0, 0.0, maximum, Qt::CoarseTimer);
    row("huge", 1e300, 1e300, maximum, Qt::CoarseTimer);
    row("infinite", infinity, 0.5, maximum, Qt::CoarseTimer);
    row("infinitely negative", 0.25, -infinity, 0, Qt::PreciseTimer);
    row("no number", notANumber, 0.5, 0, Qt::PreciseTimer);
    row("infinities that cancel out", infinity, -infinity, 0, Qt::PreciseTimer);
}

void TestPlaybackFunctions::pauses() {
    QFETCH(double, soundDuration);
    QFETCH(double, silentInterval);
    const PresentationPause pause = presentationPause(soundDuration, silentInterval);
    QTEST(pause.milliseconds, "milliseconds");
    QTEST(pause.timerType, "timerType");
}

void TestPlaybackFunctions::sinusoidsFollowTheFormula_data() {
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("samplingRate");
    QTest::newRow("lowest") << 10.0 << 40000.0;
    QTest::newRow("440 Hz") << 440.0 << 40000.0;
    QTest::newRow("highest") << 1000.0 << 40000.0;
    QTest::newRow("0 Hz") << 0.0 << 40000.0;
    QTest::newRow("44.1 kHz") << 617.0 << 44100.0;
    QTest::newRow("above half the rate") << 30000.0 << 40000.0;
}

void TestPlaybackFunctions::sinusoidsFollowTheFormula() {
    QFETCH(double, frequency);
    QFETCH(double, samplingRate);
    QVector<double> samples(10000, 77.0);
    writeSinusoid(samples, 10000, frequency, samplingRate);
    for (int i = 0; i < 10000; ++i)
        QVERIFY2(samples[i] == std::sin(i * (frequency * 6.283185307179586) / samplingRate),
                 qPrintable(QString::number(i)));
    // An abrupt start, and full scale from the first period on.
    QVERIFY(samples[0] == 0.0);
}

void TestPlaybackFunctions::sinusoidAt1000HertzPeaksAtSample10() {
    QVector<double> samples(41);
    writeSinusoid(samples, 41, 1000, 40000);
    QVERIFY(samples[10] == 1.0);
    QVERIFY(samples[30] == -1.0);
    QVERIFY(std::abs(samples[20]) < 1e-15);
}

void TestPlaybackFunctions::sinusoidStaysInItsBounds_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("written");
    QTest::newRow("fewer requested") << 5 << 3 << 3;
    QTest::newRow("fewer available") << 3 << 5 << 3;
    QTest::newRow("none available") << 0 << 5 << 0;
    QTest::newRow("none requested") << 3 << 0 << 0;
    QTest::newRow("negative count") << 3 << -4 << 0;
}

void TestPlaybackFunctions::sinusoidStaysInItsBounds() {
    QFETCH(int, size);
    QFETCH(int, count);
    QFETCH(int, written);
    QVector<double> samples(size, 77.0);
    const QVector<double> shared = samples;
    writeSinusoid(samples, count, 1000, 40000);
    QCOMPARE(samples.size(), size);
    for (int i = 0; i < size; ++i)
        QCOMPARE(samples[i] != 77.0, i < written);
    QCOMPARE(shared, QVector<double>(size, 77.0));
}

void TestPlaybackFunctions::bytesAreLittleEndianFloats_data() {
    QTest::addColumn<QVector<double>>("samples");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char* name, const QVector<double>& samples, int length,
                        const char* bytes) {
        QTest::newRow(name) << samples << length << QByteArray::fromHex(bytes);
    };
    row("one", {1.0}, 1, "0000803f");
    row("minus a half", {-0.5}, 1, "000000bf");
    row("beyond full scale", {1.5, -2.0}, 2, "0000c03f 000000c0");
    row("rounded to the nearest float", {1.0 / 3.0}, 1, "abaaaa3e");
    row("a 24-bit step", {1.0 / 8388608}, 1, "00000034");
    row("zeros of both signs", {0.0, -0.0}, 2, "00000000 00000080");
    row("in order", {0.25, 0.5, 1.0}, 3, "0000803e 0000003f 0000803f");
    row("cut", {0.25, 0.5, 1.0}, 2, "0000803e 0000003f");
    row("padded", {0.25}, 3, "0000803e 00000000 00000000");
    row("nothing there", {}, 2, "00000000 00000000");
    row("length 0", {0.25}, 0, "");
    row("negative length", {0.25}, -3, "");
}

void TestPlaybackFunctions::bytesAreLittleEndianFloats() {
    QFETCH(QVector<double>, samples);
    QFETCH(int, length);
    QTEST(soundBytes(samples, length), "bytes");
}

void TestPlaybackFunctions::silenceFollowsTheBytes_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("tail");
    QTest::addColumn<int>("piece");
    const QByteArray bytes("0123456789");
    QTest::newRow("in one piece") << bytes << 6 << 100;
    QTest::newRow("in pieces that meet the end") << bytes << 6 << 5;
    QTest::newRow("in pieces across the end") << bytes << 6 << 4;
    QTest::newRow("byte by byte") << bytes << 6 << 1;
    QTest::newRow("no silence") << bytes << 0 << 4;
    QTest::newRow("silence alone") << QByteArray() << 6 << 4;
    QTest::newRow("nothing") << QByteArray() << 0 << 4;
}

void TestPlaybackFunctions::silenceFollowsTheBytes() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, tail);
    QFETCH(int, piece);
    const QByteArray expected = bytes + QByteArray(tail, '\0');
    QByteArray array = bytes;
    TailedBuffer buffer(&array, tail);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QByteArray handedOut;
    while (!buffer.atEnd()) {
        QCOMPARE(buffer.bytesAvailable(), qint64(expected.size() - handedOut.size()));
        const QByteArray next = buffer.read(piece);
        QCOMPARE(next.size(), std::min(piece, expected.size() - handedOut.size()));
        handedOut += next;
    }
    QCOMPARE(handedOut, expected);
    QCOMPARE(buffer.read(piece), QByteArray());
    QCOMPARE(array, bytes);
}

void TestPlaybackFunctions::soundsAreHeardCompletely_data() {
    QTest::addColumn<int>("bytesHandedOver");
    QTest::addColumn<int>("elapsedMs");
    QTest::addColumn<bool>("isWhole");
    // The sound has 4000 bytes and lasts 25 ms.
    QTest::newRow("all of it, long enough") << 4000 << 25 << true;
    QTest::newRow("all of it, and a long wait") << 4000 << 1000 << true;
    QTest::newRow("not the last sample") << 3996 << 1000 << false;
    QTest::newRow("too soon to have been played") << 4000 << 24 << false;
    QTest::newRow("nothing") << 0 << 0 << false;
}

void TestPlaybackFunctions::soundsAreHeardCompletely() {
    QFETCH(int, bytesHandedOver);
    QFETCH(int, elapsedMs);
    QTEST(isHeardCompletely(bytesHandedOver, 4000, elapsedMs, 25), "isWhole");
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestPlaybackFunctions, TestPlaybackMembers,
                                       TestPlaybackHeard, TestPlaybackTimes, TestPlaybackCancelled>(
        argc, argv);
}
