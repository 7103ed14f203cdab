// What the bytes of one sample are worth, and files too long for the caller.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "sound/SampleConversion.h"

#include <QtTest>

#include <limits>

using testsupport::wavWithSamples;

void TestWavConversion::bytesPerSample() {
    QCOMPARE(Unsigned8Bit::byteCount, std::size_t{1});
    QCOMPARE(Signed16Bit::byteCount, std::size_t{2});
    QCOMPARE(Signed24Bit::byteCount, std::size_t{3});
}

void TestWavConversion::sampleOfItsBytes_data() {
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

void TestWavConversion::sampleOfItsBytes() {
    QFETCH(int, bits);
    QFETCH(QByteArray, bytes);
    QFETCH(double, sample);
    const char* first = bytes.constData();
    const double decoded = bits == 8    ? Unsigned8Bit::decode(first)
                           : bits == 16 ? Signed16Bit::decode(first)
                                        : Signed24Bit::decode(first);
    QVERIFY2(decoded == sample, qPrintable(QString::number(decoded, 'g', 17)));
}

void TestWavConversion::neighbouringBytesDoNotCount() {
    const QByteArray bytes = QByteArray::fromHex("0100007f");
    QCOMPARE(Unsigned8Bit::decode(bytes.constData()), -127.0 / 128);
    QCOMPARE(Signed16Bit::decode(bytes.constData()), 1.0 / 32768);
    QCOMPARE(Signed24Bit::decode(bytes.constData()), 1.0 / 8388608);
}

void TestWavConversion::fileOfMoreSamplesThanTheCallerTakesIsNotRead_data() {
    QTest::addColumn<quint16>("channelCount");
    QTest::addColumn<quint64>("maximumSamplesPerChannel");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("mono, as many") << quint16{1} << quint64{6} << true;
    QTest::newRow("mono, one too many") << quint16{1} << quint64{5} << false;
    QTest::newRow("stereo, as many") << quint16{2} << quint64{3} << true;
    QTest::newRow("stereo, one frame too many") << quint16{2} << quint64{2} << false;
    QTest::newRow("no channel counts as one") << quint16{0} << quint64{5} << false;
    QTest::newRow("none at all") << quint16{1} << quint64{0} << false;
}

void TestWavConversion::fileOfMoreSamplesThanTheCallerTakesIsNotRead() {
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
    const CWav moved(std::move(wav));
    QCOMPARE(moved.maximumSamplesPerChannel, std::uint64_t{maximumSamplesPerChannel});
}
