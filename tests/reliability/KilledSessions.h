// Sessions that are killed, and their files on the disk.
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

/// The result of killing a run of sessions.
struct KillResult {
    QByteArray lastEvent;  ///< What was reported last before the end.
    int sessions = 0;      ///< That were begun.
    int responses = 0;     ///< Acknowledged: their presentation had started.
    int inResultsOnly = 0; ///< How many of them each file holds.
    int inJournalOnly = 0;
    int inBoth = 0;
    int recovered = 0;       ///< In their session's results file, after pellion-session recover.
    int lost = 0;            ///< In no file.
    int incompleteFiles = 0; ///< Files beside a results file that were to take its place.
    QStringList faults;      ///< Lines that are not whole, and what else is wrong.
};

/// When to kill: `delayMs` after the first session has begun, or after the listener has finished a
/// session, when the program is about to save.
struct Moment {
    bool isWhileSaving = false;
    int delayMs = 0;
};

/// A further step with a folder of results files and the sessions in it.
using Aftermath =
    std::function<void(const QString& folder, const QList<KilledSession>&, KillResult&)>;

/// Starts a program that holds sessions until it is killed, kills it (SIGKILL) at the given moment
/// and inspects its files, then calls `afterKill`. To be called from any thread.
KillResult killSessions(const QString& endlessSessions, const Moment& moment,
                        const Aftermath& afterKill);

/// Whether a file holds the beginning of a results file, in whole lines.
bool hasWholeLines(const QByteArray& file);

/// Whether a results file or journal holds a response.
bool holds(const QByteArray& file, const Response& response);
