// pellion-target: the sounds it makes, sample by sample.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QtTest>

#include <cmath>
#include <ctime>

using namespace expectedsound;
using testsupport::wavWithSamples;

namespace {

/// The default level and ramps: a peak of -6 dB, 800 samples of raised cosine.
QVector<double> finished(const QVector<double>& sound) {
    return ramped(scaled(sound, peak(sound), -6), 800, cosineGain);
}

QVector<QVector<double>> harmonics(int count, double fundamental, const QVector<int>& numbers) {
    QVector<QVector<double>> partials;
    for (const int number : numbers)
        partials.append(tone(count, number * fundamental));
    return partials;
}

} // namespace

void TestTargetMaking::tonesAreExact_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QVector<double>>("sound");
    QTest::newRow("nothing said") << "" << 16 << tone(10000, 440);
    QTest::newRow("8 bits") << "--bits 8 --frequency 1000" << 8 << tone(10000, 1000);
    QTest::newRow("24 bits") << "--bits 24 --frequency 62.5" << 24 << tone(10000, 62.5);
    QTest::newRow("cosine phase") << "--bits 24 --phase 90" << 24 << tone(10000, 440, 90);
    QTest::newRow("negative phase") << "--bits 24 --phase -30" << 24 << tone(10000, 440, -30);
    QTest::newRow("longer") << "--bits 24 --duration 500" << 24 << tone(20000, 440);
}

void TestTargetMaking::tonesAreExact() {
    QFETCH(QString, options);
    QFETCH(int, bits);
    QFETCH(QVector<double>, sound);
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav " + options).status, 0);
    QCOMPARE(folder.read("x.wav"),
             wavWithSamples({40000, 1, quint16(bits)}, codes(finished(sound), bits)));
}

void TestTargetMaking::complexesAreExact_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<QVector<int>>("numbers");
    QTest::newRow("nothing said") << "" << QVector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    QTest::newRow("without fundamental")
        << "--without-fundamental" << QVector<int>{2, 3, 4, 5, 6, 7, 8, 9, 10};
    QTest::newRow("a range") << "--harmonics 3-5" << QVector<int>{3, 4, 5};
    QTest::newRow("a list") << "--harmonics 7,1,3-4,4" << QVector<int>{1, 3, 4, 7};
    QTest::newRow("one") << "--harmonics 4" << QVector<int>{4};
}

void TestTargetMaking::complexesAreExact() {
    QFETCH(QString, options);
    QFETCH(QVector<int>, numbers);
    const ToolFolder folder;
    QCOMPARE(folder.run("make complex x.wav --frequency 200 " + options).status, 0);
    QCOMPARE(folder.read("x.wav"),
             wavWithSamples({}, codes(finished(sum(harmonics(10000, 200, numbers))), 16)));
}

void TestTargetMaking::samTonesAreExact_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<QVector<double>>("sound");
    QTest::newRow("nothing said") << "" << sam(10000, 440, 40, 1);
    QTest::newRow("slow") << "--frequency 1000 --modulation 4 --modulation-phase 180"
                          << sam(10000, 1000, 4, 1, 180);
    QTest::newRow("half the depth") << "--modulation 100 --depth 0.5" << sam(10000, 440, 100, 0.5);
    QTest::newRow("no depth") << "--depth 0" << tone(10000, 440);
}

void TestTargetMaking::samTonesAreExact() {
    QFETCH(QString, options);
    QFETCH(QVector<double>, sound);
    const ToolFolder folder;
    QCOMPARE(folder.run("make sam x.wav " + options).status, 0);
    QCOMPARE(folder.read("x.wav"), wavWithSamples({}, codes(finished(sound), 16)));
}

void TestTargetMaking::noiseIsTheLibrarysWithoutItsMean() {
    const ToolFolder folder;
    const auto earliest = uint(std::time(nullptr));
    QCOMPARE(folder.run("make noise x.wav").status, 0);
    const auto latest = uint(std::time(nullptr));
    const QByteArray made = folder.read("x.wav");
    bool isFound = false;
    for (uint seconds = earliest; seconds <= latest; ++seconds)
        isFound = isFound || made == wavWithSamples({}, codes(finished(noise(10000, seconds)), 16));
    QVERIFY(isFound);
}

void TestTargetMaking::noiseOfTheSameSecondIsTheSameAndSaidToBe() {
    const ToolFolder folder;
    const ToolRun run = folder.run("make noise x.wav --channels 2");
    QCOMPARE(run.errors,
             QByteArray("pellion-target: note: noise made within the same second is the same "
                        "noise\n"));
    QVERIFY(!folder.run("make tone y.wav").errors.contains("noise"));
}

void TestTargetMaking::levelsAreOfTheSoundBeforeItsRamps_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<double>("factor");
    const double ofSine = rootMeanSquare(tone(10000, 400));
    QTest::newRow("peak 0 dB") << "--peak 0" << 1.0;
    QTest::newRow("peak -20 dB") << "--peak -20" << 0.1;
    QTest::newRow("peak -6.0206 dB") << "--peak=-6.020599913279624" << 0.5;
    QTest::newRow("RMS -20 dB") << "--rms -20" << 0.1 / ofSine;
    QTest::newRow("RMS -3.5 dB") << "--rms -3.5" << std::pow(10, -3.5 / 20) / ofSine;
}

void TestTargetMaking::levelsAreOfTheSoundBeforeItsRamps() {
    QFETCH(QString, options);
    QFETCH(double, factor);
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --frequency 400 --bits 24 " + options).status, 0);
    QVector<double> sound = tone(10000, 400);
    for (double& sample : sound)
        sample *= factor;
    QCOMPARE(folder.read("x.wav"),
             wavWithSamples({40000, 1, 24}, codes(ramped(sound, 800, cosineGain), 24)));
}

void TestTargetMaking::rampsAreTheLibrarys_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("power"); // Of the raised cosine; 0 for a straight line.
    QTest::newRow("none") << "--ramp none" << 0 << 1;
    QTest::newRow("cos") << "--ramp cos --ramp-duration 10" << 400 << 1;
    QTest::newRow("cos2") << "--ramp cos2 --ramp-duration 10" << 400 << 2;
    QTest::newRow("linear") << "--ramp linear --ramp-duration 2.5" << 100 << 0;
    QTest::newRow("to the middle") << "--ramp-duration 125" << 5000 << 1;
    QTest::newRow("of no length") << "--ramp-duration 0" << 0 << 1;
}

void TestTargetMaking::rampsAreTheLibrarys() {
    QFETCH(QString, options);
    QFETCH(int, points);
    QFETCH(int, power);
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav " + options).status, 0);
    const QVector<double> sound = tone(10000, 440);
    const QVector<double> expected =
        ramped(scaled(sound, peak(sound), -6), points, [&](double position) {
            return power == 0 ? position : std::pow(cosineGain(position), power);
        });
    QCOMPARE(folder.read("x.wav"), wavWithSamples({}, codes(expected, 16)));
}

void TestTargetMaking::headersAreCanonical_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("rate");
    for (const int bits : {8, 16, 24})
        for (const int channels : {1, 2})
            for (const int rate : {40000, 44100})
                QTest::addRow("%d bits, %d channels, %d Hz", bits, channels, rate)
                    << bits << channels << rate;
}

void TestTargetMaking::headersAreCanonical() {
    QFETCH(int, bits);
    QFETCH(int, channels);
    QFETCH(int, rate);
    const ToolFolder folder;
    QCOMPARE(folder
                 .run(QStringLiteral("make tone x.wav --bits %1 --channels %2 --rate %3")
                          .arg(bits)
                          .arg(channels)
                          .arg(rate))
                 .status,
             0);
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
    QVERIFY(folder.shell(QStringLiteral("test \"$(soxi -r x.wav -V1) $(soxi -c x.wav) "
                                        "$(soxi -b x.wav) $(soxi -s x.wav)\" = \"%1 %2 %3 %4\"")
                             .remove(QStringLiteral(" -V1"))
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

void TestTargetMaking::bothChannelsHoldTheSound() {
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --channels 2 --bits 24").status, 0);
    QVector<int> interleaved;
    for (const int code : codes(finished(tone(10000, 440)), 24))
        interleaved << code << code;
    QCOMPARE(folder.read("x.wav"), wavWithSamples({40000, 2, 24}, interleaved));
}

void TestTargetMaking::oddDataAreFollowedByAByteOfZero() {
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --bits 8 --duration 250.075").status, 0);
    QVERIFY(folder.shell("sox -D x.wav sox.wav"));
    QCOMPARE(folder.read("x.wav").size(), 44 + 10003 + 1);
    QCOMPARE(folder.read("x.wav"), folder.read("sox.wav"));
}

void TestTargetMaking::durationsAreRoundedToTheNearestSample_data() {
    QTest::addColumn<QString>("milliseconds");
    QTest::addColumn<int>("count");
    QTest::newRow("as shown by default") << "250" << 10000;
    // 29 / 40000 x 40000 is a hair below 29 in doubles.
    QTest::newRow("inexact in binary") << "0.725" << 29;
    QTest::newRow("just below") << "250.0124" << 10000;
    QTest::newRow("just above") << "250.0126" << 10001;
    QTest::newRow("one sample") << "0.025" << 1;
}

void TestTargetMaking::durationsAreRoundedToTheNearestSample() {
    QFETCH(QString, milliseconds);
    QFETCH(int, count);
    const ToolFolder folder;
    QCOMPARE(folder.run("make tone x.wav --ramp none --phase 90 --duration " + milliseconds).status,
             0);
    QCOMPARE(folder.read("x.wav").size(), 44 + 2 * count);
}

void TestTargetMaking::fullScaleIsOneStepWithin_data() {
    QTest::addColumn<int>("bits");
    for (const int bits : {8, 16, 24})
        QTest::addRow("%d bits", bits) << bits;
}

void TestTargetMaking::fullScaleIsOneStepWithin() {
    QFETCH(int, bits);
    const ToolFolder folder;
    QCOMPARE(folder
                 .run(QStringLiteral("make tone x.wav --frequency 10000 --phase 90 --peak 0 "
                                     "--ramp none --duration 0.1 --bits %1")
                          .arg(bits))
                 .status,
             0);
    const int greatest = (1 << (bits - 1)) - 1;
    const int zero = bits == 8 ? 128 : 0;
    QCOMPARE(folder.read("x.wav"), wavWithSamples({40000, 1, quint16(bits)},
                                                  {zero + greatest, zero, zero - greatest, zero}));
}
