// What a loaded WAV file gives, and the main function of the WAV tests.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/TestMain.h"

#include <QCoreApplication>

#include <limits>
#include <type_traits>
#include <utility>

namespace wavoffset = testsupport::wavoffset;
using testsupport::setUnsigned32;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {

std::string text(const std::array<char, 4>& identifier) {
    return {identifier.data(), identifier.size()};
}

} // namespace

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
    QCOMPARE(headerImage(wav), bytes.left(44));
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

void TestWavLoading::audioFormatWordIsIndependentOfTheHeader() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}))));
    QCOMPARE(wav.GetAudioFormat(), std::uint16_t{0});
    wav.audioFormatWord = 0xFFFE;
    QCOMPARE(wav.GetAudioFormat(), std::uint16_t{0xFFFE});
    const auto* header = reinterpret_cast<const char*>(&wav.header);
    QCOMPARE(reinterpret_cast<const char*>(&wav.audioFormatWord) - header, std::ptrdiff_t{44});
}

void TestWavLoading::samplesAreScaledExactly_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<double>("sample");
    const auto row = [](int bits, const char* hex, double sample) {
        QTest::addRow("%d bits, %s", bits, hex) << bits << QByteArray::fromHex(hex) << sample;
    };
    row(8, "00", -1.0);
    row(8, "7f", -1.0 / 128);
    row(8, "80", 0.0);
    row(8, "ff", 127.0 / 128);
    row(16, "0000", 0.0);
    row(16, "0100", 1.0 / 32768);
    row(16, "ffff", -1.0 / 32768);
    row(16, "ff7f", 32767.0 / 32768);
    row(16, "0080", -1.0);
    row(24, "000000", 0.0);
    row(24, "010000", 1.0 / 8388608);
    row(24, "ffff7f", 8388607.0 / 8388608);
    row(24, "000080", 1.0); // not -1, deliberately
    row(24, "010080", -8388607.0 / 8388608);
    row(24, "ffffff", -1.0 / 8388608);
}

void TestWavLoading::samplesAreScaledExactly() {
    QFETCH(int, bits);
    QFETCH(QByteArray, bytes);
    QFETCH(double, sample);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithData({40000, 1, static_cast<quint16>(bits)}, bytes))));
    QCOMPARE(wav.samples, Samples{sample});
}

void TestWavLoading::everyCodeIsASample_data() {
    const auto row = columns<int, int>("bits", "step");
    row("8 bits", 8, 1);
    row("16 bits", 16, 1);
    row("24 bits, in steps", 24, 97);
}

void TestWavLoading::everyCodeIsASample() {
    QFETCH(int, bits);
    QFETCH(int, step);
    QVector<int> codes;
    for (int code = 0; code < 1 << bits; code += step)
        codes.append(code);
    const QByteArray bytes = wavWithSamples({40000, 1, static_cast<quint16>(bits)}, codes);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QVERIFY(wav.samples == plainSamples(bytes.mid(wavoffset::data), bits));
}

void TestWavLoading::nextLoadReplacesThePrevious() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, QVector<int>(5000, 77)))));
    // There is room for more than the data, and more in the file.
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({8000, 1, 8}, {0, 255, 128}) + "LIST")));
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
    const QByteArray bytes = wavHeader({8000, 2, 24}, 0) + "not to be read";
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    QCOMPARE(wav.samples, (Samples{0.5, 0.25}));
    QVERIFY(wav.samplePointer == wav.samples.data());
    QCOMPARE(wav.rawData.size(), std::size_t{4});
    QCOMPARE(wav.bytesRead, std::int64_t{4});
    QCOMPARE(wav.numberOfSamples, 0U);
    QCOMPARE(wav.header.samplingRate, 8000U);
}

void TestWavLoading::fileWithTooManySamplesIsNotRead_data() {
    const auto row =
        columns<quint16, quint64, bool>("channelCount", "maximumSamplesPerChannel", "isRead");
    row("mono, as many", 1, 6, true);
    row("mono, one too many", 1, 5, false);
    row("stereo, as many", 2, 3, true);
    row("stereo, one frame too many", 2, 2, false);
    row("no channel counts as one", 0, 5, false);
    row("none at all", 1, 0, false);
}

void TestWavLoading::fileWithTooManySamplesIsNotRead() {
    QFETCH(quint16, channelCount);
    QFETCH(quint64, maximumSamplesPerChannel);
    QFETCH(bool, isRead);
    const WavFolder folder;
    CWav wav;
    QCOMPARE(wav.maximumSamplesPerChannel,
             std::uint64_t{std::numeric_limits<std::uint32_t>::max()});
    wav.maximumSamplesPerChannel = maximumSamplesPerChannel;
    const QVector<int> codes{1, 2, 3, 4, 5, 6};
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({40000, channelCount, 16}, codes))));
    QCOMPARE(wav.numberOfSamples, 6U);
    QCOMPARE(wav.bytesRead, std::int64_t{isRead ? 12 : 0});
    QCOMPARE(wav.samples.size(), std::size_t{isRead ? 6U : 0U});
}

void TestWavLoading::movedObjectTakesEverything() {
    const CWav fresh;
    QCOMPARE(headerImage(fresh), QByteArray(44, '\0'));
    QVERIFY(fresh.audioFormatWord == 0 && fresh.bytesRead == 0 && fresh.numberOfSamples == 0);
    QVERIFY(fresh.rawData.empty() && fresh.samples.empty() && fresh.samplePointer == nullptr);

    const WavFolder folder;
    CWav source;
    const std::string path = folder.write(wavWithSamples({22050, 1, 16}, {16384, 8192}));
    QVERIFY(source.LoadWav(path));
    source.audioFormatWord = 5;
    source.maximumSamplesPerChannel = 77;
    const auto everything = stateOf(source);
    CWav constructed(std::move(source));
    QVERIFY(stateOf(constructed) == everything);
    // NOLINTNEXTLINE(bugprone-use-after-move): its state is specified
    QVERIFY(stateOf(source) == stateOf(fresh));

    CWav assigned;
    QVERIFY(assigned.LoadWav(folder.write(wavWithSamples({}, QVector<int>(100, 1)), "other.wav")));
    assigned = std::move(constructed);
    QVERIFY(stateOf(assigned) == everything);
    QVERIFY(stateOf(constructed) == stateOf(fresh)); // NOLINT(bugprone-use-after-move)

    CWav& same = assigned;
    assigned = std::move(same);
    QVERIFY(stateOf(assigned) == everything);
    QVERIFY(source.LoadWav(path));
    QCOMPARE(source.samples, (Samples{0.5, 0.25}));
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return testsupport::runAll<TestWavUnusual, TestWavLoading, TestWavRefusals, TestWavOutput,
                               TestWavRobustness, TestWavChanging, TestWavMemory, TestWavPrograms>(
        argc, argv);
}
