// WAV files with wrong sizes, and headers changed by a caller.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include <QTest>

#include <filesystem>
#include <iterator>

using testsupport::wavHeader;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

void TestWavRobustness::shortDataLoadWithoutSamples_data() {
    const auto row = columns<int, quint32, int>("bits", "declared", "held");
    for (const int bits : {8, 16, 24}) {
        const QByteArray name = QByteArray::number(bits) + " bits, ";
        row(name + "none", bits, 6, 0);
        row(name + "one missing", bits, 6, 5);
        row(name + "a piece missing", bits, 3145728, 2097152);
        row(name + "4 GiB", bits, 0xFFFFFFFF, 600);
    }
}

void TestWavRobustness::shortDataLoadWithoutSamples() {
    QFETCH(int, bits);
    QFETCH(quint32, declared);
    QFETCH(int, held);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, QVector<int>(1000, 3)))));
    const QByteArray data = unevenBytes(held);
    const std::string path =
        folder.write(wavHeader({40000, 1, static_cast<quint16>(bits)}, declared) + data);
    QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path)); }), std::string());
    QVERIFY(rawBytes(wav) == data);
    QCOMPARE(wav.bytesRead, static_cast<std::int64_t>(held));
    QCOMPARE(wav.numberOfSamples, declared / static_cast<quint32>(bits / 8));
    QVERIFY(wav.samples.empty());
    QVERIFY(wav.samplePointer == nullptr);
    QCOMPARE(errorsOf([&] { wav.ConvertData(); }), std::string());
    QVERIFY(wav.samples.empty());
}

void TestWavRobustness::sizesNearTheBlockSizeAreReadWhole_data() {
    const auto row = columns<int, int>("bits", "byteCount");
    for (const int bits : {8, 16, 24})
        for (const int byteCount : {1023, 1024, 1025, 2048, 3072, 3075, 1048575, 1048576, 1048577,
                                    2097152, 3145728, 3145734})
            row(QString::asprintf("%d bits, %d bytes", bits, byteCount).toUtf8(), bits, byteCount);
}

void TestWavRobustness::sizesNearTheBlockSizeAreReadWhole() {
    QFETCH(int, bits);
    QFETCH(int, byteCount);
    const WavFolder folder;
    const QByteArray data = unevenBytes(byteCount);
    CWav wav;
    QVERIFY(wav.LoadWav(
        folder.write(wavWithData({40000, 1, static_cast<quint16>(bits)}, data) + "more")));
    QVERIFY(rawBytes(wav) == data);
    QCOMPARE(wav.bytesRead, static_cast<std::int64_t>(byteCount));
    QVERIFY(wav.samples == plainSamples(data, bits));
}

void TestWavRobustness::changedHeaderConvertsOnlyHeldBytes_data() {
    const auto row = columns<int, quint32, qint64, quint32, int>("bits", "dataSize", "bytesRead",
                                                                 "numberOfSamples", "sampleCount");
    constexpr quint32 maximum = 0xFFFFFFFF;
    // Six bytes are held, read as three samples of 16 bits.
    row("unchanged", 16, 6, 6, 3, 3);
    row("more samples than held", 16, 6, 6, maximum, 3);
    row("more 8-bit samples than held", 8, 6, 6, maximum, 6);
    row("fewer samples", 16, 6, 6, 2, 2);
    row("no samples", 16, 6, 6, 0, 0);
    row("no 8-bit samples", 8, 6, 6, 0, 0);
    row("24 bits go by the data size", 24, 6, 6, 0, 2);
    row("larger data size", 16, 8, 6, 3, 0);
    row("smaller data size", 16, 4, 6, 3, 0);
    row("data size 0", 16, 0, 0, 3, 0);
    row("data size 0 at 24 bits", 24, 0, 0, 3, 0);
    row("negative count of bytes", 16, maximum, -1, 3, 0);
    for (const int bits : {8, 16, 24})
        row("all sizes huge at " + QByteArray::number(bits) + " bits", bits, maximum, maximum,
            maximum, 48 / bits);
    row("all sizes smaller", 16, 4, 4, 3, 2);
    row("24 bits, not whole", 24, 5, 5, 3, 1);
}

void TestWavRobustness::changedHeaderConvertsOnlyHeldBytes() {
    QFETCH(int, bits);
    QFETCH(quint32, dataSize);
    QFETCH(qint64, bytesRead);
    QFETCH(quint32, numberOfSamples);
    QFETCH(int, sampleCount);
    const WavFolder folder;
    const QByteArray data = "uvwxyz";
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithData({}, data))));
    wav.header.bitsPerSample = static_cast<std::uint16_t>(bits);
    wav.header.dataSize = dataSize;
    wav.bytesRead = bytesRead;
    wav.numberOfSamples = numberOfSamples;
    QCOMPARE(errorsOf([&] { wav.ConvertData(); }), std::string());
    QCOMPARE(wav.samples, plainSamples(data.left(sampleCount * bits / 8), bits));
    QVERIFY(wav.samples.capacity() <= std::size_t{6});
    QCOMPARE(wav.samplePointer, std::as_const(wav.samples).empty() ? nullptr : wav.samples.data());
}

void TestWavRobustness::noDescriptorStaysOpen() {
    const std::filesystem::path descriptors("/proc/self/fd");
    if (!std::filesystem::exists(descriptors))
        QSKIP("this system does not list open files");
    const auto openFiles = [&] {
        return std::distance(std::filesystem::directory_iterator(descriptors),
                             std::filesystem::directory_iterator());
    };
    const WavFolder folder;
    const std::string good = folder.write(wavWithSamples({}, {1, 2, 3}));
    const auto before = openFiles();
    CWav wav;
    QVERIFY(wav.LoadWav(good));
    QVERIFY(wav.WriteWav(folder.path("copy.wav").toStdString()));
    errorsOf([&] {
        QVERIFY(!wav.LoadWav(folder.path(".").toStdString()));
        QVERIFY(!wav.LoadWav("/dev/null"));
        QVERIFY(!wav.WriteWav("/dev/null"));
    });
    QCOMPARE(openFiles(), before);
}
