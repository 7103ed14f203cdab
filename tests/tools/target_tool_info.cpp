// pellion-target: what it says about files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_target_tool.h"

#include <QtTest>

using namespace madefiles;
using testsupport::wavWithData;
using testsupport::wavWithSamples;
namespace wavoffset = testsupport::wavoffset;

void TestTargetInfo::goodFilesAreAsIntended_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("sox, 16 bits") << "cp plain.wav x.wav";
    QTest::newRow("sox, 8 bits") << "sox -D plain.wav -b 8 x.wav";
    QTest::newRow("sox, 24 bits in a plain header") << "sox plain.wav -b 24 -t wavpcm x.wav";
    QTest::newRow("sox, two channels") << "sox plain.wav x.wav remix 1 1";
    QTest::newRow("sox, through a pipe") << "sox -t wav - -t wav - <plain.wav >x.wav";
    QTest::newRow("ffmpeg, 16 bits") << QString(byFfmpeg) + "-bitexact x.wav";
    QTest::newRow("ffmpeg, 8 bits") << QString(byFfmpeg) + "-c:a pcm_u8 -bitexact x.wav";
    const QStringList kinds = {"tone", "complex", "sam", "noise"};
    for (const QString& kind : kinds)
        for (const int bits : {8, 16, 24})
            QTest::addRow("made: %s, %d bits", qPrintable(kind), bits)
                << QStringLiteral("'" PELLION_TARGET "' make %1 x.wav --channels 2 --bits %2")
                       .arg(kind)
                       .arg(bits);
}

void TestTargetInfo::goodFilesAreAsIntended() {
    QFETCH(QString, command);
    const ToolFolder folder;
    QVERIFY(folder.shell(plain));
    QVERIFY(folder.shell(command));
    const ToolRun run = folder.run("info x.wav");
    QCOMPARE(run.linesOf("Read as intended"), QStringList("yes"));
    QCOMPARE(run.linesOf("What is the matter"), QStringList());
    QCOMPARE(run.linesOf("What mends it"), QStringList());
    QCOMPARE(run.linesOf("To be noted"), QStringList());
    QCOMPARE(run.linesOf("Duration"), QStringList("250.00 ms, 10000 samples"));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

void TestTargetInfo::odditiesAreNoted_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("notes");
    const QByteArray good = handmade();
    const QString size = "Its header says a file of 2044 bytes, which has %1. The program does not "
                         "mind.";
    QTest::newRow("not RIFF")
        << "x.wav"
        << "RIFT" + good.mid(4)
        << QStringList("It does not begin with RIFF. The program does not mind, most others do.");
    QTest::newRow("wrong byte rate")
        << "x.wav" << with32(good, wavoffset::byteRate, 1)
        << QStringList("The bytes per second or per sample in its header do not fit the rest. The "
                       "program does not mind, others may.");
    QTest::newRow("a chunk behind the data")
        << "x.wav" << with32(good, 4, 2054) + tag("LIST", 10) + "INFOabcdef"
        << QStringList("Behind its data stands a chunk LIST of 10 bytes, which the program does "
                       "not read.");
    QTest::newRow("twice in one file")
        << "x.wav" << good + good
        << QStringList({"Behind its data a second WAV file begins, which the program does not "
                        "read.",
                        size.arg(4088)});
    QTest::newRow("bytes behind the data")
        << "x.wav" << good + "abc"
        << QStringList({"Its last bytes, 3 of them, are no chunk. The program does not read them.",
                        size.arg(2047)});
    QTest::newRow("half a sample at the end")
        << "x.wav" << with32(with32(good, wavoffset::dataSize, 1999), 4, 2036)
        << QStringList("Its data end within a sample, which the program leaves out.");
    QTest::newRow("different channels")
        << "x.wav" << handmade({40000, 2, 16})
        << QStringList("The program plays the left of its two channels.");
    QTest::newRow("silence") << "x.wav" << wavWithData({}, QByteArray(2000, '\0'))
                             << QStringList("It is silent.");
    QTest::newRow("another name")
        << "x.wave" << good
        << QStringList("Its name does not end in .wav, so the program's dialog does not show it.");
    QTest::newRow("capital letters") << "X.WAV" << good << QStringList();
}

void TestTargetInfo::odditiesAreNoted() {
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, notes);
    const ToolFolder folder;
    QVERIFY(folder.write(name, bytes));
    const ToolRun run = folder.run("info " + name);
    QCOMPARE(run.linesOf("To be noted"), notes);
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
    QTest::addColumn<int>("bits");
    QTest::addColumn<QVector<int>>("samples"); // Of two channels.
    QTest::addColumn<QStringList>("levels");
    QTest::newRow("8 bits") << 8 << QVector<int>{192, 128, 64, 128}
                            << QStringList({"peak -6.02 dB, RMS -6.02 dB re full scale",
                                            "peak -inf dB, RMS -inf dB re full scale"});
    // 16384 / 32768 and 0: RMS is peak / sqrt(2). -32768 is full scale.
    QTest::newRow("16 bits") << 16 << QVector<int>{16384, -32768, 0, 32767}
                             << QStringList({"peak -6.02 dB, RMS -9.03 dB re full scale",
                                             "peak 0.00 dB, RMS 0.00 dB re full scale"});
    QTest::newRow("24 bits") << 24 << QVector<int>{838861, -0x800000, 838861, -0x800000}
                             << QStringList({"peak -20.00 dB, RMS -20.00 dB re full scale",
                                             "peak 0.00 dB, RMS 0.00 dB re full scale"});
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
    QTest::addColumn<QString>("name");
    QTest::newRow("blank") << "a b.wav";
    QTest::newRow("quote") << "it's.wav";
    QTest::newRow("dollar and more") << "$(touch evil)`;&\"*.wav";
    QTest::newRow("like an option") << "-n.wav";
    QTest::newRow("other scripts") << QString::fromUtf8("Töne 音 🎵.wav");
}

void TestTargetInfo::namesAreQuotedForTheShell() {
    QFETCH(QString, name);
    const ToolFolder folder;
    QVERIFY(folder.write(name, handmade({20000, 1, 16})));
    const ToolRun run = folder.runWords({"info", "--", name}, {"LC_ALL=C.UTF-8"});
    const QStringList mending = run.linesOf("What mends it");
    QCOMPARE(mending.size(), 1);
    QVERIFY(folder.shell(mending[0]));
    const QString mended = name.chopped(4) + "-mended.wav";
    QCOMPARE(folder.runWords({"info", "--", mended}, {"LC_ALL=C.UTF-8"}).status, 0);
    QCOMPARE(folder.names().size(), 2);
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
