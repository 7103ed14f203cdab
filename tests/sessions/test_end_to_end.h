// The test classes of whole sessions; each is defined in the file that its comment names.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "end_to_end_room.h"

/// Sessions as they should go (test_end_to_end.cpp).
class TestWholeSessions : public RoomTest {
    Q_OBJECT

private slots:
    void theDeskIsTheOneAskedFor();
    void bothWindowsFitTheScreen();
    void manySessionsInOneRun();
    void preparationsAreReplacedBeforeGo();
    void aSessionWithoutAnyResponseSavesTheHeaderOnly();
    void aSessionWithTheTargetAloneSavesTheHeaderOnly();
    void namesWithSpacesUmlautsCjkAndEmoji();
};

/// Dialogs that are cancelled, and results that cannot be written (end_to_end_dialogs.cpp).
class TestSessionDialogs : public RoomTest {
    Q_OBJECT

private slots:
    void aCancelledTargetKeepsWhatIsShown();
    void aCancelledSaveIsReportedAndTheNumberAdvances();
    void aMissingFolderIsReportedAndNothingWritten();
    void anExistingFileIsReplacedWithoutAQuestion();
    void nothingIsAskedWhenNothingIsToBeSaved();
    void theNextSaveStartsInTheFolderShown();
    void session100FollowsSession99();
};
