// A session of very many responses, and the cost of each.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reliability/ResponseCost.h"
#include "reliability/TimedApplication.h"
#include "session/ResponseJournal.h"
#include "support/InspectedWindows.h"
#include "support/SessionDriver.h"

#include <QTemporaryDir>
#include <QVector>

/// A window whose trend belongs to no chart: Qt keeps its points and ticks but lays out and draws
/// nothing, so that answering a response takes only the program's own time. Its sounds last a
/// quarter of a second; none is played.
class DetachedWindow : public testsupport::InspectedMainWindow {
public:
    /// Prepares a session with such a target, which is made in a folder.
    bool prepare(const QString& folder, testsupport::DialogDriver& dialogs);

    /// Answers a request of a sinusoid by the slot of real sessions, and does what precedes
    /// a sound. Returns the time of the processor that it took (ms).
    double respond(int frequency);
};

/// A real session, by the widgets that a person clicks, with sounds of 5 ms. Beside it
/// a detached window and a journal answer each response once more, so that their shares are
/// measured in the same run, with memory and processor in the state that a session leaves.
/// Another session may follow in the same window.
class LongSession {
public:
    explicit LongSession(TimedApplication& timedApplication) : application(timedApplication) {}

    bool begin();

    /// Begins another session once the last one is finished.
    bool beginNext();

    /// Asks for the next sinusoid and waits until it has sounded.
    bool respond();

    /// Saves the results; returns whether the file holds every response of the session.
    bool finish();

    QVector<ResponseCost> costs; ///< Of each response, of all sessions.

private:
    TimedApplication& application;
    QTemporaryDir folder;
    MainWindow window;
    testsupport::SessionDriver session{window};
    DetachedWindow detached;
    ResponseJournal journal{folder.filePath("journal")};
    QVector<double> frequencies; ///< Hz, of each response of the session.
    QElapsedTimer click;
};
