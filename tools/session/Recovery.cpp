// Making results files from journals.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/session/Recovery.h"

#include "session/DiskSync.h"
#include "session/FileReplacement.h"
#include "session/JournalLock.h"
#include "session/ResultsFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <limits>

namespace {

bool holds(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.readAll() == bytes;
}

/// Creates a file with a new name, and fills it. Creating it empty reserves the name: an
/// interrupted copy leaves an empty file, which no analysis takes for results.
QString writeNewFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return QStringLiteral("%1 cannot be made (%2)").arg(path, file.errorString());
    if (replaceFile(path, bytes) == FileReplacement::Written && holds(path, bytes))
        return {};
    QFile::remove(path);
    return QStringLiteral("%1 cannot be written").arg(path);
}

/// Finds the file for a journal's responses and writes it, unless it is there already.
void copy(const KeptJournal& journal, const QDir& folder, Recovery& recovery) {
    for (int number = journal.number.toInt(); number < std::numeric_limits<int>::max(); ++number) {
        const QString path =
            folder.filePath(proposedOutputFileName(journal.subject, journal.sessionType, number));
        recovery.wasThere = holds(path, journal.results);
        // A dangling link takes the name, although exists() returns false.
        const bool isTaken = QFileInfo::exists(path) || QFileInfo(path).isSymLink();
        if (isTaken && !recovery.wasThere)
            continue;
        if (!isTaken)
            recovery.problem = writeNewFile(path, journal.results);
        if (recovery.problem.isEmpty())
            recovery.results = path;
        return;
    }
    recovery.problem = QStringLiteral("no file number is free in %1").arg(folder.path());
}

/// Why nothing can be copied; empty if something can.
QString obstacle(const KeptJournal& journal, const QDir& folder) {
    if (journal.responses == 0)
        return QStringLiteral("it holds no whole response");
    if (journal.sessionType.isEmpty() || journal.number.toInt() < 1)
        return QStringLiteral("its name does not hold session type and file number; rename it to "
                              "CODE_practiceNNN-%1.txt or CODE_experimentNNN-%1.txt")
            .arg(journal.start.toString(QStringLiteral("yyyyMMdd-HHmmss")));
    if (folder.canonicalPath() == QFileInfo(journal.path).dir().canonicalPath())
        return QStringLiteral("%1 is the journals' own folder").arg(folder.path());
    return {};
}

} // namespace

Recovery recover(const QString& journalPath, const QString& folder) {
    Recovery recovery;
    const JournalLock lock(journalPath);
    const auto bytes = lock.contents();
    if (!bytes) {
        recovery.problem = QStringLiteral("a running session holds it, or it cannot be read");
        return recovery;
    }
    const KeptJournal journal = readJournal(journalPath, *bytes);
    if (journal.holdsAnything()) {
        recovery.problem = obstacle(journal, QDir(folder));
        if (recovery.problem.isEmpty())
            copy(journal, QDir(folder), recovery);
        // The file may be another session's: two short ones can have the same responses.
        if (recovery.wasThere)
            recovery.problem = QStringLiteral("delete the journal if both are of the same session");
        else if (recovery.problem.isEmpty() && journal.bytesLeftOut > 0)
            recovery.problem = QStringLiteral("its last %1 bytes are not a whole response and were "
                                              "left out")
                                   .arg(journal.bytesLeftOut);
    }
    if (recovery.problem.isEmpty()) {
        if (!QFile::remove(journalPath))
            recovery.problem = QStringLiteral("it cannot be removed");
        syncNamesToDisk(QFileInfo(journalPath).path());
    }
    return recovery;
}

QString recoveryText(const Recovery& recovery, const QString& journalPath) {
    QStringList texts;
    if (recovery.wasThere)
        texts << recovery.results + QStringLiteral(": holds the same responses already");
    else if (!recovery.results.isEmpty())
        texts << recovery.results + QStringLiteral(": saved");
    if (!recovery.problem.isEmpty())
        texts << QStringLiteral("%1 is kept: %2").arg(journalPath, recovery.problem);
    if (texts.isEmpty())
        texts << QFileInfo(journalPath).fileName() + QStringLiteral(": held no response, removed");
    return texts.join(QStringLiteral("; "));
}
