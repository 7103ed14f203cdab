// What the sound server's answers mean.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/SoundAnswers.h"

#include "base/Sampling.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

QString text(const QJsonObject& object, const char* key) {
    return object.value(QLatin1String(key)).toString();
}

/// A property that the server, a driver or a program has attached.
QString property(const QJsonObject& object, const char* key) {
    return text(object.value(QLatin1String("properties")).toObject(), key);
}

/// The first object of an array that has a value under a key.
QJsonObject found(const QJsonArray& objects, const char* key, const QString& value) {
    for (const QJsonValue& object : objects)
        if (text(object.toObject(), key) == value)
            return object.toObject();
    return {};
}

/// Returns "PipeWire 1.4.2" for "PulseAudio (on PipeWire 1.4.2)", whose server_version is that of
/// the PulseAudio it stands in for.
QString serverName(const QJsonObject& server) {
    const QString name = text(server, "server_name");
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("\\(on (PipeWire [^)]*)\\)")).match(name);
    if (match.hasMatch())
        return match.captured(1);
    return (name == QLatin1String("pulseaudio") ? QStringLiteral("PulseAudio") : name) + u' ' +
           text(server, "server_version");
}

/// What kind of device a sink is, by its driver, its properties and its name.
QString deviceKind(const QJsonObject& sink) {
    const QString name = text(sink, "name");
    const QString port = text(sink, "active_port") + property(sink, "device.profile.name");
    if (property(sink, "device.bus") == QLatin1String("bluetooth") ||
        property(sink, "device.api").startsWith(QLatin1String("bluez")) ||
        name.startsWith(QLatin1String("bluez")))
        return QStringLiteral("Bluetooth");
    if (text(sink, "driver") == QLatin1String("module-null-sink.c") ||
        property(sink, "factory.name") == QLatin1String("support.null-audio-sink") ||
        name == QLatin1String("auto_null"))
        return QStringLiteral("null sink");
    if (name.contains(QLatin1String("hdmi"), Qt::CaseInsensitive) ||
        port.contains(QLatin1String("hdmi"), Qt::CaseInsensitive))
        return QStringLiteral("HDMI");
    if (property(sink, "device.class") == QLatin1String("filter"))
        return QStringLiteral("filter");
    return QStringLiteral("sound card");
}

/// Volumes of the channels, each as the server counts it: 65536 is 100 %.
QString exactVolumes(const QJsonObject& object) {
    const QJsonObject channels = object.value(QLatin1String("volume")).toObject();
    QStringList volumes;
    for (auto channel = channels.begin(); channel != channels.end(); ++channel)
        volumes << QStringLiteral("%1 %2")
                       .arg(channel.key())
                       .arg(channel.value().toObject().value(QLatin1String("value")).toInt());
    return volumes.join(QStringLiteral(", "));
}

/// Volumes of the channels in percent, the minimum and the maximum.
std::pair<int, int> volumesOf(const QJsonObject& object) {
    int minimum = std::numeric_limits<int>::max();
    int maximum = 0;
    const QJsonObject channels = object.value(QLatin1String("volume")).toObject();
    for (const QJsonValue& channel : channels) {
        const int percent = text(channel.toObject(), "value_percent").remove(u'%').toInt();
        minimum = std::min(minimum, percent);
        maximum = std::max(maximum, percent);
    }
    return {std::min(minimum, maximum), maximum};
}

/// Seconds after which a device that plays nothing is suspended, by PulseAudio's module or by
/// PipeWire's session manager; empty if it is never suspended.
QString suspendSeconds(const SoundState& state, const QJsonObject& sink,
                       const QJsonArray& modules) {
    QString seconds = property(sink, "session.suspend-timeout-seconds");
    if (state.isPipeWire()) {
        if (seconds == QLatin1String("0"))
            return {};
    } else {
        const QJsonObject module = found(modules, "name", QStringLiteral("module-suspend-on-idle"));
        if (module.isEmpty())
            return {};
        // A sink's own time overrides that of all sinks; 0 is at once, less than 0 is never.
        bool isNumber = false;
        seconds = property(sink, "module-suspend-on-idle.timeout");
        if (seconds.toInt(&isNumber) < 0)
            return {};
        if (!isNumber)
            seconds = QRegularExpression(QStringLiteral("timeout=(\\d+)"))
                          .match(text(module, "argument"))
                          .captured(1);
    }
    return seconds.isEmpty() ? QStringLiteral("5") : seconds;
}

bool isUnplugged(const QJsonObject& sink) {
    const QJsonObject port =
        found(sink.value(QLatin1String("ports")).toArray(), "name", text(sink, "active_port"));
    return text(port, "availability") == QLatin1String("not available");
}

/// The names of the programs and modules that play something, except Pellion.
QStringList playingPrograms(const QJsonArray& streams) {
    QStringList names;
    for (const QJsonValue& value : streams) {
        const QJsonObject stream = value.toObject();
        QString name;
        for (const char* key : {"application.name", "application.process.binary", "media.name"})
            // pactl 16 writes "(null)" for what holds more than ASCII.
            if (name.isEmpty() || name == QLatin1String("(null)"))
                name = property(stream, key);
        const bool isPaused = stream.value(QLatin1String("corked")).toBool();
        if (!isPaused && name != QLatin1String("Pellion") && !names.contains(name))
            names.append(name);
    }
    return names;
}

void readOutput(const QJsonObject& sink, SoundState& state) {
    state.device = deviceKind(sink);
    state.port = text(sink, "active_port");
    const QStringList specification = text(sink, "sample_specification").split(u' ');
    state.format = specification.value(0);
    state.channels = specification.value(1).remove(QStringLiteral("ch")).toInt();
    state.rate = specification.value(2).remove(QStringLiteral("Hz")).toInt();
    state.exactVolumes = exactVolumes(sink);
    const auto [minimum, maximum] = volumesOf(sink);
    state.volume = minimum;
    state.isBalanced = minimum == maximum;
    state.isMuted = sink.value(QLatin1String("mute")).toBool();
    state.isUnplugged = isUnplugged(sink);
    state.isSuspended = text(sink, "state") == QLatin1String("SUSPENDED");
}

/// What the silent stream shows.
void readStream(const SoundAnswers& answers, const QJsonObject& sink, SoundState& state) {
    const QString process = QString::number(answers.streamProcess);
    const QJsonArray streams = QJsonDocument::fromJson(answers.withStream).array();
    for (const QJsonValue& value : streams) {
        const QJsonObject stream = value.toObject();
        if (property(stream, "application.process.id") != process)
            continue;
        if (state.rate != int(playedRate))
            state.resampler = text(stream, "resample_method");
        state.isStreamMuted = stream.value(QLatin1String("mute")).toBool();
        state.streamVolume = volumesOf(stream).first;
        // With flat volumes a stream shows the product of its own volume and the device's.
        const bool isFlat =
            sink.value(QLatin1String("flags")).toArray().contains(QStringLiteral("FLAT_VOLUME"));
        if (isFlat && state.streamVolume == state.volume)
            state.streamVolume = 100;
        return;
    }
    if (answers.isStreamLate)
        state.streamProblem = state.output + QStringLiteral(" takes long to accept a sound");
    else
        state.streamProblem =
            QStringLiteral("the sound server refuses sounds of %1 Hz, one channel, 32-bit floats")
                .arg(playedRate);
}

} // namespace

SoundState soundState(const SoundAnswers& answers) {
    SoundState state;
    state.problem = answers.problem;
    state.remedy = answers.remedy;
    if (!state.problem.isEmpty())
        return state;
    const QJsonObject server = QJsonDocument::fromJson(answers.server).object();
    const QJsonObject everything = QJsonDocument::fromJson(answers.everything).object();
    if (server.isEmpty() || everything.isEmpty()) {
        state.problem = QStringLiteral("pactl's answer is not understood");
        state.remedy = QStringLiteral("It has to be version 16 or newer: \"pactl --version\".");
        return state;
    }
    state.server = serverName(server);
    state.otherPrograms = playingPrograms(everything.value(QLatin1String("sink_inputs")).toArray());
    const QJsonObject sink = found(everything.value(QLatin1String("sinks")).toArray(), "name",
                                   text(server, "default_sink_name"));
    if (sink.isEmpty())
        return state;
    state.output = text(sink, "name");
    readOutput(sink, state);
    state.suspendAfter =
        suspendSeconds(state, sink, everything.value(QLatin1String("modules")).toArray());
    readStream(answers, sink, state);
    return state;
}
