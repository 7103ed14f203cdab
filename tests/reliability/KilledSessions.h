// Sessions that are killed, and what they leave on the disk.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// A response as endless_sessions reports it.
struct Response {
    int number = 0;       ///< From 1, in its session.
    QByteArray frequency; ///< Hz.
};

/// A session, and its responses that were acknowledged: their presentation had started.
struct KilledSession {
    QString resultsName;
    QList<Response> acknowledged;
};

/// What became of a run of sessions that was killed.
struct Remains {
    QByteArray lastEvent;  ///< What was reported last before the end.
    int sessions = 0;      ///< That were begun.
    int responses = 0;     ///< Acknowledged: their presentation had started.
    int inResultsOnly = 0; ///< How many of them each file holds.
    int inJournalOnly = 0;
    int inBoth = 0;
    int recovered = 0;  ///< In their session's results file, after pellion-session recover.
    int lost = 0;       ///< In no file.
    int halfFiles = 0;  ///< Files beside a results file that were to take its place.
    QStringList faults; ///< Lines that are not whole, and what else is wrong.
};

/// When to kill: `delayMs` after the first session has begun, or after the listener is done with
/// a session, so that the program is about to save.
struct Moment {
    bool isWhileSaving = false;
    int delayMs = 0;
};

/// What else is to be done with a folder of results files and the sessions in it.
using Aftermath = std::function<void(const QString& folder, const QList<KilledSession>&, Remains&)>;

/// Starts a program that holds sessions until it is killed, kills it (SIGKILL) at the given moment
/// and looks at what it has left, then calls `aftermath`. To be called from any thread.
Remains killSessions(const QString& endlessSessions, const Moment& moment,
                     const Aftermath& aftermath);

/// Whether a file holds the beginning of a results file, in whole lines.
bool hasWholeLines(const QByteArray& file);

/// Whether a results file or journal holds a response.
bool holds(const QByteArray& file, const Response& response);
