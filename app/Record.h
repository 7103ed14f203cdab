// One candidate target sound and the frequency that was matched to it.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStandardPaths>
#include <QString>

/// Returns the desktop folder, where target files are looked for and results files are proposed;
/// empty if the platform reports none.
inline QString desktopFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

/// A target sound file and its match. The match of a session always lives in the first record
/// of Data::records, whichever target is played.
struct Record {
    QString filePath = desktopFolder(); ///< Folder that holds the sound file.
    QString fileName;                   ///< Name of the sound file within filePath.
    double frequencyMatched = 0.0;      ///< Frequency in Hz matched by the listener.
    qint64 reserved1 = 0;               ///< Kept zero, read by nothing.
    qint64 reserved2 = 0;               ///< Kept zero, read by nothing.
};
