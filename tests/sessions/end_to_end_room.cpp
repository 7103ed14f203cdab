// The room in which whole sessions are held and tested.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "end_to_end_room.h"

#include "subject/SubjectWindow.h"
#include "support/FileBytes.h"
#include "support/HeardSounds.h"

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>
#include <cmath>

using testsupport::find;
using testsupport::WavFormat;

namespace {

constexpr double playedRate = 40000; // Hz

void runProgram(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(program), qPrintable(arguments.join(u' ')));
}

/// One sample of a file, full scale -1 to +1. The most negative 24-bit sample reads as +1: the
/// program's own way.
double sampleAt(const uchar* bytes, int bitsPerSample) {
    if (bitsPerSample == 8)
        return (bytes[0] - 128) / 128.0;
    if (bitsPerSample == 16)
        return qint16(bytes[0] | bytes[1] << 8) / 32768.0;
    const int code = bytes[0] | bytes[1] << 8 | bytes[2] << 16;
    return (code > 0x800000 ? code - 0x1000000 : code) / 8388608.0;
}

/// What the sound device should receive of a target: its first channel, as long as the duration
/// in hundredths of a millisecond says at the rate of the device.
QVector<float> playedSamples(const QByteArray& file, const WavFormat& format) {
    const int bytesPerSample = format.bitsPerSample / 8;
    const int bytesPerFrame = bytesPerSample * format.channelCount;
    const int frames = (file.size() - testsupport::wavoffset::data) / bytesPerFrame;
    const QString durationMs = QString::number(frames * 1000.0 / format.samplingRate, 'f', 2);
    QVector<float> samples(int(std::floor(durationMs.toDouble() / 1000 * playedRate)));
    if (format.channelCount > 2)
        return samples;
    const auto* data =
        reinterpret_cast<const uchar*>(file.constData()) + testsupport::wavoffset::data;
    for (int i = 0; i < std::min(frames, samples.size()); ++i)
        samples[i] = float(sampleAt(data + qptrdiff(i) * bytesPerFrame, format.bitsPerSample));
    return samples;
}

} // namespace

QByteArray resultsOf(const QString& targetName, const QVector<int>& frequencies) {
    QByteArray lines = "filename\tnTrials\tfrequency matched (Hz)\r\n";
    int request = 0;
    for (const int frequency : frequencies)
        lines += targetName.toUtf8() + '\t' + QByteArray::number(++request) + '\t' +
                 QByteArray::number(frequency) + "\r\n";
    return lines;
}

SessionRoom::SessionRoom() : driver(window) {}

bool SessionRoom::open() {
    window.show();
    return folder.isValid() && QTest::qWaitForWindowExposed(&window) && recorder.start();
}

Target SessionRoom::targetBySox(const QString& name, const WavFormat& format,
                                const QString& arguments) const {
    const QStringList words = arguments.split(u' ');
    const int effects = words.indexOf(QStringLiteral("synth"));
    runProgram(QStringLiteral("sox"),
               words.mid(0, effects) + QStringList(pathOf(name)) + words.mid(effects));
    return {pathOf(name), playedSamples(testsupport::readBytes(pathOf(name)), format)};
}

Target SessionRoom::targetByFfmpeg(const QString& name, const WavFormat& format,
                                   const QString& arguments) const {
    runProgram(QStringLiteral("ffmpeg"), arguments.split(u' ') + QStringList(pathOf(name)));
    return {pathOf(name), playedSamples(testsupport::readBytes(pathOf(name)), format)};
}

Target SessionRoom::targetOfBytes(const QString& name, const WavFormat& format,
                                  const QByteArray& bytes) const {
    if (!testsupport::writeBytes(pathOf(name), bytes))
        qFatal("cannot write %s", qPrintable(pathOf(name)));
    return {pathOf(name), playedSamples(bytes, format)};
}

Target SessionRoom::tone(const QString& name, int milliseconds, int frequency) const {
    return targetBySox(name, {40000, 1, 16},
                       QStringLiteral("-D -n -r 40000 -b 16 -c 1 synth %1 sine %2 vol 0.5")
                           .arg(milliseconds / 1000.0)
                           .arg(frequency));
}

void SessionRoom::prepare(Session kind, const Target& chosen) {
    target = chosen;
    driver.prepare(kind, target.path);
    // "Go" reads both fields; nobody wants to wait for the usual half second of silence.
    find<QLineEdit>(window, "lineEditSilentInterval")->setText(QStringLiteral("20.00"));
    find<QLineEdit>(window, "lineEditOutputFilePath")->setText(folder.path());
}

bool SessionRoom::start() {
    if (driver.go() == nullptr)
        return false;
    driver.beReady();
    return true;
}

bool SessionRoom::playTarget() {
    // Silence cannot be told from silence.
    if (std::any_of(target.played.cbegin(), target.played.cend(), [](float x) { return x != 0; }))
        expectSound(target.played);
    return driver.playTarget();
}

bool SessionRoom::playSinusoid(int frequency) {
    expectSound(testsupport::heardSinusoid(frequency, target.played.size()));
    return driver.playSinusoid(frequency);
}

QString SessionRoom::finish() {
    const QString name = textOf("lineEditOutputFileName");
    driver.finish();
    return pathOf(name);
}

QVector<float> SessionRoom::heard() {
    if (!recorder.waitForSilence())
        qFatal("the sound device does not fall silent");
    return recorder.stop();
}

QString SessionRoom::differenceHeard() {
    return testsupport::findSounds(heard(), expectedSounds).difference;
}

QString SessionRoom::textOf(const char* fieldName) {
    return find<QLineEdit>(window, fieldName)->text();
}

bool SessionRoom::isEnabled(const char* buttonName) {
    return find<QPushButton>(window, buttonName)->isEnabled();
}

int SessionRoom::fileNumber() {
    return find<QSpinBox>(window, "spinBoxFileNumber")->value();
}

QStringList SessionRoom::complaints() {
    QStringList warnings = log.warnings();
    for (const QString& warning : std::as_const(expectedWarnings))
        if (!warnings.removeOne(warning))
            warnings.append(QStringLiteral("the log lacks: ") + warning);
    return driver.dialogs.takeComplaints() + warnings;
}

void RoomTest::init() {
    room = std::make_unique<SessionRoom>();
    QVERIFY(room->open());
}

void RoomTest::cleanup() {
    const QStringList complaints = room->complaints();
    room.reset();
    QCOMPARE(complaints.join(u'\n'), QString());
}
