// Expected tables and runs, for the tests of the example analyses.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

/// The folder of the simulated sessions.
const QString simulated = QStringLiteral(PELLION_ANALYSIS "/simulated");

/// The first line of a results file, and a file of one response.
const QByteArray headerLine = "filename\tnTrials\tfrequency matched (Hz)\r\n";
const QByteArray oneResponse = headerLine + "t.wav\t1\t440\r\n";

/// One session and the values that the analyses should report.
struct AnalysedSession {
    QString subject;
    QString type;
    int number = 1;
    QString target;
    QVector<double> frequencies; ///< Hz, of the requests.
    double targetHertz = 0;      ///< In a table of targets; 0 when not there.
    QString file = {};           ///< Its name, if it is not the program's proposal.

    QString fileName() const;
};

/// Writes sessions as the program does. One with a file name is written as a journal, which a
/// failed write may have ended in empty lines.
bool writeSessions(const QTemporaryDir& folder, const QVector<AnalysedSession>& sessions);

/// The results of a run of an analysis.
struct AnalysisRun {
    int status = -1;
    QString output;
    QString errors;
};

/// The interpreter and the script of each language; the interpreter is empty where it is missing.
const QStringList& python();
const QStringList& statisticsLanguage();
bool isThere(const QStringList& command);
QString scriptName(const QStringList& command);

/// Calls a function with the name and the command of each language that is there.
template <typename Function> void forLanguages(Function&& function) {
    if (isThere(python()))
        function("Python", python());
    if (isThere(statisticsLanguage()))
        function("R", statisticsLanguage());
}

/// Adds the column "command" and a row for each language that is there.
void addLanguages();

/// Runs an analysis ("python" or "R" by its command) in a folder, the current one by default.
AnalysisRun analyse(const QStringList& command, const QStringList& arguments,
                    const QString& folder = {});

/// Returns both tables for sessions that are in order, by formulas of the tests' own. The target's
/// frequency (Hz) is that of sessions which have none of their own.
QString expectedTables(const QVector<AnalysedSession>& sessions, double targetHertz);
