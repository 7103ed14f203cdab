// The responses of a running session, kept on the disk until its results file holds them.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>
#include <QVector>

#include <utility>

/// Returns the folder of all journals, in the user's application data.
QString journalFolder();

/// Prints the journals in a folder on standard error, one per line, oldest first: those of earlier
/// sessions whose results were not saved. Those that a running program still writes are skipped.
void reportLeftoverJournals(const QString& folder);

/// A journal's name holds at most this many characters of the results file's name, without
/// extension.
constexpr int maximumResultsNameLength = 60;

/// Returns the name of a journal without folder: the results file's name, shortened and with
/// invalid characters replaced by "_", then the session's start and ".txt".
QString journalName(const QString& resultsFileName, const QDateTime& start);

/// A file in the format of the results file that grows with each response, so that the responses
/// survive the end of the program, a failed results file, and a crash of the machine. The first
/// problem of a session is reported by one line on standard error and has no other effect.
///
/// Call begin(), then record() with each response, then discard() or keep(). The destructor calls
/// keep().
class ResponseJournal {
public:
    /// The folder is created at the first response.
    explicit ResponseJournal(QString journalsFolder) : folder(std::move(journalsFolder)) {}
    ~ResponseJournal();
    ResponseJournal(const ResponseJournal&) = delete;
    ResponseJournal(ResponseJournal&&) = delete;
    ResponseJournal& operator=(const ResponseJournal&) = delete;
    ResponseJournal& operator=(ResponseJournal&&) = delete;

    /// Starts the journal of a session, and keeps an earlier one. The file is created at the first
    /// response.
    void begin(const QString& resultsFileName, const QDateTime& start);

    /// Writes the responses that are not in the journal yet, and waits until they have reached the
    /// disk. Takes all frequencies (Hz) of the session, so that a response that could not be
    /// written is written with the next. Without begin() nothing is written.
    void record(const QString& targetFileName, const QVector<double>& frequenciesMatched);

    /// Ends the session, whose results have been saved, and removes its journal. Two kinds of files
    /// at the journal's path are not removed: the results file itself (same device and inode),
    /// which is reported on standard error, and another file that has replaced the journal.
    void discard(const QString& resultsPath);

    /// Ends the session. If its journal holds any response, prints the path on standard error;
    /// otherwise removes it.
    void keep();

private:
    bool open();
    bool append(const QByteArray& lines);
    void reportFailure();

    QString folder;
    QString name;             ///< Empty between sessions.
    QString path;             ///< Of the file, from the first attempt to create it.
    QFile file;               ///< Open from the first response on; only its owner may read it.
    int responses = 0;        ///< Held by the file.
    qint64 completeBytes = 0; ///< Of the file: its header and these responses.
    bool hasReportedFailure = false;
};
