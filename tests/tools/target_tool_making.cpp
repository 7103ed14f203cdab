// pellion-target: the sounds it makes, sample by sample.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include "signal/OstrelClasses.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace expectedsound;
using testsupport::wavWithSamples;

namespace {

/// The default level and ramps: a peak of -6 dB, 800 samples of raised cosine.
QVector<double> atMinus6dB(const QVector<double>& sound) {
    return scaled(sound, peak(sound), -6);
}
QVector<double> finished(const QVector<double>& sound) {
    return cosRamp(atMinus6dB(sound), 800);
}

QVector<double> harmonics(double fundamental, const QVector<int>& numbers) {
    QVector<double> sum(10000, 0.0);
    for (const int number : numbers) {
        const QVector<double> partial = tone(10000, number * fundamental);
        std::transform(sum.cbegin(), sum.cend(), partial.cbegin(), sum.begin(), std::plus<>());
    }
    return sum;
}

/// A quarter of a second.
QVector<double> modulated(double carrier, double modulation, double depth, double phase = 0) {
    return sam(40000, 0.25, carrier, modulation, depth, 1, 0, phase, false);
}

using AddSound = std::function<void(const QByteArray& arguments, const QVector<double>& sound,
                                    testsupport::WavFormat format)>;

void addKinds(const AddSound& add) {
    add("tone", finished(tone(10000, 440)), {});
    add("tone --bits 8 --frequency 1000", finished(tone(10000, 1000)), {40000, 1, 8});
    add("tone --bits 24 --frequency 62.5", finished(tone(10000, 62.5)), {40000, 1, 24});
    add("tone --phase 90", finished(tone(10000, 440, 90)), {});
    add("tone --phase -30", finished(tone(10000, 440, -30)), {});
    add("tone --duration 500", finished(tone(20000, 440)), {});
    add("tone --channels 2 --bits 24", finished(tone(10000, 440)), {40000, 2, 24});
    const QByteArray complex = "complex --frequency 200 ";
    add(complex, finished(harmonics(200, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10})), {});
    add(complex + "--without-fundamental", finished(harmonics(200, {2, 3, 4, 5, 6, 7, 8, 9, 10})),
        {});
    add(complex + "--harmonics 3-5", finished(harmonics(200, {3, 4, 5})), {});
    add(complex + "--harmonics 7,1,3-4,4", finished(harmonics(200, {1, 3, 4, 7})), {});
    add(complex + "--harmonics 4", finished(harmonics(200, {4})), {});
    add("sam", finished(modulated(440, 40, 1)), {});
    add("sam --frequency 1000 --modulation 4 --modulation-phase 180",
        finished(modulated(1000, 4, 1, 180)), {});
    add("sam --modulation 100 --depth 0.5", finished(modulated(440, 100, 0.5)), {});
    add("sam --depth 0", finished(tone(10000, 440)), {});
    add("noise --seed 0", finished(noise(10000, 0)), {});
    add("noise --seed 2147483647", finished(noise(10000, 2147483647)), {});
}

/// Levels are those of the sound before its ramps.
void addLevels(const AddSound& add) {
    const QVector<double> sound = tone(10000, 400);
    const auto addLevel = [&](const QByteArray& option, double reference, double decibels) {
        add("tone --frequency 400 --bits 24 " + option,
            cosRamp(scaled(sound, reference, decibels), 800), {40000, 1, 24});
    };
    addLevel("--peak 0", 1, 0);
    addLevel("--peak -20", 1, -20);
    addLevel("--peak=-6.020599913279624", 2, 0);
    addLevel("--rms -20", rms(sound), -20);
    addLevel("--rms -3.5", rms(sound), -3.5);
}

void addRamps(const AddSound& add) {
    const QVector<double> sound = atMinus6dB(tone(10000, 440));
    add("tone --ramp none", sound, {});
    add("tone --ramp cos --ramp-duration 10", cosRamp(sound, 400), {});
    add("tone --ramp cos2 --ramp-duration 10", cos2Ramp(sound, 400), {});
    add("tone --ramp linear --ramp-duration 2.5", linearRamp(sound, 100), {});
    add("tone --ramp-duration 125", cosRamp(sound, 5000), {});
    add("tone --ramp-duration 0", sound, {});
}

} // namespace

void TestTargetMaking::soundsAreExact_data() {
    const auto row = columns<QString, QByteArray>("arguments", "file");
    const AddSound add = [&](const QByteArray& arguments, const QVector<double>& sound,
                             const testsupport::WavFormat& format) {
        QVector<int> interleaved;
        for (const int code : codes(sound, format.bitsPerSample))
            interleaved += QVector<int>(format.channelCount, code);
        row(arguments, arguments, wavWithSamples(format, interleaved));
    };
    addKinds(add);
    addLevels(add);
    addRamps(add);
}

void TestTargetMaking::soundsAreExact() {
    QFETCH(QString, arguments);
    QFETCH(QByteArray, file);
    const ToolFolder folder;
    QCOMPARE(folder.run("make " + arguments + " x.wav").status, 0);
    QVERIFY(folder.read("x.wav") == file);
}

void TestTargetMaking::noiseIsMadeAgainByItsSeed() {
    const ToolFolder folder;
    const ToolRun run = folder.run("make noise x.wav");
    const QStringList words = QString::fromUtf8(run.output).trimmed().split(", seed ");
    QCOMPARE(words.size(), 2);
    QCOMPARE(folder.run("make noise y.wav --seed " + words[1]).output,
             QByteArray(run.output).replace("x.wav", "y.wav"));
    QVERIFY(folder.read("y.wav") == folder.read("x.wav"));
    QVERIFY(folder.run("make noise z.wav").output.split(' ').last() != words[1].toUtf8() + '\n');
    QVERIFY(!folder.run("make tone t.wav").output.contains("seed"));
}

void TestTargetMaking::headersAreCanonical_data() {
    const auto row = columns<int, int, int>("bits", "channels", "rate");
    for (const int bits : {8, 16, 24})
        for (const int channels : {1, 2})
            for (const int rate : {40000, 44100})
                row(QString::asprintf("%d bits, %d channels, %d Hz", bits, channels, rate).toUtf8(),
                    bits, channels, rate);
}

void TestTargetMaking::headersAreCanonical() {
    QFETCH(int, bits);
    QFETCH(int, channels);
    QFETCH(int, rate);
    const ToolFolder folder;
    const QString format =
        QString::asprintf("--bits %d --channels %d --rate %d", bits, channels, rate);
    QCOMPARE(folder.run("make tone x.wav " + format).status, 0);
    const QByteArray made = folder.read("x.wav");
    const int dataSize = rate / 4 * channels * bits / 8;
    QByteArray header = testsupport::wavHeader({quint32(rate), quint16(channels), quint16(bits)},
                                               quint32(dataSize));
    const int padding = dataSize % 2;
    testsupport::setUnsigned32(header, testsupport::wavoffset::riffChunkSize,
                               quint32(36 + dataSize + padding));
    QCOMPARE(made.left(44), header);
    QCOMPARE(made.size(), 44 + dataSize + padding);
    // sox takes them without a warning and finds the same numbers.
    QVERIFY(folder.shell(QStringLiteral("test \"$(soxi -r x.wav) $(soxi -c x.wav) $(soxi -b x.wav) "
                                        "$(soxi -s x.wav)\" = \"%1 %2 %3 %4\"")
                             .arg(rate)
                             .arg(channels)
                             .arg(bits)
                             .arg(rate / 4)));
    QVERIFY(folder.shell("test -z \"$(sox x.wav -n 2>&1)\""));
}

void TestTargetMaking::namesWithPercentSignsStayAsTheyAre() {
    const ToolFolder folder;
    QVERIFY(folder.shell("mkdir '50%1 a%2b'"));
    const ToolRun run = folder.runWords({"make", "tone", "50%1 a%2b/%3.wav"});
    QCOMPARE(run.errors, QByteArray());
    QVERIFY(folder.shell("test -s '50%1 a%2b/%3.wav'"));
}

void TestTargetMaking::oddDataAreFollowedByAByteOfZero() {
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --bits 8 --duration 250.075").status, 0);
    QVERIFY(folder.shell("sox -D x.wav sox.wav"));
    QCOMPARE(folder.read("x.wav").size(), 44 + 10003 + 1);
    QCOMPARE(folder.read("x.wav"), folder.read("sox.wav"));
}

void TestTargetMaking::durationsAreRoundedToTheNearestSample_data() {
    const auto row = columns<QString, int>("milliseconds", "count");
    row("as shown by default", "250", 10000);
    // 29 / 40000 x 40000 is a hair below 29 in doubles.
    row("inexact in binary", "0.725", 29);
    row("just below", "250.0124", 10000);
    row("just above", "250.0126", 10001);
    row("one sample", "0.025", 1);
}

void TestTargetMaking::durationsAreRoundedToTheNearestSample() {
    QFETCH(QString, milliseconds);
    QFETCH(int, count);
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --ramp none --phase 90 --duration " + milliseconds).status,
             0);
    QCOMPARE(folder.read("x.wav").size(), 44 + 2 * count);
}
