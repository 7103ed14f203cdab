// What the tests of playing sounds share.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_playback.h"

#include "support/FileBytes.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QtTest>

PlaybackBench::PlaybackBench() {
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the main window does not appear");
    testsupport::find<QCheckBox>(window, "checkBoxSaveData")->setChecked(false);
}

void PlaybackBench::prepare(const QByteArray& wavFile) {
    const QString path = folder.filePath("target.wav");
    if (!testsupport::writeBytes(path, wavFile))
        qFatal("cannot write %s", qPrintable(path));
    session.prepare(testsupport::SessionDriver::Session::Practice, path);
}

void PlaybackBench::prepare(const QVector<int>& codes) {
    prepare(testsupport::wavWithSamples({}, codes));
}

void PlaybackBench::setPause(double milliseconds) {
    session.setPause(milliseconds);
}

bool PlaybackBench::go() {
    if (session.go() == nullptr)
        return false;
    session.beReady();
    return true;
}

void PlaybackBench::finish() {
    session.dialogs.click("Confirmation MessageBox", QMessageBox::Yes);
    session.listener()->close();
}

QVector<int> PlaybackBench::soundsTold() const {
    return testsupport::soundsTold(sounds);
}

QString PlaybackBench::wrongInRecording(const QVector<QVector<float>>& soundsExpected) const {
    constexpr int silenceMs = 150;
    if (!recorder.waitForSilence(silenceMs))
        return "the sound device does not fall silent";
    return testsupport::findSounds(recorder.samples(), soundsExpected).difference;
}

QString PlaybackBench::complaints() {
    return (session.dialogs.takeComplaints() + log.warnings()).join(u'\n');
}
