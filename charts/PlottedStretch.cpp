// How much of the waveform is drawn.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "charts/PlottedStretch.h"

#include "app/Data.h"
#include "sound/SampleCount.h"

void limitPlotToSound(Data& data) {
    data.nPointsToPlot = sampleCount(data.plotDuration, data.samplingRate);
    if (data.nSamples < data.nPointsToPlot) {
        data.nPointsToPlot = data.nSamples;
        data.plotDuration = data.nSamples / data.samplingRate;
    }
}
