// Malformed and unusual files, each with its message, result and samples, in little memory.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/AddressSpaceLimit.h"

#include <QTest>

#include <memory>

namespace wavoffset = testsupport::wavoffset;
using testsupport::AddressSpaceLimit;
using testsupport::wavWithData;
using testsupport::wavWithSamples;

namespace {

const char* const noMessage = "";
const char* const headerEmpty = "Header size is zero. ";
const char* const notWave = "Not a WAV file: ";
const char* const notPcm = "Not a PCM (linear quantitation) WAV file: ";
const char* const notItsBits = "Not a 8-bit, 16-bit, or 24-bit WAV file: ";

const QVector<int> codes{1, -2, 16384, -32768};

QByteArray sound() {
    return wavWithSamples({40000, 1, 16}, codes);
}

QByteArray with16(int offset, int value) {
    return testsupport::with16(sound(), offset, static_cast<quint16>(value));
}

QByteArray with32(int offset, quint32 value) {
    return testsupport::with32(sound(), offset, value);
}

QByteArray withText(int offset, const char* text) {
    return sound().replace(offset, 4, QByteArray(text, 4));
}

void addRow(const QByteArray& name, const QByteArray& bytes, const char* message, int samples = 0) {
    QTest::newRow(name) << bytes << QByteArray(message) << samples;
}

/// Files that end early, at every border between fields and between their bytes that matters.
void addTruncatedFiles() {
    const auto endingAt = [](std::initializer_list<int> lengths, const char* message) {
        for (const int length : lengths)
            addRow("ends after " + QByteArray::number(length), sound().left(length), message);
    };
    endingAt({0}, headerEmpty);
    endingAt({1, 2, 3, 4, 7, 8, 9, 11}, notWave);
    endingAt({12, 13, 16, 19, 20}, notPcm);
    endingAt({21, 22, 24, 28, 32, 34}, notItsBits);
    endingAt({35, 36, 39, 40}, noMessage); // the data size reads 0
    endingAt({41, 42, 43, 44, 45, 46, 51}, noMessage);
}

void addIdentifiers() {
    for (const char* text : {"RIFX", "riff", "\0\0\0\0"})
        addRow(QByteArray("RIFF reads ") + text, withText(wavoffset::riffIdentifier, text),
               noMessage, 4);
    for (const char* text : {"wave", "WAV ", "AVI ", "WAVX", "\0WAV", "WA\0E", "\0\0\0\0"})
        addRow(QByteArray("WAVE reads ") + text, withText(wavoffset::format, text), notWave);
    for (const char* text : {"FMT ", "JUNK"})
        addRow(QByteArray("fmt reads ") + text, withText(wavoffset::formatChunkIdentifier, text),
               noMessage, 4);
    for (const char* text : {"LIST", "fact", "\0\0\0\0"})
        addRow(QByteArray("data reads ") + text, withText(wavoffset::dataChunkIdentifier, text),
               noMessage, 4);
}

void addNumbers() {
    for (const quint32 size : {0U, 18U, 40U, 0xFFFFFFFFU})
        addRow("format chunk of " + QByteArray::number(size),
               with32(wavoffset::formatChunkSize, size), noMessage, 4);
    for (const quint32 size : {0U, 0xFFFFFFFFU})
        addRow("RIFF chunk of " + QByteArray::number(size), with32(wavoffset::riffChunkSize, size),
               noMessage, 4);
    for (const int audioFormat : {0, 2, 3, 6, 7, 0x0100, 0x0101, 0xFFFE})
        addRow("audio format " + QByteArray::number(audioFormat),
               with16(wavoffset::audioFormat, audioFormat), notPcm);
    for (const int bits : {0, 1, 4, 7, 9, 12, 15, 17, 20, 25, 32, 64, 0x0810, 0xFFFF})
        addRow(QByteArray::number(bits) + " bits", with16(wavoffset::bitsPerSample, bits),
               notItsBits);
    for (const int channels : {0, 3, 0xFFFF})
        addRow(QByteArray::number(channels) + " channels",
               with16(wavoffset::channelCount, channels), noMessage, 4);
    for (const quint32 rate : {0U, 1U, 0xFFFFFFFFU})
        addRow("rate of " + QByteArray::number(rate), with32(wavoffset::samplingRate, rate),
               noMessage, 4);
    QByteArray wrongThrice =
        testsupport::with16(with16(wavoffset::audioFormat, 3), wavoffset::bitsPerSample, 32);
    addRow("32 bits, floating point", wrongThrice, notPcm);
    addRow("AIFF, 32 bits, floating point", wrongThrice.replace(wavoffset::format, 4, "AIFF"),
           notWave);
    addRow("no byte rate", with32(wavoffset::byteRate, 0), noMessage, 4);
    addRow("no block align", with16(wavoffset::blockAlign, 0), noMessage, 4);
}

void addDataSizes() {
    addRow("as it should be", sound(), noMessage, 4);
    addRow("bytes after the data", sound() + QByteArray(100, 'x'), noMessage, 4);
    addRow("data size 0", with32(wavoffset::dataSize, 0), noMessage);
    addRow("data size 1", with32(wavoffset::dataSize, 1), noMessage);
    addRow("data size 6 of 8", with32(wavoffset::dataSize, 6), noMessage, 3);
    addRow("data size 7 of 8", with32(wavoffset::dataSize, 7), noMessage, 3);
    for (const quint32 size : {9U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU})
        addRow("data size " + QByteArray::number(size), with32(wavoffset::dataSize, size),
               noMessage);
    const auto triples = [](int bytes) {
        return wavWithData({40000, 1, 24}, QByteArray(bytes, 0));
    };
    for (const int bytes : {1, 2, 3, 4, 5, 6, 8, 9})
        addRow("24 bits, bytes of data: " + QByteArray::number(bytes), triples(bytes), noMessage,
               bytes / 3);
}

void addOtherFileTypes() {
    addRow("zeros", QByteArray(1000, '\0'), notWave);
    addRow("ones", QByteArray(1000, '\xff'), notWave);
    addRow("a text", QByteArray("subject\tfrequency\r\n").repeated(50), notWave);
    addRow("WAVE and nothing else", QByteArray(8, ' ') + "WAVE" + QByteArray(100, '\0'), notPcm);
    addRow("a FLAC stream", "fLaC" + QByteArray(200, '\x22'), notWave);
    addRow("two files in one", sound() + sound(), noMessage, 4);
}

} // namespace

void TestWavUnusual::messageResultAndSamples_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("sampleCount");
    addTruncatedFiles();
    addIdentifiers();
    addNumbers();
    addDataSizes();
    addOtherFileTypes();
}

void TestWavUnusual::messageResultAndSamples() {
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, message);
    QFETCH(int, sampleCount);
    const WavFolder folder;
    const std::string path = folder.write(bytes, "a file, with blanks.wav");
    CWav wav;
    const testsupport::PlainReading expected(viewOf(bytes), wav.maximumSamplesPerChannel);
    bool isLoaded = false;
    std::string errors;
    {
        // Far less than some of the files declare.
        constexpr int mebibytes = 16;
        std::unique_ptr<AddressSpaceLimit> limit;
        if (AddressSpaceLimit::isPossible())
            limit = std::make_unique<AddressSpaceLimit>(mebibytes);
        errors = errorsOf([&] { isLoaded = wav.LoadWav(path); });
    }
    const bool isRefused = !message.isEmpty();
    QCOMPARE(errors, isRefused ? message.toStdString() + path + "\n" : std::string());
    QCOMPARE(isLoaded, !isRefused);
    QCOMPARE(headerImage(wav), QByteArray::fromStdString(expected.header));
    QCOMPARE(wav.numberOfSamples, expected.numberOfSamples);
    QCOMPARE(rawBytes(wav), QByteArray::fromStdString(expected.data));
    QCOMPARE(wav.bytesRead, static_cast<std::int64_t>(expected.data.size()));
    QCOMPARE(wav.samples.size(), static_cast<std::size_t>(sampleCount));
    QCOMPARE(wav.samples, expected.samples);
    QCOMPARE(wav.samplePointer, wav.samples.empty() ? nullptr : wav.samples.data());
}
