// What the campaigns that listen to the sound device share.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "reliability/RecordedCampaign.h"

#include <QCoreApplication>
#include <QStringList>

RecordedCampaign::RecordedCampaign(const char* name, int leastCount)
    : count(QCoreApplication::arguments().value(1).toInt()) {
    if (count < leastCount) {
        out << "usage: " << name << " COUNT, " << leastCount << " or more\n";
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
