// The state of the computer, as far as a session depends on it.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/ComputerState.h"

#include "session/ResponseJournal.h"
#include "tools/session/KeptJournals.h"
#include "tools/session/SoundAnswers.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/statvfs.h>
#include <unistd.h>

FolderState folderState(const QString& path, bool isMadeBySessions) {
    FolderState state;
    state.path = path;
    QFileInfo folder(path);
    while (isMadeBySessions && !folder.exists())
        folder.setFile(folder.path());
    const QByteArray name = QFile::encodeName(folder.filePath());
    struct statvfs disk = {};
    if (!folder.exists())
        state.problem = QStringLiteral("does not exist");
    else if (!folder.isDir())
        state.problem = QStringLiteral("is not a folder");
    else if (access(name.constData(), W_OK | X_OK) != 0 || statvfs(name.constData(), &disk) != 0)
        state.problem = QStringLiteral("cannot be written to (%1)")
                            .arg(QString::fromLocal8Bit(std::strerror(errno)));
    // File systems without a limit to the number of files report 0 of 0.
    else if (disk.f_files == 0 || disk.f_favail > 0)
        state.freeBytes = qint64(disk.f_bavail) * qint64(disk.f_frsize);
    return state;
}

ComputerState computerState() {
    ComputerState state;
    state.sound = soundState(askSoundServer());
    state.desktop =
        folderState(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation), false);
    state.journals = folderState(journalFolder(), true);
    for (const KeptJournal& journal : keptJournals(journalFolder()).journals)
        state.keptJournals += int(journal.holdsAnything());
    getloadavg(&state.load, 1); // Where it fails, the load stays 0.
    state.processors = QThread::idealThreadCount();
    return state;
}
