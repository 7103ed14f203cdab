// pellion-target: its parts by themselves.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include "base/Sampling.h"
#include "tools/target/Conversion.h"
#include "tools/target/Inspection.h"
#include "tools/target/IntendedSound.h"
#include "tools/target/TargetEncoding.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTest>

#include <cmath>

void TestTargetParts::samplesAreRoundedToTheNearestCode_data() {
    const auto addRow = columns<int, double, int>("bits", "steps", "code"); // Steps of the sample.
    for (const int bits : {8, 16, 24}) {
        const double scale = std::ldexp(1.0, bits - 1);
        const int zero = bits == 8 ? 128 : 0;
        const auto row = [&](const char* name, double steps, int code) {
            addRow(QByteArray::number(bits) + " bits, " + name, bits, steps, zero + code);
        };
        row("nothing", 0, 0);
        row("a step", 1, 1);
        row("less than half a step", 0.499, 0);
        row("half a step", 0.5, 1);
        row("half a step below", -0.5, -1);
        row("more than a step", -1.4, -1);
        row("one and a half", 1.5, 2);
        row("two and a half", 2.5, 3);
        row("the greatest", scale - 1, int(scale) - 1);
        row("half a step below full scale", scale - 0.5, int(scale) - 1);
        row("full scale", scale, int(scale) - 1);
        row("negative full scale", -scale, 1 - int(scale));
    }
}

void TestTargetParts::samplesAreRoundedToTheNearestCode() {
    QFETCH(int, bits);
    QFETCH(double, steps);
    QFETCH(int, code);
    TargetRecipe recipe;
    recipe.bitsPerSample = bits;
    const CWav wav = encodedTarget({std::ldexp(steps, 1 - bits)}, recipe);
    const QByteArray expected = testsupport::wavWithSamples({40000, 1, quint16(bits)}, {code});
    QCOMPARE(QByteArray(wav.rawData.data(), int(wav.rawData.size())), expected.mid(44));
}

void TestTargetParts::playedLengthIsThatOfTheMainWindow_data() {
    const auto row = columns<int, int, int>("samples", "rate", "played");
    row("a quarter of a second", 10000, 40000, 10000);
    row("250.025 ms, shown as 250.03", 10001, 40000, 10001);
    row("237.475 ms, shown as 237.47", 9499, 40000, 9498);
    row("one sample", 1, 40000, 1);
    row("44100 Hz", 11025, 44100, 10000);
    row("8000 Hz", 2000, 8000, 10000);
}

void TestTargetParts::playedLengthIsThatOfTheMainWindow() {
    QFETCH(int, samples);
    QFETCH(int, rate);
    QFETCH(int, played);
    QCOMPARE(playedSamples(samples, quint32(rate)), played);
}

void TestTargetParts::soundsOfEveryTargetsLengthCanBeConverted_data() {
    const auto row = columns<qint64, int, bool>("samples", "rate", "isConverted");
    const qint64 longest = maximumSampleCount - 4; // Conversion may add as many.
    row("none", 0, 40000, false);
    row("one", 1, 40000, true);
    row("less than one when resampled", 1, 100000, false);
    row("as many as possible", longest, 40000, true);
    row("one more", longest + 1, 40000, false);
    row("as many as possible when resampled", longest / 2, 20000, true);
    row("one more when resampled", longest / 2 + 1, 20000, false);
    row("one more before resampling", longest + 1, 80000, false);
}

void TestTargetParts::soundsOfEveryTargetsLengthCanBeConverted() {
    QFETCH(qint64, samples);
    QFETCH(int, rate);
    QFETCH(bool, isConverted);
    CWav wav;
    wav.header.numberOfChannels = 1;
    wav.header.samplingRate = quint32(rate);
    wav.numberOfSamples = quint32(samples);
    QCOMPARE(conversionProblem(wav).isEmpty(), isConverted);
}

void TestTargetParts::suggestedGainIsTheHighestThatHelps() {
    const QRegularExpression suggestion("--gain (\\S+)");
    for (double peak = 1.0001; peak < 2; peak *= 1.0123) {
        Inspection source;
        source.intended.header.numberOfChannels = 1;
        source.intended.header.samplingRate = 40000;
        source.intended.numberOfSamples = 1;
        source.intended.samples = {peak};
        const double gain = suggestion.match(convert(source, 0).problem).captured(1).toDouble();
        QCOMPARE(convert(source, gain).problem, QString());
        QVERIFY(!convert(source, gain + 0.01).problem.isEmpty());
    }
}

void TestTargetParts::chunksAreFoundWhereverTheyAre() {
    const QByteArray plain = testsupport::wavWithSamples({}, {1, 2, 3});
    QByteArray bytes = plain.left(12) + QByteArray("JUNK\3\0\0\0abc\0", 12) + plain.mid(12, 24) +
                       QByteArray("note\0\0\0\0", 8) + plain.mid(36) +
                       QByteArray("LIST\4\0\0\0INFO\1\2", 14);
    QBuffer file(&bytes);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const RiffContents riff = readRiff(file);
    QStringList found;
    for (const RiffChunk& chunk : riff.chunks)
        found << QStringLiteral("%1 %2 %3")
                     .arg(QString::fromLatin1(chunk.identifier))
                     .arg(chunk.offset)
                     .arg(chunk.heldSize);
    QCOMPARE(found,
             QStringList({"JUNK 20 3", "fmt  32 16", "note 56 0", "data 64 6", "LIST 78 4"}));
    QCOMPARE(riff.bytesAfterChunks, 2);
    QVERIFY(riff.format.has_value());
    QCOMPARE(riff.format->samplingRate, 40000U);
    QCOMPARE(channelOf(intendedSound(file, riff), 0),
             QVector<double>({1 / 32768.0, 2 / 32768.0, 3 / 32768.0}));
}

void TestTargetParts::aChunkCutOffHoldsWhatIsThere() {
    QByteArray bytes = testsupport::wavWithSamples({40000, 2, 16}, {1, 2, 3, 4, 5, 6});
    bytes.chop(3);
    QBuffer file(&bytes);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const RiffContents riff = readRiff(file);
    QCOMPARE(riff.chunks.last().declaredSize, 12U);
    QCOMPARE(riff.chunks.last().heldSize, 9);
    QCOMPARE(channelOf(intendedSound(file, riff), 1), QVector<double>({2 / 32768.0, 4 / 32768.0}));
}

void TestTargetParts::minimumCodeOf24BitsIsMinusOne() {
    QByteArray bytes = testsupport::wavWithSamples({40000, 1, 24}, {1, -0x800000, 0x7FFFFF});
    QBuffer file(&bytes);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const CWav wav = intendedSound(file, readRiff(file));
    QCOMPARE(minimumCodesOf24Bits(wav), 1);
    QCOMPARE(channelOf(wav, 0), QVector<double>({std::ldexp(1, -23), -1, 1 - std::ldexp(1, -23)}));
}
