// The common part of the campaigns that record the sound device.
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SoundRecorder.h"

#include <QTextStream>

/// A campaign NAME COUNT: its arguments, the stream of its report, and the recording of the sound
/// device "lab".
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
