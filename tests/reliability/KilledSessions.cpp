// Sessions that are killed, and their files on the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/KilledSessions.h"

#include "session/ResultsFile.h"
#include "support/FileBytes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr int startLimitMs = 60000;
const char* const pauseMs = "30";
const char* const target = "target.wav";

/// A program that holds sessions, with folders of its own.
class Program {
public:
    explicit Program(const QString& endlessSessions) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", folder.filePath("data"));
        process.setProcessEnvironment(environment);
        process.setStandardErrorFile(folder.filePath("log"));
        process.start(endlessSessions, {folder.path(), pauseMs});
    }

    bool waitFor(const QByteArray& event) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < startLimitMs && process.state() != QProcess::NotRunning) {
            if (std::any_of(events.cbegin(), events.cend(),
                            [&](const QByteArray& line) { return line.startsWith(event); }))
                return true;
            read(100);
        }
        return false;
    }

    void runFor(int milliseconds) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < milliseconds)
            read(int(milliseconds - clock.elapsed()));
    }

    /// Returns whether it was still running: it should not have ended by itself.
    bool kill() {
        const bool isRunning = process.state() == QProcess::Running;
        process.kill();
        process.waitForFinished();
        read(0);
        return isRunning && process.exitStatus() == QProcess::CrashExit;
    }

    QList<QByteArray> events;
    QTemporaryDir folder;

private:
    void read(int timeoutMs) {
        if (!process.canReadLine())
            process.waitForReadyRead(timeoutMs);
        while (process.canReadLine())
            events.append(process.readLine().trimmed());
    }

    QProcess process;
};

QList<KilledSession> sessionsOf(const QList<QByteArray>& events) {
    QList<KilledSession> sessions;
    for (const QByteArray& event : events) {
        const QList<QByteArray> words = event.split(' ');
        if (words[0] == "prepare")
            sessions.append({QString::fromUtf8(words[1]), {}});
        else if (words[0] == "started")
            sessions.last().acknowledged.append({words[1].toInt(), words[2]});
    }
    return sessions;
}

/// The journal of a session; there is at most one.
QByteArray journalOf(const KilledSession& session, const QDir& journals) {
    const QString start = QFileInfo(session.resultsName).completeBaseName() + u'-';
    const QStringList names = journals.entryList({start + u'*'}, QDir::Files);
    return names.isEmpty() ? QByteArray()
                           : testsupport::readBytes(journals.filePath(names.first()));
}

void count(const KilledSession& session, const QDir& folder, const QDir& journals,
           KillResult& result) {
    const QByteArray results = testsupport::readBytes(folder.filePath(session.resultsName));
    const QByteArray journal = journalOf(session, journals);
    for (const Response& response : session.acknowledged) {
        const bool isInResults = holds(results, response);
        const bool isInJournal = holds(journal, response);
        ++result.responses;
        result.inBoth += int(isInResults && isInJournal);
        result.inResultsOnly += int(isInResults && !isInJournal);
        result.inJournalOnly += int(isInJournal && !isInResults);
        if (isInResults || isInJournal)
            continue;
        ++result.lost;
        result.faults.append(QStringLiteral("%1: response %2 (%3 Hz) is lost")
                                 .arg(session.resultsName)
                                 .arg(response.number)
                                 .arg(QString::fromUtf8(response.frequency)));
    }
}

void inspectLines(const QDir& folder, bool mayBeEmpty, KillResult& result) {
    for (const QString& name : folder.entryList({"*.txt"}, QDir::Files)) {
        const QByteArray file = testsupport::readBytes(folder.filePath(name));
        if (!hasWholeLines(file) && !(mayBeEmpty && file.isEmpty()))
            result.faults.append(name + ": its lines are not whole");
    }
}

} // namespace

KillResult killSessions(const QString& endlessSessions, const Moment& moment,
                        const Aftermath& afterKill) {
    Program program(endlessSessions);
    const bool isUnderWay = program.waitFor(moment.isWhileSaving ? "done" : "prepare");
    program.runFor(moment.delayMs);
    KillResult result;
    if (!program.kill() || !isUnderWay)
        result.faults.append("the sessions did not go on until they were killed:\n" +
                             testsupport::readBytes(program.folder.filePath("log")));
    const QDir folder(program.folder.path());
    const QDir journals(folder.filePath("data/pellion/journal"));
    const QList<KilledSession> sessions = sessionsOf(program.events);
    for (const KilledSession& session : sessions)
        count(session, folder, journals, result);
    inspectLines(folder, false, result);
    // Killed between making the file and the first response's line.
    inspectLines(journals, true, result);
    result.sessions = sessions.size();
    result.incompleteFiles = folder.entryList({"*.txt.*"}, QDir::Files).size();
    if (!program.events.isEmpty())
        result.lastEvent = program.events.last().split(' ').first();
    afterKill(folder.path(), sessions, result);
    return result;
}

bool hasWholeLines(const QByteArray& file) {
    // Writing the parsed fields again gives the same file.
    QVector<double> frequencies;
    const QList<QByteArray> lines = file.split('\n');
    for (int i = 1; i < lines.size() - 1; ++i)
        frequencies.append(lines[i].split('\t').value(2).trimmed().toDouble());
    constexpr double minimumHz = 10;
    return file == resultsText(target, frequencies).toUtf8() &&
           std::all_of(frequencies.cbegin(), frequencies.cend(),
                       [](double frequency) { return frequency >= minimumHz; });
}

bool holds(const QByteArray& file, const Response& response) {
    return file.contains('\n' + QByteArray(target) + '\t' + QByteArray::number(response.number) +
                         '\t' + response.frequency + "\r\n");
}
