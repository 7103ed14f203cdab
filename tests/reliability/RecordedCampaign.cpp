// The common part of the campaigns that record the sound device.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/RecordedCampaign.h"

RecordedCampaign::RecordedCampaign(const char* name, int count, int minimumCount) {
    if (count < minimumCount) {
        out << "usage: " << name << " COUNT, " << minimumCount << " or more\n";
        return;
    }
    isRecording = recording.start();
    if (!isRecording)
        out << "there is no sound device \"lab\" to record\n";
}

bool RecordedCampaign::finishRecording() {
    const bool isSilent = recording.waitForSilence();
    recording.stop();
    if (!isSilent)
        out << "the sound device does not fall silent\n";
    return isSilent;
}
