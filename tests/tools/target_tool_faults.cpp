// pellion-target: problems of files, their effects and their fixes.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QTest>

using namespace madefiles;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
using testsupport::with16;
using testsupport::with32;
namespace wavoffset = testsupport::wavoffset;

namespace {

const QString goesOn = "\") and goes on with the earlier target, if there is one.";
const QString unusable = "Pellion cannot play it (\"Unusable WAV file: x.wav" + goesOn;
const QString notPcm =
    "Pellion refuses it (\"Not a PCM (linear quantitation) WAV file: x.wav" + goesOn;
const QString silent = "Pellion plays silence in its place.";

/// What is heard of a tone of 440 Hz at another rate, and of its samples.
QString playedAt40000(const char* hertz, const char* cents, const char* samples) {
    return QStringLiteral("Pellion plays it at 40000 Hz without conversion: 440 Hz in it are "
                          "heard as %1 Hz (%2 cents). %3")
        .arg(hertz, cents, samples);
}

const QString noRate = "Its header declares a sampling rate of 0 Hz; 40000 Hz is assumed here.";
const QString extensible =
    "Its header is extensible, with a format chunk of 40 bytes instead of 16.";
const QString longerFormat = "Its format chunk has 18 bytes instead of 16.";
const QString fact = " It has a chunk fact of 4 bytes before its data.";
const QString beyond4GiB =
    "It has the header of files beyond 4 GiB (RF64). It has a chunk ds64 of 28 bytes "
    "before its data. Its header declares 4294967295 bytes of data, but "
    "the file ends after ";

/// A quarter of full scale and its negative in turns, as 24 bits.
QVector<int> quarters() {
    QVector<int> codes(10000);
    for (int i = 0; i < codes.size(); ++i)
        codes[i] = i % 2 == 0 ? 0x200000 : -0x200000;
    return codes;
}

/// 250 ms of the same as 32-bit floating point after an extensible header, as ffmpeg 5 writes it,
/// but for a fact chunk that says half as many samples.
QByteArray extensibleFloats() {
    const QByteArray data = QByteArray::fromHex("0000803e000080be").repeated(5000);
    const QByteArray subformat = QByteArray::fromHex("0300000000001000800000aa00389b71");
    QByteArray bytes = wavWithData({40000, 1, 32}, data);
    bytes.insert(36, QByteArray::fromHex("1600200004000000") + subformat + tag("fact", 4) +
                         QByteArray::fromHex("88130000"));
    bytes = with32(bytes, 4, quint32(bytes.size() - 8));
    return with16(with32(bytes, wavoffset::formatChunkSize, 40), wavoffset::audioFormat, 0xFFFE);
}

/// Adds a file that a command makes, out of plain.wav mostly, and whether converting
/// gives the samples of plain.wav.
void made(const char* name, const QString& command, const QStringList& matters,
          const QStringList& consequences, bool isLossless = true) {
    QTest::newRow(name) << command << QByteArray() << matters << consequences << QByteArray()
                        << isLossless;
}

/// Adds a file and what becomes of it.
void byHand(const char* name, const QByteArray& bytes, const QStringList& matters,
            const QStringList& consequences, const QByteArray& fixed) {
    QTest::newRow(name) << QString() << bytes << matters << consequences << fixed << false;
}

void addEncodings() {
    made("ffmpeg, not bit-exact", QString(byFfmpeg) + "x.wav",
         {"It has a chunk LIST of 26 bytes before its data."},
         {"Pellion takes the 26 bytes from byte 44 on for the sound."});
    made("ffmpeg, through a pipe", QString(byFfmpeg) + "-bitexact -f wav - >x.wav",
         {"Its header declares 4294967295 bytes of data, but the file ends after 20000."},
         {unusable});
    made("sox, 24 bits", "sox plain.wav -b 24 x.wav", {extensible + fact}, {notPcm});
    made("ffmpeg, 24 bits", QString(byFfmpeg) + "-c:a pcm_s24le -bitexact x.wav", {extensible},
         {notPcm});
    made("sox, 32 bits", "sox plain.wav -b 32 x.wav",
         {extensible + fact + " Its samples have 32 bits, not 8, 16 or 24."}, {notPcm});
    const QString floats = " Its samples are encoded as 32 bit float, not as linear PCM.";
    made("sox, floating point", "sox plain.wav -b 32 -e floating-point x.wav",
         {longerFormat + fact + floats}, {notPcm});
    byHand("extensible, floating point", extensibleFloats(), {extensible + fact + floats}, {notPcm},
           wavWithSamples({40000, 1, 24}, quarters()));
    made("sox, A-law", "sox plain.wav -e a-law x.wav",
         {longerFormat + fact + " Its samples are encoded as A-Law, not as linear PCM."}, {notPcm},
         false);
    made("sox, big-endian", "sox plain.wav -B x.wav", {"It is big-endian (RIFX)."}, {notPcm});
    const QString notWave = "Pellion refuses it (\"Not a WAV file: x.wav" + goesOn;
    for (const char* channels : {"1", "1 0"}) // with nothing in the second
        made(channels[1] == 0 ? "sox, AIFF" : "sox, AIFF, two channels",
             QStringLiteral("sox plain.wav -t aiff x.wav remix ") + channels,
             {"It is not a WAVE file but AIFF (Apple/SGI)."}, {notWave});
    made("ffmpeg, beyond 4 GiB", QString(byFfmpeg) + "-rf64 always -bitexact x.wav",
         {beyond4GiB + "20000."}, {notPcm});
}

void addLengths() {
    const QString shownAs23747 =
        "Its 9499 samples are 237.475 ms long, which Pellion shows as 237.47 ms.";
    const QString leavesOut = "Pellion plays as many samples as the duration shown holds, %1, "
                              "and leaves out the last 1.";
    made("ffmpeg, beyond 4 GiB, 237.475 ms",
         "sox plain.wav short.wav trim 0 9499s && ffmpeg -v error -i short.wav -rf64 always "
         "-bitexact x.wav && sox short.wav plain.wav pad 0 1s",
         {beyond4GiB + "18998.", shownAs23747}, {notPcm, leavesOut.arg(9498)});
    byHand("237.475 ms", handmade({}, 9499), {shownAs23747}, {leavesOut.arg(9498)},
           wavWithData({}, handmade({}, 9499).mid(wavoffset::data) + QByteArray(2, '\0')));
    // 10.2 / 1000 x 40000 is a hair below 408 in doubles, and 409 samples are shown as 10.22 ms.
    byHand("10.2 ms", handmade({}, 408),
           {"Its 408 samples are 10.200 ms long, which Pellion shows as 10.20 ms."},
           {leavesOut.arg(407)},
           wavWithData({}, handmade({}, 408).mid(wavoffset::data) + QByteArray(4, '\0')));
}

void addRatesAndChannels() {
    const QString tone = "sox -r %1 -n -b %2 -c %3 x.wav synth %4 sine 440 vol 0.5";
    made("44100 Hz", tone.arg("44100", "16", "1", "0.25"), {"Its sampling rate is 44100 Hz."},
         {playedAt40000("399.09", "-168.9", "The last 1025 of its 11025 samples are left out.")},
         false);
    made("20000 Hz", tone.arg("20000", "16", "1", "0.25"), {"Its sampling rate is 20000 Hz."},
         {playedAt40000("880.00", "1200.0", "Its 5000 samples are followed by 5000 of silence.")},
         false);
    made("48000 Hz, 24 bits, four channels", tone.arg("48000", "24", "4", "6001s"),
         {extensible + fact, "It has 4 channels.", "Its sampling rate is 48000 Hz."},
         {notPcm, silent,
          playedAt40000("366.67", "-315.6", "The last 1001 of its 6001 samples are left out.")},
         false);
    made("four channels", "sox plain.wav -t wavpcm x.wav remix 1 0 0 0", {"It has 4 channels."},
         {silent});
    byHand("three channels",
           wavWithSamples({40000, 3, 16}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}),
           {"It has 3 channels."}, {silent}, wavWithSamples({}, {1, 4, 7, 10}));
    byHand("two channels at 0 Hz",
           with32(wavWithSamples({40000, 2, 8}, {1, 2, 3, 4}), wavoffset::samplingRate, 0),
           {noRate}, {unusable}, wavWithSamples({40000, 1, 8}, {1, 3}));
}

void addDamagedFiles() {
    const QByteArray good = handmade();
    byHand("a lowest code", wavWithSamples({40000, 1, 24}, {1, -0x800000, 2, -0x800000}),
           {"It has the lowest code of 24 bits, which means -1, 2 times."},
           {"Pellion reads it as +1: a click."},
           wavWithSamples({40000, 1, 24}, {1, -0x7FFFFF, 2, -0x7FFFFF}));
    byHand("data that end early", good.chopped(1000),
           {"Its header declares 2000 bytes of data, but the file ends after 1000."}, {unusable},
           handmade({}, 500));
    byHand("data of no size", with32(good, wavoffset::dataSize, 0),
           {"Its header declares 0 bytes of data."}, {unusable}, good);
    byHand("a rate of 0", with32(good, wavoffset::samplingRate, 0), {noRate}, {unusable}, good);
    byHand("no channels", with16(good, wavoffset::channelCount, 0),
           {"Its header declares no channel; one is assumed here."}, {unusable}, good);
    byHand("a longer format chunk",
           with32(good, wavoffset::formatChunkSize, 18).insert(36, QByteArray(2, '\0')),
           {longerFormat}, {unusable}, good);
    byHand("two format chunks", QByteArray(good).insert(36, good.mid(12, 24)),
           {"Its chunks contradict its first 44 bytes."}, {"Pellion uses those 44 bytes."}, good);
    byHand("junk before the format",
           QByteArray(good).insert(12, tag("JUNK", 28) + QByteArray(28, '\0')),
           {"It has a chunk JUNK of 28 bytes before its data."}, {notPcm}, good);
}

void addFilesWithoutRiff() {
    const QString overwrite = " && printf XXXX | dd of=x.wav conv=notrunc";
    made("no RIFF, three channels and a chunk after the data",
         "sox plain.wav -t wavpcm x.wav remix 1 0 0 && "
         "printf 'LIST\\4\\0\\0\\0abcd' >>x.wav" +
             overwrite,
         {"It has 3 channels."}, {silent});
    made("no RIFF, two channels at 44100 Hz",
         "sox -r 44100 -n -b 16 x.wav synth 0.25 sine 440 sine 660 vol 0.5" + overwrite,
         {"Its sampling rate is 44100 Hz."},
         {playedAt40000("399.09", "-168.9", "The last 1025 of its 11025 samples are left out.")},
         false);
}

} // namespace

void TestTargetInfo::faultsAreReportedAndFixed_data() {
    columns<QString, QByteArray, QStringList, QStringList, QByteArray, bool>(
        "command", "bytes", "matters", "consequences", "fixed", "isLossless");
    addEncodings();
    addLengths();
    addRatesAndChannels();
    addDamagedFiles();
    addFilesWithoutRiff();
}

void TestTargetInfo::faultsAreReportedAndFixed() {
    QFETCH(QString, command);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, matters);
    QFETCH(QStringList, consequences);
    QFETCH(QByteArray, fixed);
    QFETCH(bool, isLossless);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(command.isEmpty() ? folder.write("x.wav", bytes) : folder.shell(command));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Read as intended"), QStringList("no"));
    QCOMPARE(run.linesOf("Problem"), matters);
    QCOMPARE(run.linesOf("Effect"), consequences);
    QCOMPARE(run.linesOf("Fix"), QStringList("pellion-target convert x.wav x-fixed.wav"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 1);
    QVERIFY(folder.shell(run.linesOf("Fix")[0]));
    const ToolRun again = folder.run("info x-fixed.wav");
    QVERIFY2(again.status == 0, again.output.constData());
    QCOMPARE(again.linesOf("Note"), QStringList());
    if (!fixed.isEmpty())
        QCOMPARE(folder.read("x-fixed.wav"), fixed);
    if (isLossless) {
        QVERIFY(folder.shell("sox -D x-fixed.wav -b 16 in16bits.wav"));
        QCOMPARE(folder.read("in16bits.wav"), folder.read("plain.wav"));
    }
}

void TestTargetInfo::fileBeyondFixingIsReported_data() {
    const auto row = columns<QByteArray, QString, QString>("bytes", "matter", "consequence");
    row("nothing in it", "", "It is empty.",
        "Pellion refuses it (\"Header size is zero. x.wav" + goesOn);
    row("no data", wavWithData({}, {}), "It has no data.", unusable);
    row("no data chunk", testsupport::wavHeader({}, 0).left(36), "It has no data chunk.", unusable);
    row("no channels, 12 bits",
        with16(wavWithData({40000, 0, 12}, "abcd"), wavoffset::channelCount, 0),
        "Its samples have 12 bits, not 8, 16 or 24. Its header declares no channel; one is assumed "
        "here.",
        "Pellion refuses it (\"Not a 8-bit, 16-bit, or 24-bit WAV file: x.wav" + goesOn);
    row("no format chunk", with32("RIFF....WAVE" + tag("data", 4) + "abcd", 4, 16),
        "It has no format chunk.", notPcm);
    row("too short to be played", wavWithSamples({400000, 1, 16}, {1}),
        "A sound of 1 samples is too short, or too long for the memory there is.", unusable);
}

void TestTargetInfo::fileBeyondFixingIsReported() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, matter);
    QFETCH(QString, consequence);
    const ToolFolder folder;
    QVERIFY(folder.write("x.wav", bytes));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Problem").value(0), matter);
    QCOMPARE(run.linesOf("Effect").value(0), consequence);
    QCOMPARE(run.linesOf("Fix"), QStringList("make the file again"));
    QCOMPARE(run.status, 1);
}
