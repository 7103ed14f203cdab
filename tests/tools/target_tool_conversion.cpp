// pellion-target: targets made of other files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace madefiles;
using testsupport::wavWithSamples;

namespace {

/// The samples of a canonical file of 24 bits.
QVector<int> codesOf24Bits(const QByteArray& file) {
    QVector<int> codes;
    for (int i = testsupport::wavoffset::data; i + 2 < file.size(); i += 3)
        codes << (uchar(file[i]) | uchar(file[i + 1]) << 8 | qint8(file[i + 2]) * 65536);
    return codes;
}

const QString madeAsPlain =
    "y.wav: 250.00 ms, 10000 samples, peak -6.02 dB, RMS -9.03 dB re full scale\n";

} // namespace

void TestTargetConversion::resultIsThatOfSox_data() {
    const auto row = columns<int, int, QString, double>("rate", "frequency", "ramps", "bound");
    const auto add = [&](int rate, int frequency, const QString& ramps, double bound) {
        row(QStringLiteral("%1 Hz, %2 Hz in it %3").arg(rate).arg(frequency).arg(ramps).toUtf8(),
            rate, frequency, ramps, bound);
    };
    const QString ramps = "fade h 0.02 0.25 0.02";
    for (const int rate : {8000, 22050, 32000, 44100, 48000, 96000, 192000, 1000000}) {
        // The bounds are the greatest differences measured, rounded up.
        add(rate, 440, ramps, -115);
        add(rate, 1000, ramps, -115);
        add(rate, std::min(rate * 2 / 5, 15000), ramps, -84.5);
        add(rate, 440, {}, -64);
    }
}

void TestTargetConversion::resultIsThatOfSox() {
    QFETCH(int, rate);
    QFETCH(int, frequency);
    QFETCH(QString, ramps);
    QFETCH(double, bound);
    const ToolFolder folder;
    QVERIFY(folder.shell(
        QStringLiteral("sox -D -r %1 -n -b 16 -c 1 x.wav synth 0.25 sine %2 vol 0.5 %3 && "
                       "sox -D x.wav -b 24 -t wavpcm sox.wav rate -v 40000")
            .arg(rate)
            .arg(frequency)
            .arg(ramps)));
    QCOMPARE(folder.run("convert x.wav y.wav").status, 0);
    const QVector<int> expected = codesOf24Bits(folder.read("sox.wav"));
    const QVector<int> converted = codesOf24Bits(folder.read("y.wav"));
    QCOMPARE(converted.size(), expected.size());
    int difference = 0;
    for (int i = 0; i < expected.size(); ++i)
        difference = std::max(difference, std::abs(converted[i] - expected[i]));
    QVERIFY2(difference <= std::pow(10, bound / 20) * 0x800000,
             qPrintable(QString::number(difference)));
}

void TestTargetConversion::stepsAreReported_data() {
    const auto row = columns<QString, QString, QString>("command", "options", "output");
    row("nothing to do", "cp plain.wav x.wav", "", "16 bits kept\n" + madeAsPlain);
    row("everything",
        "sox -r 48000 -n -b 32 -e floating-point -c 3 x.wav synth 6001s sine 440 vol 0.5",
        "--gain -14",
        "header replaced: Its format chunk has 18 bytes instead of 16. It has a chunk fact of 4 "
        "bytes before its data. Its samples are encoded as 32 bit float, not as linear "
        "PCM.\n"
        "first of 3 channels kept\n"
        "resampled from 48000 to 40000 Hz\n"
        "level changed by -14 dB\n"
        "rounded to 24 bits\n"
        "silence added, 5001 samples to 5002, so that Pellion plays the last one\n"
        "y.wav: 125.05 ms, 5002 samples, peak -20.02 dB, RMS -23.03 dB re full scale\n");
    // The resampler would leave out the last sample but for silence after it.
    row("1 MHz", "sox -r 1000000 -n -b 16 -c 1 x.wav synth 3013s sine 1000 vol 0.5", "",
        "resampled from 1000000 to 40000 Hz\n"
        "rounded to 24 bits\n"
        "silence added, 121 samples to 123, so that Pellion plays the last one\n"
        "y.wav: 3.08 ms, 123 samples, peak -6.02 dB, RMS -9.14 dB re full scale\n");
    row("24 bits of AIFF", "sox plain.wav -b 24 -t aiff x.wav", "",
        "header replaced: It is not a WAVE file but AIFF (Apple/SGI).\n24 bits kept\n" +
            madeAsPlain);
    row("lowest codes",
        "printf 'RIFF\\054\\0\\0\\0WAVEfmt "
        "\\020\\0\\0\\0\\1\\0\\1\\0\\100\\234\\0\\0\\300\\324\\1\\0\\3\\0"
        "\\030\\0data\\6\\0\\0\\0\\0\\0\\200\\0\\0\\100' >x.wav",
        "",
        "24 bits kept\n"
        "lowest code of 24 bits, which Pellion reads as +1, raised by one step: 1 times\n"
        "y.wav: 0.05 ms, 2 samples, peak 0.00 dB, RMS -2.04 dB re full scale\n");
    row("quarter of the level", "cp plain.wav x.wav", "--gain=-12.0412",
        "level changed by -12.0412 dB\nrounded to 24 bits\n" +
            QString(madeAsPlain).replace("-6.02", "-18.06").replace("-9.03", "-21.07"));
}

void TestTargetConversion::stepsAreReported() {
    QFETCH(QString, command);
    QFETCH(QString, options);
    QFETCH(QString, output);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(folder.shell(command));
    const ToolRun run = folder.run("convert x.wav y.wav " + options);
    QCOMPARE(QString::fromUtf8(run.output), output);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(folder.run("info y.wav").status, 0);
}

void TestTargetConversion::encodingsOf16BitsKeepTheirLength_data() {
    const auto row = columns<QString>("encoding");
    row("A-law", "a-law");
    row("mu-law", "u-law");
    // The last block of these is filled up.
    row("IMA ADPCM", "ima-adpcm");
    row("Microsoft ADPCM", "ms-adpcm");
    row("GSM", "gsm-full-rate");
}

void TestTargetConversion::encodingsOf16BitsKeepTheirLength() {
    QFETCH(QString, encoding);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(folder.shell("sox plain.wav -e " + encoding + " x.wav"));
    QCOMPARE(folder.run("convert x.wav y.wav").status, 0);
    QCOMPARE(folder.read("y.wav").size(), folder.read("plain.wav").size());
}

void TestTargetConversion::overshootIsReportedWithTheGainThatHelps_data() {
    const auto row = columns<QString>("command");
    row("of resampling", "sox -r 44100 -n -b 16 -c 1 x.wav synth 0.25 square 440");
    row("of floating point", "ffmpeg -v error -f lavfi -i sine=440:r=40000:d=0.25 "
                             "-af volume=16:precision=float -c:a pcm_f32le x.wav");
}

void TestTargetConversion::overshootIsReportedWithTheGainThatHelps() {
    QFETCH(QString, command);
    const ToolFolder folder;
    QVERIFY(folder.shell(command));
    const ToolRun run = folder.run("convert x.wav y.wav --gain 1");
    QCOMPARE(run.status, 1);
    QCOMPARE(run.output, QByteArray());
    const auto message =
        QRegularExpression("^pellion-target: x.wav: the sound would reach \\d\\.\\d\\d dB re full "
                           "scale: nothing was written; --gain (-\\d\\.\\d\\d) lowers it enough\n$")
            .match(QString::fromUtf8(run.errors));
    QVERIFY2(message.hasMatch(), run.errors.constData());
    QCOMPARE(folder.names(), QStringList("x.wav"));
    const double gain = message.captured(1).toDouble();
    QCOMPARE(folder.run(QStringLiteral("convert x.wav y.wav --gain %1").arg(gain + 0.01)).status,
             1);
    QCOMPARE(folder.run(QStringLiteral("convert x.wav y.wav --gain %1").arg(gain)).status, 0);
}

void TestTargetConversion::fileWithoutUsableSoundIsRefused_data() {
    const auto row = columns<QString, QString>("command", "problem");
    row("missing", "true", "x.wav cannot be opened as a regular file");
    row("FIFO", "mkfifo x.wav", "x.wav cannot be opened as a regular file");
    row("text", "echo hello >x.wav", "x.wav: it holds no sound that can be read");
    for (const QString rate : {"156", "4000001"})
        row(rate.toUtf8(), "sox -n -b 16 -r " + rate + " x.wav synth 1 sine 4",
            "x.wav: its sampling rate, " + rate + " Hz, is too far from 40000 Hz");
    for (const char* code : {R"(\0\0\300\177)", R"(\0\0\200\177)", R"(\377\377\177\177)"})
        row(code,
            QStringLiteral("sox -r 40000 -n -b 32 -e floating-point z.wav synth 1s sine 4 && "
                           "{ head -c -4 z.wav; printf '%1'; } >x.wav")
                .arg(QLatin1String(code)),
            "x.wav: it holds samples that are not numbers or beyond 1e+06");
    row("one sample", "sox -r 400000 -n -b 16 x.wav synth 1s sine 4",
        "x.wav: 1 samples at 400000 Hz are too few or too many");
}

void TestTargetConversion::fileWithoutUsableSoundIsRefused() {
    QFETCH(QString, command);
    QFETCH(QString, problem);
    const ToolFolder folder;
    QVERIFY(folder.shell(command));
    const ToolRun run = folder.run("convert x.wav y.wav");
    QCOMPARE(run.status, 1);
    QCOMPARE(QString::fromUtf8(run.errors), "pellion-target: " + problem + '\n');
    QVERIFY(!folder.names().contains("y.wav"));
}

void TestTargetConversion::fileIsConvertedInPlace() {
    const ToolFolder folder;
    // The lowest code of 16 bits is kept.
    const QByteArray target = wavWithSamples({}, {1, -0x8000, 0x7FFF, 2});
    QVERIFY(
        folder.write("x.wav", wavWithSamples({40000, 2, 16}, {1, 5, -0x8000, 6, 0x7FFF, 7, 2, 8})));
    QCOMPARE(folder.run("convert x.wav x.wav").errors,
             QByteArray("pellion-target: x.wav exists; --force replaces it\n"));
    QCOMPARE(folder.run("convert x.wav x.wav --force").status, 0);
    QCOMPARE(folder.read("x.wav"), target);
    QCOMPARE(folder.names(), QStringList("x.wav"));
}
