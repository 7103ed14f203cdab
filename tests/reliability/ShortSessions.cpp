// Sessions of a few responses, held one after the other in one main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/ShortSessions.h"

#include "subject/SubjectWindow.h"
#include "support/WavBytes.h"

using testsupport::SessionDriver;

bool ShortSessions::hold() {
    const QString target = folder.filePath("target.wav");
    if (!testsupport::writeSteadyTarget(target))
        return false;
    session.prepare(SessionDriver::Session::Practice, target);
    constexpr double pauseMs = 10;
    session.setPause(pauseMs);
    if (session.go() == nullptr)
        return false;
    session.beReady();
    constexpr int responses = 3;
    bool isPlayed = session.playTarget();
    for (int i = 0; i < responses; ++i)
        isPlayed = isPlayed && session.playSinusoid(100 + i);
    if (!isPlayed)
        return false;
    session.finish(folder.filePath("results.txt"));
    return session.dialogs.takeComplaints().isEmpty();
}

int ShortSessions::listeners() const {
    return window.findChildren<SubjectWindow*>().size();
}
