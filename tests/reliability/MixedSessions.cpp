// Sessions of targets and sinusoids in random order, to be compared with a recording.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/MixedSessions.h"

#include "reliability/ToneFrequency.h"
#include "support/FileBytes.h"
#include "support/HeardSounds.h"
#include "support/WavBytes.h"

#include <QLineEdit>

#include <algorithm>
#include <array>

namespace {

constexpr double pauseMs = 20; // From a request to its sound.
const char* const targetName = "target.wav";

/// A 16-bit target unlike any other, without a silent sample.
QVector<int> noise(int count, std::mt19937& generator) {
    std::uniform_int_distribution<int> loudness(1, 32767);
    QVector<int> codes(count);
    for (int& code : codes)
        code = generator() % 2 == 0 ? loudness(generator) : -loudness(generator);
    return codes;
}

/// Lowest, highest, and then each of the frequencies between them before one comes again.
int frequencyOf(int sinusoid) {
    constexpr int lowest = 10;
    constexpr int highest = 1000;
    if (sinusoid < 2)
        return sinusoid == 0 ? lowest : highest;
    constexpr int stride = 613; // Has no factor in common with the number of frequencies.
    return lowest + int(qint64(sinusoid) * stride % (highest - lowest + 1));
}

} // namespace

MixedSessions::MixedSessions() {
    QObject::connect(&window, &MainWindow::soundPlaying, [this](int index) {
        if (index == 1 && !presentations.isEmpty())
            presentations.last().startedMs = TimedRecording::nowMs();
    });
    window.show();
}

bool MixedSessions::hold(int count) {
    // 100 ms to a second. The longer ones do not fit the output's buffer, which holds a quarter of
    // a second: the program has to hand on the rest in time.
    constexpr std::array<int, 7> lengths{10000, 4000, 40000, 6000, 20000, 5000, 8000};
    const QVector<int> codes = noise(lengths[std::size_t(sessions) % lengths.size()], generator);
    const QString path = folder.filePath(targetName);
    if (!testsupport::writeBytes(path, testsupport::wavWithSamples({}, codes)))
        return false;
    target = testsupport::heardFrom(codes);
    ++sessions;
    session.prepare(testsupport::SessionDriver::Session::Practice, path);
    session.setPause(pauseMs);
    if (session.go() == nullptr)
        return false;
    session.beReady();
    const int first = presentations.size();
    if (!present(false))
        return false;
    // At least one sinusoid is among the rest.
    for (int i = 1; i < count; ++i)
        if (!present(i == 1 || generator() % 2 == 0))
            return false;
    session.finish(folder.filePath("results.txt"));
    readResults(first);
    return session.dialogs.takeComplaints().isEmpty();
}

bool MixedSessions::present(bool isSinusoid) {
    PresentedSound presentation;
    presentation.isSinusoid = isSinusoid;
    if (isSinusoid) {
        presentation.frequency = frequencyOf(sinusoids++);
        presentation.sound = testsupport::heardSinusoid(presentation.frequency, target.size());
    } else {
        presentation.sound = target;
    }
    presentations.append(presentation);
    if (!isSinusoid)
        return session.playTarget();
    const bool isPlayed = session.playSinusoid(presentation.frequency);
    presentations.last().isShownAsMatched =
        testsupport::find<QLineEdit>(window, "lineEditFrequencyMatched")->text() ==
        QString::number(presentation.frequency);
    return isPlayed;
}

void MixedSessions::readResults(int firstPresentation) {
    const QList<QByteArray> lines =
        testsupport::readBytes(folder.filePath("results.txt")).split('\n');
    wrongResultsLines += int(lines.value(0) != "filename\tnTrials\tfrequency matched (Hz)\r");
    int number = 0;
    for (int i = firstPresentation; i < presentations.size(); ++i) {
        if (!presentations[i].isSinusoid)
            continue;
        ++number;
        const QByteArray line = lines.value(number);
        presentations[i].frequencyWritten = line.split('\t').value(2).trimmed().toDouble();
        wrongResultsLines +=
            int(line != QByteArray(targetName) + '\t' + QByteArray::number(number) + '\t' +
                            QByteArray::number(presentations[i].frequency) + '\r');
    }
    // Behind the last line is nothing.
    constexpr int headerAndNothing = 2;
    wrongResultsLines +=
        int(lines.size() != number + headerAndNothing || !lines.constLast().isEmpty());
}

int MixedSessions::compare(const TimedRecording& recording) {
    const QVector<float>& samples = recording.samples();
    const double originMs = recording.timeOfMs(0);
    const auto sampleAt = [&](double timeMs) {
        const double sample = (timeMs - originMs) * TimedRecording::samplingRate / 1000;
        return int(std::clamp(sample, 0.0, double(samples.size())));
    };
    // What was not started has no stretch of its own: it is missing.
    QVector<PresentedSound*> started;
    for (PresentedSound& presentation : presentations) {
        presentation.heard.samplesMissing = presentation.sound.size();
        if (presentation.startedMs > 0)
            started.append(&presentation);
    }
    const int firstStart = started.isEmpty() ? samples.size() : sampleAt(started[0]->startedMs);
    int strangers = int(std::any_of(samples.cbegin(), samples.cbegin() + firstStart,
                                    [](float sample) { return sample != 0.0F; }));
    for (int i = 0; i < started.size(); ++i) {
        // A sound is heard between its start and that of the next, which waits for its end.
        const int from = sampleAt(started[i]->startedMs);
        const int to =
            i + 1 < started.size() ? sampleAt(started[i + 1]->startedMs) : samples.size();
        PresentedSound& presentation = *started[i];
        const HeardSound heard = findSound(samples.mid(from, to - from), presentation.sound);
        presentation.heard = heard;
        strangers += int(heard.isFollowedByMore);
        if (presentation.isSinusoid && heard.fate == Fate::Complete)
            presentation.frequencyHeard =
                toneFrequency(samples.mid(from + heard.start, presentation.sound.size()),
                              TimedRecording::samplingRate);
    }
    return strangers;
}
