// Noise, tones and modulated tones.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"
#include "signal/PointCount.h"
#include "signal/RandomGenerator.h"
#include "support/LogLines.h"
#include "support/SignalCalls.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A component's angle in radians at a point, in the formula's order of operations.
double angle(double frequency, int point, double samplingRate, double phaseDegrees) {
    const double step = frequency * 6.283185307179586;
    const double turned = step * static_cast<double>(point) / samplingRate;
    const double start = phaseDegrees * 0.017453292519943295;
    return turned + start;
}

} // namespace

void TestSignalGenerators::pointsOfASignalAreRoundedDown_data() {
    const auto row = columns<double, double, int>("samplingRate", "seconds", "points");
    row("half a second", 40000, 0.5, 20000);
    row("fraction of a point", 40000, 0.00001, 0);
    row("one point", 10, 0.1, 1);
    row("fraction dropped", 10, 0.99, 9);
    // The double nearest to 0.043 is below 0.043, so the product is below 1720.
    row("the last point lost", 40000, 0.043, 1719);
    row("no duration", 40000, 0, 0);
    row("no rate", 0, 0.5, 0);
    row("largest", 2147483647.5, 1, maximumInt);
    row("below zero", 10, -0.01, 0);
    row("far below zero", 40000, -1e300, 0);
    row("infinitely far below zero", 40000, -infinity, 0);
}

void TestSignalGenerators::pointsOfASignalAreRoundedDown() {
    QFETCH(double, samplingRate);
    QFETCH(double, seconds);
    const testsupport::LogLines log;
    QTEST(pointCount(samplingRate, seconds), "points");
    QCOMPARE(log.all(), QStringList());
}

void TestSignalGenerators::invalidCountGivesEmptySignalAndOneLogLine_data() {
    const auto row = columns<double, double, QString>("samplingRate", "seconds", "line");
    row("not a number", 40000, notANumber, "no signal has nan samples (40000 Hz x nan s)");
    row("infinite", infinity, 0.5, "no signal has inf samples (inf Hz x 0.5 s)");
    row("one too many", 2147483648.0, 1,
        "no signal has 2.14748e+09 samples (2.14748e+09 Hz x 1 s)");
    row("much too many", 40000, 1e300, "no signal has 4e+304 samples (40000 Hz x 1e+300 s)");
}

void TestSignalGenerators::invalidCountGivesEmptySignalAndOneLogLine() {
    QFETCH(double, samplingRate);
    QFETCH(double, seconds);
    QFETCH(QString, line);
    const testsupport::LogLines log;
    QCOMPARE(pointCount(samplingRate, seconds), 0);
    QVERIFY(sine(samplingRate, seconds, 1000, 1, 0).isEmpty());
    QVERIFY(sam(samplingRate, seconds, 1000, 10, 1, 1, 0, 0, true).isEmpty());
    QCOMPARE(log.warnings(), (QStringList{line, line, line}));
    QCOMPARE(log.all().size(), 3);
}

void TestSignalGenerators::noiseFollowsTheRandomNumbers() {
    QVector<double> noise;
    int next = 0;
    seedRandomNumbers(1);
    const uint second = testsupport::inOneSecond([&] {
        noise = whiteNoise(1000);
        next = nextRandomNumber();
    });
    QVector<double> expected;
    seedRandomNumbers(second);
    for (int i = 0; i < 1000; ++i)
        expected.append(static_cast<double>(nextRandomNumber()) / 2147483647.0);
    QCOMPARE(difference(noise, expected), QString());
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalGenerators::emptyNoiseReseeds_data() {
    const auto row = columns<int>("points");
    row("none", 0);
    row("below none", -5);
    row("minimum int", minimumInt);
}

void TestSignalGenerators::emptyNoiseReseeds() {
    QFETCH(int, points);
    int next = 0;
    const uint second = testsupport::inOneSecond([&] {
        seedRandomNumbers(1);
        QVERIFY(whiteNoise(points).isEmpty());
        next = nextRandomNumber();
    });
    seedRandomNumbers(second);
    QCOMPARE(next, nextRandomNumber());
}

void TestSignalGenerators::sineOf1000HzHasItsPeakAtSample10() {
    const QVector<double> tone = sine(40000, 0.5, 1000, 1, 0);
    QCOMPARE(tone.size(), 20000);
    QVERIFY(tone[0] == 0);
    QVERIFY(tone[10] == 1);
}

void TestSignalGenerators::sineFollowsTheFormula_data() {
    const auto row =
        columns<double, double, double, double>("samplingRate", "frequency", "amplitude", "phase");
    row("plain", 40000, 1000, 1, 0);
    row("all given", 44100, 617.3, 0.3, 71);
    row("beyond full scale", 40000, 440, 32767, 90);
    row("upside down", 48000, -250, -0.7, -400);
    row("above half the rate", 40000, 30011, 1, 5);
    // 67 x pi / 180 is not 67 x (pi / 180).
    row("0 Hz", 40000, 0, 2, 67);
}

void TestSignalGenerators::sineFollowsTheFormula() {
    QFETCH(double, samplingRate);
    QFETCH(double, frequency);
    QFETCH(double, amplitude);
    QFETCH(double, phase);
    QVector<double> expected;
    for (int i = 0; i < samplingRate * 0.25; ++i)
        expected.append(amplitude * std::sin(angle(frequency, i, samplingRate, phase)));
    QCOMPARE(difference(sine(samplingRate, 0.25, frequency, amplitude, phase), expected),
             QString());
}

void TestSignalGenerators::samFollowsTheFormula_data() {
    const auto row = columns<double, double, double, double, double>(
        "modulation", "depth", "amplitude", "carrierPhase", "modulatorPhase");
    row("full depth", 40, 1, 1, 0, 0);
    row("all given", 17.3, 0.37, 0.7, 67, -71);
    row("no modulation", 40, 0, 0.7, 11, 0);
    row("overmodulated", 40, 1.9, 0.3, 0, 180);
    row("negative depth", 40, -0.6, 0.3, 90, 45);
    row("modulated at 0 Hz", 0, 0.5, 3, 0, 67);
}

void TestSignalGenerators::samFollowsTheFormula() {
    QFETCH(double, modulation);
    QFETCH(double, depth);
    QFETCH(double, amplitude);
    QFETCH(double, carrierPhase);
    QFETCH(double, modulatorPhase);
    QVector<double> plain;
    QVector<double> normalised;
    const double factor = 1.0 / (depth + 1.0);
    for (int i = 0; i < 11025; ++i) {
        const double carrier = std::sin(angle(1234.5, i, 44100, carrierPhase));
        const double modulator = std::cos(angle(modulation, i, 44100, modulatorPhase));
        const double envelope = (modulator * depth + 1.0) * amplitude;
        plain.append(carrier * envelope);
        normalised.append(carrier * envelope * factor);
    }
    const auto made = [&](bool normalise) {
        return sam(44100, 0.25, 1234.5, modulation, depth, amplitude, carrierPhase, modulatorPhase,
                   normalise);
    };
    QCOMPARE(difference(made(false), plain), QString());
    QCOMPARE(difference(made(true), normalised), QString());
}

void TestSignalGenerators::samPeaksAtTheAmplitudeWhenNormalised() {
    // Carrier and modulator both start at their peaks.
    for (const bool normalise : {true, false}) {
        const QVector<double> tone = sam(40000, 0.5, 1000, 40, 1, 1, 90, 0, normalise);
        const auto [minimum, maximum] = std::minmax_element(tone.begin(), tone.end());
        QVERIFY(std::max(-*minimum, *maximum) == (normalise ? 1 : 2));
    }
}
