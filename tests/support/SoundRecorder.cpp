// Records what the sound server's device receives.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundRecorder.h"

#include <QtTest>

#include <algorithm>
#include <cstring>

namespace testsupport {

namespace {
constexpr int patienceMs = 10000;
}

SoundRecorder::~SoundRecorder() {
    stop();
}

bool SoundRecorder::start() {
    bytes.clear();
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("parec"),
                  {QStringLiteral("--device=lab.monitor"), QStringLiteral("--latency-msec=20"),
                   QStringLiteral("--rate=%1").arg(samplingRate), QStringLiteral("--channels=1"),
                   QStringLiteral("--format=float32le"), QStringLiteral("--raw")});
    if (!process.waitForStarted(patienceMs) || !process.waitForReadyRead(patienceMs))
        return false;
    collect();
    return true;
}

void SoundRecorder::collect() {
    bytes += process.readAllStandardOutput();
}

QVector<float> SoundRecorder::samples() {
    collect();
    QVector<float> received(bytes.size() / int(sizeof(float)));
    std::memcpy(received.data(), bytes.constData(), std::size_t(received.size()) * sizeof(float));
    return received;
}

bool SoundRecorder::waitForSilence(int milliseconds) {
    const int silentSamples = samplingRate * milliseconds / 1000;
    const int heardBefore = samples().size();
    return QTest::qWaitFor(
        [&] {
            const QVector<float> heard = samples();
            return heard.size() >= heardBefore + silentSamples &&
                   std::all_of(heard.cend() - silentSamples, heard.cend(),
                               [](float sample) { return sample == 0.0F; });
        },
        patienceMs);
}

QVector<float> SoundRecorder::stop() {
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        process.waitForFinished(patienceMs);
    }
    return samples();
}

} // namespace testsupport
