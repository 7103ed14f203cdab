// WAV files that change while they are read.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_wav.h"

#include <QTest>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

using testsupport::wavWithSamples;

namespace {

/// Runs a function repeatedly in another thread, as long as this lives.
class BackgroundLoop {
public:
    template <typename Function>
    explicit BackgroundLoop(Function function)
        : thread([this, function] {
              while (!isOver)
                  function();
          }) {}
    ~BackgroundLoop() {
        isOver = true;
        thread.join();
    }
    Q_DISABLE_COPY_MOVE(BackgroundLoop)

private:
    std::atomic<bool> isOver{false};
    std::thread thread;
};

/// Makes a path lead to each of two files in turn; it always leads to one of them.
auto replacingBy(const std::string& one, const std::string& other, const std::string& path) {
    return [=] {
        for (const std::string& file : {one, other}) {
            const std::string beside = path + ".new";
            if (::link(file.c_str(), beside.c_str()) == 0)
                std::rename(beside.c_str(), path.c_str());
        }
    };
}

constexpr int loads = 3000;

bool allEqual(const std::vector<double>& samples) {
    return std::all_of(samples.begin(), samples.end(),
                       [&](double sample) { return sample == samples.front(); });
}

} // namespace

void TestWavChanging::fifoThatReplacesTheFileDoesNotBlock() {
    const WavFolder folder;
    const std::string path = folder.path("target.wav").toStdString();
    const std::string fifo = folder.path("fifo").toStdString();
    const std::string file = folder.write(wavWithSamples({}, {16384}), "file.wav");
    QCOMPARE(::mkfifo(fifo.c_str(), 0600), 0);
    const BackgroundLoop changing(replacingBy(fifo, file, path));
    int loaded = 0;
    int refused = 0;
    errorsOf([&] {
        // Until both have been read often enough for a race to be likely.
        while (loaded < loads || refused < loads) {
            CWav wav;
            ++(wav.LoadWav(path) ? loaded : refused);
        }
    });
    QVERIFY(loaded >= loads && refused >= loads);
}

void TestWavChanging::shrinkingFileIsReadWholeOrAsAShortRead() {
    constexpr int sampleCount = 100000;
    const WavFolder folder;
    const QByteArray bytes = wavWithSamples({}, QVector<int>(sampleCount, 12345));
    const std::string path = folder.write(bytes);
    int whole = 0;
    int shortReads = 0;
    std::atomic<unsigned> turn{0};
    const BackgroundLoop shrinking([&] {
        const auto size = turn++ % 4 == 0 ? off_t{bytes.size()} : off_t{44 + turn % 200000};
        QVERIFY(::truncate(path.c_str(), 44) == 0 && ::truncate(path.c_str(), size) == 0);
    });
    while (whole == 0 || shortReads < loads) {
        CWav wav;
        QVERIFY(wav.LoadWav(path));
        QVERIFY(wav.samples.empty() || wav.samples.size() == sampleCount);
        QVERIFY(wav.rawData.size() <= static_cast<std::size_t>(bytes.size()));
        ++(wav.samples.empty() ? shortReads : whole);
    }
}

void TestWavChanging::replacedFileIsNeverMixedWithTheOther() {
    const WavFolder folder;
    const std::string path = folder.path("target.wav").toStdString();
    const std::string longer =
        folder.write(wavWithSamples({}, QVector<int>(60000, 12345)), "longer.wav");
    const std::string shorter =
        folder.write(wavWithSamples({}, QVector<int>(50000, -54)), "shorter.wav");
    QCOMPARE(::link(longer.c_str(), path.c_str()), 0);
    const BackgroundLoop replacing(replacingBy(shorter, longer, path));
    int longerOnes = 0;
    int shorterOnes = 0;
    while (longerOnes < 300 || shorterOnes < 300) {
        CWav wav;
        QVERIFY(wav.LoadWav(path));
        QVERIFY(wav.samples.size() == 60000 || wav.samples.size() == 50000);
        QVERIFY(allEqual(wav.samples));
        QCOMPARE(wav.samples.front() > 0, wav.samples.size() == 60000);
        ++(wav.samples.size() == 60000 ? longerOnes : shorterOnes);
    }
}
