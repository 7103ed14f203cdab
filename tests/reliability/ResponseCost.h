// The costs of the responses of a session.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVector>

/// The costs of one response, in ms.
struct ResponseCost {
    /// The program's own time: match, synthesis, trend, bytes to be played. Processor time, which
    /// excludes other load on the machine.
    double own = 0;
    double journal = 0; ///< The journal, with its way to the disk.
    double click = 0;   ///< From the listener's click until it has been answered.
    double busy = 0;    ///< All events until the sound has ended, the click among them.
    double longest = 0; ///< The longest of these events: for so long neither window reacts.

    /// All that the program itself does, the wait for the disk included.
    double ownAndJournal() const { return own + journal; }

    /// Charts, widgets and sound output.
    double qt() const { return busy - own - journal; }
};

struct MedianAndMaximum {
    double median = 0;
    double maximum = 0;

    /// Both with two decimals.
    QString text() const;
};

/// Of values in any order, at least one.
MedianAndMaximum medianAndMaximum(QVector<double> values);
