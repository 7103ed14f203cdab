// What a loaded WAV file gives, and the main function of the WAV tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/TestMain.h"

#include <QCoreApplication>

#include <cstring>
#include <numeric>
#include <type_traits>
#include <vector>

namespace wavoffset = testsupport::wavoffset;
using testsupport::setUnsigned32;
using testsupport::WavFormat;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {

using Samples = std::vector<double>;

std::string text(const std::array<char, 4>& identifier) {
    return {identifier.data(), identifier.size()};
}

} // namespace

void TestWavLoading::freshObjectIsZeroNullAndEmpty() {
    const CWav wav;
    const WavHeader zeros{};
    QCOMPARE(std::memcmp(&wav.header, &zeros, sizeof(zeros)), 0);
    QCOMPARE(wav.audioFormatWord, std::uint16_t{0});
    QVERIFY(wav.rawData.empty());
    QCOMPARE(wav.bytesRead, std::int64_t{0});
    QCOMPARE(wav.numberOfSamples, 0U);
    QVERIFY(wav.samplePointer == nullptr);
    QVERIFY(wav.samples.empty());
}

void TestWavLoading::operationsAndMembersHaveTheirTypes() {
    QVERIFY((std::is_same_v<decltype(&CWav::LoadWav), bool (CWav::*)(std::string)>));
    QVERIFY((std::is_same_v<decltype(&CWav::ConvertData), void (CWav::*)()>));
    QVERIFY((std::is_same_v<decltype(&CWav::WriteWav), bool (CWav::*)(std::string) const>));
    QVERIFY((std::is_same_v<decltype(&CWav::GetHeaderSize), int (CWav::*)() const>));
    QVERIFY((std::is_same_v<decltype(&CWav::GetAudioFormat), std::uint16_t (CWav::*)() const>));
    QVERIFY((std::is_same_v<decltype(&CWav::DisplayHeader), void (CWav::*)() const>));
    QVERIFY((std::is_same_v<decltype(&CWav::DisplayData), void (CWav::*)() const>));
    QVERIFY((std::is_same_v<decltype(CWav::samplePointer), double*>));
    QVERIFY(!std::is_copy_constructible_v<CWav> && !std::is_copy_assignable_v<CWav>);
    QVERIFY(std::is_nothrow_move_constructible_v<CWav>);
    QVERIFY(std::is_nothrow_move_assignable_v<CWav>);
}

void TestWavLoading::headerIsKeptAsInTheFile() {
    QByteArray bytes = wavWithSamples({44100, 2, 16}, {1, 2, 3, 4, 5, 6});
    setUnsigned32(bytes, wavoffset::riffChunkSize, 0x01020304);
    setUnsigned32(bytes, wavoffset::formatChunkSize, 0x11121314);
    setUnsigned32(bytes, wavoffset::byteRate, 0x21222324);
    testsupport::setUnsigned16(bytes, wavoffset::blockAlign, 0x3132);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(std::memcmp(&wav.header, bytes.constData(), sizeof(wav.header)), 0);
    QCOMPARE(text(wav.header.riffIdentifier), std::string("RIFF"));
    QCOMPARE(wav.header.riffChunkSize, 0x01020304U);
    QCOMPARE(text(wav.header.format), std::string("WAVE"));
    QCOMPARE(text(wav.header.formatChunkIdentifier), std::string("fmt "));
    QCOMPARE(wav.header.formatChunkSize, 0x11121314U);
    QCOMPARE(wav.header.audioFormat, std::uint16_t{1});
    QCOMPARE(wav.header.numberOfChannels, std::uint16_t{2});
    QCOMPARE(wav.header.samplingRate, 44100U);
    QCOMPARE(wav.header.byteRate, 0x21222324U);
    QCOMPARE(wav.header.blockAlign, std::uint16_t{0x3132});
    QCOMPARE(wav.header.bitsPerSample, std::uint16_t{16});
    QCOMPARE(text(wav.header.dataChunkIdentifier), std::string("data"));
    QCOMPARE(wav.header.dataSize, 12U);
    QCOMPARE(wav.GetHeaderSize(), 44);
}

void TestWavLoading::wordBehindTheHeaderIsNotTheAudioFormat() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}))));
    QCOMPARE(wav.GetAudioFormat(), std::uint16_t{0});
    wav.audioFormatWord = 0xFFFE;
    QCOMPARE(wav.GetAudioFormat(), std::uint16_t{0xFFFE});
    const auto* header = reinterpret_cast<const char*>(&wav.header);
    QCOMPARE(reinterpret_cast<const char*>(&wav.audioFormatWord) - header, std::ptrdiff_t{44});
}

void TestWavLoading::twentyThousandSamplesOf16Bits() {
    QVector<int> codes(20000, 0);
    codes.front() = 0x7FFF;
    codes.back() = -0x8000;
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({40000, 1, 16}, codes))));
    QCOMPARE(wav.header.dataSize, 40000U);
    QCOMPARE(wav.bytesRead, std::int64_t{40000});
    QCOMPARE(wav.rawData.size(), std::size_t{40000});
    QCOMPARE(wav.numberOfSamples, 20000U);
    QCOMPARE(wav.samples.size(), std::size_t{20000});
    QVERIFY(wav.samplePointer == wav.samples.data());
    QVERIFY(wav.samplePointer[0] == 0.999969482421875);
    QVERIFY(wav.samplePointer[19999] == -1.0);
}

void TestWavLoading::samplesAreScaledExactly_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("code");
    QTest::addColumn<double>("sample");
    QTest::newRow("8 bits, least") << 8 << 0 << -1.0;
    QTest::newRow("8 bits, middle") << 8 << 128 << 0.0;
    QTest::newRow("8 bits, most") << 8 << 255 << 0.9921875;
    QTest::newRow("16 bits, least") << 16 << -0x8000 << -1.0;
    QTest::newRow("16 bits, -1") << 16 << -1 << -3.0517578125e-5;
    QTest::newRow("16 bits, most") << 16 << 0x7FFF << 0.999969482421875;
    QTest::newRow("24 bits, most") << 24 << 0x7FFFFF << 8388607.0 / 8388608.0;
    QTest::newRow("24 bits, -1") << 24 << 0xFFFFFF << -1.1920928955078125e-7;
    QTest::newRow("24 bits, the code that keeps its sign") << 24 << 0x800000 << 1.0;
    QTest::newRow("24 bits, the one above it") << 24 << 0x800001 << -8388607.0 / 8388608.0;
    QTest::newRow("24 bits, 0") << 24 << 0 << 0.0;
}

void TestWavLoading::samplesAreScaledExactly() {
    QFETCH(int, bits);
    QFETCH(int, code);
    QFETCH(double, sample);
    const WavFolder folder;
    CWav wav;
    const QByteArray bytes = wavWithSamples({40000, 1, static_cast<quint16>(bits)}, {code});
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(wav.numberOfSamples, 1U);
    QCOMPARE(wav.samples, Samples{sample});
}

void TestWavLoading::everyCodeOf8And16Bits() {
    const WavFolder folder;
    for (const quint16 bits : {quint16{8}, quint16{16}}) {
        QVector<int> codes(1 << bits);
        std::iota(codes.begin(), codes.end(), 0);
        CWav wav;
        QVERIFY(wav.LoadWav(folder.write(wavWithSamples({40000, 1, bits}, codes))));
        QCOMPARE(wav.samples.size(), static_cast<std::size_t>(codes.size()));
        const int half = codes.size() / 2;
        for (int i = 0; i < codes.size(); ++i) {
            const int signedCode = bits == 8 || i < half ? i : i - codes.size();
            const double expected = static_cast<double>(bits == 8 ? i - half : signedCode) / half;
            QVERIFY2(wav.samples[static_cast<std::size_t>(i)] == expected,
                     qPrintable(QString::number(i)));
        }
    }
}

void TestWavLoading::every24BitCodeOfACoarseSweep() {
    QVector<int> codes;
    for (int code = 0; code < 0x1000000; code += 97)
        codes.append(code);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({40000, 1, 24}, codes))));
    QCOMPARE(wav.samples.size(), static_cast<std::size_t>(codes.size()));
    for (int i = 0; i < codes.size(); ++i) {
        const int signedCode = codes[i] > 0x800000 ? codes[i] - 0x1000000 : codes[i];
        QVERIFY2(wav.samples[static_cast<std::size_t>(i)] == signedCode / 8388608.0,
                 qPrintable(QString::number(codes[i])));
    }
}

void TestWavLoading::channelsStayInterleaved() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(
        wav.LoadWav(folder.write(wavWithSamples({40000, 2, 16}, {16384, -16384, 8192, -8192}))));
    QCOMPARE(wav.numberOfSamples, 4U);
    QCOMPARE(wav.samples, (Samples{0.5, -0.5, 0.25, -0.25}));
}

void TestWavLoading::dataSizeOfOddBytesGivesWholeSamples_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("byteCount");
    QTest::addColumn<int>("sampleCount");
    QTest::newRow("16 bits, 1 byte") << 16 << 1 << 0;
    QTest::newRow("16 bits, 3 bytes") << 16 << 3 << 1;
    QTest::newRow("24 bits, 1 byte") << 24 << 1 << 0;
    QTest::newRow("24 bits, 2 bytes") << 24 << 2 << 0;
    QTest::newRow("24 bits, 4 bytes") << 24 << 4 << 1;
    QTest::newRow("24 bits, 8 bytes") << 24 << 8 << 2;
    QTest::newRow("24 bits, 9 bytes") << 24 << 9 << 3;
}

void TestWavLoading::dataSizeOfOddBytesGivesWholeSamples() {
    QFETCH(int, bits);
    QFETCH(int, byteCount);
    QFETCH(int, sampleCount);
    const WavFolder folder;
    CWav wav;
    const WavFormat format{40000, 1, static_cast<quint16>(bits)};
    const std::string path = folder.write(wavWithData(format, QByteArray(byteCount, '\0')));
    QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path)); }), std::string());
    QCOMPARE(wav.bytesRead, static_cast<std::int64_t>(byteCount));
    QCOMPARE(wav.numberOfSamples, static_cast<std::uint32_t>(sampleCount));
    QCOMPARE(wav.samples, Samples(static_cast<std::size_t>(sampleCount), 0.0));
    QCOMPARE(wav.samplePointer == nullptr, sampleCount == 0);
}

void TestWavLoading::bytesBehindTheDataAreLeftAlone() {
    const WavFolder folder;
    CWav wav;
    const QByteArray bytes = wavWithSamples({}, {16384, -32768}) + "LIST and more";
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(wav.samples, (Samples{0.5, -1.0}));
    QCOMPARE(wav.rawData.size(), std::size_t{4});
    // Also where an earlier file has left room for more.
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, QVector<int>(5000, 77)))));
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(wav.samples, (Samples{0.5, -1.0}));
    QCOMPARE(wav.rawData.size(), std::size_t{4});
}

void TestWavLoading::nextLoadReplacesThePrevious() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, QVector<int>(5000, 77)))));
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({8000, 1, 8}, {0, 255, 128}))));
    QCOMPARE(wav.samples, (Samples{-1.0, 0.9921875, 0.0}));
    QCOMPARE(wav.numberOfSamples, 3U);
    QCOMPARE(wav.bytesRead, std::int64_t{3});
    QCOMPARE(wav.rawData.size(), std::size_t{3});
    QVERIFY(wav.samplePointer == wav.samples.data());
    QCOMPARE(wav.header.samplingRate, 8000U);
}

void TestWavLoading::dataSizeZeroKeepsPreviousSamples() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {16384, 8192}))));
    QByteArray bytes = wavHeader({8000, 2, 24}, 0);
    bytes += "not to be read";
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(wav.samples, (Samples{0.5, 0.25}));
    QVERIFY(wav.samplePointer == wav.samples.data());
    QCOMPARE(wav.rawData.size(), std::size_t{4});
    QCOMPARE(wav.bytesRead, std::int64_t{4});
    QCOMPARE(wav.numberOfSamples, 0U);
    QCOMPARE(wav.header.samplingRate, 8000U);
}

void TestWavLoading::uncheckedIdentifiersMayBeAnything() {
    QByteArray bytes = wavWithSamples({}, {16384});
    bytes.replace(wavoffset::riffIdentifier, 4, QByteArray("\0FFX", 4));
    bytes.replace(wavoffset::formatChunkIdentifier, 4, "FMT?");
    bytes.replace(wavoffset::dataChunkIdentifier, 4, "DATA");
    const WavFolder folder;
    CWav wav;
    const std::string path = folder.write(bytes);
    QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path)); }), std::string());
    QCOMPARE(wav.samples, Samples{0.5});
    QCOMPARE(text(wav.header.riffIdentifier), std::string("\0FFX", 4));
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestWavConversion, TestWavUnusual, TestWavLoading, TestWavRefusals,
                               TestWavOutput, TestWavRobustness, TestWavChanging, TestWavMemory,
                               TestWavPrograms>(argc, argv);
}
