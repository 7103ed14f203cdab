// The responses of a running session, kept on the disk until its results file holds them.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/ResponseJournal.h"

#include "session/DiskSync.h"
#include "session/JournalLock.h"
#include "session/ResultsFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString ending() {
    return QStringLiteral(".txt");
}

/// Returns the name of a journal to try at the given attempt; earlier names may be taken.
QString numbered(const QString& name, int attempt) {
    if (attempt == 1)
        return name;
    return name.chopped(ending().size()) + u'-' + QString::number(attempt) + ending();
}

/// Replaces characters that some file systems refuse, and a leading dot, which hides a file.
QString sanitizedForFileName(QString text) {
    const QString refused = QStringLiteral("/\\:*?\"<>|");
    for (QChar& character : text) {
        if (!character.isPrint() || refused.contains(character))
            character = u'_';
    }
    if (text.startsWith(u'.'))
        text[0] = u'_';
    return text;
}

/// Creates a folder and its parents, and waits until their names have reached the disk.
void makeFolder(const QString& path) {
    if (QFileInfo::exists(path))
        return;
    const QString parent = QFileInfo(path).path();
    if (parent != path)
        makeFolder(parent);
    if (QDir().mkdir(path))
        syncNamesToDisk(parent);
}

/// Device and inode, which identify a file under any name.
using Identity = std::pair<dev_t, ino_t>;

std::optional<Identity> identityOf(const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
}

std::optional<Identity> identityOf(int descriptor) {
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
}

void print(const char* message, const QString& path) {
    std::cerr << message << QFile::encodeName(path).constData() << std::endl;
}

} // namespace

QString journalFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/journal");
}

void reportLeftoverJournals(const QString& folder) {
    const QDir journals(folder);
    const QStringList names =
        journals.entryList({u'*' + ending()}, QDir::Files, QDir::Time | QDir::Reversed);
    for (const QString& name : names)
        if (!JournalLock(journals.filePath(name)).isHeldElsewhere())
            print("Responses of an earlier session kept in: ", journals.filePath(name));
}

QString journalName(const QString& resultsFileName, const QDateTime& start) {
    QString results = sanitizedForFileName(resultsFileName);
    if (results.endsWith(ending()))
        results.chop(ending().size());
    return results.left(maximumResultsNameLength) +
           start.toString(QStringLiteral("-yyyyMMdd-HHmmss")) + ending();
}

ResponseJournal::~ResponseJournal() {
    keep();
}

void ResponseJournal::begin(const QString& resultsFileName, const QDateTime& start) {
    keep();
    name = journalName(resultsFileName, start);
    responses = 0;
    completeBytes = 0;
    hasReportedFailure = false;
}

void ResponseJournal::record(const QString& targetFileName,
                             const QVector<double>& frequenciesMatched) {
    if (name.isEmpty() || frequenciesMatched.size() <= responses)
        return;
    QString lines = resultsLines(targetFileName, frequenciesMatched, responses);
    if (responses == 0)
        lines.prepend(resultsHeader());
    if (!open() || !append(lines.toLocal8Bit()))
        return reportFailure();
    responses = frequenciesMatched.size();
    if (!syncToDisk(file))
        reportFailure();
}

void ResponseJournal::discard(const QString& resultsPath) {
    name.clear();
    if (!file.isOpen())
        return;
    const std::optional<Identity> found = identityOf(path);
    const bool isResultsFile = found.has_value() && found == identityOf(resultsPath);
    // False if another file has replaced the journal.
    const bool isJournal = found == identityOf(file.handle());
    file.close();
    if (isResultsFile)
        print("Responses saved in the journal itself: ", path);
    else if (isJournal && !QFile::remove(path) && QFile::exists(path))
        print("Responses that were saved are also in: ", path);
}

void ResponseJournal::keep() {
    name.clear();
    if (!file.isOpen())
        return;
    file.close();
    if (responses > 0)
        print("Responses kept in: ", path);
    else
        QFile::remove(path);
}

/// Creates the file of this session, unless it is open already.
bool ResponseJournal::open() {
    if (file.isOpen())
        return true;
    makeFolder(folder);
    int descriptor = -1;
    int attempt = 0;
    do {
        ++attempt;
        path = folder + u'/' + numbered(name, attempt);
        // Private from creation (0600); O_EXCL never reuses an existing file.
        descriptor = ::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    } while (descriptor < 0 && errno == EEXIST);
    if (descriptor < 0)
        return false;
    // Succeeds, because a JournalLock leaves new empty journals alone.
    flock(descriptor, LOCK_EX | LOCK_NB);
    // Unbuffered: each response is one write, so that no line is torn when the program dies.
    if (!file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                   QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    syncNamesToDisk(folder);
    return true;
}

/// Writes all of the lines, or nothing if they do not fit.
bool ResponseJournal::append(const QByteArray& lines) {
    // Overwrites what a failed attempt may have left: the beginning of the same lines.
    if (file.seek(completeBytes) && file.write(lines) == lines.size()) {
        completeBytes += lines.size();
        return true;
    }
    // A line cut off within its frequency would read as another frequency. If truncating fails,
    // line feeds overwrite the incomplete line.
    if (!file.resize(completeBytes) && file.seek(completeBytes))
        file.write(QByteArray(std::max(0, int(file.size() - completeBytes)), '\n'));
    return false;
}

void ResponseJournal::reportFailure() {
    if (!hasReportedFailure)
        print("Responses cannot be kept in: ", path);
    hasReportedFailure = true;
}
