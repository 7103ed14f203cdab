// Sessions of a few responses, held one after the other in one main window.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MainWindow.h"
#include "support/SessionDriver.h"

#include <QTemporaryDir>

/// Sessions of a target and three sinusoids of 5 ms, by the widgets that a person clicks.
class ShortSessions {
public:
    ShortSessions() { window.show(); }

    /// Holds one session and saves its results; returns whether nothing went wrong.
    bool hold();

    /// How many listener's windows there are, hidden ones included.
    int listeners() const;

private:
    QTemporaryDir folder;
    MainWindow window;
    testsupport::SessionDriver session{window};
};
