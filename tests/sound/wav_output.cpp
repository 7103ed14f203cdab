// WAV files written, and headers and samples printed.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include <QTest>

#include <iomanip>
#include <iostream>

namespace wavoffset = testsupport::wavoffset;
using testsupport::readBytes;
using testsupport::setUnsigned32;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {

/// Returns what a function writes to standard output and flushes.
template <typename Function> std::string outputOf(Function&& function) {
    const testsupport::StreamCapture output(std::cout);
    function();
    return output.flushedText();
}

} // namespace

void TestWavOutput::writtenFileEqualsTheOneRead_data() {
    const auto row = columns<QByteArray>("bytes");
    row("8 bits", wavWithSamples({11025, 1, 8}, {0, 1, 254, 255}));
    row("16 bits, stereo", wavWithSamples({44100, 2, 16}, {1, -1, 32767, -32768}));
    row("24 bits, not whole samples", wavWithData({96000, 1, 24}, "1234567"));
    row("no data", wavHeader({}, 0));
    row("more than one piece", wavWithData({}, QByteArray(3000000, 'x')));
    row("fewer data than declared", wavHeader({}, 1000) + "only these");
}

void TestWavOutput::writtenFileEqualsTheOneRead() {
    QFETCH(QByteArray, bytes);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    wav.samples.clear();
    const QString path = folder.path("written file.wav");
    QCOMPARE(errorsOf([&] { QVERIFY(wav.WriteWav(path.toStdString())); }), std::string());
    QVERIFY(readBytes(path) == bytes);
    QVERIFY(wav.WriteWav(path.toStdString()));
    QVERIFY(readBytes(path) == bytes + bytes); // appended
}

void TestWavOutput::freshObjectWritesAHeaderOfZeros() {
    const WavFolder folder;
    const QString path = folder.path("written.wav");
    QVERIFY(CWav().WriteWav(path.toStdString()));
    QCOMPARE(readBytes(path), QByteArray(44, '\0'));
}

void TestWavOutput::changedHeaderIsWrittenWithItsDataSize_data() {
    const auto row = columns<quint32, QByteArray>("dataSize", "data");
    row("nothing", 0, "");
    row("less than held", 3, "123");
    row("more than held", 7, "123456");
    row("far more than held", 0xFFFFFFFF, "123456");
}

void TestWavOutput::changedHeaderIsWrittenWithItsDataSize() {
    QFETCH(quint32, dataSize);
    QFETCH(QByteArray, data);
    QByteArray bytes = wavWithData({}, "123456");
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    wav.header.dataSize = dataSize;
    wav.bytesRead = dataSize;
    wav.header.samplingRate = 12345;
    setUnsigned32(bytes, wavoffset::dataSize, dataSize);
    setUnsigned32(bytes, wavoffset::samplingRate, 12345);
    const QString path = folder.path("written.wav");
    QVERIFY(wav.WriteWav(path.toStdString()));
    QCOMPARE(readBytes(path), bytes.left(44) + data);
}

void TestWavOutput::pathsThatCannotBeWritten_data() {
    const auto row = columns<QString>("name");
    row("the folder itself", "");
    row("in a missing folder", "missing/written.wav");
    row("below a file", "target.wav/written.wav");
    row("too long a name", QString(300, 'x'));
}

void TestWavOutput::pathsThatCannotBeWritten() {
    QFETCH(QString, name);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1}))));
    const std::string path = folder.path(name).toStdString();
    bool isWritten = true;
    QCOMPARE(errorsOf([&] { isWritten = wav.WriteWav(path); }),
             "Unable to write wave file: " + path + "\n");
    QVERIFY(!isWritten);
}

void TestWavOutput::headerIsPrintedInTwelveLines() {
    QByteArray bytes = wavWithSamples({44100, 2, 16}, {1, 2, 3, 4});
    setUnsigned32(bytes, wavoffset::riffChunkSize, 4000000000U);
    setUnsigned32(bytes, wavoffset::byteRate, 1234567);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    wav.header.audioFormat = 65534;
    wav.header.blockAlign = 99;
    QCOMPARE(outputOf([&] { wav.DisplayHeader(); }),
             std::string("RIFF header                : RIFF\n"
                         "WAVE header                : WAVE\n"
                         "FMT                        : fmt \n"
                         "Data size                  : 4000000000\n"
                         "Sampling Rate              : 44100\n"
                         "Number of bits per sample  : 16\n"
                         "Number of channels         : 2\n"
                         "Number of bytes per second : 1234567\n"
                         "Data length (bytes)        : 8\n"
                         "Audio Format               : 65534\n"
                         "Block align                : 99\n"
                         "Data string                : data\n"));
}

void TestWavOutput::identifiersArePrintedAsFourCharacters() {
    CWav wav;
    wav.header.riffIdentifier = {'R', '\0', '\xFF', ' '};
    const std::string output = outputOf([&] { wav.DisplayHeader(); });
    const std::string zeros(4, '\0');
    QCOMPARE(output.substr(0, 34), "RIFF header                : " + std::string("R\0\xFF \n", 5));
    QCOMPARE(output.substr(34, 34), "WAVE header                : " + zeros + "\n");
    QCOMPARE(output.substr(68, 34), "FMT                        : " + zeros + "\n");
    QCOMPARE(output.substr(output.size() - 34), "Data string                : " + zeros + "\n");
}

void TestWavOutput::samplesArePrintedOneALine() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {16384, -32768, 0, 1, 32767, -12345}))));
    QCOMPARE(outputOf([&] { wav.DisplayData(); }),
             std::string("0.5\n-1\n0\n3.05176e-05\n0.999969\n-0.37674\n"));
    QCOMPARE(outputOf([] { CWav().DisplayData(); }), std::string());
}

void TestWavOutput::printingIgnoresTheFormatOfStandardOutput() {
    struct GroupedDigits : std::numpunct<char> {
        char do_thousands_sep() const override { return '\''; }
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({40000, 1, 16}, {16384, 1}))));
    const std::locale grouped(std::locale::classic(), new GroupedDigits);
    const std::locale oldLocale = std::cout.imbue(grouped);
    const std::locale oldGlobal = std::locale::global(grouped);
    std::cout << std::hex << std::showpos << std::fixed << std::setprecision(1)
              << std::setfill('*');
    const std::string printed = outputOf([&] {
        std::cout << std::setw(20);
        wav.DisplayData();
        wav.DisplayHeader();
    });
    std::cout << std::dec << std::noshowpos << std::defaultfloat << std::setprecision(6)
              << std::setfill(' ') << std::setw(0);
    std::cout.imbue(oldLocale);
    std::locale::global(oldGlobal);
    QCOMPARE(QString::fromStdString(printed).left(16), QString("0.5\n3.05176e-05\n"));
    QVERIFY(printed.find("Sampling Rate              : 40000\n") != std::string::npos);
}
