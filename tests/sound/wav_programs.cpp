// WAV files made by sox and ffmpeg, and libsndfile as another reader.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include "support/ProgramRun.h"

#include <QTest>

#include <cmath>

#include <sndfile.h>

using testsupport::readBytes;

namespace {

bool run(const QString& commandLine, const WavFolder& folder) {
    return testsupport::runShell(commandLine, folder.path(""));
}

/// Returns a file's samples as libsndfile reads them; none when it cannot read the file.
Samples samplesByLibsndfile(const QString& path) {
    SF_INFO info{};
    SNDFILE* const file = sf_open(path.toUtf8().constData(), SFM_READ, &info);
    if (file == nullptr)
        return {};
    Samples samples(static_cast<std::size_t>(info.frames * info.channels));
    const sf_count_t count =
        sf_read_double(file, samples.data(), static_cast<sf_count_t>(samples.size()));
    samples.resize(static_cast<std::size_t>(count));
    sf_close(file);
    return samples;
}

const QString ffmpeg =
    "ffmpeg -v error -y -f lavfi -i sine=frequency=440:sample_rate=40000 -t 0.25 ";

} // namespace

void TestWavPrograms::canonicalFilesAreLoaded_data() {
    const auto row =
        columns<QString, int, int, int>("commandLine", "samplingRate", "channelCount", "bits");
    row("sox, 16 bits", "sox -n -r 40000 -b 16 -c 1 made.wav synth 0.25 sine 440", 40000, 1, 16);
    row("sox, 16 bits, stereo", "sox -n -r 44100 -b 16 -c 2 made.wav synth 0.25 sine 440 sine 550",
        44100, 2, 16);
    row("sox, 8 bits", "sox -n -r 8000 -b 8 -e unsigned-integer -c 1 made.wav synth 0.25 sine 440",
        8000, 1, 8);
    row("ffmpeg, 16 bits", ffmpeg + "-c:a pcm_s16le -bitexact -ac 2 made.wav", 40000, 2, 16);
    row("ffmpeg, 8 bits", ffmpeg + "-c:a pcm_u8 -bitexact made.wav", 40000, 1, 8);
}

void TestWavPrograms::canonicalFilesAreLoaded() {
    QFETCH(QString, commandLine);
    QFETCH(int, samplingRate);
    QFETCH(int, channelCount);
    QFETCH(int, bits);
    const WavFolder folder;
    const QString path = folder.path("made.wav");
    QVERIFY(run(commandLine, folder));
    CWav wav;
    QCOMPARE(errorsOf([&] { QVERIFY(wav.LoadWav(path.toStdString())); }), std::string());
    QCOMPARE(wav.header.samplingRate, static_cast<std::uint32_t>(samplingRate));
    QCOMPARE(wav.header.numberOfChannels, static_cast<std::uint16_t>(channelCount));
    QCOMPARE(wav.header.bitsPerSample, static_cast<std::uint16_t>(bits));
    QCOMPARE(wav.numberOfSamples, static_cast<std::uint32_t>(samplingRate * channelCount / 4));
    QCOMPARE(wav.header.riffChunkSize, static_cast<std::uint32_t>(readBytes(path).size() - 8));
    QVERIFY(wav.samples == samplesByLibsndfile(path));
    double peak = 0.0;
    for (const double sample : wav.samples)
        peak = std::max(peak, std::abs(sample));
    QVERIFY(peak > 0.05 && peak <= 1.0);
}

void TestWavPrograms::otherHeadersAreRefused_data() {
    const auto row = columns<QString, QString>("commandLine", "message");
    const QString notPcm = "Not a PCM (linear quantitation) WAV file: ";
    row("sox, 24 bits with a longer header",
        "sox -n -r 40000 -b 24 -c 1 made.wav synth 0.25 sine 440", notPcm);
    row("sox, floating point",
        "sox -n -r 40000 -b 32 -e floating-point -c 1 made.wav synth 0.25 sine 440", notPcm);
    row("sox, AIFF", "sox -n -r 40000 -b 16 -c 1 -t aiff made.wav synth 0.25 sine 440",
        "Not a WAV file: ");
    row("ffmpeg, 24 bits with a longer header", ffmpeg + "-c:a pcm_s24le -bitexact made.wav",
        notPcm);
    row("ffmpeg, A-law", ffmpeg + "-c:a pcm_alaw -bitexact made.wav", notPcm);
}

void TestWavPrograms::otherHeadersAreRefused() {
    QFETCH(QString, commandLine);
    QFETCH(QString, message);
    const WavFolder folder;
    const QString path = folder.path("made.wav");
    QVERIFY(run(commandLine, folder));
    CWav wav;
    QCOMPARE(errorsOf([&] { QVERIFY(!wav.LoadWav(path.toStdString())); }),
             (message + path + "\n").toStdString());
    QVERIFY(wav.samples.empty());
}

void TestWavPrograms::chunkBeforeTheDataIsMisread() {
    const WavFolder folder;
    const QString path = folder.path("made.wav");
    QVERIFY(run(ffmpeg + "-c:a pcm_s16le made.wav", folder));
    CWav wav;
    QVERIFY(wav.LoadWav(path.toStdString()));
    QCOMPARE(QByteArray(wav.header.dataChunkIdentifier.data(), 4), QByteArray("LIST"));
    QCOMPARE(QByteArray(wav.rawData.data(), 4), QByteArray("INFO"));
    QCOMPARE(wav.rawData.size(), std::size_t{wav.header.dataSize});
    QVERIFY(wav.numberOfSamples < 100U);
}

void TestWavPrograms::handmadeFilesAgreeWithLibsndfile_data() {
    const auto row = columns<int, int>("bits", "channelCount");
    for (const int bits : {8, 16, 24})
        for (const int channelCount : {1, 2, 3})
            row(QString::asprintf("%d bits, %d channels", bits, channelCount).toUtf8(), bits,
                channelCount);
}

void TestWavPrograms::handmadeFilesAgreeWithLibsndfile() {
    QFETCH(int, bits);
    QFETCH(int, channelCount);
    // Without 0x800000, which is +1.0 here and -1.0 in libsndfile.
    const QByteArray data = unevenBytes(30000 * bits / 8);
    const WavFolder folder;
    const std::string path = folder.write(testsupport::wavWithData(
        {48000, static_cast<quint16>(channelCount), static_cast<quint16>(bits)}, data));
    CWav wav;
    QVERIFY(wav.LoadWav(path));
    QCOMPARE(wav.samples.size(), std::size_t{30000});
    QVERIFY(wav.samples == samplesByLibsndfile(QString::fromStdString(path)));
}

void TestWavPrograms::writtenFileIsReadBySox() {
    const WavFolder folder;
    const QString original = folder.path("made.wav");
    QVERIFY(run("sox -n -r 40000 -b 16 -c 1 made.wav synth 0.25 sine 440", folder));
    CWav wav;
    QVERIFY(wav.LoadWav(original.toStdString()));
    const QString copy = folder.path("copy.wav");
    QVERIFY(wav.WriteWav(copy.toStdString()));
    QVERIFY(run("sox -D copy.wav again.wav", folder));
    QCOMPARE(readBytes(folder.path("again.wav")), readBytes(original));
}
