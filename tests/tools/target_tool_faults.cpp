// pellion-target: what is the matter with files, what would happen, and what mends it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QtTest>

using namespace madefiles;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
namespace wavoffset = testsupport::wavoffset;

namespace {

const QString goesOn = "\") and goes on with the earlier target, if there is one.";
const QString unusable = "The program cannot play it (\"Unusable WAV file: x.wav" + goesOn;
const QString notPcm =
    "The program refuses it (\"Not a PCM (linear quantitation) WAV file: x.wav" + goesOn;

/// 250 ms of 32-bit floating point behind an extensible header, as ffmpeg 5 writes it.
QByteArray extensibleFloats() {
    const QByteArray data = QByteArray::fromHex("0000803e000080be").repeated(5000);
    const QByteArray subformat = QByteArray::fromHex("0300000000001000800000aa00389b71");
    QByteArray bytes = wavWithData({40000, 1, 32}, data);
    bytes.insert(36, QByteArray::fromHex("1600200004000000") + subformat + tag("fact", 4) +
                         QByteArray::fromHex("10270000"));
    bytes = with32(bytes, 4, quint32(bytes.size() - 8));
    return with16(with32(bytes, wavoffset::formatChunkSize, 40), wavoffset::audioFormat, 0xFFFE);
}

} // namespace

void TestTargetInfo::faultsAreNamedAndMended_data() {
    QTest::addColumn<QString>("command");  // Makes x.wav out of plain.wav.
    QTest::addColumn<QByteArray>("bytes"); // Or these are x.wav.
    QTest::addColumn<QStringList>("matters");
    QTest::addColumn<QStringList>("consequences");
    QTest::addColumn<QString>("mending");
    QTest::addColumn<bool>("isLossless"); // Mending gives the samples of plain.wav.
    const auto made = [](const char* name, const QString& command, const QStringList& matters,
                         const QStringList& consequences, const QString& mending,
                         bool isLossless = true) {
        QTest::newRow(name) << command << QByteArray() << matters << consequences << mending
                            << isLossless;
    };
    const auto byHand = [](const char* name, const QByteArray& bytes, const QStringList& matters,
                           const QStringList& consequences, const QString& mending) {
        QTest::newRow(name) << QString() << bytes << matters << consequences << mending << false;
    };
    const QString plainly = "sox x.wav -t wavpcm x-mended.wav";
    made("ffmpeg, not bit-exact", QString(byFfmpeg) + "x.wav",
         {"A chunk LIST of 26 bytes stands before the data."},
         {"The program takes the 26 bytes from byte 44 on for the sound."}, plainly);
    made("ffmpeg, through a pipe", QString(byFfmpeg) + "-bitexact -f wav - >x.wav",
         {"Its header says 4294967295 bytes of data, but the file ends after 20000."}, {unusable},
         "sox --ignore-length x.wav -t wavpcm x-mended.wav");
    made("sox, 24 bits", "sox plain.wav -b 24 x.wav",
         {"Its header is extensible, with a format chunk of 40 bytes instead of 16. A chunk fact "
          "of 4 bytes stands before the data."},
         {notPcm}, plainly, false);
    made("ffmpeg, 24 bits", QString(byFfmpeg) + "-c:a pcm_s24le -bitexact x.wav",
         {"Its header is extensible, with a format chunk of 40 bytes instead of 16."}, {notPcm},
         plainly, false);
    made("sox, 32 bits", "sox plain.wav -b 32 x.wav",
         {"Its header is extensible, with a format chunk of 40 bytes instead of 16. A chunk fact "
          "of 4 bytes stands before the data. Its samples have 32 bits, not 8, 16 or 24."},
         {notPcm}, "sox x.wav -b 24 -e signed-integer -t wavpcm x-mended.wav", false);
    made("sox, floating point", "sox plain.wav -b 32 -e floating-point x.wav",
         {"Its format chunk has 18 bytes instead of 16. A chunk fact of 4 bytes stands before the "
          "data. Its samples are encoded as floating point, not as linear PCM."},
         {notPcm}, "sox x.wav -b 24 -e signed-integer -t wavpcm x-mended.wav", false);
    byHand("extensible, floating point", extensibleFloats(),
           {"Its header is extensible, with a format chunk of 40 bytes instead of 16. A chunk fact "
            "of 4 bytes stands before the data. Its samples are encoded as floating point, not as "
            "linear PCM."},
           {notPcm}, "sox x.wav -b 24 -e signed-integer -t wavpcm x-mended.wav");
    made("sox, A-law", "sox plain.wav -e a-law x.wav",
         {"Its format chunk has 18 bytes instead of 16. A chunk fact of 4 bytes stands before the "
          "data. Its samples are encoded as A-law, not as linear PCM."},
         {notPcm}, "sox x.wav -b 16 -e signed-integer -t wavpcm x-mended.wav", false);
    made("sox, big-endian", "sox plain.wav -B x.wav", {"It is big-endian (RIFX)."}, {notPcm},
         plainly);
    made("sox, AIFF", "sox plain.wav -t aiff x.wav", {"It is no WAVE file."},
         {"The program refuses it (\"Not a WAV file: x.wav" + goesOn},
         "ffmpeg -i x.wav -ar 40000 -af 'pan=mono|c0=c0' -c:a pcm_s16le -bitexact x-mended.wav");
    made("sox, AIFF, nothing in its second channel", "sox plain.wav -t aiff x.wav remix 1 0",
         {"It is no WAVE file."}, {"The program refuses it (\"Not a WAV file: x.wav" + goesOn},
         "ffmpeg -i x.wav -ar 40000 -af 'pan=mono|c0=c0' -c:a pcm_s16le -bitexact x-mended.wav");
    made("ffmpeg, beyond 4 GiB", QString(byFfmpeg) + "-rf64 always -bitexact x.wav",
         {"It has the header of files beyond 4 GiB (RF64). A chunk ds64 of 28 bytes stands before "
          "the data. Its header says 4294967295 bytes of data, but the file ends after 20000."},
         {notPcm},
         "ffmpeg -i x.wav -ar 40000 -af 'pan=mono|c0=c0' -c:a pcm_s16le -bitexact x-mended.wav");
    made("ffmpeg, beyond 4 GiB, 237.475 ms",
         "sox plain.wav short.wav trim 0 9499s && ffmpeg -v error -i short.wav -rf64 always "
         "-bitexact x.wav && sox short.wav plain.wav pad 0 1s",
         {"It has the header of files beyond 4 GiB (RF64). A chunk ds64 of 28 bytes stands before "
          "the data. Its header says 4294967295 bytes of data, but the file ends after 18998.",
          "Its 9499 samples are 237.475 ms long, which the program shows as 237.47 ms."},
         {notPcm,
          "The program plays as many samples as the duration shown holds, 9498, and leaves out "
          "the last 1."},
         "ffmpeg -i x.wav -ar 40000 -af 'pan=mono|c0=c0,aresample=40000,apad=pad_len=1' "
         "-c:a pcm_s16le -bitexact x-mended.wav");
    made("44100 Hz", "sox -r 44100 -n -b 16 -c 1 x.wav synth 0.25 sine 440 vol 0.5",
         {"Its sampling rate is 44100 Hz."},
         {"The program plays it at 40000 Hz without conversion: 440 Hz in it are heard as 399.09 "
          "Hz (-168.9 cents). The last 1025 of its 11025 samples are left out."},
         "sox x.wav -t wavpcm x-mended.wav rate -v 40000", false);
    made("20000 Hz", "sox -r 20000 -n -b 16 -c 1 x.wav synth 0.25 sine 440 vol 0.5",
         {"Its sampling rate is 20000 Hz."},
         {"The program plays it at 40000 Hz without conversion: 440 Hz in it are heard as 880.00 "
          "Hz (1200.0 cents). Its 5000 samples are followed by 5000 of silence."},
         "sox x.wav -t wavpcm x-mended.wav rate -v 40000", false);
    made("48000 Hz, 24 bits, four channels",
         "sox -r 48000 -n -b 24 -c 4 x.wav synth 6001s sine 440 vol 0.5",
         {"Its header is extensible, with a format chunk of 40 bytes instead of 16. A chunk fact "
          "of 4 bytes stands before the data.",
          "It has 4 channels.", "Its sampling rate is 48000 Hz."},
         {notPcm, "The program plays silence in its place.",
          "The program plays it at 40000 Hz without conversion: 440 Hz in it are heard as 366.67 "
          "Hz (-315.6 cents). The last 1001 of its 6001 samples are left out."},
         "sox x.wav -t wavpcm x-mended.wav remix 1 rate -v 40000 pad 0 1s", false);
    made("four channels", "sox plain.wav -t wavpcm x.wav remix 1 0 0 0", {"It has 4 channels."},
         {"The program plays silence in its place."}, "sox x.wav -t wavpcm x-mended.wav remix 1");
    byHand("three channels", handmade({40000, 3, 16}), {"It has 3 channels."},
           {"The program plays silence in its place."}, "sox x.wav -t wavpcm x-mended.wav remix 1");
    byHand("237.475 ms", handmade({}, 9499),
           {"Its 9499 samples are 237.475 ms long, which the program shows as 237.47 ms."},
           {"The program plays as many samples as the duration shown holds, 9498, and leaves out "
            "the last 1."},
           "sox x.wav -t wavpcm x-mended.wav pad 0 1s");
    // 10.2 / 1000 x 40000 is a hair below 408 in doubles, and 409 samples are shown as 10.22 ms.
    byHand("10.2 ms", handmade({}, 408),
           {"Its 408 samples are 10.200 ms long, which the program shows as 10.20 ms."},
           {"The program plays as many samples as the duration shown holds, 407, and leaves out "
            "the last 1."},
           "sox x.wav -t wavpcm x-mended.wav pad 0 2s");
    byHand("a lowest code", wavWithSamples({40000, 1, 24}, {1, -0x800000, 2, -0x800000}),
           {"It has the lowest code of 24 bits, which means -1 (2 times)."},
           {"The program reads it as +1: a click."},
           "sox x.wav -t wavpcm x-mended.wav vol 0.9999998");
    const QByteArray good = handmade();
    byHand("data that end early", good.chopped(1000),
           {"Its header says 2000 bytes of data, but the file ends after 1000."}, {unusable},
           "sox --ignore-length x.wav -t wavpcm x-mended.wav");
    byHand("data of no size", with32(good, wavoffset::dataSize, 0),
           {"Its header says 0 bytes of data."}, {unusable},
           "sox --ignore-length x.wav -t wavpcm x-mended.wav");
    byHand("a rate of 0", with32(good, wavoffset::samplingRate, 0),
           {"Its header says a sampling rate of 0 Hz."}, {unusable},
           "ffmpeg -f s16le -ar 40000 -ac 1 -skip_initial_bytes 44 -i x.wav -ar 40000 "
           "-c:a pcm_s16le -bitexact x-mended.wav");
    byHand("no channels", with16(good, wavoffset::channelCount, 0),
           {"Its header says that it has no channels."}, {unusable},
           "ffmpeg -f s16le -ar 40000 -ac 1 -skip_initial_bytes 44 -i x.wav -ar 40000 "
           "-c:a pcm_s16le -bitexact x-mended.wav");
    made("no RIFF, three channels and a chunk behind",
         "sox plain.wav -t wavpcm x.wav remix 1 0 0 && printf 'LIST\\4\\0\\0\\0abcd' >>x.wav && "
         "printf XXXX | dd of=x.wav conv=notrunc",
         {"It has 3 channels."}, {"The program plays silence in its place."},
         "ffmpeg -f s16le -ar 40000 -ac 3 -skip_initial_bytes 44 -i x.wav -ar 40000 "
         "-af 'pan=mono|c0=c0,atrim=end_sample=10000' -c:a pcm_s16le -bitexact x-mended.wav");
    made("no RIFF, two channels at 44100 Hz",
         "sox -r 44100 -n -b 16 x.wav synth 0.25 sine 440 sine 660 vol 0.5 && "
         "printf XXXX | dd of=x.wav conv=notrunc",
         {"Its sampling rate is 44100 Hz."},
         {"The program plays it at 40000 Hz without conversion: 440 Hz in it are heard as 399.09 "
          "Hz (-168.9 cents). The last 1025 of its 11025 samples are left out."},
         "ffmpeg -f s16le -ar 44100 -ac 2 -skip_initial_bytes 44 -i x.wav -ar 40000 "
         "-af 'pan=mono|c0=c0' -c:a pcm_s16le -bitexact x-mended.wav",
         false);
    made("a rate of 0, nothing in the second channel",
         "sox plain.wav -t wavpcm x.wav remix 1 0 && "
         "printf '\\0\\0\\0\\0' | dd of=x.wav conv=notrunc bs=1 seek=24",
         {"Its header says a sampling rate of 0 Hz."}, {unusable},
         "ffmpeg -f s16le -ar 40000 -ac 2 -skip_initial_bytes 44 -i x.wav -ar 40000 "
         "-af 'pan=mono|c0=c0' -c:a pcm_s16le -bitexact x-mended.wav");
    byHand("a longer format chunk",
           with32(good, wavoffset::formatChunkSize, 18).insert(36, QByteArray(2, '\0')),
           {"Its format chunk has 18 bytes instead of 16."}, {unusable}, plainly);
    byHand("two format chunks", QByteArray(good).insert(36, good.mid(12, 24)),
           {"Its chunks say otherwise than its first 44 bytes."},
           {"The program goes by the latter."}, plainly);
    byHand("junk before the format",
           QByteArray(good).insert(12, tag("JUNK", 28) + QByteArray(28, '\0')),
           {"A chunk JUNK of 28 bytes stands before the data."}, {notPcm}, plainly);
}

void TestTargetInfo::faultsAreNamedAndMended() {
    QFETCH(QString, command);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, matters);
    QFETCH(QStringList, consequences);
    QFETCH(QString, mending);
    QFETCH(bool, isLossless);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(command.isEmpty() ? folder.write("x.wav", bytes) : folder.shell(command));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Read as intended"), QStringList("no"));
    QCOMPARE(run.linesOf("What is the matter"), matters);
    QCOMPARE(run.linesOf("What would happen"), consequences);
    QCOMPARE(run.linesOf("What mends it"), QStringList(mending));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 1);
    QVERIFY(folder.shell(mending));
    const ToolRun again = folder.run("info x-mended.wav");
    QVERIFY2(again.status == 0, again.output.constData());
    if (isLossless)
        QCOMPARE(folder.read("x-mended.wav"), folder.read("plain.wav"));
}

void TestTargetInfo::whatNothingMendsIsSaid_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("matter");
    QTest::addColumn<QString>("consequence");
    const QString notWav = "The program refuses it (\"Not a WAV file: x.wav" + goesOn;
    QTest::newRow("nothing in it")
        << QByteArray("") << "It is empty."
        << "The program refuses it (\"Header size is zero. x.wav" + goesOn;
    QTest::newRow("no data") << wavWithData({}, {}) << "It has no data." << unusable;
    QTest::newRow("no data chunk")
        << testsupport::wavHeader({}, 0).left(36) << "It has no data chunk." << unusable;
    QTest::newRow("no channels, 12 bits")
        << with16(wavWithData({40000, 0, 12}, "abcd"), wavoffset::channelCount, 0)
        << "Its samples have 12 bits, not 8, 16 or 24. Its header says that it has no channels."
        << "The program refuses it (\"Not a 8-bit, 16-bit, or 24-bit WAV file: x.wav" + goesOn;
    QTest::newRow("no format chunk") << with32("RIFF....WAVE" + tag("data", 4) + "abcd", 4, 16)
                                     << "It has no format chunk." << notPcm;
    QTest::newRow("too short to be played")
        << wavWithSamples({400000, 1, 16}, {1})
        << "A sound of 1 samples is too short, or too long for the memory there is." << unusable;
}

void TestTargetInfo::whatNothingMendsIsSaid() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, matter);
    QFETCH(QString, consequence);
    const ToolFolder folder;
    QVERIFY(folder.write("x.wav", bytes));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("What is the matter").value(0), matter);
    QCOMPARE(run.linesOf("What would happen").value(0), consequence);
    QCOMPARE(run.linesOf("What mends it"), QStringList("making it anew"));
    QCOMPARE(run.status, 1);
}
