// pellion-target: what it says about files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>

using namespace madefiles;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
using testsupport::with32;
namespace wavoffset = testsupport::wavoffset;

void TestTargetInfo::goodFilesAreAsIntended_data() {
    const auto row = columns<QString>("command");
    row("sox, 16 bits", "cp plain.wav x.wav");
    row("sox, 8 bits", "sox -D plain.wav -b 8 x.wav");
    row("sox, 24 bits in a plain header", "sox plain.wav -b 24 -t wavpcm x.wav");
    row("sox, two channels", "sox plain.wav x.wav remix 1 1");
    row("sox, through a pipe", "sox -t wav - -t wav - <plain.wav >x.wav");
    row("ffmpeg, 16 bits", QString(byFfmpeg) + "-bitexact x.wav");
    row("ffmpeg, 8 bits", QString(byFfmpeg) + "-c:a pcm_u8 -bitexact x.wav");
    for (const char* kind : {"tone", "complex", "sam", "noise"})
        for (const int bits : {8, 16, 24}) {
            const QString made =
                QString::asprintf("make %s x.wav --channels 2 --bits %d", kind, bits);
            row(made.toUtf8(), "'" PELLION_TARGET "' " + made);
        }
}

void TestTargetInfo::goodFilesAreAsIntended() {
    QFETCH(QString, command);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(folder.shell(command));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Read as intended"), QStringList("yes"));
    QCOMPARE(run.linesOf("Problem"), QStringList());
    QCOMPARE(run.linesOf("Fix"), QStringList());
    QCOMPARE(run.linesOf("Note"), QStringList());
    QCOMPARE(run.linesOf("Duration"), QStringList("250.00 ms, 10000 samples"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

void TestTargetInfo::odditiesAreNoted_data() {
    const auto named = columns<QString, QByteArray, QStringList>("name", "bytes", "notes");
    const auto row = [&](const char* rowName, const QByteArray& bytes, const QStringList& notes) {
        named(rowName, "x.wav", bytes, notes);
    };
    const QByteArray good = handmade();
    const QString size = "Its header declares a file of 2044 bytes, but it has %1. Pellion "
                         "ignores this.";
    row("not RIFF", "RIFT" + good.mid(4),
        {"It does not begin with RIFF. Pellion ignores this, most other programs do not."});
    row("wrong byte rate", with32(good, wavoffset::byteRate, 1),
        {"The bytes per second or per sample in its header do not fit the rest. Pellion "
         "ignores this, other programs may not."});
    row("a chunk after the data", with32(good, 4, 2054) + tag("id3 ", 10) + "INFOabcdef",
        {"Pellion does not read its chunk id3 of 10 bytes after the data."});
    row("twice in one file", good + good,
        {"Pellion does not read the second WAV file that begins after its data.", size.arg(4088)});
    row("bytes after the data", good + "abc",
        {"Its last bytes, 3 of them, are not a chunk. Pellion does not read them.",
         size.arg(2047)});
    row("half a sample at the end", with32(with32(good, wavoffset::dataSize, 1999), 4, 2036),
        {"Its data end within a sample, which Pellion leaves out."});
    row("different channels", handmade({40000, 2, 16}),
        {"Pellion plays the left of its two channels."});
    row("silence", wavWithData({}, QByteArray(2000, '\0')), {"It is silent."});
    named("another name", "x.wave", good,
          {"Its name does not end in .wav, so Pellion's dialog does not show it."});
    named("capital letters", "X.WAV", good, {});
}

void TestTargetInfo::odditiesAreNoted() {
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, notes);
    const ToolFolder folder;
    QVERIFY(folder.write(name, bytes));
    const ToolRun run = folder.run("info " + name);
    QCOMPARE(run.linesOf("Note"), notes);
    QCOMPARE(run.linesOf("Read as intended"), QStringList("yes"));
}

void TestTargetInfo::headerIsThatOfTheProgram() {
    const ToolFolder folder;
    QVERIFY(folder.write("x.wav", handmade({44100, 2, 24})));
    const ToolRun run = folder.run("info x.wav");
    QVERIFY2(run.output.startsWith("x.wav\n"
                                   "RIFF header                : RIFF\n"
                                   "WAVE header                : WAVE\n"
                                   "FMT                        : fmt \n"
                                   "Data size                  : 6036\n"
                                   "Sampling Rate              : 44100\n"
                                   "Number of bits per sample  : 24\n"
                                   "Number of channels         : 2\n"
                                   "Number of bytes per second : 264600\n"
                                   "Data length (bytes)        : 6000\n"
                                   "Audio Format               : 1\n"
                                   "Block align                : 6\n"
                                   "Data string                : data\n"
                                   "Duration                   : 22.68 ms, 1000 samples\n"
                                   "Channel 1                  : peak "),
             run.output.constData());
}

void TestTargetInfo::levelsAreMeasuredPerChannel_data() {
    const auto row = columns<int, QVector<int>, QStringList>("bits", "samples", "levels");
    const QString decibels = "peak %1 dB, RMS %2 dB re full scale";
    // The samples are those of two channels.
    row("8 bits", 8, {192, 128, 64, 128},
        {decibels.arg("-6.02", "-6.02"), decibels.arg("-inf", "-inf")});
    // 16384 / 32768 and 0: RMS is peak / sqrt(2). -32768 is full scale.
    row("16 bits", 16, {16384, -32768, 0, 32767},
        {decibels.arg("-6.02", "-9.03"), decibels.arg("0.00", "0.00")});
    row("24 bits", 24, {838861, -0x800000, 838861, -0x800000},
        {decibels.arg("-20.00", "-20.00"), decibels.arg("0.00", "0.00")});
}

void TestTargetInfo::levelsAreMeasuredPerChannel() {
    QFETCH(int, bits);
    QFETCH(QVector<int>, samples);
    QFETCH(QStringList, levels);
    const ToolFolder folder;
    QVERIFY(folder.write("x.wav", wavWithSamples({40000, 2, quint16(bits)}, samples)));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Channel 1") + run.linesOf("Channel 2"), levels);
}

void TestTargetInfo::severalFilesAreAllLookedAt() {
    const ToolFolder folder;
    QVERIFY(folder.write("good.wav", handmade()));
    QVERIFY(folder.write("bad.wav", handmade({8000, 1, 16})));
    const ToolRun run = folder.run("info good.wav missing.wav bad.wav .");
    QCOMPARE(run.linesOf("Read as intended"),
             QStringList({"yes", "no: it cannot be opened as a regular file", "no",
                          "no: it cannot be opened as a regular file"}));
    QVERIFY(run.output.endsWith("\n\nRead as intended: 1 of 4 files\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(folder.run("info good.wav good.wav").status, 0);
}

void TestTargetInfo::namesAreQuotedForTheShell_data() {
    const auto row = columns<QString>("name");
    row("blank", "a b.wav");
    row("quote", "it's.wav");
    row("dollar and more", "$(touch evil)`;&\"*.wav");
    row("like an option", "-n.wav");
    row("other scripts", QString::fromUtf8("Töne 音 🎵.wav"));
}

void TestTargetInfo::namesAreQuotedForTheShell() {
    QFETCH(QString, name);
    const ToolFolder folder;
    QVERIFY(folder.write(name, handmade({20000, 1, 16})));
    const ToolRun run = folder.runWords({"info", "--", name}, {"LC_ALL=C.UTF-8"});
    const QStringList fix = run.linesOf("Fix");
    QCOMPARE(fix.size(), 1);
    QVERIFY(folder.shell(fix[0]));
    const QString fixed = name.chopped(4) + "-fixed.wav";
    QCOMPARE(folder.runWords({"info", "--", fixed}, {"LC_ALL=C.UTF-8"}).status, 0);
    QCOMPARE(folder.names().size(), 2);
}

void TestTargetInfo::jsonHoldsTheSame() {
    const ToolFolder folder;
    QVERIFY(folder.write("good.wav", wavWithSamples({40000, 2, 16}, {16384, 0, -16384, 0})));
    QVERIFY(folder.write("bad.wav", wavWithSamples({400000, 1, 8}, QVector<int>(20, 255))));
    const ToolRun run = folder.run("info --json good.wav bad.wav missing.wav");
    QCOMPARE(run.status, 1);
    const QJsonArray reports = QJsonDocument::fromJson(run.output).array();
    QCOMPARE(reports.size(), 3);
    const QJsonObject good = reports[0].toObject();
    QCOMPARE(good["file"].toString(), QStringLiteral("good.wav"));
    QVERIFY(good["opened"].toBool() && good["asIntended"].toBool() && good["fix"].isNull());
    QCOMPARE(good["channels"].toInt(), 2);
    QCOMPARE(good["samplingRate"].toInt(), 40000);
    QCOMPARE(good["bitsPerSample"].toInt(), 16);
    QCOMPARE(good["samples"].toInt(), 2);
    QCOMPARE(good["durationMs"].toDouble(), 0.05);
    QCOMPARE(good["levels"][0]["peakDb"].toDouble(), 20 * std::log10(0.5));
    QCOMPARE(good["levels"][0]["rmsDb"].toDouble(), 20 * std::log10(0.5));
    QVERIFY(good["levels"][1]["peakDb"].isNull() && good["levels"][1]["rmsDb"].isNull());
    QCOMPARE(good["problems"].toArray(), QJsonArray());
    QCOMPARE(good["notes"].toArray(), QJsonArray({"Pellion plays the left of its two channels."}));
    const QJsonObject bad = reports[1].toObject();
    QVERIFY(bad["opened"].toBool() && !bad["asIntended"].toBool());
    QCOMPARE(bad["problems"][0]["problem"].toString(),
             QStringLiteral("Its sampling rate is 400000 Hz."));
    QVERIFY(bad["problems"][0]["effect"].toString().startsWith("Pellion plays it at 40000 Hz"));
    QCOMPARE(bad["fix"].toString(), QStringLiteral("pellion-target convert bad.wav bad-fixed.wav"));
    const QJsonObject missing = reports[2].toObject();
    QVERIFY(!missing["opened"].toBool() && !missing["asIntended"].toBool());
    for (const char* key :
         {"channels", "samplingRate", "bitsPerSample", "samples", "durationMs", "fix"})
        QVERIFY2(missing[key].isNull(), key);
}

void TestTargetInfo::mangledFilesDoNoHarm() {
    const ToolFolder folder;
    const QByteArray good =
        QByteArray(handmade({40000, 2, 24}, 40)).insert(36, tag("LIST", 4) + "INFO");
    quint32 state = 1;
    const auto random = [&](int below) {
        state = state * 1664525U + 1013904223U;
        return int((state >> 8U) % quint32(below));
    };
    QStringList names{"info"};
    for (int number = 0; number < 300; ++number) {
        QByteArray bytes = good.left(random(2) == 0 ? good.size() : random(good.size()));
        for (int change = random(6); change > 0 && !bytes.isEmpty(); --change)
            bytes[random(std::min(bytes.size(), 60))] = char(random(3) == 0   ? 0xFF
                                                             : random(2) == 0 ? 0
                                                                              : random(256));
        names << QStringLiteral("%1.wav").arg(number);
        QVERIFY(folder.write(names.last(), bytes));
    }
    const ToolRun run = folder.runWords(names);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.linesOf("Read as intended").size(), 300);
}
