// WAV files that are refused: the object after them, and kinds of files.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/DiskFaults.h"
#include "support/EndsByItself.h"

#include <QTest>

#include <cstring>
#include <iostream>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace wavoffset = testsupport::wavoffset;
using testsupport::endsByItself;
using testsupport::wavHeader;
using testsupport::wavWithSamples;

namespace {

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

void TestWavRefusals::missingFileLeavesTheObjectAsItWas_data() {
    const auto row = columns<QString>("name");
    row("missing file", "missing.wav");
    row("missing folder", "no folder/missing.wav");
    row("no name", "");
}

void TestWavRefusals::missingFileLeavesTheObjectAsItWas() {
    QFETCH(QString, name);
    const WavFolder folder;
    CWav wav;
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({22050, 1, 16}, {16384, 8192}))));
    wav.audioFormatWord = 7;
    const auto before = stateOf(wav);
    const std::string path = name.isEmpty() ? std::string() : folder.path(name).toStdString();
    QCOMPARE(errorsOf([&] { QVERIFY(!wav.LoadWav(path)); }),
             "Unable to open WAV file: " + path + "\n");
    QVERIFY(stateOf(wav) == before);
}

void TestWavRefusals::unreadableFileCannotBeOpened() {
    const WavFolder folder;
    const std::string path = folder.write(wavWithSamples({}, {1}));
    QCOMPARE(::chmod(path.c_str(), 0), 0);
    // The folder is accessible, so that the file itself is refused.
    QCOMPARE(::chmod(folder.path(".").toLocal8Bit().constData(), 0755), 0);
    CWav wav;
    std::string errors;
    {
        const testsupport::WithoutPrivileges user;
        errors = errorsOf([&] { QVERIFY(!wav.LoadWav(path)); });
    }
    QCOMPARE(errors, "Unable to open WAV file: " + path + "\n");
}

void TestWavRefusals::fileOverwritesOnlyTheHeaderThatItHolds_data() {
    const auto row = columns<QByteArray, QString>("bytes", "message");
    const QByteArray whole = wavHeader({44100, 1, 8}, 0x010203);
    const QString notWave = "Not a WAV file: ";
    row("nothing", "", "Header size is zero. ");
    row("one byte", whole.left(1), "");
    row("within a format", QByteArray(whole).replace(wavoffset::format, 4, "AVI ").left(10),
        notWave);
    row("within the same format", whole.left(10), "");
    row("within the sampling rate", whole.left(26), "");
    row("before the data size", whole.left(40), "");
    row("within the data size", whole.left(43), "");
    row("all of it, and data", wavWithSamples({44100, 1, 32}, {1, 2}),
        "Not a 8-bit, 16-bit, or 24-bit WAV file: ");
}

void TestWavRefusals::fileOverwritesOnlyTheHeaderThatItHolds() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const WavFolder folder;
    CWav wav;
    const QByteArray earlier = wavWithSamples({22050, 2, 16}, QVector<int>(40000, 5));
    QVERIFY(wav.LoadWav(folder.write(earlier)));
    auto expected = stateOf(wav);
    const std::string path = folder.write(bytes);
    bool isLoaded = false;
    const std::string errors = errorsOf([&] { isLoaded = wav.LoadWav(path); });
    QCOMPARE(isLoaded, message.isEmpty());
    QCOMPARE(errors, isLoaded ? std::string() : message.toStdString() + path + "\n");
    const QByteArray header = (bytes + earlier.mid(bytes.size())).left(44);
    QCOMPARE(headerImage(wav), header);
    if (isLoaded) {
        // The data size that results declares data that do not exist.
        QVERIFY(wav.samples.empty());
        QCOMPARE(wav.bytesRead, std::int64_t{0});
    } else {
        std::get<0>(expected) = header;
        QVERIFY(stateOf(wav) == expected);
    }
    QVERIFY(wav.LoadWav(folder.write(wavWithSamples({}, {-16384}))));
    QCOMPARE(wav.samples, Samples{-0.5});
}

void TestWavRefusals::onlyRegularFilesAreOpened_data() {
    const auto row = columns<QString>("kind");
    for (const char* kind : {"folder", "FIFO", "link to a FIFO", "socket", "/dev/null", "/dev/zero",
                             "/dev/full", "link in a circle"})
        row(kind, kind);
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

void TestWavRefusals::convertingUnknownSizesIsReported_data() {
    const auto row = columns<int, QString>("bits", "message");
    row("32 bits", 32, "32-bit PCM is not working yet.\n");
    for (const int bits : {0, 1, 12, 33, 64, 65535})
        row(QByteArray::number(bits) + " bits", bits, "Not recognizable bits per sample. \n");
}

void TestWavRefusals::convertingUnknownSizesIsReported() {
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
