// A whole session that runs by itself, to show a newcomer the program.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SoundRecorder.h"

#include <QDir>
#include <QString>
#include <QStringList>
#include <QVector>

class MainWindow;

namespace testsupport {
class SessionDriver;
}

/// Runs a practice session on the real windows, with a new target file, a simulated listener and a
/// recorder at the sound device. Reports each step on standard output, and checks results and
/// sounds.
class Demonstration {
public:
    /// The folder takes pictures, results file and recording; it must exist.
    explicit Demonstration(const QString& folderPath);

    /// Returns whether everything succeeded; failures are reported on standard output.
    bool run();

private:
    bool makeTarget();
    bool holdSession(MainWindow& window, testsupport::SessionDriver& session);
    bool matchPitch(testsupport::SessionDriver& session);
    bool savePicture(QWidget& window, const QString& fileName);
    bool saveNumberedPicture(QWidget& window, const QStringList& controls, const QString& fileName);
    bool checkResults(const QString& fileName);
    bool checkSound();
    QString pathOf(const QString& fileName) const { return folder.filePath(fileName); }

    QDir folder;
    testsupport::SoundRecorder recorder;
    QVector<float> targetSamples;
    QVector<int> requests;            ///< Hz, of the listener.
    QVector<QVector<float>> expected; ///< Everything that the sound device should receive.
};
