// What is wrong with a computer's state, and what to do about it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/SessionFindings.h"

#include "base/Sampling.h"

namespace {

using Findings = QVector<SessionFinding>;

const QString output = QStringLiteral("output");
const QString volume = QStringLiteral("volume");

void addDevice(const SoundState& state, Findings& findings) {
    static constexpr struct {
        const char* device;
        const char* problem;
    } unsuitable[] = {{"null sink", "plays nothing: it is not a sound card"},
                      {"Bluetooth", "is Bluetooth, which compresses and delays the sounds"},
                      {"HDMI", "is that of a screen (HDMI)"},
                      {"filter", "is an effect, which changes the sounds"}};
    for (const auto& kind : unsuitable)
        if (state.device == kind.device)
            findings.append({output, QStringLiteral("%1 %2").arg(state.output, kind.problem),
                             "Choose that of the headphones: \"pactl list short sinks\", then "
                             "\"pactl set-default-sink NAME\"."});
    if (state.isUnplugged)
        findings.append({output, QStringLiteral("nothing is plugged in at %1").arg(state.output),
                         "Connect the headphones."});
}

void addRate(const SoundState& state, Findings& findings) {
    if (state.rate < int(playedRate))
        findings.append({"sampling rate",
                         QStringLiteral("the output runs at %1 Hz and leaves out what is above "
                                        "%2 Hz in a target")
                             .arg(state.rate)
                             .arg(state.rate / 2),
                         "Choose another output, or another profile of this one."});
    if (!state.resampler.isEmpty() && !state.isPipeWire() && state.resampler != "speex-float-10" &&
        state.resampler != "soxr-vhq")
        findings.append({"resampler",
                         QStringLiteral("the output runs at %1 Hz, and resampling by %2 adds "
                                        "noise")
                             .arg(state.rate)
                             .arg(state.resampler),
                         "Write \"resample-method = speex-float-10\" into "
                         "~/.config/pulse/daemon.conf, then \"pulseaudio -k\"."});
}

void addVolume(const SoundState& state, Findings& findings) {
    const QString setVolume = QStringLiteral("\"pactl set-sink-volume @DEFAULT_SINK@ 100%\"");
    if (state.isMuted)
        findings.append({volume, QStringLiteral("%1 is muted").arg(state.output),
                         "\"pactl set-sink-mute @DEFAULT_SINK@ 0\"."});
    if (state.volume != 100)
        findings.append({volume,
                         QStringLiteral("%1 is at %2 %").arg(state.output).arg(state.volume),
                         "If this is the calibrated volume, save it with --save and check with "
                         "--compare. If not: turn the amplifier down, then " +
                             setVolume + ", and calibrate at the amplifier."});
    if (!state.isBalanced)
        findings.append({volume, QStringLiteral("the channels of %1 differ").arg(state.output),
                         "Turn the amplifier down; then " + setVolume + " makes them equal."});
    const QString inTheMixer = QStringLiteral("Play a target and set Pellion's volume in the mixer "
                                              "(pavucontrol).");
    if (state.isStreamMuted)
        findings.append({volume, "Pellion's sounds are muted", inTheMixer});
    if (state.streamVolume != 100)
        findings.append({volume,
                         QStringLiteral("Pellion's sounds are at %1 %").arg(state.streamVolume),
                         inTheMixer});
}

void addSuspension(const SoundState& state, Findings& findings) {
    const QString subject = QStringLiteral("suspension");
    if (!state.suspendAfter.isEmpty())
        findings.append({subject,
                         QStringLiteral("%1 is suspended after %2 seconds without a sound, and may "
                                        "cut off the beginning of the next")
                             .arg(state.output, state.suspendAfter),
                         "Copy a file from /usr/share/doc/pellion/examples/sound/; the guide says "
                         "which (\"Keeping the sound card awake\")."});
    else if (state.isSuspended && !state.isPipeWire())
        findings.append({subject, QStringLiteral("%1 is suspended").arg(state.output),
                         "\"pactl suspend-sink @DEFAULT_SINK@ 0\"."});
}

QString megabytes(qint64 bytes) {
    constexpr double bytesOfOne = 1e6;
    return QString::number(double(bytes) / bytesOfOne, 'f', 1);
}

void addFolder(const QString& subject, const FolderState& folder, Findings& findings) {
    constexpr qint64 enoughBytes = 10000000;
    if (!folder.problem.isEmpty())
        findings.append({subject, QStringLiteral("%1 %2").arg(folder.path, folder.problem),
                         "Make it, or have its permissions set."});
    else if (folder.freeBytes < enoughBytes)
        findings.append({subject,
                         QStringLiteral("only %1 MB are free for %2")
                             .arg(megabytes(folder.freeBytes), folder.path),
                         "Delete what is not needed."});
}

} // namespace

QVector<SessionFinding> soundFindings(const SoundState& state) {
    if (!state.problem.isEmpty())
        return {{"sound server", state.problem, state.remedy}};
    Findings findings;
    if (state.output.isEmpty()) {
        findings.append({output, "there is none",
                         "Connect a sound card, or choose a profile of it: \"pactl list cards\"."});
    } else {
        addDevice(state, findings);
        addRate(state, findings);
        addVolume(state, findings);
        addSuspension(state, findings);
        if (!state.streamProblem.isEmpty())
            findings.append({"sound server", state.streamProblem,
                             "Check again. If it stays so, restart the server: \"systemctl --user "
                             "restart pipewire-pulse\" or "
                             "\"pulseaudio -k\"."});
    }
    if (!state.otherPrograms.isEmpty())
        findings.append({"other sounds",
                         QStringLiteral("%1 can be heard as well")
                             .arg(state.otherPrograms.join(QStringLiteral(", "))),
                         "End it."});
    return findings;
}

QVector<SessionFinding> diskAndLoadFindings(const ComputerState& state) {
    Findings findings;
    addFolder(QStringLiteral("desktop"), state.desktop, findings);
    addFolder(QStringLiteral("journals"), state.journals, findings);
    if (state.keptJournals > 0)
        findings.append(
            {"journals",
             QStringLiteral("%1 hold responses that were not saved").arg(state.keptJournals),
             "\"pellion-session recover\"."});
    if (state.load > state.processors)
        findings.append(
            {"processor",
             QStringLiteral("the load average of the last minute is %1, on %2 processors")
                 .arg(state.load, 0, 'f', 1)
                 .arg(state.processors),
             "End what is not needed; \"top\" shows it."});
    return findings;
}
