// The journals that earlier sessions have left.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

/// A journal, and what can be recovered from it.
struct KeptJournal {
    QString path;
    /// Of the session. This and all up to `number` come from the journal's name.
    QDateTime start;
    QString subject;      ///< Not valid where `sessionType` is empty.
    QString sessionType;  ///< "practice", "experiment", or empty where the name does not hold it.
    QString number;       ///< The file number, with its leading zeros.
    QString target;       ///< Name of the target's file.
    int responses = 0;    ///< Complete ones, numbered from 1 without a gap.
    QByteArray results;   ///< Header and lines of these responses: a results file.
    int bytesLeftOut = 0; ///< Bytes after them, without empty lines.

    /// Whether deleting the file would lose anything.
    bool holdsAnything() const { return responses > 0 || bytesLeftOut > 0; }
};

/// Returns what the name and the bytes of a journal hold.
KeptJournal readJournal(const QString& path, const QByteArray& bytes);

struct KeptJournals {
    QVector<KeptJournal> journals; ///< By the starts of their sessions.
    int leftAlone = 0;             ///< Number of others, held by running sessions or unreadable.
};

/// Says how many journals were left alone.
QString leftAloneText(const KeptJournals& kept);

/// Returns the journals in a folder.
KeptJournals keptJournals(const QString& folder);
