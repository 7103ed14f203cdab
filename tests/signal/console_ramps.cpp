// Onset and offset ramps.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_signal_console.h"

#include "signal/OstrelClasses.h"
#include "support/SignalCalls.h"
#include "support/StreamCapture.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iostream>
#include <numeric>
#include <string>
#include <vector>

using testsupport::RampInPlace;
using testsupport::RampOfCopy;
using testsupport::StreamCapture;

namespace {

constexpr int maximumLength = 40;

/// A ramp and its formula, implemented independently.
struct Ramp {
    RampOfCopy ofCopy = nullptr;
    RampInPlace inPlace = nullptr;
    /// The gain of a point of the ramp.
    double (*gain)(int point, int length) = nullptr;
    int timesApplied = 1;
};

double raisedCosineGain(int point, int length) {
    const double position = static_cast<double>(point) / static_cast<double>(length);
    const double cosine = std::cos(position * 3.141592653589793);
    return (1.0 - cosine) * 0.5;
}

double linearGain(int point, int length) {
    return static_cast<double>(point) / static_cast<double>(length);
}

/// A signal of both signs without any symmetry.
QVector<double> unevenSignal(int size) {
    QVector<double> signal;
    for (int i = 0; i < size; ++i)
        signal.append(std::sin(0.7 + i * i) - 0.125);
    return signal;
}

/// Returns a signal as a ramp should change it, sample by sample: each finds the points of the two
/// ramps that apply to it, the earlier point first.
QVector<double> expectedRamp(const Ramp& ramp, QVector<double> signal, int length) {
    const int size = signal.size();
    for (int sample = 0; sample < size; ++sample)
        for (int point = 0; point < length; ++point)
            for (const int position : {point, size - 1 - point})
                for (int time = 0; position == sample && time < ramp.timesApplied; ++time)
                    signal[sample] *= ramp.gain(point, length);
    return signal;
}

void addRamps() {
    const auto row = columns<Ramp>("ramp");
    row("cosRamp", {cosRamp, cosRamp, raisedCosineGain, 1});
    row("cos2Ramp", {cos2Ramp, cos2Ramp, raisedCosineGain, 2});
    row("linearRamp", {linearRamp, linearRamp, linearGain, 1});
}

/// A vector with spare capacity, which is filled with marks, so that writing before or after the
/// samples is noticed.
class FencedSignal {
public:
    explicit FencedSignal(int size) {
        samples.reserve(size + fence);
        samples.resize(size);
        std::iota(samples.begin(), samples.end(), 1.0);
        std::fill_n(samples.data() + size, fence, mark);
        before = headerBytes();
    }

    bool isWhole() const {
        const double* after = samples.constData() + samples.size();
        return headerBytes() == before &&
               std::all_of(after, after + fence, [](double value) { return value == mark; });
    }

    QVector<double> samples;

private:
    static constexpr int fence = 100;
    static constexpr double mark = -77;

    /// The bytes of the vector's header, which its first sample follows.
    std::vector<char> headerBytes() const {
        std::vector<char> bytes(sizeof(QArrayData));
        std::memcpy(bytes.data(),
                    reinterpret_cast<const char*>(samples.constData()) - sizeof(QArrayData),
                    bytes.size());
        return bytes;
    }

    std::vector<char> before;
};

} // namespace

Q_DECLARE_METATYPE(Ramp)

void TestSignalRamps::tenOnesWithTwoRampPoints_data() {
    const auto row = columns<RampOfCopy, double>("ramp", "gain");
    row("cosRamp", cosRamp, 0.5);
    row("cos2Ramp", cos2Ramp, 0.25);
    row("linearRamp", linearRamp, 0.5);
}

void TestSignalRamps::tenOnesWithTwoRampPoints() {
    QFETCH(RampOfCopy, ramp);
    QFETCH(double, gain);
    const QVector<double> ramped = ramp(QVector<double>(10, 1.0), 2);
    const QVector<double> expected{0, gain, 1, 1, 1, 1, 1, 1, gain, 0};
    QCOMPARE(ramped.size(), 10);
    // In the middle the raised cosine is 2^-54 below one half.
    for (int i = 0; i < 10; ++i)
        QVERIFY2(std::abs(ramped[i] - expected[i]) <= std::ldexp(1, -54),
                 qPrintable(QString::number(ramped[i], 'g', 17)));
}

void TestSignalRamps::bothFormsFollowTheFormula_data() {
    addRamps();
}

void TestSignalRamps::bothFormsFollowTheFormula() {
    QFETCH(Ramp, ramp);
    const StreamCapture standardError(std::cerr);
    std::string warnings;
    for (int size = 0; size <= maximumLength; ++size)
        for (int length = 0; length <= maximumLength; ++length) {
            const QVector<double> expected = expectedRamp(ramp, unevenSignal(size), length);
            QVector<double> inPlace = unevenSignal(size);
            ramp.inPlace(&inPlace, length);
            const QString where = QStringLiteral(" (%1 of %2)").arg(length).arg(size);
            const QString ofPlace = difference(inPlace, expected);
            QVERIFY2(ofPlace.isEmpty(), qPrintable(ofPlace + where));
            const QString ofCopy = difference(ramp.ofCopy(unevenSignal(size), length), expected);
            QVERIFY2(ofCopy.isEmpty(), qPrintable(ofCopy + where));
            for (int form = 0; form < 2 && size < 2 * length; ++form)
                warnings += "Vector size must be at least twice of nPoints\n";
        }
    QVERIFY(standardError.text() == warnings);
}

void TestSignalRamps::nothingOutsideTheSignalIsTouched_data() {
    addRamps();
}

void TestSignalRamps::nothingOutsideTheSignalIsTouched() {
    QFETCH(Ramp, ramp);
    const StreamCapture standardError(std::cerr);
    for (int size = 0; size <= maximumLength; ++size)
        for (const int length :
             {1, 2, size / 2, size, size + 1, size + 2, maximumLength, maximumInt}) {
            FencedSignal fenced(size);
            const double* const place = fenced.samples.constData();
            ramp.inPlace(&fenced.samples, length);
            QVERIFY(fenced.samples.constData() == place);
            QVERIFY2(fenced.isWhole(),
                     qPrintable(QStringLiteral("%1 of %2").arg(length).arg(size)));
        }
}

void TestSignalRamps::noRampChangesNothing_data() {
    addRamps();
}

void TestSignalRamps::noRampChangesNothing() {
    QFETCH(Ramp, ramp);
    const StreamCapture standardError(std::cerr);
    for (const int length : {0, -1, minimumInt})
        for (const int size : {0, 1, 5}) {
            const QVector<double> original = unevenSignal(size);
            QVector<double> inPlace = original;
            ramp.inPlace(&inPlace, length);
            // Vectors share their storage until one is written: it stays shared.
            QVERIFY(inPlace.constData() == original.constData());
            QVERIFY(ramp.ofCopy(original, length).constData() == original.constData());
        }
    QCOMPARE(standardError.text(), std::string());
}

void TestSignalRamps::copiesKeepTheirSamples_data() {
    addRamps();
}

void TestSignalRamps::copiesKeepTheirSamples() {
    QFETCH(Ramp, ramp);
    const QVector<double> original(10, 1.0);
    QVector<double> signal = original;
    QVERIFY(ramp.ofCopy(signal, 3) != QVector<double>(10, 1.0));
    QCOMPARE(signal, QVector<double>(10, 1.0));
    ramp.inPlace(&signal, 3);
    QVERIFY(signal != QVector<double>(10, 1.0));
    QCOMPARE(original, QVector<double>(10, 1.0));
}
