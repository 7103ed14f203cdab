// WAV files that are refused: messages, their order, and what is left behind.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/DiskFaults.h"
#include "support/EndsByItself.h"

#include <QtTest>

#include <cstring>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace wavoffset = testsupport::wavoffset;
using testsupport::endsByItself;
using testsupport::setUnsigned16;
using testsupport::wavHeader;
using testsupport::wavWithSamples;

namespace {

using Samples = std::vector<double>;

/// Returns a good file with one 16-bit field changed.
QByteArray changed(int offset, quint16 value) {
    QByteArray bytes = wavWithSamples({}, {1, 2, 3});
    setUnsigned16(bytes, offset, value);
    return bytes;
}

QByteArray withFormat(const QByteArray& format) {
    return wavWithSamples({}, {1, 2, 3}).replace(wavoffset::format, 4, format);
}

/// Makes a socket in the file system; returns whether that worked.
bool makeSocket(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<int>(sizeof(address.sun_path)))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isBound =
        ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    ::close(socket);
    return isBound;
}

} // namespace

void TestWavRefusals::messageOfEachBadHeader_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    const QString notWave = "Not a WAV file: ";
    const QString notPcm = "Not a PCM (linear quantitation) WAV file: ";
    const QString badBits = "Not a 8-bit, 16-bit, or 24-bit WAV file: ";
    QTest::newRow("empty") << QByteArray() << "Header size is zero. ";
    QTest::newRow("one byte") << QByteArray("R") << notWave;
    QTest::newRow("format in small letters") << withFormat("wave") << notWave;
    QTest::newRow("format with one wrong letter") << withFormat("WAVF") << notWave;
    QTest::newRow("format with a zero inside") << withFormat(QByteArray("WA\0E", 4)) << notWave;
    QTest::newRow("format of zeros") << withFormat(QByteArray(4, '\0')) << notWave;
    for (const int format : {0, 2, 3, 0x0101, 0xFFFE})
        QTest::addRow("audio format %d", format)
            << changed(wavoffset::audioFormat, static_cast<quint16>(format)) << notPcm;
    for (const int bits : {0, 1, 7, 9, 12, 15, 17, 20, 32, 64, 0x0810, 0xFFFF})
        QTest::addRow("%d bits", bits)
            << changed(wavoffset::bitsPerSample, static_cast<quint16>(bits)) << badBits;
}

void TestWavRefusals::messageOfEachBadHeader() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const WavFolder folder;
    const std::string path = folder.write(bytes, "a file, with blanks.wav");
    CWav wav;
    bool isLoaded = true;
    const std::string errors = errorsOf([&] { isLoaded = wav.LoadWav(path); });
    QVERIFY(!isLoaded);
    QCOMPARE(errors, message.toStdString() + path + "\n");
    QCOMPARE(headerImage(wav), bytes.leftJustified(44, '\0', true));
    QVERIFY(wav.samples.empty());
    QVERIFY(wav.samplePointer == nullptr);
}

void TestWavRefusals::checksHaveTheirOrder() {
    const WavFolder folder;
    CWav wav;
    QByteArray bytes = changed(wavoffset::bitsPerSample, 32);
    setUnsigned16(bytes, wavoffset::audioFormat, 3);
    std::string path = folder.write(bytes);
    QCOMPARE(errorsOf([&] { wav.LoadWav(path); }),
             "Not a PCM (linear quantitation) WAV file: " + path + "\n");
    bytes.replace(wavoffset::format, 4, "AIFF");
    path = folder.write(bytes);
    QCOMPARE(errorsOf([&] { wav.LoadWav(path); }), "Not a WAV file: " + path + "\n");
}

void TestWavRefusals::missingFileLeavesTheObjectAsItWas() {
    const WavFolder folder;
    CWav wav;
    const QByteArray bytes = wavWithSamples({22050, 1, 16}, {16384, 8192});
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    wav.audioFormatWord = 7;
    const double* const firstSample = wav.samplePointer;
    for (const QString& name : {QString("missing.wav"), QString("no folder/missing.wav")}) {
        const std::string path = folder.path(name).toStdString();
        bool isLoaded = true;
        QCOMPARE(errorsOf([&] { isLoaded = wav.LoadWav(path); }),
                 "Unable to open WAV file: " + path + "\n");
        QVERIFY(!isLoaded);
    }
    QCOMPARE(errorsOf([&] { QVERIFY(!wav.LoadWav("")); }),
             std::string("Unable to open WAV file: \n"));
    QCOMPARE(headerImage(wav), bytes.left(44));
    QCOMPARE(wav.audioFormatWord, std::uint16_t{7});
    QCOMPARE(wav.rawData.size(), std::size_t{4});
    QCOMPARE(wav.bytesRead, std::int64_t{4});
    QCOMPARE(wav.numberOfSamples, 2U);
    QVERIFY(wav.samplePointer == firstSample && wav.samples.data() == firstSample);
    QCOMPARE(wav.samples, (Samples{0.5, 0.25}));
}

void TestWavRefusals::unreadableFileCannotBeOpened() {
    const WavFolder folder;
    const std::string path = folder.write(wavWithSamples({}, {1}));
    QCOMPARE(::chmod(path.c_str(), 0), 0);
    // The folder may be entered, or it would be refused in the file's stead.
    QCOMPARE(::chmod(folder.path(".").toLocal8Bit().constData(), 0755), 0);
    CWav wav;
    std::string errors;
    {
        const testsupport::WithoutPrivileges user;
        errors = errorsOf([&] { QVERIFY(!wav.LoadWav(path)); });
    }
    QCOMPARE(errors, "Unable to open WAV file: " + path + "\n");
}

void TestWavRefusals::emptyFileLeavesTheHeader() {
    const WavFolder folder;
    CWav wav;
    const QByteArray bytes = wavWithSamples({22050, 1, 16}, {16384});
    QVERIFY(wav.LoadWav(folder.write(bytes)));
    const std::string path = folder.write({});
    QCOMPARE(errorsOf([&] { QVERIFY(!wav.LoadWav(path)); }), "Header size is zero. " + path + "\n");
    QCOMPARE(headerImage(wav), bytes.left(44));
    QCOMPARE(wav.samples, Samples{0.5});
}

void TestWavRefusals::failedLoadKeepsSamplesAndTheHeaderRead() {
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {16384, 8192}))));
    const QByteArray bytes = changed(wavoffset::bitsPerSample, 32);
    const std::string path = folder.write(bytes);
    errorsOf([&] { QVERIFY(!wav.LoadWav(path)); });
    QCOMPARE(headerImage(wav), bytes.left(44));
    QCOMPARE(wav.samples, (Samples{0.5, 0.25}));
    QCOMPARE(wav.numberOfSamples, 2U);
    QCOMPARE(wav.bytesRead, std::int64_t{4});
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {-16384}))));
    QCOMPARE(wav.samples, Samples{-0.5});
}

void TestWavRefusals::shortHeaderOverwritesOnlyWhatItHolds_data() {
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("message");
    const QByteArray wave = "WAVE";
    QTest::newRow("one byte") << 1 << wave << "";
    QTest::newRow("within a format") << 10 << QByteArray("AVI ") << "Not a WAV file: ";
    QTest::newRow("within the same format") << 10 << wave << "";
    QTest::newRow("within the sampling rate") << 26 << wave << "";
    QTest::newRow("before the data size") << 40 << wave << "";
    QTest::newRow("within the data size") << 43 << wave << "";
}

void TestWavRefusals::shortHeaderOverwritesOnlyWhatItHolds() {
    QFETCH(int, length);
    QFETCH(QByteArray, format);
    QFETCH(QString, message);
    const WavFolder folder;
    CWav wav;
    const QByteArray earlier = wavWithSamples({22050, 2, 16}, QVector<int>(40000, 5));
    QVERIFY(wav.LoadWav(folder.write(earlier)));
    const QByteArray bytes =
        wavHeader({44100, 1, 8}, 0x010203).replace(wavoffset::format, 4, format).left(length);
    const std::string path = folder.write(bytes);
    bool isLoaded = false;
    const std::string errors = errorsOf([&] { isLoaded = wav.LoadWav(path); });
    QCOMPARE(isLoaded, message.isEmpty());
    QCOMPARE(errors, isLoaded ? std::string() : message.toStdString() + path + "\n");
    QCOMPARE(headerImage(wav), bytes + earlier.mid(length, 44 - length));
    // What is then the data size asks for data, and there are none.
    QCOMPARE(wav.samples.size(), std::size_t{isLoaded ? 0U : 40000U});
    QCOMPARE(wav.bytesRead, std::int64_t{isLoaded ? 0 : 80000});
}

void TestWavRefusals::onlyRegularFilesAreOpened_data() {
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"folder", "FIFO", "link to a FIFO", "socket", "/dev/null", "/dev/zero",
                             "/dev/full", "link in a circle"})
        QTest::newRow(kind) << kind;
}

void TestWavRefusals::onlyRegularFilesAreOpened() {
    QFETCH(QString, kind);
    const WavFolder folder;
    const QByteArray path =
        kind.startsWith("/dev/") ? kind.toUtf8() : folder.path("target.wav").toUtf8();
    const QByteArray fifo = folder.path("fifo").toUtf8();
    if (kind == "folder")
        QCOMPARE(::mkdir(path.constData(), 0700), 0);
    else if (kind == "FIFO")
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    else if (kind == "link to a FIFO")
        QVERIFY(::mkfifo(fifo.constData(), 0600) == 0 && ::symlink("fifo", path.constData()) == 0);
    else if (kind == "socket")
        QVERIFY(makeSocket(path));
    else if (kind == "link in a circle")
        QCOMPARE(::symlink("target.wav", path.constData()), 0);

    CWav wav;
    bool isLoaded = true;
    bool isWritten = true;
    const std::string errors = errorsOf([&] {
        QVERIFY(endsByItself([&] { isLoaded = wav.LoadWav(path.toStdString()); }, path));
        QVERIFY(endsByItself([&] { isWritten = wav.WriteWav(path.toStdString()); }, path));
    });
    QVERIFY(!isLoaded);
    QVERIFY(!isWritten);
    QCOMPARE(errors, "Unable to open WAV file: " + path.toStdString() +
                         "\nUnable to write wave file: " + path.toStdString() + "\n");
}

void TestWavRefusals::linksToRegularFilesAreFollowed() {
    const WavFolder folder;
    QVERIFY(!folder.write(wavWithSamples({}, {16384})).empty());
    const std::string link = folder.path("link.wav").toStdString();
    QCOMPARE(::symlink("target.wav", link.c_str()), 0);
    CWav wav;
    QVERIFY(wav.LoadWav(link));
    QCOMPARE(wav.samples, Samples{0.5});
    QVERIFY(wav.WriteWav(link));
    QCOMPARE(testsupport::readBytes(folder.path("target.wav")).size(), 2 * 46);
}

void TestWavRefusals::convertingUnknownSizesSaysSo_data() {
    QTest::addColumn<int>("bits");
    QTest::addColumn<QString>("message");
    QTest::newRow("32 bits") << 32 << "32-bit PCM is not working yet.\n";
    for (const int bits : {0, 1, 12, 33, 64, 65535})
        QTest::addRow("%d bits", bits) << bits << "Not recognizable bits per sample. \n";
}

void TestWavRefusals::convertingUnknownSizesSaysSo() {
    QFETCH(int, bits);
    QFETCH(QString, message);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {1, 2, 3, 4}))));
    QCOMPARE(wav.samples.size(), std::size_t{4});
    wav.header.bitsPerSample = static_cast<std::uint16_t>(bits);
    QCOMPARE(errorsOf([&] { wav.ConvertData(); }), message.toStdString());
    QVERIFY(wav.samples.empty());
    QVERIFY(wav.samplePointer == nullptr);
}

void TestWavRefusals::messagesAreFlushed() {
    const WavFolder folder;
    const std::string path = folder.path("missing.wav").toStdString();
    CWav wav;
    const testsupport::StreamCapture errors(std::cerr);
    std::cerr << std::nounitbuf;
    wav.LoadWav(path);
    const std::string afterLoading = errors.flushedText();
    wav.ConvertData();
    const std::string afterConverting = errors.flushedText();
    std::cerr << std::unitbuf;
    QCOMPARE(afterLoading, "Unable to open WAV file: " + path + "\n");
    QCOMPARE(afterConverting, afterLoading + "Not recognizable bits per sample. \n");
}
