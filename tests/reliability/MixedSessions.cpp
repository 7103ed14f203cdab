// Sessions of targets and sinusoids in random order, to be compared with a recording.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/MixedSessions.h"

#include "reliability/ResampledSounds.h"
#include "session/ResultsFile.h"
#include "support/FileBytes.h"
#include "support/ProgramRun.h"
#include "support/WavBytes.h"

#include <QLineEdit>
#include <QProcess>

#include <algorithm>
#include <array>
#include <utility>

using testsupport::SoundRecorder;

namespace {

constexpr double pauseMs = 20; // From a request to its sound.
const char* const targetName = "target.wav";

/// A unique 16-bit target without a silent sample.
QVector<int> noise(int count, std::mt19937& generator) {
    std::uniform_int_distribution<int> loudness(1, 32767);
    QVector<int> codes(count);
    for (int& code : codes)
        code = generator() % 2 == 0 ? loudness(generator) : -loudness(generator);
    return codes;
}

/// Minimum, maximum, and then each frequency between them before one repeats.
int frequencyOf(int sinusoid) {
    constexpr int minimumHz = 10;
    constexpr int maximumHz = 1000;
    if (sinusoid < 2)
        return sinusoid == 0 ? minimumHz : maximumHz;
    constexpr int stride = 613; // Has no factor in common with the number of frequencies.
    return minimumHz + int(qint64(sinusoid) * stride % (maximumHz - minimumHz + 1));
}

bool isDeviceSuspended() {
    return testsupport::runProgram("pactl", {"list", "short", "sinks"})
        .output.contains("SUSPENDED");
}

} // namespace

MixedSessions::MixedSessions(const SoundRecorder& deviceRecorder, std::chrono::seconds idle,
                             bool isControlled)
    : recorder(deviceRecorder), idleness(idle), hasControl(isControlled) {
    window.show();
}

bool MixedSessions::hold(int count) {
    // 100 ms to a second. The longer ones exceed the output's buffer of a quarter of a second: the
    // program must deliver the rest in time.
    constexpr std::array<int, 7> lengths{10000, 4000, 40000, 6000, 20000, 5000, 8000};
    const QVector<int> codes = noise(lengths[std::size_t(sessions) % lengths.size()], generator);
    const QString path = folder.filePath(targetName);
    if (!testsupport::writeBytes(path, testsupport::wavWithSamples({}, codes)))
        return false;
    target = testsupport::heardFrom(codes);
    ++sessions;
    const int first = presentations.size();
    if (!session.begin(path, pauseMs) || !present(false))
        return false;
    // At least one sinusoid is among the rest.
    for (int i = 1; i < count; ++i)
        if (!present(i == 1 || generator() % 2 == 0))
            return false;
    session.finish(folder.filePath("results.txt"));
    wrongResultsFiles += int(!areResultsRight(first));
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
    const bool isPlayed =
        registerPresentation(presentation) &&
        (isSinusoid ? session.playSinusoid(presentation.frequency) : session.playTarget());
    if (isPlayed && isSinusoid)
        presentations.last().isShownAsMatched =
            testsupport::find<QLineEdit>(window, "lineEditFrequencyMatched")->text() ==
            QString::number(presentation.frequency);
    return isPlayed && (!hasControl || playControl());
}

/// Registers the next presentation, once everything before it has been recorded and the device has
/// been idle for long enough.
bool MixedSessions::registerPresentation(const PresentedSound& presentation) {
    constexpr int silenceMs = 100;
    if (!recorder.waitForSilence(silenceMs))
        return false;
    if (idleness.count() > 0)
        QTest::qWait(int(std::chrono::milliseconds(idleness).count()));
    presentations.append(presentation);
    presentations.last().recordedBefore = recorder.samples().size();
    presentations.last().wasSuspended = idleness.count() > 0 && isDeviceSuspended();
    return true;
}

bool MixedSessions::playControl() {
    PresentedSound control;
    control.isControl = true;
    control.sound = presentations.constLast().sound;
    constexpr int silentSamples = 10000; // 250 ms, as the program plays after each sound.
    const QVector<float> played = control.sound + QVector<float>(silentSamples, 0.0F);
    const QString path = folder.filePath("control.raw");
    if (!testsupport::writeBytes(path, QByteArray(reinterpret_cast<const char*>(played.constData()),
                                                  played.size() * int(sizeof(float)))) ||
        !registerPresentation(control))
        return false;
    QProcess pacat;
    pacat.setProcessChannelMode(QProcess::ForwardedChannels);
    pacat.start("pacat", {"--raw", "--rate=40000", "--channels=1", "--format=float32le", path});
    constexpr int timeoutMs = 30000;
    return pacat.waitForStarted() &&
           QTest::qWaitFor([&] { return pacat.state() == QProcess::NotRunning; }, timeoutMs) &&
           pacat.exitStatus() == QProcess::NormalExit && pacat.exitCode() == 0;
}

bool MixedSessions::areResultsRight(int firstPresentation) const {
    QVector<double> frequencies;
    for (int i = firstPresentation; i < presentations.size(); ++i)
        if (presentations[i].isSinusoid && !presentations[i].isControl)
            frequencies.append(presentations[i].frequency);
    return testsupport::readBytes(folder.filePath("results.txt")) ==
           resultsText(targetName, frequencies).toUtf8();
}

int MixedSessions::compare() {
    constexpr int soundRate = 40000; // Hz
    const int deviceRate = SoundRecorder::deviceRate();
    const QVector<float> samples = recorder.samples();
    int unexpectedSounds = 0;
    int end = samples.size();
    // A sound is heard between its request and that of the next, which waits for its end.
    for (auto presentation = presentations.rbegin(); presentation != presentations.rend();
         ++presentation) {
        const int next = std::exchange(end, presentation->recordedBefore);
        const QVector<float> stretch = samples.mid(end, next - end);
        const QVector<float>& sound = presentation->sound;
        presentation->heard = deviceRate == soundRate
                                  ? testsupport::findSound(stretch, sound)
                                  : findResampledSound(stretch, deviceRate, sound, soundRate);
        unexpectedSounds += int(presentation->heard.isFollowedByMore);
    }
    return unexpectedSounds + int(std::any_of(samples.cbegin(), samples.cbegin() + end,
                                              [](float sample) { return sample != 0.0F; }));
}
