// Tests of pellion-session, which checks a computer and recovers responses.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FileBytes.h"

#include <QObject>
#include <QStringList>
#include <QTemporaryDir>

/// What a run of pellion-session has left.
struct SessionToolRun {
    int status = -1; ///< -1 when it did not end by itself.
    QString output;
    QString errors;
    qint64 milliseconds = 0;

    /// Returns the findings. That of the processor is left out: the tests share theirs.
    QStringList findings() const;
};

/// A fresh home, with a desktop and a folder of journals in it.
class SessionHome {
public:
    SessionHome();

    /// Runs pellion-session at home; more environment variables are "NAME=value".
    SessionToolRun run(const QStringList& arguments, const QStringList& environment = {}) const;

    /// Leaves a journal, as a session of SUB001 does whose results are not saved; returns its path.
    QString leaveJournal(const QString& resultsName, const QVector<double>& frequencies,
                         const QByteArray& remainder = {}) const;

    QString path(const QString& name) const { return folder.filePath(name); }
    QString desktop() const { return path("Desktop"); }
    QString journals() const { return path(".local/share/pellion/journal"); }
    static QStringList namesIn(const QString& path);

private:
    QTemporaryDir folder;
};

/// Answers and states, without a server (session_tool_parts.cpp).
class TestSessionParts : public QObject {
    Q_OBJECT

private slots:
    void answersOfPulseAudioAreUnderstood();
    void answersOfPipeWireAreUnderstood();
    void kindsOfDevices_data();
    void kindsOfDevices();
    void answersThatAreNotUnderstoodAreReported();
    void findings_data();
    void findings();
    void loadAndFoldersGiveFindings();
    void reportsHoldEveryFinding();
    void valuesThatLastSurviveSaving();
    void onlyASavedStateIsReplaced();
    void journalsAreReadAsFarAsTheyAreWhole_data();
    void journalsAreReadAsFarAsTheyAreWhole();
    void journalsOnNfsAreFound();
    void unreadableJournalIsKept();
    void namesOfJournalsAreTakenApart_data();
    void namesOfJournalsAreTakenApart();
};

/// "check" on real servers and disks (session_tool_check.cpp).
class TestSessionCheck : public QObject {
    Q_OBJECT

private slots:
    void aSoundSystemGivesNoFinding();
    void faultsOfTheSoundAreFound_data();
    void faultsOfTheSoundAreFound();
    void changesSinceAGoodDayAreFound_data();
    void changesSinceAGoodDayAreFound();
    void aKnownFindingBecomesANote();
    void anotherStreamIsFound();
    void aMissingOrFrozenServerIsReportedInTime();
    void faultsOfTheDiskAreFound();
    void aKeptJournalIsFound();
    void pipeWireIsAskedAlike();
};

/// "recover" on real files (session_tool_recovery.cpp).
class TestSessionRecovery : public QObject {
    Q_OBJECT

private slots:
    void journalsAreListedAndStay();
    void journalsBecomeResultsFiles();
    void anExistingFileIsKept();
    void sessionsOfOneNameAreNumberedByTheirStarts();
    void aFileThatHoldsTheSameIsNotWrittenTwice();
    void aTornJournalIsKeptBesideItsCopy();
    void aRunningSessionIsLeftAlone();
    void emptyJournalsGoWhenTheyAreOld();
    void whatCannotBeCopiedIsKept_data();
    void whatCannotBeCopiedIsKept();
    void aFullDiskCostsNothing();
    void aKillCostsNothing();
    void aJournalOnAReadOnlyDiskIsCopied();
    void analysesReadWhatIsRecovered_data();
    void analysesReadWhatIsRecovered();
};

/// Command lines, help and manual page (session_tool_usage.cpp).
class TestSessionUsage : public QObject {
    Q_OBJECT

private slots:
    void wrongCommandLinesAreExplained_data();
    void wrongCommandLinesAreExplained();
    void helpHasExamplesThatWork_data();
    void helpHasExamplesThatWork();
    void onlyTheWindowNeedsADisplay();
    void outputThatCannotBeWrittenIsAnError();
    void manualDescribesTheOptionsOfTheHelp();
    void manualIsWellFormed();
};
