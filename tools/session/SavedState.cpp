// A saved state of the sound, in a file.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/SavedState.h"

#include "base/Version.h"
#include "session/FileReplacement.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

const QString soundKey = QStringLiteral("sound on a good day");

/// Calls a function with name and value of everything that should be the same from day to day. The
/// names are the keys of a saved state.
template <typename State, typename Function>
void forEachLastingValue(State& state, Function&& call) {
    call("sound server", state.server);
    call("output", state.output);
    call("device", state.device);
    call("port", state.port);
    call("sample format", state.format);
    call("channels", state.channels);
    call("sampling rate (Hz)", state.rate);
    call("resampler", state.resampler);
    call("volume (%)", state.volume);
    call("volume of each channel (65536 is 100 %)", state.exactVolumes);
    call("same volume in all channels", state.isBalanced);
    call("muted", state.isMuted);
    call("suspended after (s)", state.suspendAfter);
    call("volume of Pellion's sounds (%)", state.streamVolume);
    call("Pellion's sounds muted", state.isStreamMuted);
}

void read(const QJsonValue& value, QString& member) {
    member = value.toString();
}
void read(const QJsonValue& value, int& member) {
    member = value.toInt();
}
void read(const QJsonValue& value, bool& member) {
    member = value.toBool();
}

} // namespace

QJsonObject lastingValues(const SoundState& state) {
    QJsonObject values;
    forEachLastingValue(state, [&](const char* name, const auto& value) {
        values.insert(QLatin1String(name), QJsonValue(value));
    });
    return values;
}

SavedState readSavedState(const QString& path) {
    SavedState state;
    QFile file(path);
    // Opening a FIFO would block.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        state.problem = QStringLiteral("%1 cannot be read").arg(path);
        return state;
    }
    const QJsonObject values =
        QJsonDocument::fromJson(file.readAll()).object().value(soundKey).toObject();
    forEachLastingValue(state.sound, [&](const char* name, auto& member) {
        const QJsonValue value = values.value(QLatin1String(name));
        // An earlier version has saved fewer values.
        if (!value.isUndefined())
            read(value, member);
    });
    if (values.isEmpty())
        state.problem = QStringLiteral("%1 is not a file that --save has written").arg(path);
    return state;
}

QString writeSavedState(const QString& path, const SoundState& sound) {
    if (!sound.problem.isEmpty())
        return sound.problem + QStringLiteral(": nothing was saved");
    const QFileInfo file(path);
    if ((file.exists() || file.isSymLink()) && !readSavedState(path).problem.isEmpty())
        return QStringLiteral("%1 exists, and is not a saved state: it is not replaced").arg(path);
    const QJsonObject content{{"program", "pellion-session " + programVersion()},
                              {"date", QDateTime::currentDateTime().toString(Qt::ISODate)},
                              {soundKey, lastingValues(sound)}};
    if (replaceFile(path, QJsonDocument(content).toJson()) == FileReplacement::Written)
        return {};
    return QStringLiteral("%1 cannot be written").arg(path);
}
