// The memory that loading a WAV file takes, and loading without enough of it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/Allocations.h"

#include <QTest>

using testsupport::allocationsOf;
using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {
constexpr std::size_t mebibyte = std::size_t{1} << 20U;
} // namespace

void TestWavMemory::memoryFollowsTheFileSizeNotTheDeclaredSize_data() {
    const auto row = columns<int, quint32>("held", "limitMebibytes");
    row("empty data", 0, 1);
    row("small file", 1000, 1);
    row("file of five pieces", 5 * 1048576, 10);
}

void TestWavMemory::memoryFollowsTheFileSizeNotTheDeclaredSize() {
    QFETCH(int, held);
    QFETCH(quint32, limitMebibytes);
    const WavFolder folder;
    for (const quint16 bits : {quint16{8}, quint16{16}, quint16{24}}) {
        const std::string path =
            folder.write(wavHeader({40000, 1, bits}, 0xFFFFFFFF) + QByteArray(held, 'x'));
        CWav wav;
        const std::size_t largest = allocationsOf([&] { QVERIFY(wav.LoadWav(path)); }).largest;
        QVERIFY2(largest <= limitMebibytes * mebibyte, qPrintable(QString::number(largest)));
        QCOMPARE(wav.rawData.size(), static_cast<std::size_t>(held));
        QCOMPARE(wav.samples.capacity(), std::size_t{0});
    }
}

void TestWavMemory::lackOfMemoryWhileReadingIsAShortRead() {
    const WavFolder folder;
    const std::string path = folder.write(wavWithData({40000, 1, 8}, QByteArray(3000000, 'x')));
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}), "other.wav")));
    const auto loading = [&] { QVERIFY(wav.LoadWav(path)); };
    QCOMPARE(errorsOf([&] { allocationsOf(loading, 2 * mebibyte); }), std::string());
    QVERIFY(wav.bytesRead < 3000000);
    QCOMPARE(wav.rawData.size(), static_cast<std::size_t>(wav.bytesRead));
    QCOMPARE(rawBytes(wav), QByteArray(rawBytes(wav).size(), 'x'));
    QCOMPARE(wav.numberOfSamples, 3000000U);
    QVERIFY(wav.samples.empty());
    QVERIFY(wav.samplePointer == nullptr);
    QVERIFY(wav.LoadWav(path));
    QCOMPARE(wav.samples.size(), std::size_t{3000000});
}

void TestWavMemory::lackOfMemoryWhileConvertingLeavesNoSamples() {
    const WavFolder folder;
    for (const quint16 bits : {quint16{8}, quint16{16}, quint16{24}}) {
        const std::string path =
            folder.write(wavWithData({40000, 1, bits}, QByteArray(3000000, 'x')));
        CWav wav;
        QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2}), "other.wav")));
        const auto loading = [&] { QVERIFY(wav.LoadWav(path)); };
        QCOMPARE(errorsOf([&] { allocationsOf(loading, 5 * mebibyte); }), std::string());
        QCOMPARE(wav.bytesRead, std::int64_t{3000000});
        QVERIFY(wav.samples.empty());
        QVERIFY(wav.samplePointer == nullptr);
        wav.ConvertData();
        QCOMPARE(wav.samples.size(), std::size_t{3000000U * 8U / bits});
        QVERIFY(wav.samplePointer == wav.samples.data());
    }
}
