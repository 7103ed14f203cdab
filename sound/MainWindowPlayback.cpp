// The main window: synthesising and playing sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "base/Sampling.h"
#include "sound/PlayedSound.h"
#include "sound/PresentationPause.h"
#include "sound/Sinusoid.h"
#include "subject/ResponseCode.h"

#include <QAudioDeviceInfo>
#include <QAudioOutput>
#include <QCoreApplication>
#include <QDebug>
#include <QTimer>

#include <algorithm>

void MainWindow::setUpAudioFormat() {
    constexpr int bitsPerSample = 32;
    audioFormat.setSampleRate(truncatedToInt(data.samplingRate));
    audioFormat.setChannelCount(1);
    audioFormat.setSampleSize(bitsPerSample);
    audioFormat.setCodec(QStringLiteral("audio/pcm"));
    audioFormat.setByteOrder(QAudioFormat::LittleEndian);
    audioFormat.setSampleType(QAudioFormat::Float);
    if (!QAudioDeviceInfo::defaultOutputDevice().isFormatSupported(audioFormat))
        qWarning() << "Raw audio format not supported by backend, cannot play audio.";
}

void MainWindow::genSinusoid() {
    if (sequencePosition == 0 && soundsPlayed == 0)
        sinusoidSamples = QVector<double>(std::max(data.nSamples, 0), 0.0);
    writeSinusoid(sinusoidSamples, data.nSamples, data.frequencyCurrent, data.samplingRate);
}

int MainWindow::playWav() {
    schedulePresentation();
    return ++sequencePosition;
}

void MainWindow::schedulePresentation() {
    if (sequencePosition >= trialSequence.size())
        return;
    const PresentationPause pause = presentationPause(data.soundDuration, data.silentInterval);
    QTimer::singleShot(pause.milliseconds, pause.timerType, pendingPresentations.get(),
                       [this] { playOneSound(); });
}

void MainWindow::cancelPresentation() {
    pendingPresentations = std::make_unique<QObject>();
    releaseAudioOutput();
}

void MainWindow::playOneSound() {
    QVector<double> samples;
    int length = 0;
    if (soundsPlayed < soundsPerPresentation) {
        length = data.nSamples;
        if (playSinusoidNext) {
            updateFrequencyMatched();
            ++data.nResponses;
            samples = sinusoidSamples;
        } else {
            samples = targetSamples;
        }
    }
    startAudioOutput(samples, length);
    ++soundsPlayed;
    emit soundPlaying(soundsPlayed);
}

void MainWindow::startAudioOutput(const QVector<double>& samples, int length) {
    // An earlier output still exists if it is playing or stopped with an error.
    releaseAudioOutput();
    audioBytes = std::make_unique<QByteArray>(soundBytes(samples, length));
    const qint64 tailBytes =
        audioBytes->isEmpty() ? 0 : audioFormat.bytesForDuration(silenceAfterSound);
    audioBuffer = std::make_unique<TailedBuffer>(audioBytes.get(), tailBytes);
    audioBuffer->open(QIODevice::ReadOnly);
    audioOutput = new QAudioOutput(audioFormat, this);
    connect(audioOutput, SIGNAL(stateChanged(QAudio::State)), this,
            SLOT(handleStateChanged(QAudio::State)));
    audioOutput->start(audioBuffer.get());
    audioClock.start();
}

void MainWindow::releaseAudioOutput() {
    if (audioOutput == nullptr)
        return;
    audioOutput->disconnect(this);
    audioOutput->stop();
    audioBuffer->close();
    audioBytes.reset();
    audioBuffer.reset();
    // Deleted later, because this may be called from the output's own signal.
    audioOutput->deleteLater();
    audioOutput = nullptr;
}

/// Deletes the outputs whose deletion releaseAudioOutput() has deferred. An output's destructor
/// processes events, which would include the deferred deletion of itself or of another output.
void MainWindow::deleteReleasedOutputs() {
    const auto outputs = findChildren<QAudioOutput*>(QString(), Qt::FindDirectChildrenOnly);
    for (QAudioOutput* output : outputs)
        QCoreApplication::removePostedEvents(output, QEvent::DeferredDelete);
    qDeleteAll(outputs);
}

void MainWindow::handleStateChanged(QAudio::State audioState) {
    if (audioState == QAudio::StoppedState) {
        if (audioOutput != nullptr && audioOutput->error() != QAudio::NoError)
            qWarning() << "Audio stopped unexpectedly";
    } else if (audioState == QAudio::IdleState) {
        if (audioOutput != nullptr &&
            !isHeardCompletely(audioBuffer->pos(), audioBytes->size(), audioClock.elapsed(),
                               audioFormat.durationForBytes(audioBytes->size()) / 1000))
            qWarning() << "Audio ended early";
        releaseAudioOutput();
        if (soundsPlayed == soundsPerPresentation)
            emit soundPlaying(soundsEnded);
    }
}
