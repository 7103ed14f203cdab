// Sessions of targets and sinusoids in random order, to be compared with a recording.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MainWindow.h"
#include "support/HeardSounds.h"
#include "support/LogLines.h"
#include "support/SessionDriver.h"
#include "support/SoundRecorder.h"

#include <QTemporaryDir>
#include <QVector>

#include <chrono>
#include <random>

/// A sound that the listener requested, or the same sound played by another program.
struct PresentedSound {
    bool isSinusoid = false;
    bool isControl = false;        ///< Played by another program.
    int frequency = 0;             ///< Requested, Hz; of a sinusoid only.
    QVector<float> sound;          ///< As it should be heard.
    int recordedBefore = 0;        ///< Samples recorded at its request.
    bool wasSuspended = false;     ///< Whether the device was suspended at its request.
    testsupport::HeardSound heard; ///< How much of it was heard.
    bool isShownAsMatched = true;  ///< Whether the window showed a sinusoid's frequency after it.
};

/// Real sessions, by the widgets that a person clicks.
class MixedSessions {
public:
    /// Each presentation is preceded by `idle` without activity. With a control, pacat repeats each
    /// sound after the program has presented it, with the same silence after it.
    MixedSessions(const testsupport::SoundRecorder& deviceRecorder, std::chrono::seconds idle,
                  bool isControlled);

    /// Holds one session of that many presentations, with a target of its own, the first of them
    /// that target and the rest in random order. Returns whether it could be held to its end; the
    /// presentations so far count in any case.
    bool hold(int count);

    /// Compares every presentation with what was recorded. Returns how many stretches of the
    /// recording hold an unexpected sound.
    int compare();

    QVector<PresentedSound> presentations;
    int sessions = 0;
    int wrongResultsFiles = 0; ///< Files that do not hold exactly the requests.
    testsupport::LogLines log;

private:
    bool present(bool isSinusoid);
    bool playControl();
    bool registerPresentation(const PresentedSound& presentation);
    bool areResultsRight(int firstPresentation) const;

    const testsupport::SoundRecorder& recorder;
    std::chrono::seconds idleness;
    bool hasControl;
    QTemporaryDir folder;
    std::mt19937 generator;
    MainWindow window;
    testsupport::SessionDriver session{window};
    QVector<float> target; ///< Of the running session, as it should be heard.
    int sinusoids = 0;     ///< Requested so far, in all sessions.
};
