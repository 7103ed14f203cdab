// What the campaigns that listen to the sound device share.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SoundRecorder.h"

#include <QTextStream>

/// A campaign NAME COUNT: what it is asked for, where it reports what it finds, and the recording
/// of the sound device "lab".
class RecordedCampaign {
public:
    /// Starts to record if `count` is `minimumCount` or more.
    RecordedCampaign(const char* name, int count, int minimumCount);

    /// Whether it has begun. If not, the reason has been reported.
    bool hasBegun() const { return isRecording; }

    /// Ends the recording once the last sound has arrived; reports when it does not.
    bool finishRecording();

    QTextStream out{stdout};
    testsupport::SoundRecorder recording;

private:
    bool isRecording = false;
};
